// The smallest window of ours: says when it first draws, then stays idle until it is ended.
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

#include <cstdio>

using namespace libvue;

namespace {

class Fond : public NSView {
public:
    using NSView::NSView;

    void drawRect(const NSRect& sale) override {
        NSColor::whiteColor()->set();
        NSRectFill(sale);
        if (!annonce_) {
            annonce_ = true;
            std::puts("peint");
            std::fflush(stdout);
        }
    }

private:
    bool annonce_ = false;
};

} // namespace

int main() {
    const Ref<NSWindow> fenetre =
        make<NSWindow>(NSMakeRect(100, 100, 320, 200), NSTitledWindowMask | NSClosableWindowMask);
    fenetre->setTitle(u"ours"_ns);
    fenetre->setContentView(make<Fond>(NSMakeRect(0, 0, 320, 200)));
    fenetre->makeKeyAndOrderFront(nullptr);
    NSApp()->run();
}
