// A window with a label and a button; the button changes the label.
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSWindow.h>

using namespace libvue;

class Bonjour : public NSObject {
public:
    static void describe(ClassDescription<Bonjour>& c) { c.answers<&Bonjour::salue>("salue:"); }

    Bonjour() {
        etiquette_->setFrame(NSMakeRect(20, 60, 240, 20));
        bouton_->setTitle(u"Saluer"_ns);
        bouton_->setTarget(this);
        bouton_->setAction(sel("salue:"));
        fenetre_->setTitle(u"Bonjour"_ns);
        fenetre_->contentView()->addSubview(etiquette_);
        fenetre_->contentView()->addSubview(bouton_);
        fenetre_->makeKeyAndOrderFront(nullptr);
    }

private:
    void salue(NSObject*) { etiquette_->setStringValue(u"Bonjour, tout le monde !"_ns); }

    Ref<NSWindow> fenetre_ = make<NSWindow>(NSMakeRect(200, 200, 280, 100), NSTitledWindowMask | NSClosableWindowMask);
    Ref<NSTextField> etiquette_ = NSTextField::labelWithString(u"Comment allez-vous ?"_ns);
    Ref<NSButton> bouton_ = make<NSButton>(NSMakeRect(164, 14, 96, 28));
};

int main() {
    const Ref<Bonjour> bonjour = make<Bonjour>();
    NSApp()->run();
}
