#pragma once

#include <memory>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

enum NSLineCapStyle : NSUInteger { NSButtLineCapStyle = 0, NSRoundLineCapStyle = 1, NSSquareLineCapStyle = 2 };
enum NSLineJoinStyle : NSUInteger { NSMiterLineJoinStyle = 0, NSRoundLineJoinStyle = 1, NSBevelLineJoinStyle = 2 };
enum NSWindingRule : NSUInteger { NSNonZeroWindingRule = 0, NSEvenOddWindingRule = 1 };
enum NSBezierPathElement : NSUInteger {
    NSMoveToBezierPathElement = 0,
    NSLineToBezierPathElement = 1,
    NSCurveToBezierPathElement = 2,
    NSClosePathBezierPathElement = 3
};

/// An outline of lines and cubic curves with the look of its stroke. Coordinates in points of the user space.
///
/// Drawing goes to the current context with its fill and stroke colours; without one it does nothing. Coordinates that
/// are no numbers are refused: the element is left out.
class LIBVUE_API NSBezierPath : public NSObject {
public:
    static void describe(ClassDescription<NSBezierPath>& c);
    NSBezierPath();
    explicit NSBezierPath(NSCoder& coder);
    ~NSBezierPath() override;

    [[nodiscard]] static Ref<NSBezierPath> bezierPath();
    [[nodiscard]] static Ref<NSBezierPath> bezierPathWithRect(const NSRect& rect);
    [[nodiscard]] static Ref<NSBezierPath> bezierPathWithOvalInRect(const NSRect& rect);
    /// Radii are held to half the rectangle's extent.
    [[nodiscard]] static Ref<NSBezierPath> bezierPathWithRoundedRect_xRadius_yRadius(const NSRect& rect,
                                                                                     CGFloat xRadius, CGFloat yRadius);

    // Drawing without a path of one's own.

    static void fillRect(const NSRect& rect);
    static void strokeRect(const NSRect& rect);
    static void clipRect(const NSRect& rect);
    static void strokeLineFromPoint_toPoint(NSPoint from, NSPoint to);

    /// The line width that new paths start with, and that the operations above use; 1 at the start.
    static void setDefaultLineWidth(CGFloat width);
    [[nodiscard]] static CGFloat defaultLineWidth();

    // Building. What starts from the current point raises NSGenericException while there is none.

    void moveToPoint(NSPoint p);
    void lineToPoint(NSPoint p);
    void curveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint c1, NSPoint c2);
    /// The current point goes back to where the subpath began. Without one, nothing.
    void closePath();
    void removeAllPoints();
    void relativeMoveToPoint(NSPoint d);
    void relativeLineToPoint(NSPoint d);
    void relativeCurveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint c1, NSPoint c2);
    void appendBezierPath(const NSBezierPath* path);
    void appendBezierPathWithRect(const NSRect& rect);
    void appendBezierPathWithOvalInRect(const NSRect& rect);
    void appendBezierPathWithRoundedRect_xRadius_yRadius(const NSRect& rect, CGFloat xRadius, CGFloat yRadius);
    /// Degrees, counter-clockwise from the positive x axis; a line joins the current point to the start of the arc.
    void appendBezierPathWithArcWithCenter_radius_startAngle_endAngle(NSPoint center, CGFloat radius, CGFloat start,
                                                                      CGFloat end);
    void appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(NSPoint center, CGFloat radius,
                                                                                CGFloat start, CGFloat end,
                                                                                BOOL clockwise);
    /// The arc of that radius that touches the lines from the current point to `corner` and from there to `to`, with a
    /// line to its start.
    void appendBezierPathWithArcFromPoint_toPoint_radius(NSPoint corner, NSPoint to, CGFloat radius);

    // Reading.

    [[nodiscard]] BOOL isEmpty() const;
    [[nodiscard]] NSInteger elementCount() const;
    /// Up to three points go to `points`, which may be null; a closing gives the point where its subpath began. Out of
    /// range raises NSRangeException. Each call walks there from the first element.
    NSBezierPathElement elementAtIndex_associatedPoints(NSInteger index, NSPoint* points) const;
    [[nodiscard]] NSBezierPathElement elementAtIndex(NSInteger index) const {
        return elementAtIndex_associatedPoints(index, nullptr);
    }
    /// Raises NSGenericException where the path is empty.
    [[nodiscard]] NSPoint currentPoint() const;
    /// What the outline covers, exact on curves, without the stroke. NSZeroRect where the path is empty.
    [[nodiscard]] NSRect bounds() const;
    /// By the winding rule; open subpaths count as closed.
    [[nodiscard]] BOOL containsPoint(NSPoint p) const;

    // Deriving.

    void transformUsingAffineTransform(const NSAffineTransform* t);
    [[nodiscard]] Ref<NSBezierPath> bezierPathByFlatteningPath() const;
    /// The same outline walked the other way, subpath by subpath.
    [[nodiscard]] Ref<NSBezierPath> bezierPathByReversingPath() const;

    // The stroke and the rule.

    [[nodiscard]] CGFloat lineWidth() const;
    /// Points; what is negative counts as 0, the thinnest line that there is.
    void setLineWidth(CGFloat width);
    [[nodiscard]] NSLineCapStyle lineCapStyle() const;
    void setLineCapStyle(NSLineCapStyle style);
    [[nodiscard]] NSLineJoinStyle lineJoinStyle() const;
    void setLineJoinStyle(NSLineJoinStyle style);
    /// How many line widths a pointed corner may reach out before it is cut; 10 at the start.
    [[nodiscard]] CGFloat miterLimit() const;
    void setMiterLimit(CGFloat limit);
    [[nodiscard]] NSWindingRule windingRule() const;
    void setWindingRule(NSWindingRule rule);
    /// How far the lines of bezierPathByFlatteningPath may lie from the curves, in points; at least 0.01.
    [[nodiscard]] CGFloat flatness() const;
    void setFlatness(CGFloat flatness);
    /// Any pointer may be null. Points on, off, on…
    void getLineDash_count_phase(CGFloat* pattern, NSInteger* count, CGFloat* phase) const;
    /// Count 0 for a solid line.
    void setLineDash_count_phase(const CGFloat* pattern, NSInteger count, CGFloat phase);

    // Drawing.

    void fill() const;
    void stroke() const;
    /// Clips to what both this path and the former clip hold; an empty path clips everything away.
    void addClip() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// The elements, as the backend draws them.
    [[nodiscard]] const backend::Path& backendPath() const noexcept;

private:
    struct State;
    /// What new paths are stroked with.
    [[nodiscard]] static backend::Stroke& defaultStroke();
    void requireCurrentPoint(const char* operation) const;
    std::unique_ptr<State> s_;
};

} // namespace libvue
