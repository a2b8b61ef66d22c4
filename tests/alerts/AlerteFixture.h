#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <appkit/AppFixture.h>

#include <libvue/alerts/KAlerte.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue::test {

/// Remembers the answers that it is told.
struct Receveur : KDialogue::KAlerteReceveur {
    using KAlerteReceveur::KAlerteReceveur;
    mutable std::vector<int> reponses;
    mutable std::vector<int> ids;
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

    /// What a person does once a modal alert is up.
    static void quandModale(std::function<void(NSWindow*)> geste) {
        NSRunLoop::mainRunLoop()->performBlock([geste = std::move(geste)] { geste(NSApp()->modalWindow()); });
    }
    /// The buttons of an alert but for its box, from the right; those below each other from the top.
    static std::vector<Ref<NSButton>> boutons(NSWindow* alerte) {
        std::vector<Ref<NSButton>> tous;
        if (!alerte) return tous;
        for (NSView* v : alerte->contentView()->subviews())
            if (auto* b = as<NSButton>(v); b && !b->buttonCell()->isCheckBox()) tous.emplace_back(b);
        std::ranges::stable_sort(tous, [](const auto& a, const auto& b) {
            return a->frame().origin.y != b->frame().origin.y ? a->frame().origin.y < b->frame().origin.y
                                                              : a->frame().origin.x > b->frame().origin.x;
        });
        return tous;
    }
    static Ref<NSButton> boite(NSWindow* alerte) {
        for (NSView* v : alerte->contentView()->subviews())
            if (auto* b = as<NSButton>(v); b && b->buttonCell()->isCheckBox()) return b;
        return nullptr;
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
    [[nodiscard]] static std::vector<std::string> titres(NSWindow* alerte) {
        std::vector<std::string> t;
        for (const auto& b : boutons(alerte))
            t.push_back(b->title()->utf8());
        return t;
    }
};

inline constexpr char16_t kRetour = u'\r', kEchap = u'\u001B', kTab = u'\t';

} // namespace libvue::test
