#include <gtest/gtest.h>

#include <cstring>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;

TEST(ClassRecord, OfThePrimitive) {
    const CRuntimeClass& record = *RUNTIME_CLASS(VraMeshPrimitive);
    EXPECT_STREQ(record.m_lpszClassName, "VraMeshPrimitive");
    EXPECT_EQ(record.m_nObjectSize, static_cast<int>(sizeof(VraMeshPrimitive)));
    EXPECT_EQ(record.m_wSchema, 0x80000010u);
    EXPECT_EQ(record.m_pfnCreateObject, &VraMeshPrimitive::CreateObject);
    EXPECT_EQ(record.m_pfnGetBaseClass(), RUNTIME_CLASS(CObject));
}

TEST(ClassRecord, OfTheMesh) {
    const CRuntimeClass& record = *RUNTIME_CLASS(VraMesh);
    EXPECT_STREQ(record.m_lpszClassName, "VraMesh");
    EXPECT_EQ(record.m_nObjectSize, static_cast<int>(sizeof(VraMesh)));
    EXPECT_EQ(record.m_nObjectSize, RUNTIME_CLASS(VraMeshPrimitive)->m_nObjectSize);
    EXPECT_EQ(record.m_wSchema, 0x80000010u);
    EXPECT_EQ(record.m_pfnCreateObject, &VraMesh::CreateObject);
    EXPECT_EQ(record.m_pfnGetBaseClass(), RUNTIME_CLASS(VraMeshPrimitive));
}

TEST(ClassRecord, IsTheSameFromTheClassAndFromAnObject) {
    EXPECT_EQ(VraMeshPrimitive::GetThisClass(), NewPrimitive()->GetRuntimeClass());
    EXPECT_EQ(VraMesh::GetThisClass(), Mesh(new VraMesh)->GetRuntimeClass());
    EXPECT_NE(VraMesh::GetThisClass(), VraMeshPrimitive::GetThisClass());
}

TEST(ClassRecord, DerivationGoesOneWay) {
    EXPECT_TRUE(RUNTIME_CLASS(VraMesh)->IsDerivedFrom(RUNTIME_CLASS(VraMeshPrimitive)));
    EXPECT_TRUE(RUNTIME_CLASS(VraMeshPrimitive)->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(RUNTIME_CLASS(VraMeshPrimitive)->IsDerivedFrom(RUNTIME_CLASS(VraMesh)));
}

TEST(ClassRegistration, BothClassesAreFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("VraMeshPrimitive"), RUNTIME_CLASS(VraMeshPrimitive));
    EXPECT_EQ(CRuntimeClass::FromName("VraMesh"), RUNTIME_CLASS(VraMesh));
    EXPECT_EQ(CRuntimeClass::FromName("Vr::VraMesh"), nullptr);
}

// Static objects of a host that links the module may already use the registration.
CRuntimeClass* const foundBeforeMain = CRuntimeClass::FromName("VraMesh");

TEST(ClassRegistration, IsDoneBeforeTheHostsOwnStaticObjects) {
    EXPECT_EQ(foundBeforeMain, RUNTIME_CLASS(VraMesh));
}

TEST(CreateObject, ByNameGivesAnEmptyObjectOfTheClassWithoutAnOwner) {
    for (const char* const name : {"VraMeshPrimitive", "VraMesh"}) {
        CObject* const object = CRuntimeClass::CreateObject(name);
        ASSERT_NE(object, nullptr);
        EXPECT_STREQ(object->GetRuntimeClass()->m_lpszClassName, name);
        const Mesh mesh(static_cast<VraMeshPrimitive*>(object));
        ExpectBitEqual(*mesh, *NewPrimitive());
    }
}

TEST(CreateObject, OfTheClassesIsCallableDirectly) {
    const Mesh primitive(static_cast<VraMeshPrimitive*>(VraMeshPrimitive::CreateObject()));
    EXPECT_EQ(primitive->GetRuntimeClass(), RUNTIME_CLASS(VraMeshPrimitive));
    const Mesh mesh(static_cast<VraMeshPrimitive*>(VraMesh::CreateObject()));
    EXPECT_EQ(mesh->GetRuntimeClass(), RUNTIME_CLASS(VraMesh));
}

}  // namespace
