#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;

class Edges : public EditTest {};

TEST_F(Edges, AreListedByObjectInAscendingOrder) {
    EXPECT_EQ(ExpectSuccess(RunHost({"edges", StoreDocument("two.vrd", {UnitBox(), Square()})})),
              "2 0 1\n2 1 2\n2 2 3\n2 3 0\n");
}

TEST_F(Edges, InfoCountsThem) {
    EXPECT_THAT(ExpectSuccess(RunHost({"info", StoreDocument("square.vrd", {Square()})})),
                HasSubstr("  free edges: 4\n"));
}

}  // namespace
}  // namespace Vr::test
