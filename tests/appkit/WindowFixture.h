#pragma once

#include <appkit/Cible.h>

namespace libvue::test {

/// A test with a window that is not on the screen yet. What its members hold goes before the application does.
struct HiddenWindowFixture : AppFixture {
    Ref<NSWindow> window = windowAt({{100, 100}, {400, 300}});

    ~HiddenWindowFixture() override {
        window = nullptr;
        NSApplication::resetSharedApplication();
    }
    void TearDown() override {}

    template <class T> Ref<T> add(const NSRect& frame) const {
        const Ref<T> view = make<T>(frame);
        window->contentView()->addSubview(view);
        return view;
    }
    [[nodiscard]] Geste mouse() const { return {windows(), window}; }
    void type(std::u16string_view text) const {
        windows().typeText(text);
        drain();
    }
    void key(char16_t c, std::uint32_t modifiers = 0) const {
        windows().key(c, modifiers);
        drain();
    }
    /// All of them before the first is heard.
    void keys(std::initializer_list<char16_t> all) const {
        for (const char16_t c : all)
            windows().key(c);
        drain();
    }
};

/// A test with a key window on the screen.
struct WindowFixture : HiddenWindowFixture {
    WindowFixture() { show(window); }
};

/// Runs a function for each notification of that name and object while it lives.
class Ecoute {
public:
    Ecoute(NSString* name, NSObject* object, std::function<void(NSNotification*)> hears)
        : token_(NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
              name, object, nullptr, std::move(hears))) {}
    ~Ecoute() { NSNotificationCenter::defaultCenter()->removeObserver(token_); }
    Ecoute(const Ecoute&) = delete;
    Ecoute& operator=(const Ecoute&) = delete;

private:
    Ref<NSObject> token_;
};

} // namespace libvue::test
