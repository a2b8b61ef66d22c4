#pragma once

#include <string>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

// What an interface resource writes as a value, and how it reaches an object. Each answers false with the reason.

namespace libvue::detail {

/// The value that a JSON value stands for; null for JSON's null.
[[nodiscard]] bool nibValue(NSObject* json, NSBundle* bundle, Ref<NSObject>& value, std::string& fault);

/// Sets the key: one of those that platform classes offer to resources, or by key-value coding.
[[nodiscard]] bool setNibProperty(NSObject* object, NSString* key, NSObject* value, std::string& fault);

/// A list of `count` finite numbers, none beyond what a screen or a document may need.
[[nodiscard]] bool nibNumbers(NSObject* json, NSUInteger count, CGFloat* numbers);

/// A number, or a list of words each of which names a bit.
[[nodiscard]] bool nibAutoresizing(NSObject* json, NSUInteger& mask);
[[nodiscard]] bool nibWindowStyle(NSObject* json, NSUInteger& mask);

} // namespace libvue::detail
