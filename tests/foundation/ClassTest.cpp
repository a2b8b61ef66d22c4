#include <gtest/gtest.h>

#include <libvue/platform/foundation/Class.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

using namespace libvue;

namespace {

namespace op {
inline constexpr Operation<BOOL(NSObject*)> estPermis{"estPermis:"};
inline constexpr Operation<void(NSInteger)> compte{"compte:"};
} // namespace op

class Melange {
public:
    virtual ~Melange() = default;
    int champ = 7;
};

class Racine : public NSObject {
public:
    static void describe(ClassDescription<Racine>& c) {
        c.answers<&Racine::estPermis>(op::estPermis);
        c.answers<&Racine::double_>("double:");
        c.answers<&Racine::prends>("prends:");
        c.answers<&Racine::touche>("touche");
        c.answers<&Racine::deux>("deux:de:");
        c.classAnswers<&Racine::nombre>("nombre");
    }
    virtual BOOL estPermis(NSObject*) { return NO; }
    int double_(int v) { return 2 * v; }
    void prends(Racine* r) { recu = r; }
    void touche() { ++touches; }
    void deux(NSObject*, NSObject*) {}
    static NSInteger nombre() { return 5; }

    Racine* recu = this;
    int touches = 0;
};

/// Says nothing of itself, and has another base in front of the one that is an object.
class Muette : public Melange, public Racine {
public:
    BOOL estPermis(NSObject*) override { return YES; }
};

class Feuille : public Muette {
public:
    static void describe(ClassDescription<Feuille, Racine>& c) { c.answers<&Feuille::compte>(op::compte); }
    void compte(NSInteger v) { total += v; }
    NSInteger total = 0;
};

class SansConstructeur : public NSObject {
public:
    explicit SansConstructeur(int) {}
};

class DeclareeDAvance : public NSObject {
public:
    static void describe(ClassDescription<DeclareeDAvance>&) {}
};
const ClassRegistration<DeclareeDAvance> enregistrement;

} // namespace

TEST(ClassTest, theClassOfAnUndescribedObjectIsTheNearestDescribedBase) {
    const Ref<NSObject> nue = adopt<NSObject>(new Muette);
    EXPECT_EQ(&nue->isa(), &classOf<Racine>());
    EXPECT_TRUE(nue->isKindOfClass(classOf<NSObject>()));

    // It gets one of its own as soon as that is asked for.
    const Class& muette = classOf<Muette>();
    EXPECT_EQ(muette.name(), "Muette");
    EXPECT_EQ(muette.superclass(), &classOf<Racine>());
    EXPECT_EQ(&nue->isa(), &muette);
    EXPECT_EQ(nue->className()->utf8(), "Muette");
}

TEST(ClassTest, kinshipGoesThroughClassesThatSayNothing) {
    const auto feuille = make<Feuille>();
    EXPECT_TRUE(feuille->isKindOfClass(classOf<Muette>()));
    EXPECT_TRUE(feuille->isKindOfClass(classOf<Racine>()));
    EXPECT_TRUE(feuille->isMemberOfClass(classOf<Feuille>()));
    EXPECT_FALSE(feuille->isMemberOfClass(classOf<Racine>()));
    EXPECT_FALSE(make<Racine>()->isKindOfClass(classOf<Feuille>()));
    EXPECT_FALSE(make<Racine>()->isKindOfClass(classOf<Muette>()));
}

TEST(ClassTest, anOperationIsAnsweredByTheMostDerivedOverride) {
    const Ref<Racine> racine = make<Racine>();
    const Ref<Racine> feuille = make<Feuille>();
    EXPECT_FALSE(op::estPermis.of(racine)(nullptr));
    EXPECT_TRUE(op::estPermis.of(feuille)(nullptr));
    EXPECT_FALSE(op::compte.of(racine));
    EXPECT_FALSE(op::compte.of(static_cast<NSObject*>(nullptr)));
    op::compte.of(feuille)(3);
    EXPECT_EQ(static_cast<Feuille*>(feuille.get())->total, 3);
    EXPECT_TRUE(feuille->respondsToSelector(sel("touche")));
    EXPECT_FALSE(racine->respondsToSelector(sel("compte:")));
    EXPECT_FALSE(racine->respondsToSelector(nullptr));
}

TEST(ClassTest, aFoundOperationKeepsItsObject) {
    Ref<Feuille> feuille = make<Feuille>();
    const Weak<Feuille> faible(feuille);
    {
        const auto trouvee = op::compte.of(feuille);
        feuille = nullptr;
        trouvee(1);
        EXPECT_NE(faible, nullptr);
    }
    EXPECT_EQ(faible, nullptr);
}

TEST(ClassTest, performingBoxesAndUnboxes) {
    const auto racine = make<Racine>();
    const auto feuille = make<Feuille>();
    const Ref<NSObject> resultat = racine->performSelector_withObject(sel("double:"), NSNumber::numberWithInteger(21));
    ASSERT_NE(as<NSNumber>(resultat), nullptr);
    EXPECT_EQ(as<NSNumber>(resultat)->integerValue(), 42);

    racine->performSelector_withObject(sel("prends:"), feuille);
    EXPECT_EQ(racine->recu, feuille.get());
    // An argument of another class arrives as null.
    racine->performSelector_withObject(sel("prends:"), u"texte"_ns);
    EXPECT_EQ(racine->recu, nullptr);

    EXPECT_EQ(racine->performSelector(sel("touche")), nullptr);
    EXPECT_EQ(racine->touches, 1);
    for (const char* name : {"inconnue", "deux:de:"})
        EXPECT_THROW(racine->performSelector(sel(name)), NSExceptionRaised) << name;
    EXPECT_THROW(racine->performSelector(nullptr), NSExceptionRaised);
}

TEST(ClassTest, classesAreFoundByName) {
    EXPECT_EQ(NSClassFromString(u"DeclareeDAvance"_ns), &classOf<DeclareeDAvance>());
    EXPECT_EQ(NSClassFromString(u"NSString"_ns), &classOf<NSString>());
    // What an archive may hold is known before it was ever used.
    for (const char16_t* name : {u"NSArray", u"NSAttributedString", u"NSCharacterSet", u"NSCountedSet", u"NSData",
                                 u"NSDate", u"NSDecimalNumber", u"NSError", u"NSIndexPath", u"NSMutableData",
                                 u"NSMutableAttributedString", u"NSNull", u"NSNumberFormatter", u"NSURL", u"NSValue"})
        EXPECT_NE(NSClassFromString(NSString::from(name)), nullptr) << NSString::from(name)->UTF8String();
    EXPECT_EQ(NSClassFromString(u"NSInconnue"_ns), nullptr);
    EXPECT_EQ(NSClassFromString(nullptr), nullptr);
}

TEST(ClassTest, aClassMakesInstances) {
    const Ref<NSObject> feuille = classOf<Feuille>().alloc();
    EXPECT_TRUE(as<Feuille>(feuille));
    EXPECT_EQ(classOf<SansConstructeur>().alloc(), nullptr);
    const OperationEntry* e = classOf<Feuille>().classOperation(sel("nombre"));
    ASSERT_NE(e, nullptr);
    ASSERT_TRUE(*e->signature == typeid(NSInteger()));
    EXPECT_EQ(reinterpret_cast<NSInteger (*)()>(e->run)(), 5);
}

TEST(ClassTest, selectorsAreInterned) {
    EXPECT_EQ(sel("clique:"), sel(std::string("clique:")));
    EXPECT_EQ(NSSelectorFromString(u"clique:"_ns), sel("clique:"));
    EXPECT_EQ(NSSelectorFromString(u"détaché:"_ns), sel("détaché:"));
    EXPECT_EQ(NSStringFromSelector(sel("détaché:"))->utf8(), "détaché:");
    EXPECT_EQ(findSelector("jamais nommée"), nullptr);
    EXPECT_EQ(NSStringFromSelector(nullptr), nullptr);
}

#ifndef NDEBUG
namespace {
class SauteUneClasse : public Feuille {
public:
    static void describe(ClassDescription<SauteUneClasse, Racine>&) {}
};
} // namespace

TEST(ClassDeathTest, aWrongDescriptionStopsADebugBuild) {
    EXPECT_DEATH((void)(classOf<Feuille>(), classOf<SauteUneClasse>()), "Feuille stands between");
    static constexpr Operation<void(NSString*)> mauvaise{"estPermis:"};
    const auto racine = make<Racine>();
    EXPECT_DEATH((void)mauvaise.of(racine), "another signature");
}
#endif
