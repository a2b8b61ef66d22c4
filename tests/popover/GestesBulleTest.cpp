#include <popover/GestesBulle.h>

#include <popover/PopoverFixture.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class MainVirtuelle : public Main {
public:
    explicit MainVirtuelle(backend::MemoryWindowServer& serveur) : serveur_(serveur) {}
    void va(NSPoint ecran) override {
        serveur_.moveMouse(ecran);
        NSApp()->drain_();
    }
    void appuie(NSPoint ecran, int bouton) override {
        serveur_.moveMouse(ecran);
        serveur_.press(bouton);
        NSApp()->drain_();
    }
    void relache(int bouton) override {
        serveur_.release(bouton);
        NSApp()->drain_();
    }
    void molette(NSPoint ecran) override {
        serveur_.moveMouse(ecran);
        serveur_.wheel(0, 1);
        NSApp()->drain_();
    }
    void touche(char16_t c) override {
        serveur_.key(c);
        NSApp()->drain_();
    }
    void active(NSWindow* w) override {
        w->makeKeyAndOrderFront(nullptr);
        NSApp()->drain_();
    }
    void voit(NSWindow*) override { NSApp()->drain_(); }
    bool attends(const std::function<bool()>& vrai) override {
        NSApp()->drain_();
        return vrai();
    }

private:
    backend::MemoryWindowServer& serveur_;
};

struct GestesBulleTest : AppFixture {};

TEST_F(GestesBulleTest, EachGestureInEachStateDoesWhatTheDisplayTestsSee) {
    MainVirtuelle main(windows());
    {
        SceneBulle scene(main);
        for (const Geste& g : gestesBulle)
            scene.joue(g);
    }
    pass(1);
}

} // namespace
