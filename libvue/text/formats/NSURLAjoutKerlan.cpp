#include <libvue/text/formats/NSURLAjoutKerlan.h>

namespace libvue {

Ref<NSURL> ajusteEncodage(const NSURL* url) {
    if (!url) return nullptr;
    const Ref<NSString> nu = CFURLCreateStringByReplacingPercentEscapes(url->absoluteString(), NSString::string());
    const Ref<NSString> ajuste = CFURLCreateStringByAddingPercentEscapes(nu, u"#"_ns, nullptr, NSUTF8StringEncoding);
    return NSURL::URLWithString(ajuste);
}

} // namespace libvue
