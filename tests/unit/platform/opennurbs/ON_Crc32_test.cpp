// The checksum of chunks.
#include "ON_Crc32.h"

#include <gtest/gtest.h>

#include "unit/platform/opennurbs/GoldenFile.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

TEST(ON_Crc32, ChecksumsAreTheRecordedOnes) {
    for (GoldenLine& line : GoldenCases("objects.txt", "crc", 7)) {
        SCOPED_TRACE(line.Where());
        const unsigned int seed = line.Packed();
        std::string text;
        for (size_t left = line.Count(); left > 0; --left) {
            text += static_cast<char>(line.Packed());
        }
        EXPECT_EQ(ON_CRC32(seed, text.size(), text.data()), line.Packed());
    }
}

TEST(ON_Crc32, PiecesGiveTheChecksumOfTheWhole) {
    const std::uint32_t firstPiece = ON_CRC32(0, 4, "1234");
    EXPECT_EQ(ON_CRC32(firstPiece, 5, "56789"), 0xcbf43926u);
    EXPECT_EQ(ON_CRC32(firstPiece, 0, nullptr), firstPiece);
}
