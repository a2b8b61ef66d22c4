#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class SheetTest : public AppFixture {
protected:
    Ref<NSWindow> owner, sheet;
    std::vector<NSInteger> codes;

    void SetUp() override {
        owner = windowAt({{200, 300}, {400, 300}});
        sheet = panel({300, 120});
        show(owner);
    }
    void TearDown() override {
        owner = sheet = nullptr;
        AppFixture::TearDown();
    }
    static Ref<NSWindow> panel(NSSize size) {
        return make<NSPanel>(NSRect{{0, 0}, size}, NSTitledWindowMask | NSClosableWindowMask);
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
    EXPECT_EQ(hook(), NSMakePoint(250, 200));
    sheet->setContentSize({200, 60});
    EXPECT_EQ(hook(), NSMakePoint(250, 200));
    windows().moveByUser(owner->nativeId_(), {10, 20});
    drain();
    EXPECT_EQ(hook(), NSMakePoint(250, 200));
    windows().moveByUser(sheet->nativeId_(), {600, 600});
    drain();
    EXPECT_EQ(hook(), NSMakePoint(250, 200)) << "a sheet goes nowhere by itself";

    owner->endSheet_returnCode(sheet, 3);
    EXPECT_THAT(codes, ElementsAre(3));
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(sheet->isSheet());
    EXPECT_FALSE(owner->attachedSheet());
    EXPECT_TRUE(native(sheet).spec.titled);
    EXPECT_EQ(sheet->contentView()->frame().size, NSMakeSize(200, 60));
    EXPECT_EQ(sheet->frame().size, NSMakeSize(200, 82));
    owner->setFrameOrigin({300, 300});
    EXPECT_NE(hook(), NSMakePoint(250, 200)) << "what ended follows no longer";
}

TEST_F(SheetTest, OnlyTheWindowOfASheetIsBlocked) {
    const Ref<NSWindow> other = windowAt({{900, 300}, {200, 200}});
    const Ref<LogView> below = viewIn(owner, {{0, 0}, {400, 100}}, "below");
    below->accepts = YES;
    other->contentView()->addSubview(make<LogView>(NSMakeRect(0, 0, 200, 200), log, "other"));
    sheet->contentView()->addSubview(make<LogView>(NSMakeRect(0, 0, 300, 120), log, "sheet"));
    show(other);
    show(owner);
    owner->makeFirstResponder(below);
    begin(sheet);
    (void)taken();
    EXPECT_TRUE(sheet->isKeyWindow());
    EXPECT_TRUE(owner->isMainWindow());

    const std::size_t quiet = windows().beeps();
    click(owner, 20, 20);
    EXPECT_EQ(windows().beeps(), quiet + 1);
    EXPECT_TRUE(sheet->isKeyWindow());
    windows().wheel(0, 1);
    windows().key(u'a');
    drain();
    EXPECT_THAT(taken(), ElementsAre()) << "neither click, wheel nor key reaches the blocked window";

    click(sheet, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("sheet down", "sheet up"));
    click(other, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("other down", "other up"));
    EXPECT_TRUE(other->isKeyWindow());

    click(owner, 20, 20);
    EXPECT_TRUE(sheet->isKeyWindow()) << "a click on its window raises the sheet";
    const Ref<NSArray> order = NSApp()->orderedWindows();
    EXPECT_EQ(order->objectAtIndex(0), sheet.get());
    EXPECT_EQ(order->objectAtIndex(1), owner.get());

    // What hangs on the window waits as well; what hangs on the sheet does not.
    const Ref<NSWindow> palette = panel({100, 60}), aide = panel({100, 60});
    palette->contentView()->addSubview(make<LogView>(NSMakeRect(0, 0, 100, 60), log, "palette"));
    aide->contentView()->addSubview(make<LogView>(NSMakeRect(0, 0, 100, 60), log, "help"));
    palette->setFrameOrigin({20, 20});
    aide->setFrameOrigin({150, 20});
    owner->addChildWindow_ordered(palette, NSWindowAbove);
    sheet->addChildWindow_ordered(aide, NSWindowAbove);
    (void)taken();
    click(palette, 20, 20);
    EXPECT_THAT(taken(), ElementsAre());
    click(aide, 20, 20); // brings it forward
    (void)taken();
    click(aide, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("help down", "help up"));
    palette->close();
    aide->close();

    windows().requestClose(owner->nativeId_());
    drain();
    EXPECT_TRUE(owner->isVisible());
    owner->performClose(nullptr);
    EXPECT_TRUE(owner->isVisible());

    owner->endSheet(sheet);
    drain();
    EXPECT_TRUE(owner->isKeyWindow());
    (void)taken();
    click(owner, 20, 20);
    EXPECT_THAT(taken(), ElementsAre("below down", "below up"));
}

TEST_F(SheetTest, SheetsWaitForEachOther) {
    const Ref<NSWindow> second = panel({100, 50}), third = panel({100, 60});
    begin(sheet);
    begin(second);
    begin(third);
    EXPECT_EQ(owner->sheets()->count(), 3u);
    EXPECT_FALSE(second->isVisible());
    EXPECT_THROW(owner->beginSheet_completionHandler(second, nullptr), NSExceptionRaised);
    EXPECT_THROW(owner->beginSheet_completionHandler(owner, nullptr), NSExceptionRaised);
    EXPECT_THROW(sheet->beginSheet_completionHandler(owner, nullptr), NSExceptionRaised);

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
    EXPECT_TRUE(inner->isKeyWindow());
    owner->makeKeyWindow();
    EXPECT_TRUE(inner->isKeyWindow());
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
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(second->isVisible());

    // One that begins on a hidden window comes up with it.
    begin(sheet);
    EXPECT_FALSE(sheet->isVisible());
    show(owner);
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_TRUE(sheet->isKeyWindow());
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
        code = c;
        info = i;
        said.push_back("told");
    }
    NSRect place(NSWindow*, NSWindow*, NSRect r) {
        EXPECT_EQ(r, NSMakeRect(0, 300, 400, 0));
        return {{0, 250}, {200, 0}};
    }
    void begins(NSNotification*) { said.push_back("begins"); }
    void ends(NSNotification*) { said.push_back("ends"); }
    Log said;
    NSWindow* sheet = nullptr;
    NSInteger code = 0;
    void* info = nullptr;
};

TEST_F(SheetTest, ADelegateIsToldByTheSelectorThatItGave) {
    auto watcher = make<SheetWatcher>();
    owner->setDelegate(watcher);
    int mark = 0;
    const auto beginFor = [&](NSObject* delegate) {
        NSApp()->beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(sheet, owner, delegate,
                                                                                    sel("fini:code:info:"), &mark);
    };
    beginFor(watcher);
    EXPECT_EQ(hook(), NSMakePoint(100, 250)) << "the delegate of the window places it";
    NSApp()->endSheet_returnCode(sheet, 42);
    EXPECT_THAT(watcher->said, ElementsAre("begins", "ends", "told"));
    EXPECT_EQ(watcher->sheet, sheet.get());
    EXPECT_EQ(watcher->code, 42);
    EXPECT_EQ(watcher->info, &mark);

    beginFor(make<SheetWatcher>());
    NSApp()->endSheet(sheet); // its delegate is gone, and nothing is told
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_THROW(NSApp()->beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(nullptr, owner, nullptr,
                                                                                             nullptr, nullptr),
                 NSExceptionRaised);
}

} // namespace
