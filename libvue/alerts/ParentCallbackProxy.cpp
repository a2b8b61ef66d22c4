#include <libvue/alerts/ParentCallbackProxy.h>

#include <vector>

#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

namespace {

/// Those that exist, for receivers that go away.
std::vector<ParentCallbackProxy*>& tous() {
    static std::vector<ParentCallbackProxy*> tous;
    return tous;
}

} // namespace

void ParentCallbackProxy::describe(ClassDescription<ParentCallbackProxy>& c) {
    c.answers<&ParentCallbackProxy::alertDidEnd_returnCode_contextInfo>("alertDidEnd:returnCode:contextInfo:");
}

ParentCallbackProxy::ParentCallbackProxy(const KDialogue::KAlerteReceveur* receveur)
    : monParentCallback_(receveur), monIDMessage(receveur ? receveur->DonneIdMessage() : 0) {
    tous().push_back(this);
}

Ref<ParentCallbackProxy> ParentCallbackProxy::initAvecParentCallback(const KDialogue::KAlerteReceveur* receveur) {
    return make<ParentCallbackProxy>(receveur);
}

ParentCallbackProxy::~ParentCallbackProxy() { std::erase(tous(), this); }

void ParentCallbackProxy::oublieReceveur(const KDialogue::KAlerteReceveur* receveur) noexcept {
    for (ParentCallbackProxy* p : tous())
        if (p->monParentCallback_ == receveur) p->monParentCallback_ = nullptr;
}

void ParentCallbackProxy::alertDidEnd_returnCode_contextInfo(NSAlert* alerte, NSInteger code, void*) {
    // The count that was left to it when the sheet began goes with this one, also where the receiver raises.
    const Ref<ParentCallbackProxy> moi(this, adoptTag);
    if (alerte->window()) alerte->window()->close();
    const int reponse = reponseAlerte(alerte, code, maCle.get(), monBoutonAnnuler_);
    if (monParentCallback_) monParentCallback_->TraiteReponseAlerte(monIDMessage, reponse);
}

} // namespace libvue
