// Most calls come for small objects: they cost one division, and something is written only when the
// percentage has changed.

#include "Progress.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Interrupt.h"

namespace Host {

namespace {

constexpr int kBarWidth = 40;
constexpr std::chrono::seconds kLineInterval{1};
// Back to the start of the line, and away with what stood there.
constexpr const char* kEraseLine = "\r\033[K";

// A load does not fail because nobody can see how it goes.
void Show(const std::string& text) {
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
}

}  // namespace

Progress::Progress(std::string title)
    : title_(std::move(title)),
      isTerminal_(isatty(STDERR_FILENO) != 0),
      nextLine_(Clock::now() + kLineInterval) {}

Progress::~Progress() {
    if (isBarShown_)
        Show(kEraseLine);
}

bool Progress::IsCanceled() {
    return IsInterrupted();
}

void Progress::OnProgress(ULONGLONG position, ULONGLONG length) {
    const ULONGLONG reached = (std::min)(position, length);
    const auto share =
        length > 0 ? static_cast<double>(reached) / static_cast<double>(length) : 1.0;
    const int percent = static_cast<int>(share * 100.0);
    if (percent == shownPercent_)
        return;
    if (isTerminal_) {
        DrawBar(percent);
        isBarShown_ = true;
        shownPercent_ = percent;
        return;
    }
    const auto now = Clock::now();
    if (now < nextLine_)
        return;
    Show(fmt::format("{}: {} %\n", title_, percent));
    shownPercent_ = percent;
    nextLine_ = now + kLineInterval;
}

void Progress::DrawBar(int percent) const {
    const int filled = percent * kBarWidth / 100;
    Show(fmt::format("{}{} [{:#<{}}{:.<{}}] {:3} %", kEraseLine, title_, "", filled, "",
                     kBarWidth - filled, percent));
}

}  // namespace Host
