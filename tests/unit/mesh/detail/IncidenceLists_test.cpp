#include "mesh/detail/IncidenceLists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "support/Caught.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vr::VraMeshPrimitive;
using namespace Vr::test;

using Entry = std::pair<size_t, size_t>;  // Triangle and corner.

template <class Number>
std::vector<Entry> EntriesOf(Vr::detail::IncidenceLists<Number>& lists, size_t vertex) {
    using Lists = Vr::detail::IncidenceLists<Number>;
    std::vector<Entry> entries;
    for (const Number* entry = lists.Begin(vertex); entry != lists.End(vertex); ++entry)
        entries.push_back({Lists::TriangleOf(*entry), Lists::CornerOf(*entry)});
    return entries;
}

template <class Number>
class IncidenceLists : public ::testing::Test {};
using Numbers = ::testing::Types<uint32_t, uint64_t>;
TYPED_TEST_SUITE(IncidenceLists, Numbers, );

TYPED_TEST(IncidenceLists, HoldTrianglesInAscendingOrderWithTheirCorners) {
    for (size_t workerCount = 1; workerCount < 8; ++workerCount) {
        Vr::detail::IncidenceLists<TypeParam> lists(5, {{{0, 1, 2}}, {{2, 1, 4}}, {{4, 2, 0}}},
                                                    workerCount);
        EXPECT_THAT(EntriesOf(lists, 0), ElementsAre(Entry(0, 0), Entry(2, 2)));
        EXPECT_THAT(EntriesOf(lists, 1), ElementsAre(Entry(0, 1), Entry(1, 1)));
        EXPECT_THAT(EntriesOf(lists, 2), ElementsAre(Entry(0, 2), Entry(1, 0), Entry(2, 1)));
        EXPECT_THAT(EntriesOf(lists, 3), IsEmpty());
        EXPECT_THAT(EntriesOf(lists, 4), ElementsAre(Entry(1, 2), Entry(2, 0)));
    }
}

TYPED_TEST(IncidenceLists, NameARepeatedVertexTwiceWithItsFirstCorner) {
    Vr::detail::IncidenceLists<TypeParam> lists(3, {{{1, 2, 2}}, {{0, 1, 0}}}, 1);
    EXPECT_THAT(EntriesOf(lists, 0), ElementsAre(Entry(1, 0), Entry(1, 0)));
    EXPECT_THAT(EntriesOf(lists, 1), ElementsAre(Entry(0, 0), Entry(1, 1)));
    EXPECT_THAT(EntriesOf(lists, 2), ElementsAre(Entry(0, 1), Entry(0, 1)));
}

TEST(IncidenceListsOfThirtyTwoBits, HoldTwoToTheThirtyTrianglesLessOne) {
    using Lists = Vr::detail::IncidenceLists<uint32_t>;
    EXPECT_TRUE(Lists::CanHold((size_t{1} << 30) - 1));
    EXPECT_FALSE(Lists::CanHold(size_t{1} << 30));
}

TEST(FirstCornerOf, IsTheFirstThatMatches) {
    EXPECT_EQ(Vr::detail::FirstCornerOf({{4, 5, 5}}, 5), 1u);
    EXPECT_EQ(Vr::detail::FirstCornerOf({{5, 4, 6}}, 6), 2u);
}

TEST(FirstCornerOf, ThrowsWhereTheVertexIsNotNamed) {
    EXPECT_EQ(CaughtFrom([] {
                  static_cast<void>(Vr::detail::FirstCornerOf({{4, 5, 6}}, 7));
              }),
              RuntimeError("conrer index not found"));
}

}  // namespace
