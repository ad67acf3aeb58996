#include "support/MeshInvariants.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Vr::test {

namespace {

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using IndexArray = VraMeshPrimitive::IndexArray;

AssertionResult AllBelow(const char* name, const std::vector<std::size_t>& numbers,
                         std::size_t bound) {
    for (std::size_t triangle = 0; triangle < numbers.size(); ++triangle)
        if (numbers[triangle] >= bound)
            return AssertionFailure() << name << ", triangle " << triangle << ": number "
                                      << numbers[triangle] << " of " << bound;
    return AssertionSuccess();
}

AssertionResult AllBelow(const char* name, const std::vector<TriangleIndex>& triples,
                         std::size_t bound) {
    for (std::size_t triangle = 0; triangle < triples.size(); ++triangle)
        for (std::size_t corner = 0; corner < 3; ++corner)
            if (triples[triangle][corner] >= bound)
                return AssertionFailure()
                       << name << ", triangle " << triangle << ", corner " << corner << ": number "
                       << triples[triangle][corner] << " of " << bound;
    return AssertionSuccess();
}

// Checks one index list against the triangle count and the element count, each if it is known.
template <class List>
AssertionResult CheckList(const char* name, const List& list, const std::size_t* triangleCount,
                          const std::size_t* elementCount) {
    if (triangleCount && list.size() != *triangleCount)
        return AssertionFailure() << name << ": " << list.size() << " entries for "
                                  << *triangleCount << " triangles";
    return elementCount ? AllBelow(name, list, *elementCount) : AssertionSuccess();
}

AssertionResult CheckIndices(const char* name, const IndexArray& indices,
                             const std::size_t* triangleCount, const std::size_t* elementCount) {
    if (indices.which() == 1)
        return CheckList(name, boost::get<IndexArray::PerVertex>(indices.data), triangleCount,
                         elementCount);
    return CheckList(name, boost::get<IndexArray::PerTriangle>(indices.data), triangleCount,
                     elementCount);
}

// The size of an array as something that may be missing.
class Count {
public:
    template <class Handle>
    explicit Count(const Handle& handle) : isKnown_(handle != nullptr) {
        if (handle)
            count_ = handle->size();
    }
    const std::size_t* Get() const { return isKnown_ ? &count_ : nullptr; }

private:
    bool isKnown_;
    std::size_t count_ = 0;
};

}  // namespace

AssertionResult IsConsistent(const VraMeshPrimitive& mesh) {
    const auto triangles = mesh.GetVertexIndexArray();
    const auto normalIndices = mesh.GetNormalIndexArray();
    const auto colorIndices = mesh.GetColorIndexArray();
    const auto textureUVIndices = mesh.GetTextureUVIndexArray();
    const Count triangleCount(triangles);
    const Count vertexCount(mesh.GetVertexArray());
    const Count normalCount(mesh.GetNormalArray());
    const Count colorCount(mesh.GetColorArray());
    const Count textureUVCount(mesh.GetTextureUVArray());

    AssertionResult result = AssertionSuccess();
    if (triangles)
        result = CheckList("vertex indices", *triangles, nullptr, vertexCount.Get());
    if (result && normalIndices)
        result =
            CheckIndices("normal indices", *normalIndices, triangleCount.Get(), normalCount.Get());
    if (result && colorIndices)
        result =
            CheckIndices("colour indices", *colorIndices, triangleCount.Get(), colorCount.Get());
    if (result && textureUVIndices)
        result = CheckList("texture-UV indices", *textureUVIndices, triangleCount.Get(),
                           textureUVCount.Get());
    return result;
}

}  // namespace Vr::test
