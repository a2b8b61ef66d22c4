#include "Modele.h"

#include <gmock/gmock.h>

#include <libvue/text/copie/NSManagedObjectDeepCopyAdditions.h>

using namespace libvue;
using namespace libvue::modele;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Copies itself with its name, its lines and its invoice, and shares the rest.
class Copiable : public NSManagedObject {
public:
    static void describe(ClassDescription<Copiable, NSManagedObject>&) {}
    Ref<NSObject> deepCopy() const override {
        auto copie = NSEntityDescription::insertNewObjectForEntityForName_inManagedObjectContext(
            entity()->name(), managedObjectContext());
        copyAttributesFromObject(copie, this);
        const Ref<NSObject> nom = copie->primitiveValueForKey(u"nom"_ns);
        copie->setPrimitiveValue_forKey(as<NSString>(nom)->stringByAppendingString(u"'"_ns), u"nom"_ns);
        if (entity()->name()->isEqualTo(u"Commande")) {
            copyToManyRelationshipForKey_fromObject_useExisting(copie, u"lignes"_ns, this, NO);
            copyToManyRelationshipForKey_fromObject_useExisting(copie, u"produits"_ns, this, YES);
            copyToOneRelationshipForKey_fromObject_useExisting(copie, u"facture"_ns, this, NO);
        } else if (entity()->name()->isEqualTo(u"Ligne")) {
            copyToOneRelationshipForKey_fromObject_useExisting(copie, u"produit"_ns, this, YES);
        }
        return copie;
    }
};

struct Scene : testing::Test {
    Magasin m;
    Ref<NSManagedObject> ana = m.fait(u"Client", u"Ana"), bob = m.fait(u"Client", u"Bob");
    Ref<NSManagedObject> k = m.fait(u"Commande", u"K"), l = m.fait(u"Commande", u"L");
    Ref<NSManagedObject> x = m.fait(u"Ligne", u"X"), y = m.fait(u"Ligne", u"Y");

    void un(NSManagedObject* vers, const char16_t* cle, NSManagedObject* de, BOOL existant) {
        copyToOneRelationshipForKey_fromObject_useExisting(vers, text(cle), de, existant);
    }
    void plusieurs(NSManagedObject* vers, const char16_t* cle, NSManagedObject* de, BOOL existant) {
        copyToManyRelationshipForKey_fromObject_useExisting(vers, text(cle), de, existant);
    }
};

} // namespace

using DeepCopyAdditions = Scene;

TEST_F(DeepCopyAdditions, attributesAreReadAndWrittenInOrder) {
    pose(bob, u"age", number(44));
    EXPECT_THAT(note([&] { copyAttributesFromObject(ana, bob); }),
                ElementsAre("Ana will nom", "Bob willAccess nom", "Bob get nom", "Ana set nom", "Bob didAccess nom",
                            "Bob did nom", "Bob will age", "Bob willAccess age", "Bob get age", "Bob set age",
                            "Bob didAccess age", "Bob did age"));
    EXPECT_EQ(noms(ana, u"age"), "44");
    // Shared, and not copied.
    EXPECT_EQ(ana->NSManagedObject::primitiveValueForKey(text(u"nom")),
              bob->NSManagedObject::primitiveValueForKey(text(u"nom")));
}

TEST_F(DeepCopyAdditions, theAttributesAreThoseOfTheDestination) {
    // An order has no age: its own attributes alone are asked of the client.
    copyAttributesFromObject(k, bob);
    EXPECT_EQ(noms(k, u"nom"), "Bob");
    EXPECT_EQ(raised([&] { copyAttributesFromObject(ana, l); }), "NSUndefinedKeyException");
    copyAttributesFromObject(x, nullptr);
    EXPECT_EQ(noms(x, u"nom"), "-");
    copyAttributesFromObject(nullptr, x);
}

TEST_F(DeepCopyAdditions, addingIsAnnouncedAsAUnionAndDoneInPlace) {
    const Ref<NSObject> avant = k->primitiveValueForKey(text(u"lignes"));
    EXPECT_THAT(note([&] { addObject_toToManyRelationshipForKey(k, x, text(u"lignes")); }),
                ElementsAre("K willSet1x1 lignes", "K get lignes", "K didSet1x1 lignes"));
    EXPECT_EQ(k->primitiveValueForKey(text(u"lignes")), avant);
    EXPECT_EQ(noms(k, u"lignes"), "X");
    EXPECT_EQ(noms(x, u"commande"), "-"); // the other end is the caller's
    EXPECT_THAT(note([&] { addObject_toToManyRelationshipForKey(k, nullptr, text(u"lignes")); }), IsEmpty());
}

TEST_F(DeepCopyAdditions, anAbsentSourceLeavesTheDestinationAlone) {
    pose(k, u"client", ana);
    pose(k, u"lignes", ensemble({x}));
    EXPECT_THAT(note([&] { un(k, u"client", l, YES); }), ElementsAre("L get client"));
    EXPECT_THAT(note([&] { un(k, u"client", l, NO); }), ElementsAre("L get client"));
    EXPECT_THAT(note([&] { plusieurs(k, u"lignes", l, YES); }), ElementsAre("L get lignes"));
    un(k, u"client", nullptr, YES);
    plusieurs(k, u"lignes", nullptr, YES);
    un(nullptr, u"client", k, YES);
    EXPECT_EQ(noms(k, u"client"), "Ana");
    EXPECT_EQ(noms(k, u"lignes"), "X");
}

TEST_F(DeepCopyAdditions, aSharedOneGetsTheCopyIntoItsSet) {
    pose(k, u"client", ana);
    EXPECT_THAT(note([&] { un(l, u"client", k, YES); }),
                ElementsAre("K get client", "L will client", "L set client", "L did client", "Ana willSet1x1 commandes",
                            "Ana get commandes", "Ana didSet1x1 commandes"));
    EXPECT_EQ(noms(l, u"client"), "Ana");
    EXPECT_EQ(noms(k, u"client"), "Ana");
    EXPECT_EQ(noms(ana, u"commandes"), "K L");
}

TEST_F(DeepCopyAdditions, sharedOnesOfASetPointAtTheCopyAlone) {
    pose(k, u"lignes", ensemble({x, y}));
    EXPECT_THAT(note([&] { plusieurs(l, u"lignes", k, YES); }),
                ElementsAre("K get lignes", "L willSet1x1 lignes", "L get lignes", "L didSet1x1 lignes",
                            "X will commande", "X set commande", "X did commande", "L willSet1x1 lignes",
                            "L get lignes", "L didSet1x1 lignes", "Y will commande", "Y set commande",
                            "Y did commande"));
    EXPECT_EQ(noms(l, u"lignes"), "X Y");
    EXPECT_EQ(noms(k, u"lignes"), "X Y"); // the source still names them
    EXPECT_EQ(noms(x, u"commande"), "L"); // and they have left it
}

TEST_F(DeepCopyAdditions, manyToManyAndNoInverse) {
    auto zoe = m.fait(u"Client", u"Zoe");
    pose(ana, u"amis", ensemble({bob}));
    plusieurs(zoe, u"amis", ana, YES);
    EXPECT_EQ(noms(bob, u"amis"), "Ana Zoe");
    auto p = m.fait(u"Produit", u"P");
    pose(k, u"produits", ensemble({p}));
    pose(x, u"produit", p);
    EXPECT_THAT(note([&] {
                    plusieurs(l, u"produits", k, YES);
                    un(y, u"produit", x, YES);
                }),
                ElementsAre("K get produits", "L willSet1x1 produits", "L get produits", "L didSet1x1 produits",
                            "X get produit", "Y will produit", "Y set produit", "Y did produit"));
    EXPECT_EQ(noms(l, u"produits"), "P");
}

TEST_F(DeepCopyAdditions, aClassWithoutDeepCopyGivesNull) {
    pose(k, u"client", ana);
    pose(k, u"lignes", ensemble({x}));
    pose(l, u"client", bob);
    EXPECT_EQ(ana->deepCopy(), nullptr);
    EXPECT_THAT(note([&] { un(l, u"client", k, NO); }),
                ElementsAre("K get client", "L will client", "L set client", "L did client"));
    EXPECT_EQ(noms(l, u"client"), "-");
    EXPECT_EQ(noms(bob, u"commandes"), "L"); // the primitive store leaves the former end as it was
    EXPECT_THAT(note([&] { plusieurs(l, u"lignes", k, NO); }), ElementsAre("K get lignes"));
    EXPECT_EQ(noms(l, u"lignes"), "-");
}

TEST(DeepCopyAdditionsOfATree, aWholeOrderIsCopied) {
    (void)classOf<Copiable>();
    Magasin m(u"Copiable");
    auto k = m.fait(u"Commande", u"K"), f = m.fait(u"Facture", u"F");
    auto x = m.fait(u"Ligne", u"X"), y = m.fait(u"Ligne", u"Y"), p = m.fait(u"Produit", u"P");
    pose(k, u"lignes", ensemble({x, y}));
    pose(k, u"facture", f);
    pose(k, u"produits", ensemble({p}));
    pose(x, u"produit", p);
    const Ref<NSObject> fait = k->deepCopy();
    auto* copie = as<NSManagedObject>(fait);
    ASSERT_NE(copie, nullptr);
    EXPECT_EQ(noms(copie, u"nom"), "K'");
    EXPECT_EQ(noms(copie, u"lignes"), "X' Y'");
    EXPECT_EQ(noms(copie, u"facture"), "F'");
    EXPECT_EQ(noms(copie, u"produits"), "P");
    const Ref<NSSet> lignes = as<NSSet>(copie->valueForKey(text(u"lignes")).get());
    for (auto* ligne : lignes->as<NSManagedObject>()) {
        EXPECT_EQ(noms(ligne, u"commande"), "K'");
        EXPECT_EQ(noms(ligne, u"produit"), noms(ligne, u"nom") == "X'" ? "P" : "-");
    }
    // The original is as it was.
    EXPECT_EQ(noms(k, u"lignes"), "X Y");
    EXPECT_EQ(noms(x, u"commande"), "K");
    EXPECT_EQ(noms(f, u"commande"), "K");
    EXPECT_EQ(m.contexte->registeredObjects()->count(), 9u);
}
