// Colours against the recorded results.
#include <functional>
#include <map>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "colors.txt";

template <class Edit>
ON_Color Edited(ON_Color color, Edit edit) {
    edit(color);
    return color;
}

const std::map<std::string, ON_Color>& RecordedColors() {
    static const std::map<std::string, ON_Color> colors = {
        {"default", ON_Color()},
        {"rgb1,2,3", ON_Color(1, 2, 3)},
        {"rgb255,128,64", ON_Color(255, 128, 64)},
        {"rgba1,2,3,4", ON_Color(1, 2, 3, 4)},
        {"rgba255,255,255,255", ON_Color(255, 255, 255, 255)},
        {"rgb-5,300,128", ON_Color(-5, 300, 128)},
        {"rgba10,20,30,-1", ON_Color(10, 20, 30, -1)},
        {"rgba10,20,30,999", ON_Color(10, 20, 30, 999)},
        {"packed80000001", ON_Color(0x80000001u)},
        {"packed00ff8040", ON_Color(0x00ff8040u)},
        {"unset", ON_Color::UnsetColor},
        {"setRgb", Edited(ON_Color(1, 2, 3, 4), [](ON_Color& c) { c.SetRGB(9, 8, 7); })},
        {"setAlpha", Edited(ON_Color(1, 2, 3), [](ON_Color& c) { c.SetAlpha(200); })},
        {"setRgba", Edited(ON_Color(), [](ON_Color& c) { c.SetRGBA(1, 1, 1, 1000); })},
        {"fractionalRgb",
         Edited(ON_Color(), [](ON_Color& c) { c.SetFractionalRGB(0.5, 1.0, 0.25); })},
        {"fractionalRgba",
         Edited(ON_Color(), [](ON_Color& c) { c.SetFractionalRGBA(0.1, 0.2, 0.3, 0.4); })},
        {"fractionalClamped",
         Edited(ON_Color(), [](ON_Color& c) { c.SetFractionalRGBA(-1.0, 2.0, 0.50196, 1.0); })},
        {"implicitPacked", 0xff000000u}};
    return colors;
}

int SignOf(int number) {
    return (number > 0) - (number < 0);
}

}  // namespace

TEST(ON_Color, ComponentsAndFractionsAreTheRecordedOnes) {
    for (GoldenLine& line : GoldenCases(kFile, "color", 18)) {
        SCOPED_TRACE(line.Where());
        const ON_Color color = RecordedColors().at(line.Word());
        EXPECT_EQ(static_cast<unsigned int>(color), line.Packed());
        EXPECT_EQ(color.Red(), line.Integer());
        EXPECT_EQ(color.Green(), line.Integer());
        EXPECT_EQ(color.Blue(), line.Integer());
        EXPECT_EQ(color.Alpha(), line.Integer());
        EXPECT_SAME_BITS(color.FractionRed(), line.Number());
        EXPECT_SAME_BITS(color.FractionGreen(), line.Number());
        EXPECT_SAME_BITS(color.FractionBlue(), line.Number());
        EXPECT_SAME_BITS(color.FractionAlpha(), line.Number());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Color, CompareIsASignedDifferenceAndNotTheOrderOfThePackedValues) {
    for (GoldenLine& line : GoldenCases(kFile, "compare", 36)) {
        SCOPED_TRACE(line.Where());
        const ON_Color a(line.Packed());
        const ON_Color b(line.Packed());
        EXPECT_EQ(SignOf(a.Compare(b)), line.Integer());
        EXPECT_EQ(a < b, line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Color, RedIsTheLowByteAndAlphaZeroIsOpaque) {
    EXPECT_EQ(static_cast<unsigned int>(ON_Color(0x11, 0x22, 0x33)), 0x00332211u);
}

TEST(ON_Color, FractionalAlphaTruncatesWhereTheOthersRound) {
    // 0.5 * 255 = 127.5
    ON_Color color;
    color.SetFractionalAlpha(0.5);
    EXPECT_EQ(color.Alpha(), 127);
    color.SetFractionalRGBA(0.5, 0.0, 0.0, 0.5);
    EXPECT_EQ(color.Red(), 128);
    EXPECT_EQ(color.Alpha(), 128);
}
