#pragma once

#include <vector>

#include <libvue/controls/KVueTranslucide.h>
#include <libvue/platform/appkit/NSPanel.h>

namespace galerie {

using namespace libvue;

/// A sheet of colours with the notices on it as they look, each with its caption, in two columns.
class Apercus : public NSView {
public:
    static void describe(ClassDescription<Apercus, NSView>&) {}
    Apercus();

    void ajoute(NSString* legende, NSString* titre, NSString* texte, NSImage* icone);
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& dirtyRect) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    /// A notice is laid out by the window that it is the content of: each has one, which is never shown.
    struct Avis {
        Ref<NSString> legende;
        Ref<NSPanel> panneau;
        Ref<KVueTranslucide> vue;
    };
    std::vector<Avis> avis_;
};

/// A tick in a circle, a loupe, and a sheet of paper, as the icons of notices.
[[nodiscard]] Ref<NSImage> iconeCoche();
[[nodiscard]] Ref<NSImage> iconeLoupe();
[[nodiscard]] Ref<NSImage> iconeFeuille();

} // namespace galerie
