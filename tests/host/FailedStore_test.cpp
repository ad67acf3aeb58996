#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>

#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;

// The file size limit of the tests below, less than a box takes.
constexpr size_t kLimit = 300;
constexpr const char* kDiskFull = "File too large";

class FailedStore : public HostTest {
protected:
    // A copy over an old document fails, and leaves that document and no temporary file.
    void ExpectOldDocumentStays(const ChildSetUp& setUp, const std::string& reason) {
        StoreDocument("box.vrd", {UnitBox()});
        Write("old.vrd", "the old document");
        const Bytes before = Read("old.vrd");
        ExpectFailure(RunHost({"copy", Path("box.vrd"), Path("old.vrd")}, setUp), Path("old.vrd"),
                      reason);
        EXPECT_EQ(Read("old.vrd"), before);
        EXPECT_THAT(Names(), ElementsAre("box.vrd", "old.vrd"));
    }
};

TEST_F(FailedStore, AFullDiskLeavesTheOldDocumentAndNoTemporaryFile) {
    ExpectOldDocumentStays(WithFileSizeLimit(kLimit), kDiskFull);
}

TEST_F(FailedStore, AFullDiskLeavesNothingWhereNothingWas) {
    const std::string model = Write("cube.ply", CubePly());
    const HostResult result =
        RunHost({"import", model, "-o", Path("new.vrd")}, WithFileSizeLimit(kLimit));
    ExpectFailure(result, Path("new.vrd"), kDiskFull);
    EXPECT_THAT(Names(), ElementsAre("cube.ply"));
}

// The limit lies inside the last bytes, which leave the buffers only when the file is closed.
TEST_F(FailedStore, ADiskThatFillsUpWithTheLastByteIsNoticed) {
    StoreDocument("box.vrd", {UnitBox()});
    const size_t length = Read("box.vrd").size();
    ExpectFailure(
        RunHost({"copy", Path("box.vrd"), Path("new.vrd")}, WithFileSizeLimit(length - 1)),
        Path("new.vrd"), kDiskFull);
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
    ExpectSuccess(RunHost({"copy", Path("box.vrd"), Path("new.vrd")}, WithFileSizeLimit(length)));
}

// Colours and UVs take another way to the file than the other arrays.
TEST_F(FailedStore, ADiskThatFillsUpAnywhereLeavesTheOldDocumentAndTheNextStoreSucceeds) {
    ExpectSuccess(RunHost({"import", Write("cube.ply", PaintedCubePly()), "-o", Path("new.vrd")}));
    const Bytes whole = Read("new.vrd");
    const std::string old = "the old document";
    for (size_t limit = 0; limit < whole.size(); limit += 41) {
        SCOPED_TRACE(limit);
        Write("old.vrd", old);
        ExpectFailure(RunHost({"copy", Path("new.vrd"), Path("old.vrd")}, WithFileSizeLimit(limit)),
                      Path("old.vrd"), kDiskFull);
        ASSERT_EQ(Read("old.vrd"), Bytes(old.begin(), old.end()));
        ASSERT_THAT(Names(), ElementsAre("cube.ply", "new.vrd", "old.vrd"));
        ExpectSuccess(RunHost({"copy", Path("new.vrd"), Path("old.vrd")}));
        ASSERT_EQ(Read("old.vrd"), whole);
    }
}

// What was written may get lost on its way from the system to the disk.
TEST_F(FailedStore, ADiskThatDoesNotTakeTheContentLeavesTheOldDocument) {
    ExpectOldDocumentStays(WithFailingCall(SYS_fsync, EIO), "Input/output error");
}

TEST_F(FailedStore, AFileSystemThatKnowsNoSyncingIsNoFailure) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectSuccess(
        RunHost({"copy", Path("box.vrd"), Path("new.vrd")}, WithFailingCall(SYS_fsync, EINVAL)));
    EXPECT_EQ(Read("new.vrd"), Read("box.vrd"));
}

#ifdef SYS_rename  // What the C library calls where the kernel has it.
TEST_F(FailedStore, ANameThatCannotBeExchangedLeavesTheOldDocument) {
    ExpectOldDocumentStays(WithFailingCall(SYS_rename, EROFS), "Read-only file system");
}
#endif

TEST_F(FailedStore, AMissingFolder) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"copy", Path("box.vrd"), Path("nowhere/new.vrd")}),
                  Path("nowhere/new.vrd"), "No such file or directory");
}

TEST_F(FailedStore, AFileInPlaceOfTheFolder) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"copy", Path("box.vrd"), Path("box.vrd/new.vrd")}),
                  Path("box.vrd/new.vrd"), "Not a directory");
}

TEST_F(FailedStore, AFolderThatMayNotBeWritten) {
    using std::filesystem::perms;
    StoreDocument("box.vrd", {UnitBox()});
    std::filesystem::create_directory(Path("locked"));
    std::filesystem::permissions(Path("locked"), perms::owner_read | perms::owner_exec);
    ExpectFailure(RunHost({"copy", Path("box.vrd"), Path("locked/new.vrd")}, ObeyPermissions),
                  Path("locked/new.vrd"), "Permission denied");
    std::filesystem::permissions(Path("locked"), perms::owner_all);
}

TEST_F(FailedStore, AFolderAsTarget) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"copy", Path("box.vrd"), Path("")}), Path(""), "not a regular file");
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

TEST_F(FailedStore, ADeviceAsTargetIsNotReplacedByAFile) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"copy", Path("box.vrd"), "/dev/full"}), "/dev/full",
                  "not a regular file");
    struct stat status = {};
    ASSERT_EQ(stat("/dev/full", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(FailedStore, ADamagedSourceLeavesTheOldDocument) {
    const std::string source = Write("damaged.vrd", "VRDM");
    const std::string target = StoreDocument("box.vrd", {UnitBox()});
    const Bytes before = Read("box.vrd");
    ExpectFailure(RunHost({"copy", source, target}), source,
                  "damaged document: byte 4: the stream ends 0 bytes into a value of 4");
    EXPECT_EQ(Read("box.vrd"), before);
}

}  // namespace
}  // namespace Vr::test
