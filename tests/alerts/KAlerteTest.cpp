#include <alerts/AlerteFixture.h>

#include <thread>

#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSUserDefaults.h>

using namespace libvue;
using namespace libvue::test;
using namespace libvue::KDialogue;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const KAlerteInfo kInfo{u"Remplacer ?", u"Tout.", kDialogueAttention};
const UniChaine kUn{u"Un"}, kDeux{u"Deux"}, kTrois{u"Trois"}, kQuatre{u"Quatre"}, kCinq{u"Cinq"};
/// The key does nothing.
constexpr int kRien = -77;

/// What a mask, a default and a cancel button give. The answers are those of Return and of Escape.
struct Rangee {
    const char* nom;
    int masque, defaut, annuler;
    std::string titres;
    std::string cles; ///< one letter a button: r Return, e Escape, - none
    int retour, echap;
};

const Rangee kTable[] = {
    {"one", 1, 1, 1, "OK", "r", 1, 1},
    {"two", 1 | 2, 1, 2, "OK|Annuler", "re", 1, 2},
    {"cancel is default", 1 | 2, 2, 2, "Annuler|OK", "r-", 2, kRien},
    {"the others rise between", 2 | 128 | 512, 128, 2, "Oui|Non|Annuler", "r-e", 128, 2},
    {"the default is the highest", 1 | 2 | 4 | 8, 8, 1, "Fermer|Annuler|Appliquer|OK", "r--e", 8, 1},
    {"no default in the mask", 2 | 16 | 32, 1, 2, "Sauvegarder|Sauvegarder tout|Annuler", "--e", kRien, 2},
    {"no cancel in the mask", 1 | 64, 1, 2, "OK|Aide", "r-", 1, kRien},
    {"neither", 4 | 16 | 8, 1, 2, "Appliquer|Fermer|Sauvegarder", "---", kRien, kRien},
    {"one, and neither", 16384, 1, 2, "Continuer", "-", kRien, 16384},
    {"the fifth is raw", 1 | 2 | 4 | 8 | 16, 1, 2, "OK|Appliquer|Fermer|Sauvegarder|Annuler", "r---e", 1, 1004},
    {"escapes", 256 | 1024 | 2048, 256, 1024, "Oui \\U00E0 tout|R\\U00E9essayer|Non \\U00E0 tout", "r-e", 256, 1024},
    {"without a title", 8192 | 131072 | 32768 | 4096, 8192, 131072, "|Ignorer|Essayer|", "r--e", 8192, 131072},
    {"labels", 0x1D0000, 0x40000, 0x10000, "Deux|Trois|Quatre|Un", "r--e", 0x40000, 0x10000},
    {"the last label", 0x200000 | 1, 0x200000, 1, "Cinq|OK", "re", 0x200000, 1},
};
const Rangee& kDeuxBoutons = kTable[1];
const Rangee& kTroisBoutons = kTable[3];

class KAlerteTest : public AlerteFixture {
protected:
    FenAlerte feuille{nullptr};
    Receveur receveur{42};

    void SetUp() override {
        AlerteFixture::SetUp();
        feuille = FenAlerte(fenetre.get());
        // Without translations, whatever lies beside this program.
        const auto nulle = NSBundle::bundleWithPath(NSString::fromUTF8(testing::TempDir()));
        ASSERT_TRUE(nulle);
        NSBundle::setMainBundle(nulle);
        NSUserDefaults::standardUserDefaults()->removeObjectForKey(kPrefsAlertes);
    }
    void TearDown() override {
        NSUserDefaults::standardUserDefaults()->removeObjectForKey(kPrefsAlertes);
        NSUserDefaults::resetStandardUserDefaults();
        NSBundle::setMainBundle(nullptr);
        AlerteFixture::TearDown();
    }
    static int demande(FenAlerte* f, const Rangee& r, const KAlerteReceveur* qui = nullptr) {
        return KAlerte(f, kInfo, r.masque, static_cast<eBoutons>(r.defaut), static_cast<eBoutons>(r.annuler), kUn,
                       kDeux, kTrois, kQuatre, kCinq, qui);
    }
    static int rappelle(FenAlerte* f, const UniChaine& cle, const KAlerteReceveur* qui = nullptr,
                        int ou = kStockeurPreferences, int masque = 1 | 2, const KAlerteInfo& info = kInfo) {
        return KAlerteRappel(f, info, static_cast<eTypStockeur>(ou), cle, masque, kBoutonOK, kBoutonAnnuler, kUn, kDeux,
                             kTrois, kQuatre, kCinq, qui);
    }
    static std::string cles(NSWindow* alerte) {
        std::string s;
        for (const auto& b : boutons(alerte)) {
            const auto k = b->keyEquivalent();
            s += k->length() == 0 ? '-' : k->unit(0) == kRetour ? 'r' : k->unit(0) == kEchap ? 'e' : '?';
        }
        return s;
    }
    static BOOL retenue(const char16_t* cle) { return estReponseRetenue(cle); }
};

TEST_F(KAlerteTest, ButtonsKeysAndAnswers) {
    for (const bool enFeuille : {false, true})
        for (const Rangee& r : kTable)
            for (const char16_t c : {kRetour, kEchap}) {
                SCOPED_TRACE(r.nom + std::string(enFeuille ? ", sheet" : ", modal") + (c == kRetour ? "" : ", Escape"));
                const int attendu = c == kRetour ? r.retour : r.echap;
                const std::size_t bips = windows().beeps();
                receveur.reponses.clear();
                Ref<NSWindow> alerte;
                const auto quandLa = [&](NSWindow* a) {
                    ASSERT_TRUE(a);
                    alerte = a;
                    EXPECT_EQ(titres(a), r.titres);
                    EXPECT_EQ(cles(a), r.cles);
                    windows().key(c);
                    if (attendu != kRien) return;
                    // Where the key does nothing the mouse helps.
                    auTourSuivant([&] {
                        EXPECT_TRUE(alerte->isVisible());
                        EXPECT_THAT(receveur.reponses, IsEmpty());
                        clique(boutons(alerte).back());
                    });
                };
                if (enFeuille) {
                    ASSERT_EQ(demande(&feuille, r, &receveur), 1);
                    drain();
                    quandLa(fenetre->attachedSheet());
                    drain();
                } else {
                    quandModale(quandLa);
                    receveur.reponses.push_back(demande(nullptr, r));
                }
                ASSERT_EQ(receveur.reponses.size(), 1u);
                EXPECT_TRUE(attendu == kRien || receveur.reponses[0] == attendu) << receveur.reponses[0];
                EXPECT_EQ(windows().beeps() > bips, attendu == kRien);
                EXPECT_FALSE(alerte->isVisible() || fenetre->attachedSheet() || NSApp()->modalWindow());
            }
    EXPECT_THAT(receveur.ids, testing::Each(42));
}

TEST_F(KAlerteTest, TheKindChoosesTheStyleAndTheShortFormsHaveOneButton) {
    const std::pair<int, std::string> signes[] = {{2, "Information"}, {3, "Attention"}, {4, "Erreur"},
                                                  {6, "Attention"},   {0, "Attention"}, {99, "Attention"}};
    for (const auto& [sorte, signe] : signes) {
        quandModale([&, s = signe](NSWindow* a) {
            EXPECT_EQ(a->contentView()->subviews()[0]->accessibilityDescription().label->utf8(), s);
            windows().key(kRetour);
        });
        // A mask above 1 keeps even a notification an alert.
        EXPECT_EQ(KAlerte(nullptr, KAlerteInfo{u"Message", {}, sorte}, 1 | 2, kBoutonOK, kBoutonAnnuler, nullptr), 1)
            << sorte;
    }
    quandModale([&](NSWindow* a) {
        EXPECT_EQ(titres(a), "OK");
        windows().key(kEchap);
    });
    EXPECT_EQ(KAlerteErreur(nullptr, KAlerteInfoErreur{u"Raté", {}, 12}), 1);
    EXPECT_EQ(KAlerteCentrageNatif(fenetre.get(), kInfo), 1);
    EXPECT_EQ(titres(fenetre->attachedSheet()), "OK");
    repond(kRetour);
}

TEST_F(KAlerteTest, NothingIsAskedWithoutAMessageFromAnotherThreadOrByANotice) {
    EXPECT_EQ(KAlerte(&feuille, KAlerteInfo{kUniChaineNulle, u"Explication"}), 0);
    int reponse = -1;
    std::thread([&] { reponse = KAlerte(&feuille, kInfo, 3, kBoutonOK, kBoutonAnnuler, &receveur); }).join();
    EXPECT_EQ(reponse, 0);
    drain();
    retiensReponse(u"cle");
    EXPECT_EQ(
        rappelle(&feuille, u"cle", &receveur, kStockeurPreferences, 3, KAlerteInfo{u"Avis", {}, kDialogueEphemere}), 0);
    const auto enfants = fenetre->childWindows();
    EXPECT_EQ(enfants->count(), 1u) << "the notice hangs on the window";
    pass(5);
    EXPECT_FALSE(fenetre->attachedSheet() || NSApp()->modalWindow());
    EXPECT_THAT(receveur.reponses, IsEmpty());
}

TEST_F(KAlerteTest, AWindowThatWasNeverOnTheScreenGetsTheModalForm) {
    const Ref<NSWindow> jamais = windowAt({{0, 0}, {300, 200}});
    FenAlerte f(jamais.get());
    modaleRecoit(kEchap);
    EXPECT_EQ(demande(&f, kDeuxBoutons, &receveur), 2);
    EXPECT_THAT(receveur.reponses, IsEmpty()) << "no receiver is told of a modal answer";
    // One that is hidden comes back with its sheet.
    fenetre->orderOut(nullptr);
    EXPECT_EQ(demande(&feuille, kDeuxBoutons, &receveur), 1);
    EXPECT_TRUE(fenetre->isVisible() && fenetre->attachedSheet()->isVisible());
    repond(kEchap);
    EXPECT_THAT(receveur.reponses, ElementsAre(2));
}

// Not again.

TEST_F(KAlerteTest, ATickedBoxIsRememberedWithAnyAnswerButTheCancelButton) {
    const auto coche = [&](char16_t c) {
        quandModale([this, c](NSWindow* a) {
            ASSERT_TRUE(boite(a));
            clique(boite(a));
            auTourSuivant([this, c] { windows().key(c); });
        });
    };
    coche(kEchap);
    EXPECT_EQ(rappelle(nullptr, u"cle"), 2);
    EXPECT_FALSE(retenue(u"cle"));
    modaleRecoit(kRetour);
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1) << "without a tick";
    EXPECT_FALSE(retenue(u"cle"));
    coche(kRetour);
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1);
    EXPECT_TRUE(retenue(u"cle"));
    // Nothing is shown from now on: a modal alert would find nobody to answer it.
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1);
    EXPECT_EQ(rappelle(&feuille, u"cle", &receveur), 1);
    EXPECT_EQ(rappelle(nullptr, u"cle", nullptr, kStockeurPreferences, 4 | 8), 1) << "though it is not in the mask";
    EXPECT_FALSE(fenetre->attachedSheet());
    // Another key, another store: it is asked.
    modaleRecoit(kEchap);
    EXPECT_EQ(rappelle(nullptr, u"autre"), 2);
    for (const int ou : {0, 2}) {
        quandModale([&](NSWindow* a) {
            EXPECT_FALSE(boite(a));
            windows().key(kEchap);
        });
        EXPECT_EQ(rappelle(nullptr, u"cle", nullptr, ou), 2);
    }
    KAlerteOublieToutesLesReponses(kStockeurPreferences);
    EXPECT_TRUE(retenue(u"cle"));
    oublieReponse(u"cle");
    EXPECT_FALSE(retenue(u"cle"));
}

TEST_F(KAlerteTest, ASheetRemembersForItsReceiverAlone) {
    rappelle(&feuille, u"cle", &receveur);
    repond(kEchap, true);
    EXPECT_FALSE(retenue(u"cle"));
    rappelle(&feuille, u"cle");
    repond(kRetour, true);
    EXPECT_FALSE(retenue(u"cle")) << "without a receiver the answer is lost";
    rappelle(&feuille, u"cle", &receveur);
    repond(kRetour, true);
    EXPECT_TRUE(retenue(u"cle"));
    EXPECT_THAT(receveur.reponses, ElementsAre(2, 1));
}

TEST_F(KAlerteTest, AnswersSurviveWhateverElseStandsUnderTheKey) {
    auto* d = NSUserDefaults::standardUserDefaults();
    d->setObject_forKey(u"abîmé"_ns, kPrefsAlertes);
    EXPECT_FALSE(retenue(u"a"));
    retiensReponse(u"a");
    retiensReponse(u"b");
    EXPECT_TRUE(retenue(u"a") && retenue(u"b"));
    const auto mixte = NSMutableDictionary::dictionaryWithDictionary(d->dictionaryForKey(kPrefsAlertes));
    mixte->setObject_forKey(NSNumber::numberWithBool(NO), u"b"_ns);
    mixte->setObject_forKey(u"oui"_ns, u"c"_ns);
    d->setObject_forKey(mixte, kPrefsAlertes);
    EXPECT_TRUE(retenue(u"a"));
    EXPECT_FALSE(retenue(u"b") || retenue(u"c"));
}

// Who comes and goes.

TEST_F(KAlerteTest, ReceiversAndWindowsMayGoUnderTheirSheet) {
    auto passant = std::make_unique<Receveur>(7);
    rappelle(&feuille, u"cle", passant.get());
    passant.reset();
    EXPECT_TRUE(fenetre->attachedSheet()) << "the person still reads it";
    repond(kRetour, true);
    EXPECT_FALSE(fenetre->attachedSheet());
    EXPECT_TRUE(retenue(u"cle")) << "what was ticked counts";

    passant = std::make_unique<Receveur>(7);
    demande(&feuille, kDeuxBoutons, passant.get());
    passant->alors = [&] { passant.reset(); };
    repond(kRetour);
    EXPECT_FALSE(passant);

    demande(&feuille, kDeuxBoutons, &receveur);
    demande(&feuille, kTroisBoutons, &receveur);
    drain();
    fenetre->close();
    EXPECT_THAT(receveur.reponses, ElementsAre(NSRunAbortedResponse, NSRunAbortedResponse));
    EXPECT_FALSE(fenetre->attachedSheet());
}

TEST_F(KAlerteTest, SheetsOfOneWindowComeOneAfterTheOtherAndFromAnAnswer) {
    receveur.alors = [&] {
        receveur.alors = nullptr;
        EXPECT_FALSE(fenetre->attachedSheet());
        EXPECT_EQ(demande(&feuille, kTable[2], &receveur), 1);
        modaleRecoit(kRetour);
        EXPECT_EQ(KAlerte(nullptr, kInfo), 1) << "modal, above the sheet that has come up";
    };
    demande(&feuille, kDeuxBoutons, &receveur);
    demande(&feuille, kTroisBoutons, &receveur);
    for (const char* attendus : {"OK|Annuler", "Oui|Non|Annuler", "Annuler|OK"}) {
        ASSERT_TRUE(fenetre->attachedSheet());
        EXPECT_EQ(titres(fenetre->attachedSheet()), attendus);
        repond(kRetour);
    }
    EXPECT_THAT(receveur.reponses, ElementsAre(1, 128, 2));
}

TEST_F(KAlerteTest, AnAlertWithinAnAlertIsAnsweredFirst) {
    std::vector<int> ordre;
    quandModale([&](NSWindow* dehors) {
        const Ref<NSWindow> garde(dehors);
        garde->setFrameOrigin({10, 10}); // from under the other one
        quandModale([&](NSWindow* dedans) {
            EXPECT_NE(dedans, garde.get());
            // The outer one waits: its button is out of reach.
            clique(boutons(garde).front());
            auTourSuivant([&] {
                EXPECT_TRUE(ordre.empty());
                windows().key(kEchap);
            });
        });
        ordre.push_back(demande(nullptr, kDeuxBoutons));
        EXPECT_EQ(NSApp()->modalWindow(), garde.get());
        windows().key(kRetour);
    });
    ordre.push_back(demande(nullptr, kTroisBoutons));
    EXPECT_THAT(ordre, ElementsAre(2, 128));
}

} // namespace
