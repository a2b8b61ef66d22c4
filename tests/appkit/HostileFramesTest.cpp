#include <limits>

#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSCollectionView.h>
#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSImageView.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr CGFloat inf = std::numeric_limits<CGFloat>::infinity(), nan = std::numeric_limits<CGFloat>::quiet_NaN();
constexpr CGFloat odd[] = {-1e9, -5, 0, 1e-300, 0.5, 40000, 1e9, 1e18, 1e300, inf, -inf, nan};

using HostileFramesTest = AppFixture;

std::vector<Ref<NSView>> oneOfEach() {
    const auto image = make<NSImage>(NSMakeSize(16, 16));
    image->addRepresentation(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(16, 16));
    const auto picture = NSImageView::imageViewWithImage(image);
    picture->setImageScaling(NSImageScaleAxesIndependently);
    const auto popUp = make<NSPopUpButton>();
    popUp->addItemWithTitle(u"Choix"_ns);
    const auto form = make<NSForm>();
    form->addEntry(u"Nom"_ns);
    const auto custom = make<NSBox>();
    custom->setBoxType(NSBoxCustom);
    custom->setFillColor(NSColor::redColor());
    custom->setCornerRadius(8);
    const auto slider = make<NSSlider>();
    slider->setNumberOfTickMarks(11);
    const auto scroll = make<NSScrollView>();
    scroll->setHasVerticalScroller(YES);
    scroll->setDocumentView(make<NSView>(NSMakeRect(0, 0, 1000, 1000)));
    const auto collection = make<NSCollectionView>();
    collection->setContent(NSArray::arrayWithObject(u"un"_ns));
    return {NSButton::buttonWithTitle_target_action(u"OK"_ns, nullptr, nullptr),
            NSButton::checkboxWithTitle_target_action(u"Oui"_ns, nullptr, nullptr),
            NSTextField::textFieldWithString(u"Texte"_ns),
            NSTextField::labelWithString(u"Étiquette"_ns),
            make<NSBox>(),
            custom,
            picture,
            popUp,
            form,
            slider,
            scroll,
            collection};
}

TEST_F(HostileFramesTest, EveryControlDrawsWhatShowsOfIt) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {400, 300}});
    show(w);
    for (const Ref<NSView>& v : oneOfEach()) {
        w->contentView()->addSubview(v);
        for (const CGFloat x : {0.0, -1e9, nan})
            for (const CGFloat width : odd)
                for (const CGFloat height : odd) {
                    v->setFrame({{x, x}, {width, height}});
                    EXPECT_NO_THROW(v->display()) << v->className()->utf8() << " " << width << " " << height;
                }
        v->removeFromSuperview();
        drain();
    }
}

} // namespace
