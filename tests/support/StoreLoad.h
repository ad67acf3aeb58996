/// Storing to and loading from archives in memory.
#pragma once

#include <afx.h>

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"
#include "support/MemoryFile.h"
#include "support/MeshBuilders.h"

namespace Vr::test {

using Bytes = std::vector<BYTE>;

/// Runs the object's own `Serialize`, without the object envelope.
inline void SerializeBody(VraMeshPrimitive& mesh, CArchive& archive) {
    static_cast<CObject&>(mesh).Serialize(archive);
}

/// Runs `write(archive)` on a new storing archive and returns what it stored.
template <class Write>
Bytes BytesOf(const Write& write, int bufferSize = 4096, void* buffer = nullptr) {
    MemoryFile file;
    VrmArchive archive(&file, CArchive::store, bufferSize, buffer);
    write(archive);
    archive.Close();
    return file.Bytes();
}

/// The stream of these objects, one `WriteObject` each.
inline Bytes StoredObjects(const std::vector<Mesh>& objects, int bufferSize = 4096,
                           void* buffer = nullptr) {
    return BytesOf(
        [&](VrmArchive& archive) {
            for (const Mesh& object : objects)
                archive.WriteObject(object.get());
        },
        bufferSize, buffer);
}

/// The bare body of one primitive.
inline Bytes StoredBody(VraMeshPrimitive& mesh) {
    return BytesOf([&](VrmArchive& archive) { SerializeBody(mesh, archive); });
}

/// A loading archive over bytes in memory.
struct LoadedFrom {
    explicit LoadedFrom(Bytes bytes, int bufferSize = 4096, void* buffer = nullptr)
        : file(std::move(bytes)), archive(&file, CArchive::load, bufferSize, buffer) {}

    /// The next object as a primitive, put into an owning pointer at once.
    Mesh Next() {
        VraMeshPrimitive* mesh = nullptr;
        archive >> mesh;
        return Mesh(mesh);
    }

    MemoryFile file;
    VrmArchive archive;
};

/// Loads so many objects, and keeps the order.
inline std::vector<Mesh> LoadedObjects(const Bytes& bytes, std::size_t count, int bufferSize = 4096,
                                       void* buffer = nullptr) {
    LoadedFrom loaded(bytes, bufferSize, buffer);
    std::vector<Mesh> objects;
    while (objects.size() < count)
        objects.push_back(loaded.Next());
    return objects;
}

/// Holds every mesh that archives create during its life.
///
/// An object whose `Serialize` throws is nobody's by contract. This keeps it reachable, so that a
/// test can look at what was loaded, and deletes it at the end. An object that the archive deletes
/// itself, because it cannot number it, is forgotten.
class CreatedMeshes {
public:
    CreatedMeshes() {
        Objects().clear();
        // Noting an object must not fail where a test lets allocations fail.
        Objects().reserve(64);
        OriginalPrimitive() = Exchange<VraMeshPrimitive>(&Create<VraMeshPrimitive>);
        OriginalMesh() = Exchange<VraMesh>(&Create<VraMesh>);
    }
    ~CreatedMeshes() {
        Exchange<VraMeshPrimitive>(OriginalPrimitive());
        Exchange<VraMesh>(OriginalMesh());
        // None of them is in the list any more when it goes.
        const std::vector<Mesh> objects = std::move(Objects());
        Objects().clear();
    }
    CreatedMeshes(const CreatedMeshes&) = delete;
    CreatedMeshes& operator=(const CreatedMeshes&) = delete;

    std::size_t Count() const { return Objects().size(); }
    const Mesh& operator[](std::size_t number) const { return Objects().at(number); }

private:
    using CreateFunction = decltype(CRuntimeClass::m_pfnCreateObject);

    template <class Class>
    class Tracked final : public Class {
    private:
        ~Tracked() override {
            for (Mesh& object : Objects()) {
                if (object.get() == this) {
                    object.detach();
                    std::swap(object, Objects().back());
                    Objects().pop_back();
                    return;
                }
            }
        }
    };

    static std::vector<Mesh>& Objects() {
        static std::vector<Mesh> objects;
        return objects;
    }
    static CreateFunction& OriginalPrimitive() {
        static CreateFunction original = nullptr;
        return original;
    }
    static CreateFunction& OriginalMesh() {
        static CreateFunction original = nullptr;
        return original;
    }
    template <class Class>
    static CreateFunction Exchange(CreateFunction replacement) {
        return std::exchange(RUNTIME_CLASS(Class)->m_pfnCreateObject, replacement);
    }
    template <class Class>
    static CObject* PASCAL Create() {
        Class* object = nullptr;
        try {
            object = new Tracked<Class>;
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
        Objects().emplace_back(object);
        return object;
    }
};

}  // namespace Vr::test
