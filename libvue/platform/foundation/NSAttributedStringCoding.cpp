#include <algorithm>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

namespace {

const ClassRegistration<NSAttributedString> registration;
const ClassRegistration<NSMutableAttributedString> mutableRegistration;

constexpr ConstantString textKey{u"NSString"};
constexpr ConstantString startsKey{u"NSAttributeStarts"};
constexpr ConstantString attributesKey{u"NSAttributes"};

} // namespace

// An archive holds the text, where the runs begin, and their attributes.

void NSAttributedString::encodeWithCoder(NSCoder& coder) const {
    Ref<NSMutableArray> starts = NSMutableArray::array(), attributes = NSMutableArray::array();
    for (const Run& run : runs_) {
        starts->addObject(boxedUnsigned(run.from));
        attributes->addObject(run.attributes);
    }
    const Ref<NSString> text = NSString::stringWithString(text_);
    if (coder.allowsKeyedCoding()) {
        coder.encodeObject_forKey(text, textKey);
        coder.encodeObject_forKey(starts, startsKey);
        coder.encodeObject_forKey(attributes, attributesKey);
    } else {
        coder.encodeObject(text);
        coder.encodeObject(starts);
        coder.encodeObject(attributes);
    }
}

NSAttributedString::NSAttributedString(NSCoder& coder) : NSAttributedString() {
    // What an attribute holds, an attachment say, may refer back to the text.
    coder.beginDecoding(this);
    const bool keyed = coder.allowsKeyedCoding();
    const Ref<NSObject> text = keyed ? coder.decodeObject_forKey(textKey) : coder.decodeObject();
    const Ref<NSObject> starts = keyed ? coder.decodeObject_forKey(startsKey) : coder.decodeObject();
    const Ref<NSObject> attributes = keyed ? coder.decodeObject_forKey(attributesKey) : coder.decodeObject();
    if (const auto* s = as<NSString>(text.get())) text_ = NSString::stringWithString(s);
    decodeRuns(as<NSArray>(starts.get()), as<NSArray>(attributes.get()));
}

/// A damaged list of runs is taken as far as it makes sense.
void NSAttributedString::decodeRuns(const NSArray* starts, const NSArray* attributes) {
    if (length() == 0) return;
    const NSUInteger count = starts && attributes ? std::min(starts->count(), attributes->count()) : 0;
    for (NSUInteger i = 0; i < count; ++i) {
        const auto* number = starts->at<NSNumber>(i);
        const auto* values = attributes->at<NSDictionary>(i);
        if (!number || !values) break;
        const NSUInteger from = number->unsignedIntegerValue();
        if (from >= length() || (runs_.empty() ? from != 0 : from <= runs_.back().from)) break;
        Ref<NSDictionary> fresh = frozen(values);
        if (runs_.empty() || !same(runs_.back().attributes, fresh)) runs_.push_back({from, std::move(fresh)});
    }
    if (runs_.empty()) runs_.push_back({0, frozen(nullptr)});
}

} // namespace libvue
