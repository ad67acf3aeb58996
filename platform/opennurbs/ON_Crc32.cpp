// One table look-up a byte. Chunks are checksummed as they pass in pieces of a few bytes, for which
// wider tables gain nothing.
#include "ON_Crc32.h"

#include <array>

namespace {

constexpr std::array<std::uint32_t, 256> MakeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) {
            remainder = (remainder & 1u) != 0 ? (remainder >> 1) ^ 0xedb88320u : remainder >> 1;
        }
        table[byte] = remainder;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

}  // namespace

std::uint32_t ON_CRC32(std::uint32_t currentRemainder, size_t byteCount,
                       const void* bytes) noexcept {
    const auto* next = static_cast<const unsigned char*>(bytes);
    std::uint32_t remainder = ~currentRemainder;
    for (size_t left = byteCount; left > 0; --left) {
        remainder = (remainder >> 8) ^ kTable[(remainder ^ *next++) & 0xffu];
    }
    return ~remainder;
}
