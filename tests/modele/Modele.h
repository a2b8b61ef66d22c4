#pragma once

#include <foundation/Valeurs.h>

#include <set>

#include <libvue/platform/coredata/NSManagedObject.h>
#include <libvue/platform/coredata/NSManagedObjectContext.h>
#include <libvue/platform/coredata/NSManagedObjectModel.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue::modele {

using textes::raised;
using textes::text;
using valeurs::described;
using valeurs::number;

using Journal = std::vector<std::string>;

/// An object that writes down what it is told, while a journal is open.
class Temoin : public NSManagedObject {
public:
    static void describe(ClassDescription<Temoin, NSManagedObject>&) {}
    static inline Journal* journal = nullptr;

    void willAccessValueForKey(NSString* key) const override { dit("willAccess", key); }
    void didAccessValueForKey(NSString* key) const override { dit("didAccess", key); }
    void willChangeValueForKey(NSString* key) override {
        dit("will", key);
        NSManagedObject::willChangeValueForKey(key);
    }
    void didChangeValueForKey(NSString* key) override {
        dit("did", key);
        NSManagedObject::didChangeValueForKey(key);
    }
    void willChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind kind,
                                                            const NSSet* objects) override {
        ditEnsemble("willSet", key, kind, objects);
        NSManagedObject::willChangeValueForKey_withSetMutation_usingObjects(key, kind, objects);
    }
    void didChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind kind,
                                                           const NSSet* objects) override {
        ditEnsemble("didSet", key, kind, objects);
        NSManagedObject::didChangeValueForKey_withSetMutation_usingObjects(key, kind, objects);
    }
    Ref<NSObject> primitiveValueForKey(NSString* key) const override {
        dit("get", key);
        return NSManagedObject::primitiveValueForKey(key);
    }
    void setPrimitiveValue_forKey(NSObject* value, NSString* key) override {
        dit("set", key);
        NSManagedObject::setPrimitiveValue_forKey(value, key);
    }

private:
    void ditEnsemble(const char* quoi, NSString* key, NSKeyValueSetMutationKind kind, const NSSet* objects) const {
        dit(quoi + std::to_string(kind) + "x" + std::to_string(objects->count()), key);
    }
    void dit(const std::string& quoi, NSString* key) const {
        if (!journal) return;
        Journal* j = std::exchange(journal, nullptr);
        const Ref<NSObject> nom = NSManagedObject::primitiveValueForKey(u"nom"_ns);
        j->push_back((nom ? described(nom) : "?") + " " + quoi + " " + key->utf8());
        journal = j;
    }
};

/// Opens the journal for the length of a call.
template <class F> Journal note(F f) {
    Journal j;
    Temoin::journal = &j;
    f();
    Temoin::journal = nullptr;
    return j;
}

/// Clients with orders, orders with lines and an invoice, products that lines point at without an inverse, clients that
/// know each other.
class Magasin {
public:
    explicit Magasin(const char16_t* classe = u"Temoin") {
        (void)classOf<Temoin>();
        auto client = entite(u"Client", classe), commande = entite(u"Commande", classe),
             ligne = entite(u"Ligne", classe), facture = entite(u"Facture", classe),
             produit = entite(u"Produit", classe);
        const auto un = [](const char16_t* nom, NSEntityDescription* vers) {
            return NSRelationshipDescription::toOne(text(nom), vers);
        };
        const auto plusieurs = [](const char16_t* nom, NSEntityDescription* vers) {
            return NSRelationshipDescription::toMany(text(nom), vers);
        };
        auto commandes = plusieurs(u"commandes", commande), lignes = plusieurs(u"lignes", ligne),
             articles = plusieurs(u"produits", produit), amis = plusieurs(u"amis", client);
        auto sonClient = un(u"client", client), saCommande = un(u"commande", commande),
             facturee = un(u"facture", facture), factureDe = un(u"commande", commande),
             article = un(u"produit", produit);
        NSRelationshipDescription::makeInverse(commandes, sonClient);
        NSRelationshipDescription::makeInverse(lignes, saCommande);
        NSRelationshipDescription::makeInverse(facturee, factureDe);
        NSRelationshipDescription::makeInverse(amis, amis);
        lignes->setDeleteRule(NSCascadeDeleteRule);
        auto age = NSAttributeDescription::attribute(text(u"age"), number(18));
        client->setProperties(NSArray::arrayWithObjects({nom(), age, commandes, amis}));
        commande->setProperties(NSArray::arrayWithObjects({nom(), sonClient, lignes, facturee, articles}));
        ligne->setProperties(NSArray::arrayWithObjects({nom(), saCommande, article}));
        facture->setProperties(NSArray::arrayWithObjects({nom(), factureDe}));
        produit->setProperties(NSArray::arrayWithObjects({nom()}));
        contexte = make<NSManagedObjectContext>(NSManagedObjectModel::modelWithEntities(
            NSArray::arrayWithObjects({client, commande, ligne, facture, produit})));
    }

    /// A new object of that entity and that name.
    Ref<NSManagedObject> fait(const char16_t* entite, const char16_t* nom) const {
        auto o = NSEntityDescription::insertNewObjectForEntityForName_inManagedObjectContext(text(entite), contexte);
        o->setValue_forKey(text(nom), text(u"nom"));
        return o;
    }

    Ref<NSManagedObjectContext> contexte;

private:
    static Ref<NSEntityDescription> entite(const char16_t* nom, const char16_t* classe) {
        auto e = make<NSEntityDescription>(text(nom));
        e->setManagedObjectClassName(text(classe));
        return e;
    }
    static Ref<NSAttributeDescription> nom() { return NSAttributeDescription::attribute(text(u"nom")); }
};

inline Ref<NSSet> ensemble(std::initializer_list<NSObject*> objets) { return NSSet::setWithObjects(objets); }

/// The names of what is under a key, in order of the alphabet; "-" for nothing.
inline std::string noms(NSManagedObject* o, const char16_t* cle) {
    const auto nom = [](const NSManagedObject* objet) {
        return described(objet->NSManagedObject::primitiveValueForKey(u"nom"_ns));
    };
    const Ref<NSObject> v = o->NSManagedObject::primitiveValueForKey(text(cle));
    if (auto* un = as<NSManagedObject>(v)) return nom(un);
    auto* ensemble = as<NSSet>(v);
    if (!ensemble) return v ? described(v) : "-";
    std::set<std::string> tous;
    for (auto* e : ensemble->as<NSManagedObject>())
        tous.insert(nom(e));
    std::string s;
    for (const std::string& n : tous)
        s += (s.empty() ? "" : " ") + n;
    return s.empty() ? "-" : s;
}

inline void pose(NSManagedObject* o, const char16_t* cle, NSObject* v) { o->setValue_forKey(v, text(cle)); }

} // namespace libvue::modele
