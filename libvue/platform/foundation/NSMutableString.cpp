#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/SmallBlocks.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

void NSMutableString::describe(ClassDescription<NSMutableString, NSString>&) {}

NSMutableString::NSMutableString() : NSString(0, false, Storage::mutableBlock), near_{} {}

NSMutableString::NSMutableString(const NSString* s) : NSMutableString() { setString(s); }

NSMutableString::~NSMutableString() {
    if (external_) std::free(buffer_.units);
}

void* NSMutableString::operator new(std::size_t size) { return detail::SmallBlocks::takeAny(size); }
void NSMutableString::operator delete(void* object, std::size_t size) noexcept {
    detail::SmallBlocks::giveAny(object, size);
}

Ref<NSMutableString> NSMutableString::stringWithCapacity(NSUInteger capacity) {
    Ref<NSMutableString> s = make<NSMutableString>();
    s->reserve(capacity);
    return s;
}

Ref<NSMutableString> NSMutableString::stringWithString(const NSString* s) {
    if (!s) raiseNamed(NSInvalidArgumentException, "stringWithString: a text is needed");
    return make<NSMutableString>(s);
}

/// Makes room for `units` units and a final zero.
void NSMutableString::reserve(std::size_t units) {
    const std::size_t held = external_ ? buffer_.capacity : std::max<std::size_t>(nearCapacity(), length_);
    if (units <= held) return;
    if (units > std::numeric_limits<std::uint32_t>::max() - 1)
        raiseNamed(NSInvalidArgumentException, "a text is too long");
    const std::size_t capacity = std::max(units, held + held / 2 + 15);
    const std::size_t unit = wide_ ? sizeof(unichar) : 1;
    void* room = std::realloc(external_ ? buffer_.units : nullptr, (capacity + 1) * unit);
    if (!room) throw std::bad_alloc();
    if (!external_) std::memcpy(room, near_, length_ * unit);
    buffer_ = {room, capacity};
    external_ = true;
}

void NSMutableString::widen() {
    if (wide_) return;
    if (!external_ && (length_ + 1) * sizeof(unichar) <= sizeof near_) {
        std::uint8_t narrow[sizeof near_];
        std::memcpy(narrow, near_, length_);
        detail::widenUnits(narrow, length_, reinterpret_cast<unichar*>(near_));
        wide_ = true;
        return;
    }
    const std::size_t capacity = std::max<std::size_t>(external_ ? buffer_.capacity : length_, 15);
    auto* room = static_cast<unichar*>(std::malloc((capacity + 1) * sizeof(unichar)));
    if (!room) throw std::bad_alloc();
    detail::widenUnits(units8(), length_, room);
    if (external_) std::free(buffer_.units);
    buffer_ = {room, capacity};
    external_ = true;
    wide_ = true;
}

/// Replaces a range that is known to be good.
void NSMutableString::splice(NSRange range, const NSString* s) {
    // A text may be put into itself: its units move under the copy, so they are taken aside first.
    Ref<NSString> aside;
    if (s == this) {
        aside = immutable();
        s = aside;
    }
    const std::size_t added = s ? s->length() : 0;
    if (added && !wide_ && s->_fastCharacterContents() && !detail::fitsLatin1(s->_fastCharacterContents(), added))
        widen();
    const std::size_t behind = length_ - NSMaxRange(range);
    reserve(length_ - range.length + added);
    const std::size_t unit = wide_ ? sizeof(unichar) : 1;
    char* at = static_cast<char*>(ownUnits()) + range.location * unit;
    if (behind && added != range.length) std::memmove(at + added * unit, at + range.length * unit, behind * unit);
    if (added) {
        if (wide_)
            s->getCharacters(reinterpret_cast<unichar*>(at));
        else if (const std::uint8_t* narrow = s->latin1Contents())
            std::memcpy(at, narrow, added);
        else
            detail::narrowUnits(s->_fastCharacterContents(), added, reinterpret_cast<std::uint8_t*>(at));
    }
    length_ = static_cast<std::uint32_t>(range.location + added + behind);
    unitsChanged();
}

void NSMutableString::appendString(const NSString* s) {
    if (!s) raiseNamed(NSInvalidArgumentException, "appendString: a text is needed");
    splice({length_, 0}, s);
}

void NSMutableString::append(std::u16string_view units) {
    if (units.empty()) return;
    if (!wide_ && !detail::fitsLatin1(units.data(), units.size())) widen();
    reserve(length_ + units.size());
    if (wide_)
        std::memcpy(static_cast<unichar*>(ownUnits()) + length_, units.data(), units.size() * sizeof(unichar));
    else
        detail::narrowUnits(units.data(), units.size(), static_cast<std::uint8_t*>(ownUnits()) + length_);
    length_ += static_cast<std::uint32_t>(units.size());
    unitsChanged();
}

void NSMutableString::appendLatin1(std::string_view bytes) {
    if (bytes.empty()) return;
    reserve(length_ + bytes.size());
    if (wide_)
        detail::widenUnits(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(),
                           static_cast<unichar*>(ownUnits()) + length_);
    else
        std::memcpy(static_cast<std::uint8_t*>(ownUnits()) + length_, bytes.data(), bytes.size());
    length_ += static_cast<std::uint32_t>(bytes.size());
    unitsChanged();
}

void NSMutableString::appendCharacter(unichar unit) {
    if (unit > 0xFF) widen();
    reserve(length_ + 1);
    if (wide_)
        static_cast<unichar*>(ownUnits())[length_++] = unit;
    else
        static_cast<std::uint8_t*>(ownUnits())[length_++] = static_cast<std::uint8_t>(unit);
    unitsChanged();
}

void NSMutableString::appendFormat(const NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    Ref<NSString> s = initWithFormat_arguments(format, arguments);
    va_end(arguments);
    appendString(s);
}

void NSMutableString::setString(const NSString* s) {
    if (s != this) splice({0, length_}, s);
}

void NSMutableString::insertString_atIndex(const NSString* s, NSUInteger index) {
    replaceCharactersInRange_withString({index, 0}, s);
}

void NSMutableString::deleteCharactersInRange(NSRange range) {
    checkRange(range);
    splice(range, nullptr);
}

void NSMutableString::replaceCharactersInRange_withString(NSRange range, const NSString* s) {
    checkRange(range);
    if (!s) raiseNamed(NSInvalidArgumentException, "replaceCharactersInRange:withString: a text is needed");
    splice(range, s);
}

NSUInteger NSMutableString::replaceOccurrencesOfString_withString_options_range(const NSString* s, const NSString* by,
                                                                                NSUInteger options, NSRange range) {
    checkRange(range);
    if (!s || !by) raiseNamed(NSInvalidArgumentException, "replaceOccurrencesOfString: texts are needed");
    NSUInteger count = 0;
    const Ref<NSString> replaced = replacing(s, by, options, range, count);
    if (count) setString(replaced);
    return count;
}

Ref<NSObject> NSMutableString::copyWithZone() const { return immutable(); }

void CFStringAppendCharacters(NSMutableString* s, const unichar* units, NSInteger count) {
    if (s && units && count > 0) s->append({units, static_cast<std::size_t>(count)});
}

} // namespace libvue
