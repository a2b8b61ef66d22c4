#include <libvue/collections/KCCollectionView.h>

#include <algorithm>
#include <cmath>

#include <libvue/collections/DecoupePages.h>
#include <libvue/platform/appkit/NSPrintInfo.h>
#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSPrintPanel.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDateFormatter.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

namespace {

constexpr ConstantString kTitreImpression{u"Zerlanto - Dictionnaires"};

constexpr CGFloat kMargeLaterale = 30.0;
constexpr CGFloat kMargeHaut = 45.0;
constexpr CGFloat kMargeBas = 30.0; // without the foot of the page
constexpr CGFloat kEspacementImprime = -10.0;

constexpr CGFloat kTexteDuHaut = 20.0, kTexteDuBas = 20.0; // from the edges of the paper
constexpr CGFloat kPiedAuBas = 25.0, kTraitAuBas = 36.0;

NSSize surfaceImprimable(const NSPrintInfo& info) {
    return {info.paperSize().width - info.leftMargin() - info.rightMargin(),
            info.paperSize().height - info.topMargin() - info.bottomMargin()};
}

/// In French, whatever the user's language.
Ref<NSString> dateDuJour() {
    const auto format = make<NSDateFormatter>();
    const Ref<NSLocale> francais = NSLocale::localeWithLocaleIdentifier(u"fr"_ns);
    format->setLocale(francais);
    format->setDateStyle(NSDateFormatterLongStyle);
    format->setTimeStyle(NSDateFormatterNoStyle);
    const Ref<NSDate> maintenant = NSDate::date();
    return format->stringFromDate(maintenant);
}

} // namespace

// The pages.

BOOL KCCollectionView::knowsPageRange(NSRange* range) {
    const Ref<KCCollectionView> self(this);
    if (printFrames) printFrames->removeAllObjects();
    pagesImprimees_.clear();
    auto* operation = NSPrintOperation::currentOperation();
    const NSPrintInfo& info = operation ? *operation->printInfo() : *NSPrintInfo::sharedPrintInfo();
    const NSSize page = surfaceImprimable(info);
    // Its own height becomes that of the content again at once, with the columns that fit this width.
    setFrameSize(page);
    if (const Ref<NSScrollView> defilement = enclosingScrollView()) {
        defilement->setFrameSize(page);
        // A grid that follows the width of its scroll view has just followed it beyond the page's.
        if (frame().size.width != page.width) setFrameSize(page);
    }
    const std::int64_t rangees = nbObjetsEnHauteur(nbObjetsEnLargeur());
    pagesImprimees_ = decoupePages(
        {page, frame().size.height, tailleEntete(), maTailleElement.height, monEspacement.height, rangees});
    if (printFrames)
        for (const NSRect& r : pagesImprimees_)
            printFrames->addObject(NSStringFromRect(r));
    if (range) *range = {1, std::max<NSUInteger>(1, pagesImprimees_.size())};
    return YES;
}

NSRect KCCollectionView::rectForPage(NSInteger page) {
    if (!printFrames || page < 1 || printFrames->count() < static_cast<NSUInteger>(page)) return NSZeroRect;
    return NSRectFromString(as<NSString>(printFrames->objectAtIndex(static_cast<NSUInteger>(page) - 1)));
}

NSRect KCCollectionView::divisionForPage_(NSInteger page) {
    if (page < 1) return NSZeroRect;
    if (static_cast<NSUInteger>(page) <= pagesImprimees_.size())
        return pagesImprimees_[static_cast<NSUInteger>(page) - 1];
    if (page > 1) return NSZeroRect;
    const CGFloat entete = tailleEntete();
    return entete > 0 ? NSRect{{0, 0}, {frame().size.width, entete}} : NSZeroRect;
}

void KCCollectionView::adjustPageHeightNew_top_bottom_limit(CGFloat* newBottom, CGFloat top, CGFloat bottom,
                                                            CGFloat limit) {
    if (!newBottom) return;
    const Ref<KCCollectionView> self(this);
    NSView::adjustPageHeightNew_top_bottom_limit(newBottom, top, bottom, limit);
    const CGFloat pas = maTailleElement.height + monEspacement.height;
    const CGFloat entete = tailleEntete();
    const CGFloat derniere = std::floor((bottom - entete - maTailleElement.height) / pas);
    *newBottom = derniere * pas + entete + maTailleElement.height;
}

// What stands on each of them.

void KCCollectionView::setNomApp_etCopyright(NSString* nom, NSString* copyright) {
    nomApp_ = nom;
    copyright_ = copyright;
}

void KCCollectionView::drawPageBorderWithSize(const NSSize& papier) {
    const Ref<KCCollectionView> self(this);
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName.get(), NSFont::fontWithName_size(u"Helvetica"_ns, 10.0)},
         {NSForegroundColorAttributeName.get(), NSColor::blackColor()}});
    if (!nomApp_) nomApp_ = u""_ns;
    if (!copyright_) copyright_ = u""_ns;
    const Ref<NSBundle> application = NSBundle::mainBundle();
    // Without a translation of the key the escape is printed as it stands, backslash and all.
    const Ref<NSString> imprimeLe =
        application->localizedStringForKey_value_table(u"Imprime le"_ns, u"Imprim\\U00E9 le"_ns, nullptr);
    const Ref<NSString> date = dateDuJour();
    const Ref<NSString> mention = NSString::stringWithFormat(u"%@ %@"_ns, imprimeLe.get(), date.get());

    const CGFloat pied = taillePiedDePage();
    const CGFloat largeur = papier.width - 2 * kMargeLaterale;
    const CGFloat droite = largeur + kMargeLaterale;
    lockFocus();
    if (const auto dessine = op::collectionView_drawPiedDePage.of(monDelegate))
        dessine(this, {{kMargeLaterale, papier.height - kPiedAuBas - pied}, {largeur, pied}});
    unlockFocus();

    const Ref<NSString> nom = nomApp_, notice = copyright_;
    drawAtPoint_withAttributes(nom, {kMargeLaterale, kTexteDuHaut}, attributs);
    const CGFloat largeurNotice = sizeWithAttributes(notice, attributs).width;
    drawAtPoint_withAttributes(notice, {largeur * 0.5 + kMargeLaterale - largeurNotice / 2, kTexteDuHaut}, attributs);
    drawAtPoint_withAttributes(mention, {droite - sizeWithAttributes(mention, attributs).width, kTexteDuHaut},
                               attributs);
    const Ref<NSString> motPage = application->localizedStringForKey_value_table(u"Page"_ns, u""_ns, nullptr);
    const auto* operation = NSPrintOperation::currentOperation();
    const Ref<NSString> numero = NSString::stringWithFormat(
        u"%@ %ld"_ns, motPage.get(), static_cast<long>(operation ? operation->currentPage() : 0));
    const NSSize tailleNumero = sizeWithAttributes(numero, attributs);
    const CGFloat bas = papier.height - kTexteDuBas - tailleNumero.height;
    drawAtPoint_withAttributes(numero, {droite - tailleNumero.width, bas}, attributs);
    drawAtPoint_withAttributes(kTitreImpression.get(), {kMargeLaterale, bas}, attributs);

    NSBezierPath::setDefaultLineWidth(1.0);
    NSColor::darkGrayColor()->setStroke();
    NSBezierPath::strokeLineFromPoint_toPoint({kMargeLaterale, papier.height - kTraitAuBas},
                                              {droite, papier.height - kTraitAuBas});
}

// The job.

void KCCollectionView::print(NSObject*) {
    const Ref<KCCollectionView> self(this);
    const CGFloat marge = kMargeBas + taillePiedDePage();
    const Ref<NSPrintInfo> info = NSPrintInfo::sharedPrintInfo();
    info->setLeftMargin(kMargeLaterale);
    info->setRightMargin(kMargeLaterale);
    info->setTopMargin(kMargeHaut);
    info->setBottomMargin(marge);
    info->setHorizontallyCentered(NO);
    info->setVerticallyCentered(NO);

    const NSScrollView* mien = enclosingScrollView();
    const auto defilement = make<NSScrollView>(mien ? mien->frame() : NSZeroRect);
    const auto grille = make<KCCollectionView>(frame());
    grille->setFrameSize(surfaceImprimable(*info));
    grille->setClasseVueItem(maClasseVueItem);
    grille->setNomNib(monNomNib);
    grille->setBundleNib(monBundleNib);
    grille->setDelegate(monDelegate);
    grille->setDonnees(mesDonnees);
    grille->setNomApp_etCopyright(nomApp_, copyright_);
    // Whatever the gaps on the screen.
    grille->setEspacement({kEspacementImprime, kEspacementImprime});
    defilement->setDocumentView(grille);

    const auto operation = NSPrintOperation::printOperationWithView_printInfo(grille, info);
    operation->setJobTitle(kTitreImpression.get());
    if (classOf<NSPrintPanel>().instancesRespondToSelector(sel("setOptions:")))
        operation->printPanel()->setOptions(operation->printPanel()->options() | NSPrintPanelShowsPaperSize |
                                            NSPrintPanelShowsOrientation | NSPrintPanelShowsScaling);
    operation->runOperation();
}

} // namespace libvue
