/// Signals: Ctrl-C as a wish that the work asks for at places where it can stop.
#pragma once

namespace Host {

/// Prepares the process: Ctrl-C is only noted, and a second one ends the process at once. A file
/// that reaches a size limit becomes a failing write instead of the end of the process.
void HandleSignals();

/// Returns whether Ctrl-C was pressed.
bool IsInterrupted() noexcept;

/// Throws `Interrupted` when Ctrl-C was pressed.
void ThrowIfInterrupted();

}  // namespace Host
