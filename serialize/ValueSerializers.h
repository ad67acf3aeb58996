#pragma once

#include <afx.h>

#include <opennurbs.h>

#include <memory>
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

/// @name Curves and surfaces on any archive
/// Store or load one object, whichever the archive does, and return the archive.
///
/// The stream holds openNURBS's record of the object, which names its class; an empty handle has a
/// record too. openNURBS 201307115 and the embedded kernel store the NURBS form of whatever has one,
/// so that a line comes back as a NURBS curve.
///
/// - Sharing: storing writes the object once for each handle. Loading gives the handle a new object,
///   or none, and lets go of the one it held.
/// - Deliberate: openNURBS's result is not looked at. A record that it finds faulty leaves an empty
///   handle, or the object as far as it was read. Where the archive goes on is openNURBS's too: at
///   the end that the record gives for itself, where it got that far.
/// - Deliberate: the class of the object is not checked. A surface where a curve is expected ends up
///   in a handle to a curve; whoever cannot trust the stream asks the object for its `ClassId`.
/// - Throws: what the file throws; the handle is then unchanged.
/// @{
VERIDANE_MESH_API CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Curve>& curve);
VERIDANE_MESH_API CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Surface>& surface);
/// @}

/// Stores or loads a material, whichever the archive does, and returns the archive.
///
/// The stream holds the material's own fields without a record around them, in openNURBS's oldest
/// form: reflectivity, flags and most of the textures are lost, shine and transparency come back
/// limited to their ranges and rounded to float.
///
/// - Sharing: loading sets the fields of the material that the handle holds, which every other
///   holder sees.
/// - Deliberate: a material cut short is not reported; openNURBS sets all fields to their defaults
///   first and leaves those that did not come so.
/// - Requires: the handle holds a material, also when loading.
/// - Throws: what the file throws.
VERIDANE_MESH_API CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Material>& material);

}  // namespace Vr
