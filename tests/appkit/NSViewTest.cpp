#include <appkit/AppFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Says what the tree tells it.
class Arbre : public NSView {
public:
    static void describe(ClassDescription<Arbre, NSView>& c) { c.answers<&Arbre::heard>("heard:"); }
    Arbre(const NSRect& f, Log& log, std::string name, BOOL flipped)
        : NSView(f), log_(&log), name_(std::move(name)), flipped_(flipped) {}
    ~Arbre() override { NSNotificationCenter::defaultCenter()->removeObserver(this); }

    std::function<void()> onRemove, onFrame;

    BOOL isFlipped() const override { return flipped_; }
    void didAddSubview(NSView* v) override { say(" did add " + as<Arbre>(v)->name_); }
    void willRemoveSubview(NSView* v) override {
        say((v->superview() == this ? " will remove " : " removes too late ") + as<Arbre>(v)->name_);
        if (onRemove) std::exchange(onRemove, nullptr)();
    }
    void viewDidMoveToSuperview() override { say(superview() ? " in tree" : " out of tree"); }
    void viewWillMoveToWindow(NSWindow* w) override { say(w ? " to window" : " from window"); }
    void viewDidMoveToWindow() override { say(window() ? " in window" : " no window"); }
    void viewDidHide() override { say(" hides"); }
    void viewDidUnhide() override { say(" shows"); }
    void resizeSubviewsWithOldSize(const NSSize& old) override {
        say(" resize from " + NSStringFromSize(old)->utf8());
        NSView::resizeSubviewsWithOldSize(old);
    }
    void observe(NSView* v) {
        NSNotificationCenter::defaultCenter()->addObserver<&Arbre::heard>(this, NSViewFrameDidChangeNotification, v);
        NSNotificationCenter::defaultCenter()->addObserver<&Arbre::heard>(this, NSViewBoundsDidChangeNotification, v);
    }
    void heard(NSNotification* n) {
        say(n->name()->isEqualToString(NSViewFrameDidChangeNotification) ? " frame" : " bounds");
        if (onFrame) onFrame();
    }
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* o, NSDictionary*, void*) override {
        say(" " + path->utf8() + (as<NSView>(o)->isHidden() ? " yes" : " no"));
    }
    const std::string& name() const { return name_; }

private:
    void say(const std::string& what) { log_->push_back(name_ + what); }
    Log* log_;
    std::string name_;
    BOOL flipped_;
};

struct ViewTest : AppFixture {
    Ref<Arbre> view(const char* name, const NSRect& f = NSZeroRect, BOOL flipped = NO) {
        return make<Arbre>(f, log, name, flipped);
    }
    static std::string order(NSView* parent) {
        std::string out;
        for (NSView* v : parent->subviews())
            out += as<Arbre>(v)->name();
        return out;
    }
};

TEST_F(ViewTest, AChangeIsToldInOrderAndWithinTheCall) {
    const auto a = view("a", {{0, 0}, {100, 50}}), eye = view("eye"), child = view("child", {{0, 0}, {100, 50}});
    eye->observe(a);
    child->setAutoresizingMask(NSViewWidthSizable);
    a->addSubview(child);
    child->setAutoresizesSubviews(NO);
    const auto hears = [&](const char* what, const std::function<void()>& change, const Log& heard) {
        taken();
        change();
        EXPECT_EQ(taken(), heard) << what;
    };
    CGFloat childWidth = 0;
    eye->onFrame = [&] { childWidth = child->frame().size.width; };
    hears("both", [&] { a->setFrame({{1, 2}, {80, 50}}); }, {"a resize from {100, 50}", "eye frame"});
    EXPECT_EQ(childWidth, 80) << "the subviews have had their step when it is told";
    hears("nothing", [&] { a->setFrame({{1, 2}, {80, 50}}); }, {});
    hears("origin", [&] { a->setFrameOrigin({5, 5}); }, {"eye frame"});
    hears("size", [&] { a->setFrameSize({70, 40}); }, {"a resize from {80, 50}", "eye frame"});
    hears("bounds", [&] { a->setBoundsOrigin({3, 3}); }, {"eye bounds"});
    a->setAutoresizesSubviews(NO);
    hears("no autoresizing", [&] { a->setFrameSize({60, 40}); }, {"eye frame"});
    a->setAutoresizesSubviews(YES);
    a->setPostsFrameChangedNotifications(NO);
    hears("silent", [&] { a->setFrameSize({50, 40}); }, {"a resize from {60, 40}"});
    a->setPostsBoundsChangedNotifications(NO);
    hears("silent bounds", [&] { a->setBoundsOrigin({9, 9}); }, {});
    EXPECT_EQ(a->bounds(), NSMakeRect(9, 9, 50, 40)) << "the bounds follow the frame's size";

    a->addObserver_forKeyPath_options_context(eye, u"hidden"_ns, 0, nullptr);
    hears("hidden", [&] { a->setHidden(YES); }, {"a hides", "child hides", "eye hidden yes"});
    hears("already", [&] { a->setHidden(YES); }, {});
    a->removeObserver_forKeyPath(eye, u"hidden"_ns);
    hears("nobody looks", [&] { a->setHidden(NO); }, {"a shows", "child shows"});
}

TEST_F(ViewTest, AnObserverMayChangeTheSubviewsThatAreResized) {
    const auto a = view("a", {{0, 0}, {100, 50}}), eye = view("eye");
    const auto b = view("b", {{0, 0}, {10, 10}}), c = view("c", {{0, 0}, {20, 10}}), d = view("d", {{0, 0}, {30, 10}});
    for (const auto& v : {b, c, d}) {
        v->setAutoresizingMask(NSViewWidthSizable);
        a->addSubview(v);
    }
    eye->observe(b);
    eye->onFrame = [&] {
        c->removeFromSuperview();
        a->addSubview(view("e", {{0, 0}, {40, 10}}));
    };
    a->setFrameSize({110, 50});
    EXPECT_EQ(order(a), "bde");
    EXPECT_EQ(b->frame().size.width, 20);
    EXPECT_EQ(c->frame().size.width, 20) << "gone by then";
    EXPECT_EQ(d->frame().size.width, 40);
    EXPECT_EQ(a->subviews().lastObject()->frame().size.width, 40) << "it came with the new size";
}

TEST_F(ViewTest, AutoresizingSharesTheChangeOut) {
    struct Row {
        NSUInteger mask;
        NSRect frame;
    };
    for (const Row& row : {Row{0, {{10, 10}, {20, 20}}}, Row{NSViewMinXMargin, {{40, 10}, {20, 20}}},
                           Row{NSViewMaxXMargin, {{10, 10}, {20, 20}}}, Row{NSViewWidthSizable, {{10, 10}, {50, 20}}},
                           Row{NSViewMinXMargin | NSViewMaxXMargin, {{25, 10}, {20, 20}}},
                           Row{NSViewMinXMargin | NSViewWidthSizable, {{25, 10}, {35, 20}}},
                           Row{NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin, {{20, 10}, {30, 20}}},
                           Row{NSViewHeightSizable, {{10, 10}, {20, 80}}}, Row{NSViewMinYMargin, {{10, 70}, {20, 20}}},
                           Row{NSViewMinYMargin | NSViewMaxYMargin | NSViewWidthSizable, {{10, 40}, {50, 20}}}}) {
        const auto a = view("a", {{0, 0}, {100, 40}}), b = view("b", {{10, 10}, {20, 20}});
        b->setAutoresizingMask(row.mask);
        a->addSubview(b);
        a->setFrameSize({130, 100});
        EXPECT_EQ(b->frame(), row.frame) << row.mask;
        a->setFrameSize({100, 40});
        EXPECT_EQ(b->frame(), NSMakeRect(10, 10, 20, 20)) << "and back: " << row.mask;
    }
}

TEST_F(ViewTest, MovesAreToldInOrder) {
    const auto window = windowAt({{100, 100}, {300, 200}});
    const auto root = view("root"), a = view("a"), b = view("b"), other = view("other");
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
    a->removeFromSuperview(); // in no tree
    EXPECT_THAT(taken(), ElementsAre());
    root->addSubview(a);
    taken();
    other->addSubview(a); // from one tree to another
    EXPECT_EQ(log.front(), "root will remove a");
    EXPECT_EQ(log.back(), "other did add a");
    EXPECT_EQ(order(root) + "/" + order(other), "/a");
}

TEST_F(ViewTest, HidingIsToldToAllThatGoOutOfSight) {
    const auto root = view("root"), a = view("a"), b = view("b"), hidden = view("hidden"), other = view("other");
    hidden->setHidden(YES);
    other->setHidden(YES);
    a->addSubview(b);
    root->addSubview(a);
    root->addSubview(hidden);
    const auto heard = [&](const std::function<void()>& act) {
        taken();
        act();
        Log all = taken();
        std::erase_if(all, [](const std::string& s) { return !s.ends_with(" hides") && !s.ends_with(" shows"); });
        return all;
    };
    EXPECT_THAT(heard([&] { root->setHidden(YES); }), ElementsAre("root hides", "a hides", "b hides"));
    EXPECT_THAT(heard([&] { a->setHidden(YES); }), ElementsAre()) << "it was out of sight already";
    EXPECT_THAT(heard([&] { root->setHidden(NO); }), ElementsAre("root shows"));
    EXPECT_THAT(heard([&] { a->setHidden(NO); }), ElementsAre("a shows", "b shows"));
    EXPECT_THAT(heard([&] { other->addSubview(a); }), ElementsAre("a hides", "b hides"));
    EXPECT_THAT(heard([&] { a->removeFromSuperview(); }), ElementsAre("a shows", "b shows"));
}

TEST_F(ViewTest, TheOrderOfSubviews) {
    const auto root = view("root"), a = view("a"), b = view("b"), c = view("c"), d = view("d");
    for (const auto& v : {a, b, c})
        root->addSubview(v);
    const auto becomes = [&](const char* wanted, const std::function<void()>& change) {
        change();
        EXPECT_EQ(order(root), wanted);
    };
    becomes("bca", [&] { root->addSubview(a); }); // to the front
    becomes("bac", [&] { root->addSubview_positioned_relativeTo(a, NSWindowBelow, c); });
    becomes("abc", [&] { root->addSubview_positioned_relativeTo(b, NSWindowAbove, a); });
    becomes("dabc", [&] { root->addSubview_positioned_relativeTo(d, NSWindowBelow, nullptr); });
    becomes("adc", [&] { root->replaceSubview_with(b, d); }); // one that stood before it
    becomes("bdc", [&] { root->replaceSubview_with(a, b); });
    becomes("cab", [&] { root->setSubviews(NSArray::arrayWithObjects({c.get(), a.get(), b.get()})); });
    EXPECT_EQ(d->superview(), nullptr);
    becomes("", [&] { root->setSubviews(nullptr); });
}

TEST_F(ViewTest, WhatCannotBeATreeIsRefused) {
    const auto root = view("root"), a = view("a"), b = view("b");
    root->addSubview(a);
    a->addSubview(b);
    for (const std::function<void()>& wrong : std::initializer_list<std::function<void()>>{
             [&] { root->addSubview(nullptr); }, [&] { b->addSubview(root); }, [&] { a->addSubview(a); },
             [&] { root->replaceSubview_with(b, nullptr); }, [&] { a->replaceSubview_with(b, root); }})
        EXPECT_EQ(valeurs::raised(wrong), "NSInvalidArgumentException");
    EXPECT_EQ(b->superview(), a.get()) << "a refused replacement leaves the tree as it was";
    EXPECT_TRUE(b->isDescendantOf(root) && b->isDescendantOf(b));
    EXPECT_FALSE(root->isDescendantOf(b));
}

TEST_F(ViewTest, ViewsMayGoElsewhereOrDieOnTheWay) {
    const auto root = view("root"), other = view("other"), child = view("child");
    auto a = view("a");
    root->addSubview(a);
    root->onRemove = [&] { other->addSubview(a); };
    a->removeFromSuperview();
    EXPECT_EQ(order(root) + "/" + order(other), "/a") << "it was put elsewhere on the way";
    const Weak<NSView> weak(a.get());
    a = nullptr;
    other->setSubviews(nullptr);
    EXPECT_EQ(weak.get(), nullptr);

    for (const char* n : {"a", "b", "c"})
        root->addSubview(view(n));
    for (const auto& v : root->subviews().copy()) // a copy may be walked while the tree changes
        v->removeFromSuperview();
    EXPECT_TRUE(root->subviews().empty());
    {
        const auto parent = view("p");
        parent->addSubview(child);
        taken();
    }
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->nextResponder(), nullptr);
    EXPECT_THAT(taken(), ElementsAre("child out of tree"));
}

TEST_F(ViewTest, HitTestFindsTheDeepestAndFrontmost) {
    const auto root = view("root", {{10, 10}, {100, 100}}), back = view("back", {{0, 0}, {60, 60}}),
               front = view("front", {{40, 40}, {60, 60}}, YES), leaf = view("leaf", {{0, 0}, {10, 10}});
    root->addSubview(back);
    root->addSubview(front);
    front->addSubview(leaf);
    const auto at = [&](CGFloat x, CGFloat y) {
        auto* v = as<Arbre>(root->hitTest({x, y}));
        return v ? v->name() : "none";
    };
    struct Row {
        CGFloat x, y;
        const char* found;
    };
    for (const Row& r : {Row{9, 9, "none"}, Row{10, 10, "back"}, Row{110, 50, "none"}, Row{109, 12, "root"},
                         Row{55, 55, "front"}, Row{52, 108, "leaf"}}) // the front view runs downward
        EXPECT_EQ(at(r.x, r.y), r.found) << r.x << " " << r.y;
    front->setHidden(YES);
    EXPECT_EQ(at(55, 55) + at(100, 100), "backroot");
    root->setHidden(YES);
    EXPECT_EQ(at(55, 55), "none");
}

TEST_F(ViewTest, Conversions) {
    const auto window = windowAt({{100, 100}, {300, 200}});
    const auto plain = view("plain", {{10, 20}, {100, 80}}), flipped = view("flipped", {{5, 5}, {50, 40}}, YES),
               scaled = view("scaled", {{10, 10}, {20, 20}});
    window->contentView()->addSubview(plain);
    plain->addSubview(flipped);
    flipped->addSubview(scaled);
    scaled->setBounds({{100, 100}, {40, 40}}); // two units a point
    const NSRect unit{{0, 0}, {10, 5}};
    EXPECT_EQ(plain->convertRect_toView(unit, nullptr), NSMakeRect(10, 20, 10, 5));
    EXPECT_EQ(flipped->convertRect_toView(unit, plain), NSMakeRect(5, 40, 10, 5));
    EXPECT_EQ(flipped->convertRect_toView(unit, nullptr), NSMakeRect(15, 60, 10, 5));
    // The scaled view runs upward again, from 30 down to 10 below the flipped view's top.
    EXPECT_EQ(scaled->convertRect_toView({{100, 100}, {20, 10}}, flipped), NSMakeRect(10, 25, 10, 5));
    EXPECT_EQ(scaled->convertPoint_fromView({10, 30}, flipped), NSMakePoint(100, 100));
    for (NSView* from : std::initializer_list<NSView*>{plain, flipped, scaled})
        for (NSView* to : std::initializer_list<NSView*>{plain, scaled, nullptr}) {
            const NSRect r = from->convertRect_fromView(from->convertRect_toView({{3, 4}, {5, 6}}, to), to);
            EXPECT_NEAR(r.origin.x, 3, 1e-9);
            EXPECT_NEAR(r.origin.y, 4, 1e-9);
            EXPECT_NEAR(r.size.height, 6, 1e-9);
        }
}

TEST_F(ViewTest, TheVisibleRectIsWhatTheAncestorsLeave) {
    const auto root = view("root", {{0, 0}, {100, 100}}), a = view("a", {{80, 80}, {50, 50}}, YES),
               b = view("b", {{-10, 0}, {30, 60}});
    root->addSubview(a);
    a->addSubview(b);
    EXPECT_EQ(a->visibleRect(), NSMakeRect(0, 30, 20, 20));
    EXPECT_EQ(b->visibleRect(), NSMakeRect(10, 10, 20, 20));
    root->setBoundsOrigin({90, 90}); // scrolled
    EXPECT_EQ(a->visibleRect(), NSMakeRect(10, 0, 40, 40));
    root->setHidden(YES);
    EXPECT_EQ(b->visibleRect(), NSZeroRect);
    root->setHidden(NO);
    a->setFrameOrigin({300, 300});
    EXPECT_TRUE(NSIsEmptyRect(b->visibleRect()));
}

} // namespace
