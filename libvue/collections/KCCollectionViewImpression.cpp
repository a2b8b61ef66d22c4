#include <libvue/collections/KCCollectionView.h>

#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

void KCCollectionView::setNomApp_etCopyright(NSString* nom, NSString* copyright) {
    nomApp_ = nom;
    copyright_ = copyright;
}

BOOL KCCollectionView::knowsPageRange(NSRange* range) { return NSView::knowsPageRange(range); }
NSRect KCCollectionView::rectForPage(NSInteger page) { return NSView::rectForPage(page); }
void KCCollectionView::adjustPageHeightNew_top_bottom_limit(CGFloat* newBottom, CGFloat top, CGFloat bottom,
                                                            CGFloat limit) {
    NSView::adjustPageHeightNew_top_bottom_limit(newBottom, top, bottom, limit);
}
void KCCollectionView::drawPageBorderWithSize(const NSSize& papier) { NSView::drawPageBorderWithSize(papier); }
void KCCollectionView::print(NSObject* sender) { NSView::print(sender); }

} // namespace libvue
