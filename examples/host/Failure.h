/// How the host's operations fail: with one line of text that names the file.
#pragma once

#include <afx.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace Host {

/// An operation on a file failed; `what()` is "<file>: <reason>", one line.
class Failure : public std::runtime_error {
public:
    Failure(const std::filesystem::path& file, const std::string& reason)
        : std::runtime_error(file.string() + ": " + reason) {}
};

/// The user pressed Ctrl-C, and what was going on has been given up.
class Interrupted : public std::exception {
public:
    const char* what() const noexcept override { return "interrupted"; }
};

/// Throws the exception being handled again, as what the host's callers expect.
///
/// - Result: a `Failure` and an `Interrupted` pass as they are. A `CUserException*`, by which an
///   archive says that its observer cancelled, becomes an `Interrupted`. Any other `CException*`
///   and `std::exception` becomes a `Failure` for `file`. What came by pointer is released.
/// - Requires: called from a handler.
[[noreturn]] void RethrowAsFailure(const std::filesystem::path& file);

/// Says what a call of the operating system complained about.
std::string SystemErrorText(int errorNumber);

}  // namespace Host
