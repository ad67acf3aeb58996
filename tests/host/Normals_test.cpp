#include <cmath>

#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using IndexArray = VraMeshPrimitive::IndexArray;

constexpr int kWrongUsage = 2;

class Normals : public EditTest {};

TEST_F(Normals, FlatOnesAreOneATriangle) {
    const auto objects = Edited({Square()}, {"normals", "--flat"});
    EXPECT_EQ(*objects[0]->GetNormalArray(),
              (VraMesh::NormalArray{ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 1)}));
    EXPECT_FALSE(objects[0]->IsNormalPerVertex());
    EXPECT_THAT(printed_, HasSubstr("made: 2 normals for 2 triangles\nstored "));
}

TEST_F(Normals, ABoxSplitsBelowNinetyDegreesAndNotBeyond) {
    EXPECT_EQ(Edited({UnitBox()}, {"normals", "--crease-angle", "30"})[0]->GetNormalArray()->size(),
              24U);
    EXPECT_EQ(Edited({UnitBox()}, {"normals", "--crease-angle", "91"})[0]->GetNormalArray()->size(),
              8U);
}

TEST_F(Normals, ANegativeAngleNeverSplits) {
    const auto objects = Edited({UnitBox()}, {"normals", "--crease-angle", "-1"});
    EXPECT_EQ(objects[0]->GetNormalArray()->size(), 8U);
    EXPECT_LT(objects[0]->GetCreaseAngle(), 0.0);
}

// At vertex 1 of the box two triangles of the front meet one of the bottom and two of the right side
// (triangles 0, 2, 4, 5; the angles are 90 degrees in each face, however it is cut).
TEST_F(Normals, AngleWeightsMakeTheCornersOfABoxSymmetric) {
    const auto objects =
        Edited({UnitBox()}, {"normals", "--crease-angle", "-1", "--weight", "angle"});
    const double component = 1.0 / std::sqrt(3.0);
    for (const ON_3dVector& normal : *objects[0]->GetNormalArray()) {
        EXPECT_NEAR(std::fabs(normal.x), component, 1e-15);
        EXPECT_NEAR(std::fabs(normal.y), component, 1e-15);
        EXPECT_NEAR(std::fabs(normal.z), component, 1e-15);
    }
}

TEST_F(Normals, AreaWeightsDoNot) {
    const auto objects = Edited({UnitBox()}, {"normals", "--crease-angle", "-1"});
    // vertex 1: one triangle below, one in front, two on the right: (2, -1, -1) / sqrt(6)
    const size_t number = boost::get<IndexArray::PerVertex>(
        objects[0]->GetNormalIndexArray()->data)[4][0];  // triangle 4 begins at vertex 1
    const ON_3dVector normal = (*objects[0]->GetNormalArray())[number];
    EXPECT_NEAR(normal.x, 2.0 / std::sqrt(6.0), 1e-15);
    EXPECT_NEAR(normal.y, -1.0 / std::sqrt(6.0), 1e-15);
    EXPECT_NEAR(normal.z, -1.0 / std::sqrt(6.0), 1e-15);
}

TEST_F(Normals, APositionThatIsNoNumberIsRefused) {
    const Mesh mesh = Square();
    (*mesh->GetModifiableVertexArray())[3].z = std::nan("");
    ExpectRefused({mesh}, {"normals", "--flat"}, "object 1: a position is not finite");
    ExpectRefused({mesh}, {"normals", "--crease-angle", "30"},
                  "object 1: a position is not finite");
}

TEST_F(Normals, OneKnownKindMustBeChosen) {
    StoreDocument("box.vrd", {UnitBox()});
    for (const std::vector<std::string>& kind : {std::vector<std::string>{},
                                                 {"--flat", "--crease-angle", "30"},
                                                 {"--flat", "--weight", "area"},
                                                 {"--crease-angle", "30", "--weight", "size"},
                                                 {"--crease-angle", "inf"}}) {
        std::vector<std::string> arguments = {"normals", Path("box.vrd"), "-o", Path("new.vrd")};
        arguments.insert(arguments.end(), kind.begin(), kind.end());
        const HostResult result = RunHost(arguments);
        EXPECT_EQ(result.status, kWrongUsage);
        EXPECT_THAT(result.err, MatchesRegex("veridane-host: [^\n]+\n"));
    }
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

}  // namespace
}  // namespace Vr::test
