// Results are worth an error when they get lost: a script that reads half a list must hear of it.

#include "Output.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdio>

#include "Failure.h"

namespace Host {

void Print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw Failure("standard output", SystemErrorText(errno));
}

void PrintNote(const std::string& text) {
    std::fputs(text.c_str(), stderr);
}

void FlushOutput() {
    if (std::fflush(stdout) != 0)
        throw Failure("standard output", SystemErrorText(errno));
}

std::string Counted(size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

}  // namespace Host
