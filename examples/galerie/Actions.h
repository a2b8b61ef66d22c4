#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace galerie {

using namespace libvue;

/// Targets of controls, made from functions. It keeps them: a control does not keep its target.
class Actions {
public:
    using Fonction = std::function<void(NSObject* emetteur)>;
    /// To be set with `selecteur()` as the action.
    NSObject* cible(Fonction f);
    [[nodiscard]] static SEL selecteur() { return sel("agir:"); }

private:
    class Cible : public NSObject {
    public:
        static void describe(ClassDescription<Cible>& c) { c.answers<&Cible::agir>("agir:"); }
        explicit Cible(Fonction f) : fonction_(std::move(f)) {}
        void agir(NSObject* emetteur) {
            const Ref<Cible> moi(this);
            fonction_(emetteur);
        }

    private:
        Fonction fonction_;
    };
    std::vector<Ref<Cible>> cibles_;
};

inline NSObject* Actions::cible(Fonction f) { return cibles_.emplace_back(make<Cible>(std::move(f))); }

} // namespace galerie
