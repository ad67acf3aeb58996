#pragma once

#include <memory>

#include "serialize/VrmOpenNurbsBinaryArchive.h"

namespace Vr::detail {

/// A bridge for many small values in a row, which meets the file in pieces instead of once a value.
///
/// The bytes in the file, their order and the file's position after the last value are those of one
/// bridge a value; only the number of file operations differs.
///
/// - Requires: values only; openNURBS asks for no position and no seek while it writes or reads one.
class ElementBridge : public VrmOpenNurbsBinaryArchive {
public:
    /// Bridges to an archive from which exactly `byteCount` bytes will be asked, or to which as many
    /// as come will be written.
    explicit ElementBridge(CArchive& archive, size_t byteCount = 0);

    /// Hands over what is still held back. Call it after the last value is written.
    ///
    /// - Throws: what the file throws.
    void HandOver();

protected:
    /// Reads from the piece at hand. A piece that the file cannot deliver is read again value by
    /// value, so that what came before the fault still arrives.
    ///
    /// - Throws: what the file throws; the `CFileException*` of a piece also when the fault does not
    ///   show again value by value.
    size_t Read(size_t count, void* target) override;
    size_t Write(size_t count, const void* source) override;

private:
    struct DeleteException {
        void operator()(CException* exception) const { exception->Delete(); }
    };

    void FetchPiece();
    size_t ReadPastPieces(size_t count, void* target);

    CFile& file_;
    std::unique_ptr<BYTE[]> piece_;
    size_t pieceBegin_ = 0;
    size_t pieceEnd_ = 0;
    size_t bytesToFetch_;
    size_t bytesToRetry_ = 0;
    std::unique_ptr<CFileException, DeleteException> fault_;
    bool fileEnded_ = false;
};

}  // namespace Vr::detail
