#pragma once

#include <map>

#include <fenetres/EcranFixture.h>

#include <popover/GestesBulle.h>

namespace libvue::test {

/// With a real pointer. After each gesture the application runs until it has seen what came of it.
class MainReelle : public Main {
public:
    MainReelle()
        : jeton_(NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSAnyEventMask, [this](NSEvent* e) {
              ++vus_[e->type()];
              return Ref<NSEvent>(e);
          })) {
        // A test that was broken off may have left a button down, or the pointer where it is in the way.
        output("xdotool mouseup 1 mouseup 2 mouseup 3 mousemove 1270 1010");
    }
    ~MainReelle() override { NSEvent::removeMonitor(jeton_); }
    MainReelle(const MainReelle&) = delete;
    MainReelle& operator=(const MainReelle&) = delete;

    void va(NSPoint ecran) override {
        constexpr NSEventType tires[] = {NSLeftMouseDragged, NSRightMouseDragged, NSOtherMouseDragged};
        fais("mousemove " + EcranFixture::at(ecran), tires[bouton_]);
    }
    void appuie(NSPoint ecran, int bouton) override {
        constexpr NSEventType appuis[] = {NSLeftMouseDown, NSRightMouseDown, NSOtherMouseDown};
        bouton_ = bouton;
        fais("mousemove " + EcranFixture::at(ecran) + " mousedown " + numero(), appuis[bouton]);
    }
    void relache(int bouton) override {
        constexpr NSEventType relachements[] = {NSLeftMouseUp, NSRightMouseUp, NSOtherMouseUp};
        bouton_ = bouton;
        fais("mouseup " + numero(), relachements[bouton]);
    }
    void molette(NSPoint ecran) override { fais("mousemove " + EcranFixture::at(ecran) + " click 4", NSScrollWheel); }
    void touche(char16_t c) override {
        fais("key " + (c == NSEscapeCharacter ? std::string("Escape") : std::string(1, static_cast<char>(c))),
             NSKeyDown);
    }
    void active(NSWindow* w) override {
        if (!w->isKeyWindow()) w->makeKeyAndOrderFront(nullptr);
        const std::string titre = w->title()->utf8() + "\n";
        EXPECT_TRUE(attends([&] {
            if (w->isKeyWindow() && output("xdotool getwindowfocus getwindowname") == titre) return true;
            // A manager that is still at work on another window may give the focus back to that one.
            backend::Backend::current().windows->activate(w->nativeId_());
            return false;
        })) << titre
            << " never has the keys";
    }
    void voit(NSWindow* w) override {
        EXPECT_TRUE(attends([&] {
            return EcranFixture::isOnTheDesktop(w->title()->utf8()) &&
                   (w->frame().size == w->contentView()->frame().size ||
                    backend::Backend::current().windows->frameInsets(w->nativeId_()).top > 0);
        })) << "it never comes";
    }
    bool attends(const std::function<bool()>& vrai) override { return vrai() || EcranFixture::comes(vrai); }

private:
    [[nodiscard]] std::string numero() const {
        constexpr const char* numeros[] = {"1", "3", "2"};
        return numeros[bouton_];
    }
    void fais(const std::string& commande, NSEventType type) {
        const int avant = vus_[type];
        output("xdotool " + commande);
        EXPECT_TRUE(attends([&] { return vus_[type] > avant; })) << commande;
    }

    Ref<NSObject> jeton_;
    std::map<NSEventType, int> vus_;
    int bouton_ = 0;
};

} // namespace libvue::test
