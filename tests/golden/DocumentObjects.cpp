#include "golden/DocumentObjects.h"

#include <cmath>
#include <iterator>
#include <limits>

#include "support/MeshMatchers.h"

namespace Vr::golden {

using namespace test;

namespace {

constexpr unsigned int kOpaqueRed = 0x000000FF;
constexpr unsigned int kHalfBlue = 0x80FF0000;

Mesh WithAngle(const Mesh& mesh, double creaseAngle) {
    mesh->SetCreaseAngle(creaseAngle);
    return mesh;
}

Mesh EmptyMesh(double creaseAngle = 0.0) {
    return WithAngle(Mesh(new VraMesh), creaseAngle);
}

Mesh EmptyPrimitive(double creaseAngle = 0.0) {
    return WithAngle(NewPrimitive(), creaseAngle);
}

// Gives a mesh one array of the triangle.
void SetTriangleArray(VraMeshPrimitive& mesh, Role role) {
    switch (role) {
        case kVertices:
            return mesh.SetVertexArray(Vertices({{0, 0, 0}, {2, 0, 0}, {0, 3, 0.5}}));
        case kNormals:
            return mesh.SetNormalArray(Normals({{0, 0, 1}, {0, 0, -1}}));
        case kColors:
            return mesh.SetColorArray(Colors({kOpaqueRed, kHalfBlue}));
        case kVertexIndices:
            return mesh.SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
        case kNormalIndices:
            return mesh.SetNormalIndexArray(PerVertex({{{0, 1, 0}}}));
        case kColorIndices:
            return mesh.SetColorIndexArray(PerTriangle({1}));
        default:
            return mesh.SetUVArray(UVs({{0, 0}, {1, 0}, {0, 1}}));
    }
}

void SetEmptyArray(VraMeshPrimitive& mesh, Role role) {
    switch (role) {
        case kVertices:
            return mesh.SetVertexArray(Vertices({}));
        case kNormals:
            return mesh.SetNormalArray(Normals({}));
        case kColors:
            return mesh.SetColorArray(Colors({}));
        case kVertexIndices:
            return mesh.SetVertexIndexArray(Triangles({}));
        case kNormalIndices:
            return mesh.SetNormalIndexArray(PerTriangle({}));
        case kColorIndices:
            return mesh.SetColorIndexArray(PerVertex({}));
        default:
            return mesh.SetUVArray(UVs({}));
    }
}

void ShareArray(VraMeshPrimitive& mesh, VraMeshPrimitive& source, Role role) {
    switch (role) {
        case kVertices:
            return mesh.SetVertexArray(source.GetModifiableVertexArray());
        case kNormals:
            return mesh.SetNormalArray(source.GetModifiableNormalArray());
        case kColors:
            return mesh.SetColorArray(source.GetModifiableColorArray());
        case kVertexIndices:
            return mesh.SetVertexIndexArray(source.GetModifiableVertexIndexArray());
        case kNormalIndices:
            return mesh.SetNormalIndexArray(source.GetModifiableNormalIndexArray());
        case kColorIndices:
            return mesh.SetColorIndexArray(source.GetModifiableColorIndexArray());
        default:
            return mesh.SetUVArray(source.GetModifiableUVArray());
    }
}

void ClearArray(VraMeshPrimitive& mesh, Role role) {
    ShareArray(mesh, *NewPrimitive(), role);
}

// In the order of the stream.
constexpr Role kStored[] = {kVertices,      kNormals,      kColors, kVertexIndices,
                            kNormalIndices, kColorIndices, kUVs};

Mesh Filled(const Mesh& mesh) {
    for (const Role role : kStored)
        SetTriangleArray(*mesh, role);
    return mesh;
}

}  // namespace

Mesh FullMesh(double creaseAngle) {
    return Filled(EmptyMesh(creaseAngle));
}

Mesh FullPrimitive(double creaseAngle) {
    return Filled(EmptyPrimitive(creaseAngle));
}

Mesh Sharing(const Mesh& mesh, const Mesh& source) {
    for (const Role role : kStored)
        ShareArray(*mesh, *source, role);
    return mesh;
}

namespace {

std::vector<Mesh> FullSharedNullRepeated(bool hasUVs) {
    const Mesh full = FullMesh(0.5);
    if (!hasUVs)
        full->SetUVArray(nullptr);
    return {full, Sharing(EmptyMesh(0.25), full), nullptr, full};
}

std::vector<Mesh> BothClasses() {
    const Mesh mesh = EmptyMesh(0.5);
    const Mesh primitive = FullPrimitive(1.0);
    return {mesh, primitive, EmptyMesh(-2.0), EmptyPrimitive(0.0), primitive, mesh};
}

std::vector<Mesh> ArraysAlone() {
    std::vector<Mesh> objects;
    for (const Role role : kStored) {
        objects.push_back(EmptyMesh());
        SetTriangleArray(*objects.back(), role);
    }
    return objects;
}

std::vector<Mesh> ArraysMissing() {
    std::vector<Mesh> objects = {FullMesh(0.0)};
    for (const Role role : kStored) {
        objects.push_back(Sharing(EmptyMesh(), objects.front()));
        ClearArray(*objects.back(), role);
    }
    return objects;
}

std::vector<Mesh> PresenceCombinations() {
    const Mesh source = EmptyMesh();
    for (const Role role : kStored)
        SetEmptyArray(*source, role);
    std::vector<Mesh> objects;
    for (std::size_t object = 0; object < 128; ++object) {
        objects.push_back(EmptyMesh(static_cast<double>(object)));
        for (std::size_t place = 0; place < std::size(kStored); ++place)
            if (((object >> place) & 1) != 0)
                ShareArray(*objects.back(), *source, kStored[place]);
    }
    return objects;
}

std::vector<Mesh> EmptyArrays() {
    const Mesh mesh = EmptyMesh();
    for (const Role role : kStored)
        SetEmptyArray(*mesh, role);
    return {mesh};
}

std::vector<Mesh> IndexForms() {
    std::vector<Mesh> objects = {FullMesh(0.0)};
    while (objects.size() < 4)
        objects.push_back(Sharing(EmptyMesh(), objects.front()));
    objects[1]->SetNormalIndexArray(PerTriangle({0}));
    objects[2]->SetColorIndexArray(PerVertex({{{1, 1, 0}}}));
    objects[3]->SetNormalIndexArray(objects[1]->GetModifiableNormalIndexArray());
    objects[3]->SetColorIndexArray(objects[2]->GetModifiableColorIndexArray());
    return objects;
}

std::vector<Mesh> SharedByRoles() {
    const Mesh source = FullMesh(0.0);
    source->SetUVArray(nullptr);
    const auto perVertex = source->GetModifiableNormalIndexArray();
    const auto perTriangle = source->GetModifiableColorIndexArray();
    const auto meshWith = [&](const auto& normalIndices, const auto& colorIndices) {
        const Mesh mesh = Sharing(EmptyMesh(), source);
        mesh->SetNormalIndexArray(normalIndices);
        mesh->SetColorIndexArray(colorIndices);
        return mesh;
    };
    return {meshWith(perTriangle, perTriangle), meshWith(perVertex, perTriangle),
            meshWith(perTriangle, perVertex)};
}

std::vector<Mesh> UnusualNumbers() {
    const double infinity = std::numeric_limits<double>::infinity();
    const double quiet = std::nan("123");
    const Mesh mesh = EmptyMesh(quiet);
    mesh->SetVertexArray(Vertices({{-0.0, infinity, 5e-324}}));
    mesh->SetNormalIndexArray(PerTriangle({~std::size_t{0}}));
    mesh->SetUVArray(UVs({{-quiet, -infinity}}));
    return {mesh};
}

std::vector<Mesh> BigNumbers() {
    const Mesh full = FullMesh(0.5);
    const Mesh sharing = Sharing(EmptyMesh(0.25), full);
    const Mesh primitive = EmptyPrimitive(1.0);
    return {full, sharing, full, sharing, primitive, EmptyPrimitive(2.0), primitive, nullptr};
}

std::vector<Mesh> OtherArrayNumbers() {
    const Mesh first = FullMesh(0.5);
    first->SetColorIndexArray(first->GetModifiableNormalIndexArray());
    return {first, Sharing(EmptyMesh(0.25), first)};
}

std::vector<Mesh> OtherFormBytes() {
    const Mesh mesh = FullMesh(0.5);
    mesh->SetNormalIndexArray(PerTriangle({0}));
    return {mesh};
}

std::vector<Mesh> LongForms() {
    const Mesh full = FullMesh(0.5);
    return {full, EmptyMesh(0.25), full, nullptr};
}

std::vector<Mesh> MixedSchemas(bool hasUVs) {
    const Mesh first = FullSharedNullRepeated(hasUVs)[0];
    return {first, Sharing(EmptyPrimitive(0.25), first), Sharing(EmptyMesh(-1.0), first)};
}

}  // namespace

std::vector<Expectation> Expectations() {
    const auto withUVs = [] { return FullSharedNullRepeated(true); };
    const auto withoutUVs = [] { return FullSharedNullRepeated(false); };
    const auto one = [](Mesh (*make)(double), double creaseAngle) {
        return [=] { return std::vector<Mesh>{make(creaseAngle)}; };
    };
    const std::vector<ExpectedFinding> newerSchema = {{CheckCode::NewerSchema, "schema word"}};
    const std::vector<ExpectedFinding> mixedSchemas = {{CheckCode::MixedSchemas, "schema word"}};
    std::vector<Expectation> list = {
        {"schema_0", withoutUVs, {}, false},
        {"schema_1", withoutUVs, {}, false},
        {"schema_2", withUVs, {}, false},
        {"schema_9", withUVs, {}, false},
        {"schema_10", withoutUVs, {}, false},
        {"schema_11", withoutUVs, {}, false},
        {"schema_12", withUVs, {}, false},
        {"schema_16", withUVs},
        {"schema_19", withUVs, newerSchema, false},
        {"schema_20", withUVs, newerSchema, false},
        {"schema_21", withUVs, newerSchema, false},
        {"null", [] { return std::vector<Mesh>{nullptr}; }},
        {"empty_mesh", one(EmptyMesh, 0.0)},
        {"empty_primitive", one(EmptyPrimitive, 0.0)},
        {"full_primitive", [] { return std::vector<Mesh>{FullPrimitive(0.5)}; }},
        {"both_classes", BothClasses},
        {"presence_combinations", PresenceCombinations},
        {"empty_arrays", EmptyArrays},
        {"index_forms", IndexForms},
        {"shared_by_roles", SharedByRoles},
        {"equal_arrays",
         [] {
             return std::vector<Mesh>{FullPrimitive(0.0), FullPrimitive(0.0)};
         }},
        {"unusual_numbers", UnusualNumbers, {{CheckCode::NormalNumber, "the largest index"}}},
        // The check knows nothing of the host's own objects.
        {"big_numbers",
         BigNumbers,
         {{CheckCode::ClassNumber, "class number 0x7FFD, obj"}},
         true,
         0x7FFC},
        {"long_forms", LongForms, {}, false},
        {"mixed_schemas_old_first", [] { return MixedSchemas(false); }, mixedSchemas, false},
        {"mixed_schemas_new_first", [] { return MixedSchemas(true); }, mixedSchemas, false},
    };
    // What is addressed is not there.
    list.push_back({"arrays_alone",
                    ArraysAlone,
                    {{CheckCode::VertexNumber, "corner 0 of triangle 0"},
                     {CheckCode::NormalNumber, "corner 0 of triangle 0"},
                     {CheckCode::ColorNumber, "index of triangle 0"}}});
    list.push_back({"arrays_missing",
                    ArraysMissing,
                    {{CheckCode::VertexNumber, "array number 4, content already stored"},
                     {CheckCode::NormalNumber, "array number 5, content already stored"},
                     {CheckCode::ColorNumber, "array number 6, content already stored"}}});
    list.push_back({"other_presence_bytes",
                    [] { return std::vector<Mesh>{EmptyMesh(0.5)}; },
                    {{CheckCode::PresenceByte, "vertices: neither"},
                     {CheckCode::PresenceByte, "normals: neither"},
                     {CheckCode::PresenceByte, "colours: neither"},
                     {CheckCode::PresenceByte, "vertex indices: neither"},
                     {CheckCode::PresenceByte, "normal indices: neither"},
                     {CheckCode::PresenceByte, "colour indices: neither"},
                     {CheckCode::PresenceByte, "UVs: neither"}},
                    false});
    list.push_back({"other_array_numbers",
                    OtherArrayNumbers,
                    {{CheckCode::ArrayNumber, "array number 7, new"},
                     {CheckCode::ArrayNumber, "array number 3, new"},
                     {CheckCode::ArrayNumber, "array number 0, new"},
                     {CheckCode::ArrayNumber, "array number 9223372036854775808, new"},
                     {CheckCode::ArrayNumber, "array number 6, new"},
                     {CheckCode::ArrayNumber, "array number 18446744073709551615, new"}},
                    false});
    list.push_back({"other_form_bytes",
                    OtherFormBytes,
                    {{CheckCode::FormByte, "form: not 0"}, {CheckCode::FormByte, "form: not 0"}},
                    false});
    return list;
}

}  // namespace Vr::golden
