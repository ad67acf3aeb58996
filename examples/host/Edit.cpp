// Each function is the library's operation in a loop over the meshes, with what the operation leaves
// to its caller before and behind it. Between two of them Ctrl-C counts.

#include "Edit.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <unordered_set>

#include "ForEachMesh.h"
#include "Interrupt.h"
#include "MoveGeometry.h"
#include "Sharing.h"
#include "mesh/VraMeshDegenJudge.h"

namespace Host {

namespace {

using Vr::VraMesh;
using Vr::VraMeshPrimitive;
using IndexArray = VraMeshPrimitive::IndexArray;

size_t TriangleCountOf(const VraMeshPrimitive& mesh) {
    const auto triangles = mesh.GetVertexIndexArray();
    return triangles ? triangles->size() : 0;
}

template <class Values>
bool AreFinite(const std::shared_ptr<Values>& values) {
    return !values || std::all_of(values->begin(), values->end(),
                                  [](const auto& value) { return value.IsValid(); });
}

void RequireFinitePositions(const Document& document) {
    ForEachMesh(document, [](VraMeshPrimitive& mesh, size_t object) {
        if (!AreFinite(mesh.GetVertexArray()))
            ThrowForObject(object, "a position is not finite");
    });
}

void RequireFiniteNormals(const Document& document) {
    ForEachMesh(document, [](VraMeshPrimitive& mesh, size_t object) {
        if (!AreFinite(mesh.GetNormalArray()))
            ThrowForObject(object, "a normal is not finite");
    });
}

bool IsPerTriangle(const std::shared_ptr<const IndexArray>& indices) {
    return indices && indices->which() == 0;
}

// RemoveDegenerateMesh leaves UVs as they are and takes entries of a per-triangle list by their value.
// Where a mesh has either, its degenerate triangles are listed and deleted, which cuts all in step.
void RemoveDegenerateTriangles(VraMeshPrimitive& mesh) {
    const auto triangles = mesh.GetVertexIndexArray();
    if (!triangles)
        return;
    if (!mesh.GetUVArray() && !IsPerTriangle(mesh.GetNormalIndexArray()) &&
        !IsPerTriangle(mesh.GetColorIndexArray())) {
        mesh.RemoveDegenerateMesh();
        return;
    }
    Vr::VraMeshDegenJudge isDegenerate(triangles->size());
    std::vector<size_t> degenerate;
    for (size_t triangle = 0; triangle < triangles->size(); ++triangle)
        if (isDegenerate((*triangles)[triangle]))
            degenerate.push_back(triangle);
    mesh.DeleteFacetFaces(degenerate);
}

// Turns arrays round, each once however many objects and roles lead to it.
class Reverser {
public:
    // ReverseFaces would turn an array once for each role. So it gets a primitive that holds what was
    // not met before, and holds that once.
    void Reverse(VraMeshPrimitive& mesh, bool reversesNormals) {
        const Mesh part(new VraMesh);
        part->SetVertexIndexArray(IfNew(mesh.GetModifiableVertexIndexArray()));
        part->SetNormalIndexArray(IfNew(mesh.GetModifiableNormalIndexArray()));
        part->SetColorIndexArray(IfNew(mesh.GetModifiableColorIndexArray()));
        part->SetNormalArray(IfNew(mesh.GetModifiableNormalArray()));
        part->ReverseFaces(reversesNormals);
        ReverseCornerUVs(mesh);
    }

private:
    template <class Array>
    std::shared_ptr<Array> IfNew(const std::shared_ptr<Array>& array) {
        return met_.insert(array.get()).second ? array : nullptr;
    }

    // ReverseFaces knows nothing of UVs that go by corner.
    void ReverseCornerUVs(VraMeshPrimitive& mesh) {
        const auto uvs = mesh.GetModifiableUVArray();
        const size_t triangleCount = TriangleCountOf(mesh);
        if (!uvs || uvs->size() != 3 * triangleCount || !IfNew(uvs))
            return;
        for (size_t triangle = 0; triangle < triangleCount; ++triangle)
            std::swap((*uvs)[3 * triangle + 1], (*uvs)[3 * triangle + 2]);
    }

    std::unordered_set<const void*> met_;
};

// The mesh takes the place of the first one; the others go.
void PutInPlaceOfMeshes(Document& document, const Mesh& mesh) {
    const auto isMesh = [](const Object& object) { return std::holds_alternative<Mesh>(object); };
    const auto first = std::find_if(document.objects.begin(), document.objects.end(), isMesh);
    *first = mesh;
    document.objects.erase(std::remove_if(first + 1, document.objects.end(), isMesh),
                           document.objects.end());
}

// A solid of finite points may still overflow on its way.
Document DocumentOfSolid(const Mesh& mesh) {
    Document document{{mesh}};
    RequireFinitePositions(document);
    RequireFiniteNormals(document);
    return document;
}

}  // namespace

DocumentSize SizeOf(const Document& document) {
    DocumentSize size;
    for (const Mesh& mesh : MeshesOf(document)) {
        const auto vertices = mesh->GetVertexArray();
        size.vertexCount += vertices ? vertices->size() : 0;
        size.triangleCount += TriangleCountOf(*mesh);
        const auto normals = mesh->GetNormalArray();
        size.normalCount += normals ? normals->size() : 0;
    }
    return size;
}

size_t CleanDocument(const Document& document) {
    RequireFinitePositions(document);
    RequireFiniteNormals(document);
    SharedArrays shared(document);
    for (const Mesh& mesh : MeshesOf(document)) {
        ThrowIfInterrupted();
        shared.MakePrivate(*mesh);
        mesh->MergeSameData();
        RemoveDegenerateTriangles(*mesh);
    }
    CompactVertices(document);
    return shared.CopiedCount();
}

void MakeFlatNormals(const Document& document) {
    RequireFinitePositions(document);
    for (const Mesh& mesh : MeshesOf(document)) {
        ThrowIfInterrupted();
        mesh->CreateNormalPerTriangle();
    }
}

void MakeSmoothNormals(const Document& document, double creaseAngle,
                       VraMeshPrimitive::VertexNormalWeightType weightType) {
    RequireFinitePositions(document);
    VraMeshPrimitive::SetVertexNormalWeightType(weightType);  // for the whole process
    for (const Mesh& mesh : MeshesOf(document)) {
        ThrowIfInterrupted();
        mesh->SetCreaseAngle(creaseAngle);
        mesh->CreateNormalPerVertex();
    }
}

size_t TransformDocument(Document& document, const ON_Xform& xform) {
    std::set<void*> done;
    size_t meshCount = 0;
    ForEachMesh(document, [&](VraMeshPrimitive& mesh, size_t object) {
        ThrowIfInterrupted();
        if (!mesh.Transform(xform, done))
            ThrowForObject(object, "the transformation flattens it, which leaves no normals");
        ++meshCount;
    });
    RequireFinitePositions(document);
    RequireFiniteNormals(document);
    if (xform.Determinant() < 0.0)
        ReverseDocument(document, false);
    return meshCount + TransformCurvesAndSurfaces(document, xform);
}

void ReverseDocument(const Document& document, bool reversesNormals) {
    Reverser reverser;
    for (const Mesh& mesh : MeshesOf(document)) {
        ThrowIfInterrupted();
        reverser.Reverse(*mesh, reversesNormals);
    }
}

size_t DeleteTriangles(const Document& document, size_t object, std::vector<size_t> triangles) {
    if (object >= document.objects.size())
        throw std::runtime_error("there is no object " + std::to_string(object + 1));
    if (!std::holds_alternative<Mesh>(document.objects[object]))
        ThrowForObject(object, "it is no mesh");
    VraMeshPrimitive& mesh = *std::get<Mesh>(document.objects[object]);
    // the operation stops matching at a repeated or smaller number
    std::sort(triangles.begin(), triangles.end());
    triangles.erase(std::unique(triangles.begin(), triangles.end()), triangles.end());
    const size_t triangleCount = TriangleCountOf(mesh);
    if (!triangles.empty() && triangles.back() >= triangleCount)
        ThrowForObject(object, "there is no triangle " + std::to_string(triangles.back()) +
                                   "; it has " + std::to_string(triangleCount) +
                                   ", counted from 0");
    if (triangles.empty())
        return 0;
    SharedArrays(document).MakeTriangleListsPrivate(mesh);
    return triangleCount - mesh.DeleteFacetFaces(triangles);
}

void CompactVertices(const Document& document) {
    SeparateVertexNumbers(document);
    // an index array that is listed twice would be renumbered twice
    std::unordered_set<const void*> listed;
    std::vector<Mesh> meshes;
    for (const Mesh& mesh : MeshesOf(document)) {
        const auto triangles = mesh->GetVertexIndexArray();
        if (triangles && mesh->GetVertexArray() && listed.insert(triangles.get()).second)
            meshes.push_back(mesh);
    }
    VraMeshPrimitive::DeleteUnusedVertices(meshes);
}

MergeReport MergeObjects(Document& document) {
    const Mesh merged(new VraMesh);
    const std::vector<Mesh> meshes = MeshesOf(document);
    const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>> sources(meshes.begin(),
                                                                            meshes.end());
    if (!VraMeshPrimitive::Merge(merged, sources))
        throw std::runtime_error("the document holds no meshes to merge");
    merged->SetCreaseAngle(meshes.front()->GetCreaseAngle());
    const auto anyObjectHas = [&meshes](const auto& has) {
        return std::any_of(meshes.begin(), meshes.end(),
                           [&has](const Mesh& mesh) { return has(*mesh); });
    };
    MergeReport report;
    report.mergedCount = meshes.size();
    report.lostNormals =
        !merged->GetNormalArray() &&
        anyObjectHas([](const VraMeshPrimitive& mesh) { return mesh.GetNormalArray() != nullptr; });
    report.lostColors = !merged->GetColorArray() && anyObjectHas([](const VraMeshPrimitive& mesh) {
        return mesh.GetColorArray() != nullptr;
    });
    report.lostUVs =
        anyObjectHas([](const VraMeshPrimitive& mesh) { return mesh.GetUVArray() != nullptr; });
    PutInPlaceOfMeshes(document, merged);
    return report;
}

Document MakeBox(const ON_3dPoint& corner, const ON_3dPoint& oppositeCorner) {
    const Mesh mesh(new VraMesh);
    const auto [xMin, xMax] = std::minmax(corner.x, oppositeCorner.x);
    const auto [yMin, yMax] = std::minmax(corner.y, oppositeCorner.y);
    const auto [zMin, zMax] = std::minmax(corner.z, oppositeCorner.z);
    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(xMin, yMin, zMin), ON_3dPoint(xMax, yMax, zMax)));
    return DocumentOfSolid(mesh);
}

Document MakeCone(const ON_3dPoint& base, const ON_3dPoint& apex, double radius,
                  size_t segmentCount) {
    const Mesh mesh(new VraMesh);
    if (!mesh->SetDataAsCone(base, apex, radius, segmentCount))
        throw std::runtime_error("a cone has three segments at least");
    return DocumentOfSolid(mesh);
}

Document MakeCylinder(const ON_3dPoint& base, const ON_3dPoint& top, double radius,
                      size_t segmentCount) {
    const Mesh mesh(new VraMesh);
    if (!mesh->SetDataAsCylinder(base, top, radius, segmentCount))
        throw std::runtime_error("a cylinder has three segments at least");
    return DocumentOfSolid(mesh);
}

}  // namespace Host
