// A text field of the platform, with the words of the toolkit.
#include <appkit/AppFixture.h>

#include <string>

#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct ChampTest : AppFixture {
    Ref<NSWindow> window = windowAt({{100, 100}, {400, 200}});
    Ref<NSTextField> field = make<NSTextField>(NSRect{{20, 100}, {300, 24}});

    ChampTest() {
        window->contentView()->addSubview(field);
        field->setStringValue(u"aujourd\u2019hui, l\u2019ami"_ns);
        show(window);
        window->makeFirstResponder(field);
        drain();
    }
    void TearDown() override {
        window = nullptr;
        field = nullptr;
        AppFixture::TearDown();
    }
    void key(char16_t c, std::uint32_t modifiers) {
        windows().key(c, modifiers);
        drain();
    }
    [[nodiscard]] NSText* editor() const { return field->currentEditor(); }
    [[nodiscard]] std::string text() const { return editor()->string()->utf8(); }
};

TEST_F(ChampTest, TheKeysMoveByFrenchWords) {
    for (const std::uint32_t modifier : {NSControlKeyMask, NSAlternateKeyMask}) {
        editor()->setSelectedRange({0, 0});
        for (const NSUInteger stop : {11u, 15u, 18u, 18u}) {
            key(NSRightArrowFunctionKey, modifier);
            EXPECT_EQ(editor()->selectedRange(), (NSRange{stop, 0}));
        }
        for (const NSUInteger stop : {15u, 13u, 8u, 0u, 0u}) {
            key(NSLeftArrowFunctionKey, modifier);
            EXPECT_EQ(editor()->selectedRange(), (NSRange{stop, 0}));
        }
    }
    key(NSRightArrowFunctionKey, NSControlKeyMask | NSShiftKeyMask);
    EXPECT_EQ(editor()->selectedRange(), (NSRange{0, 11}));
}

TEST_F(ChampTest, TheKeysDeleteFrenchWords) {
    editor()->setSelectedRange({13, 0});
    key(NSDeleteFunctionKey, NSControlKeyMask);
    EXPECT_EQ(text(), "aujourd’hui, ami");
    editor()->setSelectedRange({11, 0});
    key(NSDeleteCharacter, NSControlKeyMask);
    EXPECT_EQ(text(), "aujourd’, ami") << "backwards, “hui” is a word";
    editor()->setSelectedRange({0, 0});
    key(NSDeleteFunctionKey, NSAlternateKeyMask);
    EXPECT_EQ(text(), ", ami");
}

} // namespace
