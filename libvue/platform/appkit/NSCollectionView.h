#pragma once

#include <vector>

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A grid with one view for each object of its content, in rows from the top left corner. For short lists: every object
/// has its view all the time.
class LIBVUE_API NSCollectionView : public NSView {
public:
    static void describe(ClassDescription<NSCollectionView, NSView>& c);
    NSCollectionView();
    explicit NSCollectionView(const NSRect& frame);
    ~NSCollectionView() override;

    /// Observable as "content"; null for none. Kept as it is, not copied.
    [[nodiscard]] NSArray* content() const noexcept;
    virtual void setContent(NSArray* content);
    /// What each item takes, in points; columns are as many as fit. A width or height of 0 counts as 1.
    [[nodiscard]] NSSize minItemSize() const noexcept { return minItemSize_; }
    void setMinItemSize(NSSize size);
    [[nodiscard]] BOOL isSelectable() const noexcept { return selectable_; }
    void setSelectable(BOOL flag) noexcept { selectable_ = flag; }
    /// Observable as "selectionIndexes"; indexes beyond the content are left out.
    [[nodiscard]] NSIndexSet* selectionIndexes() const noexcept;
    virtual void setSelectionIndexes(NSIndexSet* indexes);

    /// The controller of a fresh item; the base makes a label with the object's description.
    [[nodiscard]] virtual Ref<NSViewController> newItemForRepresentedObject(NSObject* object);
    /// Null out of range.
    [[nodiscard]] NSViewController* itemAtIndex(NSUInteger i) const;
    /// Where it stands, or would stand, in bounds.
    [[nodiscard]] NSRect frameForItemAtIndex(NSUInteger i) const;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return selectable_; }
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;

private:
    [[nodiscard]] NSUInteger columns() const noexcept;
    void placeItems();

    Ref<NSArray> content_;
    std::vector<Ref<NSViewController>> items_;
    Ref<NSIndexSet> selection_;
    NSSize minItemSize_{100, 100};
    BOOL selectable_ = NO;
};

} // namespace libvue
