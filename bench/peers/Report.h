/// Writes what was measured: a table for people and a file for scripts.
#pragma once

#include <string>
#include <vector>

#include "peers/Runner.h"

namespace Vr::bench::peers {

/// Returns one operation on one mesh as a Markdown table, nanoseconds a triangle of the input.
[[nodiscard]] std::string TableOf(const Operation& operation, const std::vector<Row>& rows);

/// Writes machine, versions and all rows as JSON; `label` says what was measured, a revision say.
///
/// - Throws: `std::runtime_error` when the file cannot be written.
void WriteJson(const std::string& path, const std::string& label, const Contest& contest,
               const Settings& settings, const std::vector<Row>& rows);

}  // namespace Vr::bench::peers
