#include <libvue/platform/appkit/NSAlert.h>

#include <algorithm>

#include <libvue/platform/appkit/AlertLayout.h>
#include <libvue/platform/appkit/AlertPanel.h>
#include <libvue/platform/appkit/AlertViews.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/appkit/SheetEnd.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSProcessInfo.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

static const ClassRegistration<NSAlert> registration;

namespace {

constexpr ConstantString kReturn{u"\r"}, kEscape{u"\u001B"};

/// Of the screen's height, and never more points than that.
constexpr CGFloat kPartOfScreen = 0.7, kHighest = 560, kLeast = 200;

/// Round a text that scrolls: the line, and the room inside of it.
constexpr CGFloat kFrame = 1, kPadding = 6;

constexpr Operation<Action> pressed{"alertButtonPressed_:"}, helpPressed{"alertHelpPressed_:"};

bool hasKey(const NSButton* b, const NSString* key) {
    const auto own = b->keyEquivalent();
    return own && own->isEqualToString(key);
}

bool isShown(const NSString* text) { return text && text->length() > 0; }

Ref<NSString> copied(const NSString* s) { return s ? NSString::stringWithString(s) : NSString::string(); }

/// The toolkit's own words, in the user's language.
Ref<NSString> own(NSString* text) {
    return NSBundle::libraryBundle()->localizedStringForKey_value_table(text, nullptr, nullptr);
}

/// How high an alert may be: a sheet must not hang down off the screen.
CGFloat heightLimit(NSWindow* owner) {
    const NSScreen* screen = owner ? owner->screen() : nullptr;
    if (!screen) screen = NSScreen::mainScreen();
    if (!screen) return kHighest;
    const NSRect seen = screen->visibleFrame();
    CGFloat limit = std::min(kHighest, seen.size.height * kPartOfScreen);
    if (owner) limit = std::min(limit, NSMaxY(owner->contentRectForFrameRect(owner->frame())) - NSMinY(seen));
    return std::max(kLeast, limit);
}

} // namespace

void NSAlert::describe(ClassDescription<NSAlert>& c) {
    c.answers<&NSAlert::press>(pressed);
    c.answers<&NSAlert::help>(helpPressed);
}

NSAlert::NSAlert() : message_(NSString::string()), informative_(NSString::string()), panel_(make<AlertPanel>()) {
    panel_->setTitle(NSProcessInfo::processInfo()->processName());
    // The panel belongs to the alert.
    panel_->leave = [this]() -> BOOL {
        const auto cancel =
            std::find_if(buttons_.begin(), buttons_.end(), [](const auto& b) { return hasKey(b, kEscape); });
        if (cancel == buttons_.end() && buttons_.size() != 1) return NO;
        const Ref<NSButton> way = cancel == buttons_.end() ? buttons_.front() : *cancel;
        way->performClick(nullptr);
        return YES;
    };
}

NSAlert::~NSAlert() { panel_->leave = nullptr; }

// What it says.

void NSAlert::setAlertStyle(NSAlertStyle style) {
    style_ = style == NSInformationalAlertStyle || style == NSCriticalAlertStyle ? style : NSWarningAlertStyle;
}
void NSAlert::setMessageText(NSString* text) { message_ = copied(text); }
void NSAlert::setInformativeText(NSString* text) { informative_ = copied(text); }
NSImage* NSAlert::icon() const noexcept { return icon_; }
void NSAlert::setIcon(NSImage* icon) { icon_ = icon; }
void NSAlert::setHelpAnchor(NSString* anchor) { helpAnchor_ = anchor ? NSString::stringWithString(anchor) : nullptr; }
NSView* NSAlert::accessoryView() const noexcept { return accessory_; }
void NSAlert::setAccessoryView(NSView* view) { accessory_ = view; }
NSWindow* NSAlert::window() const noexcept { return panel_; }

NSButton* NSAlert::addButtonWithTitle(NSString* title) {
    const auto b = make<NSButton>();
    b->setTitle(title);
    b->setTarget(this);
    b->setAction(pressed);
    b->setTag(NSAlertFirstButtonReturn + static_cast<NSInteger>(buttons_.size()));
    if (buttons_.empty())
        b->setKeyEquivalent(kReturn);
    else if (title && title->isEqualToString(own(u"Annuler"_ns)))
        b->setKeyEquivalent(kEscape);
    buttons_.push_back(b);
    return b;
}

Ref<NSArray> NSAlert::buttons() const { return NSArray::arrayWithRefs(buttons_); }

NSButton* NSAlert::suppressionButton() {
    if (!suppression_)
        suppression_ =
            NSButton::checkboxWithTitle_target_action(own(u"Ne plus afficher ce message"_ns), nullptr, nullptr);
    return suppression_;
}

// Where it stands.

void NSAlert::layout() { layoutOver(nullptr); }

void NSAlert::layoutOver(NSWindow* owner) {
    const Ref<NSAlert> self(this);
    if (buttons_.empty()) addButtonWithTitle(own(u"OK"_ns));
    const auto content = make<AlertContentView>();
    content->message = message_;
    content->informative = informative_;
    const auto message =
        make<AlertTextView>(message_, NSFont::boldSystemFontOfSize(NSFont::systemFontSize()), NSColor::labelColor());
    const auto informative = make<AlertTextView>(
        informative_, NSFont::systemFontOfSize(NSFont::smallSystemFontSize() + 1), NSColor::labelColor());

    AlertParts parts;
    if (isShown(message_)) parts.message = [&](CGFloat w) { return message->heightForWidth(w); };
    if (isShown(informative_)) parts.informative = [&](CGFloat w) { return informative->heightForWidth(w); };
    if (accessory_) parts.accessory = accessory_->frame().size;
    if (showsSuppression_) {
        suppressionButton()->sizeToFit();
        parts.suppression = suppression_->frame().size;
    }
    for (const auto& b : buttons_) {
        b->sizeToFit();
        parts.buttonWidths.push_back(b->frame().size.width);
        parts.buttonHeight = std::max(parts.buttonHeight, b->frame().size.height);
    }
    parts.help = showsHelp_;
    parts.maxHeight = heightLimit(owner);
    parts.scrollerWidth = NSScroller::scrollerWidth() + 2 * (kFrame + kPadding);
    const AlertPlaces places = placeAlert(parts);

    content->setFrame({{0, 0}, places.size});
    const auto icon = make<AlertIconView>();
    icon->show(style_, icon_);
    icon->setFrame(places.icon);
    content->addSubview(icon);
    std::vector<NSView*> scrolled;
    panel_->scrolled = nullptr;
    const auto putText = [&](const Ref<AlertTextView>& text, const NSRect& room, CGFloat height) {
        if (height <= 0) {
            text->setFrame(room);
            content->addSubview(text);
            return;
        }
        const auto scroll = make<NSScrollView>(room);
        scroll->setBorderType(NSLineBorder);
        scroll->setBackgroundColor(NSColor::controlBackgroundColor());
        scroll->setHasVerticalScroller(YES);
        text->setPadding(kPadding);
        text->setFrame({{0, 0}, {room.size.width - parts.scrollerWidth + 2 * kPadding, height + 2 * kPadding}});
        scroll->setDocumentView(text);
        content->addSubview(scroll);
        scrolled.push_back(text);
        panel_->scrolled = scroll.get();
    };
    if (parts.message) putText(message, places.message, places.messageScrolls);
    if (parts.informative) putText(informative, places.informative, places.informativeScrolls);
    if (accessory_) {
        accessory_->setFrameOrigin(places.accessory.origin);
        content->addSubview(accessory_);
    }
    if (showsSuppression_) {
        suppression_->setFrame(places.suppression);
        content->addSubview(suppression_);
    }
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        buttons_[i]->setFrame(places.buttons[i]);
        content->addSubview(buttons_[i]);
    }
    if (showsHelp_) {
        if (!help_) {
            help_ = NSButton::buttonWithTitle_target_action(u"?"_ns, this, helpPressed);
            help_->setBezelStyle(NSHelpButtonBezelStyle);
            help_->setAccessibilityLabel(own(u"Aide"_ns));
        }
        help_->setFrame(places.help);
        content->addSubview(help_);
    }
    panel_->setContentView(content);
    panel_->setContentSize(places.size);
    const auto foremost =
        std::find_if(buttons_.begin(), buttons_.end(), [](const auto& b) { return hasKey(b, kReturn); });
    // A button that had the key once is not the default for ever.
    panel_->setDefaultButtonCell(foremost == buttons_.end() ? nullptr : (*foremost)->buttonCell());
    panel_->setInitialFirstResponder(foremost == buttons_.end() ? buttons_.front() : *foremost);
    panel_->makeFirstResponder(nullptr);
    linkKeys(scrolled);
}

void NSAlert::linkKeys(const std::vector<NSView*>& texts) {
    // Tab goes through the buttons first, in their order, then to what stands above them.
    std::vector<NSView*> loop;
    for (const auto& b : buttons_)
        loop.push_back(b);
    if (showsHelp_) loop.push_back(help_);
    loop.insert(loop.end(), texts.begin(), texts.end());
    if (accessory_ && accessory_->canBecomeKeyView()) loop.push_back(accessory_);
    if (showsSuppression_) loop.push_back(suppression_);
    for (std::size_t i = 0; i < loop.size(); ++i)
        loop[i]->setNextKeyView(loop[(i + 1) % loop.size()]);
}

void NSAlert::announce() {
    Ref<NSString> said = message_;
    if (isShown(informative_)) said = NSString::stringWithFormat(u"%@\n%@"_ns, said.get(), informative_.get());
    announceForAccessibility(panel_, said, NSAccessibilityPriorityHigh);
}

// Showing it.

NSInteger NSAlert::runModal() {
    const Ref<NSAlert> self(this);
    if (panel_->isVisible()) raiseNamed("NSInvalidArgumentException", "runModal of an alert that is up");
    layout();
    announce();
    const NSInteger code = NSApp()->runModalForWindow(panel_);
    panel_->orderOut(nullptr);
    return code;
}

void NSAlert::beginSheetModalForWindow_completionHandler(NSWindow* window, std::function<void(NSInteger)> handler) {
    if (!window || panel_->isVisible())
        raiseNamed("NSInvalidArgumentException",
                   "beginSheetModalForWindow: without a window, or of an alert that is up");
    const Ref<NSAlert> self(this);
    const Ref<NSWindow> owner(window);
    // On a window that nobody sees, nobody could answer.
    if (owner->isMiniaturized())
        owner->deminiaturize(nullptr);
    else if (!owner->isVisible())
        owner->orderFront(nullptr);
    layoutOver(owner);
    announce();
    owner->beginSheet_completionHandler(panel_, [self, handler = std::move(handler)](NSInteger code) {
        if (handler) handler(code);
    });
}

void NSAlert::beginSheetModalForWindow_modalDelegate_didEndSelector_contextInfo(NSWindow* window, NSObject* delegate,
                                                                                SEL didEnd, void* info) {
    beginSheetModalForWindow_completionHandler(window, sheetEndTeller(this, delegate, didEnd, info));
}

// Answering it.

void NSAlert::press(NSObject* sender) {
    const auto at = std::find_if(buttons_.begin(), buttons_.end(), [&](const auto& b) { return b.get() == sender; });
    if (at != buttons_.end()) end(NSAlertFirstButtonReturn + (at - buttons_.begin()));
}

void NSAlert::end(NSInteger code) {
    const Ref<NSAlert> self(this);
    if (NSWindow* owner = panel_->sheetParent())
        owner->endSheet_returnCode(panel_, code);
    else if (NSApp()->modalWindow() == panel_.get())
        NSApp()->stopModalWithCode(code);
}

void NSAlert::help(NSObject*) {
    const Ref<NSAlert> self(this);
    const auto shows = op::alertShowHelp.of(delegate_);
    if (!shows || !shows(this)) backend::Backend::current().windows->beep();
}

} // namespace libvue
