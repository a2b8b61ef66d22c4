#include <libvue/platform/foundation/NSIndexPath.h>

#include <algorithm>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {
const ClassRegistration<NSIndexPath> registration;
}

void NSIndexPath::describe(ClassDescription<NSIndexPath>&) {}

NSIndexPath::NSIndexPath(std::vector<NSUInteger> indexes) : indexes_(std::move(indexes)) {}

NSIndexPath::NSIndexPath(NSCoder& coder) {
    bool keyed = coder.allowsKeyedCoding();
    Ref<NSData> bytes = keyed ? coder.decodeBytesForKey(u"NS.indexes"_ns) : coder.decodeBytes();
    if (!bytes) return;
    std::string_view v = bytes->view();
    for (; v.size() >= 8; v.remove_prefix(8)) {
        NSUInteger i = 0;
        for (int k = 7; k >= 0; --k)
            i = i << 8 | static_cast<unsigned char>(v[static_cast<std::size_t>(k)]);
        indexes_.push_back(i);
    }
}

Ref<NSIndexPath> NSIndexPath::indexPathWithIndex(NSUInteger i) { return indexPathWithIndexes({i}); }
Ref<NSIndexPath> NSIndexPath::indexPathWithIndexes(std::initializer_list<NSUInteger> indexes) {
    return make<NSIndexPath>(std::vector<NSUInteger>(indexes));
}
Ref<NSIndexPath> NSIndexPath::indexPathForItem_inSection(NSUInteger item, NSUInteger section) {
    return indexPathWithIndexes({section, item});
}

NSUInteger NSIndexPath::indexAtPosition(NSUInteger position) const noexcept {
    return position < indexes_.size() ? indexes_[position] : static_cast<NSUInteger>(NSNotFound);
}

Ref<NSIndexPath> NSIndexPath::indexPathByAddingIndex(NSUInteger i) const {
    auto longer = indexes_;
    longer.push_back(i);
    return make<NSIndexPath>(std::move(longer));
}

Ref<NSIndexPath> NSIndexPath::indexPathByRemovingLastIndex() const {
    auto shorter = indexes_;
    if (!shorter.empty()) shorter.pop_back();
    return make<NSIndexPath>(std::move(shorter));
}

NSComparisonResult NSIndexPath::compare(const NSIndexPath* p) const noexcept {
    static const std::vector<NSUInteger> none;
    const auto& other = p ? p->indexes_ : none;
    if (indexes_ == other) return NSOrderedSame;
    return std::lexicographical_compare(indexes_.begin(), indexes_.end(), other.begin(), other.end())
               ? NSOrderedAscending
               : NSOrderedDescending;
}

BOOL NSIndexPath::isEqual(const NSObject* other) const {
    auto* p = dynamic_cast<const NSIndexPath*>(other);
    return p && p->indexes_ == indexes_;
}

NSUInteger NSIndexPath::hash() const {
    NSUInteger h = indexes_.size();
    for (NSUInteger i : indexes_)
        h = h * 31 + i;
    return h;
}

Ref<NSString> NSIndexPath::description() const {
    StringBuilder b;
    b.append('[');
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        if (i) b.append(", ");
        b.appendUnsigned(indexes_[i]);
    }
    b.append(']');
    return b.build();
}

Ref<NSObject> NSIndexPath::copyWithZone() const { return Ref<NSObject>(const_cast<NSIndexPath*>(this)); }

void NSIndexPath::encodeWithCoder(NSCoder& coder) const {
    std::string bytes;
    for (NSUInteger i : indexes_)
        for (int k = 0; k < 8; ++k)
            bytes.push_back(static_cast<char>(i >> (8 * k)));
    if (coder.allowsKeyedCoding())
        coder.encodeBytes_length_forKey(bytes.data(), bytes.size(), u"NS.indexes"_ns);
    else
        coder.encodeBytes_length(bytes.data(), bytes.size());
}

} // namespace libvue
