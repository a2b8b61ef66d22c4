#include <libvue/platform/foundation/NSData.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <string>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

const ClassRegistration<NSData> registration;
const ClassRegistration<NSMutableData> mutableRegistration;

void* allocateBytes(NSUInteger length) {
    void* room = std::malloc(std::max<NSUInteger>(length, 1));
    if (!room) throw std::bad_alloc();
    return room;
}

constexpr const char* archiveKey = "NS.data";

} // namespace

void NSData::describe(ClassDescription<NSData>&) {}

NSData::~NSData() {
    if (owned_) std::free(bytes_);
}

NSData::NSData(NSCoder& coder) {
    const Ref<NSData> other =
        coder.allowsKeyedCoding() ? coder.decodeBytesForKey(NSString::fromLatin1(archiveKey)) : coder.decodeBytes();
    if (!other || other->length() == 0) return;
    bytes_ = allocateBytes(other->length());
    length_ = other->length();
    std::memcpy(bytes_, other->bytes(), length_);
}

void NSData::encodeWithCoder(NSCoder& coder) const {
    if (coder.allowsKeyedCoding())
        coder.encodeBytes_length_forKey(bytes_, length_, NSString::fromLatin1(archiveKey));
    else
        coder.encodeBytes_length(bytes_, length_);
}

Ref<NSData> NSData::data() { return make<NSData>(); }

Ref<NSData> NSData::dataWithData(const NSData* other) {
    return other ? dataWithBytes_length(other->bytes_, other->length_) : data();
}

Ref<NSData> NSData::dataWithBytes_length(const void* bytes, NSUInteger length) {
    Ref<NSData> d = make<NSData>();
    if (!bytes || length == 0) return d;
    d->bytes_ = allocateBytes(length);
    d->length_ = length;
    std::memcpy(d->bytes_, bytes, length);
    return d;
}

Ref<NSData> NSData::dataWithBytesNoCopy_length_freeWhenDone(void* bytes, NSUInteger length, BOOL freeWhenDone) {
    Ref<NSData> d = make<NSData>();
    d->bytes_ = bytes;
    d->length_ = bytes ? length : 0;
    d->owned_ = freeWhenDone;
    return d;
}

Ref<NSData> NSData::from(std::string_view bytes) { return dataWithBytes_length(bytes.data(), bytes.size()); }

void NSData::checkRange(NSRange range) const {
    if (range.location > length_ || range.length > length_ - range.location)
        raiseNamed(NSRangeException, "range {" + std::to_string(range.location) + ", " + std::to_string(range.length) +
                                         "} is out of data of " + std::to_string(length_) + " bytes");
}

void NSData::getBytes_range(void* buffer, NSRange range) const {
    checkRange(range);
    if (range.length) std::memcpy(buffer, static_cast<const char*>(bytes_) + range.location, range.length);
}

void NSData::getBytes_length(void* buffer, NSUInteger length) const {
    getBytes_range(buffer, {0, std::min(length, length_)});
}

Ref<NSData> NSData::subdataWithRange(NSRange range) const {
    checkRange(range);
    return from(view().substr(range.location, range.length));
}

NSRange NSData::rangeOfData_options_range(const NSData* part, NSUInteger options, NSRange range) const {
    checkRange(range);
    const NSRange notFound{static_cast<NSUInteger>(NSNotFound), 0};
    if (!part || part->length_ == 0 || part->length_ > range.length) return notFound;
    const std::string_view all = view().substr(range.location, range.length), what = part->view();
    const bool backwards = options & NSBackwardsSearch;
    if (options & NSAnchoredSearch) {
        if (backwards ? !all.ends_with(what) : !all.starts_with(what)) return notFound;
        return {backwards ? NSMaxRange(range) - what.size() : range.location, what.size()};
    }
    const std::size_t at = backwards ? all.rfind(what) : all.find(what);
    return at == all.npos ? notFound : NSRange{range.location + at, what.size()};
}

BOOL NSData::isEqualToData(const NSData* other) const noexcept { return other && view() == other->view(); }

BOOL NSData::isEqual(const NSObject* other) const {
    return other == this || isEqualToData(dynamic_cast<const NSData*>(other));
}

NSUInteger NSData::hash() const { return std::hash<std::string_view>()(view()); }

Ref<NSString> NSData::description() const {
    static constexpr char hex[] = "0123456789abcdef";
    StringBuilder out(length_ * 9 / 4 + 2);
    out.append('<');
    for (NSUInteger i = 0; i < length_; ++i) {
        if (i && i % 4 == 0) out.append(' ');
        const auto byte = static_cast<const unsigned char*>(bytes_)[i];
        out.append(hex[byte >> 4]);
        out.append(hex[byte & 15]);
    }
    out.append('>');
    return out.build();
}

Ref<NSObject> NSData::copyWithZone() const { return const_cast<NSData*>(this); }
Ref<NSObject> NSData::mutableCopyWithZone() const { return make<NSMutableData>(this); }

// Mutable

void NSMutableData::describe(ClassDescription<NSMutableData, NSData>&) {}

NSMutableData::NSMutableData(NSCoder& coder) : NSData(coder), capacity_(length_) {}

NSMutableData::NSMutableData(const NSData* other) { setData(other); }

Ref<NSMutableData> NSMutableData::data() { return make<NSMutableData>(); }

Ref<NSMutableData> NSMutableData::dataWithCapacity(NSUInteger capacity) {
    // A hint that is out of all proportion is no reason to fail.
    constexpr NSUInteger mostReserved = 1u << 24;
    Ref<NSMutableData> d = make<NSMutableData>();
    d->reserve(std::min(capacity, mostReserved));
    return d;
}

Ref<NSMutableData> NSMutableData::dataWithLength(NSUInteger length) {
    Ref<NSMutableData> d = make<NSMutableData>();
    d->setLength(length);
    return d;
}

void NSMutableData::reserve(NSUInteger capacity) {
    if (capacity <= capacity_) return;
    if (capacity > static_cast<NSUInteger>(std::numeric_limits<std::ptrdiff_t>::max()))
        raiseNamed(NSInvalidArgumentException, "data are too long");
    capacity = std::max(capacity, capacity_ + capacity_ / 2 + 16);
    void* room = std::realloc(bytes_, capacity);
    if (!room) throw std::bad_alloc();
    bytes_ = room;
    capacity_ = capacity;
}

void NSMutableData::setLength(NSUInteger length) {
    if (length > length_) {
        reserve(length);
        std::memset(static_cast<char*>(bytes_) + length_, 0, length - length_);
    }
    length_ = length;
}

void NSMutableData::increaseLengthBy(NSUInteger extra) {
    if (extra > std::numeric_limits<NSUInteger>::max() - length_)
        raiseNamed(NSInvalidArgumentException, "data are too long");
    setLength(length_ + extra);
}

void NSMutableData::appendBytes_length(const void* bytes, NSUInteger length) {
    replaceBytesInRange_withBytes_length({length_, 0}, bytes, length);
}

void NSMutableData::appendData(const NSData* other) {
    if (other) appendBytes_length(other->bytes(), other->length());
}

void NSMutableData::setData(const NSData* other) {
    if (other != this)
        replaceBytesInRange_withBytes_length({0, length_}, other ? other->bytes() : nullptr,
                                             other ? other->length() : 0);
}

void NSMutableData::replaceBytesInRange_withBytes(NSRange range, const void* bytes) {
    if (range.location > length_) checkRange(range);
    replaceBytesInRange_withBytes_length({range.location, std::min(range.length, length_ - range.location)}, bytes,
                                         range.length);
}

void NSMutableData::replaceBytesInRange_withBytes_length(NSRange range, const void* bytes, NSUInteger length) {
    checkRange(range);
    if (length > std::numeric_limits<NSUInteger>::max() - length_)
        raiseNamed(NSInvalidArgumentException, "data are too long");
    // Own bytes move under the copy, so they are taken aside first.
    const char* from = static_cast<const char*>(bytes);
    const char* own = static_cast<const char*>(bytes_);
    std::string aside;
    if (from && own && length && !std::less<>()(from, own) && std::less<>()(from, own + capacity_)) {
        aside.assign(from, length);
        from = aside.data();
    }
    const NSUInteger behind = length_ - NSMaxRange(range);
    reserve(length_ - range.length + length);
    char* at = static_cast<char*>(bytes_) + range.location;
    if (behind) std::memmove(at + length, at + range.length, behind);
    if (length && from)
        std::copy_n(from, length, at);
    else
        std::fill_n(at, length, '\0');
    length_ = range.location + length + behind;
}

void NSMutableData::resetBytesInRange(NSRange range) {
    checkRange(range);
    if (range.length) std::memset(static_cast<char*>(bytes_) + range.location, 0, range.length);
}

Ref<NSObject> NSMutableData::copyWithZone() const { return dataWithBytes_length(bytes_, length_); }

} // namespace libvue
