#include "mesh/VraMesh.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "mesh/VruDuplicateMap.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

TEST(VraMesh, ADefaultOneIsEmpty) {
    const boost::intrusive_ptr<VraMesh> mesh(new VraMesh);
    EXPECT_EQ(AddressesOf(*mesh), ArrayAddresses{});
    EXPECT_TRUE(SameBits(mesh->GetCreaseAngle(), 0.0));
    EXPECT_TRUE(mesh->IsEmpty());
}

TEST(VraMesh, IsAPrimitiveUnderAClassOfItsOwn) {
    const Mesh mesh(new VraMesh);
    EXPECT_STREQ(mesh->GetRuntimeClass()->m_lpszClassName, "VraMesh");
    EXPECT_TRUE(mesh->IsKindOf(RUNTIME_CLASS(VraMeshPrimitive)));
    EXPECT_TRUE(mesh->IsKindOf(RUNTIME_CLASS(VraMesh)));
    EXPECT_FALSE(NewPrimitive()->IsKindOf(RUNTIME_CLASS(VraMesh)));
}

TEST(VraMesh, DuplicatesIntoItsOwnClass) {
    const Mesh mesh(new VraMesh);
    mesh->SetVertexArray(Vertices({{1, 2, 3}}));
    mesh->SetCreaseAngle(0.75);
    const Mesh duplicate = mesh->Duplicate();
    EXPECT_EQ(duplicate->GetRuntimeClass(), RUNTIME_CLASS(VraMesh));
    EXPECT_NE(dynamic_cast<VraMesh*>(duplicate.get()), nullptr);
    ExpectBitEqual(*duplicate, *mesh);
}

TEST(VraMesh, DeepCopyCopiesAsThePrimitiveDoesAndAnswersTrue) {
    const boost::intrusive_ptr<VraMesh> source(new VraMesh);
    const boost::intrusive_ptr<VraMesh> target(new VraMesh);
    const auto vertices = Vertices({{1, 2, 3}});
    const auto uvs = UVs({{1, 1}});
    source->SetVertexArray(vertices);
    source->SetUVArray(UVs({{0, 0}}));
    source->SetCreaseAngle(0.25);
    target->SetUVArray(uvs);
    VruDuplicateMap map;
    EXPECT_TRUE(source->DeepCopy(target, map));
    EXPECT_NE(target->GetVertexArray(), vertices);
    EXPECT_TRUE(SameBits(target->GetVertexArray().get(), vertices.get()));
    EXPECT_EQ(target->GetUVArray(), uvs);
    EXPECT_EQ(target->GetCreaseAngle(), 0.25);
}

TEST(VraMesh, DeepCopySharesTheMapWithThePrimitives) {
    const boost::intrusive_ptr<VraMesh> source(new VraMesh);
    const Mesh other = NewPrimitive();
    source->SetVertexArray(Vertices({{1, 2, 3}}));
    other->SetVertexArray(source->GetModifiableVertexArray());
    const boost::intrusive_ptr<VraMesh> target(new VraMesh);
    VruDuplicateMap map;
    source->DeepCopy(target, map);
    EXPECT_EQ(other->Duplicate(map)->GetVertexArray(), target->GetVertexArray());
}

TEST(VraMesh, DroppingTheLastPointerToThePrimitiveDestroysTheWholeMesh) {
    struct Watched : VraMesh {
        explicit Watched(int& destroyedCount) : count(destroyedCount) {}
        ~Watched() override { ++count; }
        int& count;
    };
    int destroyedCount = 0;
    Mesh(new Watched(destroyedCount)).reset();
    EXPECT_EQ(destroyedCount, 1);
    delete static_cast<CObject*>(new Watched(destroyedCount));
    EXPECT_EQ(destroyedCount, 2);
}

TEST(VraMesh, SharesAFormOfDeepCopyThatTakesMeshesOnly) {
    EXPECT_FALSE((
        std::is_invocable_v<decltype(&VraMesh::DeepCopy), const VraMesh&, Mesh, VruDuplicateMap&>));
}

}  // namespace
