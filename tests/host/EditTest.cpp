// Every command takes a document, the option for the new one and options of its own.

#include "host/EditTest.h"

namespace Vr::test {

std::vector<Mesh> EditTest::Edited(const std::vector<Mesh>& objects,
                                   const std::vector<std::string>& command) {
    printed_ = ExpectSuccess(RunHost(Arguments(objects, command)));
    return LoadDocument("edited.vrd");
}

void EditTest::ExpectRefused(const std::vector<Mesh>& objects,
                             const std::vector<std::string>& command,
                             const std::string& reason) const {
    ExpectFailure(RunHost(Arguments(objects, command)), Path("source.vrd"), reason);
    EXPECT_THAT(Names(), ::testing::ElementsAre("source.vrd"));
}

std::vector<std::string> EditTest::Arguments(const std::vector<Mesh>& objects,
                                             const std::vector<std::string>& command) const {
    std::vector<std::string> arguments = {command.front(), StoreDocument("source.vrd", objects),
                                          "-o", Path("edited.vrd")};
    arguments.insert(arguments.end(), command.begin() + 1, command.end());
    return arguments;
}

Mesh MeshOf(const VraMesh::VertexArray& vertices, const VraMesh::VertexIndexArray& triangles) {
    Mesh mesh(new VraMesh);
    mesh->SetVertexArray(std::make_shared<VraMesh::VertexArray>(vertices));
    mesh->SetVertexIndexArray(std::make_shared<VraMesh::VertexIndexArray>(triangles));
    return mesh;
}

Mesh Square() {
    return MeshOf(
        {ON_3dPoint(0, 0, 0), ON_3dPoint(1, 0, 0), ON_3dPoint(1, 1, 0), ON_3dPoint(0, 1, 0)},
        {{{0, 1, 2}}, {{0, 2, 3}}});
}

Mesh SquareSoup() {
    return MeshOf({ON_3dPoint(0, 0, 0), ON_3dPoint(1, 0, 0), ON_3dPoint(1, 1, 0),
                   ON_3dPoint(1, 1, 0), ON_3dPoint(1, 1, 0), ON_3dPoint(2, 2, 0),
                   ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 0), ON_3dPoint(0, 1, 0)},
                  {{{0, 1, 2}}, {{3, 4, 5}}, {{6, 7, 8}}});
}

std::shared_ptr<VraMesh::UVArray> CountedUVs(int count) {
    auto uvs = std::make_shared<VraMesh::UVArray>();
    for (int uv = 0; uv < count; ++uv)
        uvs->emplace_back(uv, 0);
    return uvs;
}

std::vector<ON_3dPoint> Points(const Mesh& mesh) {
    return *mesh->GetVertexArray();
}

std::vector<VraMeshPrimitive::TriangleIndex> Triangles(const Mesh& mesh) {
    return *mesh->GetVertexIndexArray();
}

}  // namespace Vr::test
