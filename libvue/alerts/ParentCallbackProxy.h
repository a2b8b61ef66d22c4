#pragma once

#include <memory>

#include <libvue/alerts/KAlerteReceveur.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Carries what one sheet needs until it ends. It owns itself from then on, and gives that up in alertDidEnd:.
class LIBVUE_API ParentCallbackProxy : public NSObject {
public:
    static void describe(ClassDescription<ParentCallbackProxy>& c);
    /// Takes the message id of the receiver as it is now; 0 for a null one.
    explicit ParentCallbackProxy(const KDialogue::KAlerteReceveur* receveur);
    [[nodiscard]] static Ref<ParentCallbackProxy> initAvecParentCallback(const KDialogue::KAlerteReceveur* receveur);
    ~ParentCallbackProxy() override;

    /// Null once the receiver is gone. Not kept.
    [[nodiscard]] const KDialogue::KAlerteReceveur* monParentCallback() const noexcept { return monParentCallback_; }
    void setMonParentCallback(const KDialogue::KAlerteReceveur* receveur) noexcept { monParentCallback_ = receveur; }
    [[nodiscard]] const UniChaine* maClePreferencesNePlusAfficher() const noexcept { return maCle.get(); }
    /// Takes the text over, which was made by new; null for none.
    void setMaClePreferencesNePlusAfficher(const UniChaine* cle) { maCle.reset(cle); }
    [[nodiscard]] int monBoutonAnnuler() const noexcept { return monBoutonAnnuler_; }
    void setMonBoutonAnnuler(int bouton) noexcept { monBoutonAnnuler_ = bouton; }

    /// Closes the alert's window, tells the receiver the answer, and gives the proxy up.
    void alertDidEnd_returnCode_contextInfo(NSAlert* alerte, NSInteger code, void* contexte);

    /// No proxy calls that receiver any more.
    static void oublieReceveur(const KDialogue::KAlerteReceveur* receveur) noexcept;

private:
    const KDialogue::KAlerteReceveur* monParentCallback_;
    std::unique_ptr<const UniChaine> maCle;
    int monBoutonAnnuler_ = 0;
    int monIDMessage = 0;
};

} // namespace libvue
