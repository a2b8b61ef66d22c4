#pragma once

#include <libvue/charts/KCHistogramme.h>

namespace galerie {

using namespace libvue;

/// A histogram that the keyboard reaches: the arrows go from band to band, Home and End to the first and the last, and
/// each sends the action as a click does. Its ring is drawn by the superview, so that the names lie within it too.
class HistogrammeClavier : public KCHistogramme {
public:
    static void describe(ClassDescription<HistogrammeClavier, KCHistogramme>&) {}
    using KCHistogramme::KCHistogramme;

    /// The bands that have data, drawn or not.
    [[nodiscard]] NSInteger bandesAvecDonnees() const;
    /// The height that all of it takes, labels included.
    [[nodiscard]] CGFloat hauteurNaturelle() const;

    /// Whether keys come here: the ring is to be seen.
    [[nodiscard]] BOOL aLeClavier() const;
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void drawRect(const NSRect& r) override;

private:
    void choisis(NSInteger bande);
};

/// The names of the bands, at the left of a histogram and as high as it.
class NomsDeBandes : public NSView {
public:
    static void describe(ClassDescription<NomsDeBandes, NSView>&) {}
    explicit NomsDeBandes(KCHistogramme* histogramme);

    /// -1 for none.
    void setChoisie(NSInteger bande);
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;

private:
    Ref<KCHistogramme> histogramme_;
    NSInteger choisie_ = -1;
};

} // namespace galerie
