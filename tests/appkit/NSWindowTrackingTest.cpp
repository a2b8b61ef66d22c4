#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSTrackingArea.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

struct TrackingTest : WindowFixture {
    Ref<LogView> v = viewIn(window, {{50, 50}, {100, 100}}, "v");

    /// The window of the tool tip that is shown, or null.
    [[nodiscard]] const backend::MemoryWindow* tip() const {
        for (const backend::WindowId id : windows().stacking())
            if (const auto* w = windows().window(id); w->visible && w->spec.kind == backend::WindowKind::tooltip)
                return w;
        return nullptr;
    }
    /// Whether one shows after a rest there, coming from outside.
    [[nodiscard]] bool tipAt(CGFloat x, CGFloat y, NSTimeInterval rest = 1) const {
        move(window, 300, 200);
        move(window, x, y);
        pass(rest);
        return tip();
    }
    static void track(NSView* view, NSUInteger options = NSTrackingActiveAlways) {
        view->addTrackingArea(
            make<NSTrackingArea>(view->bounds(), NSTrackingMouseEnteredAndExited | options, view, nullptr));
    }
};

class TipOwner : public NSObject {
public:
    static void describe(ClassDescription<TipOwner>& c) {
        c.answers<&TipOwner::text>(op::view_stringForToolTip_point_userData);
    }
    Ref<NSString> text(NSView*, NSToolTipTag t, NSPoint p, void* data) {
        tag = t;
        point = p;
        userData = data;
        return answer;
    }
    Ref<NSString> answer = u"une bulle"_ns;
    NSToolTipTag tag = 0;
    NSPoint point;
    void* userData = nullptr;
};

TEST_F(TrackingTest, AToolTipShowsAfterARestAndGoesWithTheNextThing) {
    v->setToolTip(u"aide"_ns);
    EXPECT_FALSE(tipAt(60, 60, 0.79));
    move(window, 70, 70); // moving inside of the same view starts nothing anew
    pass(0.02);
    ASSERT_TRUE(tip());
    EXPECT_TRUE(tip()->ignoresMouse);
    EXPECT_LT(NSMaxY(tip()->content), window->convertBaseToScreen({70, 70}).y);
    EXPECT_TRUE(window->isKeyWindow());

    const std::function<void()> endings[] = {
        [&] { move(window, 300, 200); }, [&] { windows().key(u'x'); },       [&] { click(window, 60, 60); },
        [&] { windows().wheel(0, 1); },  [&] { window->orderOut(nullptr); },
    };
    for (const auto& end : endings) {
        window->makeKeyAndOrderFront(nullptr);
        ASSERT_TRUE(tipAt(60, 60, 0.81));
        end();
        drain();
        EXPECT_FALSE(tip());
    }
    window->makeKeyAndOrderFront(nullptr);
    EXPECT_FALSE(tipAt(60, 60, 0.5));
    EXPECT_FALSE(tipAt(300, 200, 2)) << "nothing comes of a rest that was interrupted";

    window->setFrameOrigin({1300, 0}); // over the edge of the screen
    v->setFrame({{0, 0}, {400, 300}});
    v->setToolTip(u"une explication assez longue pour qu'elle ne tienne pas à droite du pointeur"_ns);
    windows().moveMouse({1430, 3});
    pass(1);
    ASSERT_TRUE(tip());
    EXPECT_TRUE(NSContainsRect({{0, 0}, {1440, 875}}, tip()->content));
}

TEST_F(TrackingTest, AToolTipAsksItsOwner) {
    Ref<TipOwner> owner = make<TipOwner>();
    int data = 0;
    const NSToolTipTag tag = v->addToolTipRect_owner_userData({{10, 10}, {20, 20}}, owner, &data);
    EXPECT_FALSE(tipAt(55, 55));
    EXPECT_TRUE(tipAt(65, 66));
    EXPECT_EQ(owner->tag, tag);
    EXPECT_EQ(owner->point, NSMakePoint(15, 16));
    EXPECT_EQ(owner->userData, &data);
    owner->answer = nullptr;
    EXPECT_FALSE(tipAt(65, 66));
    EXPECT_FALSE(tipAt(65, 66, 0));
    owner = nullptr; // gone before it is asked
    pass(1);
    EXPECT_FALSE(tip());
    v->removeToolTip(tag);
}

class CursorView : public NSView {
public:
    static void describe(ClassDescription<CursorView, NSView>&) {}
    using NSView::NSView;
    void resetCursorRects() override {
        ++resets;
        addCursorRect_cursor(rect, NSCursor::IBeamCursor());
    }
    NSRect rect{{0, 0}, {50, 50}};
    int resets = 0;
};

TEST_F(TrackingTest, CursorRectanglesRule) {
    using backend::Cursor;
    const Ref<CursorView> field = add<CursorView>({{50, 50}, {100, 100}});
    const auto at = [&](CGFloat x, CGFloat y) {
        move(window, x, y);
        return native(window).cursor;
    };
    EXPECT_EQ(at(10, 10), Cursor::arrow);
    EXPECT_EQ(at(60, 60), Cursor::ibeam);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::IBeamCursor());
    EXPECT_EQ(at(70, 70), Cursor::ibeam);
    EXPECT_EQ(field->resets, 1); // not at each move
    EXPECT_EQ(at(130, 130), Cursor::arrow);
    field->rect = {{0, 0}, {100, 100}};
    window->invalidateCursorRectsForView(field);
    EXPECT_EQ(at(131, 130), Cursor::ibeam);
    EXPECT_EQ(field->resets, 2);

    // A press keeps the pointer as it is; the release sets it right.
    press(window, 60, 60);
    EXPECT_EQ(at(10, 10), Cursor::ibeam);
    release();
    EXPECT_EQ(native(window).cursor, Cursor::arrow);
    NSCursor::waitCursor()->push();
    EXPECT_EQ(native(window).cursor, Cursor::wait);
    NSCursor::popCursor();
    EXPECT_EQ(native(window).cursor, Cursor::arrow);
}

TEST_F(TrackingTest, TrackingAreasAreEnteredAndLeft) {
    const Ref<LogView> inner = make<LogView>(NSMakeRect(50, 50, 40, 40), log, "inner");
    v->addSubview(inner);
    track(v, NSTrackingActiveInKeyWindow);
    track(inner, NSTrackingActiveInKeyWindow);
    const auto at = [&](CGFloat x, CGFloat y) {
        move(window, x, y);
        return taken();
    };
    EXPECT_THAT(at(60, 60), ElementsAre("v entered"));
    EXPECT_THAT(at(110, 110), ElementsAre("inner entered"));
    EXPECT_THAT(at(120, 110), ElementsAre());
    EXPECT_THAT(at(-50, -50), ElementsAre("v exited", "inner exited")); // out of the window
    at(110, 110);
    inner->setHidden(YES);
    EXPECT_THAT(at(111, 110), ElementsAre("inner exited"));
    v->removeTrackingArea(v->trackingAreas()->at<NSTrackingArea>(0));
    EXPECT_THAT(at(300, 250), ElementsAre()) << "what is not installed any more is not left";
    inner->setHidden(NO);
    const Ref<NSWindow> other = windowAt({{600, 100}, {100, 100}});
    show(other);
    EXPECT_THAT(at(110, 110), ElementsAre()) << "in the key window alone";
}

TEST_F(TrackingTest, AnOwnerMayRemoveTheNextAreaOrItself) {
    Ref<LogView> b = make<LogView>(NSMakeRect(0, 0, 50, 50), log, "b");
    v->addSubview(b);
    for (LogView* view : {v.get(), b.get()})
        track(view);
    v->onMouse = [&](NSEvent*) {
        if (b) b->removeFromSuperview();
        b = nullptr;
    };
    move(window, 60, 60);
    move(window, 300, 250);
    EXPECT_THAT(taken(), ElementsAre("v entered", "v exited"));
}

/// Keeps an area over its left half, and counts how often it was asked for it.
class HalfTracked : public LogView {
public:
    static void describe(ClassDescription<HalfTracked, LogView>&) {}
    using LogView::LogView;
    int asked = 0;
    void updateTrackingAreas() override {
        ++asked;
        if (area_) removeTrackingArea(area_);
        NSRect left = bounds();
        left.size.width /= 2;
        area_ = make<NSTrackingArea>(left, NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, this, nullptr);
        addTrackingArea(area_);
    }

private:
    Ref<NSTrackingArea> area_;
};

TEST_F(TrackingTest, AViewBringsItsAreasUpToDateBeforeThePointerIsTold) {
    const Ref<NSView> middle = add<NSView>({{0, 0}, {400, 300}});
    const Ref<HalfTracked> half = make<HalfTracked>(NSMakeRect(50, 50, 100, 100), log, "half");
    middle->addSubview(half);
    CGFloat y = 60;
    const auto hears = [&](CGFloat x, int asked, const Log& heard) {
        move(window, x, ++y);
        EXPECT_EQ(half->asked, asked) << x;
        EXPECT_EQ(taken(), heard) << x;
    };
    hears(60, 1, {"half entered"});
    hears(70, 1, {});              // while nothing has changed, it is not asked again
    half->setFrameSize({30, 100}); // the area ends at 65 now
    hears(70, 2, {"half exited"});
    middle->setFrameOrigin({20, 0}); // moved by what it stands in
    hears(72, 3, {"half entered"});
    middle->setFrameSize({60, 300}); // cut off at 80
    hears(73, 4, {});
    half->removeFromSuperview();
    hears(74, 4, {"half exited"});
}

TEST_F(TrackingTest, WhatScrollsUnderThePointerIsEntered) {
    v->setFrameOrigin({200, 50});
    track(v, NSTrackingActiveAlways | NSTrackingInVisibleRect);
    const Ref<LogView> wheel = viewIn(window, {{0, 0}, {150, 300}}, "wheel");
    wheel->onMouse = [&](NSEvent* e) {
        if (e->type() == NSScrollWheel) v->setFrameOrigin({20, 50});
    };
    window->contentView()->addSubview(v); // in front
    move(window, 60, 60);
    windows().wheel(0, 1);
    drain();
    EXPECT_THAT(taken(), ElementsAre("wheel wheel", "v entered"));
}

} // namespace
