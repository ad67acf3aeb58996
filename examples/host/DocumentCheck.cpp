// Kinds first, for all objects: a stream can name one array in roles of different element types, and
// such an array must not be looked into. Only then the numbers.

#include "DocumentCheck.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "Failure.h"
#include "Interrupt.h"

namespace Host {

namespace {

using Vr::VraMeshPrimitive;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using IndexArray = VraMeshPrimitive::IndexArray;

enum class Kind { Points, Vectors, Colors, Triangles, Indices, UVs };

// Tells one object of one document from the others in a text.
class Finding {
public:
    Finding(const std::filesystem::path& path, size_t object) : path_(path), object_(object) {}
    [[noreturn]] void Throw(const std::string& reason) const {
        throw Failure(path_,
                      "damaged document: object " + std::to_string(object_ + 1) + ": " + reason);
    }

private:
    const std::filesystem::path& path_;
    size_t object_;
};

class KindTable {
public:
    void Enter(const void* array, Kind kind, const Finding& finding) {
        if (array != nullptr && kindOf_.emplace(array, kind).first->second != kind)
            finding.Throw("an array stands for data of another kind");
    }

private:
    std::unordered_map<const void*, Kind> kindOf_;
};

void EnterArrays(const VraMeshPrimitive& mesh, KindTable& kinds, const Finding& finding) {
    kinds.Enter(mesh.GetVertexArray().get(), Kind::Points, finding);
    kinds.Enter(mesh.GetNormalArray().get(), Kind::Vectors, finding);
    kinds.Enter(mesh.GetColorArray().get(), Kind::Colors, finding);
    kinds.Enter(mesh.GetVertexIndexArray().get(), Kind::Triangles, finding);
    kinds.Enter(mesh.GetNormalIndexArray().get(), Kind::Indices, finding);
    kinds.Enter(mesh.GetColorIndexArray().get(), Kind::Indices, finding);
    kinds.Enter(mesh.GetUVArray().get(), Kind::UVs, finding);
}

bool AreBelow(const std::vector<size_t>& numbers, size_t count) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [count](size_t number) { return number < count; });
}

bool AreBelow(const std::vector<TriangleIndex>& triangles, size_t count) {
    return std::all_of(triangles.begin(), triangles.end(), [count](const TriangleIndex& triangle) {
        return triangle[0] < count && triangle[1] < count && triangle[2] < count;
    });
}

template <class Array>
size_t SizeOf(const std::shared_ptr<Array>& array) {
    return array ? array->size() : 0;
}

// `name` says what the numbers address, as in "normal".
void CheckIndices(const IndexArray* indices, size_t triangleCount, size_t valueCount,
                  const std::string& name, const Finding& finding) {
    if (indices == nullptr)
        return;
    const auto check = [&](const auto& numbers) {
        if (numbers.size() != triangleCount)
            finding.Throw(std::to_string(numbers.size()) + " " + name + " entries for " +
                          std::to_string(triangleCount) + " triangles");
        if (!AreBelow(numbers, valueCount))
            finding.Throw("a " + name + " number is out of range");
    };
    if (indices->which() == 1)
        check(boost::get<IndexArray::PerVertex>(indices->data));
    else
        check(boost::get<IndexArray::PerTriangle>(indices->data));
}

void CheckNumbers(const VraMeshPrimitive& mesh, const Finding& finding) {
    const auto triangles = mesh.GetVertexIndexArray();
    const size_t triangleCount = SizeOf(triangles);
    if (triangles && !AreBelow(*triangles, SizeOf(mesh.GetVertexArray())))
        finding.Throw("a vertex number is out of range");
    CheckIndices(mesh.GetNormalIndexArray().get(), triangleCount, SizeOf(mesh.GetNormalArray()),
                 "normal", finding);
    CheckIndices(mesh.GetColorIndexArray().get(), triangleCount, SizeOf(mesh.GetColorArray()),
                 "colour", finding);
}

}  // namespace

void CheckObjects(const Document& document, const std::filesystem::path& path) {
    KindTable kinds;
    for (size_t object = 0; object < document.objects.size(); ++object)
        EnterArrays(*document.objects[object], kinds, Finding(path, object));
    for (size_t object = 0; object < document.objects.size(); ++object) {
        ThrowIfInterrupted();
        CheckNumbers(*document.objects[object], Finding(path, object));
    }
}

}  // namespace Host
