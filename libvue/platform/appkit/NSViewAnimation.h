#pragma once

#include <libvue/platform/appkit/NSAnimation.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// The target of an entry: an NSView or an NSWindow.
inline constexpr ConstantString NSViewAnimationTargetKey{u"NSViewAnimationTargetKey"};
/// NSValues of rectangles; an absent one is the target's frame when the animation starts.
inline constexpr ConstantString NSViewAnimationStartFrameKey{u"NSViewAnimationStartFrameKey"};
inline constexpr ConstantString NSViewAnimationEndFrameKey{u"NSViewAnimationEndFrameKey"};
/// One of the two effects below, or absent.
inline constexpr ConstantString NSViewAnimationEffectKey{u"NSViewAnimationEffectKey"};
inline constexpr ConstantString NSViewAnimationFadeInEffect{u"NSViewAnimationFadeInEffect"};
inline constexpr ConstantString NSViewAnimationFadeOutEffect{u"NSViewAnimationFadeOutEffect"};

/// Moves, resizes and fades views and windows. Each entry of its list is a dictionary of the keys above; the targets
/// are kept.
///
/// What fades in is shown (a window: ordered to the front) with the first frame. What has faded out is hidden (a
/// window: ordered out) after the delegate has heard of the end, and gets its alpha back then, so that it can be shown
/// again.
class LIBVUE_API NSViewAnimation : public NSAnimation {
public:
    static void describe(ClassDescription<NSViewAnimation, NSAnimation>& c);
    NSViewAnimation() = default;
    explicit NSViewAnimation(NSArray* viewAnimations);
    ~NSViewAnimation() override;

    [[nodiscard]] NSArray* viewAnimations() const noexcept;
    /// Copied; takes effect at the next start.
    void setViewAnimations(NSArray* viewAnimations);

    /// Puts the targets where they belong at that progress.
    void setCurrentProgress(NSAnimationProgress progress) override;

protected:
    void animationBegins() override;
    void animationEnds() override;
    void animationIsOver() override;

private:
    enum class Effect : unsigned char { none, fadeIn, fadeOut };
    struct Target {
        Ref<NSView> view;
        Ref<NSWindow> window;
        NSRect from, to;
        CGFloat alpha = 1; ///< at the start of a fade-out, at the end of a fade-in
        bool moves = false;
        Effect effect = Effect::none;
    };
    void read();
    static void show(const Target& t, double value, bool atEnd);

    Ref<NSArray> entries_;
    std::vector<Target> targets_; ///< while it runs
    bool ended_ = false;
};

} // namespace libvue
