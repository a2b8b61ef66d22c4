#include <appkit/Cible.h>

#include <gmock/gmock.h>

#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

std::string s(const NSRect& r) {
    char out[96];
    std::snprintf(out, sizeof out, "%g %g %g %g", r.origin.x, r.origin.y, r.size.width, r.size.height);
    return out;
}

/// Says what the tree tells it.
class Arbre : public NSView {
public:
    static void describe(ClassDescription<Arbre, NSView>& c) { c.answers<&Arbre::heard>("heard:"); }
    Arbre(const NSRect& f, Log& log, std::string name, BOOL flipped = NO)
        : NSView(f), log_(&log), name_(std::move(name)), flipped_(flipped) {}
    ~Arbre() override { NSNotificationCenter::defaultCenter()->removeObserver(this); }

    std::function<void()> onRemove, onResize, onFrame;

    BOOL isFlipped() const override { return flipped_; }
    void didAddSubview(NSView* v) override {
        NSView::didAddSubview(v);
        say("did add", v);
    }
    void willRemoveSubview(NSView* v) override {
        NSView::willRemoveSubview(v);
        say(v->superview() == this ? "will remove" : "too late", v);
        if (onRemove) std::exchange(onRemove, nullptr)();
    }
    void viewDidMoveToSuperview() override { log_->push_back(name_ + (superview() ? " in tree" : " out of tree")); }
    void viewWillMoveToWindow(NSWindow* w) override { log_->push_back(name_ + (w ? " to window" : " from window")); }
    void viewDidMoveToWindow() override { log_->push_back(name_ + (window() ? " in window" : " no window")); }
    void resizeSubviewsWithOldSize(const NSSize& old) override {
        char out[64];
        std::snprintf(out, sizeof out, " resize from %g %g", old.width, old.height);
        log_->push_back(name_ + out);
        if (onResize) onResize();
        NSView::resizeSubviewsWithOldSize(old);
    }
    void observe(NSView* v) {
        NSNotificationCenter::defaultCenter()->addObserver<&Arbre::heard>(this, NSViewFrameDidChangeNotification, v);
        NSNotificationCenter::defaultCenter()->addObserver<&Arbre::heard>(this, NSViewBoundsDidChangeNotification, v);
    }
    void heard(NSNotification* n) {
        log_->push_back(name_ + (n->name()->isEqualToString(NSViewFrameDidChangeNotification) ? " frame" : " bounds"));
        if (onFrame) onFrame();
    }
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* o, NSDictionary*, void*) override {
        log_->push_back(name_ + " " + path->utf8() + (as<NSView>(o)->isHidden() ? " yes" : " no"));
    }
    const std::string& name() const { return name_; }

private:
    void say(const char* what, NSView* v) {
        auto* a = as<Arbre>(v);
        log_->push_back(name_ + " " + what + " " + (a ? a->name_ : "?"));
    }
    Log* log_;
    std::string name_;
    BOOL flipped_;
};

class ViewTest : public AppFixture {
protected:
    Ref<Arbre> view(const NSRect& f, const char* name, BOOL flipped = NO) { return make<Arbre>(f, log, name, flipped); }
    std::string order(NSView* parent) {
        std::string out;
        for (NSView* v : parent->subviews())
            out += as<Arbre>(v)->name();
        return out;
    }
};

TEST_F(ViewTest, AChangeOfSizeIsToldInOrderAndWithinTheCall) {
    const auto a = view({{0, 0}, {100, 50}}, "a"), eye = view(NSZeroRect, "eye");
    eye->observe(a);
    struct Row {
        const char* what;
        std::function<void()> change;
        std::vector<std::string> heard;
    };
    const Row rows[] = {
        {"both",
         [&] {
             a->setFrame({{1, 2}, {80, 50}});
         },
         {"a resize from 100 50", "eye frame"}},
        {"nothing",
         [&] {
             a->setFrame({{1, 2}, {80, 50}});
         },
         {}},
        {"origin",
         [&] {
             a->setFrameOrigin({5, 5});
         },
         {"eye frame"}},
        {"size",
         [&] {
             a->setFrameSize({70, 40});
         },
         {"a resize from 80 50", "eye frame"}},
        {"bounds",
         [&] {
             a->setBoundsOrigin({3, 3});
         },
         {"eye bounds"}},
        {"no autoresizing",
         [&] {
             a->setAutoresizesSubviews(NO);
             a->setFrameSize({60, 40});
         },
         {"eye frame"}},
        {"silent",
         [&] {
             a->setAutoresizesSubviews(YES);
             a->setPostsFrameChangedNotifications(NO);
             a->setFrameSize({50, 40});
         },
         {"a resize from 60 40"}},
        {"silent bounds",
         [&] {
             a->setPostsBoundsChangedNotifications(NO);
             a->setBoundsOrigin({9, 9});
         },
         {}},
    };
    for (const Row& row : rows) {
        taken();
        row.change();
        EXPECT_EQ(taken(), row.heard) << row.what;
    }
    EXPECT_EQ(s(a->bounds()), "9 9 50 40") << "the bounds follow the frame's size";
}

TEST_F(ViewTest, TheFrameStandsWhenItIsTold) {
    const auto a = view({{0, 0}, {100, 50}}, "a");
    const auto child = view({{0, 0}, {100, 50}}, "child"), eye = view(NSZeroRect, "eye");
    child->setAutoresizingMask(NSViewWidthSizable);
    a->addSubview(child);
    eye->observe(a);
    CGFloat childWidth = 0;
    eye->onFrame = [&] { childWidth = child->frame().size.width; };
    a->setFrameSize({140, 50});
    EXPECT_EQ(childWidth, 140) << "the subviews have had their step by then";
}

TEST_F(ViewTest, AnObserverMayChangeTheSubviewsThatAreResized) {
    const auto a = view({{0, 0}, {100, 50}}, "a"), eye = view(NSZeroRect, "eye");
    Ref<Arbre> b = view({{0, 0}, {10, 10}}, "b"), c = view({{0, 0}, {20, 10}}, "c"), d = view({{0, 0}, {30, 10}}, "d");
    for (const auto& v : {b, c, d}) {
        v->setAutoresizingMask(NSViewWidthSizable);
        a->addSubview(v);
    }
    eye->observe(b);
    eye->onFrame = [&] {
        c->removeFromSuperview();
        a->addSubview(view({{0, 0}, {40, 10}}, "e"));
    };
    a->setFrameSize({110, 50});
    EXPECT_EQ(order(a), "bde");
    EXPECT_EQ(s(b->frame()), "0 0 20 10");
    EXPECT_EQ(s(c->frame()), "0 0 20 10") << "gone by then";
    EXPECT_EQ(s(d->frame()), "0 0 40 10");
    EXPECT_EQ(s(a->subviews().lastObject()->frame()), "0 0 40 10") << "it came with the new size";
    eye->onFrame = nullptr;
}

TEST_F(ViewTest, AutoresizingSharesTheChangeOut) {
    struct Row {
        NSUInteger mask;
        const char* frame;
    };
    const Row rows[] = {
        {0, "10 10 20 20"},
        {NSViewMinXMargin, "40 10 20 20"},
        {NSViewMaxXMargin, "10 10 20 20"},
        {NSViewWidthSizable, "10 10 50 20"},
        {NSViewMinXMargin | NSViewMaxXMargin, "25 10 20 20"},
        {NSViewMinXMargin | NSViewWidthSizable, "25 10 35 20"},
        {NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin, "20 10 30 20"},
        {NSViewHeightSizable, "10 10 20 80"},
        {NSViewMinYMargin, "10 70 20 20"},
        {NSViewMinYMargin | NSViewMaxYMargin | NSViewWidthSizable, "10 40 50 20"},
    };
    for (const Row& row : rows) {
        const auto a = view({{0, 0}, {100, 40}}, "a"), b = view({{10, 10}, {20, 20}}, "b");
        b->setAutoresizingMask(row.mask);
        a->addSubview(b);
        a->setFrameSize({130, 100});
        EXPECT_EQ(s(b->frame()), row.frame) << row.mask;
        a->setFrameSize({100, 40});
        EXPECT_EQ(s(b->frame()), "10 10 20 20") << "and back: " << row.mask;
    }
}

TEST_F(ViewTest, MovesAreToldInOrder) {
    const auto window = windowAt({{100, 100}, {300, 200}});
    const auto root = view({{0, 0}, {100, 100}}, "root"), a = view({{0, 0}, {10, 10}}, "a"),
               b = view({{0, 0}, {5, 5}}, "b");
    a->addSubview(b);
    window->contentView()->addSubview(root);
    taken();
    root->addSubview(a);
    EXPECT_THAT(taken(),
                ElementsAre("a to window", "b to window", "b in window", "a in window", "a in tree", "root did add a"));
    EXPECT_EQ(a->nextResponder(), root.get());
    a->removeFromSuperview();
    EXPECT_THAT(taken(), ElementsAre("root will remove a", "a from window", "b from window", "b no window",
                                     "a no window", "a out of tree"));
    EXPECT_EQ(a->nextResponder(), nullptr);
    EXPECT_EQ(b->window(), nullptr);
    a->removeFromSuperview(); // in no tree
    EXPECT_TRUE(taken().empty());
    // From one tree to another.
    const auto other = view({{0, 0}, {50, 50}}, "other");
    root->addSubview(a);
    taken();
    other->addSubview(a);
    EXPECT_EQ(log.front(), "root will remove a");
    EXPECT_EQ(log.back(), "other did add a");
    EXPECT_EQ(a->superview(), other.get());
    EXPECT_TRUE(root->subviews().empty());
}

TEST_F(ViewTest, TheOrderOfSubviews) {
    const auto root = view({{0, 0}, {100, 100}}, "root"), a = view(NSZeroRect, "a"), b = view(NSZeroRect, "b"),
               c = view(NSZeroRect, "c"), d = view(NSZeroRect, "d");
    for (const auto& v : {a, b, c})
        root->addSubview(v);
    root->addSubview(a); // to the front
    EXPECT_EQ(order(root), "bca");
    root->addSubview_positioned_relativeTo(a, NSWindowBelow, c);
    EXPECT_EQ(order(root), "bac");
    root->addSubview_positioned_relativeTo(b, NSWindowAbove, a);
    EXPECT_EQ(order(root), "abc");
    root->addSubview_positioned_relativeTo(d, NSWindowBelow, nullptr);
    EXPECT_EQ(order(root), "dabc");
    root->replaceSubview_with(b, d); // one that stood before it
    EXPECT_EQ(order(root), "adc");
    root->replaceSubview_with(a, b);
    EXPECT_EQ(order(root), "bdc");
    root->setSubviews(NSArray::arrayWithObjects({c.get(), a.get(), b.get()}));
    EXPECT_EQ(order(root), "cab");
    EXPECT_EQ(d->superview(), nullptr);
    root->setSubviews(nullptr);
    EXPECT_EQ(order(root), "");
}

TEST_F(ViewTest, WhatCannotBeATreeIsRefused) {
    const auto root = view({{0, 0}, {100, 100}}, "root"), a = view(NSZeroRect, "a"), b = view(NSZeroRect, "b");
    root->addSubview(a);
    a->addSubview(b);
    EXPECT_THROW(root->addSubview(nullptr), NSExceptionRaised);
    EXPECT_THROW(b->addSubview(root), NSExceptionRaised);
    EXPECT_THROW(a->addSubview(a), NSExceptionRaised);
    EXPECT_THROW(root->replaceSubview_with(b, nullptr), NSExceptionRaised);
    EXPECT_THROW(a->replaceSubview_with(b, root), NSExceptionRaised);
    EXPECT_EQ(b->superview(), a.get()) << "a refused replacement leaves the tree as it was";
    EXPECT_TRUE(b->isDescendantOf(root));
    EXPECT_TRUE(b->isDescendantOf(b));
    EXPECT_FALSE(root->isDescendantOf(b));
}

TEST_F(ViewTest, ASuperviewMayActOnARemoval) {
    const auto root = view({{0, 0}, {100, 100}}, "root"), other = view(NSZeroRect, "other");
    auto a = view(NSZeroRect, "a");
    root->addSubview(a);
    root->onRemove = [&] { other->addSubview(a); };
    a->removeFromSuperview();
    EXPECT_EQ(a->superview(), other.get()) << "it was put elsewhere on the way";
    EXPECT_TRUE(root->subviews().empty());
    Weak<NSView> weak(a.get());
    a = nullptr;
    other->setSubviews(nullptr);
    EXPECT_EQ(weak.get(), nullptr);
}

TEST_F(ViewTest, ViewsThatDieOnTheWayAreNotMissed) {
    const auto root = view({{0, 0}, {100, 100}}, "root");
    for (const char* n : {"a", "b", "c"})
        root->addSubview(view({{0, 0}, {10, 10}}, n));
    for (const auto& v : root->subviews().copy()) // a copy may be walked while the tree changes
        v->removeFromSuperview();
    EXPECT_TRUE(root->subviews().empty());
    // A branch whose root dies leaves its survivors without superview.
    auto parent = view({{0, 0}, {10, 10}}, "p");
    const auto child = view({{0, 0}, {5, 5}}, "child");
    parent->addSubview(child);
    taken();
    parent = nullptr;
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->nextResponder(), nullptr);
    EXPECT_THAT(taken(), ElementsAre("child out of tree"));
}

TEST_F(ViewTest, HitTestFindsTheDeepestAndFrontmost) {
    const auto root = view({{10, 10}, {100, 100}}, "root"), back = view({{0, 0}, {60, 60}}, "back"),
               front = view({{40, 40}, {60, 60}}, "front", YES), leaf = view({{0, 0}, {10, 10}}, "leaf");
    root->addSubview(back);
    root->addSubview(front);
    front->addSubview(leaf);
    struct Row {
        NSPoint p;
        NSView* found;
    };
    const auto check = [&](std::initializer_list<Row> rows) {
        for (const Row& r : rows)
            EXPECT_EQ(root->hitTest(r.p), r.found) << r.p.x << " " << r.p.y;
    };
    check({{{9, 9}, nullptr},
           {{10, 10}, back.get()},
           {{110, 50}, nullptr},
           {{109, 12}, root.get()},
           {{55, 55}, front.get()},
           {{52, 108}, leaf.get()}}); // at the top: the front view runs downward
    front->setHidden(YES);
    check({{{55, 55}, back.get()}, {{100, 100}, root.get()}});
    root->setHidden(YES);
    check({{{55, 55}, nullptr}});
}

TEST_F(ViewTest, Conversions) {
    const auto window = windowAt({{100, 100}, {300, 200}});
    const auto plain = view({{10, 20}, {100, 80}}, "plain"), flipped = view({{5, 5}, {50, 40}}, "flipped", YES),
               scaled = view({{10, 10}, {20, 20}}, "scaled");
    window->contentView()->addSubview(plain);
    plain->addSubview(flipped);
    flipped->addSubview(scaled);
    scaled->setBounds({{100, 100}, {40, 40}}); // two units a point
    const NSRect unit{{0, 0}, {10, 5}};
    EXPECT_EQ(s(plain->convertRect_toView(unit, nullptr)), "10 20 10 5");
    EXPECT_EQ(s(flipped->convertRect_toView(unit, plain)), "5 40 10 5");
    EXPECT_EQ(s(flipped->convertRect_toView(unit, nullptr)), "15 60 10 5");
    // The scaled view runs upward again, from 30 down to 10 below the flipped view's top.
    EXPECT_EQ(s(scaled->convertRect_toView({{100, 100}, {20, 10}}, flipped)), "10 25 10 5");
    const NSPoint p = scaled->convertPoint_fromView({10, 30}, flipped);
    EXPECT_DOUBLE_EQ(p.x, 100);
    EXPECT_DOUBLE_EQ(p.y, 100);
    for (NSView* from :
         {static_cast<NSView*>(plain.get()), static_cast<NSView*>(flipped.get()), static_cast<NSView*>(scaled.get())})
        for (NSView* to :
             {static_cast<NSView*>(plain.get()), static_cast<NSView*>(scaled.get()), static_cast<NSView*>(nullptr)}) {
            const NSRect r = from->convertRect_fromView(from->convertRect_toView({{3, 4}, {5, 6}}, to), to);
            EXPECT_NEAR(r.origin.x, 3, 1e-9);
            EXPECT_NEAR(r.origin.y, 4, 1e-9);
            EXPECT_NEAR(r.size.height, 6, 1e-9);
        }
}

TEST_F(ViewTest, TheVisibleRectIsWhatTheAncestorsLeave) {
    const auto root = view({{0, 0}, {100, 100}}, "root"), a = view({{80, 80}, {50, 50}}, "a", YES),
               b = view({{-10, 0}, {30, 60}}, "b");
    root->addSubview(a);
    a->addSubview(b);
    EXPECT_EQ(s(a->visibleRect()), "0 30 20 20");
    EXPECT_EQ(s(b->visibleRect()), "10 10 20 20");
    root->setBoundsOrigin({90, 90}); // scrolled
    EXPECT_EQ(s(a->visibleRect()), "10 0 40 40");
    root->setHidden(YES);
    EXPECT_EQ(s(b->visibleRect()), "0 0 0 0");
    root->setHidden(NO);
    a->setFrameOrigin({300, 300});
    EXPECT_TRUE(NSIsEmptyRect(b->visibleRect()));
}

TEST_F(ViewTest, HiddenIsObservable) {
    const auto a = view({{0, 0}, {10, 10}}, "a"), eye = view(NSZeroRect, "eye");
    a->addObserver_forKeyPath_options_context(eye, u"hidden"_ns, 0, nullptr);
    taken();
    a->setHidden(YES);
    a->setHidden(YES);
    a->setHidden(NO);
    EXPECT_THAT(taken(), ElementsAre("eye hidden yes", "eye hidden no"));
    a->removeObserver_forKeyPath(eye, u"hidden"_ns);
    a->setHidden(YES);
    EXPECT_TRUE(taken().empty());
}

} // namespace
