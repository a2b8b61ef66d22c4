#include <libvue/text/formats/NSURLAjoutKerlan.h>

#include <libvue/platform/foundation/ClassExtension.h>

namespace libvue {

static const ClassExtension<NSURL> extension([](ClassExtension<NSURL>::Description& c) {
    c.answers<&ajusteEncodage>("ajusteEncodage");
});

Ref<NSURL> ajusteEncodage(const NSURL* url) {
    if (!url) return nullptr;
    const Ref<NSString> nu = CFURLCreateStringByReplacingPercentEscapes(url->absoluteString(), NSString::string());
    const Ref<NSString> ajuste = CFURLCreateStringByAddingPercentEscapes(nu, u"#"_ns, nullptr, kCFStringEncodingUTF8);
    return NSURL::URLWithString(ajuste);
}

} // namespace libvue
