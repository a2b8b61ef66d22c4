#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/foundation/NSData.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// Gives what it promised when it is asked.
class Promesse : public NSObject {
public:
    static void describe(ClassDescription<Promesse>& c) {
        c.answers<&Promesse::provide>(op::pasteboard_provideDataForType);
        c.answers<&Promesse::changed>(op::pasteboardChangedOwner);
    }
    int asked = 0, lost = 0;
    void provide(NSPasteboard* board, NSString* type) {
        ++asked;
        board->setString_forType(u"promis"_ns, type);
    }
    void changed(NSPasteboard*) { ++lost; }
};

struct PasteboardTest : AppFixture {
    NSPasteboard* general = NSPasteboard::generalPasteboard();

    ~PasteboardTest() override { general->clearContents(); }
    /// Declares strings, and RTF which is never given.
    static void declare(NSPasteboard* board, NSObject* owner = nullptr) {
        board->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get(), NSRTFPboardType.get()}), owner);
    }
    static bool write(NSPasteboard* board, NSString* text) {
        return board->setString_forType(text, NSStringPboardType);
    }
    static std::string read(NSPasteboard* board) {
        const auto s = board->stringForType(NSStringPboardType);
        return s ? s->utf8() : "nothing";
    }
    std::string onDesktop() {
        const auto bytes = backend.clipboard().read("text/plain");
        return {bytes.begin(), bytes.end()};
    }
    void copyElsewhere(const std::string& text) {
        backend.clipboard().setFromElsewhere({{"text/plain", {text.begin(), text.end()}}});
        drain();
    }
};

TEST_F(PasteboardTest, WhatIsCopiedStandsOnTheDesktopUntilAnotherApplicationTakesOver) {
    const NSInteger before = general->changeCount();
    declare(general);
    EXPECT_TRUE(write(general, u"été"_ns));
    EXPECT_FALSE(general->setString_forType(u"x"_ns, NSHTMLPboardType)) << "not declared";
    EXPECT_EQ(onDesktop(), "été");
    EXPECT_EQ(read(general), "été");
    EXPECT_EQ(general->dataForType(NSRTFPboardType), nullptr) << "declared, never given";
    EXPECT_EQ(general->stringForType(nullptr), nullptr);
    const NSInteger ours = general->changeCount();
    EXPECT_GT(ours, before);
    copyElsewhere("ailleurs");
    const NSInteger theirs = general->changeCount();
    EXPECT_GT(theirs, ours);
    EXPECT_EQ(read(general), "ailleurs");
    EXPECT_FALSE(write(general, u"trop tard"_ns));
    EXPECT_EQ(onDesktop(), "ailleurs");
    EXPECT_EQ(general->changeCount(), theirs) << "reading is no change";
    declare(general);
    EXPECT_TRUE(write(general, u"de nouveau"_ns));
    EXPECT_EQ(onDesktop(), "de nouveau");
}

TEST_F(PasteboardTest, PromisesAreKept) {
    const auto owner = make<Promesse>(), second = make<Promesse>();
    declare(general, owner);
    EXPECT_EQ(owner->asked, 0);
    EXPECT_EQ(read(general) + read(general), "promispromis");
    EXPECT_EQ(owner->asked, 1);

    declare(general, second);
    EXPECT_EQ(owner->lost, 1);
    drain(); // other applications see bytes alone
    EXPECT_EQ(onDesktop(), "promis");

    declare(general, make<Promesse>()); // an owner that died promises nothing
    drain();
    EXPECT_EQ(read(general), "nothing");
}

TEST_F(PasteboardTest, TheFindPasteboardIsOneAndItsOwn) {
    auto* find = NSPasteboard::pasteboardWithName(NSFindPboard);
    EXPECT_EQ(find, NSPasteboard::pasteboardWithName(NSString::fromUTF8("NSFindPboard")));
    EXPECT_NE(find, general);
    declare(find);
    write(find, u"cherché"_ns);
    copyElsewhere("ailleurs");
    EXPECT_EQ(read(find), "cherché");
    const auto wanted = NSArray::arrayWithObjects({NSHTMLPboardType.get(), NSStringPboardType.get()});
    EXPECT_EQ(find->availableTypeFromArray(wanted)->utf8(), "NSStringPboardType");
    find->clearContents();
    EXPECT_EQ(find->types()->count(), 0u);
}

} // namespace
