#include <alerts/AlerteFixture.h>

#include <thread>

#include <gmock/gmock.h>

#include <libvue/alerts/ParentCallbackProxy.h>
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
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

const KAlerteInfo kInfo{u"Remplacer ?", u"Tout.", kDialogueAttention};
const UniChaine kUn{u"Un"}, kDeux{u"Deux"}, kTrois{u"Trois"}, kQuatre{u"Quatre"}, kCinq{u"Cinq"};
/// Nothing was pressed.
constexpr int kRien = -77;

/// What a mask, a default and a cancel button give. The answers are those of Return and of Escape.
struct Rangee {
    const char* nom;
    int masque, defaut, annuler;
    std::vector<std::string> titres;
    std::string cles; ///< one letter a button: r Return, e Escape, - none
    int retour, echap;
};

const Rangee kTable[] = {
    {"one", 1, 1, 1, {"OK"}, "r", 1, 1},
    {"two", 1 | 2, 1, 2, {"OK", "Annuler"}, "re", 1, 2},
    {"cancel is default", 1 | 2, 2, 2, {"Annuler", "OK"}, "r-", 2, kRien},
    {"the others rise between", 2 | 128 | 512, 128, 2, {"Oui", "Non", "Annuler"}, "r-e", 128, 2},
    {"the default is the highest", 1 | 2 | 4 | 8, 8, 1, {"Fermer", "Annuler", "Appliquer", "OK"}, "r--e", 8, 1},
    {"no default in the mask", 2 | 16 | 32, 1, 2, {"Sauvegarder", "Sauvegarder tout", "Annuler"}, "--e", kRien, 2},
    {"no cancel in the mask", 1 | 64, 1, 2, {"OK", "Aide"}, "r-", 1, kRien},
    {"neither", 4 | 16 | 8, 1, 2, {"Appliquer", "Fermer", "Sauvegarder"}, "---", kRien, kRien},
    {"one, and neither", 16384, 1, 2, {"Continuer"}, "-", kRien, 16384},
    {"the fifth is raw",
     1 | 2 | 4 | 8 | 16,
     1,
     2,
     {"OK", "Appliquer", "Fermer", "Sauvegarder", "Annuler"},
     "r---e",
     1,
     1004},
    {"values with an escape",
     256 | 1024 | 2048,
     256,
     1024,
     {"Oui \\U00E0 tout", "R\\U00E9essayer", "Non \\U00E0 tout"},
     "r-e",
     256,
     1024},
    {"without a title",
     8192 | 131072 | 32768 | 4096,
     8192,
     131072,
     {"", "Ignorer", "Essayer", ""},
     "r--e",
     8192,
     131072},
    {"labels",
     0x10000 | 0x40000 | 0x80000 | 0x100000,
     0x40000,
     0x10000,
     {"Deux", "Trois", "Quatre", "Un"},
     "r--e",
     0x40000,
     0x10000},
    {"the last label", 0x200000 | 1, 0x200000, 1, {"Cinq", "OK"}, "re", 0x200000, 1},
};

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
    int demande(FenAlerte* f, const Rangee& r, const KAlerteReceveur* qui = nullptr) {
        return KAlerte(f, kInfo, r.masque, static_cast<eBoutons>(r.defaut), static_cast<eBoutons>(r.annuler), kUn,
                       kDeux, kTrois, kQuatre, kCinq, qui);
    }
    int rappelle(FenAlerte* f, const UniChaine& cle, const KAlerteReceveur* qui = nullptr,
                 eTypStockeur ou = kStockeurPreferences, int masque = 1 | 2) {
        return KAlerteRappel(f, kInfo, ou, cle, masque, kBoutonOK, kBoutonAnnuler, kUn, kDeux, kTrois, kQuatre, kCinq,
                             qui);
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

TEST_F(KAlerteTest, ButtonsKeysAndAnswersOfAModalAlert) {
    for (const Rangee& r : kTable) {
        SCOPED_TRACE(r.nom);
        for (const char16_t touche : {kRetour, kEchap}) {
            const int attendu = touche == kRetour ? r.retour : r.echap;
            const std::size_t bips = windows().beeps();
            quandModale([&](NSWindow* a) {
                ASSERT_TRUE(a);
                EXPECT_THAT(titres(a), ElementsAreArray(r.titres));
                EXPECT_EQ(cles(a), r.cles);
                windows().key(touche);
                // Where the key does nothing the mouse helps.
                if (attendu == kRien)
                    NSRunLoop::mainRunLoop()->performBlock([&, alerte = Ref<NSWindow>(a)] {
                        EXPECT_EQ(NSApp()->modalWindow(), alerte.get());
                        clique(boutons(alerte).back());
                    });
            });
            const int reponse = demande(nullptr, r);
            if (attendu == kRien) {
                EXPECT_GT(windows().beeps(), bips);
                continue;
            }
            EXPECT_EQ(reponse, attendu);
        }
    }
    EXPECT_FALSE(NSApp()->modalWindow());
}

TEST_F(KAlerteTest, ButtonsKeysAndAnswersOfASheet) {
    for (const Rangee& r : kTable) {
        SCOPED_TRACE(r.nom);
        for (const char16_t c : {kRetour, kEchap}) {
            const int attendu = c == kRetour ? r.retour : r.echap;
            receveur.reponses.clear();
            ASSERT_EQ(demande(&feuille, r, &receveur), 1);
            drain();
            const Ref<NSWindow> a(fenetre->attachedSheet());
            ASSERT_TRUE(a);
            EXPECT_THAT(titres(a), ElementsAreArray(r.titres));
            EXPECT_EQ(cles(a), r.cles);
            touche(c);
            if (attendu == kRien) {
                EXPECT_THAT(receveur.reponses, IsEmpty());
                clique(boutons(a).front());
                drain();
                EXPECT_EQ(receveur.reponses.size(), 1u);
            } else
                EXPECT_THAT(receveur.reponses, ElementsAre(attendu));
            EXPECT_FALSE(fenetre->attachedSheet());
            EXPECT_FALSE(a->isVisible());
        }
    }
    EXPECT_THAT(receveur.ids, testing::Each(42));
}

TEST_F(KAlerteTest, TheMouseAnswersEachButton) {
    const Rangee& r = kTable[9];
    const int attendus[] = {1, 4, 8, 16, 1004};
    for (std::size_t i = 0; i < 5; ++i) {
        quandModale([&](NSWindow* a) { clique(boutons(a)[i]); });
        EXPECT_EQ(demande(nullptr, r), attendus[i]);
    }
}

TEST_F(KAlerteTest, TheKindChoosesTheStyleAndTheShortFormsHaveOneButton) {
    const std::pair<int, std::string> signes[] = {{2, "Information"}, {3, "Attention"}, {4, "Erreur"},
                                                  {6, "Attention"},   {0, "Attention"}, {99, "Attention"}};
    for (const auto& s : signes) {
        quandModale([&](NSWindow* a) {
            EXPECT_EQ(a->contentView()->subviews()[0]->accessibilityDescription().label->utf8(), s.second) << s.first;
            windows().key(kRetour);
        });
        const KAlerteInfo info{u"Message", u"Explication", s.first};
        // A mask above 1 keeps even a notification an alert.
        EXPECT_EQ(KAlerte(nullptr, info, 1 | 2, kBoutonOK, kBoutonAnnuler, nullptr), 1);
    }
    quandModale([&](NSWindow* a) {
        EXPECT_THAT(titres(a), ElementsAre("OK"));
        windows().key(kEchap);
    });
    EXPECT_EQ(KAlerteErreur(nullptr, KAlerteInfoErreur{u"Raté", {}, 12}), 1);
    EXPECT_EQ(KAlerteCentrageNatif(fenetre.get(), kInfo), 1);
    EXPECT_TRUE(fenetre->attachedSheet());
    drain();
    touche(kRetour);
    EXPECT_FALSE(fenetre->attachedSheet());
}

TEST_F(KAlerteTest, NothingIsShownWithoutAMessageOrFromAnotherThread) {
    EXPECT_EQ(KAlerte(&feuille, KAlerteInfo{kUniChaineNulle, u"Explication"}), 0);
    int reponse = -1;
    const KAlerteInfo info = kInfo;
    std::thread([&] { reponse = KAlerte(&feuille, info, 3, kBoutonOK, kBoutonAnnuler, &receveur); }).join();
    EXPECT_EQ(reponse, 0);
    drain();
    EXPECT_FALSE(fenetre->attachedSheet());
    EXPECT_FALSE(NSApp()->modalWindow());
    // A notice asks nothing, remembers nothing, answers nothing.
    retiensReponse(u"ephemere");
    EXPECT_EQ(KAlerteRappel(&feuille, KAlerteInfo{u"Avis", {}, kDialogueEphemere}, kStockeurPreferences, u"ephemere", 3,
                            kBoutonOK, kBoutonAnnuler, kUn, kDeux, kTrois, kQuatre, kCinq, &receveur),
              0);
    EXPECT_FALSE(fenetre->attachedSheet());
    EXPECT_THAT(receveur.reponses, IsEmpty());
    const auto enfants = fenetre->childWindows();
    EXPECT_EQ(enfants->count(), 1u) << "the notice hangs on the window";
    pass(5);
}

TEST_F(KAlerteTest, AWindowThatWasNeverOnTheScreenGetsTheModalForm) {
    const Ref<NSWindow> jamais = windowAt({{0, 0}, {300, 200}});
    FenAlerte f(jamais.get());
    quandModale([&](NSWindow*) { windows().key(kEchap); });
    EXPECT_EQ(demande(&f, kTable[1], &receveur), 2);
    EXPECT_THAT(receveur.reponses, IsEmpty()) << "no receiver is told of a modal answer";
    // One that is hidden comes back with its sheet.
    fenetre->orderOut(nullptr);
    EXPECT_EQ(demande(&feuille, kTable[1], &receveur), 1);
    EXPECT_TRUE(fenetre->isVisible());
    EXPECT_TRUE(fenetre->attachedSheet()->isVisible());
    drain();
    touche(kEchap);
    EXPECT_THAT(receveur.reponses, ElementsAre(2));
}

// Not again.

TEST_F(KAlerteTest, ATickedBoxIsRememberedWithAnyAnswerButTheCancelButton) {
    const auto coche = [&](char16_t touche) {
        return [this, touche](NSWindow* a) {
            ASSERT_TRUE(boite(a));
            clique(boite(a));
            NSRunLoop::mainRunLoop()->performBlock([this, touche] { windows().key(touche); });
        };
    };
    quandModale(coche(kEchap));
    EXPECT_EQ(rappelle(nullptr, u"cle"), 2);
    EXPECT_FALSE(retenue(u"cle"));
    quandModale([&](NSWindow*) { windows().key(kRetour); });
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1) << "without a tick";
    EXPECT_FALSE(retenue(u"cle"));
    quandModale(coche(kRetour));
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1);
    EXPECT_TRUE(retenue(u"cle"));
    // Nothing is shown from now on: a modal alert would find nobody to answer it.
    EXPECT_EQ(rappelle(nullptr, u"cle"), 1);
    EXPECT_EQ(rappelle(&feuille, u"cle", &receveur), 1);
    EXPECT_EQ(rappelle(nullptr, u"cle", nullptr, kStockeurPreferences, 4 | 8), 1) << "though it is not in the mask";
    EXPECT_FALSE(fenetre->attachedSheet());
    // Another key, another store: it is asked.
    quandModale([&](NSWindow*) { windows().key(kEchap); });
    EXPECT_EQ(rappelle(nullptr, u"autre"), 2);
    for (const int ou : {0, 2}) {
        quandModale([&](NSWindow* a) {
            EXPECT_FALSE(boite(a));
            windows().key(kEchap);
        });
        EXPECT_EQ(rappelle(nullptr, u"cle", nullptr, static_cast<eTypStockeur>(ou)), 2);
    }
    KAlerteOublieToutesLesReponses(kStockeurPreferences);
    EXPECT_TRUE(retenue(u"cle"));
    oublieReponse(u"cle");
    EXPECT_FALSE(retenue(u"cle"));
}

TEST_F(KAlerteTest, ASheetRemembersForItsReceiverAlone) {
    const auto repond = [&](char16_t c) {
        drain();
        clique(boite(fenetre->attachedSheet()));
        drain();
        touche(c);
    };
    rappelle(&feuille, u"cle", &receveur);
    repond(kEchap);
    EXPECT_FALSE(retenue(u"cle"));
    rappelle(&feuille, u"cle");
    repond(kRetour);
    EXPECT_FALSE(retenue(u"cle")) << "without a receiver the answer is lost";
    rappelle(&feuille, u"cle", &receveur);
    repond(kRetour);
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

TEST_F(KAlerteTest, AReceiverThatIsGoneIsNotTold) {
    auto passant = std::make_unique<Receveur>(7);
    rappelle(&feuille, u"cle", passant.get());
    drain();
    clique(boite(fenetre->attachedSheet()));
    drain();
    passant.reset();
    EXPECT_TRUE(fenetre->attachedSheet()) << "the person still reads it";
    touche(kRetour);
    EXPECT_FALSE(fenetre->attachedSheet());
    EXPECT_TRUE(retenue(u"cle")) << "what was ticked counts";
}

TEST_F(KAlerteTest, TheReceiverMayGoInItsAnswerAndTheWindowUnderItsSheet) {
    auto passant = std::make_unique<Receveur>(7);
    demande(&feuille, kTable[1], passant.get());
    drain();
    passant->alors = [&] { passant.reset(); };
    touche(kRetour);
    EXPECT_FALSE(passant);

    demande(&feuille, kTable[1], &receveur);
    demande(&feuille, kTable[3], &receveur);
    drain();
    fenetre->close();
    EXPECT_THAT(receveur.reponses, ElementsAre(NSRunAbortedResponse, NSRunAbortedResponse));
    EXPECT_FALSE(fenetre->attachedSheet());
}

TEST_F(KAlerteTest, AnAlertInTheAnswerOfASheetFollowsIt) {
    receveur.alors = [&] {
        receveur.alors = nullptr;
        EXPECT_FALSE(fenetre->attachedSheet());
        EXPECT_EQ(demande(&feuille, kTable[3], &receveur), 1);
        quandModale([&](NSWindow* a) {
            EXPECT_THAT(titres(a), ElementsAre("OK"));
            windows().key(kRetour);
        });
        EXPECT_EQ(KAlerte(nullptr, kInfo), 1) << "modal, above the sheet that has come up";
    };
    demande(&feuille, kTable[1], &receveur);
    drain();
    touche(kRetour);
    ASSERT_TRUE(fenetre->attachedSheet());
    EXPECT_THAT(titres(fenetre->attachedSheet()), ElementsAre("Oui", "Non", "Annuler"));
    touche(kEchap);
    EXPECT_THAT(receveur.reponses, ElementsAre(1, 2));
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
            NSRunLoop::mainRunLoop()->performBlock([&] {
                EXPECT_TRUE(ordre.empty());
                windows().key(kEchap);
            });
        });
        ordre.push_back(demande(nullptr, kTable[1]));
        EXPECT_EQ(NSApp()->modalWindow(), garde.get());
        windows().key(kEchap);
    });
    ordre.push_back(demande(nullptr, kTable[3]));
    EXPECT_THAT(ordre, ElementsAre(2, 2));
}

TEST_F(KAlerteTest, SheetsOfOneWindowComeOneAfterTheOther) {
    demande(&feuille, kTable[1], &receveur);
    demande(&feuille, kTable[3], &receveur);
    drain();
    EXPECT_THAT(titres(fenetre->attachedSheet()), ElementsAre("OK", "Annuler"));
    touche(kEchap);
    EXPECT_THAT(titres(fenetre->attachedSheet()), ElementsAre("Oui", "Non", "Annuler"));
    touche(kRetour);
    EXPECT_THAT(receveur.reponses, ElementsAre(2, 128));
}

} // namespace
