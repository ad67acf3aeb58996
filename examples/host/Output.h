/// What the commands say.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Host {

/// Prints a text as it is.
///
/// - Throws: `Failure` for "standard output" when it takes no more, as a full disk.
void Print(std::string_view text);

/// Prints a text on the standard error stream, for the user who looks on.
void PrintNote(const std::string& text);

/// Returns when everything printed has left the process.
///
/// - Throws: as `Print`.
void FlushOutput();

/// Returns "1 mesh", "2 meshes" and so on.
std::string Counted(size_t count, std::string_view one, std::string_view many);

}  // namespace Host
