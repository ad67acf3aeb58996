/// The subcommands, by family. Each function adds its subcommands to the command line; they run while
/// it is parsed, say what they did on the standard output and fail with an exception.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>

#include "Document.h"

namespace Host {

/// `import` and `export` (ModelCommands.cpp).
void AddModelCommands(CLI::App& app);
/// `info`, `edges` and `copy` (DocumentCommands.cpp).
void AddDocumentCommands(CLI::App& app);

/// Stores a document and says so: the end of every command that makes one.
void StoreAndReport(const Document& document, const std::filesystem::path& path);

}  // namespace Host
