#include "mesh/VruDuplicateMap.h"

#include <cstddef>

namespace Vr {

namespace {
constexpr size_t kInitialBucketCount = 8;
}

VruDuplicateMap::VruDuplicateMap()
    : copyOfArray_(kInitialBucketCount), duplicateOf_(kInitialBucketCount) {}

VruDuplicateMap::~VruDuplicateMap() = default;

}  // namespace Vr
