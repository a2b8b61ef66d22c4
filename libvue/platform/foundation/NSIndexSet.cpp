#include <libvue/platform/foundation/NSIndexSet.h>

#include <algorithm>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

const ClassRegistration<NSIndexSet> registration;
const ClassRegistration<NSMutableIndexSet> mutableRegistration;

constexpr auto notFound = static_cast<NSUInteger>(NSNotFound);

/// The first range that ends behind `i`.
auto endingBehind(const std::vector<NSRange>& ranges, NSUInteger i) noexcept {
    return std::upper_bound(ranges.begin(), ranges.end(), i,
                            [](NSUInteger index, NSRange r) { return index < NSMaxRange(r); });
}

} // namespace

void NSIndexSet::describe(ClassDescription<NSIndexSet>&) {}

NSIndexSet::NSIndexSet(NSCoder& coder) {
    bool keyed = coder.allowsKeyedCoding();
    auto text = keyed ? coder.decodeObjectOf_forKey<NSString>(u"NS.ranges"_ns) : coder.decodeObjectOf<NSString>();
    if (!text) return;
    // "first+length first+length …"
    NSUInteger field[2] = {0, 0};
    int at = 0;
    bool any = false;
    auto flush = [&] {
        constexpr NSUInteger most = notFound;
        if (any && at == 1 && field[1] > 0 && field[0] < most && field[1] <= most - field[0]) add({field[0], field[1]});
        field[0] = field[1] = 0;
        at = 0;
        any = false;
    };
    for (NSUInteger i = 0; i < text->length(); ++i) {
        unichar c = text->unit(i);
        if (c >= '0' && c <= '9') {
            any = true;
            field[at] = field[at] > notFound / 10 ? notFound : field[at] * 10 + (c - u'0');
        } else if (c == '+')
            at = 1;
        else
            flush();
    }
    flush();
}

NSIndexSet::~NSIndexSet() = default;

Ref<NSIndexSet> NSIndexSet::indexSet() { return make<NSIndexSet>(); }
Ref<NSIndexSet> NSIndexSet::indexSetWithIndex(NSUInteger i) { return indexSetWithIndexesInRange({i, 1}); }
Ref<NSIndexSet> NSIndexSet::indexSetWithIndexesInRange(NSRange range) {
    auto s = make<NSIndexSet>();
    s->add(range);
    return s;
}
Ref<NSIndexSet> NSIndexSet::indexSetWithIndexSet(const NSIndexSet* other) {
    auto s = make<NSIndexSet>();
    if (other) s->ranges_ = other->ranges_;
    return s;
}

NSUInteger NSIndexSet::count() const noexcept {
    NSUInteger n = 0;
    for (NSRange r : ranges_)
        n += r.length;
    return n;
}

NSUInteger NSIndexSet::firstIndex() const noexcept { return ranges_.empty() ? notFound : ranges_.front().location; }
NSUInteger NSIndexSet::lastIndex() const noexcept {
    return ranges_.empty() ? notFound : NSMaxRange(ranges_.back()) - 1;
}

NSUInteger NSIndexSet::indexGreaterThanIndex(NSUInteger i) const noexcept {
    return i >= notFound ? notFound : indexGreaterThanOrEqualToIndex(i + 1);
}

NSUInteger NSIndexSet::indexGreaterThanOrEqualToIndex(NSUInteger i) const noexcept {
    auto r = endingBehind(ranges_, i);
    return r == ranges_.end() ? notFound : std::max(i, r->location);
}

NSUInteger NSIndexSet::indexLessThanIndex(NSUInteger i) const noexcept {
    return i == 0 ? notFound : indexLessThanOrEqualToIndex(i - 1);
}

NSUInteger NSIndexSet::indexLessThanOrEqualToIndex(NSUInteger i) const noexcept {
    auto r = endingBehind(ranges_, i);
    if (r != ranges_.end() && r->location <= i) return i;
    return r == ranges_.begin() ? notFound : NSMaxRange(*std::prev(r)) - 1;
}

BOOL NSIndexSet::containsIndex(NSUInteger i) const noexcept { return containsIndexesInRange({i, 1}); }

BOOL NSIndexSet::containsIndexesInRange(NSRange range) const noexcept {
    if (range.length == 0) return YES;
    auto r = endingBehind(ranges_, range.location);
    return r != ranges_.end() && r->location <= range.location &&
           range.length <= r->length - (range.location - r->location);
}

NSUInteger NSIndexSet::countOfIndexesInRange(NSRange range) const noexcept {
    NSUInteger n = 0;
    for (auto r = endingBehind(ranges_, range.location); r != ranges_.end(); ++r) {
        NSUInteger common = NSIntersectionRange(*r, range).length;
        if (common == 0) break;
        n += common;
    }
    return n;
}

BOOL NSIndexSet::isEqualToIndexSet(const NSIndexSet* s) const noexcept { return s && ranges_ == s->ranges_; }

BOOL NSIndexSet::isEqual(const NSObject* other) const {
    return isEqualToIndexSet(dynamic_cast<const NSIndexSet*>(other));
}
NSUInteger NSIndexSet::hash() const { return count() * 31 + (ranges_.empty() ? 0 : firstIndex()); }

Ref<NSString> NSIndexSet::description() const {
    StringBuilder b;
    for (NSRange r : ranges_) {
        b.append(b.isEmpty() ? "[" : ", ");
        b.appendUnsigned(r.location);
        if (r.length == 1) continue;
        b.append('-');
        b.appendUnsigned(NSMaxRange(r) - 1);
    }
    b.append(ranges_.empty() ? "[]" : "]");
    return b.build();
}

Ref<NSObject> NSIndexSet::copyWithZone() const { return Ref<NSObject>(const_cast<NSIndexSet*>(this)); }

Ref<NSObject> NSIndexSet::mutableCopyWithZone() const {
    auto s = NSMutableIndexSet::indexSet();
    s->addIndexes(this);
    return s;
}

void NSIndexSet::encodeWithCoder(NSCoder& coder) const {
    StringBuilder b;
    for (NSRange r : ranges_) {
        if (!b.isEmpty()) b.append(' ');
        b.appendUnsigned(r.location);
        b.append('+');
        b.appendUnsigned(r.length);
    }
    auto text = b.build();
    if (coder.allowsKeyedCoding())
        coder.encodeObject_forKey(text, u"NS.ranges"_ns);
    else
        coder.encodeObject(text);
}

void NSIndexSet::add(NSRange range) {
    if (range.length == 0) return;
    if (range.location >= notFound || range.length > notFound - range.location)
        raiseNamed(NSRangeException, "an index set holds indexes below NSNotFound");
    NSUInteger from = range.location, to = NSMaxRange(range);
    if (ranges_.empty() || from > NSMaxRange(ranges_.back())) {
        ranges_.push_back(range);
        return;
    }
    // What overlaps or touches melts into one.
    auto first = std::lower_bound(ranges_.begin(), ranges_.end(), from,
                                  [](NSRange r, NSUInteger i) { return NSMaxRange(r) < i; });
    auto last = first;
    for (; last != ranges_.end() && last->location <= to; ++last) {
        from = std::min(from, last->location);
        to = std::max(to, NSMaxRange(*last));
    }
    if (first == last)
        ranges_.insert(first, range);
    else {
        *first = {from, to - from};
        ranges_.erase(first + 1, last);
    }
}

void NSIndexSet::remove(NSRange range) {
    if (range.length == 0) return;
    NSUInteger from = range.location;
    NSUInteger to = range.length > notFound - std::min(from, notFound) ? notFound : NSMaxRange(range);
    auto first = std::upper_bound(ranges_.begin(), ranges_.end(), from,
                                  [](NSUInteger i, NSRange r) { return i < NSMaxRange(r); });
    auto last = first;
    while (last != ranges_.end() && last->location < to)
        ++last;
    if (first == last) return;
    NSRange before{first->location, from > first->location ? from - first->location : 0};
    NSUInteger end = NSMaxRange(*std::prev(last));
    NSRange behind{to, end > to ? end - to : 0};
    auto at = ranges_.erase(first, last);
    if (behind.length) at = ranges_.insert(at, behind);
    if (before.length) ranges_.insert(at, before);
}

void NSMutableIndexSet::describe(ClassDescription<NSMutableIndexSet, NSIndexSet>&) {}
Ref<NSMutableIndexSet> NSMutableIndexSet::indexSet() { return make<NSMutableIndexSet>(); }

void NSMutableIndexSet::addIndexes(const NSIndexSet* s) {
    if (!s || s == this) return;
    for (NSRange r : s->ranges())
        add(r);
}

void NSMutableIndexSet::shiftIndexesStartingAtIndex_by(NSUInteger from, NSInteger delta) {
    if (delta == 0) return;
    NSUInteger distance = delta < 0 ? 0 - static_cast<NSUInteger>(delta) : static_cast<NSUInteger>(delta);
    if (delta > 0 && !ranges_.empty() && NSMaxRange(ranges_.back()) > from &&
        distance > notFound - NSMaxRange(ranges_.back()))
        raiseNamed(NSRangeException, "an index set holds indexes below NSNotFound");
    auto old = std::move(ranges_);
    ranges_.clear();
    NSUInteger keptBelow = delta < 0 ? from - std::min(from, distance) : from;
    for (NSRange r : old) {
        NSUInteger end = NSMaxRange(r);
        if (r.location < keptBelow) add({r.location, std::min(end, keptBelow) - r.location});
        if (end <= from) continue;
        NSUInteger start = std::max(r.location, from);
        if (delta > 0)
            add({start + distance, end - start});
        else if (end > distance) {
            NSUInteger low = start > distance ? start - distance : 0;
            add({low, end - distance - low});
        }
    }
}

Ref<NSObject> NSMutableIndexSet::copyWithZone() const { return NSIndexSet::indexSetWithIndexSet(this); }

} // namespace libvue
