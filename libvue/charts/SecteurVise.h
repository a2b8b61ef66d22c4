#pragma once

#include <algorithm>
#include <cmath>

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// A point that is looked for among the slices of a disc: says of many slices, without their outlines, that they cannot
/// hold it. The margins are far wider than what rounding does to an outline, and a slice that is out by a hair, or
/// whose angles are odd, is never ruled out.
class SecteurVise {
public:
    SecteurVise(NSPoint centre, CGFloat rayon, NSPoint p) noexcept {
        const double dx = p.x - centre.x, dy = p.y - centre.y, distance = std::hypot(dx, dy);
        // Of a disc that is tiny beside its coordinates, rounding is not small.
        fiable_ = std::isfinite(distance) && rayon > kPetit * std::max(std::abs(centre.x), std::abs(centre.y)) &&
                  std::isfinite(rayon);
        dehors_ = distance > rayon * kBord;
        // Next to the centre, a step to the side is a large angle.
        if (distance < rayon * kMoyeu) fiable_ = false;
        angle_ = std::atan2(dy, dx) * (180 / kPi);
        if (angle_ < 0) angle_ += 360;
    }

    /// Whether the slice between these angles, in degrees, cannot hold the point.
    [[nodiscard]] bool exclut(double depart, double fin) const noexcept {
        // Sweeps of full turns, backward ones and such that are no numbers are left to the outline.
        if (!fiable_ || !(depart >= 0 && fin >= depart && fin <= kPresqueUnTour)) return false;
        if (dehors_) return true;
        const double bas = depart - kMarge, haut = fin + kMarge;
        const auto dedans = [&](double a) { return a >= bas && a <= haut; };
        return !dedans(angle_) && !dedans(angle_ - 360) && !dedans(angle_ + 360);
    }

    /// Whether this may be asked at all: near the centre it may not.
    [[nodiscard]] bool fiable() const noexcept { return fiable_; }
    /// Out of the disc.
    [[nodiscard]] bool dehors() const noexcept { return dehors_; }
    /// Degrees, 0 to 360.
    [[nodiscard]] double angle() const noexcept { return angle_; }

    static constexpr double kMarge = 0.01;          ///< degrees
    static constexpr double kPresqueUnTour = 360.5; ///< degrees: sums in single precision end near 360

private:
    static constexpr double kPi = 3.14159265358979323846;
    static constexpr double kPetit = 1e-4; ///< of the centre's coordinates
    static constexpr double kBord = 1.001; ///< curves stand up to 0.03 % out of their circle
    static constexpr double kMoyeu = 1e-3; ///< of the radius

    double angle_ = 0;
    bool fiable_ = false, dehors_ = false;
};

} // namespace libvue
