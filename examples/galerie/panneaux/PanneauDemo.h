#pragma once

#include <functional>

#include <Actions.h>
#include <libvue/panels/KCPanneauGlissant.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

/// A panel of one tint, with a title in its upper left corner, that says when it is on display.
class PanneauDemo : public KCPanneauGlissant {
public:
    static void describe(ClassDescription<PanneauDemo, KCPanneauGlissant>&) {}
    using Dit = std::function<void(NSString* nom)>;
    /// `fond` null: a frame alone, for a panel in a panel.
    PanneauDemo(NSString* nom, NSColor* fond, Dit dit);

    void panneauEstAffichay() override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& dirtyRect) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    Ref<NSString> nom_;
    Ref<NSColor> fond_;
    Dit dit_;
};

/// Settings of a letter, with two panels in it, one of them behind a plain view; and a list of texts.
[[nodiscard]] Ref<PanneauDemo> panneauReglages(const PanneauDemo::Dit& dit);
[[nodiscard]] Ref<PanneauDemo> panneauTextes(PanneauDemo::Dit dit);

} // namespace galerie
