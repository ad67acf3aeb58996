// Every truncation and every flipped bit of the small golden documents, whatever the check says of them:
// loading ends in one of the exceptions of docs/stream-format.md or gives objects. A false count may ask
// for any memory, so there is little.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "golden/DocumentFiles.h"
#include "golden/ValueDocumentObjects.h"
#include "support/Caught.h"
#include "support/CheckedDocuments.h"
#include "support/FailingAllocation.h"
#include "support/HostileLoading.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using Vr::CheckDocument;
using Vr::CheckReport;
using Vr::CheckSeverity;
using Vr::CheckStream;

constexpr std::size_t kSmall = 1000;
// What a check of a small document in memory may allocate at a time, whatever counts it claims.
constexpr std::size_t kMostOfACheck = 16 << 10;

// Runs `attempt(damaged)` with every damage, until one fails.
template <class Attempt>
void ForEachDamage(const Bytes& bytes, const Attempt& attempt) {
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        SCOPED_TRACE("cut at byte " + std::to_string(size));
        attempt(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
        if (::testing::Test::HasFatalFailure())
            return;
    }
    Bytes damaged = bytes;
    for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        SCOPED_TRACE("bit " + std::to_string(bit % 8) + " of byte " + std::to_string(bit / 8));
        const auto mask = static_cast<BYTE>(1u << bit % 8);
        damaged[bit / 8] ^= mask;
        attempt(damaged);
        damaged[bit / 8] ^= mask;
        if (::testing::Test::HasFatalFailure())
            return;
    }
}

// ---- rows of meshes ----------------------------------------------------------------------------

std::vector<std::string> SmallRows() {
    std::vector<std::string> names;
    for (const std::string& name : DocumentNames())
        if (DocumentBytes(name).size() < kSmall && name != "values" && name != "curves" &&
            name != "curve_own_class" && name != "materials")
            names.push_back(name);
    return names;
}

class DamagedGoldenDocument : public ::testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Rows, DamagedGoldenDocument, ::testing::ValuesIn(SmallRows()),
                         [](const auto& instance) { return instance.param; });

TEST(DamagedGoldenDocuments, AreAllButOne) {
    EXPECT_EQ(SmallRows().size() + 4, DocumentNames().size() - 1);
}

TEST_P(DamagedGoldenDocument, EndsInAnExceptionOrGivesObjects) {
    ForEachDamage(DocumentBytes(GetParam()), [](const Bytes& damaged) {
        CheckReport report;
        {
            const LimitAllocation limit(kMostOfACheck);
            report = CheckDocument(damaged.data(), damaged.size());
        }
        const LoadedToTheEnd end = LoadToTheEnd(damaged);
        ASSERT_TRUE(IsOfLoading(end.caught)) << end.caught;
        if (report.worst < CheckSeverity::Invalid) {
            ASSERT_EQ(end.caught, EndOfFile());
        }
        if (report.worst < CheckSeverity::Unsafe) {
            ASSERT_EQ(end.readCount, report.readCount);
        }
        ASSERT_TRUE(LoadsAsReported(damaged, report));
    });
}

// ---- values, curves, surfaces, materials -------------------------------------------------------

template <class Content>
Caught CaughtExchanging(const Bytes& bytes) {
    const CreatedMeshes created;
    LoadedFrom stream(bytes);
    Content content;
    const Caught caught = CaughtWithLittleMemory([&] { Exchange(stream.archive, content); });
    EXPECT_TRUE(IsOfLoading(caught)) << caught;
    return caught;
}

TEST(DamagedGoldenValues, EndInAnExceptionOrGiveValues) {
    ForEachDamage(DocumentBytes("values"), [](const Bytes& damaged) {
        CheckStream stream(damaged.data(), damaged.size());
        stream.WideString();
        stream.Skip(16 + 4 + 128 + 224 + 128 + 4);
        const Caught caught = CaughtExchanging<Values>(damaged);
        ASSERT_EQ(caught == Nothing(), stream.Result().IsSafe()) << caught;
    });
}

#if defined(VERIDANE_OPENNURBS_API)  // the embedded kernel, which takes any bytes

TEST(DamagedGoldenCurves, EndInAnExceptionOrGiveObjects) {
    ForEachDamage(DocumentBytes("curves"), [](const Bytes& damaged) {
        CheckStream stream(damaged.data(), damaged.size());
        stream.Curve();
        stream.Curve();
        stream.Object();
        stream.Surface();
        stream.Object();
        stream.Surface();
        stream.Skip(4);
        const Caught caught = CaughtExchanging<Curves>(damaged);
        ASSERT_TRUE(!stream.Result().IsSafe() || caught == Nothing()) << caught;
    });
}

TEST(DamagedGoldenCurveOfItsOwnClass, EndsInAnExceptionOrGivesAnObject) {
    ForEachDamage(DocumentBytes("curve_own_class"), [](const Bytes& damaged) {
        CheckStream stream(damaged.data(), damaged.size());
        stream.Curve();
        stream.Skip(4);
        const Caught caught = CaughtExchanging<CurveOfItsOwnClass>(damaged);
        ASSERT_TRUE(!stream.Result().IsSafe() || caught == Nothing()) << caught;
    });
}

TEST(DamagedGoldenMaterials, EndInAnExceptionOrGiveObjects) {
    ForEachDamage(DocumentBytes("materials"), [](const Bytes& damaged) {
        CheckStream stream(damaged.data(), damaged.size());
        stream.Material();
        stream.Object();
        stream.Material();
        stream.Object();
        const Caught caught = CaughtExchanging<Materials>(damaged);
        ASSERT_TRUE(!stream.Result().IsSafe() || caught == Nothing()) << caught;
    });
}

#endif

}  // namespace
