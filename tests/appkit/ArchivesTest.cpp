#include <appkit/WindowFixture.h>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSImageView.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;

namespace {

std::string archive(const NSObject* o) {
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(o);
    return {static_cast<const char*>(data->bytes()), data->length()};
}

template <class T> using Changes = std::vector<std::function<void(T&)>>;

/// Each change shows in the object's archive, and what is read back from that has all of them.
template <class T> Ref<T> archived(const Changes<T>& changes) {
    const Ref<T> object = make<T>();
    std::string last = archive(object);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i](*object);
        const std::string now = archive(object);
        EXPECT_NE(now, last) << object->className()->utf8() << ", change " << i;
        last = now;
    }
    Ref<T> back = throughKeyedArchive(*object);
    EXPECT_EQ(archive(back), last);
    return back;
}
/// And so has a copy.
template <class T> void archivedAndCopied(const Changes<T>& changes) {
    const Ref<T> object = archived(changes);
    EXPECT_EQ(archive(object->copyWithZone()), archive(object));
}

Ref<NSImage> picture() {
    auto image = make<NSImage>(NSMakeSize(4, 4));
    image->addRepresentation(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(4, 4));
    return image;
}

using ArchivesTest = AppFixture;

TEST_F(ArchivesTest, CellsAndTheirCopiesKeepWhatTheyShow) {
    archivedAndCopied<NSTextFieldCell>(
        {[](auto& c) { c.setStringValue(u"été"_ns); }, [](auto& c) { c.setEditable(YES); },
         [](auto& c) { c.setEnabled(NO); }, [](auto& c) { c.setBezeled(YES); }, [](auto& c) { c.setBordered(YES); },
         [](auto& c) { c.setScrollable(YES); }, [](auto& c) { c.setContinuous(YES); },
         [](auto& c) { c.setRefusesFirstResponder(YES); }, [](auto& c) { c.setDrawsBackground(YES); },
         [](auto& c) { c.setTextColor(NSColor::redColor()); },
         [](auto& c) { c.setBackgroundColor(NSColor::grayColor()); },
         [](auto& c) { c.setAlignment(NSRightTextAlignment); },
         [](auto& c) { c.setLineBreakMode(NSLineBreakByTruncatingMiddle); },
         [](auto& c) { c.setPlaceholderString(u"vide"_ns); }, [](auto& c) { c.setControlSize(NSSmallControlSize); },
         [](auto& c) { c.setFont(NSFont::boldSystemFontOfSize(9)); }, [](auto& c) { c.setAction(sel("agir:")); },
         [](auto& c) { c.setTag(-7); }});
    archivedAndCopied<NSButtonCell>(
        {[](auto& c) { c.setTitle(u"Fin"_ns); }, [](auto& c) { c.setButtonType(NSSwitchButton); },
         [](auto& c) { c.setAllowsMixedState(YES); }, [](auto& c) { c.setState(NSMixedState); },
         [](auto& c) { c.setKeyEquivalent(u"f"_ns); },
         [](auto& c) { c.setKeyEquivalentModifierMask(NSCommandKeyMask); },
         [](auto& c) { c.setAlternateTitle(u"Suite"_ns); }, [](auto& c) { c.setImage(picture()); },
         [](auto& c) { c.setAlternateImage(picture()); }, [](auto& c) { c.setImagePosition(NSImageAbove); },
         [](auto& c) { c.setBezelStyle(NSRecessedBezelStyle); }, [](auto& c) { c.setHighlightsBy(NSPushInCellMask); },
         [](auto& c) { c.setShowsStateBy(NSPushInCellMask); }, [](auto& c) { c.setTransparent(YES); },
         [](auto& c) { c.setShowsBorderOnlyWhileMouseInside(YES); }, [](auto& c) { c.setImageDimsWhenDisabled(NO); }});
    archivedAndCopied<NSImageCell>({[](auto& c) { c.setImage(picture()); },
                                    [](auto& c) { c.setImageScaling(NSImageScaleProportionallyUpOrDown); },
                                    [](auto& c) { c.setImageAlignment(NSImageAlignBottomRight); },
                                    [](auto& c) { c.setImageFrameStyle(NSImageFrameGroove); }});
    archivedAndCopied<NSPopUpButtonCell>(
        {[](auto& c) { c.addItemWithTitle(u"un"_ns); }, [](auto& c) { c.addItemWithTitle(u"deux"_ns); },
         [](auto& c) { c.selectItemAtIndex(1); }, [](auto& c) { c.setAltersStateOfSelectedItem(NO); },
         [](auto& c) { c.setArrowPosition(NSPopUpNoArrow); }, [](auto& c) { c.setPreferredEdge(NSMinXEdge); },
         [](auto& c) { c.setPullsDown(YES); }});
}

TEST_F(ArchivesTest, MenusAndTheirCopiesKeepTheirItems) {
    archivedAndCopied<NSMenuItem>(
        {[](auto& i) { i.setTitle(u"Un"_ns); },
         [](auto& i) { i.setAttributedTitle(NSAttributedString::initWithString(u"Un"_ns)); },
         [](auto& i) { i.setKeyEquivalent(u"u"_ns); },
         [](auto& i) { i.setKeyEquivalentModifierMask(NSAlternateKeyMask); }, [](auto& i) { i.setImage(picture()); },
         [](auto& i) { i.setState(NSMixedState); }, [](auto& i) { i.setEnabled(NO); },
         [](auto& i) { i.setHidden(YES); }, [](auto& i) { i.setIndentationLevel(3); }, [](auto& i) { i.setTag(-7); },
         [](auto& i) { i.setAction(sel("agir:")); }, [](auto& i) { i.setRepresentedObject(u"objet"_ns); },
         [](auto& i) { i.setToolTip(u"aide"_ns); }, [](auto& i) { i.setSubmenu(make<NSMenu>(u"Sous"_ns)); }});
    const Ref<Cible> target = make<Cible>();
    const auto menu = archived<NSMenu>(
        {[](auto& m) { m.setTitle(u"Essai"_ns); }, [](auto& m) { m.setMinimumWidth(120); },
         [](auto& m) { m.setAutoenablesItems(NO); }, [](auto& m) { m.setFont(NSFont::boldSystemFontOfSize(9)); },
         [](auto& m) { m.addItemWithTitle_action_keyEquivalent(u"Un"_ns, nullptr, nullptr); },
         [](auto& m) { m.addItem(NSMenuItem::separatorItem()); },
         [](auto& m) { m.itemAtIndex(0)->setSubmenu(make<NSMenu>(u"Sous"_ns)); }});
    const std::string whole = archive(menu);
    menu->itemAtIndex(0)->setTarget(target);
    const Ref<NSMenu> copy(as<NSMenu>(menu->copyWithZone().get())), back = throughKeyedArchive(*menu);
    EXPECT_EQ(copy->itemAtIndex(0)->target(), target.get());
    copy->itemAtIndex(0)->setTarget(nullptr);
    for (const Ref<NSMenu>& m : {copy, back}) {
        EXPECT_EQ(archive(m), whole);
        EXPECT_EQ(m->itemAtIndex(0)->menu(), m.get());
        EXPECT_EQ(m->itemAtIndex(0)->target(), nullptr) << "one that the archive does not hold is none";
        EXPECT_EQ(m->itemAtIndex(0)->submenu()->supermenu(), m.get());
    }
}

TEST_F(ArchivesTest, ViewsKeepTheirCells) {
    const auto v = archived<NSImageView>({[](auto& i) { i.setImage(picture()); },
                                          [](auto& i) {
                                              i.setFrame({{1, 2}, {12, 8}});
                                          },
                                          [](auto& i) { i.setTag(3); }, [](auto& i) { i.setEditable(YES); },
                                          [](auto& i) { i.setHidden(YES); }});
    EXPECT_EQ(v->image()->size(), NSMakeSize(4, 4));
    EXPECT_EQ(v->cell()->controlView(), v.get());
    const auto box = archived<NSBox>(
        {[](auto& b) { b.setTitle(u"Cadre"_ns); }, [](auto& b) { b.setTitlePosition(NSAboveBottom); },
         [](auto& b) { b.setBoxType(NSBoxCustom); }, [](auto& b) { b.setBorderType(NSLineBorder); },
         [](auto& b) {
             b.setContentViewMargins({3, 4});
         },
         [](auto& b) { b.setFillColor(NSColor::redColor()); }, [](auto& b) { b.setBorderColor(NSColor::grayColor()); },
         [](auto& b) { b.setBorderWidth(2); }, [](auto& b) { b.setCornerRadius(6); },
         [](auto& b) { b.setTransparent(YES); }, [](auto& b) { b.contentView()->addSubview(make<NSView>()); }});
    EXPECT_EQ(box->contentView()->superview(), box.get());
}

} // namespace
