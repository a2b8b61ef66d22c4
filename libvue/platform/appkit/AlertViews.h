#pragma once

#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// Everything in an alert. A sheet, which has no frame of the desktop's, draws its own edge.
class AlertContentView : public NSView {
public:
    static void describe(ClassDescription<AlertContentView, NSView>&) {}
    Ref<NSString> message, informative; ///< for assistive tools

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;
};

/// The sign of an alert's style, or a picture in its place.
class AlertIconView : public NSView {
public:
    static void describe(ClassDescription<AlertIconView, NSView>&) {}
    void show(NSAlertStyle style, NSImage* picture);

    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    NSAlertStyle style_ = NSWarningAlertStyle;
    Ref<NSImage> picture_;
};

/// A text that wraps. Inside a scroll view it takes the focus, and the keys scroll it.
class AlertTextView : public NSView {
public:
    static void describe(ClassDescription<AlertTextView, NSView>&) {}
    AlertTextView(NSString* text, NSFont* font, NSColor* color);
    ~AlertTextView() override;
    /// Without the padding.
    [[nodiscard]] CGFloat heightForWidth(CGFloat width) const;
    /// Room round the text, where it stands in a frame.
    void setPadding(CGFloat padding) { padding_ = padding; }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return enclosingScrollView() != nullptr; }
    void keyDown(NSEvent* e) override;
    void drawRect(const NSRect& r) override;
    [[nodiscard]] NSRect focusRingMaskBounds() const override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    Ref<NSString> text_;
    Ref<NSDictionary> attributes_;
    CGFloat padding_ = 0;
};

} // namespace libvue
