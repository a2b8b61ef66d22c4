#include <libvue/platform/appkit/PrintPanelForm.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include <libvue/platform/appkit/NSPrintPanel.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

namespace {

constexpr CGFloat kMargin = 20, kGap = 10, kRowHeight = 24, kLabelGap = 8;
constexpr CGFloat kControls = 300, kPreviewWidth = 320, kPreviewHeight = 380, kNumber = 52;
constexpr CGFloat kColumnGap = 24; ///< between the preview and the labels
constexpr CGFloat kMessageRoom = 40, kMessageHeight = 18;
constexpr CGFloat kButton = 110, kButtonGap = 12;
constexpr CGFloat kTurner = 36; ///< the width of a button that turns pages

void centre(NSView* v, CGFloat x, CGFloat row, CGFloat width) {
    const CGFloat height = v->frame().size.height;
    v->setFrame({{x, row + std::round((kRowHeight - height) / 2)}, {width, height}});
}

} // namespace

/// A label and what stands beside it: each control with its width, 0 for its own.
struct PrintPanelForm::Row {
    NSTextField* label;
    std::vector<std::pair<NSView*, CGFloat>> controls;
};

void PrintPanelForm::describe(ClassDescription<PrintPanelForm, NSView>&) {}

Ref<NSTextField> PrintPanelForm::label(NSString* text, NSTextAlignment alignment) {
    auto l = NSTextField::labelWithString(text);
    l->setAlignment(alignment);
    l->sizeToFit();
    addSubview(l);
    return l;
}

Ref<NSTextField> PrintPanelForm::field() {
    auto f = NSTextField::textFieldWithString(u""_ns);
    f->setFrameSize({kNumber, kRowHeight});
    addSubview(f);
    return f;
}

PrintPanelForm::PrintPanelForm(NSUInteger options) : options_(options) {
    const auto end = NSRightTextAlignment;
    const auto popup = [this] {
        auto p = make<NSPopUpButton>(NSRect{{0, 0}, {kControls, kRowHeight}});
        addSubview(p);
        return p;
    };
    const auto radio = [this](NSString* title) {
        auto b = NSButton::radioButtonWithTitle_target_action(title, nullptr, nullptr);
        addSubview(b);
        return b;
    };
    const auto button = [this](NSString* title, NSString* key) {
        auto b = NSButton::buttonWithTitle_target_action(title, nullptr, nullptr);
        if (key) b->setKeyEquivalent(key);
        addSubview(b);
        return b;
    };
    // In the order in which Tab goes through them.
    destinationLabel_ = label(u"Imprimante\u00A0:"_ns, end);
    destination = popup();
    fileLabel_ = label(u"Fichier\u00A0:"_ns, end);
    file = field();
    copiesLabel_ = label(u"Copies\u00A0:"_ns, end);
    copies = field();
    pagesLabel_ = label(u"Pages\u00A0:"_ns, end);
    allPages = radio(u"Toutes"_ns);
    somePages = radio(u"De"_ns);
    first = field();
    toLabel_ = label(u"à"_ns, NSCenterTextAlignment);
    last = field();
    paperLabel_ = label(u"Papier\u00A0:"_ns, end);
    paper = popup();
    orientationLabel_ = label(u"Orientation\u00A0:"_ns, end);
    portrait = radio(u"Portrait"_ns);
    landscape = radio(u"Paysage"_ns);
    scaleLabel_ = label(u"Échelle\u00A0:"_ns, end);
    scale = field();
    percentLabel_ = label(u"%"_ns, NSLeftTextAlignment);
    for (NSTextField* f : {copies.get(), first.get(), last.get(), scale.get()})
        f->setAlignment(end);
    file->cell()->setScrollable(YES);
    file->setAccessibilityLabel(u"Fichier PDF"_ns);
    first->setAccessibilityLabel(u"Première page"_ns);
    last->setAccessibilityLabel(u"Dernière page"_ns);
    previous = button(u"‹"_ns, nullptr);
    previous->setAccessibilityLabel(u"Page précédente"_ns);
    pageNumber = label(u"Page 1 sur 1"_ns, NSCenterTextAlignment);
    next = button(u"›"_ns, nullptr);
    next->setAccessibilityLabel(u"Page suivante"_ns);
    message_ = label(u""_ns, NSLeftTextAlignment);
    message_->setFont(NSFont::systemFontOfSize(11));
    cancel = button(u"Annuler"_ns, u"\u001B"_ns);
    accept = button(u"Enregistrer"_ns, u"\r"_ns);
}

PrintPanelForm::~PrintPanelForm() = default;

std::vector<NSTextField*> PrintPanelForm::fields() const { return {file, copies, first, last, scale}; }

void PrintPanelForm::say(NSString* text, Tone tone) {
    message_->setTextColor(tone == Tone::warning ? NSColor::redColor() : NSColor::secondaryLabelColor());
    message_->setStringValue(text);
}

std::vector<PrintPanelForm::Row> PrintPanelForm::rows(bool saves) const {
    std::vector<Row> all{{destinationLabel_, {{destination, kControls}}}};
    if (saves)
        all.push_back({fileLabel_, {{file, kControls}}});
    else if (options_ & NSPrintPanelShowsCopies)
        all.push_back({copiesLabel_, {{copies, kNumber}}});
    if (options_ & NSPrintPanelShowsPageRange)
        all.push_back({pagesLabel_, {{allPages, 0}, {somePages, 0}, {first, kNumber}, {toLabel_, 0}, {last, kNumber}}});
    if (options_ & NSPrintPanelShowsPaperSize) all.push_back({paperLabel_, {{paper, kControls}}});
    if (options_ & NSPrintPanelShowsOrientation) all.push_back({orientationLabel_, {{portrait, 0}, {landscape, 0}}});
    if (options_ & NSPrintPanelShowsScaling) all.push_back({scaleLabel_, {{scale, kNumber}, {percentLabel_, 0}}});
    return all;
}

void PrintPanelForm::arrange(bool saves) {
    const CGFloat formX = preview ? kMargin + kPreviewWidth + kColumnGap : kMargin;
    CGFloat labels = 0;
    for (const Ref<NSTextField>& l :
         {destinationLabel_, fileLabel_, copiesLabel_, pagesLabel_, paperLabel_, orientationLabel_, scaleLabel_}) {
        l->sizeToFit();
        labels = std::max(labels, std::ceil(l->frame().size.width));
    }
    const CGFloat controlsX = formX + labels + kLabelGap;
    const CGFloat rowsEnd = placeRows(rows(saves), formX, labels);
    const CGFloat buttonHeight = accept->frame().size.height;
    const CGFloat formEnd = rowsEnd + kMessageRoom + buttonHeight + kMargin;
    const CGFloat height = preview ? std::max(formEnd, 2 * kMargin + kPreviewHeight + kGap + kRowHeight) : formEnd;
    const CGFloat width = controlsX + kControls + kMargin;
    setFrameSize({width, height});
    const CGFloat buttonsY = height - kMargin - buttonHeight;
    message_->setFrame({{controlsX, buttonsY - kMessageRoom + kGap}, {kControls, kMessageHeight}});
    accept->setFrame({{width - kMargin - kButton, buttonsY}, {kButton, buttonHeight}});
    cancel->setFrame({{width - kMargin - 2 * kButton - kButtonGap, buttonsY}, {kButton, buttonHeight}});
    placePreview(height);
}

CGFloat PrintPanelForm::placeRows(const std::vector<Row>& shown, CGFloat x, CGFloat labels) const {
    for (NSView* v :
         std::initializer_list<NSView*>{destinationLabel_, fileLabel_, copiesLabel_, pagesLabel_, paperLabel_,
                                        orientationLabel_, scaleLabel_, toLabel_, percentLabel_, file, copies, first,
                                        last, scale, portrait, landscape, allPages, somePages, paper})
        v->setHidden(YES);
    CGFloat y = kMargin;
    for (const Row& row : shown) {
        row.label->setHidden(NO);
        centre(row.label, x, y, labels);
        CGFloat at = x + labels + kLabelGap;
        for (const auto& [control, wanted] : row.controls) {
            control->setHidden(NO);
            if (auto* sized = as<NSControl>(control); sized && wanted == 0) sized->sizeToFit();
            const CGFloat width = wanted > 0 ? wanted : std::ceil(control->frame().size.width);
            centre(control, at, y, width);
            at += width + kLabelGap;
        }
        y += kRowHeight + kGap;
    }
    return y;
}

void PrintPanelForm::placePreview(CGFloat height) const {
    for (NSView* v : std::initializer_list<NSView*>{previous, next, pageNumber})
        v->setHidden(preview == nullptr);
    if (!preview) return;
    preview->setFrame({{kMargin, kMargin}, {kPreviewWidth, height - 2 * kMargin - kGap - kRowHeight}});
    const CGFloat below = height - kMargin - kRowHeight;
    centre(previous, kMargin, below, kTurner);
    centre(next, kMargin + kPreviewWidth - kTurner, below, kTurner);
    centre(pageNumber, kMargin + kTurner + kGap, below, kPreviewWidth - 2 * (kTurner + kGap));
}

} // namespace libvue
