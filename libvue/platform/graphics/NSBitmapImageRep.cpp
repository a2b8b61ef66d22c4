#include <libvue/platform/graphics/NSBitmapImageRep.h>

#include <cmath>
#include <span>
#include <string_view>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

const ClassRegistration<NSBitmapImageRep> registration;

constexpr ConstantString bytesKey{u"NSPNGRepresentation"};
constexpr ConstantString sizeKey{u"NSSize"};

backend::GraphicsEngine& engine() { return *backend::Backend::current().graphics; }

std::shared_ptr<backend::Picture> decode(const NSData* data) {
    if (!data || data->length() == 0) return nullptr;
    return engine().decode({static_cast<const std::uint8_t*>(data->bytes()), data->length()}, nullptr);
}

std::string_view formatOf(NSBitmapImageFileType type) {
    switch (type) {
    case NSTIFFFileType:
        return "tiff";
    case NSBMPFileType:
        return "bmp";
    case NSJPEGFileType:
        return "jpeg";
    case NSPNGFileType:
        return "png";
    default:
        return "";
    }
}

} // namespace

void NSBitmapImageRep::describe(ClassDescription<NSBitmapImageRep, NSImageRep>&) {}

NSBitmapImageRep::NSBitmapImageRep(std::shared_ptr<backend::Picture> picture) : picture_(std::move(picture)) {
    if (picture_) size_ = picture_->size();
}

NSBitmapImageRep::~NSBitmapImageRep() = default;

Ref<NSBitmapImageRep> NSBitmapImageRep::initWithData(NSData* data) {
    auto picture = decode(data);
    return picture ? make<NSBitmapImageRep>(std::move(picture)) : nullptr;
}

Ref<NSBitmapImageRep> NSBitmapImageRep::initWithPixelsWide_pixelsHigh(NSInteger wide, NSInteger high) {
    auto picture = engine().makePicture({static_cast<double>(wide), static_cast<double>(high)}, 1);
    return picture ? make<NSBitmapImageRep>(std::move(picture)) : nullptr;
}

Ref<NSBitmapImageRep> NSBitmapImageRep::initWithFocusedViewRect(const NSRect& rect) {
    const NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || !c->picture()) return nullptr;
    const backend::Picture& shown = *c->picture();
    const NSRect base = NSIntersectionRect(c->canvas().transform().apply(rect), {NSZeroPoint, shown.size()});
    if (NSIsEmptyRect(base)) return nullptr;
    auto part = engine().makePicture(base.size, c->canvas().scale());
    auto canvas = part ? engine().canvasOn(part) : nullptr;
    if (!canvas) return nullptr;
    canvas->drawPicture(shown, base, {NSZeroPoint, base.size}, backend::Compositing::copy, 1, backend::YAxis::up);
    canvas.reset();
    return make<NSBitmapImageRep>(std::move(part));
}

NSInteger NSBitmapImageRep::pixelsWide() const { return picture_ ? picture_->pixelWidth() : 0; }
NSInteger NSBitmapImageRep::pixelsHigh() const { return picture_ ? picture_->pixelHeight() : 0; }
BOOL NSBitmapImageRep::hasAlpha() const { return !picture_ || picture_->hasAlpha(); }

std::shared_ptr<backend::Picture> NSBitmapImageRep::picture(CGFloat) { return picture_; }

const std::shared_ptr<backend::Picture>& NSBitmapImageRep::pictureForWriting() {
    if (picture_ && picture_.use_count() > 1) picture_ = engine().copy(*picture_);
    return picture_;
}

BOOL NSBitmapImageRep::draw() {
    const NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || !picture_) return NO;
    c->canvas().drawPicture(*picture_, NSZeroRect, {NSZeroPoint, size_}, backend::Compositing::sourceOver, 1,
                            c->isFlipped() ? backend::YAxis::down : backend::YAxis::up);
    return YES;
}

Ref<NSColor> NSBitmapImageRep::colorAtX_y(NSInteger x, NSInteger y) const {
    if (!picture_ || x < 0 || y < 0 || x >= pixelsWide() || y >= pixelsHigh()) return nullptr;
    const backend::Color c = picture_->pixel(static_cast<int>(x), static_cast<int>(y));
    return NSColor::colorWithDeviceRed_green_blue_alpha(c.red, c.green, c.blue, c.alpha);
}

void NSBitmapImageRep::setColor_atX_y(NSColor* color, NSInteger x, NSInteger y) {
    if (!color || !picture_ || x < 0 || y < 0 || x >= pixelsWide() || y >= pixelsHigh()) return;
    const auto canvas = engine().canvasOn(pictureForWriting());
    if (!canvas) return;
    const double wide = picture_->size().width / picture_->pixelWidth();
    const double high = picture_->size().height / picture_->pixelHeight();
    const auto fromBelow = static_cast<double>(pixelsHigh() - 1 - y);
    canvas->setAntialiasing(false);
    canvas->fillRect({{static_cast<double>(x) * wide, fromBelow * high}, {wide, high}}, color->resolved(),
                     backend::Compositing::copy);
}

Ref<NSData> NSBitmapImageRep::representationUsingType_properties(NSBitmapImageFileType type, NSDictionary*) const {
    if (!picture_) return nullptr;
    const std::vector<std::uint8_t> bytes = engine().encode(*picture_, formatOf(type));
    return bytes.empty() ? nullptr : NSData::dataWithBytes_length(bytes.data(), bytes.size());
}

Ref<NSData> NSBitmapImageRep::TIFFRepresentation() const {
    return representationUsingType_properties(NSTIFFFileType, nullptr);
}

Ref<NSData> NSBitmapImageRep::PNGRepresentation() const {
    return representationUsingType_properties(NSPNGFileType, nullptr);
}

BOOL NSBitmapImageRep::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* o = as<const NSBitmapImageRep>(other);
    return o && picture_ == o->picture_ && size_ == o->size_;
}

NSUInteger NSBitmapImageRep::hash() const { return std::hash<const void*>()(picture_.get()); }

Ref<NSObject> NSBitmapImageRep::copyWithZone() const {
    Ref<NSBitmapImageRep> copy = make<NSBitmapImageRep>(picture_);
    copy->size_ = size_;
    return copy;
}

void NSBitmapImageRep::encodeWithCoder(NSCoder& coder) const {
    const Ref<NSData> png = PNGRepresentation();
    CoderWriter out(coder);
    out.bytes(png ? png->bytes() : nullptr, png ? png->length() : 0, bytesKey);
    out.size(size_, sizeKey);
}

NSBitmapImageRep::NSBitmapImageRep(NSCoder& coder) {
    CoderReader in(coder, this);
    picture_ = decode(in.bytes(bytesKey));
    size_ = in.size(sizeKey);
    if (picture_ && (!(size_.width > 0) || !(size_.height > 0))) size_ = picture_->size();
}

} // namespace libvue
