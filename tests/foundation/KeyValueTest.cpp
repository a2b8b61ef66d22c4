#include "Textes.h"

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSKeyValueObserving.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>

using namespace libvue;
using textes::expectRaised;

namespace {

class Personne : public NSObject {
public:
    static void describe(ClassDescription<Personne>& c) {
        c.key<&Personne::nom, &Personne::setNom>("nom");
        c.key<&Personne::age, &Personne::setAge>("age");
        c.key<&Personne::majeur>("isMajeur");
        c.key<&Personne::cache, &Personne::setCache>("cache");
        c.key<&Personne::parent, &Personne::setParent>("parent");
        c.key<&Personne::etiquette>("etiquette");
        c.keyDependsOn("etiquette", "nom");
        c.keyDependsOn("majeur", "age");
        c.keyDependsOn("accueil", "etiquette");
    }
    NSString* nom() const { return nom_; }
    void setNom(NSString* n) {
        change(u"nom", [&] { nom_ = n; });
    }
    NSInteger age() const { return age_; }
    void setAge(NSInteger a) {
        change(u"age", [&] { age_ = a; });
    }
    bool majeur() const { return age_ >= 18; }
    bool cache() const { return cache_; }
    void setCache(bool c) { cache_ = c; }
    Personne* parent() const { return parent_; }
    void setParent(Personne* p) {
        change(u"parent", [&] { parent_ = p; });
    }
    Ref<NSString> etiquette() const { return NSString::fromUTF8(nom_ ? "M. " + nom_->utf8() : "?"); }

private:
    template <class F> void change(const char16_t* key, F store) {
        const Ref<NSString> k = NSString::from(key);
        willChangeValueForKey(k);
        store();
        didChangeValueForKey(k);
    }
    Ref<NSString> nom_;
    NSInteger age_ = 0;
    bool cache_ = false;
    Ref<Personne> parent_;
};

std::string texte(NSObject* o) { return o ? o->description()->utf8() : "-"; }

class Temoin : public NSObject {
public:
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject*, NSDictionary* change,
                                                        void* context) override {
        std::string line = path->utf8();
        if (change->objectForKey(NSKeyValueChangeNotificationIsPriorKey)) line += " prior";
        if (NSObject* old = change->objectForKey(NSKeyValueChangeOldKey))
            line += " old=" + (old == NSNull::null() ? "null" : texte(old));
        if (NSObject* now = change->objectForKey(NSKeyValueChangeNewKey))
            line += " new=" + (now == NSNull::null() ? "null" : texte(now));
        if (context) line += " ctx";
        entendu.push_back(line);
        if (action) action();
    }
    std::vector<std::string> prends() { return std::exchange(entendu, {}); }
    std::vector<std::string> entendu;
    std::function<void()> action;
};

using Lignes = std::vector<std::string>;

constexpr NSUInteger nouveauEtAncien = NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld;

} // namespace

TEST(KeyValueCodingTest, keysAndPathsReadAndWrite) {
    const auto enfant = make<Personne>();
    const auto parent = make<Personne>();
    enfant->setParent(parent);
    enfant->setValue_forKeyPath(u"Zoé"_ns, u"parent.nom"_ns);
    enfant->setValue_forKey(NSNumber::numberWithInteger(20), u"age"_ns);
    EXPECT_EQ(parent->nom()->utf8(), "Zoé");

    struct {
        const char16_t* path;
        const char* value;
    } const rows[] = {
        {u"parent.nom", "Zoé"}, {u"nom", "-"},     {u"age", "20"},          {u"majeur", "1"},
        {u"isMajeur", "1"},     {u"isCache", "0"}, {u"parent.parent", "-"}, {u"parent.parent.nom", "-"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(texte(enfant->valueForKeyPath(NSString::from(row.path))), row.value)
            << texte(NSString::from(row.path));

    // Null is the zero of a number.
    enfant->setValue_forKey(nullptr, u"age"_ns);
    EXPECT_EQ(enfant->age(), 0);
}

TEST(KeyValueCodingTest, anUnknownKeyRaises) {
    const auto p = make<Personne>();
    p->setNom(u"a"_ns);
    for (const char16_t* key : {u"inconnue", u"", u"nom.inconnue.x", u".nom", u"é"})
        expectRaised("NSUndefinedKeyException", {[&] { (void)p->valueForKeyPath(NSString::from(key)); }});
    expectRaised("NSUndefinedKeyException",
                 {[&] { (void)p->valueForKey(nullptr); }, [&] { p->setValue_forKey(nullptr, u"isMajeur"_ns); }});
}

TEST(KeyValueObservingTest, optionsDecideWhatIsTold) {
    const auto p = make<Personne>();
    const auto t = make<Temoin>();
    struct {
        NSUInteger options;
        Lignes atOnce, atChange;
    } const rows[] = {
        {NSKeyValueObservingOptionNone, {}, {"nom"}},
        {NSKeyValueObservingOptionNew, {}, {"nom new=b"}},
        {nouveauEtAncien, {}, {"nom old=null new=b"}},
        {NSKeyValueObservingOptionInitial | NSKeyValueObservingOptionNew, {"nom new=null"}, {"nom new=b"}},
        {NSKeyValueObservingOptionPrior | nouveauEtAncien, {}, {"nom prior old=null", "nom old=null new=b"}},
    };
    for (const auto& row : rows) {
        p->setNom(nullptr);
        p->addObserver_forKeyPath_options_context(t, u"nom"_ns, row.options, nullptr);
        EXPECT_EQ(t->prends(), row.atOnce);
        p->setNom(u"b"_ns);
        p->removeObserver_forKeyPath(t, u"nom"_ns);
        EXPECT_EQ(t->prends(), row.atChange);
        p->setNom(u"c"_ns);
        EXPECT_EQ(t->prends(), Lignes{});
    }
}

TEST(KeyValueObservingTest, aPathFollowsTheObjectsOnItsWay) {
    const auto enfant = make<Personne>();
    auto ancien = make<Personne>();
    const auto nouveau = make<Personne>();
    const auto t = make<Temoin>();
    ancien->setNom(u"ancien"_ns);
    nouveau->setNom(u"nouveau"_ns);
    enfant->addObserver_forKeyPath_options_context(t, u"parent.nom"_ns, nouveauEtAncien, nullptr);
    enfant->setParent(ancien);
    ancien->setNom(u"Ancien"_ns);
    enfant->setParent(nouveau);
    EXPECT_EQ(t->prends(), (Lignes{"parent.nom old=null new=ancien", "parent.nom old=ancien new=Ancien",
                                   "parent.nom old=Ancien new=nouveau"}));
    ancien->setNom(u"oublié"_ns);
    EXPECT_EQ(t->prends(), Lignes{});
    ancien = nullptr;
    nouveau->setNom(u"x"_ns);
    enfant->setParent(nullptr);
    nouveau->setNom(u"y"_ns);
    EXPECT_EQ(t->prends(), (Lignes{"parent.nom old=nouveau new=x", "parent.nom old=x new=null"}));
    enfant->removeObserver_forKeyPath(t, u"parent.nom"_ns);
}

TEST(KeyValueObservingTest, anObjectOnTheWayMayDieUnannounced) {
    const auto enfant = make<Personne>();
    const auto t = make<Temoin>();
    auto grand = make<Personne>();
    {
        const auto parent = make<Personne>();
        parent->setParent(grand);
        enfant->setParent(parent);
        enfant->addObserver_forKeyPath_options_context(t, u"parent.parent.age"_ns, NSKeyValueObservingOptionNew,
                                                       nullptr);
        grand->setAge(80);
    }
    enfant->setParent(nullptr);
    EXPECT_EQ(t->prends(), (Lignes{"parent.parent.age new=80", "parent.parent.age new=null"}));
    grand->setAge(81);
    grand = nullptr;
    EXPECT_EQ(t->prends(), Lignes{});
    enfant->removeObserver_forKeyPath(t, u"parent.parent.age"_ns);
}

TEST(KeyValueObservingTest, dependentKeysAreAnnounced) {
    const auto p = make<Personne>();
    const auto t = make<Temoin>();
    p->addObserver_forKeyPath_options_context(t, u"etiquette"_ns, nouveauEtAncien, nullptr);
    p->addObserver_forKeyPath_options_context(t, u"majeur"_ns, NSKeyValueObservingOptionNew, nullptr);
    p->setNom(u"Roy"_ns);
    p->setAge(18);
    EXPECT_EQ(t->prends(), (Lignes{"etiquette old=? new=M. Roy", "majeur new=1"}));
    // Through a key that is itself dependent.
    p->addObserver_forKeyPath_options_context(t, u"accueil"_ns, NSKeyValueObservingOptionNone, nullptr);
    p->removeObserver_forKeyPath(t, u"etiquette"_ns);
    p->setNom(u"Roi"_ns);
    EXPECT_EQ(t->prends(), (Lignes{"accueil"}));
}

TEST(KeyValueObservingTest, removalDuringANotificationHoldsAtOnce) {
    const auto p = make<Personne>();
    const auto premier = make<Temoin>();
    auto second = make<Temoin>();
    auto troisieme = make<Temoin>();
    const Weak<Temoin> faible(troisieme);
    for (const auto& t : {premier, second, troisieme})
        p->addObserver_forKeyPath_options_context(t, u"nom"_ns, 0, nullptr);
    premier->action = [&] {
        p->removeObserver_forKeyPath(second, u"nom"_ns);
        p->removeObserver_forKeyPath(premier, u"nom"_ns);
        troisieme = nullptr;
    };
    p->setNom(u"a"_ns);
    p->setNom(u"b"_ns);
    EXPECT_EQ(premier->prends(), Lignes{"nom"});
    EXPECT_EQ(second->prends(), Lignes{});
    EXPECT_EQ(faible, nullptr);
}

TEST(KeyValueObservingTest, theObservedObjectMayGoDuringANotification) {
    auto p = make<Personne>();
    const auto t = make<Temoin>();
    const Weak<Personne> faible(p);
    p->addObserver_forKeyPath_options_context(t, u"nom"_ns, 0, nullptr);
    t->action = [&] { p = nullptr; };
    p->setNom(u"a"_ns);
    EXPECT_EQ(t->prends(), Lignes{"nom"});
    EXPECT_EQ(faible, nullptr);
}

TEST(KeyValueObservingTest, anUnknownRegistrationRaises) {
    const auto p = make<Personne>();
    const auto t = make<Temoin>();
    int a = 0;
    int b = 0;
    p->addObserver_forKeyPath_options_context(t, u"nom"_ns, 0, &a);
    EXPECT_THROW(p->removeObserver_forKeyPath(t, u"age"_ns), NSExceptionRaised);
    EXPECT_THROW(p->removeObserver_forKeyPath(p, u"nom"_ns), NSExceptionRaised);
    EXPECT_THROW(p->removeObserver_forKeyPath_context(t, u"nom"_ns, &b), NSExceptionRaised);
    p->removeObserver_forKeyPath_context(t, u"nom"_ns, &a);
    EXPECT_THROW(p->removeObserver_forKeyPath(t, u"nom"_ns), NSExceptionRaised);
}

TEST(KeyValueObservingTest, anObserverMayEndItsRegistrationInItsDestructor) {
    class Soigneux : public NSObject {
    public:
        explicit Soigneux(Personne* p) : p_(p) {
            p->addObserver_forKeyPath_options_context(this, u"nom"_ns, 0, nullptr);
        }
        ~Soigneux() override { p_->removeObserver_forKeyPath(this, u"nom"_ns); }

    private:
        Ref<Personne> p_;
    };
    const auto p = make<Personne>();
    (void)make<Soigneux>(p.get());
    p->setNom(u"a"_ns);
}
