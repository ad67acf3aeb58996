/// How the exceptions word their messages.
#pragma once

#include <string>

#include "AfxString.h"
#include "AfxTypes.h"

namespace afx::detail {

/// Copies a message into the caller's buffer, cut to fit, and sets `*helpContext`, where given, to
/// 0.
///
/// - Result: FALSE when there is no message or no buffer.
BOOL CopyMessage(const std::basic_string<TCHAR>& message, LPTSTR buffer, UINT bufferSize,
                 PUINT helpContext);

/// Returns "The archive 'name' failed: reason.", without the name where it is empty.
std::basic_string<TCHAR> FailureMessage(LPCTSTR kind, const CString& name, LPCTSTR reason);

}  // namespace afx::detail
