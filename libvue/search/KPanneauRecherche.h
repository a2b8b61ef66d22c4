#pragma once

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/search/ClientRecherche.h>

namespace libvue {

class NSBundle;
class NSForm;

/// What the find commands and the panel's buttons mean, by their tags.
enum ActionRecherche : NSInteger {
    kRechercheMontrer = 1,
    kRechercheSuivant = 2,
    kRecherchePrecedent = 3,
    kRechercheUtiliserSelection = 7
};

/// The find panel. It sends searches to a client (see ClientRecherche.h), keeps the find text that applications share,
/// and tells the user when nothing was found.
class LIBVUE_API KPanneauRecherche : public NSPanel {
public:
    static void describe(ClassDescription<KPanneauRecherche, NSPanel>& c);
    KPanneauRecherche();
    ~KPanneauRecherche() override;

    /// A panel from the interface resource "PanneauRecherche" of the bundle (null: the application's, then the
    /// library's); null where the resource is damaged, which is logged, or holds none. The application's delegate makes
    /// one and keeps it.
    [[nodiscard]] static Ref<KPanneauRecherche> panneauDeRessource(NSBundle* bundle = nullptr);
    /// The one that the application's delegate answers; null where it answers none.
    [[nodiscard]] static KPanneauRecherche* panneauRecherche();

    /// Searches go to that object from now on (held weakly, may be null). One that searches by type 0 alone takes the
    /// choice of the type away.
    void initialisePourClient(NSObject* client);
    [[nodiscard]] NSObject* monClient() const noexcept { return monClient_; }

    /// The sought text, which is shared with other applications by being asked for. Null without a form.
    [[nodiscard]] Ref<NSString> string();
    /// Shares the text and shows it; null is ignored.
    void setString(NSString* texte);
    [[nodiscard]] BOOL respecterCasse() const;
    [[nodiscard]] BOOL boucle() const;
    /// Takes the text that was searched for last, in whatever application; nothing where there is none.
    void prendChaineRechercheDuPasteboard();
    /// Shows or hides the message in the panel. Where nothing was found and the search did not come from the panel, a
    /// notice over the client says so.
    void setIntrouvable_actionVientDuPanneau(BOOL introuvable, BOOL duPanneau);
    /// Does what the sender's tag means (see ActionRecherche); nothing for any other tag.
    ///
    /// "Next" by a key from within the panel closes it where the text was found; by a click it stays.
    void actionPanneauRecherche(NSObject* sender);

    /// Closes the platform's own find panel, where one is open.
    void fermeNSFindPanel_();
    /// Shares a text with other applications; null is ignored.
    void ecrisSurFindPB_(NSString* texte);

    // From the interface resource.

    void awakeFromNib() override;
    [[nodiscard]] NSForm* formulaire() const noexcept;
    [[nodiscard]] NSPopUpButton* typeRech() const noexcept;
    [[nodiscard]] NSButton* ignorerMajuscules() const noexcept;
    [[nodiscard]] NSButton* boiteBoucle() const noexcept;
    [[nodiscard]] NSButton* suivant() const noexcept;
    [[nodiscard]] NSTextField* msgIntrouvable() const noexcept;

private:
    // Outlets; what is not of the class is not taken.
    void setFormulaire(NSForm* f);
    void setTypeRech(NSPopUpButton* p);
    void setIgnorerMajuscules(NSButton* b);
    void setBoiteBoucle(NSButton* b);
    void setSuivant(NSButton* b);
    void setMsgIntrouvable(NSTextField* t);

    void montre(BOOL duPanneau);
    enum class Sens : bool { arriere, avant };
    void cherche(Sens sens, BOOL duPanneau);
    void utiliseSelection();
    void selectionneTexte();

    // The views belong to the panel's tree.
    Weak<NSForm> formulaire_;
    Weak<NSPopUpButton> typeRech_;
    Weak<NSButton> ignorerMajuscules_, boiteBoucle_, suivant_;
    Weak<NSTextField> msgIntrouvable_;
    Weak<NSObject> monClient_;
};

} // namespace libvue
