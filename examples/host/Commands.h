/// The subcommands, by family. Each function adds its subcommands to the command line; they run while
/// it is parsed, say what they did on the standard output and fail with an exception.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "Document.h"

namespace Host {

/// `import` and `export` (ModelCommands.cpp).
void AddModelCommands(CLI::App& app);
/// `make` (ShapeCommands.cpp).
void AddShapeCommands(CLI::App& app);
/// What `make` makes of openNURBS's objects (GeometryCommands.cpp).
void AddGeometryCommands(CLI::App& make);
/// `check`, `info`, `edges`, `copy` and `join` (DocumentCommands.cpp).
void AddDocumentCommands(CLI::App& app);
/// `clean`, `normals`, `transform`, `reverse`, `delete-faces` and `merge` (EditCommands.cpp).
void AddEditCommands(CLI::App& app);

/// Adds the argument `name`, a document to load, and the option to trust it.
void AddInput(CLI::App& command, DocumentSource& source, const std::string& name = "document");
/// Adds the option to load documents without checking them.
void AddTrust(CLI::App& command, bool& isTrusted);
/// Adds the option that names the document to store.
void AddOutput(CLI::App& command, std::string& path);

/// @name Points and directions
/// @{
using Coordinates = std::vector<double>;
/// Adds an option of three coordinates, which must be given.
void AddPoint(CLI::App& command, const std::string& name, Coordinates& point,
              const std::string& description);
ON_3dPoint ToPoint(const Coordinates& coordinates);
/// @}

/// @name Checks of what an option was given
/// @{
CLI::Validator IsFinite();
/// Finite and above 0.
CLI::Validator IsPositive();
/// Decimal digits that fit into `size_t`, without leading zeros, which would make them octal.
CLI::Validator IsWholeNumber();
/// @}

/// Stores a document and says so, behind `done`: the end of every command that makes one.
///
/// - Shape: `done` tells, in whole lines, what was done to the document.
void StoreAndReport(const Document& document, const std::filesystem::path& path,
                    const std::string& done = std::string());

}  // namespace Host
