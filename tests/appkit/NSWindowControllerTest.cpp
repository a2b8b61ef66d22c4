#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSWindowController.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class LoadingController : public NSWindowController {
public:
    static void describe(ClassDescription<LoadingController, NSWindowController>&) {}
    void loadWindow() override {
        ++loads;
        setWindow(make<NSWindow>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask));
    }
    int loads = 0;
};

using NSWindowControllerTest = AppFixture;

TEST_F(NSWindowControllerTest, AControllerLoadsItsWindowOnceAndStandsBehindIt) {
    Ref<LoadingController> controller = make<LoadingController>();
    controller->showWindow(nullptr);
    const Ref<NSWindow> w = controller->window();
    EXPECT_EQ(controller->loads, 1);
    EXPECT_TRUE(w->isKeyWindow());
    EXPECT_EQ(w->nextResponder(), controller.get());
    controller->close();
    EXPECT_FALSE(w->isVisible());
    controller = nullptr;
    EXPECT_EQ(w->windowController(), nullptr);
    EXPECT_EQ(w->nextResponder(), nullptr);
}

} // namespace
