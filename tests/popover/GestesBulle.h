#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>

// What a person's gestures do to a balloon in each of its states: told once, and played on virtual time as well as with
// a real pointer on a real display.

namespace libvue::test {

/// A person's hand on one of the two.
class Main {
public:
    virtual ~Main() = default;
    virtual void va(NSPoint ecran) = 0; ///< further, while a button is down
    virtual void appuie(NSPoint ecran, int bouton) = 0;
    virtual void relache(int bouton) = 0;
    virtual void molette(NSPoint ecran) = 0;
    virtual void touche(char16_t c) = 0;
    /// The window has the keys, and the desktop knows.
    virtual void active(NSWindow* w) = 0;
    /// The window is on the screen, where a pointer finds it.
    virtual void voit(NSWindow* w) = 0;
    /// Runs the application until that is so; whether it came.
    virtual bool attends(const std::function<bool()>& vrai) = 0;
};

enum class Etat { ouverte, detachee, enFermeture, parentReduit, detacheeParentReduit };

/// Gestures are pairs. The first letter says where: P the parent, B the balloon's content, M its margin, O a window
/// that is no relation; the second what: g, d, m a press of the left, right, other button, t a pull by some points, r
/// the release, w the wheel, e Escape, x a letter.
struct Geste {
    Etat etat;
    const char* quoi;
    const char* gestes;
    /// What becomes of the balloon: = nothing, A armed, F fades, D free and there, X free and put away.
    char issue;
    /// Whose views heard of it, in order.
    const char* entendu;
};

inline constexpr Geste gestesBulle[] = {
    {Etat::ouverte, "a left click in the parent", "PgPr", 'F', "P"},
    {Etat::ouverte, "another click in the parent", "PmPr", 'F', "P"},
    {Etat::ouverte, "a right click in the parent", "PdPr", 'F', "P"},
    {Etat::ouverte, "a left pull in the parent disarms, its release means nothing", "PgPtPr", '=', "P"},
    {Etat::ouverte, "a right pull does not disarm", "PdPtPr", 'F', "P"},
    {Etat::ouverte, "a wheel in the parent", "Pw", '=', "P"},
    {Etat::ouverte, "armed, a wheel in the parent", "PdPw", 'A', "P"},
    {Etat::ouverte, "armed, a wheel over the balloon is swallowed", "PdBw", 'A', "P"},
    {Etat::ouverte, "armed, a letter", "PgPx", 'A', "PB"},
    {Etat::ouverte, "armed, Escape", "PgPe", 'F', "P"},
    {Etat::ouverte, "Escape in the parent", "Pe", 'F', ""},
    {Etat::ouverte, "a letter in the parent goes to the balloon", "Px", '=', "B"},
    {Etat::ouverte, "a click in the balloon", "BgBr", '=', "B"},
    {Etat::ouverte, "a wheel in the balloon", "Bw", '=', "B"},
    {Etat::ouverte, "a wheel on its margin goes nowhere", "Mw", '=', ""},
    {Etat::ouverte, "a pull at its margin takes it off", "MgMtMr", 'D', ""},
    {Etat::ouverte, "a right pull does not", "MdMtMr", '=', ""},
    {Etat::ouverte, "Escape in the balloon", "Be", 'F', ""},
    {Etat::ouverte, "a click elsewhere", "OgOr", '=', "O"},
    {Etat::ouverte, "a pull elsewhere", "OgOtOr", '=', "O"},
    {Etat::ouverte, "a wheel elsewhere", "Ow", '=', "O"},
    {Etat::ouverte, "keys elsewhere", "OxOe", '=', "O"},
    {Etat::detachee, "a click in the former parent", "PgPr", 'D', "P"},
    {Etat::detachee, "a wheel there", "Pw", 'D', "P"},
    {Etat::detachee, "a letter there goes to the balloon still", "Px", 'D', "B"},
    {Etat::detachee, "Escape there", "Pe", 'F', ""},
    {Etat::detachee, "a click elsewhere makes that one the main window", "OgOr", 'X', "O"},
    {Etat::detachee, "a wheel elsewhere", "Ow", 'D', "O"},
    {Etat::enFermeture, "a click in the parent", "PgPr", 'F', "P"},
    {Etat::enFermeture, "a click in the balloon", "BgBr", 'F', "B"},
    {Etat::enFermeture, "Escape", "Pe", 'F', ""},
    {Etat::enFermeture, "a letter", "Px", 'F', "B"},
    {Etat::enFermeture, "a wheel in the balloon", "Bw", 'F', "B"},
    {Etat::parentReduit, "closes it", "", 'F', ""},
    {Etat::parentReduit, "a click elsewhere", "OgOr", 'F', "O"},
    {Etat::detacheeParentReduit, "puts it away", "", 'X', ""},
};

/// Notes which window's view hears something, and takes everything but Escape.
class VueTemoin : public NSView {
public:
    static void describe(ClassDescription<VueTemoin, NSView>&) {}
    VueTemoin(const NSRect& frame, std::string& entendu, char nom, BOOL clavier)
        : NSView(frame), entendu_(entendu), nom_(nom), clavier_(clavier) {}
    BOOL acceptsFirstResponder() override { return clavier_; }
    BOOL acceptsFirstMouse(NSEvent*) override { return YES; }
    void mouseDown(NSEvent*) override { note(); }
    void mouseDragged(NSEvent*) override { note(); }
    void mouseUp(NSEvent*) override { note(); }
    void rightMouseDown(NSEvent*) override { note(); }
    void otherMouseDown(NSEvent*) override { note(); }
    void scrollWheel(NSEvent*) override { note(); }
    void keyDown(NSEvent* e) override {
        if (e->characters()->length() > 0 && e->characters()->characterAtIndex(0) == NSEscapeCharacter)
            NSView::keyDown(e);
        else
            note();
    }

private:
    void note() {
        if (entendu_.empty() || entendu_.back() != nom_) entendu_ += nom_;
    }
    std::string& entendu_;
    char nom_;
    BOOL clavier_;
};

/// The windows that the gestures are played on.
class SceneBulle {
public:
    explicit SceneBulle(Main& main) : main_(main) {
        autre_ = fenetre(u"autre"_ns, {{900, 150}, {240, 200}}, 'O', YES);
        parent_ = fenetre(u"parent"_ns, {{300, 200}, {500, 320}}, 'P', NO);
        ancre_ = make<NSView>(NSMakeRect(210, 120, 80, 20));
        parent_->contentView()->addSubview(ancre_);
    }
    ~SceneBulle() {
        parent_->close();
        autre_->close();
    }
    SceneBulle(const SceneBulle&) = delete;
    SceneBulle& operator=(const SceneBulle&) = delete;

    void joue(const Geste& g) {
        SCOPED_TRACE(testing::Message() << g.quoi << " (" << g.gestes << ", state " << static_cast<int>(g.etat) << ")");
        ouvre();
        metsEn(g.etat);
        entendu_.clear();
        for (const char* c = g.gestes; *c; c += 2)
            fais(c[0], c[1]);
        EXPECT_TRUE(main_.attends([&] { return issue() == g.issue; })) << "it is " << issue();
        // Under a slow hand the fade may have come to its end.
        if (g.etat != Etat::enFermeture || bulle_->isShown()) {
            EXPECT_EQ(entendu_, g.entendu);
        }
        if (NSEvent::pressedMouseButtons()) {
            main_.va(place('P', 48)); // so that the release means nothing
            main_.relache(bouton_);
        }
        panneau_->close();
        bulle_ = nullptr;
        panneau_ = nullptr;
        if (parent_->isMiniaturized()) parent_->deminiaturize(nullptr);
    }

private:
    Ref<NSWindow> fenetre(NSString* titre, const NSRect& contenu, char nom, BOOL clavier) {
        Ref<NSWindow> w = make<NSWindow>(contenu, NSTitledWindowMask | NSClosableWindowMask |
                                                      NSMiniaturizableWindowMask | NSResizableWindowMask);
        w->setTitle(titre);
        const Ref<VueTemoin> vue = make<VueTemoin>(w->contentView()->bounds(), entendu_, nom, clavier);
        w->setContentView(vue);
        if (clavier) w->makeFirstResponder(vue);
        w->makeKeyAndOrderFront(nullptr);
        main_.voit(w);
        return w;
    }

    void ouvre() {
        main_.active(parent_);
        const Ref<NSViewController> c = make<NSViewController>();
        c->setView(make<VueTemoin>(NSMakeRect(0, 0, 160, 80), entendu_, 'B', NO));
        bulle_ = make<KCPopover>();
        bulle_->setContentViewController(c);
        panneau_ = bulle_->panel();
        panneau_->setTitle(u"bulle"_ns);
        const Ref<VueTemoin> clavier = make<VueTemoin>(NSZeroRect, entendu_, 'B', YES);
        panneau_->contentView()->addSubview(clavier);
        panneau_->makeFirstResponder(clavier);
        bulle_->showRelativeToRect_ofView_preferredEdge(ancre_->bounds(), ancre_, NSMaxYEdge);
        main_.voit(panneau_);
    }

    void metsEn(Etat etat) {
        if (etat == Etat::detachee || etat == Etat::detacheeParentReduit) {
            bulle_->decrochePopover();
            main_.voit(panneau_);
        }
        if (etat == Etat::enFermeture) bulle_->close();
        if (etat == Etat::parentReduit || etat == Etat::detacheeParentReduit) parent_->miniaturize(nullptr);
    }

    [[nodiscard]] char issue() const {
        if (bulle_->fermetureEnCours() || (bulle_->attachay() && !bulle_->isShown())) return 'F';
        if (bulle_->attachay()) return as<MaFenetre>(panneau_)->pretAFermer() ? 'A' : '=';
        return bulle_->isShown() ? 'D' : 'X';
    }

    [[nodiscard]] NSPoint place(char ou, CGFloat plusLoin) const {
        const NSRect f = panneau_->frame();
        switch (ou) {
        case 'P':
            return parent_->convertBaseToScreen({40 + plusLoin, 40 + plusLoin});
        case 'O':
            return autre_->convertBaseToScreen({60 + plusLoin, 60 + plusLoin});
        case 'M':
            // Over the parent, between the outline and the content.
            return {NSMinX(f) + 14 + plusLoin, NSMaxY(f) - 13 + plusLoin};
        default: {
            const NSView* contenu = bulle_->contentViewController()->view();
            return panneau_->convertBaseToScreen(contenu->convertPoint_toView({80, 40}, nullptr));
        }
        }
    }

    void fais(char ou, char quoi) {
        constexpr const char* boutons = "gdm";
        const char* bouton = std::char_traits<char>::find(boutons, 3, quoi);
        if (bouton) {
            depart_ = place(ou, 0);
            bouton_ = static_cast<int>(bouton - boutons);
            main_.appuie(depart_, bouton_);
        } else if (quoi == 't')
            main_.va({depart_.x + 24, depart_.y + 24});
        else if (quoi == 'r')
            main_.relache(bouton_);
        else if (quoi == 'w')
            main_.molette(place(ou, 0));
        else {
            main_.active(ou == 'P' ? parent_.get() : ou == 'O' ? autre_.get() : panneau_.get());
            main_.touche(quoi == 'e' ? char16_t{NSEscapeCharacter} : u'x');
        }
    }

    Main& main_;
    std::string entendu_;
    Ref<NSWindow> autre_, parent_, panneau_;
    Ref<NSView> ancre_;
    Ref<KCPopover> bulle_;
    NSPoint depart_;
    int bouton_ = 0;
};

} // namespace libvue::test
