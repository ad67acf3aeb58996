/// What the modules of these tests export, beside their entry point, under C names.
#pragma once

#include <afxwin.h>

#include <string>

/// Lets the module note each call of its entry point: "A" for attach, "D" for detach.
using NoteCallsFunction = void (*)(std::string* notes);
/// Gives the notes of a module that nobody told where to note.
using OwnNotesFunction = const char* (*)();
/// Gives the record of a class of the module.
using ClassFunction = CRuntimeClass* (*)();
/// Throws an exception of the kind asked for.
using ThrowFunction = void (*)(int kind);
using EntryPointFunction = int (*)(HINSTANCE instance, DWORD reason, LPVOID reserved);

enum ThrowKind { kThrowArchiveException, kThrowUserException, kThrowOwnException };

#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))
