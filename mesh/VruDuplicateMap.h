#pragma once

#include <boost/core/noncopyable.hpp>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "module/Export.h"

namespace Vr {

class VraMeshPrimitive;

/// Records what one duplication pass has copied, so that sharing among the originals comes back as
/// sharing among the duplicates.
///
/// Create one, pass it to any number of `Duplicate` and `DeepCopy` calls, and destroy it when the
/// pass is over. Originals and their arrays are told apart by address: they must live, unmoved, as
/// long as the map is in use.
///
/// - Sharing: keeps every array copy of the pass alive as long as it lives; does not own the
///   duplicated primitives.
/// - Requires: one thread at a time.
class VERIDANE_MESH_API VruDuplicateMap : private boost::noncopyable {
public:
    VruDuplicateMap();
    virtual ~VruDuplicateMap();

private:
    friend class VraMeshPrimitive;

    std::unordered_map<const void*, std::shared_ptr<void>> copyOfArray_;
    std::unordered_map<const VraMeshPrimitive*, VraMeshPrimitive*> duplicateOf_;
    // Part of the object's layout; nothing reads them.
    [[maybe_unused]] uint64_t reserved_[2] = {0, 0};
};

}  // namespace Vr
