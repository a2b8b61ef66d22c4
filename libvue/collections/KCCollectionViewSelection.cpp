#include <libvue/collections/KCCollectionView.h>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/ScopeExit.h>

// Selection, keys and clicks of the grid.

namespace libvue {

namespace {
constexpr ConstantString kSelection{u"selection"}, kSelectedIndex{u"selectedIndex"}, kPrecedent{u"aUnPrecedent"},
    kSuivant{u"aUnSuivant"};
} // namespace

// Observing.

Ref<NSSet> KCCollectionView::keyPathsForValuesAffectingAUnPrecedent() { return NSSet::setWithObject(kSelection.get()); }
Ref<NSSet> KCCollectionView::keyPathsForValuesAffectingAUnSuivant() { return NSSet::setWithObject(kSelection.get()); }

void KCCollectionView::willChangeValueForKey(NSString* key) {
    const bool annonce = !choisit_ && key && key->isEqualToString(kSelection);
    if (annonce) {
        NSView::willChangeValueForKey(kPrecedent);
        NSView::willChangeValueForKey(kSuivant);
    }
    NSView::willChangeValueForKey(key);
}

void KCCollectionView::didChangeValueForKey(NSString* key) {
    const Ref<KCCollectionView> self(this);
    const bool annonce = !choisit_ && key && key->isEqualToString(kSelection);
    NSView::didChangeValueForKey(key);
    if (!annonce) return;
    NSView::didChangeValueForKey(kSuivant);
    NSView::didChangeValueForKey(kPrecedent);
}

// Selection.

void KCCollectionView::setSelectedIndex(NSNumber* index) {
    const Ref<KCCollectionView> self(this);
    const Ref<NSNumber> ancien = maSelection;
    willChangeValueForKey(kSelectedIndex);
    maSelection = index;
    didChangeValueForKey(kSelectedIndex);
}

NSInteger KCCollectionView::selection() const { return maSelection ? maSelection->integerValue() : 0; }

NSObject* KCCollectionView::selectedObject() const {
    const NSInteger i = selection();
    if (i < 0 || static_cast<NSUInteger>(i) >= nombre()) return nullptr;
    return mesDonnees->objectAtIndex(static_cast<NSUInteger>(i));
}

void KCCollectionView::setSelectedObject(NSObject* objet) {
    setSelection(mesDonnees ? static_cast<NSInteger>(mesDonnees->indexOfObject(objet)) : NSNotFound);
}

void KCCollectionView::setSelection(NSInteger i) {
    const Ref<KCCollectionView> self(this);
    willChangeValueForKey(kPrecedent);
    willChangeValueForKey(kSuivant);
    {
        // Whoever is told may select something else: the flag goes back to what it was.
        const ScopeExit fini([this, avant = choisit_] { choisit_ = avant; });
        choisit_ = true;
        willChangeValueForKey(kSelection);
        const Ref<NSObject> ancien = selectedObject();
        if (const auto choisir = op::setSelected.of(ancien)) choisir(NO);
        if (i >= 0 && static_cast<NSUInteger>(i) < nombre()) {
            const Ref<NSObject> objet = mesDonnees->objectAtIndex(static_cast<NSUInteger>(i));
            setSelectedIndex(NSNumber::numberWithInteger(i));
            setElementVisible(static_cast<std::uint64_t>(i));
            if (const auto choisir = op::setSelected.of(objet)) choisir(YES);
            setElementVisible(static_cast<std::uint64_t>(i));
        } else
            setSelectedIndex(NSNumber::numberWithInteger(-1));
        choisit_ = true;
        didChangeValueForKey(kSelection);
    }
    didChangeValueForKey(kSuivant);
    didChangeValueForKey(kPrecedent);
}

void KCCollectionView::selectionnerSuivant(NSObject* sender) { moveRight(sender); }
void KCCollectionView::selectionnerPrecedent(NSObject* sender) { moveLeft(sender); }

BOOL KCCollectionView::aUnSuivant() const { return selection() < static_cast<NSInteger>(nombre()) - 1; }
BOOL KCCollectionView::aUnPrecedent() const { return selection() > 0; }

// Clicks.

void KCCollectionView::mouseDown(NSEvent* e) {
    const Ref<KCCollectionView> self(this);
    const Ref<NSEvent> evenement(e);
    const Ref<NSView> touche = hitTest(convertPoint_fromView(e->locationInWindow(), nullptr));
    if (auto* item = as<KCCollectionItemView>(touche)) {
        setSelectedObject(item->objetConnectay());
        if (e->clickCount() == 2) itemAction(touche);
    } else
        setSelection(-1);
    if (NSWindow* w = window()) w->makeFirstResponder(this);
    if (const auto change = op::collectionViewSelectionDidChange.of(monDelegate)) change(this);
}

void KCCollectionView::itemAction(NSView* vue) {
    auto* item = as<KCCollectionItemView>(vue);
    const auto action = op::collectionView_doubleCliqueSurObjet.of(monDelegate);
    if (!item || !action) return;
    const Ref<NSObject> objet(item->objetConnectay());
    action(this, objet);
}

// Keys.

void KCCollectionView::keyDown(NSEvent* e) { interpretKeyEvents(NSArray::arrayWithObject(e)); }

bool KCCollectionView::commenceDeplacement() {
    if (nombre() == 0) return false;
    if (selectedObject()) return true;
    setSelection(0);
    return false;
}

void KCCollectionView::moveLeft(NSObject*) {
    if (commenceDeplacement() && selection() >= 1) setSelection(selection() - 1);
}

void KCCollectionView::moveRight(NSObject*) {
    if (commenceDeplacement() && selection() < static_cast<NSInteger>(nombre()) - 1) setSelection(selection() + 1);
}

void KCCollectionView::moveDown(NSObject*) {
    // Nothing wraps, and a place that a short last row leaves empty cannot be reached.
    const std::int64_t c = nbObjetsEnLargeur();
    if (commenceDeplacement() && selection() < static_cast<NSInteger>(nombre()) - c) setSelection(selection() + c);
}

void KCCollectionView::moveUp(NSObject*) {
    const std::int64_t c = nbObjetsEnLargeur();
    if (commenceDeplacement() && selection() >= c) setSelection(selection() - c);
}

void KCCollectionView::scrollToBeginningOfDocument(NSObject*) { scrollRectToVisible(NSZeroRect); }

void KCCollectionView::scrollToEndOfDocument(NSObject*) {
    scrollRectToVisible({{0, bounds().size.height}, NSZeroSize});
}

void KCCollectionView::scrollPageDown(NSObject* sender) {
    if (NSScrollView* s = enclosingScrollView()) s->pageDown(sender);
}

void KCCollectionView::scrollPageUp(NSObject* sender) {
    if (NSScrollView* s = enclosingScrollView()) s->pageUp(sender);
}

void KCCollectionView::insertTab(NSObject* sender) {
    if (NSWindow* w = window()) w->selectNextKeyView(sender);
}

void KCCollectionView::insertBacktab(NSObject* sender) {
    if (NSWindow* w = window()) w->selectPreviousKeyView(sender);
}

} // namespace libvue
