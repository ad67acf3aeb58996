/// The file a document is loaded from.
#pragma once

#include <afx.h>

#include <filesystem>

namespace Host {

/// A file opened for reading that does not end early in silence.
///
/// - Deliberate: reading at the end of the file throws `CFileException*` with cause `endOfFile`,
///   where a `CFile` answers 0. openNURBS values that a stream lacks are loaded as whatever the
///   memory held, and a damaged document must not pass those off for its colours and UVs.
class LoadFile final : public CFile {
public:
    /// - Throws: `CFileException*` when the file cannot be opened.
    explicit LoadFile(const std::filesystem::path& path)
        : CFile(path.c_str(), modeRead | shareDenyWrite) {}

    UINT Read(void* target, UINT count) override {
        const UINT received = CFile::Read(target, count);
        if (received == 0 && count > 0)
            AfxThrowFileException(CFileException::endOfFile, -1, m_strFileName);
        return received;
    }
};

}  // namespace Host
