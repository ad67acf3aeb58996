// What every operation, duplicating, storing and loading leave when memory is short: each allocation
// fails in turn, once and from then on. Afterwards nothing has leaked, the mesh can be used and
// released, and the next attempt gives what the first would have given.

#include <gtest/gtest.h>

#if defined(_OPENMP)
#include <omp.h>
#endif

#include <cstddef>
#include <exception>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "FaultDocument.h"
#include "mesh/VruDuplicateMap.h"
#include "serialize/CheckStream.h"
#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshInvariants.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

using Fails = FailAllocation::Fails;

// An attempt in which one allocation fails, alone or with all behind it.
class Trial {
public:
    Trial(std::size_t number, Fails fails) : number_(number), fails_(fails) {}

    template <class Code>
    Caught CaughtFrom(const Code& code) {
        const FailAllocation failure(number_, fails_);
        Caught caught = Vr::test::CaughtFrom(code);
        wasMet_ = failure.HasHappened();
        return caught;
    }
    // Whether the code throws anything; needs no memory to say so.
    template <class Code>
    bool Throws(const Code& code) {
        const FailAllocation failure(number_, fails_);
        bool throws = true;
        try {
            code();
            throws = false;
        } catch (CException* exception) {
            exception->Delete();
        } catch (const std::exception&) {
        }
        wasMet_ = failure.HasHappened();
        return throws;
    }
    // Whether there was such an allocation.
    [[nodiscard]] bool WasMet() const { return wasMet_; }

private:
    std::size_t number_;
    Fails fails_;
    bool wasMet_ = false;
};

// Runs `attempt(trial)` with each allocation failing in turn, once and from then on, until there is none
// left to fail; returns how many there were. No attempt leaves memory behind.
template <class Attempt>
std::size_t FailEachAllocation(const Attempt& attempt) {
    std::size_t count = 0;
    // What the platform and the test framework make only once is there after the first round.
    bool isFirstRound = true;
    for (const Fails fails : {Fails::kOnce, Fails::kOnce, Fails::kFromThenOn}) {
        for (std::size_t number = 1;; ++number) {
            SCOPED_TRACE("allocation " + std::to_string(number));
            const std::size_t before = LiveAllocations();
            Trial trial(number, fails);
            attempt(trial);
            const std::size_t after = LiveAllocations();
            EXPECT_TRUE(after == before || isFirstRound) << after - before << " left behind";
            if (!trial.WasMet() || ::testing::Test::HasFailure())
                break;
            count = number;
        }
        isFirstRound = false;
    }
    return count;
}

// What a failure leaves, by the table "What is promised" of docs/operations.md.
enum class Leaves {
    kAsItWas,     // nothing has changed
    kBegun,       // the next attempt comes to the same end
    kArraysDone,  // each array is as it was or as it becomes
};

// An operation on a mesh, and how many of its allocations there are at the least: an array of its own
// takes two, one for itself and one for its content.
struct Operation {
    const char* name;
    std::function<void(const Mesh&)> run;
    Leaves leaves;
    std::size_t fewestAllocations;
};

void PrintTo(const Operation& operation, std::ostream* stream) {
    *stream << operation.name;
}

// A soup with a repeated corner, normals and texture-UVs in the per-vertex form, colours in the other,
// UVs that are the texture-UVs as well, and an unused vertex: every operation finds something to do.
Mesh Subject() {
    const Mesh mesh =
        NewPrimitive({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}, {1, 1, 0}, {0, 1, 0}, {9, 9, 9}},
                     {{{0, 1, 2}}, {{3, 4, 5}}, {{0, 0, 5}}});
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, 1}, {0, 1, 0}}));
    mesh->SetNormalIndexArray(PerVertex({{{0, 1, 0}}, {{1, 0, 1}}, {{2, 2, 2}}}));
    mesh->SetColorArray(Colors({5, 5, 6}));
    mesh->SetColorIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{3, 4, 5}}, {{6, 7, 8}}}));
    mesh->SetUVArray(UVs({{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}, {0, 0}, {0, 0}, {0, 1}}));
    mesh->SetTextureUVArray(mesh->GetModifiableUVArray());
    mesh->SetCreaseAngle(0.5);
    return mesh;
}

// Large enough to be dealt out to three threads, with vertices that are not used.
Mesh LargeSubject() {
    const Mesh mesh = OpenTube(4200);
    auto& triangles = *mesh->GetModifiableVertexIndexArray();
    triangles.erase(triangles.begin(), triangles.begin() + 80);
    return mesh;
}

const std::vector<Operation>& OperationsOnThreads() {
    static const std::vector<Operation> kOperations = {
        {"CreateNormalPerTriangle", [](const Mesh& mesh) { mesh->CreateNormalPerTriangle(); },
         Leaves::kAsItWas, 4},
        {"CreateNormalPerVertex", [](const Mesh& mesh) { mesh->CreateNormalPerVertex(); },
         Leaves::kAsItWas, 4},
        {"DeleteUnusedVertices", [](const Mesh& mesh) { mesh->DeleteUnusedVertices(); },
         Leaves::kAsItWas, 1},
        {"DeleteUnusedVerticesOfSeveral",
         [](const Mesh& mesh) { VraMeshPrimitive::DeleteUnusedVertices({mesh}); }, Leaves::kAsItWas,
         1},
    };
    return kOperations;
}

const std::vector<Operation>& OperationsOnTheCallersThread() {
    static const std::vector<Operation> kOperations = {
        {"SetDataAsBox",
         [](const Mesh& mesh) {
             mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 2, 3)));
         },
         Leaves::kBegun, 8},
        {"SetDataAsCone",
         [](const Mesh& mesh) {
             mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 2), 1.0, 5);
         },
         Leaves::kBegun, 8},
        {"SetDataAsCylinder",
         [](const Mesh& mesh) {
             mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 2), 1.0, 5);
         },
         Leaves::kBegun, 8},
        {"Measures",
         [](const Mesh& mesh) {
             ON_BoundingBox box;
             mesh->CalcBoundingBox(box);
             mesh->CalcVolume(ON_3dPoint(1, 2, 3));
             mesh->GetTriangleArea(0);
         },
         Leaves::kAsItWas, 0},
        {"GetFreeEdges",
         [](const Mesh& mesh) {
             std::vector<std::pair<std::size_t, std::size_t>> edges;
             mesh->GetFreeEdges(edges);
         },
         Leaves::kAsItWas, 1},
        {"Transform",
         [](const Mesh& mesh) {
             std::set<void*> done;
             mesh->Transform(ON_Xform(2.0), done);
         },
         Leaves::kArraysDone, 2},
        {"Scale", [](const Mesh& mesh) { mesh->Scale(2.0); }, Leaves::kArraysDone, 0},
        {"ReverseFaces", [](const Mesh& mesh) { mesh->ReverseFaces(true); }, Leaves::kArraysDone,
         0},
        {"MergeSameData", [](const Mesh& mesh) { mesh->MergeSameData(); }, Leaves::kBegun, 3},
        {"RemoveDegenerateMesh", [](const Mesh& mesh) { mesh->RemoveDegenerateMesh(); },
         Leaves::kAsItWas, 1},
        {"DeleteFacetFaces",
         [](const Mesh& mesh) {
             mesh->DeleteFacetFaces({0, 2});
         },
         Leaves::kArraysDone, 2},
        {"Merge",
         [](const Mesh& mesh) {
             VraMeshPrimitive::Merge(mesh, {mesh, mesh}, nullptr, nullptr, nullptr);
         },
         Leaves::kAsItWas, 12},
        {"Duplicate", [](const Mesh& mesh) { mesh->Duplicate(); }, Leaves::kAsItWas, 1 + 8 * 2},
        {"ShallowCopy", [](const Mesh& mesh) { mesh->ShallowCopy(NewPrimitive()); },
         Leaves::kAsItWas, 1},
        {"DeepCopy",
         [](const Mesh& mesh) {
             VruDuplicateMap map;
             mesh->DeepCopy(NewPrimitive(), map);
         },
         Leaves::kAsItWas, 1 + 8 * 2},
    };
    return kOperations;
}

// Whether a failure has left what it may.
::testing::AssertionResult IsAsPromised(const VraMeshPrimitive& mesh,
                                        const VraMeshPrimitive& before,
                                        const VraMeshPrimitive& after, Leaves leaves) {
    if (leaves == Leaves::kAsItWas)
        return AreBitEqual(mesh, before);
    if (leaves == Leaves::kArraysDone) {
        for (std::size_t role = 0; role < kRoleCount; ++role)
            if (!AreBitEqual(mesh, before, static_cast<Role>(role)) &&
                !AreBitEqual(mesh, after, static_cast<Role>(role)))
                return ::testing::AssertionFailure()
                       << NameOf(static_cast<Role>(role)) << " is neither as it was nor done";
    }
    return ::testing::AssertionSuccess();
}

// Fails each allocation of the operation in turn.
void FailOperation(const Operation& operation, Mesh (*subject)()) {
    const Mesh before = subject();
    const Mesh after = subject();
    operation.run(after);
    const std::size_t count = FailEachAllocation([&](Trial& trial) {
        const Mesh mesh = subject();
        const Caught caught = trial.CaughtFrom([&] { operation.run(mesh); });
        ASSERT_EQ(caught, trial.WasMet() ? BadAlloc() : Nothing());
        bool isDone = !trial.WasMet();
        if (!isDone) {
            ASSERT_TRUE(IsAsPromised(*mesh, *before, *after, operation.leaves));
            if (operation.leaves == Leaves::kBegun || AreBitEqual(*mesh, *before)) {
                operation.run(mesh);
                isDone = true;
            }
        }
        if (isDone)
            ASSERT_TRUE(AreBitEqual(*mesh, *after));
        else  // anything may be asked of what is left, short of counting on its numbers
            ASSERT_NE(mesh->Duplicate(), nullptr);
    });
    EXPECT_GE(count, operation.fewestAllocations);
}

class OperationFaults : public ::testing::TestWithParam<Operation> {};

std::string NameOfOperation(const ::testing::TestParamInfo<Operation>& instance) {
    return instance.param.name;
}

INSTANTIATE_TEST_SUITE_P(OnTheCallersThread, OperationFaults,
                         ::testing::ValuesIn(OperationsOnTheCallersThread()), NameOfOperation);
INSTANTIATE_TEST_SUITE_P(OnThreads, OperationFaults, ::testing::ValuesIn(OperationsOnThreads()),
                         NameOfOperation);

TEST_P(OperationFaults, LeaveWhatIsPromisedAndTheNextAttemptSucceeds) {
    FailOperation(GetParam(), &Subject);
}

class LargeOperationFaults : public ::testing::TestWithParam<Operation> {
protected:
    void SetUp() override { UseThreads(3); }
    void TearDown() override { UseThreads(1); }

private:
    static void UseThreads([[maybe_unused]] int threadCount) {
#if defined(_OPENMP)
        omp_set_num_threads(threadCount);
#endif
    }
};

INSTANTIATE_TEST_SUITE_P(OnThreads, LargeOperationFaults,
                         ::testing::ValuesIn(OperationsOnThreads()), NameOfOperation);

TEST_P(LargeOperationFaults, LeaveWhatIsPromisedAndTheNextAttemptSucceeds) {
    FailOperation(GetParam(), &LargeSubject);
}

TEST(DocumentFaults, DuplicatingFailsWithoutATraceAndSucceedsLater) {
    const std::vector<Mesh> document = FaultDocument();
    const auto duplicate = [&] {
        VruDuplicateMap map;
        std::vector<Mesh> duplicates;
        duplicates.reserve(document.size());
        for (const Mesh& mesh : document)
            duplicates.push_back(mesh ? mesh->Duplicate(map) : nullptr);
        return duplicates;
    };
    const std::size_t count = FailEachAllocation([&](Trial& trial) {
        std::vector<Mesh> duplicates;
        const Caught caught = trial.CaughtFrom([&] { duplicates = duplicate(); });
        ASSERT_EQ(caught, trial.WasMet() ? BadAlloc() : Nothing());
        ASSERT_EQ(duplicates.empty(), trial.WasMet());
        duplicates = duplicate();
        // UVs are never copied.
        duplicates[0]->SetUVArray(document[0]->GetModifiableUVArray());
        ExpectSameDocument(duplicates, document);
    });
    EXPECT_GE(count, 3u + 2 * 11) << "three objects, eleven arrays and their contents";
    ExpectSameDocument(document, FaultDocument());
}

TEST(DocumentFaults, StoringFailsWithoutATraceAndSucceedsLater) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    const std::size_t count = FailEachAllocation([&](Trial& trial) {
        MemoryFile file;
        const bool hasFailed = trial.Throws([&] { StoreInto(file, document); });
        ASSERT_EQ(hasFailed, trial.WasMet());
        MemoryFile again;
        StoreInto(again, document);
        ASSERT_EQ(again.Bytes(), good.Bytes());
    });
    EXPECT_GE(count, 3u + 12) << "the numbers of three objects and twelve arrays";
    ExpectSameDocument(document, FaultDocument());
}

TEST(DocumentFaults, LoadingFailsWithoutATraceAndSucceedsLater) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    const std::size_t count = FailEachAllocation([&](Trial& trial) {
        const CreatedMeshes created;
        MemoryFile file(good.Bytes());
        std::vector<Mesh> loaded;
        const bool hasFailed = trial.Throws([&] { loaded = LoadFrom(file, document.size()); });
        ASSERT_EQ(hasFailed, trial.WasMet());
        ASSERT_EQ(loaded.empty(), trial.WasMet());
        MemoryFile again(good.Bytes());
        ExpectSameDocument(LoadFrom(again, document.size()), document);
    });
    EXPECT_GE(count, 3u + 2 * 12) << "three objects, twelve arrays and their contents";
}

TEST(DocumentFaults, CheckingEndsInBadAllocAndFindsTheSameLater) {
    MemoryFile good;
    StoreInto(good, FaultDocument());
    const std::size_t count = FailEachAllocation([&](Trial& trial) {
        MemoryFile file(good.Bytes());
        bool isSafe = false;
        const Caught caught = trial.CaughtFrom([&] { isSafe = Vr::CheckDocument(file).IsSafe(); });
        ASSERT_EQ(caught, trial.WasMet() ? BadAlloc() : Nothing());
        ASSERT_EQ(isSafe, !trial.WasMet());
        file.Seek(0, CFile::begin);
        ASSERT_TRUE(Vr::CheckDocument(file).IsSafe());
        ASSERT_EQ(file.GetPosition(), 0u);
    });
    EXPECT_GE(count, 4u) << "the check, its piece of the file, its objects and its arrays";
}

}  // namespace
