// Planes, arcs and transformations on an archive: openNURBS's bytes, also where the stream is short.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "serialize/ValueSerializers.h"
#include "support/ByteScript.h"
#include "support/Caught.h"
#include "support/MemoryFile.h"

namespace {

using namespace Vr::test;
using Vr::operator<<;
using Vr::operator>>;
using Bytes = std::vector<BYTE>;

class NamedFile : public MemoryFile {
public:
    explicit NamedFile(const TCHAR* name) { SetFilePath(name); }
};

// Every number differs, so that no field can stand in another's place.
ON_Plane NumberedPlane() {
    ON_Plane plane;
    plane.origin = ON_3dPoint(1.0, 2.0, 3.0);
    plane.xaxis = ON_3dVector(4.0, 5.0, 6.0);
    plane.yaxis = ON_3dVector(7.0, 8.0, 9.0);
    plane.zaxis = ON_3dVector(10.0, 11.0, 12.0);
    plane.plane_equation.x = 13.0;
    plane.plane_equation.y = 14.0;
    plane.plane_equation.z = 15.0;
    plane.plane_equation.d = 16.0;
    return plane;
}

ByteScript NumberedPlaneBytes() {
    ByteScript script;
    for (const char* field : {"origin", "x axis", "y axis", "z axis"}) {
        const auto first = static_cast<double>(script.Fields().size()) + 1.0;
        script.Double(first, std::string(field) + ".x")
            .Double(first + 1.0, std::string(field) + ".y")
            .Double(first + 2.0, std::string(field) + ".z");
    }
    return script.Double(13.0, "equation.x")
        .Double(14.0, "equation.y")
        .Double(15.0, "equation.z")
        .Double(16.0, "equation.d");
}

// A quarter of the circle with radius 2 about (0, 0, 5).
ON_Arc QuarterArc() {
    const ON_Plane plane(ON_3dPoint(0.0, 0.0, 5.0), ON_3dVector(1.0, 0.0, 0.0),
                         ON_3dVector(0.0, 1.0, 0.0));
    return ON_Arc(plane, 2.0, 0.5 * ON_PI);
}

ByteScript QuarterArcBytes() {
    return ByteScript()
        .Double(0.0, "origin.x")
        .Double(0.0, "origin.y")
        .Double(5.0, "origin.z")
        .Double(1.0, "x axis.x")
        .Double(0.0, "x axis.y")
        .Double(0.0, "x axis.z")
        .Double(0.0, "y axis.x")
        .Double(1.0, "y axis.y")
        .Double(0.0, "y axis.z")
        .Double(0.0, "z axis.x")
        .Double(0.0, "z axis.y")
        .Double(1.0, "z axis.z")
        .Double(0.0, "equation.x")
        .Double(0.0, "equation.y")
        .Double(1.0, "equation.z")
        .Double(-5.0, "equation.d")
        .Double(2.0, "radius")
        .Double(2.0, "point at angle 0, x")
        .Double(0.0, "point at angle 0, y")
        .Double(5.0, "point at angle 0, z")
        .Double(2.0 * std::cos(0.5 * ON_PI), "point at a quarter, x")
        .Double(2.0, "point at a quarter, y")
        .Double(5.0, "point at a quarter, z")
        .Double(-2.0, "point at a half, x")
        .Double(2.0 * std::sin(ON_PI), "point at a half, y")
        .Double(5.0, "point at a half, z")
        .Double(0.0, "first angle")
        .Double(0.5 * ON_PI, "last angle");
}

ON_Xform NumberedXform() {
    ON_Xform xf;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            xf.m_xform[row][column] = 10.0 * row + column;
    }
    return xf;
}

ByteScript NumberedXformBytes() {
    ByteScript script;
    for (const double row : {0.0, 10.0, 20.0, 30.0}) {
        for (const double column : {0.0, 1.0, 2.0, 3.0})
            script.Double(row + column, "row by row");
    }
    return script;
}

template <class Value>
Bytes Stored(const Value& value) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << value;
    archive.Close();
    return file.Bytes();
}

// Loads over `value` and returns where the archive stands afterwards.
template <class Value>
ULONGLONG Load(const Bytes& bytes, Value& value) {
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    archive >> value;
    return file.GetPosition();
}

// The doubles that a value consists of, behind one another as they lie in the object.
template <class Value>
std::vector<double> Numbers(const Value& value) {
    static_assert(sizeof(Value) % sizeof(double) == 0);
    std::vector<double> numbers(sizeof(Value) / sizeof(double));
    std::memcpy(numbers.data(), static_cast<const void*>(&value), sizeof(Value));
    return numbers;
}

TEST(PlaneSerializer, StoresOriginAxesAndEquationAsTheyStand) {
    EXPECT_TRUE(NumberedPlaneBytes().Matches(Stored(NumberedPlane())));
}

TEST(PlaneSerializer, LoadsFrameAndEquationWithoutRecomputingThem) {
    ON_Plane plane;
    EXPECT_EQ(Load(NumberedPlaneBytes().Bytes(), plane), 128u);
    EXPECT_EQ(Numbers(plane), Numbers(NumberedPlane()));
}

TEST(PlaneSerializer, AShortStreamIsNotReportedAndKeepsTheFieldsThatCame) {
    ON_Plane plane;
    EXPECT_EQ(Load(NumberedPlaneBytes().Prefix(7 * 8), plane), 56u);
    EXPECT_EQ(plane.origin, ON_3dPoint(1.0, 2.0, 3.0));
    EXPECT_EQ(plane.xaxis, ON_3dVector(4.0, 5.0, 6.0));
    EXPECT_EQ(plane.yaxis, ON_3dVector(7.0, 1.0, 0.0));  // x came, y and z are those of before
    EXPECT_EQ(plane.zaxis, ON_3dVector(0.0, 0.0, 1.0));
}

TEST(ArcSerializer, StoresItsCircleThreePointsOfItAndTheAngles) {
    EXPECT_TRUE(QuarterArcBytes().Matches(Stored(QuarterArc())));
}

TEST(ArcSerializer, LoadsPlaneRadiusAndAngles) {
    ON_Arc arc;
    EXPECT_EQ(Load(QuarterArcBytes().Bytes(), arc), 224u);
    EXPECT_EQ(Numbers(arc), Numbers(QuarterArc()));
}

TEST(ArcSerializer, TheThreePointsAreSkippedWhateverTheyAre) {
    Bytes bytes = QuarterArcBytes().Bytes();
    std::fill(bytes.begin() + 136, bytes.begin() + 208, BYTE{0x7F});
    ON_Arc arc;
    EXPECT_EQ(Load(bytes, arc), 224u);
    EXPECT_EQ(Numbers(arc), Numbers(QuarterArc()));
}

TEST(ArcSerializer, AShortStreamIsNotReportedAndKeepsTheFieldsThatCame) {
    ON_Arc arc;
    EXPECT_EQ(Load(QuarterArcBytes().Prefix(208), arc), 208u);
    EXPECT_EQ(arc.plane, QuarterArc().plane);
    EXPECT_EQ(arc.radius, 2.0);
    EXPECT_EQ(arc.Domain()[1], 2.0 * ON_PI);  // a default arc is a whole circle
}

TEST(XformSerializer, StoresRowByRow) {
    EXPECT_TRUE(NumberedXformBytes().Matches(Stored(NumberedXform())));
}

TEST(XformSerializer, LoadsRowByRow) {
    ON_Xform xf;
    EXPECT_EQ(Load(NumberedXformBytes().Bytes(), xf), 128u);
    EXPECT_EQ(Numbers(xf), Numbers(NumberedXform()));
}

TEST(XformSerializer, AShortStreamIsNotReportedAndKeepsTheEntriesThatDidNotCome) {
    ON_Xform xf;
    EXPECT_EQ(Load(NumberedXformBytes().Prefix(5 * 8), xf), 40u);
    const std::vector<double> expected = {0, 1, 2, 3, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(Numbers(xf), expected);
}

TEST(GeometrySerializers, AnEmptyStreamChangesNothing) {
    ON_Plane plane = NumberedPlane();
    ON_Arc arc = QuarterArc();
    ON_Xform xf = NumberedXform();
    Load({}, plane);
    Load({}, arc);
    Load({}, xf);
    EXPECT_EQ(Numbers(plane), Numbers(NumberedPlane()));
    EXPECT_EQ(Numbers(arc), Numbers(QuarterArc()));
    EXPECT_EQ(Numbers(xf), Numbers(NumberedXform()));
}

TEST(GeometrySerializers, StoringOnALoadingArchiveThrowsReadOnly) {
    NamedFile file(_T("model.doc"));
    CArchive archive(&file, CArchive::load);
    const Caught expected = ArchiveException(CArchiveException::readOnly, "model.doc");
    EXPECT_EQ(CaughtFrom([&] { archive << ON_Plane(); }), expected);
    EXPECT_EQ(CaughtFrom([&] { archive << ON_Arc(); }), expected);
    EXPECT_EQ(CaughtFrom([&] { archive << ON_Xform(); }), expected);
}

TEST(GeometrySerializers, LoadingFromAStoringArchiveThrowsWriteOnlyAndChangesNothing) {
    NamedFile file(_T("model.doc"));
    CArchive archive(&file, CArchive::store);
    const Caught expected = ArchiveException(CArchiveException::writeOnly, "model.doc");
    ON_Plane plane = NumberedPlane();
    ON_Arc arc = QuarterArc();
    ON_Xform xf = NumberedXform();
    EXPECT_EQ(CaughtFrom([&] { archive >> plane; }), expected);
    EXPECT_EQ(CaughtFrom([&] { archive >> arc; }), expected);
    EXPECT_EQ(CaughtFrom([&] { archive >> xf; }), expected);
    EXPECT_EQ(Numbers(plane), Numbers(NumberedPlane()));
    EXPECT_EQ(Numbers(arc), Numbers(QuarterArc()));
    EXPECT_EQ(Numbers(xf), Numbers(NumberedXform()));
    archive.Close();
    EXPECT_TRUE(file.Bytes().empty());
}

class GeometrySerializersBuffer : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Bytes, GeometrySerializersBuffer, testing::Values(128, 131, 4096));

TEST_P(GeometrySerializersBuffer, ValuesBetweenBufferedOnesDisturbNothing) {
    MemoryFile file;
    CArchive storing(&file, CArchive::store, GetParam());
    storing << BYTE{1} << NumberedPlane() << WORD{2} << QuarterArc() << DWORD{3} << NumberedXform()
            << 4.0;
    storing.Close();
    EXPECT_EQ(file.GetLength(), 1u + 128u + 2u + 224u + 4u + 128u + 8u);
    file.SeekToBegin();

    CArchive loading(&file, CArchive::load, GetParam());
    BYTE one = 0;
    WORD two = 0;
    DWORD three = 0;
    double four = 0.0;
    ON_Plane plane;
    ON_Arc arc;
    ON_Xform xf;
    loading >> one >> plane >> two >> arc >> three >> xf >> four;
    EXPECT_EQ(one, 1);
    EXPECT_EQ(Numbers(plane), Numbers(NumberedPlane()));
    EXPECT_EQ(two, 2);
    EXPECT_EQ(Numbers(arc), Numbers(QuarterArc()));
    EXPECT_EQ(three, 3u);
    EXPECT_EQ(Numbers(xf), Numbers(NumberedXform()));
    EXPECT_EQ(four, 4.0);
}

}  // namespace
