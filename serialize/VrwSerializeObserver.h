#pragma once

#include <afx.h>

#include "module/Export.h"

namespace Vr {

/// Is told how a load goes on and may cancel it. The host implements it; the archive does not own it.
///
/// Both operations are called on the loading thread, before each mesh object, by
/// `VrmArchive::CommunicateToObserver`. There is no virtual destructor: nobody deletes an observer
/// through this interface.
class VERIDANE_MESH_API VrwSerializeObserver {
public:
    VrwSerializeObserver() = default;
    VrwSerializeObserver(const VrwSerializeObserver&) = default;
    VrwSerializeObserver(VrwSerializeObserver&&) = default;
    VrwSerializeObserver& operator=(const VrwSerializeObserver&) = default;
    VrwSerializeObserver& operator=(VrwSerializeObserver&&) = default;

    /// Answers true to cancel: the load then ends in a `CUserException*`.
    virtual bool IsCanceled() = 0;

    /// Receives the position and the length of the archive's file, in bytes.
    ///
    /// The position is the file's, which runs up to one archive buffer ahead of the objects.
    virtual void OnProgress(ULONGLONG position, ULONGLONG length) = 0;

protected:
    ~VrwSerializeObserver() = default;
};

}  // namespace Vr
