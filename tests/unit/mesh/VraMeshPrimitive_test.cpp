#include "mesh/VraMeshPrimitive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "mesh/VraMesh.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;

TEST(VraMeshPrimitive, ADefaultOneIsEmptyAndHasNoArrays) {
    const Mesh mesh = NewPrimitive();
    EXPECT_TRUE(mesh->IsEmpty());
    EXPECT_FALSE(mesh->IsNormalPerVertex());
    EXPECT_FALSE(mesh->IsColorPerVertex());
    EXPECT_TRUE(SameBits(mesh->GetCreaseAngle(), 0.0));
    EXPECT_EQ(AddressesOf(*mesh), ArrayAddresses{});
    EXPECT_EQ(mesh->GetModifiableVertexArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableNormalArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableColorArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableVertexIndexArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableNormalIndexArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableColorIndexArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableTextureUVIndexArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableUVArray(), nullptr);
    EXPECT_EQ(mesh->GetModifiableTextureUVArray(), nullptr);
}

TEST(VraMeshPrimitive, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<VraMeshPrimitive>);
    EXPECT_FALSE(std::is_copy_assignable_v<VraMeshPrimitive>);
    EXPECT_FALSE(std::is_copy_constructible_v<VraMesh>);
    EXPECT_FALSE(std::is_copy_assignable_v<VraMesh>);
}

TEST(VraMeshPrimitive, HoldsNothingButWhatItsLayoutNames) {
    // Table pointer, crease angle, nine handles of two pointers, a 32-bit count.
    struct Layout {
        void* table;
        double creaseAngle;
        void* handles[9][2];
        uint32_t count;
    };
    EXPECT_EQ(sizeof(VraMeshPrimitive), sizeof(Layout));
    EXPECT_EQ(sizeof(VraMesh), sizeof(VraMeshPrimitive));
}

// One role of an array: its three accessors and how to make one element for it.
#define VERIDANE_ROLE(Name, ArrayType, ...)                                               \
    struct Name##Role {                                                                   \
        using Array = VraMeshPrimitive::ArrayType;                                        \
        static constexpr Role kRole = __VA_ARGS__;                                        \
        static void Set(VraMeshPrimitive& mesh, std::shared_ptr<Array> array) {           \
            mesh.Set##Name##Array(std::move(array));                                      \
        }                                                                                 \
        static auto Get(const VraMeshPrimitive& mesh) { return mesh.Get##Name##Array(); } \
        static auto GetModifiable(VraMeshPrimitive& mesh) {                               \
            return mesh.GetModifiable##Name##Array();                                     \
        }                                                                                 \
    }

VERIDANE_ROLE(Vertex, VertexArray, kVertices);
VERIDANE_ROLE(Normal, NormalArray, kNormals);
VERIDANE_ROLE(Color, ColorArray, kColors);
VERIDANE_ROLE(VertexIndex, VertexIndexArray, kVertexIndices);
VERIDANE_ROLE(NormalIndex, IndexArray, kNormalIndices);
VERIDANE_ROLE(ColorIndex, IndexArray, kColorIndices);
VERIDANE_ROLE(TextureUVIndex, TextureUVIndexArray, kTextureUVIndices);
VERIDANE_ROLE(UV, UVArray, kUVs);
VERIDANE_ROLE(TextureUV, TextureUVArray, kTextureUVs);
#undef VERIDANE_ROLE

template <class TestedRole>
class ArrayAccessors : public ::testing::Test {};

using AllRoles =
    ::testing::Types<VertexRole, NormalRole, ColorRole, VertexIndexRole, NormalIndexRole,
                     ColorIndexRole, TextureUVIndexRole, UVRole, TextureUVRole>;
TYPED_TEST_SUITE(ArrayAccessors, AllRoles, );

TYPED_TEST(ArrayAccessors, GettersAnswerTheVeryArrayThatWasSet) {
    const Mesh mesh = NewPrimitive();
    const auto array = std::make_shared<typename TypeParam::Array>();
    TypeParam::Set(*mesh, array);
    EXPECT_EQ(TypeParam::Get(*mesh), array);
    EXPECT_EQ(TypeParam::GetModifiable(*mesh), array);
    EXPECT_EQ(array.use_count(), 2);
}

TYPED_TEST(ArrayAccessors, ReadOnlyGetterIsTypedAsConst) {
    using Array = typename TypeParam::Array;
    const Mesh mesh = NewPrimitive();
    EXPECT_TRUE((std::is_same_v<decltype(TypeParam::Get(*mesh)), std::shared_ptr<const Array>>));
    EXPECT_TRUE(
        (std::is_same_v<decltype(TypeParam::GetModifiable(*mesh)), std::shared_ptr<Array>>));
}

TYPED_TEST(ArrayAccessors, SetterTouchesItsOwnRoleOnly) {
    const Mesh mesh = FullSquare();
    ArrayAddresses expected = AddressesOf(*mesh);
    const auto array = std::make_shared<typename TypeParam::Array>();
    expected[TypeParam::kRole] = array.get();
    TypeParam::Set(*mesh, array);
    EXPECT_EQ(AddressesOf(*mesh), expected);
    EXPECT_EQ(mesh->GetCreaseAngle(), 0.5);
}

TYPED_TEST(ArrayAccessors, SetterLetsGoOfTheOldArray) {
    const Mesh mesh = NewPrimitive();
    const auto old = std::make_shared<typename TypeParam::Array>();
    TypeParam::Set(*mesh, old);
    TypeParam::Set(*mesh, std::make_shared<typename TypeParam::Array>());
    EXPECT_EQ(old.use_count(), 1);
}

TYPED_TEST(ArrayAccessors, AnEmptyHandleRemovesTheArray) {
    const Mesh mesh = FullSquare();
    ArrayAddresses expected = AddressesOf(*mesh);
    expected[TypeParam::kRole] = nullptr;
    TypeParam::Set(*mesh, nullptr);
    EXPECT_EQ(AddressesOf(*mesh), expected);
    EXPECT_EQ(TypeParam::GetModifiable(*mesh), nullptr);
}

TYPED_TEST(ArrayAccessors, SettingTheArrayItHoldsKeepsItAlive) {
    const Mesh mesh = NewPrimitive();
    TypeParam::Set(*mesh, std::make_shared<typename TypeParam::Array>());
    const std::weak_ptr<typename TypeParam::Array> watched = TypeParam::GetModifiable(*mesh);
    TypeParam::Set(*mesh, TypeParam::GetModifiable(*mesh));
    EXPECT_EQ(watched.use_count(), 1);
    EXPECT_EQ(TypeParam::Get(*mesh), watched.lock());
}

TYPED_TEST(ArrayAccessors, AnArrayOutlivesItsPrimitiveInOtherHands) {
    auto array = std::make_shared<typename TypeParam::Array>();
    Mesh mesh = NewPrimitive();
    Mesh sharer = NewPrimitive();
    TypeParam::Set(*mesh, array);
    TypeParam::Set(*sharer, array);
    mesh.reset();
    EXPECT_EQ(array.use_count(), 2);
    sharer.reset();
    EXPECT_EQ(array.use_count(), 1);
}

TEST(VraMeshPrimitive, AChangeThroughTheModifiableGetterIsSeenByEveryHolder) {
    const Mesh mesh = NewPrimitive();
    const Mesh sharer = NewPrimitive();
    const auto vertices = Vertices({{1, 2, 3}});
    mesh->SetVertexArray(vertices);
    sharer->SetVertexArray(vertices);
    mesh->GetModifiableVertexArray()->push_back(ON_3dPoint(4, 5, 6));
    EXPECT_EQ(vertices->size(), 2u);
    EXPECT_EQ(sharer->GetVertexArray()->at(1), ON_3dPoint(4, 5, 6));
}

// Notes its role's name when it is freed.
template <class Array>
std::shared_ptr<Array> Noted(std::vector<std::string>& freed, const char* name) {
    return std::shared_ptr<Array>(new Array, [&freed, name](Array* array) {
        freed.push_back(name);
        delete array;
    });
}

TEST(VraMeshPrimitive, DestructorReleasesTheTextureUVArrayFirstAndTheVertexArrayLast) {
    std::vector<std::string> freed;
    Mesh mesh(new VraMesh);
    mesh->SetVertexArray(Noted<VraMeshPrimitive::VertexArray>(freed, "vertex"));
    mesh->SetNormalArray(Noted<VraMeshPrimitive::NormalArray>(freed, "normal"));
    mesh->SetColorArray(Noted<VraMeshPrimitive::ColorArray>(freed, "colour"));
    mesh->SetVertexIndexArray(Noted<VraMeshPrimitive::VertexIndexArray>(freed, "vertex index"));
    mesh->SetNormalIndexArray(Noted<IndexArray>(freed, "normal index"));
    mesh->SetColorIndexArray(Noted<IndexArray>(freed, "colour index"));
    mesh->SetTextureUVIndexArray(
        Noted<VraMeshPrimitive::TextureUVIndexArray>(freed, "texture-UV index"));
    mesh->SetUVArray(Noted<VraMeshPrimitive::UVArray>(freed, "UV"));
    mesh->SetTextureUVArray(Noted<VraMeshPrimitive::TextureUVArray>(freed, "texture-UV"));
    mesh.reset();
    EXPECT_THAT(freed, ElementsAre("texture-UV", "UV", "texture-UV index", "colour index",
                                   "normal index", "vertex index", "colour", "normal", "vertex"));
}

TEST(IsEmpty, LooksAtTheTrianglesOnly) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(Vertices({{0, 0, 0}}));
    EXPECT_TRUE(mesh->IsEmpty());
    mesh->SetVertexIndexArray(Triangles({}));
    EXPECT_TRUE(mesh->IsEmpty());
    mesh->SetVertexArray(nullptr);
    mesh->SetVertexIndexArray(Triangles({{{0, 0, 0}}}));
    EXPECT_FALSE(mesh->IsEmpty());
}

TEST(IsNormalPerVertex, LooksAtTheFormOnly) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalIndexArray(PerVertex({}));
    EXPECT_TRUE(mesh->IsNormalPerVertex());
    EXPECT_FALSE(mesh->IsColorPerVertex());
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    EXPECT_FALSE(mesh->IsNormalPerVertex());
    mesh->SetNormalIndexArray(nullptr);
    EXPECT_FALSE(mesh->IsNormalPerVertex());
}

TEST(IsColorPerVertex, LooksAtTheFormOnly) {
    const Mesh mesh = NewPrimitive();
    mesh->SetColorIndexArray(PerVertex({}));
    EXPECT_TRUE(mesh->IsColorPerVertex());
    EXPECT_FALSE(mesh->IsNormalPerVertex());
    mesh->SetColorIndexArray(PerTriangle({0, 1}));
    EXPECT_FALSE(mesh->IsColorPerVertex());
    mesh->SetColorIndexArray(nullptr);
    EXPECT_FALSE(mesh->IsColorPerVertex());
}

TEST(CreaseAngle, IsStoredAsGiven) {
    const Mesh mesh = NewPrimitive();
    const Mesh other = NewPrimitive();
    mesh->SetCreaseAngle(-1e300);
    EXPECT_EQ(mesh->GetCreaseAngle(), -1e300);
    mesh->SetCreaseAngle(-0.0);
    EXPECT_TRUE(SameBits(mesh->GetCreaseAngle(), -0.0));
    EXPECT_TRUE(SameBits(other->GetCreaseAngle(), 0.0));
}

TEST(TriangleIndex, IsAnAggregateOfThreeNumbersInWindingOrder) {
    TriangleIndex triangle{7, 8, 9};
    EXPECT_EQ(triangle.v[0], 7u);
    EXPECT_EQ(triangle[1], 8u);
    EXPECT_EQ(triangle[2], 9u);
    triangle[2] = 4;
    EXPECT_EQ(triangle.v[2], 4u);
    EXPECT_EQ(TriangleIndex{}, (TriangleIndex{0, 0, 0}));
    EXPECT_TRUE(std::is_aggregate_v<TriangleIndex>);
    EXPECT_TRUE(std::is_trivially_copyable_v<TriangleIndex>);
    EXPECT_EQ(sizeof(TriangleIndex), 24u);
}

TEST(TriangleIndex, IsEqualOnlyWhenAllThreeNumbersAre) {
    EXPECT_TRUE((TriangleIndex{1, 2, 3} == TriangleIndex{1, 2, 3}));
    EXPECT_FALSE((TriangleIndex{1, 2, 3} == TriangleIndex{0, 2, 3}));
    EXPECT_FALSE((TriangleIndex{1, 2, 3} == TriangleIndex{1, 0, 3}));
    EXPECT_FALSE((TriangleIndex{1, 2, 3} == TriangleIndex{1, 2, 0}));
    EXPECT_TRUE((TriangleIndex{1, 2, 3} != TriangleIndex{2, 3, 1}));
    EXPECT_FALSE((TriangleIndex{1, 2, 3} != TriangleIndex{1, 2, 3}));
}

TEST(IndexArray, ADefaultOneHoldsAnEmptyPerTriangleList) {
    const IndexArray indices;
    EXPECT_EQ(indices.which(), 0);
    EXPECT_TRUE(PerTriangleOf(indices).empty());
}

TEST(IndexArray, HoldsTheFormItWasMadeFrom) {
    EXPECT_EQ(IndexArray(IndexArray::PerTriangle{4, 7}).which(), 0);
    EXPECT_EQ(IndexArray(IndexArray::PerVertex{{1, 2, 3}}).which(), 1);
    EXPECT_THAT(PerTriangleOf(IndexArray(IndexArray::PerTriangle{4, 7})), ElementsAre(4, 7));
    EXPECT_THAT(PerVertexOf(IndexArray(IndexArray::PerVertex{{1, 2, 3}})),
                ElementsAre(TriangleIndex{1, 2, 3}));
    EXPECT_FALSE((std::is_convertible_v<std::vector<size_t>, IndexArray>));
}

TEST(IndexArray, AskingForTheOtherFormThrowsBadGet) {
    const Caught expected{"another exception", -1,
                          "boost::bad_get: failed value get using boost::get"};
    const IndexArray perTriangle{IndexArray::PerTriangle{}};
    EXPECT_EQ(CaughtFrom([&] { boost::get<IndexArray::PerVertex>(perTriangle.data); }), expected);
    const IndexArray perVertex{IndexArray::PerVertex{}};
    EXPECT_EQ(CaughtFrom([&] { boost::get<IndexArray::PerTriangle>(perVertex.data); }), expected);
}

TEST(MeshVertex, StartsWithZerosAndAnEmptyList) {
    const VraMeshPrimitive::MeshVertex vertex;
    EXPECT_EQ(vertex.key, 0u);
    EXPECT_EQ(vertex.reserved, 0u);
    EXPECT_TRUE(vertex.triangles.empty());
}

TEST(VertexNormalWeightType, IsOneSettingForAllAndStartsAsArea) {
    EXPECT_EQ(VraMeshPrimitive::Area, 0);
    EXPECT_EQ(VraMeshPrimitive::Angle, 1);
    EXPECT_EQ(VraMeshPrimitive::GetVertexNormalWeightType(), VraMeshPrimitive::Area);
    VraMesh::SetVertexNormalWeightType(VraMeshPrimitive::Angle);
    EXPECT_EQ(VraMeshPrimitive::GetVertexNormalWeightType(), VraMeshPrimitive::Angle);
    VraMeshPrimitive::SetVertexNormalWeightType(VraMeshPrimitive::Area);
    EXPECT_EQ(VraMesh::GetVertexNormalWeightType(), VraMeshPrimitive::Area);
}

TEST(VertexNormalWeightType, AValueItDoesNotNameIsKept) {
    const auto other = static_cast<VraMeshPrimitive::VertexNormalWeightType>(-5);
    VraMeshPrimitive::SetVertexNormalWeightType(other);
    EXPECT_EQ(VraMeshPrimitive::GetVertexNormalWeightType(), -5);
    VraMeshPrimitive::SetVertexNormalWeightType(VraMeshPrimitive::Area);
}

// Says when it is destroyed.
template <class Base>
class Watched : public Base {
public:
    explicit Watched(int& destroyedCount) : destroyedCount_(destroyedCount) {}
    ~Watched() override { ++destroyedCount_; }

private:
    int& destroyedCount_;
};

TEST(ReferenceCount, StartsAtZeroSoTheFirstPointerIsTheOnlyOwner) {
    int destroyedCount = 0;
    VraMeshPrimitive* const raw = new Watched<VraMeshPrimitive>(destroyedCount);
    Mesh first(raw);
    Mesh second(raw);
    first.reset();
    EXPECT_EQ(destroyedCount, 0);
    second.reset();
    EXPECT_EQ(destroyedCount, 1);
}

TEST(ReferenceCount, IsOneCountForBothPointerTypes) {
    int destroyedCount = 0;
    VraMesh* const raw = new Watched<VraMesh>(destroyedCount);
    intrusive_ptr_add_ref(raw);
    intrusive_ptr_add_ref(static_cast<const VraMeshPrimitive*>(raw));
    intrusive_ptr_release(raw);
    EXPECT_EQ(destroyedCount, 0);
    intrusive_ptr_release(static_cast<const VraMeshPrimitive*>(raw));
    EXPECT_EQ(destroyedCount, 1);
}

TEST(ReferenceCount, ThreadsMayCopyAndDropPointersToOnePrimitive) {
    int destroyedCount = 0;
    {
        const Mesh shared(new Watched<VraMeshPrimitive>(destroyedCount));
        std::vector<std::thread> threads;
        for (int number = 0; number < 4; ++number)
            threads.emplace_back([copy = shared] {
                for (int repeat = 0; repeat < 20000; ++repeat)
                    Mesh(copy).swap(*std::make_unique<Mesh>(copy));
            });
        for (std::thread& thread : threads)
            thread.join();
        threads.clear();
        EXPECT_EQ(destroyedCount, 0);
    }
    EXPECT_EQ(destroyedCount, 1);
}

TEST(ReferenceCount, TheLastOfManyThreadsDestroysOnce) {
    for (int repeat = 0; repeat < 200; ++repeat) {
        int destroyedCount = 0;
        Mesh shared(new Watched<VraMeshPrimitive>(destroyedCount));
        std::vector<std::thread> threads;
        for (int number = 0; number < 3; ++number)
            threads.emplace_back([copy = shared]() mutable { copy.reset(); });
        shared.reset();
        for (std::thread& thread : threads)
            thread.join();
        threads.clear();
        ASSERT_EQ(destroyedCount, 1);
    }
}

TEST(Diagnostics, PrintAndCheckNothing) {
    CMemFile file;
    CDumpContext context(&file);
    const Mesh mesh = FullSquare();
    mesh->AssertValid();
    mesh->Dump(context);
    context.Flush();
    EXPECT_EQ(file.GetLength(), 0u);
}

}  // namespace
