/// What the tests of the editing commands share.
#pragma once

#include "host/HostTest.h"

namespace Vr::test {

/// A test that runs an editing command on a document made here.
class EditTest : public HostTest {
protected:
    /// Runs a command on a document of these objects and returns the objects of the new one.
    ///
    /// - Shape: `command` is the subcommand and its options.
    std::vector<Mesh> Edited(const std::vector<Mesh>& objects,
                             const std::vector<std::string>& command);
    /// Expects the command to fail for the document and to leave nothing behind.
    void ExpectRefused(const std::vector<Mesh>& objects, const std::vector<std::string>& command,
                       const std::string& reason) const;

    /// What the last command printed.
    std::string printed_;

private:
    std::vector<std::string> Arguments(const std::vector<Mesh>& objects,
                                       const std::vector<std::string>& command) const;
};

/// A mesh without normals.
Mesh MeshOf(const VraMesh::VertexArray& vertices, const VraMesh::VertexIndexArray& triangles);
/// The unit square in the xy plane, of triangles (0, 1, 2) and (0, 2, 3).
Mesh Square();
/// The same square as three triangles of three vertices each; the one in the middle has two of its
/// corners at (1, 1, 0) and the third at (2, 2, 0).
Mesh SquareSoup();
/// The texture coordinates (0, 0), (1, 0), (2, 0)...
std::shared_ptr<VraMesh::UVArray> CountedUVs(int count);

std::vector<ON_3dPoint> Points(const Mesh& mesh);
std::vector<VraMeshPrimitive::TriangleIndex> Triangles(const Mesh& mesh);

}  // namespace Vr::test
