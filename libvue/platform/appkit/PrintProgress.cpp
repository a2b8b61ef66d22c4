#include <libvue/platform/appkit/PrintProgress.h>

#include <algorithm>
#include <chrono>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSNumberFormatter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

namespace {

constexpr CGFloat kWidth = 380, kMargin = 20;

const Operation<void(NSObject*)> cancelPrinting{"cancelOperation:"};
const Operation<void(NSObject*)> closeMessage{"performClose:"};

Ref<NSTextField> label(NSString* text, const NSRect& frame, NSFont* font) {
    auto field = NSTextField::labelWithString(text);
    field->setFont(font);
    field->setFrame(frame);
    return field;
}

} // namespace

/// How much is done, as a bar.
class PrintProgress::Bar final : public NSView {
public:
    static void describe(ClassDescription<Bar, NSView>&) {}
    explicit Bar(const NSRect& frame) : NSView(frame) {}

    void setFraction(CGFloat f) {
        fraction_ = std::clamp(f, 0.0, 1.0);
        setNeedsDisplay(YES);
    }
    void drawRect(const NSRect&) override {
        const CGFloat radius = bounds().size.height / 2;
        NSColor::quaternaryLabelColor()->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), radius, radius)->fill();
        NSRect done = bounds();
        done.size.width = std::max(done.size.height, done.size.width * fraction_);
        NSColor::controlAccentColor()->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(done, radius, radius)->fill();
    }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override {
        AccessibilityDescription d;
        d.role = u"progress bar"_ns;
        d.value = NSString::stringWithFormat(u"%d\u00A0%%"_ns, static_cast<int>(fraction_ * 100));
        return d;
    }

private:
    CGFloat fraction_ = 0;
};

void PrintProgress::describe(ClassDescription<PrintProgress, NSPanel>& c) {
    c.answers<&PrintProgress::cancelOperation>(cancelPrinting);
}

PrintProgress::PrintProgress(NSString* title, NSInteger pages)
    : NSPanel({{0, 0}, {kWidth, 128}}, NSTitledWindowMask), pages_(pages) {
    setTitle(u"Impression"_ns);
    NSView* content = contentView();
    const CGFloat width = kWidth - 2 * kMargin;
    const auto what = title && title->length() > 0
                          ? NSString::stringWithFormat(u"Impression de «\u00A0%@\u00A0»"_ns, title)
                          : u"Impression en cours"_ns;
    const auto heading = label(what, {{kMargin - 2, 92}, {width + 4, 18}}, NSFont::boldSystemFontOfSize(13));
    heading->cell()->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    content->addSubview(heading);
    bar_ = make<Bar>(NSRect{{kMargin, 74}, {width, 6}});
    content->addSubview(bar_);
    state_ = label(u""_ns, {{kMargin - 2, 49}, {width + 4, 17}}, NSFont::systemFontOfSize(12));
    state_->setTextColor(NSColor::secondaryLabelColor());
    content->addSubview(state_);
    const auto button = NSButton::buttonWithTitle_target_action(u"Annuler"_ns, this, cancelPrinting);
    button->setKeyEquivalent(u"\u001B"_ns);
    const CGFloat buttonWidth = std::max(90.0, button->frame().size.width);
    button->setFrame({{kWidth - kMargin - buttonWidth, 14}, {buttonWidth, button->frame().size.height}});
    content->addSubview(button);
    setDone(0);
}

PrintProgress::~PrintProgress() = default;

void PrintProgress::setDone(NSInteger pages) {
    const auto now = std::min(pages + 1, pages_);
    const auto text = pageOfPages(now, pages_);
    state_->setStringValue(text);
    bar_->setFraction(pages_ > 0 ? static_cast<CGFloat>(pages) / static_cast<CGFloat>(pages_) : 0);
}

void PrintProgress::cancelOperation(NSObject*) {
    cancelled_ = true;
    if (NSApp()->modalWindow() == this) NSApp()->stopModal();
}

void PrintProgress::work(const std::function<bool()>& step) {
    using Clock = std::chrono::steady_clock;
    // Short enough that a click is answered at once, long enough that looking for events costs little. However fast the
    // machine, a few steps are a slice, so that a job can be cancelled early.
    constexpr auto slice = std::chrono::milliseconds(30);
    constexpr int steps = 4;
    const auto start = Clock::now();
    try {
        for (int i = 0; i < steps && !cancelled_ && !finished_ && Clock::now() - start < slice; ++i)
            finished_ = !step();
    } catch (...) {
        thrown_ = std::current_exception();
        finished_ = true;
    }
    if (finished_ && NSApp()->modalWindow() == this) NSApp()->stopModal();
}

BOOL PrintProgress::runSteps(const std::function<bool()>& step) {
    const Ref<PrintProgress> self(this);
    center();
    const auto timer = NSTimer::timerWithTimeInterval_repeats_block(0, YES, [&](NSTimer*) { work(step); });
    const ScopeExit ended([&] { timer->invalidate(); });
    NSRunLoop::mainRunLoop()->addTimer_forMode(timer, NSModalPanelRunLoopMode.get());
    while (!finished_ && !cancelled_) {
        NSApp()->runModalForWindow(this);
        // Closing the window cancels. Somebody else's stop ends the modal run and not the work.
        if (!isVisible() && !finished_) cancelled_ = true;
        work(step);
    }
    orderOut(nullptr);
    if (thrown_) std::rethrow_exception(thrown_);
    return finished_;
}

Ref<NSString> pageOfPages(NSInteger page, NSInteger pages) {
    const auto text = [](NSInteger n) {
        const auto number = NSNumber::numberWithInteger(n);
        return NSNumberFormatter::localizedStringFromNumber_numberStyle(number, NSNumberFormatterDecimalStyle);
    };
    const Ref<NSString> first = text(page), last = text(pages);
    return NSString::stringWithFormat(u"Page %@ sur %@"_ns, first.get(), last.get());
}

void showPrintFailure(NSString* title, NSString* reason) {
    constexpr CGFloat width = 420;
    const auto panel = make<NSPanel>(NSRect{{0, 0}, {width, 140}}, NSTitledWindowMask | NSClosableWindowMask);
    panel->setTitle(u"Impression"_ns);
    panel->setReleasedWhenClosed(NO);
    NSView* content = panel->contentView();
    content->addSubview(
        label(title, {{kMargin - 2, 104}, {width - 2 * kMargin + 4, 18}}, NSFont::boldSystemFontOfSize(13)));
    const auto text = label(reason, {{kMargin - 2, 54}, {width - 2 * kMargin + 4, 42}}, NSFont::systemFontOfSize(12));
    text->cell()->setWraps(YES);
    content->addSubview(text);
    const auto button = NSButton::buttonWithTitle_target_action(u"OK"_ns, panel.get(), closeMessage);
    button->setKeyEquivalent(u"\r"_ns);
    button->setFrame({{width - kMargin - 90, 14}, {90, button->frame().size.height}});
    content->addSubview(button);
    panel->center();
    NSApp()->runModalForWindow(panel);
    panel->orderOut(nullptr);
}

} // namespace libvue
