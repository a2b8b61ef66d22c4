#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <libvue/charts/GraduationsHistogramme.h>

using namespace libvue;

namespace {

constexpr double kInfini = std::numeric_limits<double>::infinity();

LargeurEtiquette fixe(CGFloat w) {
    return [w](NSInteger) { return w; };
}
LargeurEtiquette parChiffre(CGFloat w) {
    return [w](NSInteger v) { return w * static_cast<double>(std::to_string(v).size()); };
}

TEST(GraduationsHistogrammeTest, theRuleWorkedOutByHand) {
    struct {
        const char* quoi;
        CGFloat plusGrand, total;
        UniteAxe unite;
        CGFloat place, etiquette;
        NSInteger nombre, maximum;
        CGFloat largeur, t;
    } const lignes[] = {
        {"37 is prime: 12 steps of 4 would do, 10 are enough", 37, 100, UniteAxe::valeurs, 397.5, 20, 10, 40, 387.5,
         37},
        {"100 by tens", 100, 100, UniteAxe::valeurs, 997.5, 20, 10, 100, 987.5, 100},
        {"84 in 12 sevens", 84, 84, UniteAxe::valeurs, 997.5, 20, 12, 84, 987.5, 84},
        {"no data", 0, 0, UniteAxe::valeurs, 397.5, 8, 1, 1, 393.5, 1},
        {"no data, in percent", 0, 0, UniteAxe::pourcentages, 397.5, 20, 10, 100, 387.5, 100},
        {"a quarter", 30, 120, UniteAxe::pourcentages, 397.5, 20, 9, 27, 387.5, 25},
        {"22 percent go up to 25", 22, 100, UniteAxe::pourcentages, 102.5, 10, 4, 24, 97.5, 22},
        {"room for three labels, halves divide", 100, 100, UniteAxe::valeurs, 102.5, 20, 2, 100, 92.5, 100},
        {"room for three labels, nothing divides", 101, 101, UniteAxe::valeurs, 102.5, 20, 3, 102, 92.5, 101},
        {"room for one", 100, 100, UniteAxe::valeurs, 60, 30, 1, 100, 45, 100},
        {"room for none", 100, 100, UniteAxe::valeurs, 30, 30, 0, 100, 15, 100},
        {"no room at all", 100, 100, UniteAxe::valeurs, 5, 30, 0, 100, 0, 100},
        {"a fraction", 0.3, 1, UniteAxe::valeurs, 397.5, 8, 1, 1, 393.5, 0.3},
        {"two and a half", 2.5, 5, UniteAxe::valeurs, 397.5, 8, 3, 3, 393.5, 2.5},
        {"only negative totals", 0, -12, UniteAxe::valeurs, 397.5, 8, 0, 0, 393.5, 0},
        {"percent of a negative whole", 5, -5, UniteAxe::pourcentages, 397.5, 8, -100, -100, 393.5, -100},
    };
    for (const auto& l : lignes) {
        SCOPED_TRACE(l.quoi);
        const auto g = choisisGraduations(l.plusGrand, l.total, l.unite, l.place, fixe(l.etiquette));
        EXPECT_EQ(g.nombre, l.nombre);
        EXPECT_EQ(g.maximum, l.maximum);
        EXPECT_EQ(g.largeur, l.largeur);
        EXPECT_EQ(g.plusGrand, l.t);
    }
    // 99 has two digits, the axis goes to 100 or more with three.
    const auto g = choisisGraduations(97, 97, UniteAxe::valeurs, 200, parChiffre(10));
    ASSERT_GE(g.maximum, 100);
    EXPECT_EQ(g.largeur, 200 - 15);
    EXPECT_DOUBLE_EQ(g.longueur(), 97.0 / static_cast<double>(g.maximum) * 185);
}

TEST(GraduationsHistogrammeTest, whateverTheNumbersTheAxisIsSound) {
    std::mt19937 hasard(3);
    const auto reel = [&](double bas, double haut) { return std::uniform_real_distribution<>(bas, haut)(hasard); };
    int avecGraduations = 0;
    for (int essai = 0; essai < 40000; ++essai) {
        double plusGrand = reel(0, 1) * std::pow(10, reel(-2, 5.5));
        if (essai % 2) plusGrand = std::ceil(plusGrand);
        const double total = plusGrand * reel(1, 30), place = reel(0, 2000), w = reel(0, 60);
        const UniteAxe unite = essai % 3 ? UniteAxe::valeurs : UniteAxe::pourcentages;
        const auto g = choisisGraduations(plusGrand, total, unite, place, essai % 5 ? fixe(w) : parChiffre(w / 4));
        SCOPED_TRACE(testing::Message() << plusGrand << " of " << total << " on " << place << ", label " << w);
        ASSERT_LE(g.nombre, 12);
        ASSERT_LE(g.largeur, place);
        if (g.nombre <= 0) continue;
        ++avecGraduations;
        ASSERT_EQ(g.maximum % g.nombre, 0);
        const NSInteger pas = g.maximum / g.nombre;
        ASSERT_GE(pas, 1);
        ASSERT_GE(static_cast<float>(g.maximum), static_cast<float>(g.plusGrand));
        ASSERT_LT(static_cast<double>(g.maximum - pas), g.plusGrand) << "no step more than is needed";
        std::set<long> etiquettes;
        for (int i = 1; i <= g.nombre; ++i)
            etiquettes.insert(
                std::lround(static_cast<float>(i / static_cast<double>(g.nombre) * static_cast<double>(g.maximum))));
        ASSERT_EQ(etiquettes.size(), static_cast<std::size_t>(g.nombre));
    }
    EXPECT_GT(avecGraduations, 20000);
}

TEST(GraduationsHistogrammeTest, hostileNumbersEndAtTheLimits) {
    const double nombres[] = {0,       -0.0,  1,      -1,   1e-320, 5e-46, 1e-5,    16777217.0 * 12, 2147483648.0,
                              1e10,    1e18,  9.3e18, 1e19, 1e40,   1e300, kInfini, -kInfini,        NAN,
                              1.7e308, -1e300};
    for (const double m : nombres)
        for (const double total : nombres)
            for (const double place : {0.0, 100.0, 1e6, kInfini, double(NAN), -5.0})
                for (const double w : {0.0, 20.0, -10.0, 1e300, kInfini, double(NAN)})
                    for (const UniteAxe unite : {UniteAxe::valeurs, UniteAxe::pourcentages}) {
                        const auto g = choisisGraduations(m, total, unite, place, fixe(w));
                        ASSERT_LE(g.nombre, 12) << m << " " << total << " " << place << " " << w;
                        ASSERT_TRUE(g.nombre <= 0 || g.maximum >= 1) << m << " " << total;
                    }
}

} // namespace
