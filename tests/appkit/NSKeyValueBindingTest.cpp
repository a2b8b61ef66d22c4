#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>
#include <libvue/platform/foundation/NSValueTransformer.h>

using namespace libvue;
using namespace libvue::test;
using valeurs::described;
using valeurs::number;
using valeurs::raised;
using valeurs::text;

namespace {

class Reglage : public NSObject {
public:
    static void describe(ClassDescription<Reglage>& c) {
        c.key<&Reglage::volume, &Reglage::setVolume>("volume");
        c.key<&Reglage::nom, &Reglage::setNom>("nom");
        c.key<&Reglage::muet, &Reglage::setMuet>("muet");
        c.key<&Reglage::suivant, &Reglage::setSuivant>("suivant");
    }
    double volume() const { return volume_; }
    /// Between 0 and 10.
    void setVolume(double v) {
        ++sets;
        change(u"volume", [&] { volume_ = std::clamp(v, 0.0, 10.0); });
    }
    NSString* nom() const { return nom_; }
    void setNom(NSString* n) {
        change(u"nom", [&] { nom_ = n; });
    }
    bool muet() const { return muet_; }
    void setMuet(bool m) {
        change(u"muet", [&] { muet_ = m; });
    }
    Reglage* suivant() const { return suivant_; }
    void setSuivant(Reglage* s) {
        change(u"suivant", [&] { suivant_ = s; });
    }
    int sets = 0;

private:
    template <class F> void change(const char16_t* key, F store) {
        const Ref<NSString> k = NSString::from(key);
        willChangeValueForKey(k);
        store();
        didChangeValueForKey(k);
    }
    double volume_ = 3;
    Ref<NSString> nom_ = u"radio"_ns;
    bool muet_ = false;
    Ref<Reglage> suivant_;
};

Ref<NSDictionary> option(const ConstantString& key, NSObject* value) {
    return NSDictionary::dictionaryWithObject_forKey(value, key);
}

void lie(NSObject* objet, const ConstantString& nom, NSObject* modele, const char16_t* chemin,
         NSDictionary* options = nullptr) {
    bind_toObject_withKeyPath_options(objet, nom, modele, text(chemin), options);
}

struct BindingTest : WindowFixture {
    Ref<Reglage> modele = make<Reglage>();
    Ref<NSTextField> champ = add<NSTextField>({{20, 200}, {200, 24}}), autre = add<NSTextField>({{20, 100}, {200, 24}});
    Ref<NSButton> bouton = add<NSButton>({{20, 150}, {200, 24}});

    static std::string texte(NSControl* c) { return c->stringValue()->utf8(); }
    void edite(NSControl* c, std::u16string_view s) const {
        window->makeFirstResponder(c);
        type(s);
    }
};

} // namespace

TEST_F(BindingTest, AControlShowsTheModelAndFollowsIt) {
    const auto curseur = add<NSSlider>({{20, 250}, {200, 24}});
    curseur->setMaxValue(10);
    lie(curseur, NSValueBinding, modele, u"volume");
    lie(curseur, NSHiddenBinding, modele, u"muet");
    lie(bouton, NSEnabledBinding, modele, u"muet",
        option(NSValueTransformerNameBindingOption, text(u"NSNegateBoolean")));
    lie(bouton, NSTitleBinding, modele, u"nom");
    for (const bool muet : {false, true}) {
        modele->setMuet(muet);
        modele->setVolume(muet ? 7.5 : 3);
        modele->setNom(text(muet ? u"télé" : u"radio"));
        EXPECT_EQ(curseur->doubleValue(), muet ? 7.5 : 3);
        EXPECT_EQ(curseur->isHidden(), muet);
        EXPECT_EQ(bouton->isEnabled(), !muet);
        EXPECT_EQ(bouton->title()->utf8(), muet ? "télé" : "radio");
    }
    for (int i = 0; i < 2; ++i) {
        unbind(curseur, NSValueBinding);
        modele->setVolume(1);
        EXPECT_EQ(curseur->doubleValue(), 7.5);
    }
}

TEST_F(BindingTest, TheModelHearsOfAClickBeforeTheTarget) {
    bouton->setButtonType(NSSwitchButton);
    lie(bouton, NSValueBinding, modele, u"muet");
    const auto cible = make<Cible>();
    bool vu = false;
    cible->onAction = [&](NSObject*) { vu = modele->muet(); };
    bouton->setTarget(cible);
    bouton->setAction(sel("agir:"));
    mouse().click(30, 162).end();
    EXPECT_TRUE(vu);
    mouse().click(30, 162).end();
    EXPECT_FALSE(vu);
    EXPECT_EQ(cible->count, 2);
    // Set by the program, the control keeps it to itself.
    bouton->setState(NSOnState);
    EXPECT_FALSE(modele->muet());

    const auto menu = add<NSPopUpButton>({{20, 50}, {200, 24}});
    for (const char16_t* t : {u"zéro", u"un", u"deux", u"trois", u"quatre"})
        menu->addItemWithTitle(text(t));
    lie(menu, NSSelectedIndexBinding, modele, u"volume");
    EXPECT_EQ(menu->indexOfSelectedItem(), 3);
    menu->selectItemAtIndex(1);
    menu->sendAction_to(menu->action(), menu->target());
    EXPECT_EQ(modele->volume(), 1);
}

TEST_F(BindingTest, TheModelsOfRadioButtonsThatAChoiceClearsHearOfIt) {
    const auto second = make<Reglage>();
    const auto b = add<NSButton>({{20, 50}, {200, 24}});
    for (NSButton* radio : {bouton.get(), b.get()}) {
        radio->setButtonType(NSRadioButton);
        lie(radio, NSValueBinding, radio == b ? second : modele, u"muet");
    }
    modele->setMuet(true);
    mouse().click(30, 62).end();
    EXPECT_TRUE(second->muet());
    EXPECT_FALSE(modele->muet());
    EXPECT_EQ(bouton->state(), NSOffState);
}

TEST_F(BindingTest, AFieldHandsOnWhatWasTypedAtTheEnd) {
    lie(champ, NSValueBinding, modele, u"volume");
    lie(autre, NSValueBinding, modele, u"volume");
    edite(champ, u"\r"); // nothing was changed
    EXPECT_EQ(modele->sets, 0);
    edite(champ, u"4.5");
    EXPECT_EQ(modele->volume(), 3);
    type(u"\t");
    EXPECT_EQ(modele->volume(), 4.5);
    EXPECT_EQ(texte(autre), "4.5");
    EXPECT_EQ(modele->sets, 1);
    edite(champ, u"99\t"); // a model that knows better is shown
    EXPECT_EQ(modele->volume(), 10);
    EXPECT_EQ(texte(champ), "10");
}

TEST_F(BindingTest, AContinuousFieldHandsOnEachLetterAndGoesOnBeingEdited) {
    lie(champ, NSValueBinding, modele, u"nom", option(NSContinuouslyUpdatesValueBindingOption, number(1)));
    edite(champ, u"a");
    EXPECT_EQ(modele->nom()->utf8(), "a");
    type(u"b");
    EXPECT_EQ(modele->nom()->utf8(), "ab");
    ASSERT_NE(champ->currentEditor(), nullptr);
    EXPECT_EQ(champ->currentEditor()->string()->utf8(), "ab");
}

TEST_F(BindingTest, ATransformerThatDoesNotGoBackIsReadOnly) {
    bouton->setButtonType(NSSwitchButton);
    lie(bouton, NSValueBinding, modele, u"nom", option(NSValueTransformerNameBindingOption, text(u"NSIsNil")));
    EXPECT_EQ(bouton->state(), NSOffState);
    mouse().click(30, 162).end();
    EXPECT_EQ(bouton->state(), NSOnState);
    EXPECT_EQ(modele->nom()->utf8(), "radio");
    modele->setNom(nullptr);
    EXPECT_EQ(bouton->state(), NSOnState);
    modele->setNom(text(u"disque"));
    EXPECT_EQ(bouton->state(), NSOffState);
}

TEST_F(BindingTest, PathsFollowTheObjectsOnTheirWayThroughDictionariesToo) {
    lie(champ, NSValueBinding, modele, u"suivant.nom", option(NSNullPlaceholderBindingOption, text(u"rien")));
    EXPECT_EQ(texte(champ), "rien");
    const auto suivant = make<Reglage>();
    modele->setSuivant(suivant);
    EXPECT_EQ(texte(champ), "radio");
    suivant->setNom(text(u"disque"));
    EXPECT_EQ(texte(champ), "disque");
    edite(champ, u"bande\t");
    EXPECT_EQ(suivant->nom()->utf8(), "bande");
    modele->setSuivant(nullptr);
    EXPECT_EQ(texte(champ), "rien");

    const auto villes = NSMutableDictionary::dictionary();
    lie(champ, NSValueBinding, villes, u"ville"); // anew: it replaces
    lie(autre, NSValueBinding, villes, u"ville");
    EXPECT_EQ(texte(champ), "");
    villes->setValue_forKey(text(u"Lyon"), text(u"ville"));
    EXPECT_EQ(texte(autre), "Lyon");
    edite(champ, u"Nice\t");
    EXPECT_EQ(described(villes->objectForKey(text(u"ville"))), "Nice");
    EXPECT_EQ(texte(autre), "Nice");
    modele->setSuivant(suivant);
    EXPECT_EQ(texte(champ), "Nice");
}

TEST_F(BindingTest, NeitherSideKeepsTheOther) {
    const Weak<Reglage> faible = modele;
    lie(champ, NSValueBinding, modele, u"nom");
    lie(champ, NSHiddenBinding, champ, u"enabled",
        option(NSValueTransformerNameBindingOption, text(u"NSNegateBoolean")));
    modele = nullptr;
    EXPECT_FALSE(faible);
    EXPECT_EQ(texte(champ), "radio");
    EXPECT_EQ(infoForBinding(champ, NSValueBinding)->objectForKey(NSObservedObjectKey), nullptr);
    setBoundValue(champ, NSValueBinding, ShowAfterwards::modelValue);
    // And the other way round.
    modele = make<Reglage>();
    auto seul = make<NSTextField>();
    const Weak<NSTextField> champFaible = seul;
    lie(seul, NSValueBinding, modele, u"nom");
    seul = nullptr;
    EXPECT_FALSE(champFaible);
    modele->setNom(text(u"y"));
}

TEST_F(BindingTest, WhatIsWrongBindsNothing) {
    const Ref<NSDictionary> unknown = option(NSValueTransformerNameBindingOption, text(u"inconnu"));
    const Ref<NSString> value(NSValueBinding.get()), nom = text(u"nom"), inconnue = text(u"inconnue");
    const char *argument = "NSInvalidArgumentException", *key = "NSUndefinedKeyException";
    struct Row {
        NSObject* objet;
        NSString* binding;
        NSObject* modele;
        NSString* chemin;
        NSDictionary* options;
        const char* raised;
    };
    for (const Row& r :
         {Row{nullptr, value, modele, nom, nullptr, argument}, Row{champ, nullptr, modele, nom, nullptr, argument},
          Row{champ, value, nullptr, nom, nullptr, argument}, Row{champ, value, modele, nullptr, nullptr, argument},
          Row{champ, value, modele, nom, unknown, argument}, Row{champ, value, modele, inconnue, nullptr, key},
          Row{champ, inconnue, modele, nom, nullptr, key}})
        EXPECT_EQ(raised([&] { bind_toObject_withKeyPath_options(r.objet, r.binding, r.modele, r.chemin, r.options); }),
                  r.raised);
    EXPECT_EQ(infoForBinding(champ, value), nullptr);
    EXPECT_EQ(infoForBinding(champ, inconnue), nullptr);
    modele->setNom(text(u"z"));
    EXPECT_EQ(texte(champ), "");
    unbind(champ, value);
    unbind(nullptr, nullptr);
    setBoundValue(champ, value, ShowAfterwards::modelValue);
}

TEST_F(BindingTest, ABindingIsReadBack) {
    const Ref<NSDictionary> options = option(NSNullPlaceholderBindingOption, text(u"-"));
    lie(champ, NSValueBinding, modele, u"nom", options);
    const Ref<NSDictionary> info = infoForBinding(champ, NSValueBinding);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->objectForKey(NSObservedObjectKey), modele.get());
    EXPECT_EQ(described(info->objectForKey(NSObservedKeyPathKey)), "nom");
    EXPECT_EQ(info->objectForKey(NSOptionsKey), options.get());
    const Ref<NSArray> noms = exposedBindings(champ);
    EXPECT_EQ(textes::shown(noms), "|editable|enabled|hidden|toolTip|value|");
}

TEST_F(BindingTest, AnObserverMayUnbindWhileItIsShown) {
    // The setter of one binding ends the other, in the middle of the model's notice.
    class Bascule : public NSObject {
    public:
        static void describe(ClassDescription<Bascule>& c) { c.key<&Bascule::lu, &Bascule::setLu>("lu"); }
        NSObject* champ = nullptr;
        int fois = 0;
        NSString* lu() const { return nullptr; }
        void setLu(NSString*) {
            if (++fois != 2) return;
            unbind(champ, NSValueBinding);
            unbind(this, u"lu"_ns);
        }
    };
    const auto bascule = make<Bascule>();
    bascule->champ = champ;
    bind_toObject_withKeyPath_options(bascule, text(u"lu"), modele, text(u"nom"), nullptr);
    lie(champ, NSValueBinding, modele, u"nom");
    modele->setNom(text(u"un"));
    modele->setNom(text(u"deux"));
    EXPECT_EQ(bascule->fois, 2);
    EXPECT_EQ(texte(champ), "radio");
}
