#include <appkit/AppFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

struct SheetTest : AppFixture {
    Ref<NSWindow> owner = windowAt({{200, 300}, {400, 300}}), sheet = panel({300, 120});
    std::vector<NSInteger> codes;

    SheetTest() { show(owner); }
    ~SheetTest() override {
        owner = sheet = nullptr;
        NSApplication::resetSharedApplication();
    }
    void TearDown() override {}
    static Ref<NSWindow> panel(NSSize size) {
        return make<NSPanel>(NSRect{{0, 0}, size}, NSTitledWindowMask | NSClosableWindowMask);
    }
    /// With a view that covers it, and says its name.
    [[nodiscard]] Ref<NSWindow> panelAt(const NSRect& r, const char* name) {
        Ref<NSWindow> p = panel(r.size);
        p->setFrameOrigin(r.origin);
        (void)viewIn(p, {{0, 0}, r.size}, name);
        return p;
    }
    SheetHandler noting() {
        return [this](NSInteger code) { codes.push_back(code); };
    }
    void begin(NSWindow* s) {
        owner->beginSheet_completionHandler(s, noting());
        drain();
    }
    /// Where the sheet hangs in the owner: the middle of its upper edge, in base coordinates.
    [[nodiscard]] NSPoint hook() const {
        const NSRect r = owner->convertRectFromScreen(sheet->frame());
        return {NSMidX(r), NSMaxY(r)};
    }
};

TEST_F(SheetTest, ASheetHangsUnderTheTitleBarAndFollows) {
    begin(sheet);
    EXPECT_EQ(owner->attachedSheet(), sheet.get());
    EXPECT_EQ(sheet->sheetParent(), owner.get());
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_EQ(hook(), NSMakePoint(200, 300));
    EXPECT_EQ(sheet->frame().size, NSMakeSize(300, 120)) << "it has no title bar of its own";
    EXPECT_FALSE(native(sheet).spec.titled);
    EXPECT_EQ(native(sheet).spec.kind, backend::WindowKind::dialog);
    EXPECT_EQ(native(sheet).parent, owner->nativeId_());

    owner->setFrameOrigin({50, 60});
    EXPECT_EQ(hook(), NSMakePoint(200, 300));
    EXPECT_EQ(native(sheet).content, sheet->frame());
    owner->setContentSize({500, 200});
    sheet->setContentSize({200, 60});
    EXPECT_EQ(hook(), NSMakePoint(250, 200));
    windows().moveByUser(owner->nativeId_(), {10, 20});
    windows().moveByUser(sheet->nativeId_(), {600, 600}); // a sheet goes nowhere by itself
    drain();
    EXPECT_EQ(hook(), NSMakePoint(250, 200));

    owner->endSheet_returnCode(sheet, 3);
    EXPECT_THAT(codes, ElementsAre(3));
    EXPECT_FALSE(sheet->isVisible() || sheet->isSheet() || owner->attachedSheet());
    EXPECT_TRUE(native(sheet).spec.titled);
    EXPECT_EQ(sheet->contentView()->frame().size, NSMakeSize(200, 60));
    EXPECT_EQ(sheet->frame().size, NSMakeSize(200, 82));
    owner->setFrameOrigin({300, 300});
    EXPECT_NE(hook(), NSMakePoint(250, 200)) << "what ended follows no longer";
}

TEST_F(SheetTest, OnlyTheWindowOfASheetIsBlocked) {
    const Ref<LogView> below = viewIn(owner, {{0, 0}, {400, 100}}, "below");
    const Ref<NSWindow> other = panelAt({{900, 300}, {200, 200}}, "other");
    sheet = panelAt({{0, 0}, {300, 120}}, "sheet");
    below->accepts = YES;
    show(other);
    show(owner);
    owner->makeFirstResponder(below);
    begin(sheet);
    taken();
    EXPECT_TRUE(sheet->isKeyWindow() && owner->isMainWindow());

    const std::size_t quiet = windows().beeps();
    click(owner, 20, 20);
    EXPECT_EQ(windows().beeps(), quiet + 1);
    EXPECT_TRUE(sheet->isKeyWindow());
    windows().wheel(0, 1);
    windows().key(u'a');
    drain();
    EXPECT_THAT(taken(), ElementsAre()) << "neither click, wheel nor key reaches the blocked window";

    click(sheet, 20, 20);
    click(other, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("sheet down", "sheet up", "other down", "other up"));
    click(owner, 20, 20);
    EXPECT_TRUE(sheet->isKeyWindow()) << "a click on its window raises the sheet";
    const Ref<NSArray> order = NSApp()->orderedWindows();
    EXPECT_EQ(order->objectAtIndex(0), sheet.get());
    EXPECT_EQ(order->objectAtIndex(1), owner.get());

    // What hangs on the window waits as well; what hangs on the sheet does not.
    const Ref<NSWindow> palette = panelAt({{20, 20}, {100, 60}}, "palette"),
                        help = panelAt({{150, 20}, {100, 60}}, "help");
    owner->addChildWindow_ordered(palette, NSWindowAbove);
    sheet->addChildWindow_ordered(help, NSWindowAbove);
    click(palette, 20, 20);
    click(help, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("help down", "help up"));
    palette->close();
    help->close();

    windows().requestClose(owner->nativeId_());
    drain();
    owner->performClose(nullptr);
    EXPECT_TRUE(owner->isVisible());
    owner->endSheet(sheet);
    drain();
    EXPECT_TRUE(owner->isKeyWindow());
    taken();
    click(owner, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("below down", "below up"));
}

TEST_F(SheetTest, SheetsWaitForEachOther) {
    const Ref<NSWindow> second = panel({100, 50}), third = panel({100, 60});
    for (NSWindow* s : {sheet.get(), second.get(), third.get()})
        begin(s);
    EXPECT_EQ(owner->sheets()->count(), 3u);
    EXPECT_FALSE(second->isVisible());
    for (NSWindow* wrong : {second.get(), owner.get(), static_cast<NSWindow*>(nullptr)})
        EXPECT_EQ(valeurs::raised([&] { begin(wrong); }), "NSInvalidArgumentException");

    owner->endSheet_returnCode(third, 30); // has never been up
    EXPECT_EQ(owner->attachedSheet(), sheet.get());
    owner->endSheet_returnCode(sheet, 10);
    EXPECT_EQ(owner->attachedSheet(), second.get());
    EXPECT_TRUE(second->isKeyWindow());
    owner->endSheet_returnCode(sheet, 99); // is none any more
    EXPECT_THAT(codes, ElementsAre(30, 10));

    // A sheet of the sheet has the keys, and goes with it.
    const Ref<NSWindow> inner = panel({80, 40});
    second->beginSheet_completionHandler(inner, noting());
    owner->makeKeyWindow();
    EXPECT_TRUE(inner->isKeyWindow());
    EXPECT_EQ(valeurs::raised([&] { inner->beginSheet_completionHandler(owner, nullptr); }),
              "NSInvalidArgumentException");
    owner->endSheet_returnCode(second, 20);
    EXPECT_THAT(codes, ElementsAre(30, 10, NSRunAbortedResponse, 20));
    EXPECT_FALSE(inner->isVisible());
    EXPECT_TRUE(owner->isKeyWindow());
}

TEST_F(SheetTest, ClosingEndsSheets) {
    begin(sheet);
    sheet->performClose(nullptr);
    EXPECT_THAT(codes, ElementsAre(NSRunAbortedResponse));
    EXPECT_TRUE(owner->isKeyWindow());

    const Ref<NSWindow> second = panel({100, 50});
    begin(sheet);
    begin(second);
    owner->close();
    EXPECT_THAT(codes, ElementsAre(NSRunAbortedResponse, NSRunAbortedResponse, NSRunAbortedResponse));
    EXPECT_FALSE(sheet->isVisible() || second->isVisible());

    // One that begins on a hidden window comes up with it.
    begin(sheet);
    EXPECT_FALSE(sheet->isVisible());
    show(owner);
    EXPECT_TRUE(sheet->isVisible() && sheet->isKeyWindow());
    EXPECT_EQ(hook(), NSMakePoint(200, 300));
    owner->endSheet(sheet);
}

class SheetWatcher : public NSObject {
public:
    static void describe(ClassDescription<SheetWatcher>& c) {
        c.answers<&SheetWatcher::ended>(Operation<void(NSWindow*, NSInteger, void*)>{"fini:code:info:"});
        c.answers<&SheetWatcher::place>(op::window_willPositionSheet_usingRect);
        c.answers<&SheetWatcher::begins>(op::windowWillBeginSheet);
        c.answers<&SheetWatcher::ends>(op::windowDidEndSheet);
    }
    void ended(NSWindow* s, NSInteger c, void* i) {
        sheet = s;
        info = i;
        said.push_back("told " + std::to_string(c));
    }
    NSRect place(NSWindow*, NSWindow*, NSRect r) {
        EXPECT_EQ(r, NSMakeRect(0, 300, 400, 0));
        return {{0, 250}, {200, 0}};
    }
    void begins(NSNotification*) { said.push_back("begins"); }
    void ends(NSNotification*) { said.push_back("ends"); }
    Log said;
    NSWindow* sheet = nullptr;
    void* info = nullptr;
};

TEST_F(SheetTest, ADelegateIsToldByTheSelectorThatItGave) {
    const auto watcher = make<SheetWatcher>();
    owner->setDelegate(watcher);
    const auto beginFor = [&](NSWindow* s, NSObject* delegate) {
        NSApp()->beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(s, owner, delegate,
                                                                                    sel("fini:code:info:"), &codes);
    };
    beginFor(sheet, watcher);
    EXPECT_EQ(hook(), NSMakePoint(100, 250)) << "the delegate of the window places it";
    NSApp()->endSheet_returnCode(sheet, 42);
    EXPECT_THAT(watcher->said, ElementsAre("begins", "ends", "told 42"));
    EXPECT_EQ(watcher->sheet, sheet.get());
    EXPECT_EQ(watcher->info, &codes);

    beginFor(sheet, make<SheetWatcher>());
    NSApp()->endSheet(sheet); // its delegate is gone, and nothing is told
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(valeurs::raised([&] { beginFor(nullptr, nullptr); }), "NSInvalidArgumentException");
}

} // namespace
