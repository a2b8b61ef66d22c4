#include <appkit/Cible.h>

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

class PasteboardTest : public AppFixture {
protected:
    NSPasteboard* general() { return NSPasteboard::generalPasteboard(); }
    static Ref<NSArray> strings() { return NSArray::arrayWithObjects({NSStringPboardType.get()}); }
    std::string onDesktop(const char* mime) {
        const auto bytes = backend.clipboard().read(mime);
        return {bytes.begin(), bytes.end()};
    }
    void copyElsewhere(const std::string& text) {
        backend.clipboard().setFromElsewhere({{"text/plain", {text.begin(), text.end()}}});
        drain();
    }
    void TearDown() override {
        general()->clearContents();
        AppFixture::TearDown();
    }
};

TEST_F(PasteboardTest, WhatIsCopiedStandsOnTheDesktop) {
    const NSInteger before = general()->changeCount();
    general()->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get(), NSRTFPboardType.get()}),
                                  nullptr);
    EXPECT_TRUE(general()->setString_forType(u"été"_ns, NSStringPboardType));
    EXPECT_FALSE(general()->setString_forType(u"x"_ns, NSHTMLPboardType)) << "not declared";
    EXPECT_EQ(onDesktop("text/plain"), "été");
    EXPECT_EQ(general()->stringForType(NSStringPboardType)->utf8(), "été");
    EXPECT_EQ(general()->dataForType(NSRTFPboardType), nullptr) << "declared, never given";
    EXPECT_GT(general()->changeCount(), before);
    EXPECT_EQ(general()->stringForType(nullptr), nullptr);
}

TEST_F(PasteboardTest, AnotherApplicationTakesOver) {
    general()->declareTypes_owner(strings(), nullptr);
    general()->setString_forType(u"à nous"_ns, NSStringPboardType);
    const NSInteger ours = general()->changeCount();
    copyElsewhere("ailleurs");
    EXPECT_GT(general()->changeCount(), ours);
    EXPECT_EQ(general()->stringForType(NSStringPboardType)->utf8(), "ailleurs");
    EXPECT_FALSE(general()->setString_forType(u"trop tard"_ns, NSStringPboardType));
    EXPECT_EQ(onDesktop("text/plain"), "ailleurs");
    const NSInteger theirs = general()->changeCount();
    EXPECT_EQ(general()->changeCount(), theirs) << "reading is no change";
    general()->declareTypes_owner(strings(), nullptr);
    EXPECT_TRUE(general()->setString_forType(u"de nouveau"_ns, NSStringPboardType));
    EXPECT_EQ(onDesktop("text/plain"), "de nouveau");
}

TEST_F(PasteboardTest, PromisesAreKept) {
    const auto owner = make<Promesse>();
    general()->declareTypes_owner(strings(), owner);
    EXPECT_EQ(owner->asked, 0);
    EXPECT_EQ(general()->stringForType(NSStringPboardType)->utf8(), "promis");
    EXPECT_EQ(general()->stringForType(NSStringPboardType)->utf8(), "promis");
    EXPECT_EQ(owner->asked, 1);

    const auto second = make<Promesse>();
    general()->declareTypes_owner(strings(), second);
    EXPECT_EQ(owner->lost, 1);
    drain(); // other applications see bytes alone
    EXPECT_EQ(second->asked, 1);
    EXPECT_EQ(onDesktop("text/plain"), "promis");
}

TEST_F(PasteboardTest, AnOwnerThatDiedPromisesNothing) {
    general()->declareTypes_owner(strings(), make<Promesse>());
    drain();
    EXPECT_EQ(general()->stringForType(NSStringPboardType), nullptr);
}

TEST_F(PasteboardTest, TheFindPasteboardIsOneAndItsOwn) {
    auto* find = NSPasteboard::pasteboardWithName(NSFindPboard);
    EXPECT_EQ(find, NSPasteboard::pasteboardWithName(NSString::fromUTF8("NSFindPboard")));
    EXPECT_NE(find, general());
    general()->declareTypes_owner(strings(), nullptr);
    general()->setString_forType(u"général"_ns, NSStringPboardType);
    find->declareTypes_owner(strings(), nullptr);
    find->setString_forType(u"cherché"_ns, NSStringPboardType);
    copyElsewhere("ailleurs");
    EXPECT_EQ(find->stringForType(NSStringPboardType)->utf8(), "cherché");
    EXPECT_EQ(find->availableTypeFromArray(NSArray::arrayWithObjects({NSRTFPboardType.get(), NSStringPboardType.get()}))
                  ->utf8(),
              "NSStringPboardType");
    find->clearContents();
    EXPECT_EQ(find->types()->count(), 0u);
}

} // namespace
