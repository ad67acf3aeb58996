/// Runs the contestants of an operation in turn and keeps every time.
#pragma once

#include <string>
#include <vector>

#include "peers/Contest.h"

namespace Vr::bench::peers {

struct Settings {
    int repetitions = 5;        ///< Turns of each contestant.
    double turnSeconds = 0.05;  ///< A turn goes on until this has passed.
    double slowSeconds = 0.5;   ///< A run longer than this, and than ten of ours, is slow.
};

/// What one contestant took for one operation on one mesh.
struct Row {
    std::string operation;
    std::string mesh;
    size_t triangleCount = 0;
    int threadCount = 1;
    const Contestant* contestant = nullptr;
    std::vector<double> seconds;  ///< Ascending.
    double peakBytes = 0.0;       ///< Most memory at a time beyond what there was before the run.
    std::string difference;       ///< How the result differs from ours; empty when it does not.
};

/// Runs all contestants of `operation` on `mesh`, interleaved, with `threadCount` threads.
///
/// Each contestant first runs once untimed: heap and caches get warm, its memory is counted and its
/// result compared with ours. Then they take turns, in an order that shifts with every repetition, so
/// that a disturbance of the machine meets all of them alike. Of who is slow the first run counts too,
/// and a quarter of the turns.
[[nodiscard]] std::vector<Row> RunOperation(const Contest& contest, const Operation& operation,
                                            const PlainMesh& mesh, int threadCount,
                                            const Settings& settings);

}  // namespace Vr::bench::peers
