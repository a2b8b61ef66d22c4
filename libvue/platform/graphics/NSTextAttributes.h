#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

// The names of text attributes; each says the type of its value, and what stands in for an absent one.

/// NSFont; Helvetica 12.
inline constexpr ConstantString NSFontAttributeName{u"NSFont"};
/// NSParagraphStyle; the default one.
inline constexpr ConstantString NSParagraphStyleAttributeName{u"NSParagraphStyle"};
/// NSColor; black.
inline constexpr ConstantString NSForegroundColorAttributeName{u"NSForegroundColor"};
/// NSColor; none.
inline constexpr ConstantString NSBackgroundColorAttributeName{u"NSBackgroundColor"};
/// NSNumber, an NSUnderlineStyle; none.
inline constexpr ConstantString NSUnderlineStyleAttributeName{u"NSUnderlineStyle"};
/// NSColor; the text's.
inline constexpr ConstantString NSUnderlineColorAttributeName{u"NSUnderlineColor"};
/// NSNumber, other than 0 for a line; none.
inline constexpr ConstantString NSStrikethroughStyleAttributeName{u"NSStrikethroughStyle"};
/// NSNumber, points upward; 0.
inline constexpr ConstantString NSBaselineOffsetAttributeName{u"NSBaselineOffset"};
/// NSNumber, levels upward; 0.
inline constexpr ConstantString NSSuperscriptAttributeName{u"NSSuperscript"};
/// NSNumber, points; 0.
inline constexpr ConstantString NSKernAttributeName{u"NSKern"};
/// NSShadow; none.
inline constexpr ConstantString NSShadowAttributeName{u"NSShadow"};
/// NSURL or NSString, for the views that follow it; none.
inline constexpr ConstantString NSLinkAttributeName{u"NSLink"};
/// an object that is a TextAttachmentDrawing; none.
inline constexpr ConstantString NSAttachmentAttributeName{u"NSAttachment"};

enum NSUnderlineStyle : NSInteger {
    NSUnderlineStyleNone = 0,
    NSUnderlineStyleSingle = 1,
    NSUnderlineStyleThick = 2,
    NSUnderlineStyleDouble = 9
};

/// Stands in a text where an attachment is.
inline constexpr unichar NSAttachmentCharacter = 0xFFFC;

/// What an object behind NSAttachmentAttributeName answers.
class LIBVUE_API TextAttachmentDrawing {
public:
    virtual ~TextAttachmentDrawing() = default;
    /// The room in the line, points.
    [[nodiscard]] virtual NSSize attachmentSize() const = 0;
    /// How far its bottom lies above the baseline, points.
    [[nodiscard]] virtual CGFloat attachmentBaselineOffset() const { return 0; }
    /// Draws into the current context, in its user space.
    virtual void drawAttachmentInRect(const NSRect& rect) = 0;
};

} // namespace libvue
