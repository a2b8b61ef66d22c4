#pragma once

#include <memory>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

/// A picture of a size in points, with one or more representations; the one that fits the scale of a drawing best is
/// used.
///
/// Drawing goes to the current context; without one, or while there is no representation, it does nothing. A source
/// rectangle of NSZeroRect means the whole image, and its origin is the lower left corner of the image.
class LIBVUE_API NSImage : public NSObject {
public:
    static void describe(ClassDescription<NSImage>& c);
    /// Of no size, until one is set or a representation gives its own.
    NSImage();
    explicit NSImage(NSSize size);
    explicit NSImage(NSCoder& coder);
    ~NSImage() override;

    // Null where there is nothing that can be read. Beside "name.png", "name@2x.png" is taken in as well, for scales
    // above 1.

    [[nodiscard]] static Ref<NSImage> initWithContentsOfFile(const NSString* path);
    [[nodiscard]] static Ref<NSImage> initByReferencingFile(const NSString* path) {
        return initWithContentsOfFile(path);
    }
    [[nodiscard]] static Ref<NSImage> initWithContentsOfURL(NSURL* url);
    [[nodiscard]] static Ref<NSImage> initWithData(NSData* data);
    /// The image of that name: set by setName, else the image resource of that name of the main bundle, then of the
    /// others. Found ones are kept and shared.
    [[nodiscard]] static Ref<NSImage> imageNamed(const NSString* name);

    /// Registers it; null takes it out. False where another image has the name.
    BOOL setName(const NSString* name);
    [[nodiscard]] NSString* name() const noexcept { return name_.get(); }

    /// Where none was set: the first representation's.
    [[nodiscard]] NSSize size() const;
    /// Scales what is drawn; representations stay as they are.
    void setSize(NSSize size);
    [[nodiscard]] BOOL isValid() const;
    /// Of NSImageRep, in the order of adding.
    [[nodiscard]] Ref<NSArray> representations() const;
    void addRepresentation(NSImageRep* rep);
    void addRepresentations(NSArray* reps);
    /// The one that is drawn at that many pixels a point; null where there is none.
    [[nodiscard]] NSImageRep* representationForScale(CGFloat scale) const;

    // Drawing into it: between the two, it is the current context's surface, transparent where nothing was drawn
    // before. Nests. lockFocus raises NSImageCacheException where the image has no size that can be drawn into.

    void lockFocus();
    void lockFocusFlipped(BOOL flipped);
    void unlockFocus();

    // Drawing it. The image is upright, whether the context is flipped or not; points are the lower left corner as
    // seen.

    void drawInRect(const NSRect& rect);
    void drawInRect_fromRect_operation_fraction(const NSRect& rect, const NSRect& from,
                                                NSCompositingOperation operation, CGFloat fraction);
    /// `hints` may be null, nothing in it is read. Where `respectFlipped` is NO, a flipped context turns the image
    /// upside down.
    void drawInRect_fromRect_operation_fraction_respectFlipped_hints(const NSRect& rect, const NSRect& from,
                                                                     NSCompositingOperation operation, CGFloat fraction,
                                                                     BOOL respectFlipped, NSDictionary* hints);
    void drawAtPoint_fromRect_operation_fraction(NSPoint point, const NSRect& from, NSCompositingOperation operation,
                                                 CGFloat fraction);
    /// Composed over what is there, at that strength.
    void dissolveToPoint_fraction(NSPoint point, CGFloat fraction);

    /// Drawing into a flipped one has y downward from its top left corner.
    [[nodiscard]] BOOL isFlipped() const noexcept { return flipped_; }
    void setFlipped(BOOL flipped) noexcept { flipped_ = flipped; }
    /// A template is drawn by its alpha alone, in the colour that its place asks for.
    [[nodiscard]] BOOL isTemplate() const noexcept { return template_; }
    void setTemplate(BOOL on) noexcept { template_ = on; }
    [[nodiscard]] NSColor* backgroundColor() const noexcept { return background_.get(); }
    /// Drawn behind the image; null for none.
    void setBackgroundColor(NSColor* color);
    [[nodiscard]] NSString* accessibilityDescription() const noexcept { return accessibility_.get(); }
    void setAccessibilityDescription(const NSString* text);
    /// The part that lines up with text, in points of the image; the whole image where none was set.
    [[nodiscard]] NSRect alignmentRect() const;
    void setAlignmentRect(const NSRect& rect);

    /// Null where there is nothing to write.
    [[nodiscard]] Ref<NSData> TIFFRepresentation() const;
    [[nodiscard]] Ref<NSData> PNGRepresentation() const;

    [[nodiscard]] Ref<NSString> description() const override;
    /// Shares the pixels until one of both is drawn into; nameless.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSImage> copy() const;
    void encodeWithCoder(NSCoder& coder) const override;

    /// The pixels for a drawing at that many pixels a point; null where there are none.
    [[nodiscard]] std::shared_ptr<backend::Picture> picture(CGFloat scale) const;
    /// The scale that surfaces made by lockFocus take when no context is current: the main screen's. The window system
    /// sets it.
    static void setScreenScale(CGFloat scale) noexcept;
    [[nodiscard]] static CGFloat screenScale() noexcept;

private:
    struct State;
    enum class Upright : unsigned char { yes, asFlipped };
    void composite(const NSRect& rect, const NSRect& from, NSCompositingOperation operation, CGFloat fraction,
                   Upright upright);
    [[nodiscard]] Ref<NSImageRep> surface(CGFloat scale);

    std::unique_ptr<State> s_;
    Ref<NSString> name_;
    Ref<NSString> accessibility_;
    Ref<NSColor> background_;
    NSSize size_;
    bool flipped_ = false;
    bool template_ = false;
};

/// The path of the picture of that name in the bundle, with or without its extension; null where there is none.
[[nodiscard]] LIBVUE_API Ref<NSString> pathForImageResource(NSBundle* bundle, const NSString* name);

inline constexpr ConstantString NSImageCacheException{u"NSImageCacheException"};

} // namespace libvue
