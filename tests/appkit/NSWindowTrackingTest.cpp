#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/foundation/NSArray.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class TrackingTest : public AppFixture {
protected:
    Ref<NSWindow> window;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        AppFixture::TearDown();
    }
    /// The window of the tool tip that is shown, or null.
    [[nodiscard]] const backend::MemoryWindow* tip() const {
        for (const backend::WindowId id : windows().stacking())
            if (const auto* w = windows().window(id); w->visible && w->spec.kind == backend::WindowKind::tooltip)
                return w;
        return nullptr;
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
    const Ref<LogView> v = viewIn(window, {{50, 50}, {100, 100}}, "v");
    v->setToolTip(u"aide"_ns);
    move(window, 60, 60);
    pass(0.79);
    EXPECT_FALSE(tip());
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
        move(window, 300, 200);
        move(window, 60, 60);
        pass(0.81);
        ASSERT_TRUE(tip());
        end();
        drain();
        EXPECT_FALSE(tip());
    }
    // Nothing comes of a rest that was interrupted.
    window->makeKeyAndOrderFront(nullptr);
    move(window, 60, 60);
    pass(0.5);
    move(window, 300, 200);
    pass(2);
    EXPECT_FALSE(tip());
}

TEST_F(TrackingTest, AToolTipAsksItsOwner) {
    const Ref<LogView> v = viewIn(window, {{50, 50}, {100, 100}}, "v");
    Ref<TipOwner> owner = make<TipOwner>();
    int data = 0;
    const NSToolTipTag tag = v->addToolTipRect_owner_userData({{10, 10}, {20, 20}}, owner, &data);
    move(window, 55, 55);
    pass(1);
    EXPECT_FALSE(tip());
    move(window, 65, 66);
    pass(1);
    EXPECT_TRUE(tip());
    EXPECT_EQ(owner->tag, tag);
    EXPECT_EQ(owner->point, NSMakePoint(15, 16));
    EXPECT_EQ(owner->userData, &data);

    move(window, 300, 200);
    owner->answer = nullptr;
    move(window, 65, 66);
    pass(1);
    EXPECT_FALSE(tip());

    move(window, 300, 200);
    move(window, 65, 66);
    owner = nullptr; // gone before it is asked
    pass(1);
    EXPECT_FALSE(tip());
    v->removeToolTip(tag);
}

TEST_F(TrackingTest, AToolTipKeepsToItsScreen) {
    window->setFrameOrigin({1300, 0});
    const Ref<LogView> v = viewIn(window, {{0, 0}, {400, 300}}, "v");
    v->setToolTip(u"une explication assez longue pour qu'elle ne tienne pas à droite du pointeur"_ns);
    windows().moveMouse({1430, 3});
    pass(1);
    ASSERT_TRUE(tip());
    EXPECT_TRUE(NSContainsRect({{0, 0}, {1440, 875}}, tip()->content));
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
    const Ref<CursorView> v = make<CursorView>(NSMakeRect(50, 50, 100, 100));
    window->contentView()->addSubview(v);
    const auto cursor = [&] { return native(window).cursor; };
    move(window, 10, 10);
    EXPECT_EQ(cursor(), backend::Cursor::arrow);
    move(window, 60, 60);
    EXPECT_EQ(cursor(), backend::Cursor::ibeam);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::IBeamCursor());
    move(window, 70, 70);
    EXPECT_EQ(v->resets, 1); // not at each move
    move(window, 130, 130);
    EXPECT_EQ(cursor(), backend::Cursor::arrow);

    v->rect = {{0, 0}, {100, 100}};
    window->invalidateCursorRectsForView(v);
    move(window, 131, 130);
    EXPECT_EQ(cursor(), backend::Cursor::ibeam);
    EXPECT_EQ(v->resets, 2);

    // A press keeps the pointer as it is; the release sets it right.
    press(window, 60, 60);
    move(window, 10, 10);
    EXPECT_EQ(cursor(), backend::Cursor::ibeam);
    release();
    EXPECT_EQ(cursor(), backend::Cursor::arrow);

    NSCursor::waitCursor()->push();
    EXPECT_EQ(cursor(), backend::Cursor::wait);
    NSCursor::popCursor();
    EXPECT_EQ(cursor(), backend::Cursor::arrow);
}

TEST_F(TrackingTest, TrackingAreasAreEnteredAndLeft) {
    const Ref<LogView> outer = viewIn(window, {{0, 0}, {200, 200}}, "outer");
    const Ref<LogView> inner = make<LogView>(NSMakeRect(50, 50, 50, 50), log, "inner");
    outer->addSubview(inner);
    for (LogView* v : {outer.get(), inner.get()})
        v->addTrackingArea(make<NSTrackingArea>(
            v->bounds(), NSTrackingMouseEnteredAndExited | NSTrackingActiveInKeyWindow, v, nullptr));
    move(window, 10, 10);
    EXPECT_THAT(taken(), ElementsAre("outer entered"));
    move(window, 60, 60);
    EXPECT_THAT(taken(), ElementsAre("inner entered"));
    move(window, 70, 60);
    EXPECT_TRUE(taken().empty());
    windows().moveMouse({5, 5}); // out of the window
    drain();
    EXPECT_THAT(taken(), ElementsAre("outer exited", "inner exited"));

    move(window, 60, 60);
    taken();
    inner->setHidden(YES);
    move(window, 61, 60);
    EXPECT_THAT(taken(), ElementsAre("inner exited"));
    outer->removeTrackingArea(outer->trackingAreas()->at<NSTrackingArea>(0));
    move(window, 300, 250);
    EXPECT_TRUE(taken().empty()); // what is not installed any more is not left
    move(window, 10, 10);

    const Ref<NSWindow> other = windowAt({{600, 100}, {100, 100}});
    inner->setHidden(NO);
    show(other);
    move(window, 60, 60);
    EXPECT_TRUE(taken().empty()); // in the key window alone
}

TEST_F(TrackingTest, AnOwnerMayRemoveTheNextAreaOrItself) {
    const Ref<LogView> a = viewIn(window, {{0, 0}, {100, 100}}, "a");
    Ref<LogView> b = make<LogView>(NSMakeRect(0, 0, 50, 50), log, "b");
    a->addSubview(b);
    for (LogView* v : {a.get(), b.get()})
        v->addTrackingRect_owner_userData_assumeInside(v->bounds(), v, nullptr, NO);
    a->onMouse = [&](NSEvent*) {
        if (b) b->removeFromSuperview();
        b = nullptr;
    };
    move(window, 10, 10);
    EXPECT_THAT(taken(), ElementsAre("a entered"));
    move(window, 300, 250);
    EXPECT_THAT(taken(), ElementsAre("a exited"));
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
    const Ref<NSView> middle = make<NSView>(NSMakeRect(0, 0, 400, 300));
    const Ref<HalfTracked> v = make<HalfTracked>(NSMakeRect(50, 50, 100, 100), log, "v");
    middle->addSubview(v);
    window->contentView()->addSubview(middle);
    move(window, 60, 60);
    EXPECT_THAT(taken(), ElementsAre("v entered"));
    move(window, 70, 70);
    EXPECT_EQ(v->asked, 1) << "while nothing has changed, it is not asked again";

    v->setFrameSize({30, 100}); // the area ends at 65 now
    move(window, 70, 71);
    EXPECT_EQ(v->asked, 2);
    EXPECT_THAT(taken(), ElementsAre("v exited"));

    middle->setFrameOrigin({20, 0}); // moved by what it stands in
    move(window, 72, 72);
    EXPECT_EQ(v->asked, 3);
    EXPECT_THAT(taken(), ElementsAre("v entered"));

    middle->setFrameSize({60, 300}); // cut off at 80
    move(window, 73, 73);
    EXPECT_EQ(v->asked, 4);
    v->removeFromSuperview();
    move(window, 74, 74);
    EXPECT_EQ(v->asked, 4);
}

TEST_F(TrackingTest, WhatScrollsUnderThePointerIsEntered) {
    const Ref<LogView> v = viewIn(window, {{200, 50}, {100, 100}}, "v");
    v->addTrackingArea(make<NSTrackingArea>(
        NSZeroRect, NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways | NSTrackingInVisibleRect, v, nullptr));
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
