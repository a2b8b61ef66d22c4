#include <libvue/platform/appkit/MenuView.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>

#include <libvue/platform/appkit/ControlImage.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

namespace {

constexpr CGFloat kSeparatorHeight = 9, kStateColumn = 22, kTrailing = 14, kShortcutGap = 28, kIndent = 12,
                  kImageGap = 6;
/// What lies beside a title at least, where it is cut off.
constexpr CGFloat kLeastTrailing = 6, kChevronRoom = 16, kShortcutTrailing = 10, kLeastGap = 8;

Ref<NSFont> fontOf(const NSMenu& m) { return m.font() ? Ref<NSFont>(m.font()) : NSFont::menuFontOfSize(0); }

Ref<NSDictionary> attributes(const NSMenu& m, NSColor* color) {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName.get(), fontOf(m).get()}, {NSForegroundColorAttributeName.get(), color}});
}

/// Keys whose characters cannot be shown.
constexpr struct {
    unichar key;
    std::u16string_view name;
} kKeyNames[] = {{NSCarriageReturnCharacter, u"Entrée"},
                 {NSEnterCharacter, u"Entrée"},
                 {NSEscapeCharacter, u"Échap"},
                 {NSBackspaceCharacter, u"Retour arrière"},
                 {NSDeleteCharacter, u"Retour arrière"},
                 {NSTabCharacter, u"Tab"},
                 {u' ', u"Espace"},
                 {NSInsertFunctionKey, u"Inser"},
                 {NSDeleteFunctionKey, u"Suppr"},
                 {NSHomeFunctionKey, u"Début"},
                 {NSEndFunctionKey, u"Fin"},
                 {NSPageUpFunctionKey, u"Page préc."},
                 {NSPageDownFunctionKey, u"Page suiv."},
                 {NSUpArrowFunctionKey, u"Haut"},
                 {NSDownArrowFunctionKey, u"Bas"},
                 {NSLeftArrowFunctionKey, u"Gauche"},
                 {NSRightArrowFunctionKey, u"Droite"}};

/// How the desktop writes a shortcut: the platform's command modifier is its Ctrl key.
Ref<NSString> shortcutOf(const NSMenuItem& i) {
    NSString* key = i.keyEquivalent();
    if (key->length() == 0) return NSString::string();
    std::u16string s;
    const NSUInteger mask = i.keyEquivalentModifierMask();
    if (mask & NSCommandKeyMask) s += u"Ctrl+";
    if (mask & NSControlKeyMask) s += u"Super+";
    if (mask & NSAlternateKeyMask) s += u"Alt+";
    const bool capital = !key->isEqualToString(key->lowercaseString());
    if ((mask & NSShiftKeyMask) || capital) s += u"Maj+";
    const unichar c = key->unit(0);
    const auto* named =
        std::find_if(std::begin(kKeyNames), std::end(kKeyNames), [c](const auto& k) { return k.key == c; });
    if (named != std::end(kKeyNames))
        s += named->name;
    else if (c >= NSF1FunctionKey && c < NSF1FunctionKey + 24) {
        s += u'F';
        for (char d : std::to_string(c - NSF1FunctionKey + 1))
            s += static_cast<char16_t>(d);
    } else
        s += key->uppercaseString()->utf16();
    return NSString::from(s);
}

/// Where a line of that height begins, in the middle of its row.
CGFloat lineTop(const NSRect& row, CGFloat height) { return std::floor(NSMidY(row) - height / 2 + 0.5); }

CGFloat heightOf(const NSMenuItem& i) {
    if (i.isHidden()) return 0;
    if (i.isSeparatorItem()) return kSeparatorHeight;
    return std::max(theme::kMenuItemHeight, i.image() ? i.image()->size().height + 4 : 0.0);
}

} // namespace

MenuView::MenuView(NSMenu* menu) : menu_(menu) {}
MenuView::~MenuView() = default;

NSSize MenuView::naturalSize(const NSMenu& m) {
    CGFloat width = 0, height = 2 * theme::kMenuMargin;
    const auto look = attributes(m, NSColor::controlTextColor());
    for (NSInteger k = 0; k < m.numberOfItems(); ++k) {
        const NSMenuItem& i = *m.itemAtIndex(k);
        height += heightOf(i);
        if (i.isHidden() || i.isSeparatorItem()) continue;
        CGFloat w = kStateColumn + kTrailing + static_cast<CGFloat>(i.indentationLevel()) * kIndent;
        w += i.attributedTitle() ? libvue::size(i.attributedTitle()).width : sizeWithAttributes(i.title(), look).width;
        if (i.image()) w += i.image()->size().width + kImageGap;
        const auto shortcut = shortcutOf(i);
        if (shortcut->length() > 0) w += kShortcutGap + sizeWithAttributes(shortcut, look).width;
        if (i.hasSubmenu()) w += kShortcutGap;
        width = std::max(width, w);
    }
    return {std::ceil(std::max({width + 2 * theme::kMenuMargin, m.minimumWidth(), 60.0})), std::ceil(height)};
}

template <class F> void MenuView::eachRow(const F& take) const {
    NSRect row{{theme::kMenuMargin, theme::kMenuMargin - scroll_}, {bounds().size.width - 2 * theme::kMenuMargin, 0}};
    for (NSInteger k = 0; k < menu_->numberOfItems(); ++k) {
        NSMenuItem* i = menu_->itemAtIndex(k);
        row.size.height = heightOf(*i);
        if (!take(i, row)) return;
        row.origin.y += row.size.height;
    }
}

NSRect MenuView::rectOfItem(const NSMenuItem* item) const {
    NSRect found = NSZeroRect;
    eachRow([&](const NSMenuItem* i, const NSRect& row) {
        if (i == item) found = row;
        return i != item;
    });
    return found;
}

NSMenuItem* MenuView::itemAt(NSPoint p) const {
    if (!NSPointInRect(p, bounds())) return nullptr;
    NSMenuItem* found = nullptr;
    eachRow([&](NSMenuItem* i, const NSRect& row) {
        const bool holds = p.y >= NSMinY(row) && p.y < NSMaxY(row);
        if (holds && !i->isSeparatorItem()) found = i;
        return !holds;
    });
    return found;
}

void MenuView::setScroll(CGFloat s) {
    CGFloat height = 2 * theme::kMenuMargin;
    eachRow([&](const NSMenuItem*, const NSRect& row) {
        height += row.size.height;
        return true;
    });
    const CGFloat most = std::max(0.0, std::ceil(height) - bounds().size.height);
    s = std::clamp(s, 0.0, most);
    if (s == scroll_) return;
    scroll_ = s;
    setNeedsDisplay(YES);
}

void MenuView::scrollBy(CGFloat dy) { setScroll(scroll_ + dy); }

void MenuView::showItem(const NSMenuItem* item) {
    const NSRect r = rectOfItem(item);
    if (NSMinY(r) < theme::kMenuMargin) scrollBy(NSMinY(r) - theme::kMenuMargin);
    if (NSMaxY(r) > bounds().size.height - theme::kMenuMargin)
        scrollBy(NSMaxY(r) - bounds().size.height + theme::kMenuMargin);
}

void MenuView::drawRect(const NSRect& dirty) {
    drawMenuBackground(bounds());
    eachRow([&](const NSMenuItem* i, const NSRect& row) {
        if (!NSIsEmptyRect(NSIntersectionRect(row, dirty))) drawItem(i, row);
        return row.origin.y < NSMaxY(dirty);
    });
}

void MenuView::drawItem(const NSMenuItem* i, const NSRect& row) const {
    if (i->isSeparatorItem()) {
        drawSeparator(NSInsetRect(row, 6, 0));
        return;
    }
    const bool chosen = menu_->highlightedItem() == i && i->isEnabled();
    if (chosen) {
        NSColor::selectedMenuItemColor()->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(alignedToPixels(row), 4, 4)->fill();
    }
    NSColor* ink = !i->isEnabled() ? NSColor::disabledControlTextColor()
                   : chosen        ? NSColor::selectedMenuItemTextColor()
                                   : NSColor::controlTextColor();
    if (i->state() == NSOnState)
        drawCheckmark({{row.origin.x + 6, NSMidY(row) - 5}, {10, 10}}, ink);
    else if (i->state() == NSMixedState) {
        ink->setFill();
        NSRectFill({{row.origin.x + 7, NSMidY(row) - 1}, {8, 2}});
    }
    CGFloat x = row.origin.x + kStateColumn + static_cast<CGFloat>(i->indentationLevel()) * kIndent;
    if (NSImage* picture = i->image()) {
        const NSSize s = picture->size();
        drawControlImage(*picture, {{x, std::floor(NSMidY(row) - s.height / 2)}, s}, i->isEnabled() ? 1 : 0.4, ink);
        x += s.width + kImageGap;
    }
    const auto look = attributes(*menu_, ink);
    CGFloat end = NSMaxX(row) - kLeastTrailing;
    if (i->hasSubmenu()) {
        end = NSMaxX(row) - kChevronRoom;
        drawChevron({{end, row.origin.y}, {12, row.size.height}}, Chevron::right, ink);
    } else if (const auto shortcut = shortcutOf(*i); shortcut->length() > 0) {
        const auto pale = chosen || !i->isEnabled() ? look : attributes(*menu_, NSColor::secondaryLabelColor());
        const NSSize s = sizeWithAttributes(shortcut, pale);
        end = NSMaxX(row) - kShortcutTrailing - s.width;
        drawAtPoint_withAttributes(shortcut, {end, lineTop(row, s.height)}, pale);
        end -= kLeastGap;
    }
    // A menu has room for its titles unless it is wider than the screen.
    NSAttributedString* own = chosen ? nullptr : i->attributedTitle();
    const NSSize text = own ? libvue::size(own) : sizeWithAttributes(i->title(), look);
    const NSRect room{{x, lineTop(row, text.height)},
                      {std::min(std::ceil(text.width), end - x), std::ceil(text.height)}};
    if (NSIsEmptyRect(room)) return;
    constexpr auto options = NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine;
    if (own)
        drawWithRect_options(own, room, options);
    else
        drawWithRect_options_attributes(i->title(), room, options, look);
}

AccessibilityDescription MenuView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"menu"_ns;
    d.label = menu_->title();
    return d;
}

} // namespace libvue
