#include <pty.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kInterrupted = 130;
// So many that loading takes a good part of a second.
constexpr size_t kObjectCount = 1000000;

// Returns how far the process has read the file, 0 before it is open.
size_t BytesRead(pid_t process, const std::string& path) {
    const std::filesystem::path proc = "/proc/" + std::to_string(process);
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(proc / "fd", error)) {
        if (std::filesystem::read_symlink(entry.path(), error) != path)
            continue;
        std::ifstream info(proc / "fdinfo" / entry.path().filename());
        std::string label;
        size_t position = 0;
        info >> label >> position;
        return position;
    }
    return 0;
}

class Cancel : public HostTest {
protected:
    Cancel() {
        Bytes document = DocumentHeader(kObjectCount).Append(FirstEmptyMesh()).Bytes();
        const Bytes later = LaterEmptyMesh().Bytes();
        document.reserve(document.size() + kObjectCount * later.size());
        for (size_t object = 1; object < kObjectCount; ++object)
            document.insert(document.end(), later.begin(), later.end());
        const Bytes end = DocumentEnd().Bytes();
        document.insert(document.end(), end.begin(), end.end());
        length_ = document.size();
        many_ = std::filesystem::canonical(Write("many.vrd", document)).string();
    }

    // Runs until part of the document has been read, and then presses Ctrl-C.
    HostResult InterruptWhileLoading(const std::vector<std::string>& arguments) {
        HostProcess process(arguments);
        size_t position = 0;
        for (int wait = 0; position == 0 && wait < 10000; ++wait) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            position = BytesRead(process.Id(), many_);
        }
        EXPECT_GT(position, 0U);
        EXPECT_LT(position, length_);
        kill(process.Id(), SIGINT);
        return process.Wait();
    }

    std::string many_;
    size_t length_ = 0;
};

TEST_F(Cancel, CtrlCDuringALoadEndsWithStatus130AndPrintsNothingElse) {
    const HostResult result = InterruptWhileLoading({"info", many_});
    EXPECT_EQ(result.status, kInterrupted);
    EXPECT_EQ(result.err, "veridane-host: interrupted\n");
    EXPECT_EQ(result.out, "");
}

TEST_F(Cancel, CtrlCLeavesTheTargetAsItWas) {
    const std::string target = StoreDocument("box.vrd", {UnitBox()});
    const Bytes before = Read("box.vrd");
    EXPECT_EQ(InterruptWhileLoading({"copy", many_, target}).status, kInterrupted);
    EXPECT_EQ(Read("box.vrd"), before);
    EXPECT_THAT(Names(), ElementsAre("box.vrd", "many.vrd"));
}

TEST_F(Cancel, CtrlCLeavesADocumentThatIsEditedInPlace) {
    EXPECT_EQ(InterruptWhileLoading({"clean", many_, "-o", many_}).status, kInterrupted);
    EXPECT_EQ(Read("many.vrd").size(), length_);
    EXPECT_THAT(Names(), ElementsAre("many.vrd"));
}

TEST_F(Cancel, CtrlCDuringAStoreRemovesTheTemporaryFile) {
    const std::string target = StoreDocument("box.vrd", {UnitBox()});
    const Bytes before = Read("box.vrd");
    HostProcess process({"copy", many_, target});
    for (int wait = 0; Names().size() < 3 && wait < 30000; ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_EQ(Names().size(), 3U);  // the temporary file is there
    kill(process.Id(), SIGINT);
    EXPECT_EQ(process.Wait().status, kInterrupted);
    EXPECT_EQ(Read("box.vrd"), before);
    EXPECT_THAT(Names(), ElementsAre("box.vrd", "many.vrd"));
}

TEST_F(Cancel, LeftAloneTheSameDocumentLoads) {
    const HostResult result = RunHost({"copy", many_, Path("copy.vrd")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(Read("copy.vrd"), Read("many.vrd"));
}

// A terminal in place of the error stream.
class Terminal {
public:
    Terminal() { EXPECT_EQ(openpty(&screen_, &line_, nullptr, nullptr, nullptr), 0); }
    ~Terminal() { close(screen_); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    ChildSetUp AsErrorStream() const {
        return [line = line_] { dup2(line, STDERR_FILENO); };
    }
    /// To be called once the child runs, so that the child is the only writer.
    void CloseLine() { close(line_); }
    /// Waits until something is shown, and returns false when nothing more will be.
    bool ReadMore() {
        char piece[4096];
        const ssize_t received = read(screen_, piece, sizeof(piece));
        if (received > 0)
            shown_.append(piece, static_cast<size_t>(received));
        return received > 0;
    }
    const std::string& Shown() const { return shown_; }

private:
    int screen_ = -1;
    int line_ = -1;
    std::string shown_;
};

TEST_F(Cancel, OnATerminalABarComesAndGoes) {
    Terminal terminal;
    HostProcess process({"copy", many_, Path("copy.vrd")}, terminal.AsErrorStream());
    terminal.CloseLine();
    while (terminal.ReadMore()) {
    }
    EXPECT_EQ(process.Wait().status, 0);
    const std::string& shown = terminal.Shown();
    EXPECT_THAT(shown, HasSubstr("loading many.vrd ["));
    EXPECT_THAT(shown, HasSubstr("[####################....................]  50 %"));
    EXPECT_THAT(shown, HasSubstr("storing copy.vrd ["));
    EXPECT_THAT(shown, EndsWith("\r\033[K"));
}

TEST_F(Cancel, CtrlCStopsALoadInTheMiddle) {
    Terminal terminal;
    HostProcess process({"info", many_}, terminal.AsErrorStream());
    terminal.CloseLine();
    ASSERT_TRUE(terminal.ReadMore());
    kill(process.Id(), SIGINT);
    while (terminal.ReadMore()) {
    }
    EXPECT_EQ(process.Wait().status, kInterrupted);
    EXPECT_THAT(terminal.Shown(), HasSubstr("loading many.vrd ["));
    EXPECT_THAT(terminal.Shown(), Not(HasSubstr(" 99 %")));
    EXPECT_THAT(terminal.Shown(), EndsWith("\r\033[Kveridane-host: interrupted\r\n"));
}

}  // namespace
}  // namespace Vr::test
