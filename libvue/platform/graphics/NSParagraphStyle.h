#pragma once

#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

enum NSTextAlignment : NSUInteger {
    NSLeftTextAlignment = 0,
    NSRightTextAlignment = 1,
    NSCenterTextAlignment = 2,
    NSJustifiedTextAlignment = 3,
    NSNaturalTextAlignment = 4
};

enum NSLineBreakMode : NSUInteger {
    NSLineBreakByWordWrapping = 0,
    NSLineBreakByCharWrapping = 1,
    NSLineBreakByClipping = 2,
    NSLineBreakByTruncatingHead = 3,
    NSLineBreakByTruncatingTail = 4,
    NSLineBreakByTruncatingMiddle = 5
};

enum NSWritingDirection : NSInteger {
    NSWritingDirectionNatural = -1,
    NSWritingDirectionLeftToRight = 0,
    NSWritingDirectionRightToLeft = 1
};

/// A tab stop: points from the leading margin. Immutable.
class LIBVUE_API NSTextTab : public NSObject {
public:
    static void describe(ClassDescription<NSTextTab>& c);
    explicit NSTextTab(CGFloat location, NSTextAlignment alignment = NSLeftTextAlignment) noexcept
        : location_(location), alignment_(alignment) {}
    explicit NSTextTab(NSCoder& coder);
    [[nodiscard]] CGFloat location() const noexcept { return location_; }
    [[nodiscard]] NSTextAlignment alignment() const noexcept { return alignment_; }
    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    CGFloat location_;
    NSTextAlignment alignment_;
};

/// How a paragraph is set. Lengths in points. The plain class is immutable: copies of it are itself.
class LIBVUE_API NSParagraphStyle : public NSObject {
public:
    static void describe(ClassDescription<NSParagraphStyle>& c);
    NSParagraphStyle();
    explicit NSParagraphStyle(NSCoder& coder);
    ~NSParagraphStyle() override;
    /// Natural alignment, word wrapping, no indents, tabs every 28 points.
    [[nodiscard]] static NSParagraphStyle* defaultParagraphStyle();

    [[nodiscard]] NSTextAlignment alignment() const noexcept { return v_.alignment; }
    [[nodiscard]] NSLineBreakMode lineBreakMode() const noexcept { return v_.lineBreakMode; }
    [[nodiscard]] CGFloat lineSpacing() const noexcept { return v_.lineSpacing; }
    [[nodiscard]] CGFloat paragraphSpacing() const noexcept { return v_.paragraphSpacing; }
    [[nodiscard]] CGFloat paragraphSpacingBefore() const noexcept { return v_.paragraphSpacingBefore; }
    [[nodiscard]] CGFloat firstLineHeadIndent() const noexcept { return v_.firstLineHeadIndent; }
    [[nodiscard]] CGFloat headIndent() const noexcept { return v_.headIndent; }
    /// From the trailing margin when not positive, else from the leading one.
    [[nodiscard]] CGFloat tailIndent() const noexcept { return v_.tailIndent; }
    [[nodiscard]] CGFloat minimumLineHeight() const noexcept { return v_.minimumLineHeight; }
    /// 0 for none.
    [[nodiscard]] CGFloat maximumLineHeight() const noexcept { return v_.maximumLineHeight; }
    [[nodiscard]] CGFloat lineHeightMultiple() const noexcept { return v_.lineHeightMultiple; }
    [[nodiscard]] CGFloat defaultTabInterval() const noexcept { return v_.defaultTabInterval; }
    [[nodiscard]] NSWritingDirection baseWritingDirection() const noexcept { return v_.baseWritingDirection; }
    /// Of NSTextTab, in order; null where there is none of its own.
    [[nodiscard]] NSArray* tabStops() const noexcept { return tabStops_.get(); }

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    /// An NSMutableParagraphStyle.
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    [[nodiscard]] Ref<NSMutableParagraphStyle> mutableCopy() const;
    void encodeWithCoder(NSCoder& coder) const override;

protected:
    struct Values {
        NSTextAlignment alignment = NSNaturalTextAlignment;
        NSLineBreakMode lineBreakMode = NSLineBreakByWordWrapping;
        NSWritingDirection baseWritingDirection = NSWritingDirectionNatural;
        CGFloat lineSpacing = 0, paragraphSpacing = 0, paragraphSpacingBefore = 0;
        CGFloat firstLineHeadIndent = 0, headIndent = 0, tailIndent = 0;
        CGFloat minimumLineHeight = 0, maximumLineHeight = 0, lineHeightMultiple = 0;
        CGFloat defaultTabInterval = 28;
        friend bool operator==(const Values&, const Values&) = default;
    };
    friend class NSMutableParagraphStyle;
    void take(const NSParagraphStyle& other);
    Values v_;
    Ref<NSArray> tabStops_;
};

class LIBVUE_API NSMutableParagraphStyle : public NSParagraphStyle {
public:
    static void describe(ClassDescription<NSMutableParagraphStyle, NSParagraphStyle>& c);
    NSMutableParagraphStyle();
    explicit NSMutableParagraphStyle(NSCoder& coder);

    /// All of it from another; null changes nothing.
    void setParagraphStyle(const NSParagraphStyle* style);
    void setAlignment(NSTextAlignment a) noexcept { v_.alignment = a; }
    void setLineBreakMode(NSLineBreakMode m) noexcept { v_.lineBreakMode = m; }
    void setLineSpacing(CGFloat v) noexcept { v_.lineSpacing = v; }
    void setParagraphSpacing(CGFloat v) noexcept { v_.paragraphSpacing = v; }
    void setParagraphSpacingBefore(CGFloat v) noexcept { v_.paragraphSpacingBefore = v; }
    void setFirstLineHeadIndent(CGFloat v) noexcept { v_.firstLineHeadIndent = v; }
    void setHeadIndent(CGFloat v) noexcept { v_.headIndent = v; }
    void setTailIndent(CGFloat v) noexcept { v_.tailIndent = v; }
    void setMinimumLineHeight(CGFloat v) noexcept { v_.minimumLineHeight = v; }
    void setMaximumLineHeight(CGFloat v) noexcept { v_.maximumLineHeight = v; }
    void setLineHeightMultiple(CGFloat v) noexcept { v_.lineHeightMultiple = v; }
    void setDefaultTabInterval(CGFloat v) noexcept { v_.defaultTabInterval = v; }
    void setBaseWritingDirection(NSWritingDirection d) noexcept { v_.baseWritingDirection = d; }
    /// Keeps a copy; null for none.
    void setTabStops(NSArray* stops);
    /// In its place by location.
    void addTabStop(NSTextTab* stop);

    /// A new immutable style.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
};

} // namespace libvue
