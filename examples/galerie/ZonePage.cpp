#include <ZonePage.h>

#include <algorithm>

#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScroller.h>

namespace galerie {

ZonePage::ZonePage() : defilement_(make<NSScrollView>(NSZeroRect)) {
    defilement_->setDrawsBackground(NO);
    defilement_->setHasVerticalScroller(YES);
    defilement_->setHasHorizontalScroller(YES);
    addSubview(defilement_);
}

void ZonePage::montre(NSView* page, NSSize tailleMin) {
    tailleMin_ = tailleMin;
    page->setAutoresizingMask(NSViewNotSizable);
    if (defilement_->documentView() != page) defilement_->setDocumentView(page);
    place();
    defilement_->contentView()->scrollToPoint(NSZeroPoint);
    defilement_->reflectScrolledClipView(defilement_->contentView());
}

void ZonePage::resizeSubviewsWithOldSize(const NSSize&) { place(); }

void ZonePage::place() {
    const NSSize place = bounds().size;
    defilement_->setFrame(bounds());
    NSView* page = defilement_->documentView();
    if (!page) return;
    // A scroller takes room, which may call for the other one.
    const CGFloat barre = NSScroller::scrollerWidth();
    bool verticale = tailleMin_.height > place.height;
    const bool horizontale = tailleMin_.width > place.width - (verticale ? barre : 0);
    verticale = tailleMin_.height > place.height - (horizontale ? barre : 0);
    page->setFrame({page->frame().origin,
                    {std::max(tailleMin_.width, place.width - (verticale ? barre : 0)),
                     std::max(tailleMin_.height, place.height - (horizontale ? barre : 0))}});
}

} // namespace galerie
