// Documents that are read but not stored so, and documents of values, curves, surfaces and materials.

#include "golden/Documents.h"
#include "golden/MeshScript.h"
#include "golden/OpenNurbsRecords.h"

namespace Vr::golden {

namespace {

ByteScript MeshClass(std::uint16_t schema = 16) {
    return ByteScript().NewClass(schema, "VraMesh", "class number 1");
}

ByteScript OtherPresenceBytes() {
    static constexpr std::uint8_t kBytes[kStoredRoles] = {2, 255, 128, 3, 127, 254, 17};
    return MeshClass().Append(Body(0.5, [](std::size_t role) {
        return ByteScript().OneByte(kBytes[role], RoleName(role) + ": neither 0 nor 1, absent");
    }));
}

// One list serves for normals and colours.
ByteScript OtherArrayNumbers() {
    static constexpr std::uint64_t kNumbers[kStoredRoles] = {
        7, 3, 0, std::uint64_t{1} << 63, 6, 6, 0xFFFFFFFFFFFFFFFF};
    return MeshClass()
        .Append(Body(0.5,
                     [](std::size_t role) {
                         return role == kColorIndexRole ? KnownArray(role, kNumbers[role])
                                                        : NewArray(role, kNumbers[role]);
                     }))
        .Word(0x8001, "class number 1")
        .Append(Body(0.25, [](std::size_t role) { return KnownArray(role, kNumbers[role]); }));
}

ByteScript OtherFormBytes() {
    const auto list = [](std::uint8_t form, std::uint64_t index) {
        return ByteScript()
            .OneByte(form, "form: not 0, so per triangle")
            .Qword(1, "count")
            .Qword(index, "index of triangle 0");
    };
    return MeshClass().Append(Body(0.5, [&](std::size_t role) {
        return role == kNormalIndexRole  ? NewArray(role, role + 1, list(2, 0))
               : role == kColorIndexRole ? NewArray(role, role + 1, list(255, 1))
                                         : NewArray(role, role + 1);
    }));
}

ByteScript LongForms() {
    return MeshClass()
        .Append(NewBody(0.5))
        .Word(0x7FFF, "escape")
        .Dword(0x80000001, "class number 1, object number 3")
        .Append(EmptyBody(0.25))
        .Word(0x7FFF, "escape")
        .Dword(0x00000002, "object number 2")
        .Word(0x7FFF, "escape")
        .Dword(0x00000000, "null");
}

// The first object's schema decides whether both have UVs.
ByteScript MixedSchemas(std::uint16_t first, std::uint16_t second, std::size_t roles) {
    return MeshClass(first)
        .Append(NewBody(0.5, 1, roles))
        .NewClass(second, "VraMeshPrimitive", "class number 3")
        .Append(KnownBody(0.25, roles))
        .Word(0x8001, "class number 1")
        .Append(KnownBody(-1.0, roles));
}

ByteScript Values() {
    ByteScript script;
    script.Qword(9, "length of the string in UTF-16 units")
        .Hex("4D00 F600 6200 6900 7500 7300 2000", "M, o with diaeresis, b, i, u, s, space")
        .Hex("3DD8 00DE", "U+1F600 as a pair")
        .Double(1.5, "x of the point")
        .Double(-0.0, "y")
        .Hex("FF 00 10 80", "colour: red, green, blue, alpha");
    double first = 1;
    for (const char* const field : {"origin", "x axis", "y axis", "z axis"}) {
        const std::string of = std::string(" of the plane's ") + field;
        script.Double(first, "x" + of).Double(first + 1, "y" + of).Double(first + 2, "z" + of);
        first += 3;
    }
    script.Double(13, "x of the plane's equation").Double(14, "y").Double(15, "z").Double(16, "d");
    // A quarter of the circle with radius 2 about (0, 0, 5); the points are where cos and sin put them.
    script.Double(0, "x of the arc's origin").Double(0, "y").Double(5, "z");
    script.Double(1, "x of the arc's x axis").Double(0, "y").Double(0, "z");
    script.Double(0, "x of the arc's y axis").Double(1, "y").Double(0, "z");
    script.Double(0, "x of the arc's z axis").Double(0, "y").Double(1, "z");
    script.Double(0, "x of the arc's equation").Double(0, "y").Double(1, "z").Double(-5, "d");
    script.Double(2, "radius");
    script.Double(2, "x of the point at 0").Double(0, "y").Double(5, "z");
    script.Hex("07 5C 14 33 26 A6 A1 3C", "x of the point at a quarter: 2 cos(pi / 2)");
    script.Double(2, "y").Double(5, "z");
    script.Double(-2, "x of the point at a half");
    script.Hex("07 5C 14 33 26 A6 B1 3C", "y: 2 sin(pi)").Double(5, "z");
    script.Double(0, "first angle").Hex("18 2D 44 54 FB 21 F9 3F", "last angle: pi / 2");
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            script.Double(10 * row + column, "entry of the transformation, row by row");
    return script.Dword(0x00001267, "a number of the host's: 4711");
}

ByteScript Curves() {
    return StraightCurve()
        .Append(NoObject())
        .Append(MeshClass())
        .Append(NewBody(0.5))
        .Append(WeightedSurface())
        .Word(0x0002, "object number 2")
        .Append(NoObject())
        .Dword(0x00001267, "a number of the host's: 4711");
}

// A line with an empty domain has no NURBS form.
ByteScript CurveOfItsOwnClass() {
    return LineRecord(0.0, "e43d41b7").Dword(0x00001267, "a number of the host's: 4711");
}

ByteScript Materials() {
    return OakMaterial()
        .Append(MeshClass())
        .Append(NewBody(0.5))
        .Append(TexturedMaterial())
        .Word(0x0002, "object number 2");
}

}  // namespace

std::vector<Document> ForeignDocuments() {
    return {{"other_presence_bytes", OtherPresenceBytes()},
            {"other_array_numbers", OtherArrayNumbers()},
            {"other_form_bytes", OtherFormBytes()},
            {"long_forms", LongForms()},
            {"mixed_schemas_old_first", MixedSchemas(10, 16, kUVRole)},
            {"mixed_schemas_new_first", MixedSchemas(16, 10, kStoredRoles)}};
}

std::vector<Document> ValueDocuments() {
    return {{"values", Values()},
            {"curves", Curves()},
            {"curve_own_class", CurveOfItsOwnClass()},
            {"materials", Materials()}};
}

std::vector<Document> AllDocuments() {
    std::vector<Document> documents = MeshDocuments();
    for (const auto& more : {ForeignDocuments(), ValueDocuments()})
        documents.insert(documents.end(), more.begin(), more.end());
    return documents;
}

}  // namespace Vr::golden
