#pragma once

#include <afx.h>

#include <cstddef>
#include <cstdint>

#include "serialize/detail/OpenNurbsInterface.h"

namespace Vr {

/// Lets openNURBS read and write one value in the middle of an archive.
///
/// Made on the stack for each value, it works on the archive's file directly: the archive is flushed
/// first, so that its buffer is empty and the file stands where the value belongs, and goes on from
/// wherever the value ended. Not exported; the operators of serialize/ValueSerializers.h use it.
///
/// - Requires: nothing else uses the archive while the bridge lives.
/// - Complexity: a flush and one file operation for each piece that openNURBS reads or writes.
class VrmOpenNurbsBinaryArchive : public detail::OpenNurbsArchive {
public:
    /// Opens in read mode over a loading archive and in write mode over a storing one.
    ///
    /// - Throws: what `CArchive::Flush` and `CFile::GetPosition` throw.
    explicit VrmOpenNurbsBinaryArchive(CArchive& archive);
    ~VrmOpenNurbsBinaryArchive() override;

    /// Returns how far the file stands behind the place where the bridge was made.
    ///
    /// - Deliberate: computed in 32 bits and widened with its sign.
    /// - Throws: `std::runtime_error` "invalid archive position" when the file stands before it.
    size_t CurrentPosition() const override;
    /// Moves the file; false when that throws a `CFileException*`.
    bool SeekFromCurrentPosition(int offset) override;
    /// Moves the file to `offset` bytes behind the place where the bridge was made; false as above.
    bool SeekFromStart(size_t offset) override;
    /// Returns, in read mode only, whether the file stands at its end.
    bool AtEnd() const override;

protected:
    /// Returns the bytes actually read.
    size_t Read(size_t count, void* target) override;
    /// Returns `count`; a failing write throws.
    size_t Write(size_t count, const void* source) override;
    /// Does nothing: the archive's file is flushed by its owner.
    bool Flush() override;

private:
    // Part of the object's layout; the file does all the work.
    [[maybe_unused]] CArchive* archive_;
    CFile* file_;
    uint64_t startPosition_;
};

}  // namespace Vr
