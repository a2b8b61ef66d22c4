#include <libvue/images/NSBezierPathArrondi.h>

#include <libvue/platform/foundation/Class.h>
#include <libvue/platform/graphics/NSBezierPath.h>

namespace libvue {

namespace {

CGFloat enSimple(CGFloat v) { return static_cast<CGFloat>(static_cast<float>(v)); }

} // namespace

Ref<NSBezierPath> bezierPathWithRoundedRect_radius(const NSRect& rect, CGFloat radius) {
    static const bool platformRounds =
        classOf<NSBezierPath>().classOperation(sel("bezierPathWithRoundedRect:xRadius:yRadius:")) != nullptr;
    if (platformRounds) return NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(rect, radius, radius);
    return rectangleArrondiParArcs(rect, radius);
}

Ref<NSBezierPath> rectangleArrondiParArcs(const NSRect& rect, CGFloat radius) {
    const NSRect interieur = NSInsetRect(rect, radius, radius);
    const CGFloat minX = enSimple(NSMinX(interieur));
    const CGFloat minY = enSimple(NSMinY(interieur));
    const CGFloat maxX = enSimple(NSMaxX(interieur));
    const CGFloat maxY = enSimple(NSMaxY(interieur));

    Ref<NSBezierPath> path = NSBezierPath::bezierPath();
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({minX, minY}, radius, 180.0, 270.0);
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({maxX, minY}, radius, 270.0, 360.0);
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({maxX, maxY}, radius, 0.0, 90.0);
    path->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({minX, maxY}, radius, 90.0, 180.0);
    path->closePath();
    return path;
}

} // namespace libvue
