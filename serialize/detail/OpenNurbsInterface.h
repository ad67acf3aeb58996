#pragma once

#include <opennurbs.h>

#include <cstddef>

namespace Vr::detail {

#if defined(ON_UNSET_POSITIVE_VALUE)

/// The archive that openNURBS 6 and later ask for their input and output, under the names that version
/// 4 has for the same seven operations.
///
/// The one place that knows which interface is compiled against; the newer headers are told by a
/// constant that the older ones lack. Against version 4 this is `ON_BinaryArchive` itself.
///
/// openNURBS counts the position itself here and asks `CurrentPosition` now and then only; of the
/// seeks from the start it makes one, to offset 0.
class OpenNurbsArchive : public ON_BinaryArchive {
public:
    using ON_BinaryArchive::ON_BinaryArchive;

    virtual size_t CurrentPosition() const = 0;
    virtual bool SeekFromCurrentPosition(int offset) = 0;
    virtual bool SeekFromStart(size_t offset) = 0;

protected:
    virtual size_t Read(size_t count, void* target) = 0;
    virtual size_t Write(size_t count, const void* source) = 0;

private:
    ON__UINT64 Internal_CurrentPositionOverride() const final { return CurrentPosition(); }
    bool Internal_SeekFromCurrentPositionOverride(int offset) final {
        return SeekFromCurrentPosition(offset);
    }
    bool Internal_SeekToStartOverride() final { return SeekFromStart(0); }
    size_t Internal_ReadOverride(size_t count, void* target) final { return Read(count, target); }
    size_t Internal_WriteOverride(size_t count, const void* source) final {
        return Write(count, source);
    }
};

#else

using OpenNurbsArchive = ON_BinaryArchive;

#endif

}  // namespace Vr::detail
