/// Random documents of which every object is consistent.
#pragma once

#include <vector>

#include "support/MeshBuilders.h"
#include "support/Random.h"

namespace Vr::test {

/// Objects that each address nothing that is not there; some share arrays, some occur twice, some are
/// null. Coordinates may be anything.
std::vector<Mesh> ConsistentDocument(Random& random);

}  // namespace Vr::test
