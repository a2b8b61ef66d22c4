#include <libvue/platform/foundation/ConstantString.h>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

NSString* ConstantString::make() const { return made_ = keptForever(NSString::from(text_)); }

} // namespace libvue
