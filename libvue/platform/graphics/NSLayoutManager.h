#pragma once

#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/Operation.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

class LongTextLayout;
class NSLayoutManager;
class NSTextContainer;
class NSTextStorage;

namespace op {
/// Manager, container (null when the text did not fit into all of them), and whether that was the end of the text.
inline constexpr Operation<void(NSLayoutManager*, NSTextContainer*, BOOL)>
    layoutManager_didCompleteLayoutForTextContainer_atEnd{"layoutManager:didCompleteLayoutForTextContainer:atEnd:"};
} // namespace op

/// Lays the text of its storage out in its containers, in their order: what does not fit into one goes on in the next.
///
/// Nothing is laid out before it is asked for, and what was laid out stays until the text or a container changes. There
/// is a glyph for each character, of the same index. Rectangles and points are those of a container, y downward from
/// its top left corner; indexes beyond the text give the empty range or the zero rectangle. It keeps its containers;
/// its storage keeps it.
class LIBVUE_API NSLayoutManager : public NSObject {
public:
    static void describe(ClassDescription<NSLayoutManager>& c);
    NSLayoutManager();
    ~NSLayoutManager() override;

    [[nodiscard]] NSTextStorage* textStorage() const noexcept { return storage_; }
    [[nodiscard]] Ref<NSArray> textContainers() const;
    /// Behind the others. Null is ignored; a container of another manager leaves that one.
    void addTextContainer(NSTextContainer* container);
    /// An index beyond the end raises NSRangeException.
    void insertTextContainer_atIndex(NSTextContainer* container, NSUInteger index);
    void removeTextContainerAtIndex(NSUInteger index);
    /// Its size is another one: it and those behind it are laid out anew.
    void textContainerChangedGeometry(NSTextContainer* container);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_.get(); }
    /// Held weakly.
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }
    /// Sent by the storage: `range` in the text as it is now.
    virtual void textStorage_edited_range_changeInLength(NSTextStorage* storage, NSUInteger mask, NSRange range,
                                                         NSInteger change);

    // Layout.

    void ensureLayoutForTextContainer(NSTextContainer* container);
    /// What of the text stands in it; lays it out. A container of another manager has nothing.
    [[nodiscard]] NSRange glyphRangeForTextContainer(NSTextContainer* container);
    /// Round the lines, padding included.
    [[nodiscard]] NSRect usedRectForTextContainer(NSTextContainer* container);
    [[nodiscard]] NSUInteger numberOfGlyphs() const;
    [[nodiscard]] NSUInteger characterIndexForGlyphAtIndex(NSUInteger glyph) const { return glyph; }
    [[nodiscard]] NSUInteger glyphIndexForCharacterAtIndex(NSUInteger character) const { return character; }
    /// `actual` may be null.
    [[nodiscard]] NSRange glyphRangeForCharacterRange_actualCharacterRange(NSRange characters, NSRange* actual) const;
    [[nodiscard]] NSRange characterRangeForGlyphRange_actualGlyphRange(NSRange glyphs, NSRange* actual) const;
    /// Null where the glyph fits into no container. `range`, which may be null, gets what stands in it.
    [[nodiscard]] NSTextContainer* textContainerForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range);

    // Places.

    /// The whole line, from edge to edge, with its range (which may be null).
    [[nodiscard]] NSRect lineFragmentRectForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range);
    /// Where the line has text.
    [[nodiscard]] NSRect lineFragmentUsedRectForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range);
    /// On the baseline, from the corner of its line.
    [[nodiscard]] NSPoint locationForGlyphAtIndex(NSUInteger glyph);
    [[nodiscard]] NSRect boundingRectForGlyphRange_inTextContainer(NSRange glyphs, NSTextContainer* container);
    /// One a line.
    [[nodiscard]] std::vector<NSRect> rectsForCharacterRange_inTextContainer(NSRange characters,
                                                                             NSTextContainer* container);
    /// The lines that touch the rectangle.
    [[nodiscard]] NSRange glyphRangeForBoundingRect_inTextContainer(const NSRect& rect, NSTextContainer* container);
    /// The nearest one; `fraction`, which may be null, says how far across it. 0 in an empty text.
    [[nodiscard]] NSUInteger
    glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(NSPoint point, NSTextContainer* container,
                                                                      CGFloat* fraction);
    /// The empty line behind a line end at the end of the text, and of an empty text; the zero rectangle without one.
    [[nodiscard]] NSRect extraLineFragmentRect();
    [[nodiscard]] NSTextContainer* extraLineFragmentTextContainer();

    /// Draws the lines that hold the range, backgrounds included, with the container's top left corner at `point` of
    /// the current context, which is flipped as a rule. The lines of one container; nothing without a context.
    void drawGlyphsForGlyphRange_atPoint(NSRange glyphs, NSPoint point);

    /// How far apart the baselines of two lines of that font are.
    [[nodiscard]] CGFloat defaultLineHeightForFont(const NSFont* font) const;
    /// From the top of a line to its baseline.
    [[nodiscard]] CGFloat defaultBaselineOffsetForFont(const NSFont* font) const;

    /// Between the storage and its managers.
    void setTextStorage_(NSTextStorage* storage);

private:
    struct Laid;
    struct Place;
    [[nodiscard]] std::size_t indexOf(const NSTextContainer* container) const noexcept;
    /// Lays out up to that container; null where it is none of these or nothing reached it.
    const Laid* laid(const NSTextContainer* container);
    void layOutThrough(std::size_t last);
    std::shared_ptr<LongTextLayout> longLayout(NSTextStorage& text, CGFloat width);
    void forget(std::size_t first);
    [[nodiscard]] Place placeOf(NSUInteger glyph);

    NSTextStorage* storage_ = nullptr;
    std::vector<Ref<NSTextContainer>> containers_;
    std::vector<Laid> laid_; ///< of the first containers
    /// What stood in the first container when a long text was edited, and how many units at both ends stayed since.
    struct Former {
        std::shared_ptr<LongTextLayout> parts;
        NSUInteger head = 0, tail = 0;
    };
    Former former_;
    Weak<NSObject> delegate_;
};

} // namespace libvue
