/// Archives that hold meshes, one field a line with its meaning.
///
/// A mesh body is the crease angle and seven envelopes: vertices, normals, colours, vertex indices,
/// normal indices, colour indices, texture coordinates. An absent array is a zero byte. A present one
/// is a one, its array number, and at its first mention its content. Array numbers are a sequence of
/// their own, beside the numbers of classes and objects.
#pragma once

#include <string>

#include "support/ByteScript.h"

namespace Vr::golden {

using test::ByteScript;

/// Seven absent arrays.
inline ByteScript NoArrays() {
    return ByteScript()
        .OneByte(0, "vertices: absent")
        .OneByte(0, "normals: absent")
        .OneByte(0, "colours: absent")
        .OneByte(0, "vertex indices: absent")
        .OneByte(0, "normal indices: absent")
        .OneByte(0, "colour indices: absent")
        .OneByte(0, "texture coordinates: absent");
}

/// Two default primitives p and q, a null, and p again.
inline ByteScript DefaultPrimitives() {
    return ByteScript()
        .NewClass(16, "VraMeshPrimitive", "class number 1")
        .Double(0.0, "crease angle of p, object number 2")
        .Append(NoArrays())
        .Word(0x8001, "class number 1")
        .Double(0.0, "crease angle of q, object number 3")
        .Append(NoArrays())
        .Word(0x0000, "null")
        .Word(0x0002, "object number 2, p");
}

/// A mesh with crease angle 0.5, a default primitive, and the mesh again: two classes, although one
/// derives from the other.
inline ByteScript MeshAndPrimitive() {
    return ByteScript()
        .NewClass(16, "VraMesh", "class number 1")
        .Double(0.5, "crease angle of the mesh, object number 2")
        .Append(NoArrays())
        .NewClass(16, "VraMeshPrimitive", "class number 3")
        .Double(0.0, "crease angle of the primitive, object number 4")
        .Append(NoArrays())
        .Word(0x0002, "object number 2, the mesh");
}

/// A primitive with the vertex (1, 2, 3), one triangle (0, 0, 0), and one per-triangle index array
/// [4, 7] for normals and colours alike; then a mesh with crease angle 0.25 that shares the vertices.
inline ByteScript SharedArrays() {
    return ByteScript()
        .NewClass(16, "VraMeshPrimitive", "class number 1")
        .Double(0.0, "crease angle of the primitive, object number 2")
        .OneByte(1, "vertices: present")
        .Qword(1, "array number 1, new")
        .Qword(1, "vertex count")
        .Double(1.0, "x of vertex 0")
        .Double(2.0, "y of vertex 0")
        .Double(3.0, "z of vertex 0")
        .OneByte(0, "normals: absent")
        .OneByte(0, "colours: absent")
        .OneByte(1, "vertex indices: present")
        .Qword(2, "array number 2, new")
        .Qword(1, "triangle count")
        .Qword(0, "corner 0 of triangle 0")
        .Qword(0, "corner 1 of triangle 0")
        .Qword(0, "corner 2 of triangle 0")
        .OneByte(1, "normal indices: present")
        .Qword(3, "array number 3, new")
        .OneByte(1, "one index per triangle")
        .Qword(2, "index count")
        .Qword(4, "index of triangle 0")
        .Qword(7, "index of triangle 1")
        .OneByte(1, "colour indices: present")
        .Qword(3, "array number 3, content already stored")
        .OneByte(0, "texture coordinates: absent")
        .NewClass(16, "VraMesh", "class number 3")
        .Double(0.25, "crease angle of the mesh, object number 4")
        .OneByte(1, "vertices: present")
        .Qword(1, "array number 1, content already stored")
        .OneByte(0, "normals: absent")
        .OneByte(0, "colours: absent")
        .OneByte(0, "vertex indices: absent")
        .OneByte(0, "normal indices: absent")
        .OneByte(0, "colour indices: absent")
        .OneByte(0, "texture coordinates: absent");
}

/// A mesh with crease angle 0.5 as schema 10 stored it, without the texture-coordinate envelope, and
/// a null, which would be taken for that envelope by a reader that expects one.
inline ByteScript MeshOfSchema10() {
    return ByteScript()
        .NewClass(10, "VraMesh", "class number 1")
        .Double(0.5, "crease angle of the mesh, object number 2")
        .OneByte(0, "vertices: absent")
        .OneByte(0, "normals: absent")
        .OneByte(0, "colours: absent")
        .OneByte(0, "vertex indices: absent")
        .OneByte(0, "normal indices: absent")
        .OneByte(0, "colour indices: absent")
        .Word(0x0000, "null");
}

}  // namespace Vr::golden
