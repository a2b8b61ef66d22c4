#pragma once

#include <libvue/alerts/Forward.h>
#include <libvue/socle/KAlerteInfo.h>

namespace libvue {

/// What KDialogue::KAlerteReceveur is at its root.
class LIBVUE_API KAlerteDeleguay {
public:
    virtual ~KAlerteDeleguay() = 0;

protected:
    KAlerteDeleguay() = default;
    KAlerteDeleguay(const KAlerteDeleguay&) = default;
    KAlerteDeleguay& operator=(const KAlerteDeleguay&) = default;
};

namespace KDialogue {

/// Derived from by whoever wants the answer of a sheet. One that ends while its sheet is up is told nothing: the
/// sheet stays, and its answer is lost.
class LIBVUE_API KAlerteReceveur : public KAlerteDeleguay {
public:
    explicit KAlerteReceveur(int idMessage = -1) noexcept : monIdMessage(idMessage) {}
    KAlerteReceveur(const KAlerteReceveur&) = default;
    KAlerteReceveur& operator=(const KAlerteReceveur&) = default;
    ~KAlerteReceveur() override;

    // For alerts that are answered elsewhere; of themselves they answer -1, and nothing here asks them.
    virtual int TraiteKAlerte(const KAlerteInfo& info);
    virtual int TraiteKAlerteRappel(const KAlerteInfo& info, const UniChaine& cle);
    /// The answer of a sheet: an eBoutons, else the raw code (1004 and more for a fifth button and those after it,
    /// NSRunAbortedResponse for a sheet that went with its window). The id is the one of when the sheet was shown.
    virtual void TraiteReponseAlerte(int& idMessage, int reponse) const = 0;

    /// Comes back with the answer of each sheet.
    [[nodiscard]] int DonneIdMessage() const noexcept { return monIdMessage; }

private:
    int monIdMessage;
    // Left to those who derive from it in the sibling library.
    [[maybe_unused]] bool monPremierDrapeau = true;
    [[maybe_unused]] bool monSecondDrapeau = false;
};

} // namespace KDialogue

} // namespace libvue
