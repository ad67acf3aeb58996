/// The host's own values in a document, for those who load, store and check it.
#pragma once

#include <afx.h>

#include <string>

namespace Host {

constexpr DWORD kMagic = 0x4D445256;    // "VRDM" in the file
constexpr DWORD kEndMark = 0x444E4556;  // "VEND" in the file

/// @name Formats
/// @{
constexpr DWORD kMeshFormat = 1;    // meshes in a row
constexpr DWORD kObjectFormat = 2;  // objects, each behind its kind
/// @}

/// @name What an object of the second format is
/// @{
constexpr DWORD kMeshKind = 1;
constexpr DWORD kCurveKind = 2;
constexpr DWORD kSurfaceKind = 3;
constexpr DWORD kMaterialKind = 4;
/// @}

// Class number, crease angle and the six arrays that every version of a mesh has, all absent.
constexpr ULONGLONG kSmallestMeshBytes = 2 + 8 + 6;

/// Returns the least that an object takes: of openNURBS's objects all take more than a mesh.
constexpr ULONGLONG SmallestObjectBytes(DWORD format) {
    return format == kMeshFormat ? kSmallestMeshBytes : sizeof(kMeshKind) + kSmallestMeshBytes;
}

/// @name What is wrong with a document, in the same words before and while loading
/// @{
constexpr const char* kNoDocument = "not a mesh document";
constexpr const char* kObjectMissing = "an object is missing";
constexpr const char* kWrongFrame = "an object does not end with its frame";
constexpr const char* kWrongEnd = "it does not end behind its last object";

inline std::string UnknownFormat(DWORD format) {
    return "document format " + std::to_string(format) + " is not known";
}
inline std::string UnknownKind(DWORD kind) {
    return "object kind " + std::to_string(kind) + " is not known";
}
inline std::string TooShort(ULONGLONG objectCount) {
    return "it is too short for its " + std::to_string(objectCount) + " objects";
}
/// @}

}  // namespace Host
