#pragma once

#include <libvue/controls/Forward.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

class NSLayoutManager;

/// A rounded translucent panel for a short notice: an icon, a title, a description. The title's font shrinks by steps
/// until it fits, the description's drops by one size for a long text.
///
/// It is laid out in points by the width of its window's content, whatever its own.
class LIBVUE_API KVueTranslucide : public NSView {
public:
    static void describe(ClassDescription<KVueTranslucide, NSView>& c);
    /// The height of the frame is the one with an icon and a text.
    explicit KVueTranslucide(const NSRect& frame);
    ~KVueTranslucide() override;

    /// Null for none.
    void setIcon(NSImage* icon);
    /// Copied; null for none.
    void setTitle(const NSString* title);
    /// The description; copied, null for none.
    void setText(const NSString* text);

    /// Takes away the height that the icon and the text would need where they are missing. The width stays.
    void sizeToFit();
    /// Of the text wrapped to that width; 20 points at the least. Null attributes are empty ones.
    [[nodiscard]] CGFloat descriptionHeight_attributes_width(const NSString* text, const NSDictionary* attributes,
                                                             CGFloat width);

    /// Title and description, as assistive tools read them out; null where there is neither.
    [[nodiscard]] Ref<NSString> annonce() const;

    void drawRect(const NSRect& dirtyRect) override;
    /// A notification, called by its title, with the description as its value.
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    [[nodiscard]] bool hasText() const;
    /// For a title that is too wide: puts the font that fits into the attributes, and answers the size that it gives.
    /// The title moves up, and is cut where no font fits.
    void ajusteTitre(NSMutableDictionary* attributs, NSMutableParagraphStyle* style, CGFloat largeur, NSSize& taille,
                     CGFloat& y) const;

    Ref<NSImage> icon;
    Ref<NSString> title;
    Ref<NSString> text;
    Ref<NSColor> textColor;
    Ref<NSColor> backgroundColor;
    Ref<NSLayoutManager> layoutManager;
    CGFloat origHeight;
};

} // namespace libvue
