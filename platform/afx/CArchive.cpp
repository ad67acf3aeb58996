// The buffer. While loading, `m_lpBufCur` to `m_lpBufMax` are the bytes read ahead; while storing
// they are the room that is left. So one subtraction tells in both directions how many bytes are in
// reach.
#include <algorithm>

#include "AfxArchive.h"
#include "AfxExceptions.h"
#include "detail/ArchiveTables.h"

namespace {

constexpr int kSmallestBuffer = 128;

}  // namespace

CArchive::CArchive(CFile* file, UINT mode, int bufferSize, void* buffer)
    : m_strFileName(file->GetFilePath()),
      m_nMode(mode),
      m_bUserBuf(buffer != nullptr && bufferSize >= kSmallestBuffer ? TRUE : FALSE),
      m_nBufSize((std::max)(bufferSize, kSmallestBuffer)),
      m_pFile(file),
      m_lpBufStart(m_bUserBuf ? static_cast<BYTE*>(buffer)
                              : new BYTE[static_cast<UINT>(m_nBufSize)]),
      m_pLoadArray(nullptr) {
    m_lpBufMax = m_lpBufStart + m_nBufSize;
    m_lpBufCur = IsLoading() ? m_lpBufMax : m_lpBufStart;
}

CArchive::CArchive(const CArchive&)
    : m_nMode(store),
      m_bUserBuf(TRUE),
      m_nBufSize(0),
      m_pFile(nullptr),
      m_lpBufCur(nullptr),
      m_lpBufMax(nullptr),
      m_lpBufStart(nullptr),
      m_pStoreMap(nullptr) {}

void CArchive::operator=(const CArchive&) {}

CArchive::~CArchive() {
    if (m_pFile != nullptr && (m_nMode & bNoFlushOnDelete) == 0) {
        try {
            Close();
        } catch (CException* exception) {
            exception->Delete();
        } catch (...) {
            // A file double may throw anything; the archive is gone all the same.
        }
    }
    Abort();
}

void CArchive::Flush() {
    ASSERT(m_pFile != nullptr);
    if (IsLoading()) {
        if (m_lpBufCur != m_lpBufMax) {
            m_pFile->Seek(-static_cast<LONGLONG>(BytesInReach()), CFile::current);
        }
        m_lpBufCur = m_lpBufMax;
        fileEnded_ = false;
    } else {
        if (m_lpBufCur != m_lpBufStart) {
            m_pFile->Write(m_lpBufStart, static_cast<UINT>(m_lpBufCur - m_lpBufStart));
        }
        m_lpBufCur = m_lpBufStart;
    }
}

void CArchive::FillBuffer(UINT count) {
    RequireLoading();
    const std::size_t needed = BytesInReach() + count;
    ASSERT(needed <= static_cast<std::size_t>(m_nBufSize));
    if (!fileEnded_) {
        ReadAhead(needed);
    }
    if (BytesInReach() < needed) {
        fileEnded_ = true;
        AfxThrowArchiveException(CArchiveException::endOfFile, nullptr);
    }
}

void CArchive::Close() {
    ASSERT(m_pFile != nullptr);
    Flush();
    m_pFile = nullptr;
}

void CArchive::Abort() {
    m_pFile = nullptr;
    if (!m_bUserBuf) {
        delete[] m_lpBufStart;
    }
    m_lpBufStart = nullptr;
    m_lpBufCur = nullptr;
    m_lpBufMax = nullptr;
    if (IsLoading()) {
        delete m_pLoadArray;
    } else {
        delete m_pStoreMap;
    }
    m_pLoadArray = nullptr;
    delete m_pSchemaMap;
    m_pSchemaMap = nullptr;
}

UINT CArchive::Read(void* target, UINT count) {
    if (count == 0) {
        return 0;
    }
    RequireLoading();
    auto* const bytes = static_cast<BYTE*>(target);
    UINT total = TakeBuffered(bytes, count);
    if (total == count) {
        return total;
    }

    // whole multiples of the buffer go past it
    const UINT left = count - total;
    const UINT direct = left - left % static_cast<UINT>(m_nBufSize);
    UINT transferred = 0;
    while (transferred < direct) {
        const UINT got = m_pFile->Read(bytes + total, direct - transferred);
        if (got == 0) {
            return total;
        }
        transferred += got;
        total += got;
    }

    if (total < count) {
        ReadAhead(count - total);
        total += TakeBuffered(bytes + total, count - total);
    }
    return total;
}

void CArchive::EnsureRead(void* target, UINT count) {
    if (Read(target, count) != count) {
        AfxThrowArchiveException(CArchiveException::endOfFile, m_strFileName);
    }
}

void CArchive::Write(const void* source, UINT count) {
    if (count == 0) {
        return;
    }
    RequireStoring();
    const auto* bytes = static_cast<const BYTE*>(source);
    if (count > BytesInReach()) {
        // top up a buffer in use, so that it leaves full
        if (m_lpBufCur != m_lpBufStart) {
            const auto toppedUp = static_cast<UINT>(BytesInReach());
            std::memcpy(m_lpBufCur, bytes, toppedUp);
            m_lpBufCur += toppedUp;
            bytes += toppedUp;
            count -= toppedUp;
            Flush();
        }
        const UINT direct = count - count % static_cast<UINT>(m_nBufSize);
        if (direct > 0) {
            m_pFile->Write(bytes, direct);
            bytes += direct;
            count -= direct;
        }
    }
    std::memcpy(m_lpBufCur, bytes, count);
    m_lpBufCur += count;
}

void CArchive::MakeRoom() {
    RequireStoring();
    Flush();
}

void CArchive::FetchAtLeast(std::size_t count) {
    RequireLoading();
    FillBuffer(static_cast<UINT>(count - BytesInReach()));
}

// Reads until `wanted` bytes are in reach or the file ends, and always as much as there is room
// for.
void CArchive::ReadAhead(std::size_t wanted) {
    const std::size_t unread = BytesInReach();
    std::memmove(m_lpBufStart, m_lpBufCur, unread);
    m_lpBufCur = m_lpBufStart;
    m_lpBufMax = m_lpBufStart + unread;
    while (BytesInReach() < wanted) {
        const auto room = static_cast<UINT>(m_lpBufStart + m_nBufSize - m_lpBufMax);
        const UINT got = m_pFile->Read(m_lpBufMax, room);
        if (got == 0) {
            return;
        }
        m_lpBufMax += got;
    }
}

UINT CArchive::TakeBuffered(BYTE* target, UINT count) {
    const auto taken =
        static_cast<UINT>((std::min)(BytesInReach(), static_cast<std::size_t>(count)));
    std::memcpy(target, m_lpBufCur, taken);
    m_lpBufCur += taken;
    return taken;
}

void CArchive::RequireStoring() const {
    if (IsLoading()) {
        AfxThrowArchiveException(CArchiveException::readOnly, m_strFileName);
    }
}

void CArchive::RequireLoading() const {
    if (IsStoring()) {
        AfxThrowArchiveException(CArchiveException::writeOnly, m_strFileName);
    }
}
