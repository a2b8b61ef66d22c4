#include <appkit/WindowFixture.h>

#include <libvue/platform/appkit/NSViewController.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class CountingController : public NSViewController {
public:
    static void describe(ClassDescription<CountingController, NSViewController>&) {}
    void viewDidLoad() override { ++loads; }
    int loads = 0;
};

using NSViewControllerTest = WindowFixture;

TEST_F(NSViewControllerTest, AViewControllerMakesItsViewOnFirstUse) {
    const Ref<CountingController> controller = make<CountingController>();
    EXPECT_EQ(controller->loads, 0);
    window->setContentViewController(controller);
    EXPECT_EQ(window->contentView(), controller->view());
    EXPECT_EQ(controller->loads, 1);
    EXPECT_EQ(controller->view()->nextResponder(), window->frameView_()); // it puts itself into no chain
}

} // namespace
