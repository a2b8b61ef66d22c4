#pragma once

#include <algorithm>
#include <vector>

#include <libvue/charts/SecteurVise.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

/// The ends of a pie's slices, kept from one search to the next for as long as no slice anywhere has changed its value
/// and the list holds the same ones.
class AnglesRetenus {
public:
    [[nodiscard]] bool vaut(const NSArray& pointes, NSInteger total, NSUInteger generation) const noexcept {
        return generation == generation_ && total == total_ && pointes.count() == pointes_.size() &&
               std::equal(pointes_.begin(), pointes_.end(), pointes.data());
    }
    void commence(const NSArray& pointes, NSInteger total, NSUInteger generation) {
        generation_ = generation;
        total_ = total;
        pointes_.assign(pointes.data(), pointes.data() + pointes.count());
        fins_.clear();
        ordonnes_ = true;
    }
    /// In order. Only angles that grow from 0 to about one turn can be searched.
    void ajoute(float fin) {
        ordonnes_ = ordonnes_ && fin >= (fins_.empty() ? 0.0F : fins_.back()) &&
                    static_cast<double>(fin) <= SecteurVise::kPresqueUnTour;
        fins_.push_back(fin);
    }
    void renonce() noexcept { ordonnes_ = false; }
    /// Whether all slices stood in the way that a search needs.
    [[nodiscard]] bool ordonnes() const noexcept { return ordonnes_ && fins_.size() == pointes_.size(); }

    /// The first slice that may hold the point and for which `contient(index, start, end)` says so; -1 for none.
    template <class F> [[nodiscard]] NSInteger cherche(const SecteurVise& vise, const F& contient) const {
        if (vise.dehors()) return -1;
        // The angle itself, and where it also counts just below 0 or past 360. Lower ones belong to earlier slices.
        for (const double a : {vise.angle() - 360, vise.angle(), vise.angle() + 360}) {
            const double bas = a - SecteurVise::kMarge, haut = a + SecteurVise::kMarge;
            auto fin = std::lower_bound(fins_.begin(), fins_.end(), bas,
                                        [](float f, double borne) { return static_cast<double>(f) < borne; });
            for (; fin != fins_.end(); ++fin) {
                const double depart = fin == fins_.begin() ? 0.0 : static_cast<double>(*(fin - 1));
                if (depart > haut) break;
                const NSInteger index = fin - fins_.begin();
                if (contient(index, depart, static_cast<double>(*fin))) return index;
            }
        }
        return -1;
    }

private:
    std::vector<NSObject*> pointes_; ///< only to be compared
    std::vector<float> fins_;
    NSInteger total_ = 0;
    NSUInteger generation_ = 0;
    bool ordonnes_ = false;
};

} // namespace libvue
