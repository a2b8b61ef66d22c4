#include <libvue/platform/appkit/NSCollectionView.h>

#include <algorithm>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

namespace libvue {

namespace {
const ClassRegistration<NSCollectionView> registration;
constexpr CGFloat kLabelMargin = 4;
} // namespace

void NSCollectionView::describe(ClassDescription<NSCollectionView, NSView>& c) {
    c.key<&NSCollectionView::content, &NSCollectionView::setContent>("content");
    c.key<&NSCollectionView::minItemSize, &NSCollectionView::setMinItemSize>("minItemSize");
    c.key<&NSCollectionView::isSelectable, &NSCollectionView::setSelectable>("selectable");
    c.key<&NSCollectionView::selectionIndexes, &NSCollectionView::setSelectionIndexes>("selectionIndexes");
}

NSCollectionView::NSCollectionView() : NSCollectionView(NSZeroRect) {}
NSCollectionView::NSCollectionView(const NSRect& frame) : NSView(frame), selection_(make<NSIndexSet>()) {}
NSCollectionView::~NSCollectionView() = default;

NSArray* NSCollectionView::content() const noexcept { return content_; }
NSIndexSet* NSCollectionView::selectionIndexes() const noexcept { return selection_; }

void NSCollectionView::setContent(NSArray* content) {
    const Ref<NSCollectionView> self(this);
    const Ref<NSArray> objects(content);
    willChangeValueForKey(u"content"_ns);
    content_ = objects;
    for (const auto& item : std::exchange(items_, {}))
        item->view()->removeFromSuperview();
    const NSUInteger count = objects ? objects->count() : 0;
    for (NSUInteger i = 0; i < count && i < objects->count(); ++i) {
        const Ref<NSObject> object(objects->objectAtIndex(i));
        const Ref<NSViewController> item = newItemForRepresentedObject(object);
        if (!item || !item->view()) continue;
        item->setRepresentedObject(object);
        items_.push_back(item);
        addSubview(item->view());
    }
    placeItems();
    setSelectionIndexes(make<NSIndexSet>());
    didChangeValueForKey(u"content"_ns);
}

void NSCollectionView::setMinItemSize(NSSize size) {
    minItemSize_ = size;
    placeItems();
}

void NSCollectionView::setSelectionIndexes(NSIndexSet* indexes) {
    const Ref<NSCollectionView> self(this);
    const Ref<NSMutableIndexSet> held = make<NSMutableIndexSet>();
    for (NSUInteger i = 0; indexes && i < items_.size(); ++i)
        if (indexes->containsIndex(i)) held->addIndex(i);
    willChangeValueForKey(u"selectionIndexes"_ns);
    selection_ = held;
    setNeedsDisplay(YES);
    didChangeValueForKey(u"selectionIndexes"_ns);
}

Ref<NSViewController> NSCollectionView::newItemForRepresentedObject(NSObject* object) {
    Ref<NSViewController> item = make<NSViewController>();
    const Ref<NSTextField> label =
        NSTextField::labelWithString(object ? object->description() : NSString::stringWithString(u""_ns));
    const Ref<NSView> view = make<NSView>(NSMakeRect(0, 0, 100, label->frame().size.height + 2 * kLabelMargin));
    label->setFrame(NSInsetRect(view->bounds(), kLabelMargin, kLabelMargin));
    label->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
    view->addSubview(label);
    item->setView(view);
    return item;
}

NSViewController* NSCollectionView::itemAtIndex(NSUInteger i) const {
    return i < items_.size() ? items_[i].get() : nullptr;
}

NSUInteger NSCollectionView::columns() const noexcept {
    const CGFloat fit = bounds().size.width / std::max(1.0, minItemSize_.width);
    return fit >= 1 && fit < 1e6 ? static_cast<NSUInteger>(fit) : 1;
}

NSRect NSCollectionView::frameForItemAtIndex(NSUInteger i) const {
    const NSSize s{std::max(1.0, minItemSize_.width), std::max(1.0, minItemSize_.height)};
    const NSUInteger row = i / columns(), column = i % columns();
    return {{static_cast<CGFloat>(column) * s.width, static_cast<CGFloat>(row) * s.height}, s};
}

void NSCollectionView::placeItems() {
    const std::vector<Ref<NSViewController>> items = items_;
    for (NSUInteger i = 0; i < items.size(); ++i)
        items[i]->view()->setFrame(frameForItemAtIndex(i));
}

void NSCollectionView::resizeSubviewsWithOldSize(const NSSize&) { placeItems(); }

void NSCollectionView::drawRect(const NSRect& r) {
    NSColor::selectedControlColor()->setFill();
    for (NSUInteger i = 0; i < items_.size(); ++i)
        if (selection_->containsIndex(i) && NSIntersectsRect(frameForItemAtIndex(i), r))
            NSRectFill(frameForItemAtIndex(i));
}

void NSCollectionView::mouseDown(NSEvent* e) {
    if (!selectable_) {
        NSView::mouseDown(e);
        return;
    }
    const Ref<NSCollectionView> self(this);
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    const Ref<NSMutableIndexSet> hit = make<NSMutableIndexSet>();
    for (NSUInteger i = 0; i < items_.size(); ++i)
        if (NSPointInRect(p, frameForItemAtIndex(i))) hit->addIndex(i);
    if (window()) window()->makeFirstResponder(this);
    setSelectionIndexes(hit);
}

} // namespace libvue
