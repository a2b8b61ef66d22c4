#pragma once

#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

using CGContextRef = NSGraphicsContext*;

/// Where drawing goes: a canvas, and the state that the platform keeps beside it (current colours, flipping).
///
/// There is one current context at a time, or none; drawing without one does nothing.
class LIBVUE_API NSGraphicsContext : public NSObject {
public:
    static void describe(ClassDescription<NSGraphicsContext>& c);
    /// Draws into a canvas that must outlive the context. A flipped one has y downward: whoever makes it has flipped
    /// the canvas. `picture` is what the canvas draws into, where that is known: it allows reading back.
    explicit NSGraphicsContext(backend::Canvas& canvas, BOOL flipped = NO,
                               std::shared_ptr<backend::Picture> picture = nullptr);
    explicit NSGraphicsContext(std::unique_ptr<backend::Canvas> canvas, BOOL flipped = NO,
                               std::shared_ptr<backend::Picture> picture = nullptr);
    ~NSGraphicsContext() override;

    /// Null where nothing is being drawn.
    [[nodiscard]] static NSGraphicsContext* currentContext() noexcept;
    /// Keeps it; null for none.
    static void setCurrentContext(NSGraphicsContext* context);
    /// False where there is no current context.
    [[nodiscard]] static BOOL currentContextDrawingToScreen();
    /// Saves the state of the current context, and which one is current.
    static void saveGraphicsState();
    /// Gives both back. Without a matching save, nothing.
    static void restoreGraphicsState();
    /// Draws into the pixels of a representation. Null for null.
    [[nodiscard]] static Ref<NSGraphicsContext> graphicsContextWithBitmapImageRep(NSBitmapImageRep* rep);
    /// The context itself where it is flipped so: contexts are their own ports. Else another one on its canvas, which
    /// it keeps. Null for null.
    [[nodiscard]] static Ref<NSGraphicsContext> graphicsContextWithGraphicsPort_flipped(CGContextRef port,
                                                                                        BOOL flipped);

    /// The state of this context alone.
    void saveState();
    void restoreState();
    /// The number of saves that wait for their restore.
    [[nodiscard]] NSUInteger savedStates() const noexcept { return saved_.size(); }

    [[nodiscard]] BOOL isFlipped() const noexcept { return state_.flipped; }
    /// Says that y runs downward from here on; the caller has flipped the transform. Part of the saved state.
    void setFlipped(BOOL flipped) noexcept { state_.flipped = flipped; }
    [[nodiscard]] BOOL isDrawingToScreen() const;
    /// What the CGContext… functions take.
    [[nodiscard]] CGContextRef graphicsPort() noexcept { return this; }
    [[nodiscard]] CGContextRef CGContext() noexcept { return this; }

    [[nodiscard]] NSCompositingOperation compositingOperation() const noexcept { return state_.operation; }
    void setCompositingOperation(NSCompositingOperation operation);
    [[nodiscard]] BOOL shouldAntialias() const noexcept { return state_.antialias; }
    void setShouldAntialias(BOOL on);
    [[nodiscard]] NSImageInterpolation imageInterpolation() const noexcept { return state_.interpolation; }
    void setImageInterpolation(NSImageInterpolation quality);
    /// Moves the origin of patterns. Part of the saved state.
    void setPatternPhase(NSPoint phase) noexcept { state_.patternPhase = phase; }
    [[nodiscard]] NSPoint patternPhase() const noexcept { return state_.patternPhase; }

    // The current colours, part of the saved state. Both are black at the start.

    void setFillColor(NSColor* color);
    void setStrokeColor(NSColor* color);

    // For the drawing operations of this library.

    [[nodiscard]] backend::Canvas& canvas() const noexcept { return *canvas_; }
    /// Null where the canvas draws into no picture that can be read.
    [[nodiscard]] const std::shared_ptr<backend::Picture>& picture() const noexcept { return picture_; }
    void fillPath(const backend::Path& path, bool evenOdd);
    void fillRects(const NSRect* rects, NSUInteger count);
    void fillRects_operation(const NSRect* rects, NSUInteger count, NSCompositingOperation operation);
    void strokePath(const backend::Path& path, const backend::Stroke& stroke);
    void strokeLine(NSPoint from, NSPoint to, const backend::Stroke& stroke);

private:
    struct Ink {
        double red = 0, green = 0, blue = 0, alpha = 1;
        Ref<NSColor> pattern; ///< only where the colour is one
    };
    struct State {
        Ink fill, stroke;
        NSPoint patternPhase;
        NSCompositingOperation operation = NSCompositeSourceOver;
        NSImageInterpolation interpolation = NSImageInterpolationDefault;
        bool antialias = true;
        bool flipped = false;
    };
    static void store(Ink& ink, NSColor* color);
    void tilePattern(NSImage* image, NSCompositingOperation operation);

    Ref<NSGraphicsContext> port_; ///< whose canvas it draws into, where it has none of its own
    std::unique_ptr<backend::Canvas> owned_;
    backend::Canvas* canvas_;
    std::shared_ptr<backend::Picture> picture_;
    State state_;
    std::vector<State> saved_;
};

/// Makes a context current for a block, and gives the former one back at its end.
class LIBVUE_API GraphicsContextScope {
public:
    explicit GraphicsContextScope(NSGraphicsContext* context) : former_(NSGraphicsContext::currentContext()) {
        NSGraphicsContext::setCurrentContext(context);
    }
    ~GraphicsContextScope() { NSGraphicsContext::setCurrentContext(former_); }
    GraphicsContextScope(const GraphicsContextScope&) = delete;
    GraphicsContextScope& operator=(const GraphicsContextScope&) = delete;

private:
    Ref<NSGraphicsContext> former_;
};

/// Saves the state of the current context for a block.
class LIBVUE_API GraphicsStateScope {
public:
    GraphicsStateScope() { NSGraphicsContext::saveGraphicsState(); }
    ~GraphicsStateScope() { NSGraphicsContext::restoreGraphicsState(); }
    GraphicsStateScope(const GraphicsStateScope&) = delete;
    GraphicsStateScope& operator=(const GraphicsStateScope&) = delete;
};

} // namespace libvue
