/// The export macros of the MFC-compatible layer. A leaf: it includes nothing.
#pragma once

#if defined(_WIN32)
#if defined(VERIDANE_AFX_BUILD)
#define VERIDANE_AFX __declspec(dllexport)
#else
#define VERIDANE_AFX __declspec(dllimport)
#endif
#else
#define VERIDANE_AFX __attribute__((visibility("default")))
#endif

// The layer is always the DLL build of MFC.
#if !defined(_AFXDLL)
#define _AFXDLL
#endif

// A module that is an extension DLL itself (_AFXEXT) exports what it marks, everybody else imports
// it. Where several extension modules use each other each has a macro of its own instead.
#if !defined(AFX_EXT_CLASS)
#if !defined(_WIN32)
#define AFX_EXT_CLASS __attribute__((visibility("default")))
#elif defined(_AFXEXT)
#define AFX_EXT_CLASS __declspec(dllexport)
#else
#define AFX_EXT_CLASS __declspec(dllimport)
#endif
#define AFX_EXT_API AFX_EXT_CLASS
#define AFX_EXT_DATA AFX_EXT_CLASS
#endif

// What the DECLARE macros put before the class record and before the reading operator. Static data
// follows the export of its class here, so both are empty until a module defines them.
#if !defined(AFX_DATA)
#define AFX_DATA
#endif
#if !defined(AFX_API)
#define AFX_API
#endif
