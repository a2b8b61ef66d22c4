#include "Textes.h"

#include <libvue/platform/foundation/ObjectSide.h>

using namespace libvue;

namespace {

int vivants = 0;

class Maillon : public NSObject {
public:
    Maillon() { ++vivants; }
    ~Maillon() override { --vivants; }
    Ref<Maillon> suivant;
};

/// Takes and gives up references to itself while it goes.
class Agite : public NSObject {
public:
    explicit Agite(bool* absent) : absent_(absent) {}
    ~Agite() override {
        const Ref<Agite> moi(this);
        { const Ref<NSObject> encore(this); }
        const Weak<Agite> faible(this);
        *absent_ = faible.get() == nullptr;
    }

private:
    bool* absent_;
};

class Protocole {
public:
    virtual ~Protocole() = default;
    virtual int reponse() const = 0;
};

class Conforme : public NSObject, public Protocole {
public:
    int reponse() const override { return 42; }
};

class Cassable : public NSObject {
public:
    explicit Cassable(Weak<Cassable>& ou) {
        ou = this;
        throw 1;
    }
};

} // namespace

TEST(NSObjectTest, aMillionObjectsInAChainGoWithoutUsingUpTheStack) {
    Ref<Maillon> tete;
    for (int i = 0; i < 1000000; ++i) {
        Ref<Maillon> nouveau = make<Maillon>();
        nouveau->suivant = std::move(tete);
        tete = std::move(nouveau);
    }
    const Weak<Maillon> profond(tete->suivant->suivant);
    tete = nullptr;
    EXPECT_EQ(vivants, 0);
    EXPECT_EQ(profond, nullptr);
}

TEST(NSObjectTest, referencesTakenInADestructorDestroyNothingTwice) {
    bool absent = false;
    (void)make<Agite>(&absent);
    EXPECT_TRUE(absent);
}

TEST(NSObjectTest, aSideBlockIsUsedAgainWithoutWhatHungOnIt) {
    std::vector<Ref<Maillon>> objets;
    std::vector<Weak<Maillon>> faibles;
    for (int tour = 0; tour < 3; ++tour) {
        for (int i = 0; i < 3000; ++i) {
            objets.push_back(make<Maillon>());
            EXPECT_EQ(objets.back()->sideIfAny(), nullptr);
            faibles.emplace_back(objets.back());
        }
        for (std::size_t i = faibles.size() - 3000, j = 0; j < objets.size(); ++i, ++j)
            ASSERT_EQ(faibles[i].get(), objets[j].get());
        objets.clear();
        for (const auto& f : faibles)
            ASSERT_EQ(f.get(), nullptr);
    }
}

TEST(NSObjectTest, aReferenceToAProtocolKeepsTheObjectBehindIt) {
    auto objet = make<Conforme>();
    Weak<Protocole> faible(objet.get()), copie;
    copie = faible;
    Ref<Protocole> protocole(objet.get());
    EXPECT_EQ(objet->retainCount(), 2u);
    objet = nullptr;
    EXPECT_EQ(protocole->reponse(), 42);
    EXPECT_EQ(faible.get(), protocole.get());
    protocole = nullptr;
    EXPECT_EQ(faible, nullptr);
    EXPECT_EQ(copie.ref(), nullptr);
}

TEST(NSObjectTest, aConstructorThatThrowsLeavesNoWeakReferenceToItself) {
    Weak<Cassable> ou;
    EXPECT_THROW((void)make<Cassable>(ou), int);
    EXPECT_EQ(ou, nullptr);
}

TEST(NSObjectTest, equalityOfAbsentObjects) {
    const auto a = u"x"_ns;
    const auto b = u"x"_ns;
    EXPECT_TRUE(isEqual(nullptr, nullptr));
    EXPECT_FALSE(isEqual(a, nullptr));
    EXPECT_FALSE(isEqual(nullptr, a));
    EXPECT_TRUE(isEqual(a, b));
}

TEST(NSObjectTest, copyingWhatCannotBeCopiedRaises) {
    const auto objet = make<Maillon>();
    EXPECT_EQ(textes::raised([&] { (void)objet->copyWithZone(); }), "NSInvalidArgumentException");
}

#ifndef NDEBUG
TEST(NSObjectTest, theReportNamesWhatIsAlive) {
    const auto a = make<Maillon>();
    const auto b = make<Maillon>();
    const auto c = make<Conforme>();
    EXPECT_EQ(liveObjectsReport()->utf8(), "Conforme 1\nMaillon 2\n");
    markLiveObjectsAsExpected();
    const auto d = make<Conforme>();
    EXPECT_EQ(liveObjectsReport()->utf8(), "Conforme 1\n");
}
#endif
