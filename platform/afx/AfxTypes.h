/// The Windows names that MFC's interface is written in.
///
/// On Windows they come from the system. Elsewhere they have the widths they have on Windows, so
/// `LONG` and `DWORD` are 32 bits although the native `long` may have 64, and text is UTF-8 in
/// `char`.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>

#if defined(_WIN32)

// The macros min and max would break every std::min behind this header.
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// After windows.h, whose definitions it uses.
#include <tchar.h>
#define AFXAPI __stdcall

#else

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using INT = int;
using UINT = unsigned int;
using PUINT = UINT*;
using BOOL = int;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;

using TCHAR = char;
using LPCSTR = const char*;
using LPCWSTR = const wchar_t*;
using LPTSTR = TCHAR*;
using LPCTSTR = const TCHAR*;
using LPVOID = void*;

using HANDLE = void*;
using HINSTANCE = struct AfxInstanceHandle*;
using HMODULE = HINSTANCE;

#define PASCAL
#define WINAPI
#define AFXAPI

#if !defined(TRUE)
#define TRUE 1
#endif
#if !defined(FALSE)
#define FALSE 0
#endif
#if !defined(_T)
#define _T(text) text
#endif

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

#define MB_OK 0x00000000
#define IDOK 1

#endif

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "Archives are little-endian; the layer copies values as they lie in memory"
#endif

#if !defined(ASSERT)
#define ASSERT(condition) assert(condition)
#endif
#if !defined(VERIFY)
#if defined(NDEBUG)
#define VERIFY(condition) static_cast<void>(condition)
#else
#define VERIFY(condition) ASSERT(condition)
#endif
#endif
#if !defined(ASSERT_VALID)
#if defined(NDEBUG)
#define ASSERT_VALID(object) static_cast<void>(0)
#else
#define ASSERT_VALID(object) (ASSERT((object) != nullptr), (object)->AssertValid())
#endif
#endif
#if !defined(TRACE)
#define TRACE(...) static_cast<void>(0)
#endif
