#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A plain value as an object: geometry, a pointer, an object that is not kept. Immutable.
///
/// Asking for another kind than the one that is held gives zeros.
class LIBVUE_API NSValue : public NSObject {
public:
    static void describe(ClassDescription<NSValue>& c);

    /// What a value or number holds, in the eight bits of NSObject.
    enum class Kind : std::uint8_t {
        none,
        point,
        size,
        rect,
        range,
        pointer,
        nonretainedObject,
        boolean,
        int8,
        uint8,
        int16,
        uint16,
        int32,
        uint32,
        int64,
        uint64,
        float32,
        float64,
        decimal
    };

    [[nodiscard]] static Ref<NSValue> valueWithPoint(NSPoint v);
    [[nodiscard]] static Ref<NSValue> valueWithSize(NSSize v);
    [[nodiscard]] static Ref<NSValue> valueWithRect(const NSRect& v);
    [[nodiscard]] static Ref<NSValue> valueWithRange(NSRange v);
    [[nodiscard]] static Ref<NSValue> valueWithPointer(const void* v);
    /// The object is neither kept nor watched.
    [[nodiscard]] static Ref<NSValue> valueWithNonretainedObject(NSObject* v);

    [[nodiscard]] NSPoint pointValue() const noexcept;
    [[nodiscard]] NSSize sizeValue() const noexcept;
    [[nodiscard]] NSRect rectValue() const noexcept;
    [[nodiscard]] NSRange rangeValue() const noexcept;
    [[nodiscard]] void* pointerValue() const noexcept;
    [[nodiscard]] NSObject* nonretainedObjectValue() const noexcept;

    /// The type's encoding: "{NSRect={NSPoint=dd}{NSSize=dd}}", "^v", "@", for numbers one letter.
    [[nodiscard]] virtual const char* objCType() const noexcept;
    [[nodiscard]] BOOL isEqualToValue(const NSValue* v) const { return isEqual(v); }
    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// The value in an archive, or null.
    [[nodiscard]] static Ref<NSValue> initWithCoder(NSCoder& coder);

protected:
    NSValue() noexcept = default;
    /// The three bits above are the subclass's.
    static constexpr std::uint8_t kindBits = 0x1F;
    [[nodiscard]] Kind kind() const noexcept { return static_cast<Kind>(tag() & kindBits); }

private:
    template <class T, Kind k> class Holding;
    template <class T, Kind k> [[nodiscard]] T held() const noexcept;
};

} // namespace libvue
