#pragma once

#include <grille/SourceDeGrille.h>

namespace galerie {

/// Every word of the system's list as a card; beyond its end, the list begins again.
class MotsEnCartes : public SourceDeGrille {
public:
    static void describe(ClassDescription<MotsEnCartes, SourceDeGrille>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Mots français"_ns; }
    [[nodiscard]] NSUInteger maximum() override { return 1'000'000; }
    [[nodiscard]] NSUInteger auDebut() override;
    [[nodiscard]] Ref<NSArray> objets(NSUInteger nombre) override;
    [[nodiscard]] const Class& classeVue() const override;
    [[nodiscard]] Ref<NSString> nomNib() const override { return u"Carte"_ns; }
    [[nodiscard]] Ref<NSString> dit(NSObject* objet) const override;

private:
    [[nodiscard]] const NSArray& mots();

    Ref<NSArray> mots_;
    Ref<NSMutableArray> cartes_; // those made so far
};

} // namespace galerie
