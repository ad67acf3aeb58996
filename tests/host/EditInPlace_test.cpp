#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;

class EditInPlace : public EditTest {};

TEST_F(EditInPlace, ADocumentCanBeEditedInPlace) {
    const std::string path = StoreDocument("square.vrd", {Square()});
    ExpectSuccess(RunHost({"transform", path, "-o", path, "--translate", "0", "0", "1"}));
    EXPECT_EQ(Points(LoadDocument("square.vrd")[0])[0], ON_3dPoint(0, 0, 1));
    EXPECT_THAT(Names(), ElementsAre("square.vrd"));
}

TEST_F(EditInPlace, AFullDiskLeavesTheOldDocument) {
    const std::string path = StoreDocument("square.vrd", {Square()});
    const Bytes before = Read("square.vrd");
    ExpectFailure(RunHost({"reverse", path, "-o", path}, WithFileSizeLimit(100)), path,
                  "File too large");
    EXPECT_EQ(Read("square.vrd"), before);
}

}  // namespace
}  // namespace Vr::test
