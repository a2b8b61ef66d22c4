#include "Textes.h"

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/ObjectSide.h>

using namespace libvue;

namespace {

constexpr ConstantString kBouge{u"bouge"};
constexpr ConstantString kCache{u"caché"};

std::string journal;

class Ecouteur : public NSObject {
public:
    explicit Ecouteur(const char* nom = "e") : nom_(nom) {}
    static void describe(ClassDescription<Ecouteur>& c) {
        c.answers<&Ecouteur::recoit>("recoit:");
        c.answers<&Ecouteur::touche>("touche");
        c.answers<&Ecouteur::objet>("objet:");
        c.answers<&Ecouteur::demande>("demande:");
        c.answers<&Ecouteur::deux>("deux:de:");
    }
    void recoit(NSNotification* n) {
        journal += nom_ + ":" + n->name()->utf8() + " ";
        if (action) action();
    }
    void touche() { journal += nom_ + ":() "; }
    void objet(NSObject* n) { journal += nom_ + (as<NSNotification>(n) ? ":objet " : ":? "); }
    BOOL demande(NSNotification* n) {
        journal += nom_ + (n ? ":demande " : ":? ");
        return YES;
    }
    void deux(NSObject*, NSObject*) {}

    std::function<void()> action;

private:
    std::string nom_;
};

class NSNotificationCenterTest : public testing::Test {
protected:
    void SetUp() override { journal.clear(); }
    void TearDown() override {
        for (const Ref<Ecouteur>& e : {a, b, c})
            centre->removeObserver(e);
        EXPECT_EQ(objet->sideIfAny() ? objet->sideIfAny()->observers : nullptr, nullptr);
    }

    void ajoute(Ecouteur* e, NSString* name, NSObject* o, const char* selector = "recoit:") {
        centre->addObserver_selector_name_object(e, sel(selector), name, o);
    }
    std::string poste(NSString* name, NSObject* o) {
        centre->postNotificationName_object(name, o);
        return std::exchange(journal, {});
    }

    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    Ref<NSObject> objet = make<Ecouteur>("objet");
    Ref<NSObject> autre = make<Ecouteur>("autre");
    Ref<Ecouteur> a = make<Ecouteur>("a");
    Ref<Ecouteur> b = make<Ecouteur>("b");
    Ref<Ecouteur> c = make<Ecouteur>("c");
};

} // namespace

TEST_F(NSNotificationCenterTest, aNameAndAnObjectFilter) {
    const auto nomEgal = u"bouge"_ns; // another object with the same text
    struct {
        NSString* name;
        NSObject* object;
        std::string bougeObjet, bougeAutre, bougeRien, cacheObjet;
    } const rows[] = {
        {kBouge, objet, "a:bouge ", "", "", ""},
        {nomEgal, objet, "a:bouge ", "", "", ""},
        {kBouge, nullptr, "a:bouge ", "a:bouge ", "a:bouge ", ""},
        {nullptr, objet, "a:bouge ", "", "", "a:caché "},
        {nullptr, nullptr, "a:bouge ", "a:bouge ", "a:bouge ", "a:caché "},
    };
    for (const auto& row : rows) {
        ajoute(a, row.name, row.object);
        EXPECT_EQ(poste(kBouge, objet), row.bougeObjet);
        EXPECT_EQ(poste(kBouge, autre), row.bougeAutre);
        EXPECT_EQ(poste(nomEgal, nullptr), row.bougeRien);
        EXPECT_EQ(poste(kCache, objet), row.cacheObjet);
        centre->removeObserver(a);
        EXPECT_EQ(poste(kBouge, objet), "");
    }
}

TEST_F(NSNotificationCenterTest, observersRunInTheOrderOfRegistrationAndAsOftenAsRegistered) {
    ajoute(b, kBouge, objet);
    ajoute(a, kBouge, objet);
    ajoute(b, kBouge, objet);
    ajoute(c, kBouge, nullptr);
    EXPECT_EQ(poste(kBouge, objet), "b:bouge a:bouge b:bouge c:bouge ");
    centre->removeObserver_name_object(b, kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), "a:bouge c:bouge ");
}

TEST_F(NSNotificationCenterTest, removalEndsExactlyWhatItNames) {
    struct {
        NSString* name;
        NSObject* object;
        std::string left;
    } const rows[] = {
        {kBouge, objet, "a:caché a:bouge "},     {kBouge, nullptr, "a:caché "}, {nullptr, objet, "a:bouge "},
        {kBouge, a, "a:bouge a:caché a:bouge "}, {nullptr, nullptr, ""},
    };
    for (const auto& row : rows) {
        ajoute(a, kBouge, objet);
        ajoute(a, kCache, objet);
        ajoute(a, kBouge, autre);
        centre->removeObserver_name_object(a, row.name, row.object);
        EXPECT_EQ(poste(kBouge, objet) + poste(kCache, objet) + poste(kBouge, autre), row.left);
        centre->removeObserver(a);
    }
    // An observer of any object is not one of this object.
    ajoute(a, kBouge, nullptr);
    centre->removeObserver_name_object(a, kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), "a:bouge ");
}

TEST_F(NSNotificationCenterTest, operationsOfSeveralSignaturesAreAccepted) {
    ajoute(a, kBouge, objet, "touche");
    ajoute(a, kBouge, objet, "objet:");
    ajoute(a, kBouge, objet, "demande:");
    centre->addObserver<&Ecouteur::recoit>(b.get(), kBouge, objet);
    centre->addObserver<&Ecouteur::touche>(b.get(), kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), "a:() a:objet a:demande b:bouge b:() ");
    for (const char* selector : {"inconnue:", "deux:de:"})
        EXPECT_THROW(ajoute(a, kBouge, objet, selector), NSExceptionRaised);
}

TEST_F(NSNotificationCenterTest, aPostSurvivesWhatItsObserversDo) {
    Weak<Ecouteur> faible(c);
    a->action = [&] {
        centre->removeObserver(b);
        c = nullptr;
        ajoute(a, kBouge, objet);
    };
    ajoute(a, kBouge, objet);
    ajoute(b, kBouge, objet);
    ajoute(c, kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), "a:bouge ");
    EXPECT_EQ(faible, nullptr);
    a->action = nullptr;
    EXPECT_EQ(poste(kBouge, objet), "a:bouge a:bouge ");
    // Neither does one hear it that joins those of any object meanwhile.
    ajoute(b, kBouge, nullptr);
    a->action = [&] { ajoute(b, kBouge, nullptr); };
    EXPECT_EQ(poste(kBouge, objet), "a:bouge a:bouge b:bouge ");
    centre->removeObserver(b);
    // Removing oneself, and all of one's registrations, is no different.
    a->action = [&] { centre->removeObserver(a); };
    EXPECT_EQ(poste(kBouge, objet), "a:bouge ");
    EXPECT_EQ(poste(kBouge, objet), "");
}

TEST_F(NSNotificationCenterTest, whoeverIsToldOrObservedMayGoDuringThePost) {
    const Weak<Ecouteur> observateur(a);
    const Weak<NSObject> observe(objet);
    a->action = [&] {
        a = nullptr;
        EXPECT_NE(observateur, nullptr);
        objet = nullptr; // the notification keeps it until the post is over
    };
    ajoute(a, kBouge, objet);
    ajoute(b, kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet.get()), "a:bouge b:bouge ");
    EXPECT_EQ(observateur, nullptr);
    EXPECT_EQ(observe, nullptr);
    objet = make<Ecouteur>();
    EXPECT_EQ(poste(kBouge, objet), "");
}

TEST_F(NSNotificationCenterTest, postsNest) {
    int profondeur = 0;
    a->action = [&] {
        if (++profondeur == 3) {
            centre->removeObserver(b);
            ajoute(c, kBouge, objet);
        } else if (profondeur < 3) {
            centre->postNotificationName_object(kBouge, objet);
        }
    };
    ajoute(a, kBouge, objet);
    ajoute(b, kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), "a:bouge a:bouge a:bouge ");
    EXPECT_EQ(poste(kBouge, objet), "a:bouge c:bouge ");
}

TEST_F(NSNotificationCenterTest, aNotificationThatIsKeptIsNotUsedAgain) {
    class Collectionneur : public NSObject {
    public:
        void recoit(NSNotification* n) {
            if (garde) gardees.push_back(n);
            faible = n;
            if (autre) std::exchange(autre, nullptr)();
        }
        std::vector<Ref<NSNotification>> gardees;
        Weak<NSNotification> faible;
        bool garde = true;
        std::function<void()> autre;
    };
    const auto collectionneur = make<Collectionneur>();
    centre->addObserver<&Collectionneur::recoit>(collectionneur.get(), nullptr, objet);
    const Ref<NSDictionary> dictionnaire = NSMutableDictionary::dictionary();

    // One post inside another, both notifications kept, then a further post.
    collectionneur->autre = [&] { centre->postNotificationName_object_userInfo(kCache, objet, dictionnaire); };
    centre->postNotificationName_object(kBouge, objet);
    collectionneur->garde = false;
    centre->postNotificationName_object_userInfo(u"autre"_ns, objet, dictionnaire);
    ASSERT_EQ(collectionneur->gardees.size(), 2u);
    EXPECT_TRUE(collectionneur->gardees[0]->name()->isEqualToString(kBouge));
    EXPECT_EQ(collectionneur->gardees[0]->userInfo(), nullptr);
    EXPECT_TRUE(collectionneur->gardees[1]->name()->isEqualToString(kCache));
    EXPECT_EQ(collectionneur->gardees[1]->userInfo(), dictionnaire);

    // A weak reference to one does not find the next one, and nothing of a post stays behind.
    EXPECT_EQ(collectionneur->faible, nullptr);
    collectionneur->gardees.clear();
    EXPECT_EQ(dictionnaire->retainCount(), 1u);
    EXPECT_EQ(objet->retainCount(), 1u);
    centre->removeObserver(collectionneur);
}

TEST_F(NSNotificationCenterTest, manyRegistrationsComeAndGo) {
    // Enough to close holes several times; the survivors keep their order and can still be removed.
    std::vector<Ref<Ecouteur>> tous;
    for (int i = 0; i < 200; ++i) {
        tous.push_back(make<Ecouteur>(i % 10 == 0 ? "x" : "y"));
        ajoute(tous.back(), kBouge, objet);
        ajoute(tous.back(), kCache, objet);
    }
    for (std::size_t i = 0; i < tous.size(); ++i)
        if (i % 10 != 0) tous[i] = nullptr;
    std::string attendu;
    for (int i = 0; i < 20; ++i)
        attendu += "x:bouge ";
    EXPECT_EQ(poste(kBouge, objet), attendu);
    for (std::size_t i = 0; i < tous.size(); i += 20)
        centre->removeObserver_name_object(tous[i], kBouge, objet);
    EXPECT_EQ(poste(kBouge, objet), attendu.substr(0, attendu.size() / 2));
    tous.clear();
    EXPECT_EQ(poste(kBouge, objet) + poste(kCache, objet), "");
}

TEST_F(NSNotificationCenterTest, aBlockLivesUntilItsTokenIsRemovedOrTheObservedObjectGoes) {
    const auto tient = [this](NSObject* o, Weak<Ecouteur>& faible) {
        auto tenu = make<Ecouteur>("bloc");
        faible = tenu;
        return centre->addObserverForName_object_queue_usingBlock(kBouge, o, nullptr,
                                                                  [tenu](NSNotification* n) { tenu->recoit(n); });
    };
    Weak<Ecouteur> enleve, parti;
    Ref<NSObject> jeton = tient(objet, enleve);
    (void)tient(autre, parti);
    EXPECT_EQ(poste(kBouge, objet), "bloc:bouge ");
    centre->removeObserver(std::exchange(jeton, nullptr));
    EXPECT_EQ(enleve, nullptr);
    EXPECT_NE(parti, nullptr);
    autre = nullptr;
    EXPECT_EQ(parti, nullptr);

    // A block may remove itself.
    int fois = 0;
    Ref<NSObject> second;
    second = centre->addObserverForName_object_queue_usingBlock(kBouge, objet, nullptr, [&](NSNotification*) {
        ++fois;
        centre->removeObserver(std::exchange(second, nullptr));
    });
    poste(kBouge, objet);
    poste(kBouge, objet);
    EXPECT_EQ(fois, 1);
}

TEST_F(NSNotificationCenterTest, anObserverThatRaisesLeavesTheCentreWhole) {
    a->action = [&] {
        centre->removeObserver(b);
        raiseNamed(NSGenericException, "voulu");
    };
    ajoute(a, kBouge, objet);
    ajoute(b, kBouge, objet);
    EXPECT_THROW(poste(kBouge, objet), NSExceptionRaised);
    a->action = nullptr;
    journal.clear();
    EXPECT_EQ(poste(kBouge, objet), "a:bouge ");
}
