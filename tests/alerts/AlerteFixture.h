#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <appkit/AppFixture.h>
#include <gmock/gmock.h>

#include <libvue/alerts/KAlerte.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue::test {

inline constexpr char16_t kRetour = u'\r', kEchap = u'\u001B', kTab = u'\t';

/// Remembers the answers that it is told.
struct Receveur : KDialogue::KAlerteReceveur {
    using KAlerteReceveur::KAlerteReceveur;
    mutable std::vector<int> reponses, ids;
    mutable std::function<void()> alors; ///< at each answer
    void TraiteReponseAlerte(int& idMessage, int reponse) const override {
        ids.push_back(idMessage);
        reponses.push_back(reponse);
        if (alors) alors();
    }
};

/// Alerts in memory, answered by the keys and the mouse.
struct AlerteFixture : AppFixture {
    Ref<NSWindow> fenetre;

    void SetUp() override {
        fenetre = windowAt({{200, 200}, {700, 500}});
        show(fenetre);
    }
    void TearDown() override {
        fenetre = nullptr;
        AppFixture::TearDown();
    }

    static void auTourSuivant(std::function<void()> geste) { NSRunLoop::mainRunLoop()->performBlock(std::move(geste)); }
    /// What a person does once a modal alert is up.
    static void quandModale(std::function<void(NSWindow*)> geste) {
        auTourSuivant([geste = std::move(geste)] { geste(NSApp()->modalWindow()); });
    }
    void modaleRecoit(char16_t c) const {
        quandModale([this, c](NSWindow*) { windows().key(c); });
    }
    /// The buttons of an alert but for its box, from the right; those below each other from the top.
    static std::vector<Ref<NSButton>> boutons(NSWindow* alerte) {
        std::vector<Ref<NSButton>> tous;
        for (NSView* v : alerte->contentView()->subviews())
            if (auto* b = as<NSButton>(v); b && !b->buttonCell()->isCheckBox()) tous.emplace_back(b);
        std::ranges::stable_sort(tous, [](const auto& a, const auto& b) {
            return a->frame().origin.y != b->frame().origin.y ? a->frame().origin.y < b->frame().origin.y
                                                              : a->frame().origin.x > b->frame().origin.x;
        });
        return tous;
    }
    /// Their titles, with a line between them.
    [[nodiscard]] static std::string titres(NSWindow* alerte) {
        std::string t;
        for (const auto& b : boutons(alerte))
            t += b->title()->utf8() + "|";
        return t.empty() ? t : t.substr(0, t.size() - 1);
    }
    static Ref<NSButton> boite(NSWindow* alerte) {
        for (NSView* v : alerte->contentView()->subviews())
            if (auto* b = as<NSButton>(v); b && b->buttonCell()->isCheckBox()) return b;
        return nullptr;
    }
    /// What assistive tools call an alert.
    [[nodiscard]] static std::string nomDe(NSWindow* alerte) {
        return alerte->contentView()->accessibilityDescription().label->utf8();
    }
    /// A click in the middle of it, posted alone.
    void clique(NSView* v) const {
        const NSRect r = v->convertRect_toView(v->bounds(), nullptr);
        windows().click(v->window()->convertBaseToScreen({NSMidX(r), NSMidY(r)}));
    }
    void touche(char16_t c) const {
        windows().key(c);
        drain();
    }
    /// On the sheet that is up.
    void repond(char16_t c, bool coche = false) const {
        drain();
        if (coche) clique(boite(fenetre->attachedSheet()));
        drain();
        touche(c);
    }
};

} // namespace libvue::test
