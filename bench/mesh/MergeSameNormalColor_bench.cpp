// Merging of normals that come six times each, and of colours from a palette, with one number a
// corner; of colours also with one a triangle.

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;
using IndexArray = Vr::VraMeshPrimitive::IndexArray;
using NormalArray = Vr::VraMeshPrimitive::NormalArray;
using ColorArray = Vr::VraMeshPrimitive::ColorArray;

class Merger : public Vr::VraMeshPrimitive {
public:
    using VraMeshPrimitive::OnMergeSameColor;
    using VraMeshPrimitive::OnMergeSameNormal;
};

// The positions of a soup serve as normals: as many distinct ones, as far apart.
void MergeNormals(benchmark::State& state, const Case& which) {
    const Mesh soup = SharedMesh(which);
    const NormalArray normals(soup->GetVertexArray()->begin(), soup->GetVertexArray()->end());
    const IndexArray indices(*soup->GetVertexIndexArray());
    const boost::intrusive_ptr<Merger> mesh(new Merger);
    mesh->SetNormalArray(std::make_shared<NormalArray>());
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>());
    Measure(
        state, which.triangleCount,
        [&] {
            *mesh->GetModifiableNormalArray() = normals;
            *mesh->GetModifiableNormalIndexArray() = indices;
        },
        [&] { mesh->OnMergeSameNormal(); });
}

// A colour by height, one of 65536 at most.
ON_Color ColorAt(const ON_3dPoint& position) {
    return ON_Color(static_cast<unsigned int>(static_cast<int>(position.z * 32767.0)) & 0xFFFFu);
}

void MergeColors(benchmark::State& state, const Case& which, bool isPerVertex) {
    const Mesh soup = SharedMesh(which);
    ColorArray colors;
    for (const ON_3dPoint& position : *soup->GetVertexArray())
        colors.push_back(ColorAt(position));
    IndexArray indices(*soup->GetVertexIndexArray());
    if (!isPerVertex) {
        IndexArray::PerTriangle numbers;
        for (size_t triangle = 0; triangle < which.triangleCount; ++triangle)
            numbers.push_back(triangle);
        indices = IndexArray(numbers);
        colors.resize(which.triangleCount);
    }
    const boost::intrusive_ptr<Merger> mesh(new Merger);
    mesh->SetColorArray(std::make_shared<ColorArray>());
    mesh->SetColorIndexArray(std::make_shared<IndexArray>());
    Measure(
        state, which.triangleCount,
        [&] {
            *mesh->GetModifiableColorArray() = colors;
            *mesh->GetModifiableColorIndexArray() = indices;
        },
        [&] { mesh->OnMergeSameColor(); });
}

const bool kNormals = Register("MergeNormals", SoupCases(), MergeNormals);
const bool kColors =
    Register("MergeColorsPerVertex", SoupCases(),
             [](benchmark::State& state, const Case& which) { MergeColors(state, which, true); });
const bool kTriangleColors =
    Register("MergeColorsPerTriangle", SoupCases(),
             [](benchmark::State& state, const Case& which) { MergeColors(state, which, false); });

}  // namespace
