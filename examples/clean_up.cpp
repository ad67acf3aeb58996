// Takes two triangle soups down the usual road: join, remove degenerate triangles, compact, merge, shade.

#include <iostream>

#include "mesh/VraMesh.h"

namespace {

using Mesh = boost::intrusive_ptr<Vr::VraMeshPrimitive>;

void Report(const char* step, const Mesh& mesh) {
    std::cout << step << ": " << mesh->GetVertexArray()->size() << " vertices, "
              << mesh->GetVertexIndexArray()->size() << " triangles\n";
}

// A unit square of two triangles, and a sliver whose first and last corners coincide, as an STL file
// gives them: three vertices a triangle, nothing shared.
Mesh MakeSoup(double x) {
    const Mesh mesh(new Vr::VraMesh);
    mesh->SetVertexArray(std::make_shared<Vr::VraMesh::VertexArray>(Vr::VraMesh::VertexArray{
        ON_3dPoint(x, 0, 0), ON_3dPoint(x + 1, 0, 0), ON_3dPoint(x + 1, 1, 0),  // lower triangle
        ON_3dPoint(x, 0, 0), ON_3dPoint(x + 1, 1, 0), ON_3dPoint(x, 1, 0),      // upper triangle
        ON_3dPoint(x, 1, 0), ON_3dPoint(x, 2, 0), ON_3dPoint(x, 1, 0)}));       // sliver
    mesh->SetVertexIndexArray(std::make_shared<Vr::VraMesh::VertexIndexArray>(
        Vr::VraMesh::VertexIndexArray{{{0, 1, 2}}, {{3, 4, 5}}, {{6, 7, 8}}}));
    return mesh;
}

void CleanUp(const Mesh& mesh) {
    Report("soup", mesh);
    mesh->MergeSameData();  // equal vertices become one, in ascending order
    Report("joined", mesh);
    mesh->RemoveDegenerateMesh();  // the sliver now names a vertex twice
    Report("without degenerate triangles", mesh);
    mesh->DeleteUnusedVertices();  // one corner was the sliver's alone
    Report("compacted", mesh);
}

}  // namespace

int main() {
    const Mesh left = MakeSoup(0);
    const Mesh right = MakeSoup(1);
    CleanUp(left);
    CleanUp(right);

    const Mesh merged(new Vr::VraMesh);
    Vr::VraMeshPrimitive::Merge(merged, {left, right});  // two vertices are common to both
    Report("merged", merged);

    merged->SetCreaseAngle(ON_PI / 6);
    merged->CreateNormalPerVertex();
    std::vector<std::pair<size_t, size_t>> edges;
    merged->GetFreeEdges(edges);
    std::cout << merged->GetNormalArray()->size() << " normals, " << edges.size()
              << " free edges\n";
}
