#pragma once

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/layout/KCLayoutView.h>

namespace galerie {

using namespace libvue;

class Scene;

/// A layout view in a coloured frame with its name on top. The frame is a plain view, and always as large as the layout
/// view inside needs it to be; so between two layout views there stands a plain one.
class Cadre : public NSView {
public:
    static void describe(ClassDescription<Cadre, NSView>&) {}
    Cadre(NSString* nom, std::int32_t direction, CGFloat espacement);
    ~Cadre() override;

    [[nodiscard]] NSString* nom() const noexcept { return nom_; }
    void setNom(NSString* nom);
    [[nodiscard]] KCLayoutView* disposition() const noexcept { return disposition_; }
    [[nodiscard]] KCLayoutLineaire* lineaire() const noexcept { return lineaire_; }
    /// The nearest frame around the view, the view itself not counted; null where there is none.
    [[nodiscard]] static Cadre* autourDe(const NSView* vue);
    /// 0 for the outermost one.
    [[nodiscard]] NSUInteger profondeur() const;
    [[nodiscard]] Scene* scene() const;
    /// Asks for a pass, after a setter that asks for none.
    void disposeANouveau();

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void adapte();

    Ref<NSString> nom_;
    Ref<KCLayoutLineaire> lineaire_;
    Ref<KCLayoutView> disposition_;
};

} // namespace galerie
