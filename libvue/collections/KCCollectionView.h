#pragma once

#include <cstdint>
#include <vector>

#include <libvue/collections/Forward.h>
#include <libvue/collections/KCCollectionItemView.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

namespace op {
// Optional operations of the grid's delegate, looked up before each use.

/// Height of the band above the first row.
inline constexpr Operation<CGFloat(KCCollectionView*)> collectionViewTailleEntete{"collectionViewTailleEntete:"};
/// Height of the band below the last row, and of the foot of each printed page.
inline constexpr Operation<CGFloat(KCCollectionView*)> collectionViewTaillePiedDePage{
    "collectionViewTaillePiedDePage:"};
/// Whoever answers this one answers collectionViewTailleEntete: too.
inline constexpr Operation<void(KCCollectionView*, NSRect)> collectionView_drawEntete{"collectionView:drawEntete:"};
inline constexpr Operation<void(KCCollectionView*, NSRect)> collectionView_drawPiedDePage{
    "collectionView:drawPiedDePage:"};
/// After each click, whatever it selected; not after a key.
inline constexpr Operation<void(KCCollectionView*)> collectionViewSelectionDidChange{
    "collectionViewSelectionDidChange:"};
inline constexpr Operation<void(KCCollectionView*, NSObject*)> collectionView_doubleCliqueSurObjet{
    "collectionView:doubleCliqueSurObjet:"};
/// Of a data object: whether it is the selected one.
inline constexpr Operation<void(BOOL)> setSelected{"setSelected:"};
} // namespace op

/// A grid of equally large item views over a list of data objects, inside a scroll view.
///
/// It has as many item views as its visible rectangle can hold, whatever the number of objects: each pass decides which
/// objects are in sight, turns a ring of views by the difference with the last pass, and binds and places each view
/// that is alive. Scrolling only redraws, and each drawing runs a pass. The columns have 10 points before the first
/// and as much after the last; the first row begins right under the header.
class LIBVUE_API KCCollectionView : public NSView {
public:
    static void describe(ClassDescription<KCCollectionView, NSView>& c);
    KCCollectionView();
    explicit KCCollectionView(const NSRect& frame);
    ~KCCollectionView() override;

    [[nodiscard]] const Class* classeVueItem() const noexcept { return maClasseVueItem; }
    /// Before setDonnees:. Takes the size of the class; views that are there stay.
    void setClasseVueItem(const Class* classe);
    [[nodiscard]] NSString* nomNib() const noexcept { return monNomNib; }
    /// The resource with one item view. It and the bundle (null: the application's) count until the first pass.
    void setNomNib(NSString* nom);
    [[nodiscard]] NSBundle* bundleNib() const noexcept { return monBundleNib; }
    void setBundleNib(NSBundle* bundle);
    /// Gaps: width between columns, height between rows.
    [[nodiscard]] NSSize espacement() const noexcept { return monEspacement; }
    void setEspacement(NSSize espacement);
    [[nodiscard]] NSObject* delegate() const noexcept { return monDelegate; }
    /// Kept.
    void setDelegate(NSObject* delegate);
    [[nodiscard]] NSArray* donnees() const noexcept { return mesDonnees; }
    /// Kept as it is, not copied. Deselects, by the index and so on the new list, scrolls to the top and runs a pass.
    /// Nothing happens while the item class is none.
    void setDonnees(NSArray* donnees);
    [[nodiscard]] NSSize tailleElement() const noexcept { return maTailleElement; }

    // Selection. Observable: "selectedIndex", "selection", "aUnPrecedent", "aUnSuivant".

    [[nodiscard]] NSNumber* selectedIndex() const noexcept { return maSelection; }
    /// The number alone: no data object hears of it.
    void setSelectedIndex(NSNumber* index);
    /// -1 for none; 0 before anything was set.
    [[nodiscard]] NSInteger selection() const;
    /// Tells the data objects (setSelected:) and shows the item. An index out of range selects none.
    void setSelection(NSInteger index);
    /// Null where the selection is none of the data.
    [[nodiscard]] NSObject* selectedObject() const;
    void setSelectedObject(NSObject* objet);
    void selectionnerSuivant(NSObject* sender);
    void selectionnerPrecedent(NSObject* sender);
    [[nodiscard]] BOOL aUnSuivant() const;
    [[nodiscard]] BOOL aUnPrecedent() const;
    [[nodiscard]] static Ref<NSSet> keyPathsForValuesAffectingAUnPrecedent();
    [[nodiscard]] static Ref<NSSet> keyPathsForValuesAffectingAUnSuivant();
    void willChangeValueForKey(NSString* key) override;
    void didChangeValueForKey(NSString* key) override;

    // Arithmetic.

    /// The columns that fit, 0 where not even one does.
    [[nodiscard]] std::int64_t nbObjetsEnLargeur() const;
    /// The rows of that many columns; no positive number for none.
    [[nodiscard]] std::int64_t nbObjetsEnHauteur(std::int64_t colonnes) const;
    /// Scrolls so that the item shows. Without a column nothing happens.
    void setElementVisible(std::uint64_t index);
    void setPositionDeLaVue_x_y_tailleEntete(NSView* vue, std::int64_t x, std::int64_t y, CGFloat entete);
    /// One pass of the recycling. Without data, resource name or item class, nothing.
    void ajusteContenu();
    /// The live data objects: the first one's index and their number.
    [[nodiscard]] NSRange mesVignettesAffichees() const noexcept { return vignettesAffichees_; }
    /// The pool of KCNibHelper; null before the first pass.
    [[nodiscard]] BassinCirculaire* mesVues() const noexcept;

    // Views and events.

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    /// Makes the view as high as its content, at least as high as what shows, and runs a pass.
    void resizeSubviewsWithOldSize(const NSSize& ancienne) override;
    void drawRect(const NSRect& r) override;
    void awakeFromNib() override;
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    /// A double click on an item view.
    void itemAction(NSView* vue);
    void moveLeft(NSObject* sender);
    void moveRight(NSObject* sender);
    void moveUp(NSObject* sender);
    void moveDown(NSObject* sender);
    void scrollToBeginningOfDocument(NSObject* sender);
    void scrollToEndOfDocument(NSObject* sender);
    void scrollPageDown(NSObject* sender);
    void scrollPageUp(NSObject* sender);
    void insertTab(NSObject* sender);
    void insertBacktab(NSObject* sender);
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

    // Printing (KCCollectionViewImpression.cpp).

    /// Cuts the content into whole rows for the paper of the current print operation. Always YES.
    BOOL knowsPageRange(NSRange* range) override;
    /// Pages count from 1. NSZeroRect for one that has no rectangle, and for all where awakeFromNib was not sent.
    [[nodiscard]] NSRect rectForPage(NSInteger page) override;
    /// What knowsPageRange: cut, also where rectForPage: gives nothing: so a grid made by code has its rows on paper.
    /// Without any row, the header alone.
    [[nodiscard]] NSRect divisionForPage_(NSInteger page) override;
    /// The end of the last row that ends at or above `bottom`.
    void adjustPageHeightNew_top_bottom_limit(CGFloat* newBottom, CGFloat top, CGFloat bottom, CGFloat limit) override;
    [[nodiscard]] NSString* nomApp() const noexcept { return nomApp_; }
    [[nodiscard]] NSString* copyright() const noexcept { return copyright_; }
    /// The texts at the head of each page; kept.
    void setNomApp_etCopyright(NSString* nom, NSString* copyright);
    void drawPageBorderWithSize(const NSSize& papier) override;
    /// Prints another grid with the same data, more closely set.
    void print(NSObject* sender) override;

private:
    [[nodiscard]] CGFloat tailleEntete();
    [[nodiscard]] CGFloat taillePiedDePage();
    /// Header, rows and footer.
    [[nodiscard]] CGFloat hauteurContenu();
    [[nodiscard]] NSPoint origineElement(std::int64_t x, std::int64_t y, CGFloat entete) const noexcept;
    [[nodiscard]] NSUInteger nombre() const noexcept;
    /// False where the resource cannot be built: it is not asked for again before it changes.
    [[nodiscard]] bool prepareBassin(std::uint64_t vivants);
    void masqueTout();
    void masqueEgares(const NSRect& visible);
    /// False where a newer pass has taken over.
    [[nodiscard]] bool montre(KCNibHelper* element, NSUInteger i, NSUInteger colonnes, CGFloat entete, NSArray* donnees,
                              unsigned passe);
    /// Whether a move by key can go on; without a selected object it selects the first one.
    [[nodiscard]] bool commenceDeplacement();

    Ref<NSArray> mesDonnees;
    const Class* maClasseVueItem = nullptr;
    Ref<NSString> monNomNib;
    Ref<NSBundle> monBundleNib;
    NSSize monEspacement;
    Ref<NSNumber> maSelection;
    Ref<NSObject> monDelegate;
    NSRange vignettesAffichees_;
    Ref<BassinCirculaire> mesVues_;
    NSSize maTailleElement;
    Ref<NSMutableArray> printFrames;     // texts of NSStringFromRect, made by awakeFromNib
    std::vector<NSRect> pagesImprimees_; // of the last knowsPageRange:
    Ref<NSString> nomApp_;
    Ref<NSString> copyright_;
    unsigned passe_ = 0;   // counts the passes, for one that is run while another calls out
    bool choisit_ = false; // setSelection: announces what depends on the selection itself
    bool nibManquant_ = false;
};

} // namespace libvue
