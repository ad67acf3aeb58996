// Circles, arcs, cones and cylinders against the recorded results and by hand.
#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/Release.h"
#include "unit/platform/opennurbs/SameBits.h"
#include "unit/platform/opennurbs/Trigonometry.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "round_shapes.txt";

std::vector<ON_Plane> RecordedPlanes() {
    std::vector<ON_Plane> planes;
    for (GoldenLine& line : GoldenCases(kFile, "plane", 9)) {
        planes.push_back(line.Plane());
    }
    return planes;
}

std::vector<ON_Circle> RecordedCircles() {
    const std::vector<ON_Plane> planes = RecordedPlanes();
    std::vector<ON_Circle> circles;
    for (GoldenLine& line : GoldenCases(kFile, "circle", 8)) {
        const ON_Plane& plane = planes.at(line.Count());
        const ON_3dPoint center = line.Point();
        circles.emplace_back(plane, center, line.Number());
    }
    return circles;
}

std::vector<ON_Cone> RecordedCones() {
    const std::vector<ON_Plane> planes = RecordedPlanes();
    std::vector<ON_Cone> cones;
    for (GoldenLine& line : GoldenCases(kFile, "cone", 9)) {
        const ON_Plane& plane = planes.at(line.Count());
        const double height = line.Number();
        cones.emplace_back(plane, height, line.Number());
    }
    return cones;
}

std::vector<ON_Cylinder> RecordedCylinders() {
    const std::vector<ON_Plane> planes = RecordedPlanes();
    std::vector<ON_Cylinder> cylinders;
    for (GoldenLine& line : GoldenCases(kFile, "cylinder", 8)) {
        const ON_Plane& plane = planes.at(line.Count());
        const double radius = line.Number();
        cylinders.emplace_back(ON_Circle(plane, radius), line.Number());
    }
    return cylinders;
}

// The shapes that a host builds on the axis from one point to another.
struct Axis {
    ON_Plane plane;
    double height;
    ON_Cone cone;
    ON_Cylinder cylinder;
};

Axis AxisBetween(const ON_3dPoint& first, const ON_3dPoint& second, double radius) {
    ON_3dVector direction = second - first;
    Axis axis;
    axis.height = direction.Length();
    direction.Unitize();
    axis.plane = ON_Plane(first, direction);
    axis.cone = ON_Cone(axis.plane, axis.height, radius);
    axis.cylinder = ON_Cylinder(ON_Circle(axis.plane, first, radius), axis.height);
    return axis;
}

}  // namespace

TEST(ON_RoundShapes, DefaultCircleIsTheRecordedUnitCircle) {
    for (GoldenLine& line : GoldenCases(kFile, "defaultCircle", 1)) {
        ON_Circle expected = line.Circle();
        EXPECT_SAME_BITS(expected.plane.plane_equation.d, 0.0);
        expected.plane.plane_equation.d = kerneltest::kDefaultCircleD;
        EXPECT_SAME_BITS(ON_Circle(), expected);
    }
}

TEST(ON_RoundShapes, CirclesFromPlanesGiveTheRecordedBits) {
    const std::vector<ON_Plane> planes = RecordedPlanes();
    for (GoldenLine& line : GoldenCases(kFile, "circle", 8)) {
        SCOPED_TRACE(line.Where());
        const ON_Plane& plane = planes.at(line.Count());
        const ON_3dPoint center = line.Point();
        const double radius = line.Number();
        const ON_Circle circle(plane, center, radius);
        EXPECT_SAME_BITS(circle, line.Circle());
        EXPECT_EQ(circle.IsValid(), line.Flag());
        EXPECT_SAME_BITS(ON_Circle(plane, radius), line.Circle());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, PointsAndTangentsOfCirclesAreTheRecordedOnes) {
    const std::vector<ON_Circle> circles = RecordedCircles();
    for (GoldenLine& line : GoldenCases(kFile, "circleAt", 112)) {
        SCOPED_TRACE(line.Where());
        const ON_Circle& circle = circles.at(line.Count());
        const double t = line.Number();
        EXPECT_SAME_TRIGONOMETRY(circle.PointAt(t), line.Point());
        EXPECT_SAME_TRIGONOMETRY(circle.TangentAt(t), line.Vector());
        EXPECT_SAME_TRIGONOMETRY(circle.DerivativeAt(1, t), line.Vector());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, ConesAreTheRecordedOnes) {
    const std::vector<ON_Cone> cones = RecordedCones();
    const std::vector<GoldenLine> lines = GoldenCases(kFile, "cone", 9);
    for (size_t number = 0; number < cones.size(); ++number) {
        GoldenLine line = lines[number];
        SCOPED_TRACE(line.Where());
        line.Count();
        line.Number();
        line.Number();
        EXPECT_EQ(cones[number].IsValid(), line.Flag());
        EXPECT_SAME_BITS(cones[number].ApexPoint(), line.Point());
        EXPECT_SAME_BITS(cones[number].BasePoint(), line.Point());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, PointsAndNormalsOfConesAreTheRecordedOnes) {
    const std::vector<ON_Cone> cones = RecordedCones();
    for (GoldenLine& line : GoldenCases(kFile, "coneAt", 234)) {
        SCOPED_TRACE(line.Where());
        const ON_Cone& cone = cones.at(line.Count());
        const double angle = line.Number();
        const double u = line.Number();
        EXPECT_SAME_TRIGONOMETRY(cone.PointAt(angle, u), line.Point());
        EXPECT_SAME_TRIGONOMETRY(cone.NormalAt(angle, u), line.Vector());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, CylindersAreTheRecordedOnes) {
    const std::vector<ON_Cylinder> cylinders = RecordedCylinders();
    const std::vector<GoldenLine> lines = GoldenCases(kFile, "cylinder", 8);
    for (size_t number = 0; number < cylinders.size(); ++number) {
        GoldenLine line = lines[number];
        SCOPED_TRACE(line.Where());
        line.Count();
        line.Number();
        line.Number();
        EXPECT_SAME_BITS(cylinders[number].height[0], line.Number());
        EXPECT_SAME_BITS(cylinders[number].height[1], line.Number());
        EXPECT_EQ(cylinders[number].IsValid(), line.Flag());
        EXPECT_EQ(cylinders[number].IsFinite(), line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, PointsAndNormalsOfCylindersAreTheRecordedOnes) {
    const std::vector<ON_Cylinder> cylinders = RecordedCylinders();
    for (GoldenLine& line : GoldenCases(kFile, "cylinderAt", 240)) {
        SCOPED_TRACE(line.Where());
        const ON_Cylinder& cylinder = cylinders.at(line.Count());
        const double angle = line.Number();
        const double u = line.Number();
        EXPECT_SAME_TRIGONOMETRY(cylinder.PointAt(angle, u), line.Point());
        EXPECT_SAME_TRIGONOMETRY(cylinder.NormalAt(angle, u), line.Point());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, AxesBetweenTwoPointsAreTheRecordedOnes) {
    for (GoldenLine& line : GoldenCases(kFile, "axis", 9)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint first = line.Point();
        const ON_3dPoint second = line.Point();
        line.Number();
        line.Count();
        ON_3dVector direction = second - first;
        EXPECT_SAME_BITS(direction.Length(), line.Number());
        direction.Unitize();
        EXPECT_SAME_BITS(direction, line.Vector());
        EXPECT_SAME_BITS(-direction, line.Vector());
        EXPECT_SAME_BITS(ON_Plane(first, direction), line.Plane());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, RingsAroundTheAxesAreTheRecordedOnes) {
    std::vector<Axis> axes;
    for (GoldenLine& line : GoldenCases(kFile, "axis", 9)) {
        const ON_3dPoint first = line.Point();
        const ON_3dPoint second = line.Point();
        axes.push_back(AxisBetween(first, second, line.Number()));
    }
    for (GoldenLine& line : GoldenCases(kFile, "ring", 51)) {
        SCOPED_TRACE(line.Where());
        const Axis& axis = axes.at(line.Count());
        const double angle = line.Number();
        EXPECT_SAME_TRIGONOMETRY(std::sin(angle), line.Number());
        EXPECT_SAME_TRIGONOMETRY(std::cos(angle), line.Number());
        EXPECT_SAME_TRIGONOMETRY(axis.cone.PointAt(angle, 0.0), line.Point());
        EXPECT_SAME_TRIGONOMETRY(axis.cone.NormalAt(angle, 0.0), line.Vector());
        EXPECT_SAME_TRIGONOMETRY(axis.cylinder.PointAt(angle, 0.0), line.Point());
        EXPECT_SAME_TRIGONOMETRY(axis.cylinder.NormalAt(angle, 0.0), line.Point());
        EXPECT_SAME_TRIGONOMETRY(axis.cylinder.PointAt(angle, axis.height), line.Point());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_RoundShapes, ApexOfAConeIsTheOriginOfItsPlane) {
    const ON_Plane plane(ON_3dPoint(1.0, 2.0, 3.0), ON_3dVector(0.0, 0.0, 1.0));
    const ON_Cone cone(plane, 5.0, 2.0);
    EXPECT_SAME_BITS(cone.PointAt(0.0, 0.0), ON_3dPoint(1.0, 2.0, 3.0));
    EXPECT_SAME_BITS(cone.PointAt(1.25, 0.0), ON_3dPoint(1.0, 2.0, 3.0));
    EXPECT_SAME_BITS(cone.PointAt(0.0, 5.0), ON_3dPoint(3.0, 2.0, 8.0));
}

TEST(ON_RoundShapes, ConeDividesItsRadiusByTheHeightFirst) {
    // 1/49 * 49 misses 1 by one unit; 1 * 49/49 would not.
    const ON_Cone cone(ON_Plane(), 49.0, 1.0);
    EXPECT_SAME_BITS(cone.PointAt(0.0, 49.0), ON_3dPoint(0x1.fffffffffffffp-1, 0.0, 49.0));
}

TEST(ON_RoundShapes, HeightParameterDoesNotChangeNormals) {
    const ON_Cone cone(ON_Plane(), 5.0, 2.0);
    EXPECT_SAME_BITS(cone.NormalAt(0.5, 0.0), cone.NormalAt(0.5, 17.0));
    const ON_Cylinder cylinder(ON_Circle(), 5.0);
    EXPECT_SAME_BITS(cylinder.NormalAt(0.5, 0.0), cylinder.NormalAt(0.5, 17.0));
}

TEST(ON_RoundShapes, CylinderIgnoresItsHeightsWhenEvaluated) {
    const ON_Cylinder cylinder(ON_Circle(), -4.0);
    EXPECT_SAME_BITS(cylinder.height[0], -4.0);
    EXPECT_SAME_BITS(cylinder.PointAt(0.0, 9.0), ON_3dPoint(1.0, 0.0, 9.0));
}

TEST(ON_RoundShapes, DecreasingAngleTurnsThePlaneOver) {
    const ON_Arc arc(ON_Circle(), ON_Interval(0.5, -1.0));
    EXPECT_SAME_BITS(arc.Domain(), ON_Interval(-0.5, 1.0));
    EXPECT_SAME_BITS(arc.plane.yaxis, ON_3dVector(-0.0, -1.0, -0.0));
    EXPECT_SAME_BITS(arc.plane.zaxis, ON_3dVector(-0.0, -0.0, -1.0));
    EXPECT_TRUE(arc.IsValid());
}

TEST(ON_RoundShapes, AngleBeyondAFullTurnIsCut) {
    const ON_Arc arc(ON_Circle(), ON_Interval(1.0, 9.0));
    EXPECT_SAME_BITS(arc.Domain(), ON_Interval(1.0, 1.0 + 2.0 * ON_PI));
    EXPECT_TRUE(arc.IsCircle());
    EXPECT_TRUE(arc.IsValid());
}

TEST(ON_RoundShapes, ArcRecomputesTheEquationAndADefaultArcDoesNot) {
    EXPECT_SAME_BITS(ON_Arc().plane.plane_equation.d, kerneltest::kDefaultCircleD);
    EXPECT_SAME_BITS(ON_Arc(ON_Plane(), 1.0, 2.0).plane.plane_equation.d, -0.0);
}

TEST(ON_RoundShapes, ArcOfNoAngleIsInvalid) {
    EXPECT_FALSE(ON_Arc(ON_Circle(), 0.0).IsValid());
    EXPECT_TRUE(ON_Arc(ON_Circle(), 1.0).IsValid());
    EXPECT_FALSE(ON_Arc(ON_Circle(), 1.0).IsCircle());
}

TEST(ON_RoundShapes, ArcEndsAreThePointsAtItsAngles) {
    const ON_Arc arc(ON_Plane(), 2.0, 0.5 * ON_PI);
    EXPECT_SAME_BITS(arc.StartPoint(), ON_3dPoint(2.0, 0.0, 0.0));
    EXPECT_SAME_BITS(arc.EndPoint(), ON_3dPoint(2.0 * std::cos(0.5 * ON_PI), 2.0, 0.0));
}

TEST(ON_RoundShapes, DerivativesOfACircleTurnByAQuarterEach) {
    const ON_Circle circle(ON_Plane(), 3.0);
    EXPECT_TRUE(circle.DerivativeAt(0, 0.0) == ON_3dVector(3.0, 0.0, 0.0));
    EXPECT_TRUE(circle.DerivativeAt(1, 0.0) == ON_3dVector(0.0, 3.0, 0.0));
    EXPECT_TRUE(circle.DerivativeAt(2, 0.0) == ON_3dVector(-3.0, 0.0, 0.0));
    EXPECT_TRUE(circle.DerivativeAt(3, 0.0) == ON_3dVector(0.0, -3.0, 0.0));
}
