/// What the tests of veridane-host share: a folder of their own, documents made without the host, and
/// a few small models.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostProcess.h"
#include "mesh/VraMesh.h"
#include "support/ByteScript.h"

namespace Vr::test {

using Mesh = boost::intrusive_ptr<VraMeshPrimitive>;
using Bytes = std::vector<std::uint8_t>;

/// A test with an empty folder, which goes with it.
class HostTest : public ::testing::Test {
protected:
    HostTest();
    ~HostTest() override;

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }
    /// Writes a file and returns its path.
    std::string Write(const std::string& name, std::string_view text) const;
    std::string Write(const std::string& name, const Bytes& bytes) const;
    Bytes Read(const std::string& name) const;
    /// Returns the names of all files, hidden ones too, in ascending order.
    std::vector<std::string> Names() const;

    /// Stores objects as a document, by the documented layout and without the host.
    std::string StoreDocument(const std::string& name, const std::vector<Mesh>& objects) const;
    /// Loads the objects of a document without the host.
    std::vector<Mesh> LoadDocument(const std::string& name) const;

private:
    std::filesystem::path folder_;
};

/// Expects success, and nothing on the error stream; returns what was printed.
std::string ExpectSuccess(const HostResult& result);
/// Expects status 1 and one line on the error stream that names the file and gives the reason.
void ExpectFailure(const HostResult& result, const std::string& file, const std::string& reason);

/// The header of a document that holds this many objects.
ByteScript DocumentHeader(std::uint64_t objectCount);
/// An object without arrays, as the first one of its class in the document.
ByteScript FirstEmptyMesh();
/// An object without arrays, as a later one.
ByteScript LaterEmptyMesh();
ByteScript DocumentEnd();

/// The unit cube from (0,0,0) to (1,1,1), 8 vertices and 6 quadrangles that face outwards.
std::string_view CubePly();
/// The same cube with a colour and a texture coordinate for each vertex.
std::string_view PaintedCubePly();
/// The unit box as the library makes it: normals in the per-triangle form.
Mesh UnitBox();

}  // namespace Vr::test
