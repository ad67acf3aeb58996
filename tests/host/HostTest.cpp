// Documents are written here by the layout of docs/sample-host.md, so that the host is tested against
// the page and not against itself.

#include "host/HostTest.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"

namespace Vr::test {

namespace {

namespace fs = std::filesystem;

constexpr DWORD kMagic = 0x4D445256;
constexpr DWORD kEndMark = 0x444E4556;

fs::path NewFolder() {
    std::string name = (fs::temp_directory_path() / "veridane_host_XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    return name;
}

}  // namespace

HostTest::HostTest() : folder_(NewFolder()) {}

HostTest::~HostTest() {
    std::error_code error;
    fs::remove_all(folder_, error);
}

std::string HostTest::Write(const std::string& name, std::string_view text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
}

std::string HostTest::Write(const std::string& name, const Bytes& bytes) const {
    return Write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

Bytes HostTest::Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> HostTest::Names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string HostTest::StoreDocument(const std::string& name,
                                    const std::vector<Mesh>& objects) const {
    CFile file(Path(name).c_str(), CFile::modeCreate | CFile::modeWrite);
    VrmArchive archive(&file, CArchive::store);
    archive << kMagic << DWORD{1} << static_cast<ULONGLONG>(objects.size());
    for (const Mesh& object : objects)
        archive << object.get();
    archive << kEndMark;
    archive.Close();
    return Path(name);
}

std::vector<Mesh> HostTest::LoadDocument(const std::string& name) const {
    CFile file(Path(name).c_str(), CFile::modeRead);
    VrmArchive archive(&file, CArchive::load);
    DWORD magic = 0;
    DWORD version = 0;
    ULONGLONG count = 0;
    archive >> magic >> version >> count;
    EXPECT_EQ(magic, kMagic);
    EXPECT_EQ(version, 1U);
    std::vector<Mesh> objects;
    for (ULONGLONG object = 0; object < count; ++object) {
        VraMeshPrimitive* mesh = nullptr;
        archive >> mesh;
        objects.emplace_back(mesh);
    }
    DWORD endMark = 0;
    archive >> endMark;
    EXPECT_EQ(endMark, kEndMark);
    return objects;
}

std::string ExpectSuccess(const HostResult& result) {
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
}

void ExpectFailure(const HostResult& result, const std::string& file, const std::string& reason) {
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "veridane-host: " + file + ": " + reason + "\n");
}

ByteScript DocumentHeader(std::uint64_t objectCount) {
    return ByteScript()
        .Text("VRDM", "magic word")
        .Dword(1, "document format")
        .Qword(objectCount, "object count");
}

ByteScript FirstEmptyMesh() {
    return ByteScript()
        .NewClass(16, "VraMesh", "class is number 1")
        .Double(0.0, "crease angle")
        .Hex("00 00 00 00 00 00 00", "seven absent arrays");
}

ByteScript LaterEmptyMesh() {
    return ByteScript()
        .Word(0x8001, "class number 1")
        .Double(0.0, "crease angle")
        .Hex("00 00 00 00 00 00 00", "seven absent arrays");
}

ByteScript DocumentEnd() {
    return ByteScript().Text("VEND", "end mark");
}

std::string_view CubePly() {
    return R"(ply
format ascii 1.0
element vertex 8
property float x
property float y
property float z
element face 6
property list uchar int vertex_indices
end_header
0 0 0
1 0 0
1 1 0
0 1 0
0 0 1
1 0 1
1 1 1
0 1 1
4 0 3 2 1
4 0 1 5 4
4 1 2 6 5
4 2 3 7 6
4 0 4 7 3
4 4 5 6 7
)";
}

std::string_view PaintedCubePly() {
    return R"(ply
format ascii 1.0
element vertex 8
property float x
property float y
property float z
property float s
property float t
property uchar red
property uchar green
property uchar blue
element face 6
property list uchar int vertex_indices
end_header
0 0 0 0 0 255 0 0
1 0 0 1 0 0 255 0
1 1 0 1 1 0 0 255
0 1 0 0 1 255 255 0
0 0 1 0.5 0 255 0 255
1 0 1 0.5 0.5 0 255 255
1 1 1 0.25 0 255 255 255
0 1 1 0 0.25 0 0 0
4 0 3 2 1
4 0 1 5 4
4 1 2 6 5
4 2 3 7 6
4 0 4 7 3
4 4 5 6 7
)";
}

Mesh UnitBox() {
    Mesh mesh(new VraMesh);
    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 1)));
    return mesh;
}

}  // namespace Vr::test
