#include <libvue/socle/KAlerteInfo.h>

#include <utility>

namespace libvue {

KAlerteInfo::KAlerteInfo(UniChaine message, UniChaine explication, int type)
    : monMessage(std::move(message)), monExplication(std::move(explication)), monType(type) {}
KAlerteInfo::~KAlerteInfo() = default;

UniChaine KAlerteInfo::DonneExplication() const { return monExplication; }

KAlerteInfoErreur::KAlerteInfoErreur(UniChaine message, UniChaine explication, int code, int type)
    : KAlerteInfo(std::move(message), std::move(explication), type), monCode(code) {}
KAlerteInfoErreur::~KAlerteInfoErreur() = default;

} // namespace libvue
