#pragma once

#include <libvue/socle/KDialogue.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

/// What an alert says, for code that stands outside of the objects. Copied by value.
class LIBVUE_API KAlerteInfo {
public:
    /// `type` is a KDialogue::eTypDialogue; an empty message shows nothing at all.
    explicit KAlerteInfo(UniChaine message, UniChaine explication = {}, int type = KDialogue::kDialogueAttention);
    KAlerteInfo(const KAlerteInfo&) = default;
    KAlerteInfo(KAlerteInfo&&) = default;
    KAlerteInfo& operator=(const KAlerteInfo&) = default;
    KAlerteInfo& operator=(KAlerteInfo&&) = default;
    virtual ~KAlerteInfo();

    /// What stands under the message, smaller; empty for nothing.
    [[nodiscard]] virtual UniChaine DonneExplication() const;

    [[nodiscard]] UniChaine DonneMessage() const { return monMessage; }
    [[nodiscard]] int DonneTypeDialogue() const noexcept { return monType; }

private:
    UniChaine monMessage, monExplication;
    int monType;
};

/// What went wrong, with the number of the fault.
class LIBVUE_API KAlerteInfoErreur : public KAlerteInfo {
public:
    explicit KAlerteInfoErreur(UniChaine message, UniChaine explication = {}, int code = 0,
                               int type = KDialogue::kDialogueErreur);
    ~KAlerteInfoErreur() override;
    /// 0 where there is none.
    [[nodiscard]] int DonneCode() const noexcept { return monCode; }

private:
    int monCode;
};

} // namespace libvue
