#include "Modele.h"

#include <functional>

#include <gmock/gmock.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSKeyValueObserving.h>

using namespace libvue;
using namespace libvue::modele;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Says what it hears of changes: the kind, what came and what went.
class Observateur : public NSObject {
public:
    static void describe(ClassDescription<Observateur>&) {}
    Journal entendu;
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject*, NSDictionary* change,
                                                        void*) override {
        entendu.push_back(path->utf8() + " " + described(change->objectForKey(NSKeyValueChangeKindKey)) + " +" +
                          liste(change->objectForKey(NSKeyValueChangeNewKey)) + " -" +
                          liste(change->objectForKey(NSKeyValueChangeOldKey)));
    }
    Journal prend() { return std::exchange(entendu, {}); }

private:
    static std::string liste(NSObject* v) {
        if (!v) return "none";
        if (auto* o = as<NSManagedObject>(v)) return noms(o, u"nom");
        auto* s = as<NSSet>(v);
        if (!s) return described(v);
        std::set<std::string> tous;
        for (auto* o : s->as<NSManagedObject>())
            tous.insert(noms(o, u"nom"));
        std::string texte = "{";
        for (const std::string& n : tous)
            texte += n;
        return texte + "}";
    }
};

constexpr NSUInteger kTout = NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld;

} // namespace

TEST(NSManagedObject, attributesBeginWithTheirDefaultAndTellOfChanges) {
    Magasin m;
    auto c = m.fait(u"Client", u"Ana");
    EXPECT_EQ(described(c->valueForKey(text(u"age"))), "18");
    auto o = make<Observateur>();
    c->addObserver_forKeyPath_options_context(o, text(u"age"), kTout, nullptr);
    c->setValue_forKey(number(30), text(u"age"));
    c->setPrimitiveValue_forKey(number(31), text(u"age"));
    c->setValue_forKey(nullptr, text(u"age"));
    EXPECT_THAT(o->prend(), ElementsAre("age 1 +30 -18", "age 1 +<null> -31"));
    EXPECT_EQ(raised([&] { (void)c->valueForKey(text(u"taille")); }), "NSUndefinedKeyException");
    EXPECT_EQ(raised([&] { c->setPrimitiveValue_forKey(nullptr, text(u"taille")); }), "NSUndefinedKeyException");
    EXPECT_EQ(raised([&] { (void)c->primitiveValueForKey(nullptr); }), "NSUndefinedKeyException");
}

TEST(NSManagedObject, valuesByKeyAreAnnouncedInOrder) {
    Magasin m;
    auto c = m.fait(u"Client", u"Ana");
    auto k = m.fait(u"Commande", u"K");
    EXPECT_THAT(note([&] { (void)c->valueForKey(text(u"age")); }),
                ElementsAre("Ana willAccess age", "Ana get age", "Ana didAccess age"));
    EXPECT_THAT(note([&] { pose(c, u"age", number(2)); }), ElementsAre("Ana will age", "Ana set age", "Ana did age"));
    EXPECT_THAT(note([&] { pose(k, u"client", c); }),
                ElementsAre("K get client", "K will client", "K set client", "K did client", "Ana get commandes",
                            "Ana willSet1x1 commandes", "Ana didSet1x1 commandes"));
}

TEST(NSManagedObject, inversesKeepInStep) {
    Magasin m;
    auto ana = m.fait(u"Client", u"Ana"), bob = m.fait(u"Client", u"Bob");
    auto k = m.fait(u"Commande", u"K"), l = m.fait(u"Commande", u"L");
    auto f = m.fait(u"Facture", u"F"), g = m.fait(u"Facture", u"G");
    // From the side of the one to the side of the many, and back.
    pose(k, u"client", ana);
    pose(l, u"client", ana);
    EXPECT_EQ(noms(ana, u"commandes"), "K L");
    pose(k, u"client", bob);
    EXPECT_EQ(noms(ana, u"commandes"), "L");
    EXPECT_EQ(noms(bob, u"commandes"), "K");
    pose(ana, u"commandes", ensemble({k}));
    EXPECT_EQ(noms(k, u"client"), "Ana");
    EXPECT_EQ(noms(l, u"client"), "-");
    EXPECT_EQ(noms(bob, u"commandes"), "-");
    pose(ana, u"commandes", nullptr);
    EXPECT_EQ(noms(k, u"client"), "-");
    // One to one: both former partners are left alone.
    pose(k, u"facture", f);
    pose(l, u"facture", g);
    pose(k, u"facture", g);
    EXPECT_EQ(noms(f, u"commande"), "-");
    EXPECT_EQ(noms(l, u"facture"), "-");
    EXPECT_EQ(noms(g, u"commande"), "K");
    // A relationship that is its own inverse, and one that leads to the object itself.
    pose(ana, u"amis", ensemble({ana, bob}));
    EXPECT_EQ(noms(bob, u"amis"), "Ana");
    pose(ana, u"amis", ensemble({}));
    EXPECT_EQ(noms(bob, u"amis"), "-");
    EXPECT_EQ(noms(ana, u"amis"), "-");
}

TEST(NSManagedObject, relationshipsTakeWhatTheyLeadTo) {
    Magasin m;
    auto ana = m.fait(u"Client", u"Ana");
    auto k = m.fait(u"Commande", u"K");
    const struct {
        NSManagedObject* objet;
        const char16_t* cle;
        Ref<NSObject> valeur;
    } rows[] = {
        {k, u"client", k},
        {k, u"client", text(u"Ana")},
        {ana, u"commandes", ensemble({ana})},
        {ana, u"commandes", k},
        {ana, u"commandes", ensemble({text(u"K")})},
    };
    for (const auto& row : rows)
        EXPECT_EQ(raised([&] { pose(row.objet, row.cle, row.valeur); }), "NSInvalidArgumentException");
    EXPECT_EQ(noms(ana, u"commandes"), "-");
    EXPECT_EQ(noms(k, u"client"), "-");
}

TEST(NSManagedObject, observersOfASetHearWhatCameAndWent) {
    Magasin m;
    auto ana = m.fait(u"Client", u"Ana");
    auto k = m.fait(u"Commande", u"K"), l = m.fait(u"Commande", u"L");
    auto o = make<Observateur>();
    const Ref<NSString> cle = text(u"commandes");
    ana->addObserver_forKeyPath_options_context(o, cle, kTout, nullptr);
    pose(k, u"client", ana);
    pose(ana, u"commandes", ensemble({k, l}));
    pose(k, u"client", nullptr);
    EXPECT_THAT(o->prend(), ElementsAre("commandes 2 +{K} -none", "commandes 4 +{L} -{}", "commandes 3 +none -{K}"));
    ana->removeObserver_forKeyPath(o, cle);
    // Whoever looks through the set at something else sees a value.
    k->addObserver_forKeyPath_options_context(o, text(u"client.nom"), kTout, nullptr);
    pose(ana, u"commandes", ensemble({k}));
    EXPECT_THAT(o->prend(), ElementsAre("client.nom 1 +Ana -<null>"));
}

TEST(NSManagedObject, anEntityHasItsClass) {
    Magasin m(u"PasDeTelleClasse");
    auto c = m.fait(u"Client", u"Ana");
    EXPECT_TRUE(c->isMemberOfClass(classOf<NSManagedObject>()));
    EXPECT_TRUE(Magasin().fait(u"Client", u"Ana")->isMemberOfClass(classOf<Temoin>()));
    EXPECT_EQ(Magasin(u"NSString").fait(u"Client", u"Ana")->isa().name(), "NSManagedObject");
}

TEST(NSManagedObjectContext, ownsItsObjectsAndTakesThemApart) {
    auto m = std::make_unique<Magasin>();
    auto ana = m->fait(u"Client", u"Ana");
    const Weak<NSManagedObject> faible = m->fait(u"Commande", u"K");
    ASSERT_TRUE(faible);
    pose(faible, u"client", ana);
    pose(ana, u"amis", ensemble({ana}));
    EXPECT_EQ(m->contexte->registeredObjects()->count(), 2u);
    m = nullptr;
    // What is still held has its attributes, and nobody else.
    EXPECT_FALSE(faible);
    EXPECT_EQ(ana->managedObjectContext(), nullptr);
    EXPECT_EQ(noms(ana, u"commandes"), "-");
    EXPECT_EQ(described(ana->valueForKey(text(u"nom"))), "Ana");
}

TEST(NSManagedObjectContext, longChainsGoWithoutStack) {
    Magasin m;
    Ref<NSManagedObject> avant = m.fait(u"Client", u"0");
    for (int i = 0; i < 20000; ++i) {
        auto c = m.fait(u"Client", u"n");
        pose(c, u"amis", ensemble({avant}));
        avant = c;
    }
    m.contexte = nullptr;
    EXPECT_EQ(noms(avant, u"amis"), "-");
}

TEST(NSManagedObjectContext, deletingFollowsTheRules) {
    Magasin m;
    auto ana = m.fait(u"Client", u"Ana");
    auto k = m.fait(u"Commande", u"K");
    auto x = m.fait(u"Ligne", u"X"), y = m.fait(u"Ligne", u"Y");
    auto p = m.fait(u"Produit", u"P");
    pose(k, u"client", ana);
    pose(k, u"lignes", ensemble({x, y}));
    pose(x, u"produit", p);
    auto o = make<Observateur>();
    ana->addObserver_forKeyPath_options_context(o, text(u"commandes"), kTout, nullptr);
    m.contexte->deleteObject(k);
    EXPECT_THAT(o->prend(), ElementsAre("commandes 3 +none -{K}"));
    EXPECT_EQ(noms(ana, u"commandes"), "-");
    EXPECT_EQ(k->managedObjectContext(), nullptr);
    EXPECT_EQ(noms(k, u"client"), "-");
    EXPECT_EQ(m.contexte->objectsForEntityName(text(u"Ligne"))->count(), 0u);
    EXPECT_EQ(m.contexte->registeredObjects()->count(), 2u);
    m.contexte->deleteObject(k);
    m.contexte->deleteObject(nullptr);
    Magasin autre;
    autre.contexte->deleteObject(ana);
    EXPECT_EQ(ana->managedObjectContext(), m.contexte.get());
    EXPECT_EQ(raised([&] { autre.contexte->insertObject(ana); }), "NSInvalidArgumentException");
}

TEST(NSManagedObjectModel, whatCannotBeRaises) {
    auto e = make<NSEntityDescription>(text(u"E")), encore = make<NSEntityDescription>(text(u"E"));
    auto a = NSAttributeDescription::attribute(text(u"a")), deuxieme = NSAttributeDescription::attribute(text(u"a"));
    auto m = make<NSManagedObjectModel>();
    auto c = make<NSManagedObjectContext>(m);
    auto rien = make<NSManagedObject>(); // without an entity
    const auto proprietes = [&](std::initializer_list<NSObject*> p) { e->setProperties(NSArray::arrayWithObjects(p)); };
    const std::function<void()> fautes[] = {
        [&] {
            proprietes({a, deuxieme});
        },
        [&] { proprietes({make<NSAttributeDescription>()}); },
        [&] { proprietes({text(u"a")}); },
        [&] {
            m->setEntities(NSArray::arrayWithObjects({e, encore}));
        },
        [&] { (void)make<NSManagedObjectContext>(nullptr); },
        [&] { (void)NSEntityDescription::insertNewObjectForEntityForName_inManagedObjectContext(text(u"E"), c); },
        [&] { c->insertObject(rien); },
    };
    for (std::size_t i = 0; i < std::size(fautes); ++i)
        EXPECT_EQ(raised(fautes[i]), "NSInvalidArgumentException") << i;
    EXPECT_EQ(e->properties()->count(), 0u);
    EXPECT_EQ(raised([&] { (void)rien->valueForKey(text(u"nom")); }), "NSUndefinedKeyException");
}
