#pragma once

#include <string>

#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopover.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSValue.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>
#include <libvue/popover/VueFirstResponder.h>
#include <libvue/popover/VuePopover.h>

namespace libvue::test {

/// A delegate that logs what it is told, and decides whether the balloon may come off.
class DeleguePopover : public NSObject {
public:
    static void describe(ClassDescription<DeleguePopover>& c) {
        c.answers<&DeleguePopover::detachable>(op::popoverEstDetachable);
        c.answers<&DeleguePopover::ferme>(op::popoverDidClose);
    }
    explicit DeleguePopover(Log& log) : log_(log) {}
    BOOL permet = YES;
    Ref<NSNotification> dernier;

    BOOL detachable(NSObject*) { return permet; }
    void ferme(NSNotification* n) {
        log_.push_back("did close " + n->name()->utf8());
        dernier = n;
    }

private:
    Log& log_;
};

/// The delegate of a system popover, or of a wrapper: logs what it is told, and answers what it is asked.
class DelegueSysteme : public NSObject {
public:
    static void describe(ClassDescription<DelegueSysteme>& c) {
        c.answers<&DelegueSysteme::shouldClose>(op::popoverShouldClose);
        c.answers<&DelegueSysteme::detachableWindow>(op::detachableWindowForPopover);
        for (const auto* dit : {&op::popoverWillShow, &op::popoverDidShow, &op::popoverWillClose, &op::popoverDidClose})
            c.answers<&DelegueSysteme::note>(*dit);
    }
    explicit DelegueSysteme(Log& log) : log_(log) {}
    BOOL permet = YES;
    Ref<NSWindow> fenetre;
    Weak<NSObject> de;   ///< who spoke last
    bool raison = false; ///< whether it told why

    BOOL shouldClose(NSObject* p) {
        de = p;
        log_.emplace_back("should close");
        return permet;
    }
    NSWindow* detachableWindow(NSObject* p) {
        de = p;
        return fenetre;
    }
    void note(NSNotification* n) {
        de = n->object();
        std::string quoi = n->name()->utf8();
        const NSDictionary* info = n->userInfo();
        const auto* pourquoi = info ? info->get<NSString>(NSPopoverCloseReasonKey.get()) : nullptr;
        raison = pourquoi != nullptr;
        if (raison && pourquoi->isEqualToString(NSPopoverCloseReasonDetachToWindow)) quoi += " to window";
        const auto* p = as<NSPopover>(n->object());
        log_.push_back(quoi + (p && p->isShown() ? " shown" : ""));
    }

private:
    Log& log_;
};

inline constexpr const char *kVaMontrer = "NSPopoverWillShowNotification shown",
                            *kMontre = "NSPopoverDidShowNotification shown",
                            *kVaFermer = "NSPopoverWillCloseNotification shown",
                            *kFerme = "NSPopoverDidCloseNotification";

/// An anchor window with an anchor view, and a balloon on it.
struct PopoverFixture : AppFixture {
    static constexpr NSRect kContenu{{0, 0}, {120, 60}};
    static constexpr NSTimeInterval kFondu = 0.6; ///< longer than a fade-out

    Ref<NSWindow> parent;
    Ref<LogView> ancre;

    void SetUp() override {
        parent = windowAt({{400, 300}, {400, 300}});
        ancre = viewIn(parent, {{150, 100}, {80, 20}}, "anchor");
        show(parent);
        taken();
    }
    void TearDown() override {
        ancre = nullptr;
        if (parent) parent->close();
        pass(kFondu);
        parent = nullptr;
        AppFixture::TearDown();
    }

    [[nodiscard]] static Ref<NSViewController> controleur(const NSRect& contenu = kContenu) {
        Ref<NSViewController> c = make<NSViewController>();
        c->setView(make<NSView>(contenu));
        return c;
    }
    [[nodiscard]] static Ref<KCPopover> bulle() {
        Ref<KCPopover> p = make<KCPopover>();
        p->setContentViewController(controleur());
        return p;
    }
    /// The user information of an announced change of size.
    [[nodiscard]] static Ref<NSDictionary> taille(NSSize s) {
        const Ref<NSValue> v = NSValue::valueWithSize(s);
        return NSDictionary::dictionaryWithObject_forKey(v, u"size"_ns);
    }
    void montre(KCPopover* p, NSUInteger edge = NSMaxYEdge) const {
        p->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, edge);
        drain();
    }
    /// Without anything falling due in between, which a fade-out would need.
    static void ferme(KCPopover* p) {
        p->close();
        pass(kFondu);
    }
    /// A drag of the balloon by its background, from just inside its outline.
    void traine(KCPopover* p, CGFloat dx, CGFloat dy) const {
        const NSRect f = p->panel()->frame();
        const NSPoint depart{f.origin.x + 14, NSMaxY(f) - 14};
        windows().moveMouse(depart);
        windows().press();
        windows().moveMouse({depart.x + dx, depart.y + dy});
        windows().release();
        drain();
    }
};

} // namespace libvue::test
