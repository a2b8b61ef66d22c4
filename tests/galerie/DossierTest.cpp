// The folder of pictures: what is read, what is loaded, what is given up.
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "../appkit/AppFixture.h"

#include <dossier/CarteImage.h>
#include <dossier/ImagesDeDossier.h>
#include <libvue/collections/KCCollectionView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSData.h>
#include <support/Silence.h>

namespace galerie {
namespace {

using libvue::test::AppFixture;
using libvue::test::Silence;

struct DossierTest : AppFixture {
    static constexpr int kImages = 300, kFausse = 4;
    std::filesystem::path dossier =
        std::filesystem::temp_directory_path() / ("libvue-dossier-" + std::to_string(getpid()));
    Ref<NSWindow> fenetre;
    Ref<ImagesDeDossier> source;
    Ref<NSScrollView> defilement;
    Ref<KCCollectionView> grille;

    void SetUp() override {
        std::filesystem::create_directories(dossier / "sous-dossier.png");
        auto& graphismes = *backend::Backend::current().graphics;
        const auto octets = graphismes.encode(*graphismes.makePicture({300, 150}, 1), "png");
        for (int i = 0; i < kImages; ++i) {
            char nom[24];
            std::snprintf(nom, sizeof nom, "%03d.PNG", i);
            std::ofstream(dossier / nom, std::ios::binary)
                .write(reinterpret_cast<const char*>(octets.data()),
                       static_cast<std::streamsize>(i == kFausse ? 20 : octets.size()));
        }
        std::ofstream(dossier / "lisez-moi.txt") << "rien";
        fenetre = windowAt({{50, 50}, {720, 520}});
        defilement = make<NSScrollView>(fenetre->contentView()->bounds());
        grille = make<KCCollectionView>(NSRect{NSZeroPoint, defilement->contentSize()});
        source = make<ImagesDeDossier>();
        grille->awakeFromNib();
        grille->setClasseVueItem(&source->classeVue());
        grille->setNomNib(source->nomNib());
        defilement->setDocumentView(grille);
        fenetre->contentView()->addSubview(defilement);
        source->surChangement = [this] { grille->setDonnees(source->objets(source->auDebut())); };
        source->montreDossier(NSString::fromUTF8(dossier.string()));
        show(fenetre);
    }
    void TearDown() override {
        defilement = nullptr;
        grille = nullptr;
        fenetre = nullptr;
        source = nullptr;
        std::filesystem::remove_all(dossier);
        AppFixture::TearDown();
    }
    [[nodiscard]] FichierImage* fichier(NSUInteger i) const { return grille->donnees()->at<FichierImage>(i); }
    [[nodiscard]] NSUInteger nombre(FichierImage::Etat etat) const {
        NSUInteger n = 0;
        for (NSUInteger i = 0; i < grille->donnees()->count(); ++i)
            n += fichier(i)->etat == etat;
        return n;
    }
};

TEST_F(DossierTest, OnlyWhatIsInViewIsLoaded) {
    const Silence silence;
    using Etat = FichierImage::Etat;
    ASSERT_EQ(grille->donnees()->count(), NSUInteger{kImages}) << "neither texts nor folders";
    EXPECT_EQ(fichier(0)->nom()->utf8(), "000.PNG");
    source->attends();
    const NSUInteger enVue = grille->mesVignettesAffichees().length;
    EXPECT_LT(enVue, 40u);
    EXPECT_EQ(nombre(Etat::prete), enVue - 1);
    EXPECT_EQ(nombre(Etat::illisible), 1u);
    EXPECT_EQ(fichier(kFausse)->etat, Etat::illisible);
    EXPECT_EQ(fichier(0)->vignette->size(), (NSSize{150, 75})) << "never larger than the file";
    for (int tour = 0; tour < 30; ++tour) {
        defilement->pageDown(nullptr);
        drain();
        if (tour % 3 == 0) source->attends();
        EXPECT_LE(nombre(Etat::prete) + nombre(Etat::attendue), 60u);
    }
    defilement->scrollToEndOfDocument(nullptr);
    drain();
    source->attends();
    EXPECT_EQ(fichier(kImages - 1)->etat, Etat::prete);
    EXPECT_EQ(fichier(0)->etat, Etat::absente);
    EXPECT_EQ(fichier(0)->vignette, nullptr);
    EXPECT_GT(source->reserve()->octets(), 0u);
    EXPECT_LE(source->reserve()->octets(), std::size_t{48} << 20);
    EXPECT_EQ(source->reserve()->enAttente(), 0u);
    defilement->scrollToBeginningOfDocument(nullptr);
    drain();
    EXPECT_EQ(fichier(0)->etat, Etat::prete) << "what was just there is there again at once";
}

TEST_F(DossierTest, TheReserveForgetsTheOldest) {
    const auto petite = make<ReserveVignettes>(NSSize{20, 20}, std::size_t{3} * 20 * 10 * 16);
    const auto carte = make<NSView>(NSZeroRect);
    std::vector<Ref<FichierImage>> fichiers;
    for (NSUInteger i = 10; i < 15; ++i) {
        fichiers.push_back(make<FichierImage>(fichier(i)->chemin(), petite));
        petite->montre(fichiers.back(), carte);
        petite->attends();
        drain();
        petite->lache(fichiers.back(), carte);
    }
    EXPECT_EQ(petite->octets(), std::size_t{3} * 20 * 10 * 16);
    petite->montre(fichiers[4], carte);
    EXPECT_EQ(fichiers[4]->etat, FichierImage::Etat::prete);
    petite->montre(fichiers[0], carte);
    EXPECT_EQ(fichiers[0]->etat, FichierImage::Etat::attendue);
    petite->lache(fichiers[0], carte);
    EXPECT_EQ(petite->enAttente(), 0u) << "what leaves is no longer asked for";
}

TEST_F(DossierTest, APageOnPaperHasItsPictures) {
    const Silence silence;
    (void)grille->dataWithPDFInsideRect(grille->bounds());
    const NSUInteger enVue = grille->mesVignettesAffichees().length;
    EXPECT_EQ(nombre(FichierImage::Etat::attendue), 0u);
    EXPECT_EQ(nombre(FichierImage::Etat::prete), enVue - 1) << "all but the torn one";
    EXPECT_EQ(source->reserve()->enAttente(), 0u);
}

TEST_F(DossierTest, AReadingIsCancelledAndAFolderMayBeMissing) {
    const auto lecture = make<LectureDossier>();
    auto fin = LectureDossier::Fin::impossible;
    int fins = 0;
    lecture->surFin = [&](LectureDossier::Fin f) {
        fin = f;
        ++fins;
    };
    lecture->commence(dossier.string());
    EXPECT_TRUE(lecture->enCours());
    lecture->annule();
    drain();
    EXPECT_EQ(fin, LectureDossier::Fin::annulee);
    EXPECT_EQ(fins, 1);
    EXPECT_EQ(lecture->vus(), 0u);
    source->montreDossier(u"/nulle/part"_ns);
    drain();
    EXPECT_EQ(grille->donnees()->count(), 0u);
    EXPECT_NE(source->etat()->utf8().find("n’existe pas"), std::string::npos);
    source->montreDossier(NSString::fromUTF8((dossier / "sous-dossier.png").string()));
    drain();
    EXPECT_EQ(source->etat()->utf8(), "Aucune image dans ce dossier");
}

} // namespace
} // namespace galerie
