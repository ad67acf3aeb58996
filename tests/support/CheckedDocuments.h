/// Loading rows of objects beside what a check says of them.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "serialize/CheckStream.h"
#include "support/Caught.h"
#include "support/EveryOperation.h"
#include "support/StoreLoad.h"

namespace Vr::test {

/// Loads so many objects and gives each that is not null once.
inline std::vector<Mesh> LoadedOnce(const Bytes& bytes, std::size_t readCount) {
    std::vector<Mesh> objects;
    std::set<const VraMeshPrimitive*> met;
    for (const Mesh& mesh : LoadedObjects(bytes, readCount))
        if (mesh && met.insert(mesh.get()).second)
            objects.push_back(mesh);
    return objects;
}

/// Returns whether what the report says of loading is what happens.
///
/// A safe document is loaded, to its last byte, and every operation runs on its objects. One that is
/// only suspicious is loaded; of one that is invalid an object fails to load, unless it claims more
/// elements than there are, which may take any memory. Unsafe ones are left alone.
inline ::testing::AssertionResult LoadsAsReported(const Bytes& bytes, const CheckReport& report) {
    const CreatedMeshes created;
    if (report.worst == CheckSeverity::Unsafe)
        return ::testing::AssertionSuccess();
    if (report.worst == CheckSeverity::Invalid) {
        for (const CheckFinding& finding : report.findings)
            if (finding.code == CheckCode::ElementCount)
                return ::testing::AssertionSuccess();
        const Caught caught = CaughtFrom(
            [&] { LoadedObjects(bytes, static_cast<std::size_t>(report.readCount) + 1); });
        return caught != Nothing() ? ::testing::AssertionSuccess()
                                   : ::testing::AssertionFailure() << "an invalid document loads";
    }
    const auto readCount = static_cast<std::size_t>(report.readCount);
    const Caught caught = CaughtFrom([&] {
        LoadedFrom loaded(bytes);
        std::vector<Mesh> objects;
        while (objects.size() < readCount)
            objects.push_back(loaded.Next());
        loaded.archive.Close();
        if (loaded.file.GetPosition() != bytes.size())
            throw std::runtime_error("bytes are left behind the last object");
    });
    if (caught != Nothing())
        return ::testing::AssertionFailure() << "loading ends in " << caught;
    if (report.IsSafe())
        RunEveryOperation([&] { return LoadedOnce(bytes, readCount); });
    return ::testing::AssertionSuccess();
}

}  // namespace Vr::test
