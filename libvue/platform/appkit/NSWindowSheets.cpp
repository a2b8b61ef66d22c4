#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

// Beginning.

void NSWindow::beginSheet_completionHandler(NSWindow* sheet, SheetHandler handler) {
    bool inUse = !sheet || sheet->sheetParent_ || (sheets_ && sheets_->find(sheet) != sheets_->sessions.end());
    for (const NSWindow* w = this; w && !inUse; w = w->sheetParent_)
        inUse = w == sheet;
    if (inUse) raiseNamed(NSInvalidArgumentException, "beginSheet: of no window, or of one that is in use");
    if (!sheets_) sheets_ = std::make_unique<Sheets>();
    sheets_->sessions.push_back({Ref<NSWindow>(sheet), std::move(handler)});
    presentNextSheet();
}

void NSWindow::presentNextSheet() {
    if (sheet_ || !sheets_ || sheets_->sessions.empty()) return;
    const Ref<NSWindow> self(this), sheet = sheets_->sessions.front().sheet;
    postDelegateNotification(NSWindowWillBeginSheetNotification, op::windowWillBeginSheet);
    // Whoever heard of it may have ended it, or have shown it on another window.
    if (sheet_ || sheets_->sessions.empty() || sheets_->sessions.front().sheet != sheet) return;
    if (sheet->sheetParent_)
        endSheet_returnCode(sheet, NSRunAbortedResponse);
    else
        attachSheet(sheet);
}

void NSWindow::attachSheet(NSWindow* sheet) {
    if (sheet->visible_) sheet->orderWindow_relativeTo(NSWindowOut, 0);
    const NSApplication* app = NSApp();
    const bool takesKeys = isKeyWindow() || isMainWindow() || !app->keyWindow();
    hideToolTip();
    sheet_ = sheet;
    sheet->setSheetParent(this);
    placeSheet();
    addChildWindow_ordered(sheet, NSWindowAbove);
    if (takesKeys && sheet_ == sheet) sheet->makeKeyWindow();
}

void NSWindow::setSheetParent(NSWindow* parent) {
    const NSRect content = contentRectForFrameRect(frame_);
    sheetParent_ = parent;
    frame_ = frameRectForContentRect(content);
    updateNativeSpec();
}

void NSWindow::placeSheet() {
    const Ref<NSWindow> self(this), sheet = sheet_.ref();
    if (!sheet) return;
    const NSSize content = root_->bounds().size;
    NSRect under{{0, content.height}, {content.width, 0}};
    if (const auto asks = op::window_willPositionSheet_usingRect.of(delegate_)) under = asks(this, sheet, under);
    const NSPoint top = convertBaseToScreen({NSMidX(under), NSMinY(under)});
    const NSSize size = sheet->frame_.size;
    sheet->applyFrame({{std::round(top.x - size.width / 2), top.y - size.height}, size}, YES);
}

// Ending.

void NSWindow::endSheet(NSWindow* sheet) { endSheet_returnCode(sheet, NSRunStoppedResponse); }

void NSWindow::endSheet_returnCode(NSWindow* sheet, NSInteger code) {
    if (!sheets_) return;
    const auto at = sheets_->find(sheet);
    if (at == sheets_->sessions.end()) return;
    const Ref<NSWindow> self(this);
    const Sheets::Session session = std::move(*at);
    sheets_->sessions.erase(at);
    if (sheet_ == sheet) detachSheet(sheet);
    if (session.ended) session.ended(code);
    presentNextSheet();
}

void NSWindow::detachSheet(NSWindow* sheet) {
    sheet->endSheets();
    // From here on the window is its own again, and takes the keys back as the sheet leaves.
    sheet_ = nullptr;
    sheet->orderWindow_relativeTo(NSWindowOut, 0);
    if (sheet->parent_ == this) sheet->detachFromParent();
    sheet->setSheetParent(nullptr);
    postDelegateNotification(NSWindowDidEndSheetNotification, op::windowDidEndSheet);
}

void NSWindow::endSheets() {
    // From the last one, so that none of those that wait comes up.
    if (!sheets_) return;
    const std::vector<Sheets::Session> now = sheets_->sessions;
    for (auto s = now.rbegin(); s != now.rend(); ++s)
        endSheet_returnCode(s->sheet, NSRunAbortedResponse);
}

// Asking.

Ref<NSArray> NSWindow::sheets() const {
    std::vector<Ref<NSWindow>> all;
    if (sheets_)
        for (const Sheets::Session& s : sheets_->sessions)
            all.push_back(s.sheet);
    return NSArray::arrayWithRefs(all);
}

NSWindow* NSWindow::sheetInFront_() const noexcept {
    NSWindow* front = nullptr;
    for (NSWindow* s = sheet_; s && s->visible_; s = s->sheet_)
        front = s;
    return front;
}

} // namespace libvue
