/// Arrays that several objects of a document hold, and how to edit one object alone.
#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>

#include "Document.h"

namespace Host {

/// Knows how many handles of a document lead to each array.
///
/// The library edits arrays in place for every holder. That is wanted where the edit is the same for
/// all, and wrong where each holder would make it once more, or where arrays that belong together are
/// shared with different partners. A host that edits object by object then gives objects their own
/// arrays first.
class SharedArrays {
public:
    explicit SharedArrays(const Document& document);

    /// Gives `mesh`, an object of the document, its own copy of every array that is held elsewhere
    /// too, by another object or in another role.
    ///
    /// The last holder keeps the original.
    void MakePrivate(Vr::VraMeshPrimitive& mesh);

    /// Does the same with the arrays that have entries for each triangle, so that triangles can be
    /// taken from this object alone; positions, normals and colours stay shared.
    void MakeTriangleListsPrivate(Vr::VraMeshPrimitive& mesh);

    /// Returns how many arrays were copied so far.
    size_t CopiedCount() const { return copiedCount_; }

private:
    void Count(const void* array);
    template <class Array>
    void CopyIfShared(Vr::VraMeshPrimitive& mesh, const std::shared_ptr<Array>& array,
                      void (Vr::VraMeshPrimitive::*install)(std::shared_ptr<Array>));

    std::unordered_map<const void*, size_t> holderCountOf_;
    size_t copiedCount_ = 0;
};

/// Gives each vertex index array to objects of one vertex array only, copying where it serves several.
///
/// Afterwards vertices can be renumbered, one vertex array at a time.
void SeparateVertexNumbers(const Document& document);

}  // namespace Host
