#pragma once

#include <afx.h>

namespace Vr::detail {

/// Throws `CArchiveException*` with cause `readOnly` and the archive's file name while loading.
inline void RequireStoring(CArchive& archive) {
    if (!archive.IsStoring())
        AfxThrowArchiveException(CArchiveException::readOnly, archive.m_strFileName);
}

/// Throws `CArchiveException*` with cause `writeOnly` and the archive's file name while storing.
inline void RequireLoading(CArchive& archive) {
    if (!archive.IsLoading())
        AfxThrowArchiveException(CArchiveException::writeOnly, archive.m_strFileName);
}

}  // namespace Vr::detail
