#include <libvue/alerts/KAlerteReceveur.h>

#include <libvue/alerts/ParentCallbackProxy.h>

namespace libvue {

KAlerteDeleguay::~KAlerteDeleguay() = default;

namespace KDialogue {

KAlerteReceveur::~KAlerteReceveur() { ParentCallbackProxy::oublieReceveur(this); }

int KAlerteReceveur::TraiteKAlerte(const KAlerteInfo&) { return -1; }
int KAlerteReceveur::TraiteKAlerteRappel(const KAlerteInfo&, const UniChaine&) { return -1; }

} // namespace KDialogue

} // namespace libvue
