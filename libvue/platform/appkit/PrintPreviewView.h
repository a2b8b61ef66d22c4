#pragma once

#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

/// Shows one page of an operation as it will be on the paper.
class PrintPreviewView final : public NSView {
public:
    static void describe(ClassDescription<PrintPreviewView, NSView>& c);
    PrintPreviewView(const NSRect& frame, NSPrintOperation* operation);
    ~PrintPreviewView() override;

    /// Draws that page anew; 0 for no page.
    void show(NSInteger page);
    void drawRect(const NSRect& r) override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void scrollWheel(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    [[nodiscard]] NSRect sheet() const;

    Ref<NSPrintOperation> operation_;
    Ref<NSImage> picture_;
    NSInteger page_ = 0;
    CGFloat wheel_ = 0;
};

} // namespace libvue
