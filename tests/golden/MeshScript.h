/// Bodies of meshes, written down by hand. Nothing here knows the library.
///
/// The arrays are those of one triangle: vertices (0, 0, 0), (2, 0, 0), (0, 3, 0.5); normals (0, 0, 1)
/// and (0, 0, -1); colours opaque red and half blue; the triangle 0, 1, 2; normal indices per vertex
/// 0, 1, 0; colour indices per triangle 1; UVs (0, 0), (1, 0), (0, 1).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/ByteScript.h"

namespace Vr::golden {

using test::ByteScript;

inline constexpr std::size_t kStoredRoles = 7;
inline constexpr std::size_t kNormalIndexRole = 4;
inline constexpr std::size_t kColorIndexRole = 5;
inline constexpr std::size_t kUVRole = 6;

inline std::string RoleName(std::size_t role) {
    static const char* const kNames[kStoredRoles] = {
        "vertices",       "normals",        "colours", "vertex indices",
        "normal indices", "colour indices", "UVs"};
    return kNames[role];
}

/// @name Contents of arrays
/// @{
inline ByteScript TriangleContent(std::size_t role) {
    switch (role) {
        case 0:
            return ByteScript()
                .Qword(3, "vertex count")
                .Double(0, "x of vertex 0")
                .Double(0, "y")
                .Double(0, "z")
                .Double(2, "x of vertex 1")
                .Double(0, "y")
                .Double(0, "z")
                .Double(0, "x of vertex 2")
                .Double(3, "y")
                .Double(0.5, "z");
        case 1:
            return ByteScript()
                .Qword(2, "normal count")
                .Double(0, "x of normal 0")
                .Double(0, "y")
                .Double(1, "z")
                .Double(0, "x of normal 1")
                .Double(0, "y")
                .Double(-1, "z");
        case 2:
            return ByteScript()
                .Qword(2, "colour count")
                .Hex("FF 00 00 00", "colour 0: red, green, blue, alpha")
                .Hex("00 00 FF 80", "colour 1");
        case 3:
            return ByteScript()
                .Qword(1, "triangle count")
                .Qword(0, "corner 0 of triangle 0")
                .Qword(1, "corner 1")
                .Qword(2, "corner 2");
        case kNormalIndexRole:
            return ByteScript()
                .OneByte(0, "form: per vertex")
                .Qword(1, "count")
                .Qword(0, "corner 0 of triangle 0")
                .Qword(1, "corner 1")
                .Qword(0, "corner 2");
        case kColorIndexRole:
            return ByteScript()
                .OneByte(1, "form: per triangle")
                .Qword(1, "count")
                .Qword(1, "index of triangle 0");
        default:
            return ByteScript()
                .Qword(3, "UV count")
                .Double(0, "u of entry 0")
                .Double(0, "v")
                .Double(1, "u of entry 1")
                .Double(0, "v")
                .Double(0, "u of entry 2")
                .Double(1, "v");
    }
}

/// Normal indices per triangle, colour indices per vertex.
inline ByteScript EmptyContent(std::size_t role) {
    ByteScript script;
    if (role == kNormalIndexRole)
        script.OneByte(1, "form: per triangle");
    if (role == kColorIndexRole)
        script.OneByte(0, "form: per vertex");
    return script.Qword(0, "count");
}
/// @}

/// @name Envelopes
/// @{
inline ByteScript NoArray(std::size_t role) {
    return ByteScript().OneByte(0, RoleName(role) + ": absent");
}

inline ByteScript NewArray(std::size_t role, std::uint64_t number, const ByteScript& content) {
    return ByteScript()
        .OneByte(1, RoleName(role) + ": present")
        .Qword(number, "array number " + std::to_string(number) + ", new")
        .Append(content);
}

inline ByteScript NewArray(std::size_t role, std::uint64_t number) {
    return NewArray(role, number, TriangleContent(role));
}

inline ByteScript KnownArray(std::size_t role, std::uint64_t number) {
    return ByteScript()
        .OneByte(1, RoleName(role) + ": present")
        .Qword(number, "array number " + std::to_string(number) + ", content already stored");
}
/// @}

/// A body whose envelopes `envelope(role)` gives, in the order of the roles.
template <class Envelope>
ByteScript Body(double creaseAngle, const Envelope& envelope, std::size_t roles = kStoredRoles) {
    ByteScript script;
    script.Double(creaseAngle, "crease angle");
    for (std::size_t role = 0; role < roles; ++role)
        script.Append(envelope(role));
    return script;
}

/// Every array new, with the numbers from `firstNumber` up.
inline ByteScript NewBody(double creaseAngle, std::uint64_t firstNumber = 1,
                          std::size_t roles = kStoredRoles) {
    return Body(
        creaseAngle, [=](std::size_t role) { return NewArray(role, firstNumber + role); }, roles);
}

/// Every array met before, with the numbers from 1 up.
inline ByteScript KnownBody(double creaseAngle, std::size_t roles = kStoredRoles) {
    return Body(
        creaseAngle, [](std::size_t role) { return KnownArray(role, role + 1); }, roles);
}

inline ByteScript EmptyBody(double creaseAngle) {
    return Body(creaseAngle, NoArray);
}

}  // namespace Vr::golden
