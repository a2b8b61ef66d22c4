#include <libvue/platform/foundation/NSCharacterSet.h>

#include <algorithm>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

const ClassRegistration<NSCharacterSet> registration;
const ClassRegistration<NSMutableCharacterSet> mutableRegistration;

constexpr std::uint32_t codePoints = 0x110000;

using Turns = std::vector<std::uint32_t>;

Turns turnsOfRange(NSRange range) {
    if (range.location > codePoints || range.length > codePoints - range.location)
        raiseNamed(NSInvalidArgumentException, "a character range reaches beyond U+10FFFF");
    if (range.length == 0) return {};
    const auto from = static_cast<std::uint32_t>(range.location);
    return {from, from + static_cast<std::uint32_t>(range.length)};
}

Turns turnsOfString(const NSString* s) {
    Turns points;
    if (!s) return points;
    const detail::WideUnits units(*s);
    for (std::size_t i = 0; i < units.size();)
        points.push_back(detail::nextCodePoint(units.data(), units.size(), i));
    std::sort(points.begin(), points.end());
    Turns turns;
    for (const std::uint32_t c : points) {
        if (!turns.empty() && c < turns.back()) continue;
        if (!turns.empty() && c == turns.back())
            turns.back() = c + 1;
        else {
            turns.push_back(c);
            turns.push_back(c + 1);
        }
    }
    return turns;
}

Turns inverted(const Turns& turns) {
    Turns out;
    out.reserve(turns.size() + 2);
    if (turns.empty() || turns.front() != 0) out.push_back(0);
    out.insert(out.end(), turns.begin() + (turns.empty() || turns.front() != 0 ? 0 : 1), turns.end());
    if (!out.empty() && out.back() == codePoints)
        out.pop_back();
    else
        out.push_back(codePoints);
    return out;
}

enum class Combination { both, either };

/// The union or the intersection: a point is in it when one, or both, of the sets hold it.
Turns combined(const Turns& a, const Turns& b, Combination combination) {
    Turns out;
    out.reserve(a.size() + b.size());
    const std::size_t needed = combination == Combination::either ? 1 : 2;
    std::size_t i = 0, k = 0;
    bool in = false;
    while (i < a.size() || k < b.size()) {
        const std::uint32_t at = std::min(i < a.size() ? a[i] : codePoints + 1, k < b.size() ? b[k] : codePoints + 1);
        while (i < a.size() && a[i] == at)
            ++i;
        while (k < b.size() && b[k] == at)
            ++k;
        if ((i % 2 + k % 2 >= needed) != in) {
            in = !in;
            out.push_back(at);
        }
    }
    return out;
}

} // namespace

void NSCharacterSet::describe(ClassDescription<NSCharacterSet>&) {}
void NSMutableCharacterSet::describe(ClassDescription<NSMutableCharacterSet, NSCharacterSet>&) {}

NSCharacterSet::NSCharacterSet() = default;
NSCharacterSet::NSCharacterSet(Turns turns) : turns_(std::move(turns)) { fillLatin(); }
NSCharacterSet::~NSCharacterSet() = default;

Ref<NSCharacterSet> NSCharacterSet::ofTurns(Turns turns) {
    (void)classOf<NSCharacterSet>();
    return adopt(new NSCharacterSet(std::move(turns)));
}

void NSCharacterSet::setTurns(Turns turns) {
    turns_ = std::move(turns);
    plane_.reset();
    fillLatin();
}

BOOL NSCharacterSet::find(std::uint32_t c) const noexcept {
    const auto behind = std::upper_bound(turns_.begin(), turns_.end(), c);
    return ((behind - turns_.begin()) & 1) != 0;
}

void NSCharacterSet::fillLatin() noexcept {
    latin_ = {};
    for (std::size_t i = 0; i + 1 < turns_.size() && turns_[i] < 256; i += 2)
        for (std::uint32_t c = turns_[i]; c < std::min(turns_[i + 1], 256u); ++c)
            latin_[c >> 6] |= std::uint64_t{1} << (c & 63);
}

BOOL NSCharacterSet::wideIsMember(unichar c) const {
    // A few ranges are found as fast as a bit.
    if (turns_.size() <= 8) return find(c);
    if (!plane_) {
        plane_ = std::make_unique<Bits>();
        for (std::size_t i = 0; i + 1 < turns_.size() && turns_[i] < 0x10000; i += 2)
            for (std::uint32_t p = turns_[i]; p < std::min(turns_[i + 1], 0x10000u); ++p)
                (*plane_)[p >> 6] |= std::uint64_t{1} << (p & 63);
    }
    return ((*plane_)[c >> 6] >> (c & 63) & 1) != 0;
}

BOOL NSCharacterSet::longCharacterIsMember(char32_t c) const {
    return c < 0x10000 ? characterIsMember(static_cast<unichar>(c)) : find(c);
}

BOOL NSCharacterSet::isSupersetOfSet(const NSCharacterSet* other) const {
    return !other || combined(turns_, other->turns_, Combination::both) == other->turns_;
}

BOOL NSCharacterSet::hasMemberInPlane(std::uint8_t plane) const noexcept {
    const std::uint32_t from = std::uint32_t{plane} << 16;
    if (plane > 16) return NO;
    const auto behind = std::upper_bound(turns_.begin(), turns_.end(), from);
    return ((behind - turns_.begin()) & 1) != 0 || (behind != turns_.end() && *behind < from + 0x10000);
}

Ref<NSCharacterSet> NSCharacterSet::characterSetWithCharactersInString(const NSString* s) {
    return ofTurns(turnsOfString(s));
}

Ref<NSCharacterSet> NSCharacterSet::characterSetWithRange(NSRange range) { return ofTurns(turnsOfRange(range)); }

Ref<NSCharacterSet> NSCharacterSet::invertedSet() const { return ofTurns(inverted(turns_)); }

BOOL NSCharacterSet::isEqual(const NSObject* other) const {
    if (other == this) return YES;
    const auto* set = dynamic_cast<const NSCharacterSet*>(other);
    return set && set->turns_ == turns_;
}

NSUInteger NSCharacterSet::hash() const {
    NSUInteger h = turns_.size();
    for (const std::uint32_t c : turns_)
        h = h * 1000003 + c;
    return h;
}

Ref<NSObject> NSCharacterSet::copyWithZone() const { return const_cast<NSCharacterSet*>(this); }
Ref<NSObject> NSCharacterSet::mutableCopyWithZone() const { return make<NSMutableCharacterSet>(this); }

NSMutableCharacterSet::NSMutableCharacterSet(const NSCharacterSet* other) { formUnionWithCharacterSet(other); }

Ref<NSMutableCharacterSet> NSMutableCharacterSet::characterSetWithCharactersInString(const NSString* s) {
    Ref<NSMutableCharacterSet> set = make<NSMutableCharacterSet>();
    set->addCharactersInString(s);
    return set;
}

Ref<NSMutableCharacterSet> NSMutableCharacterSet::characterSetWithRange(NSRange range) {
    Ref<NSMutableCharacterSet> set = make<NSMutableCharacterSet>();
    set->addCharactersInRange(range);
    return set;
}

void NSMutableCharacterSet::addCharactersInString(const NSString* s) {
    setTurns(combined(turns(), turnsOfString(s), Combination::either));
}

void NSMutableCharacterSet::removeCharactersInString(const NSString* s) {
    setTurns(combined(turns(), inverted(turnsOfString(s)), Combination::both));
}

void NSMutableCharacterSet::addCharactersInRange(NSRange range) {
    setTurns(combined(turns(), turnsOfRange(range), Combination::either));
}

void NSMutableCharacterSet::removeCharactersInRange(NSRange range) {
    setTurns(combined(turns(), inverted(turnsOfRange(range)), Combination::both));
}

void NSMutableCharacterSet::formUnionWithCharacterSet(const NSCharacterSet* other) {
    if (other) setTurns(combined(turns(), turnsOf(*other), Combination::either));
}

void NSMutableCharacterSet::formIntersectionWithCharacterSet(const NSCharacterSet* other) {
    setTurns(other ? combined(turns(), turnsOf(*other), Combination::both) : Turns());
}

void NSMutableCharacterSet::invert() { setTurns(inverted(turns())); }

Ref<NSObject> NSMutableCharacterSet::copyWithZone() const { return ofTurns(turns()); }

} // namespace libvue
