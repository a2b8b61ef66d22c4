#include <libvue/platform/graphics/NSImage.h>

#include <cmath>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/Compositing.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImageState.h>

namespace libvue {

namespace {

const ClassRegistration<NSImage> registration;

constexpr ConstantString sizeKey{u"NSSize"};
constexpr ConstantString repsKey{u"NSReps"};
constexpr ConstantString flippedKey{u"NSFlipped"};
constexpr ConstantString templateKey{u"NSTemplate"};
constexpr ConstantString alignmentKey{u"NSAlignmentRect"};
constexpr ConstantString accessibilityKey{u"NSAccessibilityDescription"};

CGFloat mainScreenScale = 1;

bool isDrawable(NSSize s) { return s.width > 0 && s.height > 0 && isFinite(s); }

backend::GraphicsEngine& engine() { return *backend::Backend::current().graphics; }

/// Pixels a point of the representation in an image of that size.
CGFloat scaleOf(const NSImageRep& rep, NSSize size) {
    return size.width > 0 ? static_cast<CGFloat>(rep.pixelsWide()) / size.width : 0;
}

} // namespace

void NSImage::describe(ClassDescription<NSImage>& c) {
    c.key<&NSImage::size, &NSImage::setSize>("size");
    c.key<&NSImage::name>("name");
}

NSImage::NSImage() : s_(std::make_unique<State>()) {}

NSImage::NSImage(NSSize size) : s_(std::make_unique<State>()), size_(size) {}

NSImage::~NSImage() {
    if (name_) unregisterImage(name_, this);
}

NSSize NSImage::size() const {
    if (size_.width > 0 || size_.height > 0 || s_->reps.empty()) return size_;
    return s_->reps.front()->size();
}

void NSImage::setSize(NSSize size) { size_ = size; }

BOOL NSImage::isValid() const { return !s_->reps.empty() || isDrawable(size_); }

Ref<NSArray> NSImage::representations() const { return NSArray::arrayWithRefs(s_->reps); }

void NSImage::addRepresentation(NSImageRep* rep) {
    if (rep) s_->reps.emplace_back(rep);
}

void NSImage::addRepresentations(NSArray* reps) {
    if (!reps) return;
    for (NSImageRep* rep : reps->as<NSImageRep>())
        addRepresentation(rep);
}

NSImageRep* NSImage::representationForScale(CGFloat scale) const {
    const NSSize size = this->size();
    NSImageRep* best = nullptr;
    CGFloat bestScale = 0;
    for (const Ref<NSImageRep>& rep : s_->reps) {
        const CGFloat s = scaleOf(*rep, size);
        // The smallest that is sharp enough, else the sharpest. One without pixels is sharp at any scale.
        const bool sharp = rep->pixelsWide() == 0 || s >= scale - 0.01;
        const bool bestSharp = best && (best->pixelsWide() == 0 || bestScale >= scale - 0.01);
        if (!best || (sharp && !bestSharp) || (sharp == bestSharp && (sharp ? s < bestScale : s > bestScale))) {
            best = rep;
            bestScale = s;
        }
    }
    return best;
}

std::shared_ptr<backend::Picture> NSImage::picture(CGFloat scale) const {
    NSImageRep* rep = representationForScale(scale);
    return rep ? rep->picture(scale) : nullptr;
}

void NSImage::setScreenScale(CGFloat scale) noexcept { mainScreenScale = scale > 0 ? scale : 1; }

CGFloat NSImage::screenScale() noexcept { return mainScreenScale; }

void NSImage::setBackgroundColor(NSColor* color) { background_ = color; }

void NSImage::setAccessibilityDescription(const NSString* text) {
    accessibility_ = text ? NSString::stringWithString(text) : nullptr;
}

NSRect NSImage::alignmentRect() const {
    return NSIsEmptyRect(s_->alignment) ? NSRect{NSZeroPoint, size()} : s_->alignment;
}

void NSImage::setAlignmentRect(const NSRect& rect) { s_->alignment = rect; }

// Drawing into it.

Ref<NSImageRep> NSImage::surface(CGFloat scale) {
    const NSSize size = this->size();
    // A surface of an earlier time is drawn on; anything else is drawn into a new one first.
    if (s_->reps.size() == 1) {
        auto* only = as<NSBitmapImageRep>(s_->reps.front());
        if (only && only->pixelsWide() == static_cast<NSInteger>(std::ceil(size.width * scale - 1e-6)) &&
            only->pixelsHigh() == static_cast<NSInteger>(std::ceil(size.height * scale - 1e-6)))
            return only;
    }
    auto picture = engine().makePicture(size, scale);
    // What is too large for a sharp screen may still do at a pixel a point.
    if (!picture && scale > 1) return surface(1);
    if (!picture) raiseNamed(NSImageCacheException, "an image of that size cannot be drawn into");
    if (auto drawn = this->picture(scale)) {
        const auto canvas = engine().canvasOn(picture);
        canvas->drawPicture(*drawn, NSZeroRect, {NSZeroPoint, size}, backend::Compositing::copy, 1, backend::YAxis::up);
    }
    if (!(size_.width > 0) || !(size_.height > 0)) size_ = size;
    s_->reps.clear();
    s_->reps.emplace_back(make<NSBitmapImageRep>(std::move(picture)));
    return s_->reps.front();
}

void NSImage::lockFocus() { lockFocusFlipped(flipped_); }

void NSImage::lockFocusFlipped(BOOL flipped) {
    NSGraphicsContext* current = NSGraphicsContext::currentContext();
    if (!s_->focus) {
        const NSSize size = this->size();
        if (!isDrawable(size)) raiseNamed(NSImageCacheException, "an image without a size cannot be drawn into");
        const CGFloat scale = current ? current->canvas().scale() : mainScreenScale;
        const Ref<NSImageRep> rep = surface(scale);
        const auto& picture = static_cast<NSBitmapImageRep*>(rep.get())->pictureForWriting();
        auto canvas = engine().canvasOn(picture);
        if (!canvas) raiseNamed(NSImageCacheException, "an image that cannot be drawn into");
        // The picture is a whole number of pixels; the image may be a fraction smaller or scaled.
        const NSSize pixels = picture->size();
        if (!(pixels == size) &&
            (std::abs(pixels.width - size.width) * scale > 1 || std::abs(pixels.height - size.height) * scale > 1))
            canvas->concat(backend::Transform::scaling(pixels.width / size.width, pixels.height / size.height));
        s_->focus = make<NSGraphicsContext>(std::move(canvas), NO, picture);
    }
    s_->former.emplace_back(current);
    s_->focus->saveState();
    if (flipped != s_->focus->isFlipped()) {
        s_->focus->canvas().concat({1, 0, 0, -1, 0, size().height});
        s_->focus->setFlipped(flipped);
    }
    NSGraphicsContext::setCurrentContext(s_->focus);
}

void NSImage::unlockFocus() {
    if (s_->former.empty()) return;
    s_->focus->restoreState();
    const Ref<NSGraphicsContext> former = std::move(s_->former.back());
    s_->former.pop_back();
    if (s_->former.empty()) s_->focus = nullptr;
    NSGraphicsContext::setCurrentContext(former);
}

// Drawing it.

void NSImage::composite(const NSRect& rect, const NSRect& from, NSCompositingOperation operation, CGFloat fraction,
                        Upright upright) {
    const Ref<NSGraphicsContext> c = NSGraphicsContext::currentContext();
    const NSSize size = this->size();
    if (!c || !isDrawable(size) || !isDrawable(rect.size)) return;
    NSRect source = from, target = rect;
    if (from == NSZeroRect)
        source = {NSZeroPoint, size};
    else if (!isDrawable(from.size))
        return;
    const auto drawn = picture(c->canvas().scale() * target.size.width / source.size.width);
    if (!drawn) return;
    if (background_) {
        const Ref<NSColor> background = background_;
        c->saveState();
        c->setFillColor(background);
        c->fillRects_operation(&rect, 1, NSCompositeSourceOver);
        c->restoreState();
    }
    // From points of the image to points of the picture, which a setSize: may have driven apart.
    const NSSize own = drawn->size();
    const double sx = own.width / size.width, sy = own.height / size.height;
    source = {{source.origin.x * sx, source.origin.y * sy}, {source.size.width * sx, source.size.height * sy}};
    const bool down = c->isFlipped() && upright == Upright::yes;
    c->canvas().drawPicture(*drawn, source, target, compositingOf(operation), fraction,
                            down ? backend::YAxis::down : backend::YAxis::up);
}

void NSImage::drawInRect(const NSRect& rect) { composite(rect, NSZeroRect, NSCompositeSourceOver, 1, Upright::yes); }

void NSImage::drawInRect_fromRect_operation_fraction(const NSRect& rect, const NSRect& from,
                                                     NSCompositingOperation operation, CGFloat fraction) {
    composite(rect, from, operation, fraction, Upright::yes);
}

void NSImage::drawInRect_fromRect_operation_fraction_respectFlipped_hints(const NSRect& rect, const NSRect& from,
                                                                          NSCompositingOperation operation,
                                                                          CGFloat fraction, BOOL respectFlipped,
                                                                          NSDictionary*) {
    composite(rect, from, operation, fraction, respectFlipped ? Upright::yes : Upright::asFlipped);
}

void NSImage::drawAtPoint_fromRect_operation_fraction(NSPoint point, const NSRect& from,
                                                      NSCompositingOperation operation, CGFloat fraction) {
    const NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c) return;
    const NSSize size = from == NSZeroRect ? this->size() : from.size;
    // In a flipped context the lower edge as seen has the greater y.
    composite({{point.x, c->isFlipped() ? point.y - size.height : point.y}, size}, from, operation, fraction,
              Upright::yes);
}

void NSImage::dissolveToPoint_fraction(NSPoint point, CGFloat fraction) {
    drawAtPoint_fromRect_operation_fraction(point, NSZeroRect, NSCompositeSourceOver, fraction);
}

// Copies and files.

Ref<NSData> NSImage::TIFFRepresentation() const {
    const auto drawn = picture(mainScreenScale);
    return drawn ? make<NSBitmapImageRep>(drawn)->TIFFRepresentation() : nullptr;
}

Ref<NSData> NSImage::PNGRepresentation() const {
    const auto drawn = picture(mainScreenScale);
    return drawn ? make<NSBitmapImageRep>(drawn)->PNGRepresentation() : nullptr;
}

Ref<NSString> NSImage::description() const {
    std::string s = "image";
    if (name_) s += " " + name_->utf8();
    return NSString::fromUTF8(s + " " + NSStringFromSize(size())->utf8());
}

Ref<NSImage> NSImage::copy() const {
    Ref<NSImage> image = make<NSImage>(size_);
    for (const Ref<NSImageRep>& rep : s_->reps) {
        // Pixels may be drawn into later: they are the copy's own. Other representations do not change.
        const auto* bitmap = as<const NSBitmapImageRep>(rep);
        image->s_->reps.emplace_back(bitmap ? as<NSImageRep>(bitmap->copyWithZone()) : rep);
    }
    image->s_->alignment = s_->alignment;
    image->flipped_ = flipped_;
    image->template_ = template_;
    image->background_ = background_;
    image->accessibility_ = accessibility_;
    return image;
}

Ref<NSObject> NSImage::copyWithZone() const { return copy(); }

void NSImage::encodeWithCoder(NSCoder& coder) const {
    const Ref<NSArray> reps = representations();
    CoderWriter out(coder);
    out.size(size_, sizeKey);
    out.object(reps, repsKey);
    out.flag(flipped_, flippedKey);
    out.flag(template_, templateKey);
    out.rect(s_->alignment, alignmentKey);
    out.object(accessibility_, accessibilityKey);
}

NSImage::NSImage(NSCoder& coder) : s_(std::make_unique<State>()) {
    CoderReader in(coder, this);
    size_ = in.size(sizeKey);
    addRepresentations(in.object<NSArray>(repsKey));
    flipped_ = in.flag(flippedKey);
    template_ = in.flag(templateKey);
    s_->alignment = in.rect(alignmentKey);
    accessibility_ = in.object<NSString>(accessibilityKey);
}

} // namespace libvue
