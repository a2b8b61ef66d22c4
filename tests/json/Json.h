#pragma once

#include "../foundation/Valeurs.h"

#include <initializer_list>
#include <utility>
#include <vector>

#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/text/json/SBJsonBase.h>

namespace libvue::json {

using textes::text;
using Values = std::vector<Ref<NSObject>>;
using Pairs = std::vector<std::pair<Ref<NSObject>, Ref<NSObject>>>;

inline Ref<NSArray> list(const Values& values) { return NSArray::arrayWithRefs(values); }

inline Ref<NSMutableDictionary> object(const Pairs& pairs) {
    auto d = NSMutableDictionary::dictionary();
    for (const auto& [key, value] : pairs)
        d->setObject_forKey(value, key);
    return d;
}

inline Ref<NSDecimalNumber> decimal(std::string_view s) { return NSDecimalNumber::decimalNumberWithText(s); }

/// `value` in so many arrays.
inline Ref<NSObject> nested(NSUInteger depth, Ref<NSObject> value = nullptr) {
    for (NSUInteger i = 0; i < depth; ++i) {
        auto outer = NSMutableArray::array();
        if (value) outer->addObject(value);
        value = outer;
    }
    return value;
}

/// The errors as "code message" a line, the innermost first; each must wrap the one before it.
inline std::string trace(const SBJsonBase& base) {
    const auto errors = base.errorTrace();
    if (!errors) return "";
    std::string lines;
    NSObject* before = nullptr;
    for (NSError* e : errors->as<NSError>()) {
        EXPECT_TRUE(e->domain()->isEqualTo(u"org.vistaret.JSON.ErrorDomain"));
        EXPECT_EQ(e->userInfo()->objectForKey(NSUnderlyingErrorKey), before);
        before = e;
        lines += std::to_string(e->code()) + " " + e->localizedDescription()->utf8() + "\n";
    }
    return lines;
}

} // namespace libvue::json
