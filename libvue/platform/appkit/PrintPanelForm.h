#pragma once

#include <vector>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace libvue {

/// The controls of a print panel: labels in a column that ends at one edge, controls in one that starts at another, the
/// preview beside them.
class PrintPanelForm final : public NSView {
public:
    enum class Tone { note, warning };

    static void describe(ClassDescription<PrintPanelForm, NSView>& c);
    explicit PrintPanelForm(NSUInteger options);
    ~PrintPanelForm() override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    /// Places everything and takes the size that this needs; `saves` shows the path instead of the copies.
    void arrange(bool saves);
    /// Shows a line under the controls.
    void say(NSString* text, Tone tone);
    [[nodiscard]] std::vector<NSTextField*> fields() const;

    Ref<NSPopUpButton> destination, paper;
    Ref<NSTextField> file, copies, first, last, scale, pageNumber;
    Ref<NSButton> portrait, landscape, allPages, somePages, previous, next, cancel, accept;
    Ref<NSView> preview; ///< may be null

private:
    struct Row;
    /// The rows that show, from the top.
    [[nodiscard]] std::vector<Row> rows(bool saves) const;
    /// Shows these rows and nothing else of the form, their labels at `x` and `labels` wide; answers where they end.
    CGFloat placeRows(const std::vector<Row>& shown, CGFloat x, CGFloat labels) const;
    void placePreview(CGFloat height) const;
    Ref<NSTextField> label(NSString* text, NSTextAlignment alignment);
    Ref<NSTextField> field();

    NSUInteger options_;
    Ref<NSTextField> destinationLabel_, fileLabel_, copiesLabel_, pagesLabel_, paperLabel_, orientationLabel_,
        scaleLabel_;
    Ref<NSTextField> toLabel_, percentLabel_, message_;
};

} // namespace libvue
