#pragma once

#include <libvue/charts/Forward.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

// Posted by a KCTarte, the object. The user information holds "index", an NSNumber with the selection after the change,
// -1 for none, and "objet", the view. Both go out before any slice has begun to move.

inline constexpr ConstantString kTarteSelectionWillChange{u"KCTarte.selectionWillChange"};
inline constexpr ConstantString kTarteSelectionDidChange{u"KCTarte.selectionDidChange"};

/// A pie. A click selects a slice, which then moves out; a click on it again, or beside all of them, lets it move back.
///
/// The first slice starts at the right and the others follow counter-clockwise. A pie whose values add up to 0 is a
/// grey disc. Angles are walked in single precision. Slices are not archived: a decoded pie is empty.
class LIBVUE_API KCTarte : public NSView {
public:
    static void describe(ClassDescription<KCTarte, NSView>& c);
    KCTarte();
    explicit KCTarte(const NSRect& frame);
    explicit KCTarte(NSCoder& coder);
    ~KCTarte() override;

    /// Empties the list and the selection. Asks for no redraw and posts nothing.
    void initTarte();
    /// The middle of the bounds' size.
    [[nodiscard]] NSPoint centre() const;
    /// Leaves room for the shadow and for a slice that is pulled out; negative in a view under 26 points.
    [[nodiscard]] CGFloat rayon() const;
    /// The list itself, in drawing order.
    [[nodiscard]] NSMutableArray* pointes() const noexcept { return mesPointes; }
    /// The sum of the values, as long as they are changed through setValeur_deLaPointe. It wraps round where it leaves
    /// 64 bits.
    [[nodiscard]] NSInteger total() const noexcept { return monTotal; }
    /// Null raises NSInvalidArgumentException.
    void ajoutePointe(KCPointeDeTarte* pointe);
    /// Every entry of it, its value being taken off once. The selection is the caller's to clear. One that is not in
    /// the list is ignored.
    void enlevePointe(KCPointeDeTarte* pointe);
    /// Borrowed. Out of range raises NSRangeException.
    [[nodiscard]] KCPointeDeTarte* pretePointe(NSUInteger index) const;
    /// Out of range raises NSRangeException.
    void setValeur_deLaPointe(NSInteger valeur, NSUInteger index);

    /// -1 for none.
    [[nodiscard]] Ref<NSNumber> selectedIndex() const;
    /// The selected one is deselected, and so is what lies past the end; null counts as 0. Tells of it even where
    /// nothing changes. The slices move on later turns of the run loop.
    virtual void setSelectedIndex(NSNumber* index);

    /// The first slice whose outline at rest holds the point, -1 for none. In the view's coordinates.
    [[nodiscard]] NSInteger indexPointeAtLocation(NSPoint p) const;
    /// Null where there is none.
    [[nodiscard]] KCPointeDeTarte* pointeAtLocation(NSPoint p) const;

    /// A row a slice, in order.
    [[nodiscard]] TableAccessible tableAccessible() const;

    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void drawRect(const NSRect& rect) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    /// Calls `f(slice, index, start, end)` with each slice's angles until it answers false.
    template <class F> void parcourt(const F& f) const;
    void dessineCorps() const;
    void posteSelection(NSString* nom, NSInteger index);

    [[nodiscard]] const AnglesRetenus& anglesRetenus() const;

    mutable std::unique_ptr<AnglesRetenus> angles_; ///< made by the first search
    Ref<NSMutableArray> mesPointes;
    NSInteger monTotal = 0;
    NSInteger maSelection = -1;
};

} // namespace libvue
