/// What the machine allows: the floor under an operation, measured beside it.
#pragma once

#include <string>

#include "peers/Contest.h"

namespace Vr::bench::peers {

/// How many bytes an operation cannot but read and write.
struct Traffic {
    size_t readBytes;
    size_t writtenBytes;
};

using TrafficOf = std::function<Traffic(const Input&)>;

/// memcpy between warm blocks that moves as many bytes as `trafficOf` says, reads and writes together.
[[nodiscard]] Contestant CopyLimit(const std::string& operation, TrafficOf trafficOf);

/// The same, and sorting the distinct points by scattering them into ever smaller slices.
[[nodiscard]] Contestant CopyAndSortLimit(const std::string& operation, TrafficOf trafficOf);

/// A standard sort of all points of the input.
[[nodiscard]] Contestant SortLimit(const std::string& operation);

/// Reads the index triples once, in order.
[[nodiscard]] Contestant StreamLimit(const std::string& operation);

/// Reads the index triples and the three points of each and adds the points up.
[[nodiscard]] Contestant GatherLimit(const std::string& operation);

}  // namespace Vr::bench::peers
