/// The 16-byte identifier of classes, materials and plug-ins.
#pragma once

#include <cstdint>

#include "ON_Export.h"

/// - Shape: printed as Data1-Data2-Data3-Data4[0..1]-Data4[2..7], hexadecimal.
struct ON_UUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    unsigned char Data4[8];
};

inline bool operator==(const ON_UUID& a, const ON_UUID& b) noexcept {
    bool isSame = a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3;
    for (int byte = 0; byte < 8; ++byte) {
        isSame = isSame && a.Data4[byte] == b.Data4[byte];
    }
    return isSame;
}

inline bool operator!=(const ON_UUID& a, const ON_UUID& b) noexcept {
    return !(a == b);
}

/// The identifier whose bytes are all zero: "no class", "no plug-in".
inline constexpr ON_UUID ON_nil_uuid = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
