#include <fstream>

#include "host/HostTest.h"

namespace Vr::test {
namespace {

class Copy : public HostTest {
protected:
    void ExpectCopyIsEqual(const Bytes& document) const {
        ExpectSuccess(RunHost({"copy", Write("source.vrd", document), Path("target.vrd")}));
        EXPECT_EQ(Read("target.vrd"), document);
    }
};

TEST_F(Copy, ADocumentWrittenByHandComesBackByteForByte) {
    const ByteScript document = DocumentHeader(3)
                                    .Append(FirstEmptyMesh())
                                    .Append(LaterEmptyMesh())
                                    .Append(LaterEmptyMesh())
                                    .Append(DocumentEnd());
    ExpectSuccess(RunHost({"copy", Write("source.vrd", document.Bytes()), Path("target.vrd")}));
    EXPECT_TRUE(document.Matches(Read("target.vrd")));
}

TEST_F(Copy, ADocumentWithoutObjectsComesBackByteForByte) {
    ExpectCopyIsEqual(DocumentHeader(0).Append(DocumentEnd()).Bytes());
}

TEST_F(Copy, ColoursAndUVsComeBackByteForByte) {
    ExpectSuccess(
        RunHost({"import", Write("cube.ply", PaintedCubePly()), "-o", Path("painted.vrd")}));
    ExpectCopyIsEqual(Read("painted.vrd"));
}

TEST_F(Copy, SharingBetweenObjectsAndRolesComesBackByteForByte) {
    const Mesh first = UnitBox();
    first->SetColorArray(std::make_shared<VraMesh::ColorArray>(6, ON_Color(1, 2, 3, 4)));
    first->SetColorIndexArray(first->GetModifiableNormalIndexArray());
    const Mesh second(new VraMeshPrimitive);
    first->ShallowCopy(second);
    StoreDocument("shared.vrd", {first, second});
    ExpectCopyIsEqual(Read("shared.vrd"));
}

// The pieces straddle every buffer on the way: colours and UVs of 4 and 16 bytes behind a position
// array that is larger than all of them.
TEST_F(Copy, ArraysLargerThanTheBuffersComeBackByteForByte) {
    const Mesh mesh = UnitBox();
    const size_t triangleCount = 50001;
    mesh->SetVertexIndexArray(std::make_shared<VraMesh::VertexIndexArray>(triangleCount));
    mesh->SetNormalIndexArray(nullptr);
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>());
    mesh->SetUVArray(std::make_shared<VraMesh::UVArray>());
    for (size_t triangle = 0; triangle < triangleCount; ++triangle) {
        const auto number = static_cast<unsigned int>(triangle);
        mesh->GetModifiableColorArray()->push_back(ON_Color(number * 2654435761U));
        for (int corner = 0; corner < 3; ++corner)
            mesh->GetModifiableUVArray()->emplace_back(number, corner);
    }
    StoreDocument("large.vrd", {mesh, UnitBox()});
    ExpectCopyIsEqual(Read("large.vrd"));
}

TEST_F(Copy, ADocumentCanBeCopiedOntoItself) {
    const std::string path = StoreDocument("box.vrd", {UnitBox()});
    const Bytes before = Read("box.vrd");
    ExpectSuccess(RunHost({"copy", path, path}));
    EXPECT_EQ(Read("box.vrd"), before);
    EXPECT_THAT(Names(), ::testing::ElementsAre("box.vrd"));
}

TEST_F(Copy, ALinkIsFollowedAndStaysALink) {
    StoreDocument("box.vrd", {UnitBox()});
    Write("old.vrd", "old");
    std::filesystem::create_symlink("old.vrd", Path("link.vrd"));
    ExpectSuccess(RunHost({"copy", Path("box.vrd"), Path("link.vrd")}));
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link.vrd")));
    EXPECT_EQ(Read("old.vrd"), Read("box.vrd"));
}

TEST_F(Copy, TheNewDocumentHasThePermissionsOfTheOld) {
    using std::filesystem::perms;
    StoreDocument("box.vrd", {UnitBox()});
    Write("old.vrd", "old");
    const perms permissions = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(Path("old.vrd"), permissions);
    ExpectSuccess(RunHost({"copy", Path("box.vrd"), Path("old.vrd")}));
    EXPECT_EQ(std::filesystem::status(Path("old.vrd")).permissions(), permissions);
}

TEST_F(Copy, ATargetWithoutAFolderGoesToTheCurrentOne) {
    StoreDocument("box.vrd", {UnitBox()});
    const std::string folder = Path("");
    ExpectSuccess(RunHost({"copy", Path("box.vrd"), "here.vrd"},
                          [folder] { std::filesystem::current_path(folder); }));
    EXPECT_EQ(Read("here.vrd"), Read("box.vrd"));
}

}  // namespace
}  // namespace Vr::test
