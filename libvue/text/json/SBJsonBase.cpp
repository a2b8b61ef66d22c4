#include <libvue/text/json/SBJsonBase.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<SBJsonBase> registration;

constexpr NSUInteger usualDepth = 512;
constexpr ConstantString cleErrorTrace{u"errorTrace"};

} // namespace

void SBJsonBase::describe(ClassDescription<SBJsonBase>& c) {
    c.key<&SBJsonBase::errorTrace>("errorTrace");
    c.key<&SBJsonBase::maxDepth, &SBJsonBase::setMaxDepth>("maxDepth");
}

SBJsonBase::SBJsonBase() { SBJsonBase::setMaxDepth(usualDepth); }

SBJsonBase::~SBJsonBase() = default;

NSUInteger SBJsonBase::maxDepth() const { return maxDepth_; }

void SBJsonBase::setMaxDepth(NSUInteger depth) { maxDepth_ = depth; }

Ref<NSArray> SBJsonBase::errorTrace() const {
    return errorTrace_ ? NSArray::arrayWithArray(errorTrace_) : Ref<NSArray>();
}

void SBJsonBase::addErrorWithCode_description(NSUInteger code, NSString* text) {
    Ref<NSDictionary> info;
    if (errorTrace_)
        info = NSDictionary::dictionaryWithObjectsAndKeys(
            {{NSLocalizedDescriptionKey.get(), text}, {NSUnderlyingErrorKey.get(), errorTrace_->lastObject()}});
    else
        info = NSDictionary::dictionaryWithObject_forKey(text, NSLocalizedDescriptionKey);
    const auto error =
        NSError::errorWithDomain_code_userInfo(SBJSONErrorDomain.get(), static_cast<NSInteger>(code), info);

    willChangeValueForKey(cleErrorTrace.get());
    if (!errorTrace_) errorTrace_ = NSMutableArray::array();
    errorTrace_->addObject(error);
    didChangeValueForKey(cleErrorTrace.get());
}

void SBJsonBase::clearErrorTrace() {
    willChangeValueForKey(cleErrorTrace.get());
    errorTrace_ = nullptr;
    didChangeValueForKey(cleErrorTrace.get());
}

} // namespace libvue
