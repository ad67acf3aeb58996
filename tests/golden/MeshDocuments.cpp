// Documents as this library stores them: schemas, presence, sharing, forms, numbers.

#include "golden/Documents.h"
#include "golden/MeshScript.h"

namespace Vr::golden {

namespace {

ByteScript MeshClass(std::uint16_t schema = 16) {
    return ByteScript().NewClass(schema, "VraMesh", "class number 1");
}

// A mesh with every array that the schema has, one that shares them all, null, and the first again.
ByteScript OfSchema(std::uint16_t schema, bool hasUVs) {
    const std::size_t roles = hasUVs ? kStoredRoles : kUVRole;
    return MeshClass(schema)
        .Append(NewBody(0.5, 1, roles))
        .Word(0x8001, "class number 1")
        .Append(KnownBody(0.25, roles))
        .Word(0x0000, "null")
        .Word(0x0002, "object number 2");
}

ByteScript BothClasses() {
    return MeshClass()
        .Append(EmptyBody(0.5))
        .NewClass(16, "VraMeshPrimitive", "class number 3, object number 4")
        .Append(NewBody(1.0))
        .Word(0x8001, "class number 1, object number 5")
        .Append(EmptyBody(-2.0))
        .Word(0x8003, "class number 3, object number 6")
        .Append(EmptyBody(0.0))
        .Word(0x0004, "object number 4")
        .Word(0x0002, "object number 2");
}

// An object a role, which has this array and no other.
ByteScript ArraysAlone() {
    ByteScript script = MeshClass();
    for (std::size_t only = 0; only < kStoredRoles; ++only) {
        if (only > 0)
            script.Word(0x8001, "class number 1");
        script.Append(Body(0.0, [=](std::size_t role) {
            return role == only ? NewArray(role, only + 1) : NoArray(role);
        }));
    }
    return script;
}

// An object with every array, then one a role, which shares all but this.
ByteScript ArraysMissing() {
    ByteScript script = MeshClass().Append(NewBody(0.0));
    for (std::size_t missing = 0; missing < kStoredRoles; ++missing)
        script.Word(0x8001, "class number 1").Append(Body(0.0, [=](std::size_t role) {
            return role == missing ? NoArray(role) : KnownArray(role, role + 1);
        }));
    return script;
}

// Object number n has the arrays whose bits are set in n. All arrays are empty; array number r + 1 is
// new in the object that has none but it.
ByteScript PresenceCombinations() {
    ByteScript script = MeshClass();
    for (std::size_t object = 0; object < (std::size_t{1} << kStoredRoles); ++object) {
        if (object > 0)
            script.Word(0x8001, "class number 1");
        script.Append(Body(static_cast<double>(object), [=](std::size_t role) {
            const std::size_t bit = std::size_t{1} << role;
            if ((object & bit) == 0)
                return NoArray(role);
            return object == bit ? NewArray(role, role + 1, EmptyContent(role))
                                 : KnownArray(role, role + 1);
        }));
    }
    return script;
}

ByteScript EmptyArrays() {
    return MeshClass().Append(
        Body(0.0, [](std::size_t role) { return NewArray(role, role + 1, EmptyContent(role)); }));
}

// Every pair of forms, normals before colours: per vertex and triangle, both per triangle, both per
// vertex, per triangle and vertex. The lists of the first object are numbers 5 and 6.
ByteScript IndexForms() {
    const ByteScript normalsPerTriangle = ByteScript()
                                              .OneByte(1, "form: per triangle")
                                              .Qword(1, "count")
                                              .Qword(0, "index of triangle 0");
    const ByteScript colorsPerVertex = ByteScript()
                                           .OneByte(0, "form: per vertex")
                                           .Qword(1, "count")
                                           .Qword(1, "corner 0 of triangle 0")
                                           .Qword(1, "corner 1")
                                           .Qword(0, "corner 2");
    const auto bodyWith = [](const ByteScript& normalIndices, const ByteScript& colorIndices) {
        return Body(0.0, [&](std::size_t role) {
            return role == kNormalIndexRole  ? normalIndices
                   : role == kColorIndexRole ? colorIndices
                                             : KnownArray(role, role + 1);
        });
    };
    return MeshClass()
        .Append(NewBody(0.0))
        .Word(0x8001, "class number 1")
        .Append(bodyWith(NewArray(kNormalIndexRole, 8, normalsPerTriangle),
                         KnownArray(kColorIndexRole, 6)))
        .Word(0x8001, "class number 1")
        .Append(bodyWith(KnownArray(kNormalIndexRole, 5),
                         NewArray(kColorIndexRole, 9, colorsPerVertex)))
        .Word(0x8001, "class number 1")
        .Append(bodyWith(KnownArray(kNormalIndexRole, 8), KnownArray(kColorIndexRole, 9)));
}

// One list is the normal and the colour indices of the first object; the second has another list for
// the normals and the first one for the colours; the third has them the other way round.
ByteScript SharedByRoles() {
    const auto bodyWith = [](const ByteScript& normalIndices, const ByteScript& colorIndices) {
        return Body(0.0, [&](std::size_t role) {
            return role == kNormalIndexRole  ? normalIndices
                   : role == kColorIndexRole ? colorIndices
                   : role == kUVRole         ? NoArray(role)
                                             : KnownArray(role, role + 1);
        });
    };
    const ByteScript perTriangle = TriangleContent(kColorIndexRole);
    return MeshClass()
        .Append(Body(0.0,
                     [&](std::size_t role) {
                         return role == kNormalIndexRole  ? NewArray(role, 5, perTriangle)
                                : role == kColorIndexRole ? KnownArray(role, 5)
                                : role == kUVRole         ? NoArray(role)
                                                          : NewArray(role, role + 1);
                     }))
        .Word(0x8001, "class number 1")
        .Append(bodyWith(NewArray(kNormalIndexRole, 6), KnownArray(kColorIndexRole, 5)))
        .Word(0x8001, "class number 1")
        .Append(bodyWith(KnownArray(kNormalIndexRole, 5), KnownArray(kColorIndexRole, 6)));
}

// Two primitives with equal arrays, each its own.
ByteScript EqualArrays() {
    return ByteScript()
        .NewClass(16, "VraMeshPrimitive", "class number 1")
        .Append(NewBody(0.0))
        .Word(0x8001, "class number 1")
        .Append(NewBody(0.0, 8));
}

ByteScript UnusualNumbers() {
    return MeshClass()
        .Hex("7B 00 00 00 00 00 F8 7F", "crease angle: NaN, payload 123")
        .OneByte(1, "vertices: present")
        .Qword(1, "array number 1, new")
        .Qword(1, "vertex count")
        .Hex("00 00 00 00 00 00 00 80", "x: -0.0")
        .Hex("00 00 00 00 00 00 F0 7F", "y: infinity")
        .Hex("01 00 00 00 00 00 00 00", "z: the smallest denormal")
        .Raw({0, 0, 0}, "normals, colours, vertex indices: absent")
        .OneByte(1, "normal indices: present")
        .Qword(2, "array number 2, new")
        .OneByte(1, "form: per triangle")
        .Qword(1, "count")
        .Hex("FF FF FF FF FF FF FF FF", "the largest index")
        .OneByte(0, "colour indices: absent")
        .OneByte(1, "UVs: present")
        .Qword(3, "array number 3, new")
        .Qword(1, "UV count")
        .Hex("7B 00 00 00 00 00 F8 FF", "u: NaN with its sign")
        .Hex("00 00 00 00 00 00 F0 FF", "v: -infinity");
}

// The host has given 0x7FFC numbers to objects of its own before.
ByteScript BigNumbers() {
    return ByteScript()
        .NewClass(16, "VraMesh", "class number 0x7FFD")
        .Append(NewBody(0.5))
        .Word(0xFFFD, "class number 0x7FFD, object number 0x7FFF")
        .Append(KnownBody(0.25))
        .Word(0x7FFE, "object number 0x7FFE, the last in the short form")
        .Word(0x7FFF, "escape")
        .Dword(0x00007FFF, "object number 0x7FFF")
        .NewClass(16, "VraMeshPrimitive", "class number 0x8000, object number 0x8001")
        .Append(EmptyBody(1.0))
        .Word(0x7FFF, "escape")
        .Dword(0x80008000, "class number 0x8000, object number 0x8002")
        .Append(EmptyBody(2.0))
        .Word(0x7FFF, "escape")
        .Dword(0x00008001, "object number 0x8001")
        .Word(0x0000, "null");
}

}  // namespace

std::vector<Document> MeshDocuments() {
    std::vector<Document> documents;
    constexpr std::uint16_t kWithoutUVs[] = {0, 1, 10, 11};
    constexpr std::uint16_t kWithUVs[] = {2, 9, 12, 16, 19, 20, 21};
    for (const std::uint16_t schema : kWithoutUVs)
        documents.push_back({"schema_" + std::to_string(schema), OfSchema(schema, false)});
    for (const std::uint16_t schema : kWithUVs)
        documents.push_back({"schema_" + std::to_string(schema), OfSchema(schema, true)});
    const ByteScript primitiveClass =
        ByteScript().NewClass(16, "VraMeshPrimitive", "class number 1");
    const std::vector<Document> current = {
        {"null", ByteScript().Word(0x0000, "null")},
        {"empty_mesh", MeshClass().Append(EmptyBody(0.0))},
        {"empty_primitive", ByteScript(primitiveClass).Append(EmptyBody(0.0))},
        {"full_primitive", ByteScript(primitiveClass).Append(NewBody(0.5))},
        {"both_classes", BothClasses()},
        {"arrays_alone", ArraysAlone()},
        {"arrays_missing", ArraysMissing()},
        {"presence_combinations", PresenceCombinations()},
        {"empty_arrays", EmptyArrays()},
        {"index_forms", IndexForms()},
        {"shared_by_roles", SharedByRoles()},
        {"equal_arrays", EqualArrays()},
        {"unusual_numbers", UnusualNumbers()},
        {"big_numbers", BigNumbers()},
    };
    documents.insert(documents.end(), current.begin(), current.end());
    return documents;
}

// Class 1, meshes 2 to 0x7FFF; class 0x8000, primitives 0x8001 to 0x8003.
ByteScript ManyMeshes() {
    constexpr std::size_t kMeshes = 32766;
    const ByteScript body = EmptyBody(0.0);
    ByteScript script = MeshClass().Append(body);
    for (std::size_t mesh = 1; mesh < kMeshes; ++mesh)
        script.Word(0x8001, "class number 1 of a later mesh").Append(body);
    script.NewClass(16, "VraMeshPrimitive", "class number 0x8000").Append(NewBody(0.5));
    for (int primitive = 1; primitive < 3; ++primitive)
        script.Word(0x7FFF, "escape").Dword(0x80008000, "class number 0x8000").Append(KnownBody(1));
    return script.Word(0x8001, "class number 1, object number 0x8004")
        .Append(body)
        .Word(0x7FFE, "object number 0x7FFE")
        .Word(0x7FFF, "escape")
        .Dword(0x00007FFF, "object number 0x7FFF, the last mesh of the row")
        .Word(0x7FFF, "escape")
        .Dword(0x00008003, "object number 0x8003, the last primitive")
        .Word(0x0002, "object number 2, the first mesh");
}

}  // namespace Vr::golden
