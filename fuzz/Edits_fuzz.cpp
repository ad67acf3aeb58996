// Random sequences of edits on two meshes that may share arrays, against the slow models of the test
// suite: after each edit every bit is the same, and so is what shares what.
//
// A sequence ends where an edit has left a mesh on which the next one may not be called, as one mesh's
// edit of shared vertices does to the other.

#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Fuzz.h"
#include "serialize/CheckStream.h"
#include "support/Caught.h"
#include "support/CreateNormalOracle.h"
#include "support/DegenerateOracle.h"
#include "support/DeleteFacetFacesOracle.h"
#include "support/DeleteUnusedVerticesOracle.h"
#include "support/GetFreeEdgesOracle.h"
#include "support/MergePrimitivesOracle.h"
#include "support/MergeSameOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"
#include "support/TransformOracle.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::fuzz::Choices;
using Sources = std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>;

constexpr int kMostEdits = 12;

/// Two meshes, once as the library edits them and once as the models do.
struct Twins {
    std::vector<Mesh> actual;
    std::vector<Mesh> expected;
};

std::vector<Mesh> NewPair(std::uint64_t seed) {
    Random random(seed);
    const Mesh first = RandomMesh(random);
    const Mesh second = random.Chance(50) ? RandomMesh(random) : NewPrimitive();
    if (random.Chance(60))
        first->ShallowCopy(second);
    if (random.Chance(30))
        second->SetUVArray(first->GetModifiableUVArray());
    return {first, second};
}

void Require(const ::testing::AssertionResult& holds, const char* what) {
    if (!holds)
        Vr::fuzz::Fail((std::string(what) + ": " + holds.message()).c_str());
}

void Require(bool holds, const char* what) {
    if (!holds)
        Vr::fuzz::Fail(what);
}

bool MayBeEdited(const std::vector<Mesh>& meshes) {
    const Bytes bytes = StoredObjects(meshes);
    return IsConsistent(*meshes[0]) && IsConsistent(*meshes[1]) &&
           Vr::CheckDocument(bytes.data(), bytes.size()).IsSafe();
}

void DeleteFaces(Choices& choices, const Mesh& actual, const Mesh& expected) {
    std::vector<std::size_t> list(choices.Below(6));
    for (std::size_t& triangle : list)
        triangle = choices.Below(20);
    if (choices.Below(4) != 0)
        std::sort(list.begin(), list.end());
    Require(actual->DeleteFacetFaces(list) == OracleDeleteFacetFaces(*expected, list),
            "triangles that remain");
}

void RemoveDegenerate(const Mesh& actual, const Mesh& expected) {
    const bool hasTriangles = expected->GetVertexIndexArray() != nullptr;
    Require(actual->RemoveDegenerateMesh() == hasTriangles, "degenerate triangles are looked for");
    const std::set<std::size_t> removed = OracleDegenerateTriangles(*expected);
    if (!removed.empty())
        OracleRemoveTriangles(*expected, removed);
}

void MergeSame(const Mesh& actual, const Mesh& expected) {
    const Caught caught = CaughtFrom([&] { actual->MergeSameData(); });
    const Caught caughtSlowly = CaughtFrom([&] {
        MergeVerticesSlowly(*expected);
        MergeNormalsSlowly(*expected);
        MergeColorsSlowly(*expected);
    });
    Require(caught == caughtSlowly, "exceptions of joining");
}

void Transform(Choices& choices, const Twins& twins) {
    ON_Xform xf(1.0);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            xf.m_xform[row][column] = static_cast<double>(choices.Take<std::int8_t>()) / 64.0;
    std::set<void*> done;
    std::set<void*> doneSlowly;
    for (std::size_t number = 0; number < 2; ++number)
        Require(twins.actual[number]->Transform(xf, done) ==
                    TransformByDefinition(*twins.expected[number], xf, doneSlowly),
                "answers of transformations");
}

void CreateNormals(Choices& choices, const Mesh& actual, const Mesh& expected) {
    const double angle = static_cast<double>(choices.Take<std::int8_t>()) / 40.0;
    const bool isByAngle = choices.Below(2) == 1;
    actual->SetCreaseAngle(angle);
    expected->SetCreaseAngle(angle);
    VraMeshPrimitive::SetVertexNormalWeightType(isByAngle ? VraMeshPrimitive::Angle
                                                          : VraMeshPrimitive::Area);
    Require(actual->CreateNormalPerVertex(), "the answer of making normals");
    const auto vertices = expected->GetVertexArray();
    const auto triangles = expected->GetVertexIndexArray();
    if (!vertices || !triangles)
        return;
    VertexNormals normals =
        CreateNormalOracle(*vertices, *triangles, angle, isByAngle ? 1 : 0).Compute();
    expected->SetNormalArray(
        std::make_shared<VraMeshPrimitive::NormalArray>(std::move(normals.normals)));
    expected->SetNormalIndexArray(std::make_shared<IndexArray>(std::move(normals.indices)));
}

void CreateFaceNormals(const Mesh& actual, const Mesh& expected) {
    Require(actual->CreateNormalPerTriangle(), "the answer of making normals");
    const auto vertices = expected->GetVertexArray();
    const auto triangles = expected->GetVertexIndexArray();
    if (!vertices || !triangles)
        return;
    auto normals = TriangleNormalsByDefinition(*vertices, *triangles);
    std::vector<std::size_t> numbers(triangles->size());
    std::iota(numbers.begin(), numbers.end(), std::size_t{0});
    expected->SetNormalArray(std::make_shared<VraMeshPrimitive::NormalArray>(std::move(normals)));
    expected->SetNormalIndexArray(std::make_shared<IndexArray>(std::move(numbers)));
}

void Scale(Choices& choices, const Mesh& actual, const Mesh& expected) {
    const double factor = static_cast<double>(choices.Take<std::int8_t>()) / 16.0;
    const auto vertices = expected->GetModifiableVertexArray();
    Require(actual->Scale(factor), "the answer of scaling");
    if (!vertices)
        return;
    for (ON_3dPoint& vertex : *vertices)
        vertex = ON_3dPoint(vertex.x * factor, vertex.y * factor, vertex.z * factor);
}

void FindFreeEdges(const Mesh& actual, const Mesh& expected) {
    EdgeList edges;
    EdgeList expectedEdges;
    actual->GetFreeEdges(edges);
    if (const auto triangles = expected->GetVertexIndexArray())
        AppendFreeEdgesByDefinition(*triangles, expectedEdges);
    Require(edges == expectedEdges, "free edges");
}

void MergeBoth(Twins& twins) {
    std::vector<std::vector<int>> maps[3];
    SlowMaps slowMaps[3];
    const Mesh actual = NewPrimitive();
    const Mesh expected = NewPrimitive();
    const Caught caught = CaughtFrom([&] {
        VraMeshPrimitive::Merge(actual, Sources(twins.actual.begin(), twins.actual.end()), &maps[0],
                                &maps[1], &maps[2]);
    });
    const Caught caughtSlowly = CaughtFrom([&] {
        MergeSlowly(*expected, Sources(twins.expected.begin(), twins.expected.end()), &slowMaps[0],
                    &slowMaps[1], &slowMaps[2]);
    });
    Require(caught == caughtSlowly, "exceptions of merging");
    if (caught != Nothing())
        return;
    for (int kind = 0; kind < 3; ++kind)
        Require(maps[kind] == slowMaps[kind], "maps of merging");
    twins.actual[0] = actual;
    twins.expected[0] = expected;
}

// Loaded meshes take the place of the edited ones; textures are not stored.
void StoreAndLoad(Twins& twins) {
    twins.actual = LoadedObjects(StoredObjects(twins.actual), 2);
    for (const Mesh& mesh : twins.expected) {
        mesh->SetTextureUVIndexArray(nullptr);
        mesh->SetTextureUVArray(nullptr);
    }
}

void Edit(Choices& choices, Twins& twins) {
    const std::size_t number = choices.Below(2);
    const Mesh& actual = twins.actual[number];
    const Mesh& expected = twins.expected[number];
    switch (choices.Take<std::uint8_t>() % 13) {
        case 0:
            return DeleteFaces(choices, actual, expected);
        case 1:
            return RemoveDegenerate(actual, expected);
        case 2:
            actual->DeleteUnusedVertices();
            return OracleDeleteUnusedVertices({expected});
        case 3:
            VraMeshPrimitive::DeleteUnusedVertices(twins.actual);
            return OracleDeleteUnusedVertices(twins.expected);
        case 4:
            return MergeSame(actual, expected);
        case 5:
            return Transform(choices, twins);
        case 6:
            actual->ReverseFaces(number == 0);
            return ReverseFacesByDefinition(*expected, number == 0);
        case 7:
            return CreateNormals(choices, actual, expected);
        case 8:
            return FindFreeEdges(actual, expected);
        case 9:
            return MergeBoth(twins);
        case 10:
            return CreateFaceNormals(actual, expected);
        case 11:
            return Scale(choices, actual, expected);
        default:
            return StoreAndLoad(twins);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
    Choices choices(bytes, byteCount);
    const auto seed = choices.Take<std::uint32_t>();
    Twins twins = {NewPair(seed), NewPair(seed)};
    for (int left = kMostEdits; left > 0 && !choices.IsEmpty(); --left) {
        if (!MayBeEdited(twins.expected))
            return 0;
        Edit(choices, twins);
        for (std::size_t number = 0; number < 2; ++number) {
            Require(AreBitEqual(*twins.actual[number], *twins.expected[number]), "arrays");
            Require(ShareAlike(*twins.actual[number], *twins.expected[number]), "sharing");
        }
    }
    return 0;
}
