#include <cmath>

#include "Dessin.h"

#include <libvue/platform/graphics/NSAffineTransform.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

using namespace libvue;
using namespace libvue::test;

TEST(NSBezierPathTest, withoutACurrentPointNothingCanGoOn) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPath();
    const std::string wrong = NSGenericException->utf8();
    EXPECT_EQ(raised([&] { (void)p->currentPoint(); }), wrong);
    EXPECT_EQ(raised([&] { p->lineToPoint({1, 1}); }), wrong);
    EXPECT_EQ(raised([&] { p->relativeMoveToPoint({1, 1}); }), wrong);
    EXPECT_EQ(raised([&] { p->appendBezierPathWithArcFromPoint_toPoint_radius({1, 1}, {2, 2}, 1); }), wrong);
    EXPECT_EQ(raised([&] { (void)p->elementAtIndex(0); }), NSRangeException->utf8());
    p->closePath();
    EXPECT_TRUE(p->isEmpty()) << "there is nothing to close";
}

TEST(NSBezierPathTest, afterACloseDrawingGoesOnFromTheStart) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPath();
    p->moveToPoint({1, 2});
    p->lineToPoint({5, 2});
    p->lineToPoint({5, 6});
    p->closePath();
    EXPECT_EQ(p->currentPoint(), (NSPoint{1, 2}));
    p->relativeLineToPoint({-1, -2});
    EXPECT_EQ(p->description()->utf8(), "1.000000 2.000000 moveto\n5.000000 2.000000 lineto\n5.000000 6.000000 lineto\n"
                                        "closepath\n1.000000 2.000000 moveto\n0.000000 0.000000 lineto");
    NSPoint points[3];
    EXPECT_EQ(p->elementAtIndex_associatedPoints(4, points), NSMoveToBezierPathElement);
    EXPECT_EQ(points[0], (NSPoint{1, 2}));
}

TEST(NSBezierPathTest, coordinatesThatAreNoNumbersAreLeftOut) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPath();
    p->moveToPoint({0, 0});
    p->lineToPoint({NAN, 1});
    p->appendBezierPathWithRect({{0, 0}, {INFINITY, 1}});
    p->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({0, 0}, NAN, 0, 90);
    const Ref<NSAffineTransform> away = NSAffineTransform::transform();
    away->translateXBy_yBy(INFINITY, 0);
    p->transformUsingAffineTransform(away);
    EXPECT_EQ(p->elementCount(), 1);
    EXPECT_EQ(p->currentPoint(), (NSPoint{0, 0}));
}

TEST(NSBezierPathTest, anArcIsJoinedByALineAndAWedgeCloses) {
    const Ref<NSBezierPath> wedge = NSBezierPath::bezierPath();
    wedge->moveToPoint({50, 50});
    wedge->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle({50, 50}, 40, 0, 90);
    wedge->closePath();
    EXPECT_EQ(wedge->elementAtIndex(1), NSLineToBezierPathElement);
    EXPECT_TRUE(wedge->containsPoint({60, 60}));
    EXPECT_FALSE(wedge->containsPoint({40, 60}));
    EXPECT_FALSE(wedge->containsPoint({79, 79})) << "beyond the arc";
    const NSRect b = wedge->bounds();
    EXPECT_NEAR(NSMaxX(b), 90, 1e-9);
    EXPECT_NEAR(NSMinX(b), 50, 1e-9);
}

TEST(NSBezierPathTest, aRoundedCornerTouchesBothSides) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPath();
    p->moveToPoint({0, 0});
    p->appendBezierPathWithArcFromPoint_toPoint_radius({10, 0}, {10, 10}, 4);
    NSPoint at[3];
    EXPECT_EQ(p->elementAtIndex_associatedPoints(1, at), NSLineToBezierPathElement);
    EXPECT_NEAR(at[0].x, 6, 1e-9);
    EXPECT_NEAR(p->currentPoint().x, 10, 1e-9);
    EXPECT_NEAR(p->currentPoint().y, 4, 1e-9);
    // The arc bulges towards the corner.
    EXPECT_EQ(p->elementAtIndex_associatedPoints(2, at), NSCurveToBezierPathElement);
    EXPECT_GT(at[0].x, 6);
    EXPECT_NEAR(at[0].y, 0, 1e-9);
    // Where there is no corner, a line goes there.
    p->removeAllPoints();
    p->moveToPoint({0, 0});
    p->appendBezierPathWithArcFromPoint_toPoint_radius({5, 0}, {10, 0}, 4);
    EXPECT_EQ(p->currentPoint(), (NSPoint{5, 0}));
}

TEST(NSBezierPathTest, reversingTwiceIsTheSameOutline) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius({{0, 0}, {30, 20}}, 5, 5);
    p->appendBezierPathWithOvalInRect({{40, 0}, {10, 10}});
    p->moveToPoint({60, 0});
    p->lineToPoint({70, 5});
    p->curveToPoint_controlPoint1_controlPoint2({80, 0}, {72, 9}, {78, 9});
    const Ref<NSBezierPath> back = p->bezierPathByReversingPath();
    EXPECT_EQ(back->elementCount(), p->elementCount());
    EXPECT_EQ(back->bounds(), p->bounds());
    NSPoint at[3];
    back->elementAtIndex_associatedPoints(back->elementCount() - 1, at);
    EXPECT_EQ(at[0], (NSPoint{60, 0})) << "the last subpath ends where it began";
    EXPECT_TRUE(back->bezierPathByReversingPath()->containsPoint({15, 10}));
    EXPECT_TRUE(back->containsPoint({45, 5}));
}

TEST(NSBezierPathTest, aHoleDependsOnTheWindingRule) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPathWithRect({{0, 0}, {30, 30}});
    p->appendBezierPathWithRect({{10, 10}, {10, 10}});
    EXPECT_TRUE(p->containsPoint({15, 15}));
    p->setWindingRule(NSEvenOddWindingRule);
    EXPECT_FALSE(p->containsPoint({15, 15}));
    EXPECT_TRUE(p->containsPoint({5, 5}));
}

TEST(NSBezierPathTest, drawingUsesTheColoursAndTheLook) {
    NSBezierPath::setDefaultLineWidth(2);
    const Ref<NSBezierPath> p = NSBezierPath::bezierPathWithRect({{1, 2}, {3, 4}});
    NSBezierPath::setDefaultLineWidth(1);
    EXPECT_EQ(p->lineWidth(), 2) << "taken when the path was made";
    const CGFloat dash[] = {3, 1};
    p->setLineDash_count_phase(dash, 2, 1);
    Enregistrement r;
    NSColor::redColor()->setStroke();
    NSColor::blueColor()->setFill();
    p->stroke();
    EXPECT_EQ(r.last().color, (backend::Color{1, 0, 0, 1}));
    EXPECT_EQ(r.last().stroke.width, 2);
    EXPECT_EQ(r.last().stroke.dash, (std::vector<double>{3, 1}));
    p->setWindingRule(NSEvenOddWindingRule);
    p->fill();
    EXPECT_EQ(r.last().color, (backend::Color{0, 0, 1, 1}));
    EXPECT_EQ(r.last().rule, backend::FillRule::evenOdd);
    NSBezierPath::strokeLineFromPoint_toPoint({0, 0.5}, {9, 0.5});
    EXPECT_EQ(r.last().kind, backend::RecordingCanvas::Kind::line);
    EXPECT_EQ(r.last().stroke.width, 1);
}

TEST(NSBezierPathTest, aDashThatNeverAdvancesIsASolidLine) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPath();
    const CGFloat patterns[][2] = {{0, 0}, {-1, 2}, {NAN, 1}, {INFINITY, 1}};
    for (const auto& pattern : patterns) {
        p->setLineDash_count_phase(pattern, 2, 0);
        NSInteger count = -1;
        p->getLineDash_count_phase(nullptr, &count, nullptr);
        EXPECT_EQ(count, 0) << pattern[0];
    }
}

TEST(NSBezierPathTest, transformsApplyInTheOrderOfTheirPrepending) {
    const Ref<NSAffineTransform> t = NSAffineTransform::transform();
    t->translateXBy_yBy(100, 0);
    t->rotateByDegrees(90);
    t->scaleXBy_yBy(2, 1);
    // First scaled, then turned, then moved.
    EXPECT_EQ(t->transformPoint({3, 1}), (NSPoint{99, 6}));
    const Ref<NSAffineTransform> back = make<NSAffineTransform>(t);
    back->invert();
    EXPECT_NEAR(back->transformPoint({99, 6}).x, 3, 1e-12);
    t->appendTransform(back);
    EXPECT_NEAR(t->transformPoint({7, 8}).x, 7, 1e-12);
    const Ref<NSAffineTransform> flat = NSAffineTransform::transform();
    flat->scaleBy(0);
    EXPECT_EQ(raised([&] { flat->invert(); }), NSInternalInconsistencyException->utf8());

    Enregistrement r;
    const Ref<NSAffineTransform> move = NSAffineTransform::transform();
    move->translateXBy_yBy(10, 20);
    move->concat();
    move->concat();
    NSBezierPath::fillRect({{0, 0}, {1, 1}});
    EXPECT_EQ(r.last().transform.tx, 20);
    move->set();
    NSBezierPath::fillRect({{0, 0}, {1, 1}});
    EXPECT_EQ(r.last().transform.tx, 10);
}

TEST(NSBezierPathTest, pathsComeBackFromArchivesAndDamageGivesAnEmptyOne) {
    const Ref<NSBezierPath> p = NSBezierPath::bezierPathWithOvalInRect({{0, 0}, {30, 20}});
    p->setLineWidth(3);
    p->setLineJoinStyle(NSRoundLineJoinStyle);
    EXPECT_TRUE(isEqual(throughKeyedArchive(*p), p));
    EXPECT_TRUE(isEqual(throughArchive(*p), p));

    struct Coder : NSKeyedArchiver {
        // Fewer points than the elements need.
        void encodeBytes_length_forKey(const void* bytes, NSUInteger length, const NSString* key) override {
            NSKeyedArchiver::encodeBytes_length_forKey(bytes, key->isEqualTo(u"NSPoints") ? length - 16 : length, key);
        }
    };
    const Ref<Coder> coder = adopt(new Coder);
    coder->encodeObject_forKey(p, u"root"_ns);
    const Ref<NSKeyedUnarchiver> reader = make<NSKeyedUnarchiver>(coder->encodedData().get());
    const Ref<NSBezierPath> damaged = reader->decodeObjectOf_forKey<NSBezierPath>(u"root"_ns);
    ASSERT_NE(damaged, nullptr);
    EXPECT_TRUE(damaged->isEmpty());
}

TEST(NSBezierPathTest, eachClosingGoesBackToTheStartOfItsOwnSubpath) {
    const auto path = NSBezierPath::bezierPathWithRect(NSMakeRect(1, 2, 10, 10));
    path->appendBezierPathWithOvalInRect(NSMakeRect(30, 40, 20, 20));
    path->appendBezierPathWithRect(NSMakeRect(5, 6, 7, 8));
    NSPoint p;
    EXPECT_EQ(path->elementAtIndex_associatedPoints(4, &p), NSClosePathBezierPathElement);
    EXPECT_EQ(p, NSMakePoint(1, 2));
    EXPECT_EQ(path->elementAtIndex_associatedPoints(10, &p), NSClosePathBezierPathElement);
    EXPECT_EQ(p, NSMakePoint(50, 50));
    EXPECT_EQ(path->currentPoint(), NSMakePoint(5, 6));
    path->setFlatness(NAN);
    const auto flat = path->bezierPathByFlatteningPath();
    EXPECT_EQ(flat->currentPoint(), NSMakePoint(5, 6));
    EXPECT_EQ(flat->bounds(), path->bounds());
}
