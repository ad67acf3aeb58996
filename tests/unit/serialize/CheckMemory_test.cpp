// How much memory a check takes of documents that are made to take much.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <vector>

#include "serialize/CheckStream.h"
#include "support/ByteScript.h"
#include "support/FailingAllocation.h"
#include "support/MemoryFile.h"

namespace Vr::test {
namespace {

using Bytes = std::vector<BYTE>;

constexpr size_t kObjectCount = 20000;
constexpr int kEnvelopeCount = 7;
// What a file is read through, and what findings and the rest take.
constexpr size_t kPiece = size_t{256} << 10;
constexpr size_t kRest = size_t{48} << 10;
// An array takes 17 bytes of a document at least and 80 of memory, an object 18 and, while the list of all
// grows, 48.
constexpr size_t kMultiple = 5;

// Many objects; `addBody(script, firstArray)` adds the seven envelopes of each.
template <class AddBody>
Bytes Objects(const AddBody& addBody) {
    ByteScript script;
    script.NewClass(16, "VraMesh", "class 1");
    for (size_t object = 0; object < kObjectCount; ++object) {
        if (object > 0)
            script.Word(0x8001, "class 1");
        script.Double(0.5, "crease angle");
        addBody(script, 1 + object * kEnvelopeCount);
    }
    return script.Bytes();
}

void AddAbsentArrays(ByteScript& script, size_t) {
    script.Raw(Bytes(kEnvelopeCount, 0), "absent arrays");
}

void AddEmptyArrays(ByteScript& script, size_t firstArray) {
    for (int envelope = 0; envelope < kEnvelopeCount; ++envelope) {
        script.OneByte(1, "present").Qword(firstArray + static_cast<size_t>(envelope), "new array");
        if (envelope == 4 || envelope == 5)
            script.OneByte(0, "form");
        script.Qword(0, "count");
    }
}

// Each number is of the mesh before, and of an array of other elements, which is a finding each.
void AddWrongReferences(ByteScript& script, size_t firstArray) {
    if (firstArray == 1)
        return AddEmptyArrays(script, firstArray);
    for (std::uint64_t number = kEnvelopeCount; number > 0; --number)
        script.OneByte(1, "present").Qword(number, "known array");
}

Bytes OneLargeArray() {
    constexpr size_t kCount = 300000;
    ByteScript script;
    return script.NewClass(16, "VraMesh", "class 1")
        .Double(0.5, "crease angle")
        .OneByte(1, "present")
        .Qword(1, "new array")
        .Qword(kCount, "count")
        .Raw(Bytes(24 * kCount, 0), "vertices")
        .Raw(Bytes(2, 0), "no normals, no colours")
        .OneByte(1, "present")
        .Qword(2, "new array")
        .Qword(kCount, "count")
        .Raw(Bytes(24 * kCount, 0), "triangles")
        .Raw(Bytes(3, 0), "absent arrays")
        .Bytes();
}

Bytes CountWithoutElements() {
    ByteScript script;
    return script.NewClass(16, "VraMesh", "class 1")
        .Double(0.5, "crease angle")
        .OneByte(1, "present")
        .Qword(1, "new array")
        .Qword(std::uint64_t{1} << 56, "count")
        .Bytes();
}

struct Document {
    const char* name;
    Bytes (*make)();
    size_t objectCount;
    size_t arrayCount;
    bool isSafe;
};

void PrintTo(const Document& document, std::ostream* out) {
    *out << document.name;
}

class CheckMemory : public ::testing::TestWithParam<Document> {
protected:
    void ExpectWholeReport(const CheckReport& report) const {
        EXPECT_EQ(report.IsSafe(), GetParam().isSafe);
        EXPECT_EQ(report.objectCount, GetParam().objectCount);
        EXPECT_EQ(report.arrayCount, GetParam().arrayCount);
    }

    const Bytes bytes_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(
    CheckDocument, CheckMemory,
    ::testing::Values(Document{"ObjectsWithoutArrays", [] { return Objects(AddAbsentArrays); },
                               kObjectCount, 0, true},
                      Document{"EmptyArrays", [] { return Objects(AddEmptyArrays); }, kObjectCount,
                               kObjectCount* kEnvelopeCount, true},
                      Document{"Findings", [] { return Objects(AddWrongReferences); }, kObjectCount,
                               kEnvelopeCount, false},
                      Document{"LargeArrays", OneLargeArray, 1, 2, true},
                      Document{"ACountWithoutElements", CountWithoutElements, 1, 1, false}),
    [](const auto& instance) { return instance.param.name; });

TEST_P(CheckMemory, IsASmallMultipleOfTheBytes) {
    const MeasureAllocation memory;
    const CheckReport report = CheckDocument(bytes_.data(), bytes_.size());
    EXPECT_LE(memory.PeakBytes(), kMultiple * bytes_.size() + kRest);
    ExpectWholeReport(report);
}

TEST_P(CheckMemory, TakesAPieceOfAFileBesides) {
    MemoryFile file(bytes_);
    const MeasureAllocation memory;
    const CheckReport report = CheckDocument(file);
    EXPECT_LE(memory.PeakBytes(), kMultiple * bytes_.size() + kPiece + kRest);
    ExpectWholeReport(report);
}

// The elements are passed over or read in pieces, so the bytes do not count at all.
TEST(CheckMemory, OfLargeArraysIsThePiece) {
    MemoryFile file(OneLargeArray());
    const MeasureAllocation memory;
    EXPECT_TRUE(CheckDocument(file).IsSafe());
    EXPECT_LE(memory.PeakBytes(), kPiece + kRest);
    EXPECT_GE(memory.PeakBytes(), size_t{4} << 10) << "nothing was measured";
}

}  // namespace
}  // namespace Vr::test
