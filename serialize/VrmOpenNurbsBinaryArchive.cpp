// The seven file operations that openNURBS asks of an archive, on the CArchive's file.

#include "serialize/VrmOpenNurbsBinaryArchive.h"

#include "mesh/detail/Throw.h"

namespace Vr {

namespace {

// Takes the archive's buffer out of the way before its file is asked for anything.
CFile* FlushedFile(CArchive& archive) {
    archive.Flush();
    return archive.GetFile();
}

// openNURBS wants a false where the file throws.
bool Seek(CFile& file, LONGLONG offset, UINT from) {
    try {
        file.Seek(offset, from);
        return true;
    } catch (CFileException* exception) {
        exception->Delete();
        return false;
    }
}

}  // namespace

VrmOpenNurbsBinaryArchive::VrmOpenNurbsBinaryArchive(CArchive& archive)
    : detail::OpenNurbsArchive(archive.IsLoading() ? ON::archive_mode::read
                                                   : ON::archive_mode::write),
      archive_(&archive),
      file_(FlushedFile(archive)),
      startPosition_(file_->GetPosition()) {}

VrmOpenNurbsBinaryArchive::~VrmOpenNurbsBinaryArchive() = default;

size_t VrmOpenNurbsBinaryArchive::CurrentPosition() const {
    const uint64_t position = file_->GetPosition();
    if (position < startPosition_)
        detail::ThrowInvalidArchivePosition();
    // Deliberate: 32 bits, widened with their sign.
    const auto distance = static_cast<int32_t>(static_cast<uint32_t>(position - startPosition_));
    return static_cast<size_t>(static_cast<ptrdiff_t>(distance));
}

bool VrmOpenNurbsBinaryArchive::SeekFromCurrentPosition(int offset) {
    return Seek(*file_, offset, CFile::current);
}

bool VrmOpenNurbsBinaryArchive::SeekFromStart(size_t offset) {
    return Seek(*file_, static_cast<LONGLONG>(startPosition_ + offset), CFile::begin);
}

bool VrmOpenNurbsBinaryArchive::AtEnd() const {
    return ReadMode() && file_->GetLength() == file_->GetPosition();
}

size_t VrmOpenNurbsBinaryArchive::Read(size_t count, void* target) {
    return file_->Read(target, static_cast<UINT>(count));
}

size_t VrmOpenNurbsBinaryArchive::Write(size_t count, const void* source) {
    file_->Write(source, static_cast<UINT>(count));
    return count;
}

bool VrmOpenNurbsBinaryArchive::Flush() {
    return true;
}

}  // namespace Vr
