#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

// The names of text attributes, with the type of the value and what stands in for an absent one.

inline constexpr ConstantString NSFontAttributeName{u"NSFont"}; ///< NSFont; Helvetica 12
inline constexpr ConstantString NSParagraphStyleAttributeName{
    u"NSParagraphStyle"}; ///< NSParagraphStyle; the default one
inline constexpr ConstantString NSForegroundColorAttributeName{u"NSForegroundColor"}; ///< NSColor; black
inline constexpr ConstantString NSBackgroundColorAttributeName{u"NSBackgroundColor"}; ///< NSColor; none
inline constexpr ConstantString NSUnderlineStyleAttributeName{
    u"NSUnderlineStyle"}; ///< NSNumber, an NSUnderlineStyle; none
inline constexpr ConstantString NSUnderlineColorAttributeName{u"NSUnderlineColor"}; ///< NSColor; the text's
inline constexpr ConstantString NSStrikethroughStyleAttributeName{
    u"NSStrikethroughStyle"}; ///< NSNumber, an NSUnderlineStyle; none
inline constexpr ConstantString NSStrikethroughColorAttributeName{u"NSStrikethroughColor"}; ///< NSColor; the text's
inline constexpr ConstantString NSBaselineOffsetAttributeName{u"NSBaselineOffset"}; ///< NSNumber, points upward; 0
inline constexpr ConstantString NSSuperscriptAttributeName{u"NSSuperscript"};       ///< NSNumber, levels upward; 0
inline constexpr ConstantString NSKernAttributeName{u"NSKern"};                     ///< NSNumber, points; 0
inline constexpr ConstantString NSObliquenessAttributeName{u"NSObliqueness"};       ///< NSNumber, skew; 0
inline constexpr ConstantString NSStrokeWidthAttributeName{u"NSStrokeWidth"}; ///< NSNumber, percent of the size; 0
inline constexpr ConstantString NSShadowAttributeName{u"NSShadow"};           ///< NSShadow; none
inline constexpr ConstantString NSLinkAttributeName{u"NSLink"};               ///< NSURL or NSString; none
inline constexpr ConstantString NSToolTipAttributeName{u"NSToolTip"};         ///< NSString; none
inline constexpr ConstantString NSAttachmentAttributeName{
    u"NSAttachment"};                                               ///< an object that is a TextAttachmentDrawing; none
inline constexpr ConstantString NSCursorAttributeName{u"NSCursor"}; ///< NSCursor; the I-beam

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
