#include "host/HostTest.h"

#include <algorithm>

namespace Vr::test {
namespace {

using IndexArray = VraMeshPrimitive::IndexArray;

class Check : public HostTest {
protected:
    // A box whose last triangle names vertex 8, and which has an odd presence byte for its UVs.
    std::string StoreDamagedBox() const {
        const Mesh mesh = UnitBox();
        (*mesh->GetModifiableVertexIndexArray())[11][2] = 8;
        StoreDocument("damaged.vrd", {Mesh(new VraMesh), mesh});
        Bytes bytes = Read("damaged.vrd");
        bytes[bytes.size() - 5] = 2;
        return Write("damaged.vrd", bytes);
    }
};

TEST_F(Check, ASafeDocumentIsCounted) {
    const Mesh box = UnitBox();
    const Mesh sharing(new VraMesh);
    box->ShallowCopy(sharing);
    const std::string path = StoreDocument("boxes.vrd", {box, sharing});
    EXPECT_EQ(ExpectSuccess(RunHost({"check", path})),
              path + ": safe to load, 2 objects, 4 arrays\n");
}

TEST_F(Check, ADocumentWithoutObjectsIsSafe) {
    const std::string path = StoreDocument("none.vrd", {});
    EXPECT_EQ(ExpectSuccess(RunHost({"check", path})),
              path + ": safe to load, 0 objects, 0 arrays\n");
}

// The box of 833 bytes with 28 bytes of the first object in front of it, whose class it need not name
// again: 11 bytes less.
TEST_F(Check, EachFindingIsALineAndTheDocumentIsNotSafe) {
    const std::string path = StoreDamagedBox();
    const HostResult result = RunHost({"check", path});
    EXPECT_EQ(result.out,
              "object 2, byte 722: vertex number 8 where there are 8 (suspicious, vertex-number)\n"
              "object 2, byte 845: presence byte 2 stands for no array (note, presence-byte)\n");
    ExpectFailure(result, path, "not safe to load");
}

TEST_F(Check, NotesAloneLeaveADocumentSafe) {
    StoreDocument("odd.vrd", {Mesh(new VraMesh)});
    Bytes bytes = Read("odd.vrd");
    bytes[37] = 7;
    const std::string path = Write("odd.vrd", bytes);
    EXPECT_EQ(ExpectSuccess(RunHost({"check", path})),
              "object 1, byte 37: presence byte 7 stands for no array (note, presence-byte)\n" +
                  path + ": safe to load, 1 object, 0 arrays\n");
    ExpectSuccess(RunHost({"copy", path, Path("copy.vrd")}));
}

TEST_F(Check, FindingsBeyondAHundredAreCounted) {
    std::vector<Mesh> objects;
    while (objects.size() < 103) {
        objects.push_back(UnitBox());
        objects.back()->GetModifiableVertexIndexArray()->front()[0] = 8;
    }
    const std::string path = StoreDocument("damaged.vrd", objects);
    const HostResult result = RunHost({"check", path});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 101);
    EXPECT_THAT(result.out, ::testing::EndsWith("\nand 3 more\n"));
    ExpectFailure(result, path, "not safe to load");
}

TEST_F(Check, AFileOfAnotherKind) {
    const std::string path = Write("cube.ply", CubePly());
    const HostResult result = RunHost({"check", path});
    EXPECT_EQ(result.out, "byte 0: not a mesh document (invalid, host-content)\n");
    ExpectFailure(result, path, "not safe to load");
}

TEST_F(Check, AMissingFile) {
    ExpectFailure(RunHost({"check", Path("missing.vrd")}), Path("missing.vrd"),
                  "No such file or directory");
}

TEST_F(Check, EveryCommandThatLoadsRefusesAnUnsafeDocument) {
    const std::string path = StoreDamagedBox();
    const std::string reason =
        "damaged document: object 2, byte 722: vertex number 8 where there are 8";
    const std::string output = Path("out.vrd");
    const std::vector<std::vector<std::string>> commands = {
        {"info", path},
        {"edges", path},
        {"copy", path, output},
        {"export", path, Path("out.stl")},
        {"clean", path, "-o", output},
        {"normals", path, "-o", output, "--flat"},
        {"transform", path, "-o", output, "--scale", "2"},
        {"reverse", path, "-o", output},
        {"delete-faces", path, "-o", output, "--faces", "0"},
        {"merge", path, "-o", output},
        {"join", path, "-o", output}};
    for (const auto& command : commands)
        ExpectFailure(RunHost(command), path, reason);
    EXPECT_THAT(Names(), ::testing::ElementsAre("damaged.vrd"));
}

// Copying touches no vertex, so that this document can be loaded and stored unseen.
TEST_F(Check, ATrustedDocumentIsLoadedAsItIs) {
    const std::string path = StoreDamagedBox();
    ExpectSuccess(RunHost({"copy", "--trust", path, Path("copy.vrd")}));
    const std::vector<Mesh> copy = LoadDocument("copy.vrd");
    ASSERT_EQ(copy.size(), 2u);
    EXPECT_EQ((*copy[1]->GetVertexIndexArray())[11][2], 8u);
}

}  // namespace
}  // namespace Vr::test
