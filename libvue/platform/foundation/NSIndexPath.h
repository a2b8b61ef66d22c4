#pragma once

#include <initializer_list>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A path of indexes into nested lists. Immutable.
class LIBVUE_API NSIndexPath : public NSObject {
public:
    static void describe(ClassDescription<NSIndexPath>& c);
    NSIndexPath() = default;
    explicit NSIndexPath(std::vector<NSUInteger> indexes);
    explicit NSIndexPath(NSCoder& coder);

    [[nodiscard]] static Ref<NSIndexPath> indexPathWithIndex(NSUInteger i);
    [[nodiscard]] static Ref<NSIndexPath> indexPathWithIndexes(std::initializer_list<NSUInteger> indexes);
    [[nodiscard]] static Ref<NSIndexPath> indexPathForItem_inSection(NSUInteger item, NSUInteger section);

    [[nodiscard]] NSUInteger length() const noexcept { return indexes_.size(); }
    /// NSNotFound beyond the end.
    [[nodiscard]] NSUInteger indexAtPosition(NSUInteger position) const noexcept;
    [[nodiscard]] NSUInteger section() const noexcept { return indexAtPosition(0); }
    [[nodiscard]] NSUInteger item() const noexcept { return indexAtPosition(1); }
    [[nodiscard]] Ref<NSIndexPath> indexPathByAddingIndex(NSUInteger i) const;
    [[nodiscard]] Ref<NSIndexPath> indexPathByRemovingLastIndex() const;
    /// Level by level; a path comes before those that go on from it.
    [[nodiscard]] NSComparisonResult compare(const NSIndexPath* p) const noexcept;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    std::vector<NSUInteger> indexes_;
};

} // namespace libvue
