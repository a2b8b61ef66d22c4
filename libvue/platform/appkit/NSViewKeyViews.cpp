#include <algorithm>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSViewExtras.h>

// The loop of key views: links where they were set, else the order of the tree.

namespace libvue {

NSView* NSView::nextKeyView() const { return extras_ ? extras_->nextKeyView.get() : nullptr; }
NSView* NSView::previousKeyView() const { return extras_ ? extras_->previousKeyView.get() : nullptr; }

void NSView::setNextKeyView(NSView* view) {
    if (NSView* old = nextKeyView(); old && old->previousKeyView() == this) old->extras().previousKeyView = nullptr;
    extras().nextKeyView = view;
    if (view) view->extras().previousKeyView = this;
}

BOOL NSView::canBecomeKeyView() { return window_ && acceptsFirstResponder() && !isHiddenOrHasHiddenAncestor(); }

namespace {

void appendInTreeOrder(NSView* v, std::vector<NSView*>& out) {
    out.push_back(v);
    // Reading order: rows from the top, each from the left; equal places keep the order of the list.
    std::vector<NSView*> children;
    for (NSView* c : v->subviews())
        if (!c->isHidden()) children.push_back(c);
    const bool down = v->isFlipped();
    const auto top = [&](const NSView* c) { return down ? NSMinY(c->frame()) : -NSMaxY(c->frame()); };
    std::stable_sort(children.begin(), children.end(), [&](NSView* a, NSView* b) { return top(a) < top(b); });
    // Of one row are those that hold each other's middle line: neighbours differ a little in height.
    const auto holdsMiddle = [](const NSView* a, const NSView* b) {
        const CGFloat middle = NSMidY(b->frame());
        return NSMinY(a->frame()) <= middle && middle <= NSMaxY(a->frame());
    };
    for (auto row = children.begin(); row != children.end();) {
        const auto end = std::find_if(row + 1, children.end(),
                                      [&](const NSView* c) { return !holdsMiddle(*row, c) || !holdsMiddle(c, *row); });
        std::stable_sort(row, end, [](NSView* a, NSView* b) { return NSMinX(a->frame()) < NSMinX(b->frame()); });
        row = end;
    }
    for (NSView* c : children)
        appendInTreeOrder(c, out);
}

enum class Way { forward, back };

/// The next one that takes the keys; the view itself where it is the only one, null where there is none.
NSView* neighbour(NSView* from, Way way) {
    const bool forward = way == Way::forward;
    const auto linked = [&](const NSView* v) { return forward ? v->nextKeyView() : v->previousKeyView(); };
    // Links that were set lead first.
    std::vector<NSView*> seen;
    for (NSView* v = linked(from); v && v != from; v = linked(v)) {
        if (std::find(seen.begin(), seen.end(), v) != seen.end()) break;
        if (v->canBecomeKeyView()) return v;
        seen.push_back(v);
    }
    NSView* root = from;
    while (root->superview())
        root = root->superview();
    std::vector<NSView*> all;
    appendInTreeOrder(root, all);
    const auto at = std::find(all.begin(), all.end(), from);
    const std::size_t n = all.size(), start = at == all.end() ? 0 : static_cast<std::size_t>(at - all.begin());
    for (std::size_t k = 1; k <= n; ++k) {
        NSView* v = all[(start + (forward ? k : n - k)) % n];
        if (v != from && v->canBecomeKeyView()) return v;
    }
    return from->canBecomeKeyView() ? from : nullptr;
}

} // namespace

NSView* NSView::nextValidKeyView() { return neighbour(this, Way::forward); }
NSView* NSView::previousValidKeyView() { return neighbour(this, Way::back); }

} // namespace libvue
