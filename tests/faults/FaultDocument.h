/// The document that the fault loops store, load and copy: small, with everything a document can hold.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/VraMesh.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace Vr::test {

/// A mesh with every stored array; one of the other class with colours a corner and normals a triangle,
/// which shares its positions; the first one again; one that is empty; and none.
inline std::vector<Mesh> FaultDocument() {
    const Mesh full = FullSquare();
    // These two are not stored.
    full->SetTextureUVIndexArray(nullptr);
    full->SetTextureUVArray(nullptr);
    const Mesh sharing(new VraMesh);
    sharing->SetVertexArray(full->GetModifiableVertexArray());
    sharing->SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
    sharing->SetNormalArray(Normals({{0, 0, 1}}));
    sharing->SetNormalIndexArray(PerTriangle({0}));
    sharing->SetColorArray(Colors({1, 2, 3}));
    sharing->SetColorIndexArray(PerVertex({{{2, 1, 0}}}));
    return {full, sharing, full, NewPrimitive(), nullptr};
}

/// Whether the meshes are equal one by one, and the same object or array is the same in both.
inline void ExpectSameDocument(const std::vector<Mesh>& actual, const std::vector<Mesh>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        SCOPED_TRACE("object " + std::to_string(i));
        ASSERT_EQ(actual[i] == nullptr, expected[i] == nullptr);
        if (actual[i])
            ExpectBitEqual(*actual[i], *expected[i]);
        for (std::size_t j = 0; j < i; ++j) {
            ASSERT_EQ(actual[i] == actual[j], expected[i] == expected[j]);
            if (actual[i] && actual[j]) {
                ASSERT_EQ(actual[i]->GetVertexArray() == actual[j]->GetVertexArray(),
                          expected[i]->GetVertexArray() == expected[j]->GetVertexArray());
            }
        }
    }
}

/// Stores the document into the file, through a buffer that is written often.
inline void StoreInto(CFile& file, const std::vector<Mesh>& document) {
    VrmArchive archive(&file, CArchive::store, 128);
    try {
        for (const Mesh& mesh : document)
            archive.WriteObject(mesh.get());
        archive.Close();
    } catch (...) {
        archive.Abort();
        throw;
    }
}

/// Loads so many objects; those in front of one that fails are released.
inline std::vector<Mesh> LoadFrom(CFile& file, std::size_t count) {
    VrmArchive archive(&file, CArchive::load, 128);
    std::vector<Mesh> document;
    document.reserve(count);
    while (document.size() < count) {
        VraMeshPrimitive* mesh = nullptr;
        archive >> mesh;
        document.emplace_back(mesh);
    }
    archive.Close();
    return document;
}

/// Loads so many objects and stores each at once, as a host does that copies a document.
inline void CopyObjects(CFile& source, CFile& target, std::size_t count) {
    VrmArchive from(&source, CArchive::load, 128);
    VrmArchive to(&target, CArchive::store, 128);
    std::vector<Mesh> loaded;  // all of them live on, so that none gets the address of another
    try {
        while (loaded.size() < count) {
            VraMeshPrimitive* mesh = nullptr;
            from >> mesh;
            loaded.emplace_back(mesh);
            to.WriteObject(mesh);
        }
        to.Close();
    } catch (...) {
        to.Abort();
        throw;
    }
}

}  // namespace Vr::test
