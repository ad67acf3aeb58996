/// openNURBS's records of curves, surfaces and materials, one field a line with its meaning.
///
/// The CRCs are those that zlib's `crc32` gives for the bytes between the chunk's header and the CRC.
#pragma once

#include <string_view>

#include "support/ByteScript.h"

namespace Vr::golden {

using test::ByteScript;

inline constexpr char kNurbsCurveId[] = "ddd4d74e 47e9 d311 bfe5 0010830122f0";
inline constexpr char kNurbsCurveIdCrc[] = "10f27870";
inline constexpr char kNurbsSurfaceId[] = "ded4d74e 47e9 d311 bfe5 0010830122f0";
inline constexpr char kNurbsSurfaceIdCrc[] = "e246b059";

/// The beginning of a record up to its class data; `bodySize` counts what follows the length.
inline ByteScript RecordOf(std::string_view classId, std::string_view classIdCrc,
                           std::uint32_t bodySize, std::uint32_t dataSize) {
    return ByteScript()
        .Dword(0x00027FFA, "object record")
        .Dword(bodySize, "length of the record")
        .Dword(0x0002FFFB, "class id")
        .Dword(20, "length of the class id")
        .Hex(classId, "UUID of the class")
        .Hex(classIdCrc, "CRC of the class id")
        .Dword(0x0002FFFC, "class data")
        .Dword(dataSize, "length of the class data");
}

inline ByteScript EndOfRecord() {
    return ByteScript().Dword(0x80027FFF, "end of the record").Dword(0, "its value");
}

inline ByteScript NoBox() {
    return ByteScript()
        .Double(1.0, "no box: min x")
        .Double(0.0, "no box: min y")
        .Double(0.0, "no box: min z")
        .Double(-1.0, "no box: max x")
        .Double(0.0, "no box: max y")
        .Double(0.0, "no box: max z");
}

/// The straight curve from (0, 0, 0) to (1, 2, 3) over [0, 1]: 201 bytes.
inline ByteScript StraightCurve() {
    return RecordOf(kNurbsCurveId, kNurbsCurveIdCrc, 193, 149)
        .OneByte(0x10, "version 1.0")
        .Dword(3, "dimension")
        .Dword(0, "no weights")
        .Dword(2, "order")
        .Dword(2, "control points")
        .Dword(0, "reserved")
        .Dword(0, "reserved")
        .Append(NoBox())
        .Dword(2, "number of knots")
        .Double(0.0, "knot 0")
        .Double(1.0, "knot 1")
        .Dword(2, "number of control points")
        .Double(0.0, "point 0, x")
        .Double(0.0, "point 0, y")
        .Double(0.0, "point 0, z")
        .Double(1.0, "point 1, x")
        .Double(2.0, "point 1, y")
        .Double(3.0, "point 1, z")
        .Hex("653808c0", "CRC of the class data")
        .Append(EndOfRecord());
}

/// A bilinear surface over [0, 2] x [0, 3]; control point (i, j) is (2i, 3j, 1 + i + 2j), and its
/// weight is 1 but for the last, which has 2: 309 bytes.
inline ByteScript WeightedSurface() {
    return RecordOf(kNurbsSurfaceId, kNurbsSurfaceIdCrc, 301, 257)
        .OneByte(0x10, "version 1.0")
        .Dword(3, "dimension")
        .Dword(1, "weights")
        .Dword(2, "order in u")
        .Dword(2, "order in v")
        .Dword(2, "control points in u")
        .Dword(2, "control points in v")
        .Dword(0, "reserved")
        .Dword(0, "reserved")
        .Append(NoBox())
        .Dword(2, "number of knots in u")
        .Double(0.0, "u knot 0")
        .Double(2.0, "u knot 1")
        .Dword(2, "number of knots in v")
        .Double(0.0, "v knot 0")
        .Double(3.0, "v knot 1")
        .Dword(4, "number of control points")
        .Double(0.0, "point (0, 0), x")
        .Double(0.0, "point (0, 0), y")
        .Double(1.0, "point (0, 0), z")
        .Double(1.0, "point (0, 0), weight")
        .Double(0.0, "point (0, 1), x")
        .Double(3.0, "point (0, 1), y")
        .Double(3.0, "point (0, 1), z")
        .Double(1.0, "point (0, 1), weight")
        .Double(2.0, "point (1, 0), x")
        .Double(0.0, "point (1, 0), y")
        .Double(2.0, "point (1, 0), z")
        .Double(1.0, "point (1, 0), weight")
        .Double(4.0, "point (1, 1), x times weight")
        .Double(6.0, "point (1, 1), y times weight")
        .Double(8.0, "point (1, 1), z times weight")
        .Double(2.0, "point (1, 1), weight")
        .Hex("0ae165d0", "CRC of the class data")
        .Append(EndOfRecord());
}

/// A line from (0, 0, 0) to (3, 4, 0), as a record of its own class, with a domain that begins at 0;
/// the CRC depends on its end: 125 bytes.
inline ByteScript LineRecord(double domainEnd, std::string_view crc) {
    return RecordOf("dbd4d74e 47e9 d311 bfe5 0010830122f0", "f49be923", 117, 73)
        .OneByte(0x10, "version 1.0")
        .Double(0.0, "from x")
        .Double(0.0, "from y")
        .Double(0.0, "from z")
        .Double(3.0, "to x")
        .Double(4.0, "to y")
        .Double(0.0, "to z")
        .Double(0.0, "domain begin")
        .Double(domainEnd, "domain end")
        .Dword(3, "dimension")
        .Hex(crc, "CRC of the class data")
        .Append(EndOfRecord());
}

/// The record of an empty handle: 36 bytes.
inline ByteScript NoObject() {
    return ByteScript()
        .Dword(0x00027FFA, "object record")
        .Dword(28, "length of the record")
        .Dword(0x0002FFFB, "class id")
        .Dword(20, "length of the class id")
        .Hex("00000000 0000 0000 0000 000000000000", "no class")
        .Hex("554bbbec", "CRC of the class id");
}

/// A material with every field that this form keeps set, but for textures and plug-in: 173 bytes.
inline ByteScript OakMaterial(std::uint32_t index = 7) {
    return ByteScript()
        .OneByte(0x11, "version 1.1")
        .Hex("01020304", "ambient")
        .Hex("05060708", "diffuse")
        .Hex("090a0b0c", "emission")
        .Hex("0d0e0f10", "specular")
        .Double(64.0, "shine")
        .Double(0.25, "transparency")
        .Hex("01010002", "constants")
        .Dword(0, "constant colour")
        .Word(0, "constant")
        .Word(0, "constant")
        .Double(0.0, "constant")
        .Double(1.0, "constant")
        .Dword(0, "bitmap texture: no file name")
        .Dword(0, "bitmap texture: mode")
        .Dword(0, "bitmap texture: constant")
        .Dword(0, "bump texture: no file name")
        .Dword(0, "bump texture: mode")
        .Dword(0, "bump texture: constant")
        .Double(1.0, "bump texture: scale")
        .Dword(0, "environment texture: no file name")
        .Dword(0, "environment texture: mode")
        .Dword(0, "environment texture: constant")
        .Dword(index, "index")
        .Hex("00000000 0000 0000 0000 000000000000", "no plug-in")
        .Dword(0, "no library")
        .Dword(4, "units of the name, with the terminator")
        .Hex("4f00 6100 6b00 0000", "Oak")
        .Hex("04030201 0605 0807 090a 0b0c0d0e0f10", "UUID")
        .Hex("11121314", "reflection")
        .Hex("15161718", "transparent")
        .Double(1.5, "index of refraction");
}

/// A material with textures, a library and a plug-in: 219 bytes, 8 less where the library is empty.
inline ByteScript TexturedMaterial(std::uint32_t index = 3, bool hasLibrary = true) {
    const ByteScript library =
        hasLibrary ? ByteScript().Dword(4, "units of the library").Hex("6c00 6900 6200 0000", "lib")
                   : ByteScript().Dword(0, "no library");
    return ByteScript()
        .OneByte(0x11, "version 1.1")
        .Hex("01020300", "ambient")
        .Hex("04050600", "diffuse")
        .Hex("07080900", "emission")
        .Hex("0a0b0c00", "specular")
        .Double(128.0, "shine")
        .Double(0.5, "transparency")
        .Hex("01010002", "constants")
        .Dword(0, "constant colour")
        .Word(0, "constant")
        .Word(0, "constant")
        .Double(0.0, "constant")
        .Double(1.0, "constant")
        .Dword(6, "bitmap texture: units of its file name")
        .Hex("6100 2e00 7000 6e00 6700 0000", "a.png")
        .Dword(2, "bitmap texture: decal")
        .Dword(0, "bitmap texture: constant")
        .Dword(6, "bump texture: units of its file name")
        .Hex("6200 2e00 7000 6e00 6700 0000", "b.png")
        .Dword(1, "bump texture: no decal")
        .Dword(0, "bump texture: constant")
        .Double(2.5, "bump texture: scale")
        .Dword(6, "environment texture: units of its file name")
        .Hex("6500 2e00 7000 6e00 6700 0000", "e.png")
        .Dword(1, "environment texture: no decal")
        .Dword(0, "environment texture: constant")
        .Dword(index, "index")
        .Hex("a4a3a2a1 b2b1 c2c1 0102 030405060708", "UUID of the plug-in")
        .Append(library)
        .Dword(5, "units of the name")
        .Hex("5700 6f00 6f00 6400 0000", "Wood")
        .Hex("14131211 1615 1817 191a 1b1c1d1e1f20", "UUID")
        .Hex("0d0e0f00", "reflection")
        .Hex("10111200", "transparent")
        .Double(1.25, "index of refraction");
}

}  // namespace Vr::golden
