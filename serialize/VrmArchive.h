#pragma once

#include <afx.h>

#include <cstdint>
#include <map>
#include <memory>

#include "module/Export.h"

namespace Vr {

class VraMeshPrimitive;
class VrwSerializeObserver;

namespace detail {
class SharedArrayAccess;
}

/// The archive through which mesh objects are stored and loaded.
///
/// A `CArchive` that knows three things more: the schema of the stored objects, which may be asked
/// for more than once; the arrays stored or loaded so far, so that an array shared by several
/// handles is stored once and comes back shared; and an observer that follows and may cancel a load.
///
/// Store objects with `WriteObject` or `operator<<`, load them with `operator>>` of
/// serialize/MeshSerializers.h. Call `Close()` when storing is done, and `Abort()` where an exception
/// ended it: the destructor cannot report a failing write.
///
/// - Sharing: arrays are told apart by address and numbered 1, 2, 3... over all objects of one
///   archive. A loaded array is kept alive by the archive until that is destroyed.
/// - Requires: every stored object and array lives, at its place, until the archive is closed. A new
///   array at the address of a freed one would be stored as a reference to the old content.
/// - Requires: one thread at a time.
class VERIDANE_MESH_API VrmArchive : public CArchive {
public:
    /// Takes the arguments of `CArchive`: `mode` is `CArchive::load` or `CArchive::store`.
    VrmArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);

    /// Copies schema, tables and observer.
    ///
    /// - Deliberate: the copy is no archive. It has no file, and can be neither read nor written; it
    ///   only holds the tables and settings.
    VrmArchive(const VrmArchive& source);

    /// Takes over schema, tables and observer; file, buffer and mode of this archive stay.
    ///
    /// - Throws: `std::bad_alloc`; the tables are then valid, the written one copied before the read
    ///   one.
    VrmArchive& operator=(const VrmArchive& source);

    /// Lets go of the arrays read, then closes as `CArchive` does.
    virtual ~VrmArchive();

    /// Sets the observer, which the archive does not own; null removes it.
    void SetObserver(VrwSerializeObserver* observer);

    /// Returns the schema of the objects on this archive, asked of the stream once.
    ///
    /// - Result: 0xFFFFFFFF while no object has been loaded. The bit `VERSIONABLE_SCHEMA` is not
    ///   removed.
    /// - Deliberate: the first known value is returned for ever after, whatever later objects carry.
    UINT GetVrmObjectSchema();

    /// Asks the observer whether to go on and reports the progress; only while loading.
    ///
    /// - Throws: `CUserException*` when the observer cancels; what the file throws when asked for its
    ///   length or position.
    void CommunicateToObserver();

private:
    friend class detail::SharedArrayAccess;

    UINT schema_ = 0xFFFFFFFF;
    std::map<const void*, uint64_t> numberOfWrittenArray_;
    std::map<uint64_t, std::shared_ptr<void>> readArrayOfNumber_;
    VrwSerializeObserver* observer_ = nullptr;
};

}  // namespace Vr
