// Pieces between openNURBS's values and the archive's file. While loading, never more is fetched than
// the values will take, so that the file ends up where it would without the pieces.

#include "serialize/detail/ElementBridge.h"

#include <algorithm>
#include <cstring>

namespace Vr::detail {

namespace {
constexpr size_t kPieceBytes = size_t{64} << 10;
}

ElementBridge::ElementBridge(CArchive& archive, size_t byteCount)
    : VrmOpenNurbsBinaryArchive(archive),
      file_(*archive.GetFile()),
      piece_(new BYTE[kPieceBytes]),
      bytesToFetch_(byteCount) {}

void ElementBridge::HandOver() {
    const size_t held = pieceEnd_;
    pieceEnd_ = 0;
    if (held > 0)
        file_.Write(piece_.get(), static_cast<UINT>(held));
}

void ElementBridge::FetchPiece() {
    const size_t wanted = (std::min)(bytesToFetch_, kPieceBytes);
    pieceBegin_ = 0;
    pieceEnd_ = 0;
    const ULONGLONG start = file_.GetPosition();
    try {
        pieceEnd_ = file_.Read(piece_.get(), static_cast<UINT>(wanted));
        bytesToFetch_ = pieceEnd_ < wanted ? 0 : bytesToFetch_ - pieceEnd_;
    } catch (CFileException* exception) {
        fault_.reset(exception);
        bytesToRetry_ = wanted;
        bytesToFetch_ = 0;
        file_.Seek(static_cast<LONGLONG>(start), CFile::begin);
    }
}

size_t ElementBridge::Read(size_t count, void* target) {
    auto* bytes = static_cast<BYTE*>(target);
    size_t read = 0;
    while (read < count) {
        if (pieceBegin_ == pieceEnd_ && bytesToFetch_ > 0)
            FetchPiece();
        if (pieceBegin_ == pieceEnd_)
            return read + ReadPastPieces(count - read, bytes + read);
        const size_t taken = (std::min)(count - read, pieceEnd_ - pieceBegin_);
        std::memcpy(bytes + read, piece_.get() + pieceBegin_, taken);
        pieceBegin_ += taken;
        read += taken;
    }
    return read;
}

// After a short or faulty piece the file is asked value by value, until it has nothing more.
size_t ElementBridge::ReadPastPieces(size_t count, void* target) {
    if (fileEnded_)
        return 0;
    const size_t read = file_.Read(target, static_cast<UINT>(count));
    fileEnded_ = read == 0;
    bytesToRetry_ -= (std::min)(read, bytesToRetry_);
    // The fault did not show again; the file reported it all the same.
    if (fault_ && (fileEnded_ || bytesToRetry_ == 0))
        throw fault_.release();
    return read;
}

size_t ElementBridge::Write(size_t count, const void* source) {
    const auto* bytes = static_cast<const BYTE*>(source);
    for (size_t written = 0; written < count;) {
        if (pieceEnd_ == kPieceBytes)
            HandOver();
        const size_t taken = (std::min)(count - written, kPieceBytes - pieceEnd_);
        std::memcpy(piece_.get() + pieceEnd_, bytes + written, taken);
        pieceEnd_ += taken;
        written += taken;
    }
    return count;
}

}  // namespace Vr::detail
