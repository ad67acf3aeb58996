/// The checksum of chunks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ON_Export.h"

/// Continues a CRC-32 (reflected polynomial 0xEDB88320, as in zlib) over some more bytes.
///
/// - Example: `ON_CRC32(0, 9, "123456789")` is 0xcbf43926.
VERIDANE_OPENNURBS_API std::uint32_t ON_CRC32(std::uint32_t currentRemainder, size_t byteCount,
                                              const void* bytes) noexcept;
