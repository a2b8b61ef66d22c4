#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

class Scene;

/// Lies over the scene and lets every click through: the ring round the chosen view, and the gaps of its container. The
/// points that a box gets after a text field have their own colour.
class Marques : public NSView {
public:
    static void describe(ClassDescription<Marques, NSView>&) {}
    explicit Marques(Scene& scene) : scene_(scene) {}

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] NSView* hitTest(NSPoint) override { return nullptr; }
    void drawRect(const NSRect& r) override;

private:
    void dessineEcarts() const;

    Scene& scene_; ///< its superview
};

} // namespace galerie
