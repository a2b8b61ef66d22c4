#include <appkit/Cible.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

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

struct BindingTest : AppFixture {
    Ref<NSWindow> window;
    Ref<Reglage> modele;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        modele = make<Reglage>();
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        modele = nullptr;
        AppFixture::TearDown();
    }
    template <class T> Ref<T> pose(CGFloat y) {
        auto v = make<T>(NSRect{{20, y}, {200, 24}});
        window->contentView()->addSubview(v);
        drain();
        return v;
    }
    void clique(CGFloat x, CGFloat y) { Geste{windows(), window}.at(x, y).down().up().end(); }
    void tape(std::u16string_view s) {
        windows().typeText(s);
        drain();
    }
    void touche(char16_t c) {
        windows().key(c, 0);
        drain();
    }
};

} // namespace

TEST_F(BindingTest, AControlShowsTheModelAndFollowsIt) {
    auto curseur = pose<NSSlider>(200);
    curseur->setMaxValue(10);
    auto bouton = pose<NSButton>(150);
    lie(curseur, NSValueBinding, modele, u"volume");
    lie(curseur, NSHiddenBinding, modele, u"muet");
    lie(bouton, NSEnabledBinding, modele, u"muet",
        option(NSValueTransformerNameBindingOption, text(u"NSNegateBoolean")));
    lie(bouton, NSTitleBinding, modele, u"nom");
    EXPECT_EQ(curseur->doubleValue(), 3);
    EXPECT_FALSE(curseur->isHidden());
    EXPECT_TRUE(bouton->isEnabled());
    EXPECT_EQ(bouton->title()->utf8(), "radio");
    modele->setVolume(7.5);
    modele->setMuet(true);
    modele->setNom(text(u"télé"));
    EXPECT_EQ(curseur->doubleValue(), 7.5);
    EXPECT_TRUE(curseur->isHidden());
    EXPECT_FALSE(bouton->isEnabled());
    EXPECT_EQ(bouton->title()->utf8(), "télé");
    unbind(curseur, NSValueBinding);
    modele->setVolume(1);
    EXPECT_EQ(curseur->doubleValue(), 7.5);
    unbind(curseur, NSValueBinding);
}

TEST_F(BindingTest, TheModelHearsOfAClickBeforeTheTarget) {
    auto case_ = pose<NSButton>(150);
    case_->setButtonType(NSSwitchButton);
    lie(case_, NSValueBinding, modele, u"muet");
    auto cible = make<Cible>();
    bool vu = false;
    cible->onAction = [&](NSObject*) { vu = modele->muet(); };
    case_->setTarget(cible);
    case_->setAction(sel("agir:"));
    clique(30, 162);
    EXPECT_TRUE(vu);
    clique(30, 162);
    EXPECT_FALSE(modele->muet());
    EXPECT_EQ(cible->count, 2);
    // Set by the program, the control keeps it to itself.
    case_->setState(NSOnState);
    EXPECT_FALSE(modele->muet());
}

TEST_F(BindingTest, AChoiceOfAMenuReachesTheModel) {
    auto menu = pose<NSPopUpButton>(150);
    for (const char16_t* t : {u"zéro", u"un", u"deux", u"trois", u"quatre"})
        menu->addItemWithTitle(text(t));
    lie(menu, NSSelectedIndexBinding, modele, u"volume");
    EXPECT_EQ(menu->indexOfSelectedItem(), 3);
    menu->selectItemAtIndex(1);
    menu->sendAction_to(menu->action(), menu->target());
    EXPECT_EQ(modele->volume(), 1);
}

TEST_F(BindingTest, AFieldHandsOnWhatWasTypedAtTheEnd) {
    auto champ = pose<NSTextField>(200);
    auto autre = pose<NSTextField>(100);
    lie(champ, NSValueBinding, modele, u"volume");
    lie(autre, NSValueBinding, modele, u"volume");
    window->makeFirstResponder(champ);
    touche(u'\r'); // nothing was changed
    EXPECT_EQ(modele->sets, 0);
    tape(u"4.5");
    EXPECT_EQ(modele->volume(), 3);
    touche(u'\t');
    EXPECT_EQ(modele->volume(), 4.5);
    EXPECT_EQ(autre->stringValue()->utf8(), "4.5");
    EXPECT_EQ(modele->sets, 1);
}

TEST_F(BindingTest, AModelThatKnowsBetterIsShown) {
    auto champ = pose<NSTextField>(200);
    lie(champ, NSValueBinding, modele, u"volume");
    window->makeFirstResponder(champ);
    tape(u"99");
    touche(u'\t');
    EXPECT_EQ(modele->volume(), 10);
    EXPECT_EQ(champ->stringValue()->utf8(), "10");
}

TEST_F(BindingTest, AContinuousFieldHandsOnEachLetterAndGoesOnBeingEdited) {
    auto champ = pose<NSTextField>(200);
    lie(champ, NSValueBinding, modele, u"nom", option(NSContinuouslyUpdatesValueBindingOption, number(1)));
    window->makeFirstResponder(champ);
    tape(u"a");
    EXPECT_EQ(modele->nom()->utf8(), "a");
    tape(u"b");
    EXPECT_EQ(modele->nom()->utf8(), "ab");
    ASSERT_NE(champ->currentEditor(), nullptr);
    EXPECT_EQ(champ->currentEditor()->string()->utf8(), "ab");
}

TEST_F(BindingTest, ATransformerThatDoesNotGoBackIsReadOnly) {
    auto case_ = pose<NSButton>(150);
    case_->setButtonType(NSSwitchButton);
    lie(case_, NSValueBinding, modele, u"nom", option(NSValueTransformerNameBindingOption, text(u"NSIsNil")));
    EXPECT_EQ(case_->state(), NSOffState);
    clique(30, 162);
    EXPECT_EQ(case_->state(), NSOnState);
    EXPECT_EQ(modele->nom()->utf8(), "radio");
    modele->setNom(nullptr);
    EXPECT_EQ(case_->state(), NSOnState);
    modele->setNom(text(u"disque"));
    EXPECT_EQ(case_->state(), NSOffState);
}

TEST_F(BindingTest, PathsFollowTheObjectsOnTheirWay) {
    auto champ = pose<NSTextField>(200);
    lie(champ, NSValueBinding, modele, u"suivant.nom", option(NSNullPlaceholderBindingOption, text(u"rien")));
    EXPECT_EQ(champ->stringValue()->utf8(), "rien");
    auto suivant = make<Reglage>();
    modele->setSuivant(suivant);
    EXPECT_EQ(champ->stringValue()->utf8(), "radio");
    suivant->setNom(text(u"disque"));
    EXPECT_EQ(champ->stringValue()->utf8(), "disque");
    window->makeFirstResponder(champ);
    tape(u"bande");
    touche(u'\t');
    EXPECT_EQ(suivant->nom()->utf8(), "bande");
    modele->setSuivant(nullptr);
    EXPECT_EQ(champ->stringValue()->utf8(), "rien");
}

TEST_F(BindingTest, DictionariesAreModelsToo) {
    auto valeurs = NSMutableDictionary::dictionary();
    auto champ = pose<NSTextField>(200);
    auto autre = pose<NSTextField>(100);
    lie(champ, NSValueBinding, valeurs, u"ville");
    lie(autre, NSValueBinding, valeurs, u"ville");
    EXPECT_EQ(champ->stringValue()->utf8(), "");
    valeurs->setValue_forKey(text(u"Lyon"), text(u"ville"));
    EXPECT_EQ(autre->stringValue()->utf8(), "Lyon");
    window->makeFirstResponder(champ);
    tape(u"Nice");
    touche(u'\t');
    EXPECT_EQ(described(valeurs->objectForKey(text(u"ville"))), "Nice");
    EXPECT_EQ(autre->stringValue()->utf8(), "Nice");
}

TEST_F(BindingTest, NeitherSideKeepsTheOther) {
    auto champ = make<NSTextField>();
    const Weak<Reglage> faible = modele;
    lie(champ, NSValueBinding, modele, u"nom");
    lie(champ, NSHiddenBinding, champ, u"enabled",
        option(NSValueTransformerNameBindingOption, text(u"NSNegateBoolean")));
    modele = nullptr;
    EXPECT_FALSE(faible);
    EXPECT_EQ(champ->stringValue()->utf8(), "radio");
    EXPECT_EQ(infoForBinding(champ, NSValueBinding)->objectForKey(NSObservedObjectKey), nullptr);
    champ->setStringValue(text(u"x"));
    setBoundValue(champ, NSValueBinding, ShowAfterwards::modelValue);
    // And the other way round.
    modele = make<Reglage>();
    const Weak<NSTextField> champFaible = champ;
    lie(champ, NSValueBinding, modele, u"nom");
    champ = nullptr;
    EXPECT_FALSE(champFaible);
    modele->setNom(text(u"y"));
}

TEST_F(BindingTest, WhatIsWrongBindsNothing) {
    auto champ = make<NSTextField>();
    const auto leve = [&](NSObject* o, NSString* nom, NSObject* m, NSString* chemin, NSDictionary* options) {
        return raised([&] { bind_toObject_withKeyPath_options(o, nom, m, chemin, options); });
    };
    EXPECT_EQ(leve(nullptr, NSValueBinding, modele, text(u"nom"), nullptr), "NSInvalidArgumentException");
    EXPECT_EQ(leve(champ, nullptr, modele, text(u"nom"), nullptr), "NSInvalidArgumentException");
    EXPECT_EQ(leve(champ, NSValueBinding, nullptr, text(u"nom"), nullptr), "NSInvalidArgumentException");
    EXPECT_EQ(leve(champ, NSValueBinding, modele, nullptr, nullptr), "NSInvalidArgumentException");
    EXPECT_EQ(leve(champ, NSValueBinding, modele, text(u"nom"),
                   option(NSValueTransformerNameBindingOption, text(u"inconnu"))),
              "NSInvalidArgumentException");
    EXPECT_EQ(leve(champ, NSValueBinding, modele, text(u"inconnue"), nullptr), "NSUndefinedKeyException");
    EXPECT_EQ(leve(champ, text(u"inconnue"), modele, text(u"nom"), nullptr), "NSUndefinedKeyException");
    EXPECT_EQ(infoForBinding(champ, NSValueBinding), nullptr);
    EXPECT_EQ(infoForBinding(champ, text(u"inconnue")), nullptr);
    modele->setNom(text(u"z"));
    EXPECT_EQ(champ->stringValue()->utf8(), "");
    unbind(champ, NSValueBinding);
    unbind(nullptr, nullptr);
    setBoundValue(champ, NSValueBinding, ShowAfterwards::modelValue);
}

TEST_F(BindingTest, BindingAnewReplacesAndIsReadBack) {
    auto champ = make<NSTextField>();
    auto second = make<Reglage>();
    second->setNom(text(u"second"));
    lie(champ, NSValueBinding, modele, u"nom");
    const Ref<NSDictionary> options = option(NSNullPlaceholderBindingOption, text(u"-"));
    lie(champ, NSValueBinding, second, u"nom", options);
    EXPECT_EQ(champ->stringValue()->utf8(), "second");
    modele->setNom(text(u"plus rien"));
    EXPECT_EQ(champ->stringValue()->utf8(), "second");
    const Ref<NSDictionary> info = infoForBinding(champ, NSValueBinding);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->objectForKey(NSObservedObjectKey), second.get());
    EXPECT_EQ(described(info->objectForKey(NSObservedKeyPathKey)), "nom");
    EXPECT_EQ(info->objectForKey(NSOptionsKey), options.get());
    const Ref<NSArray> noms = exposedBindings(champ);
    EXPECT_EQ(textes::shown(noms), "|editable|enabled|hidden|toolTip|value|");
}

TEST_F(BindingTest, AnObserverMayUnbindWhileItIsShown) {
    auto champ = make<NSTextField>();
    // The setter of one binding ends the other, in the middle of the model's notice.
    class Bascule : public NSObject {
    public:
        static void describe(ClassDescription<Bascule>& c) { c.key<&Bascule::lu, &Bascule::setLu>("lu"); }
        NSObject* champ = nullptr;
        int fois = 0;
        NSString* lu() const { return nullptr; }
        void setLu(NSString*) {
            ++fois;
            if (fois == 2) {
                unbind(champ, NSValueBinding);
                unbind(this, u"lu"_ns);
            }
        }
    };
    auto bascule = make<Bascule>();
    bascule->champ = champ;
    bind_toObject_withKeyPath_options(bascule, text(u"lu"), modele, text(u"nom"), nullptr);
    lie(champ, NSValueBinding, modele, u"nom");
    modele->setNom(text(u"un"));
    modele->setNom(text(u"deux"));
    EXPECT_EQ(bascule->fois, 2);
    EXPECT_EQ(champ->stringValue()->utf8(), "radio");
}
