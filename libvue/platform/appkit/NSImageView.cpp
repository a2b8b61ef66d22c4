#include <libvue/platform/appkit/NSImageView.h>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

static const ClassRegistration<NSImageView> registration;

namespace {
constexpr ConstantString kEditable{u"NSEditable"};
}

void NSImageView::describe(ClassDescription<NSImageView, NSControl>& c) {
    c.key<&NSImageView::image, &NSImageView::setImage>("image");
}

NSImageView::NSImageView() : NSImageView(NSZeroRect) {}
NSImageView::NSImageView(const NSRect& frame) : NSControl(frame) { setCell(make<NSImageCell>()); }
NSImageView::NSImageView(NSCoder& coder) : NSControl(coder), editable_(coder.decodeBoolForKey(kEditable)) {
    if (!imageCell()) setCell(make<NSImageCell>());
}

void NSImageView::encodeWithCoder(NSCoder& coder) const {
    NSControl::encodeWithCoder(coder);
    coder.encodeBool_forKey(editable_, kEditable);
}

Ref<NSImageView> NSImageView::imageViewWithImage(NSImage* image) {
    auto v = make<NSImageView>();
    v->setImage(image);
    v->sizeToFit();
    return v;
}

NSImageCell* NSImageView::imageCell() const { return as<NSImageCell>(cell()); }

NSImage* NSImageView::image() const { return cell() ? cell()->image() : nullptr; }
void NSImageView::setImage(NSImage* image) {
    if (cell()) cell()->setImage(image);
}
NSImageScaling NSImageView::imageScaling() const {
    return imageCell() ? imageCell()->imageScaling() : NSImageScaleProportionallyDown;
}
void NSImageView::setImageScaling(NSImageScaling s) {
    if (auto* c = imageCell()) c->setImageScaling(s);
}
NSImageAlignment NSImageView::imageAlignment() const {
    return imageCell() ? imageCell()->imageAlignment() : NSImageAlignCenter;
}
void NSImageView::setImageAlignment(NSImageAlignment a) {
    if (auto* c = imageCell()) c->setImageAlignment(a);
}
NSImageFrameStyle NSImageView::imageFrameStyle() const {
    return imageCell() ? imageCell()->imageFrameStyle() : NSImageFrameNone;
}
void NSImageView::setImageFrameStyle(NSImageFrameStyle s) {
    if (auto* c = imageCell()) c->setImageFrameStyle(s);
}

// NOLINTNEXTLINE(bugprone-parent-virtual-call): a picture is not tracked as other controls are.
void NSImageView::mouseDown(NSEvent* e) { NSView::mouseDown(e); }

AccessibilityDescription NSImageView::accessibilityDescription() const {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): a picture has no text for its value.
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"image"_ns;
    if (!d.label && image()) d.label = image()->accessibilityDescription();
    d.enabled = isEnabled();
    return d;
}

} // namespace libvue
