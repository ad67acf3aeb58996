/// The host's own values in a document, for those who load, store and check it.
#pragma once

#include <afx.h>

#include <string>

namespace Host {

constexpr DWORD kMagic = 0x4D445256;    // "VRDM" in the file
constexpr DWORD kEndMark = 0x444E4556;  // "VEND" in the file
constexpr DWORD kVersion = 1;
// Class number, crease angle and the six arrays that every version of a mesh has, all absent.
constexpr ULONGLONG kSmallestObjectBytes = 2 + 8 + 6;

/// @name What is wrong with a document, in the same words before and while loading
/// @{
constexpr const char* kNoDocument = "not a mesh document";
constexpr const char* kObjectMissing = "an object is missing";
constexpr const char* kWrongEnd = "it does not end behind its last object";

inline std::string UnknownVersion(DWORD version) {
    return "document format " + std::to_string(version) + " is not known";
}
inline std::string TooShort(ULONGLONG objectCount) {
    return "it is too short for its " + std::to_string(objectCount) + " objects";
}
/// @}

}  // namespace Host
