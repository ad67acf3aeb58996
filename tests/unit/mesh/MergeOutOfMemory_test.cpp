// What merging leaves behind when memory is short, at every allocation in turn.

#include <gtest/gtest.h>

#include <functional>

#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using RecordingMesh = boost::intrusive_ptr<RecordingPrimitive>;

// Many values, `copies` times each, in all three kinds of arrays.
Mesh Values(size_t distinctCount, size_t copies, bool isTextured) {
    const auto vertices = Vertices({});
    const auto normals = Normals({});
    const auto colors = Colors({});
    const auto textureUVs = UVs({});
    const auto triangles = Triangles({});
    for (size_t i = 0; i < distinctCount * copies; ++i) {
        const double x = static_cast<double>(i * 7919 % distinctCount);
        vertices->push_back(ON_3dPoint(x, 0, 0));
        normals->push_back(ON_3dVector(0, x, 0));
        colors->push_back(ON_Color(static_cast<unsigned int>(x)));
        textureUVs->push_back(ON_2dPoint(x, 1));
        triangles->push_back({{i, i / 2, i / 3}});
    }
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(vertices);
    mesh->SetVertexIndexArray(triangles);
    mesh->SetNormalArray(normals);
    mesh->SetNormalIndexArray(PerVertex(*triangles));
    mesh->SetColorArray(colors);
    mesh->SetColorIndexArray(PerVertex(*triangles));
    if (isTextured)
        mesh->SetTextureUVArray(textureUVs);
    return mesh;
}

// Runs `operation` with the first, second, third... allocation failing until none fails, and
// expects each failure to leave the mesh as it was.
void ExpectUnchangedByEachFailure(const Mesh& mesh, const std::function<void()>& operation) {
    const Mesh before = mesh->Duplicate();
    for (size_t number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        Caught caught;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            caught = CaughtFrom(operation);
            hasHappened = failure.HasHappened();
        }
        if (!hasHappened) {
            EXPECT_EQ(caught, Nothing());
            EXPECT_GT(number, 3u);
            return;
        }
        ASSERT_EQ(caught, BadAlloc());
        ASSERT_TRUE(AreBitEqual(*mesh, *before));
    }
}

class MergeOutOfMemory : public ::testing::TestWithParam<std::tuple<size_t, size_t, bool>> {
protected:
    Mesh NewMesh() const {
        return Values(std::get<0>(GetParam()), std::get<1>(GetParam()), std::get<2>(GetParam()));
    }
};

TEST_P(MergeOutOfMemory, EachStepOfMergingSameDataChangesNothing) {
    const std::function<void(RecordingPrimitive&)> steps[] = {
        [](RecordingPrimitive& mesh) { mesh.OnMergeSameVertex(); },
        [](RecordingPrimitive& mesh) { mesh.OnMergeSameNormal(); },
        [](RecordingPrimitive& mesh) { mesh.OnMergeSameColor(); }};
    for (const auto& step : steps) {
        const RecordingMesh mesh(new RecordingPrimitive);
        NewMesh()->ShallowCopy(mesh);
        ExpectUnchangedByEachFailure(mesh, [&] { step(*mesh); });
    }
}

TEST_P(MergeOutOfMemory, MergingPrimitivesLeavesTheTarget) {
    const Mesh target = FullSquare();
    target->SetUVArray(nullptr);  // A duplicate has none.
    const Mesh source = NewMesh();
    ExpectUnchangedByEachFailure(target, [&] {
        std::vector<std::vector<int>> maps[3];
        VraMeshPrimitive::Merge(target, {source, target}, &maps[0], &maps[1], &maps[2]);
    });
}

// Few values; many that repeat; many that do not.
INSTANTIATE_TEST_SUITE_P(Sizes, MergeOutOfMemory,
                         ::testing::Combine(::testing::Values(5u, 5000u), ::testing::Values(1u, 4u),
                                            ::testing::Bool()));

}  // namespace
