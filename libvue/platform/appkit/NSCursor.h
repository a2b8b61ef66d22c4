#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The look of the pointer.
class LIBVUE_API NSCursor : public NSObject {
public:
    static void describe(ClassDescription<NSCursor>& c);
    ~NSCursor() override;

    // The desktop's own cursors.

    [[nodiscard]] static NSCursor* arrowCursor();
    [[nodiscard]] static NSCursor* IBeamCursor();
    [[nodiscard]] static NSCursor* crosshairCursor();
    [[nodiscard]] static NSCursor* closedHandCursor();
    [[nodiscard]] static NSCursor* openHandCursor();
    [[nodiscard]] static NSCursor* pointingHandCursor();
    [[nodiscard]] static NSCursor* resizeLeftRightCursor();
    [[nodiscard]] static NSCursor* resizeUpDownCursor();
    [[nodiscard]] static NSCursor* operationNotAllowedCursor();
    [[nodiscard]] static NSCursor* dragCopyCursor();
    [[nodiscard]] static NSCursor* waitCursor();

    /// The one that shows now.
    [[nodiscard]] static NSCursor* currentCursor();
    /// Shows it until another is set.
    void set();
    /// Shows it and keeps the one before on a stack.
    void push();
    void pop() { popCursor(); }
    /// Back to the one before the last push; without a push, nothing.
    static void popCursor();
    /// Calls count: each hide wants its unhide.
    static void hide();
    static void unhide();

    /// The number by which a window server knows it.
    [[nodiscard]] int nativeShape_() const noexcept { return shape_; }
    /// Says in which window the pointer is: what is set from now on shows there.
    static void pointerIsIn_(NSWindow* window);

private:
    explicit NSCursor(int shape) : shape_(shape) {}
    static NSCursor* shared(int shape);

    int shape_;
};

} // namespace libvue
