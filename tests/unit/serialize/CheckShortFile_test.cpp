// Files that deliver less than they say, and checks beyond the end of a stream.

#include <gtest/gtest.h>

#include <vector>

#include "serialize/CheckStream.h"
#include "support/MemoryFile.h"
#include "support/MeshBuilders.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using Vr::CheckCode;
using Vr::CheckReport;
using Vr::CheckSeverity;
using Vr::CheckStream;

// Says that it is as long as before it was cut.
class CutFile : public MemoryFile {
public:
    CutFile(const std::vector<BYTE>& bytes, std::size_t byteCount)
        : MemoryFile({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(byteCount)}),
          length_(bytes.size()) {}
    ULONGLONG GetLength() const override { return length_; }

private:
    ULONGLONG length_;
};

TEST(CheckShortFile, ADocumentEndsWhereTheFileHasNothingMoreWhateverItSays) {
    // Its last byte says that there are no UVs, so that every cut is met by a read.
    const Bytes bytes = StoredObjects({SingleTriangle()});
    ASSERT_EQ(bytes.back(), 0);
    for (std::size_t byteCount = 0; byteCount < bytes.size(); ++byteCount) {
        SCOPED_TRACE(byteCount);
        CutFile file(bytes, byteCount);
        const CheckReport report = Vr::CheckDocument(file);
        ASSERT_EQ(report.findings.size(), 1u);
        EXPECT_EQ(report.findings[0].code, CheckCode::EndOfStream);
        EXPECT_GE(report.findings[0].offset + 24, byteCount) << "long before the end";
        EXPECT_EQ(report.readCount, 0u);
    }
    CutFile whole(bytes, bytes.size());
    EXPECT_TRUE(Vr::CheckDocument(whole).IsSafe());
}

TEST(CheckShortFile, AHostsBytesEndThereToo) {
    const Bytes bytes(10, 7);
    CutFile file(bytes, 4);
    CheckStream stream(file);
    BYTE read[6] = {};
    EXPECT_FALSE(stream.Bytes(read, sizeof read));
    EXPECT_FALSE(stream.CanGoOn());
    ASSERT_EQ(stream.Result().findings.size(), 1u);
    EXPECT_EQ(stream.Result().findings[0].code, CheckCode::EndOfStream);
}

TEST(CheckShortFile, AStringWithoutAWholeLengthIsTheEndOfTheStream) {
    const Bytes bytes(7, 0);
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_FALSE(stream.WideString());
    ASSERT_EQ(stream.Result().findings.size(), 1u);
    EXPECT_EQ(stream.Result().findings[0].code, CheckCode::EndOfStream);
    EXPECT_EQ(stream.Result().findings[0].offset, 0u);
}

TEST(CheckShortFile, ANumberThatIsNoSeverityHasANameOfItsOwn) {
    EXPECT_STREQ(NameOf(static_cast<CheckSeverity>(0)), "unknown-severity");
    EXPECT_STREQ(NameOf(static_cast<CheckSeverity>(5)), "unknown-severity");
}

}  // namespace
