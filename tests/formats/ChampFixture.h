#pragma once

#include <appkit/Cible.h>

#include <libvue/platform/appkit/FieldEditor.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSFormatter.h>

namespace libvue::test {

/// A window with a field that has the focus.
struct ChampFixture : AppFixture {
    Ref<NSWindow> window;
    Ref<NSTextField> champ;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        champ = make<NSTextField>(NSRect{{20, 200}, {200, 24}});
        window->contentView()->addSubview(champ);
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        champ = nullptr;
        AppFixture::TearDown();
    }
    FieldEditor* editeur() const { return as<FieldEditor>(window->firstResponder()); }
    std::string affiche() const { return editeur() ? editeur()->string()->utf8() : "pas d’éditeur"; }
    void entre(NSFormatter* formateur) {
        champ->setFormatter(formateur);
        window->makeFirstResponder(champ);
        drain();
    }
    void tape(std::u16string_view s) {
        windows().typeText(s);
        drain();
    }
    void touche(char16_t c) {
        windows().key(c, 0);
        drain();
    }
    /// Where the caret or the selection is, as location+length.
    std::string selection() const {
        const NSRange r = editeur()->selectedRange();
        return std::to_string(r.location) + "+" + std::to_string(r.length);
    }
};

} // namespace libvue::test
