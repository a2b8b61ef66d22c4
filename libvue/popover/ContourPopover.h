#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

// The outline of a balloon. Pure functions, in the coordinates of the view that draws it, in points.

/// How far the outer and the inner outline lie inside the view.
inline constexpr CGFloat kRetraitExterieur = 10, kRetraitInterieur = 11;
/// A corner starts and ends this far from its point.
inline constexpr CGFloat kLongueurCoin = 7;
/// The arrow's base is twice this wide.
inline constexpr CGFloat kDemiFleche = 10;
/// Sides and tips stand on half points, where a line of one point fills whole pixels.
inline constexpr CGFloat kDemiPoint = 0.5;

struct ElementContour {
    enum class Sorte : std::uint8_t { debut, ligne, courbe, fermeture };
    Sorte sorte = Sorte::fermeture;
    NSPoint point;    ///< where it ends
    NSPoint controle; ///< both control points of a curve
};

/// An outline in order, counter-clockwise. Needs no memory of its own.
class ContourPopover {
public:
    static constexpr std::size_t kMaximum = 14; ///< a start, four sides and corners, an arrow, the end
    [[nodiscard]] std::span<const ElementContour> elements() const& noexcept { return {elements_.data(), nombre_}; }
    std::span<const ElementContour> elements() && = delete;
    void debut(NSPoint p) noexcept { ajoute({ElementContour::Sorte::debut, p, p}); }
    void ligne(NSPoint p) noexcept { ajoute({ElementContour::Sorte::ligne, p, p}); }
    void courbe(NSPoint p, NSPoint controle) noexcept { ajoute({ElementContour::Sorte::courbe, p, controle}); }
    void ferme() noexcept { ajoute({}); }

private:
    void ajoute(const ElementContour& e) noexcept { elements_[nombre_++] = e; }
    std::array<ElementContour, kMaximum> elements_;
    std::size_t nombre_ = 0;
};

/// Where the arrow's tip stands along the side that carries it: over the middle of what can be seen of the anchor, held
/// half an arrow from the side's ends. `r` is the outline's rectangle, `bounds` the view's.
[[nodiscard]] LIBVUE_API CGFloat centreFleche(const NSRect& r, const NSRect& ancre, const NSRect& bounds,
                                              NSUInteger edge) noexcept;

/// The outline in `r` with an arrow towards `ancre`, on the side opposite to `edge`: the edge of the anchor on which
/// the balloon stands. Another value than an NSRectEdge gives no arrow. The tip lies on `bounds`.
[[nodiscard]] LIBVUE_API ContourPopover contourPopover(const NSRect& r, const NSRect& ancre, const NSRect& bounds,
                                                       NSUInteger edge) noexcept;

} // namespace libvue
