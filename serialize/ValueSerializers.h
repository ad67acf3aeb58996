#pragma once

#include <afx.h>

#include <opennurbs.h>

#include <string>

#include "module/Export.h"

namespace Vr {

/// @name Single values on any archive
/// Store and load one value and return the archive.
///
/// A wide string is its length in UTF-16 units as a 64-bit number, then the units, 16 bits each, with
/// no terminator. Where `wchar_t` has 32 bits, characters are converted from and to UTF-16; an
/// unpaired surrogate passes through as it is, and a character beyond U+10FFFF is stored as U+FFFD.
///
/// A geometry value is openNURBS's own encoding of it, read and written on the archive's file
/// directly; the archive may hold buffered values before and after it.
///
/// - Requires: the operators are visible, by a using-declaration outside this namespace; an
///   `ON_Color` would otherwise be stored as a plain number.
/// - Throws: `CArchiveException*` with cause `readOnly` when storing on a loading archive and
///   `writeOnly` when loading from a storing one. A string cut short ends in cause `endOfFile`, with
///   the length it should have; characters that did not come are those it held before, and zeros
///   behind them. A length no string can have throws `std::length_error` "string too long", one
///   beyond memory `std::bad_alloc`, and both change nothing.
/// - Deliberate: a geometry value cut short is not reported; the value stays as openNURBS left it.
/// @{
VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const std::wstring& text);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, std::wstring& text);

VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const ON_2dPoint& point);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, ON_2dPoint& point);

VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const ON_Color& color);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, ON_Color& color);

VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const ON_Plane& plane);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, ON_Plane& plane);

VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const ON_Arc& arc);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, ON_Arc& arc);

VERIDANE_MESH_API CArchive& operator<<(CArchive& archive, const ON_Xform& xf);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, ON_Xform& xf);
/// @}

}  // namespace Vr
