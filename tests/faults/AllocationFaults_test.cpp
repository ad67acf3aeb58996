// What every operation, duplicating, storing and loading leave when memory is short: each allocation
// fails in turn, once and from then on. Afterwards nothing has leaked, the mesh can be used and
// released, and the next attempt gives what the first would have given.

#include <gtest/gtest.h>

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
#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshInvariants.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

using Fails = FailAllocation::Fails;

// An operation on a mesh, and whether the mesh is as it was after a failure: by the table "What is
// promised" of docs/operations.md.
struct Operation {
    const char* name;
    std::function<void(const Mesh&)> run;
    bool keepsAll;
};

void PrintTo(const Operation& operation, std::ostream* stream) {
    *stream << operation.name;
}

// A soup with a repeated corner, normals and colours in the per-vertex form, texture-UVs and an
// unused vertex: every operation finds something to do.
Mesh Subject() {
    const Mesh mesh =
        NewPrimitive({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}, {1, 1, 0}, {0, 1, 0}, {9, 9, 9}},
                     {{{0, 1, 2}}, {{3, 4, 5}}, {{0, 0, 5}}});
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, 1}, {0, 1, 0}}));
    mesh->SetNormalIndexArray(PerVertex({{{0, 1, 0}}, {{1, 0, 1}}, {{2, 2, 2}}}));
    mesh->SetColorArray(Colors({5, 5, 6}));
    mesh->SetColorIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetCreaseAngle(0.5);
    return mesh;
}

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> kOperations = {
        {"SetDataAsBox",
         [](const Mesh& mesh) {
             mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 2, 3)));
         },
         false},
        {"SetDataAsCone",
         [](const Mesh& mesh) {
             mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 2), 1.0, 5);
         },
         false},
        {"SetDataAsCylinder",
         [](const Mesh& mesh) {
             mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 2), 1.0, 5);
         },
         false},
        {"Measures",
         [](const Mesh& mesh) {
             ON_BoundingBox box;
             mesh->CalcBoundingBox(box);
             mesh->CalcVolume(ON_3dPoint(1, 2, 3));
             mesh->GetTriangleArea(0);
         },
         true},
        {"CreateNormalPerTriangle", [](const Mesh& mesh) { mesh->CreateNormalPerTriangle(); },
         true},
        {"CreateNormalPerVertex", [](const Mesh& mesh) { mesh->CreateNormalPerVertex(); }, true},
        {"GetFreeEdges",
         [](const Mesh& mesh) {
             std::vector<std::pair<std::size_t, std::size_t>> edges;
             mesh->GetFreeEdges(edges);
         },
         true},
        {"Transform",
         [](const Mesh& mesh) {
             std::set<void*> done;
             mesh->Transform(ON_Xform(2.0), done);
         },
         false},
        {"Scale", [](const Mesh& mesh) { mesh->Scale(2.0); }, false},
        {"ReverseFaces", [](const Mesh& mesh) { mesh->ReverseFaces(true); }, false},
        {"MergeSameData", [](const Mesh& mesh) { mesh->MergeSameData(); }, false},
        {"RemoveDegenerateMesh", [](const Mesh& mesh) { mesh->RemoveDegenerateMesh(); }, true},
        {"DeleteFacetFaces",
         [](const Mesh& mesh) {
             mesh->DeleteFacetFaces({0, 2});
         },
         false},
        {"DeleteUnusedVertices", [](const Mesh& mesh) { mesh->DeleteUnusedVertices(); }, true},
        {"DeleteUnusedVerticesOfSeveral",
         [](const Mesh& mesh) { VraMeshPrimitive::DeleteUnusedVertices({mesh}); }, true},
        {"Merge",
         [](const Mesh& mesh) {
             VraMeshPrimitive::Merge(mesh, {mesh, mesh}, nullptr, nullptr, nullptr);
         },
         true},
        {"Duplicate", [](const Mesh& mesh) { mesh->Duplicate(); }, true},
        {"ShallowCopy", [](const Mesh& mesh) { mesh->ShallowCopy(NewPrimitive()); }, true},
        {"DeepCopy",
         [](const Mesh& mesh) {
             VruDuplicateMap map;
             mesh->DeepCopy(NewPrimitive(), map);
         },
         true},
    };
    return kOperations;
}

class OperationFaults : public ::testing::TestWithParam<Operation> {};

INSTANTIATE_TEST_SUITE_P(EachAllocation, OperationFaults, ::testing::ValuesIn(Operations()),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(OperationFaults, LeaveNothingBehindAndTheNextAttemptSucceeds) {
    const Operation& operation = GetParam();
    const Mesh expected = Subject();
    operation.run(expected);
    for (const Fails fails : {Fails::kOnce, Fails::kFromThenOn}) {
        bool hasHappened = true;
        for (std::size_t number = 1; hasHappened; ++number) {
            const std::size_t before = LiveAllocations();
            Caught caught;
            bool isAsItWas = false;
            bool isWhole = false;
            bool isEqual = false;
            {
                const Mesh mesh = Subject();
                {
                    const FailAllocation failure(number, fails);
                    caught = CaughtFrom([&] { operation.run(mesh); });
                    hasHappened = failure.HasHappened();
                }
                isAsItWas = AreBitEqual(*mesh, *Subject());
                isWhole = !operation.keepsAll || !hasHappened || isAsItWas;
                if (isAsItWas) {
                    operation.run(mesh);
                    isEqual = AreBitEqual(*mesh, *expected);
                } else {
                    // Anything may be asked of what is left, short of counting on its numbers.
                    isEqual = !hasHappened || (mesh->Duplicate() != nullptr);
                }
            }
            const std::size_t after = LiveAllocations();
            SCOPED_TRACE("allocation " + std::to_string(number));
            ASSERT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
            ASSERT_TRUE(isWhole) << "something has changed";
            ASSERT_TRUE(isEqual) << "the next attempt gives something else";
            ASSERT_EQ(after, before);
        }
    }
}

// Whether it throws anything; needs no memory to say so.
template <class Code>
bool Throws(const Code& code) {
    try {
        code();
        return false;
    } catch (CException* exception) {
        exception->Delete();
    } catch (const std::exception&) {
    }
    return true;
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
    // What the test framework keeps for messages is there after this.
    ExpectSameDocument(document, FaultDocument());
    for (const Fails fails : {Fails::kOnce, Fails::kFromThenOn}) {
        bool hasHappened = true;
        for (std::size_t number = 1; hasHappened; ++number) {
            const std::size_t before = LiveAllocations();
            Caught caught;
            {
                std::vector<Mesh> duplicates;
                {
                    const FailAllocation failure(number, fails);
                    caught = CaughtFrom([&] { duplicates = duplicate(); });
                    hasHappened = failure.HasHappened();
                }
                ASSERT_EQ(duplicates.empty(), hasHappened);
                duplicates = duplicate();
                // UVs are never copied.
                duplicates[0]->SetUVArray(document[0]->GetModifiableUVArray());
                ExpectSameDocument(duplicates, document);
            }
            const std::size_t after = LiveAllocations();
            SCOPED_TRACE("allocation " + std::to_string(number));
            ASSERT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
            ASSERT_EQ(after, before);
        }
    }
    ExpectSameDocument(document, FaultDocument());
}

TEST(DocumentFaults, StoringFailsWithoutATraceAndSucceedsLater) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    for (const Fails fails : {Fails::kOnce, Fails::kFromThenOn}) {
        bool hasHappened = true;
        for (std::size_t number = 1; hasHappened; ++number) {
            const std::size_t before = LiveAllocations();
            bool hasFailed = false;
            bool isEqual = false;
            {
                MemoryFile file;
                {
                    const FailAllocation failure(number, fails);
                    hasFailed = Throws([&] { StoreInto(file, document); });
                    hasHappened = failure.HasHappened();
                }
                MemoryFile again;
                StoreInto(again, document);
                isEqual = again.Bytes() == good.Bytes();
            }
            const std::size_t after = LiveAllocations();
            SCOPED_TRACE("allocation " + std::to_string(number));
            ASSERT_EQ(hasFailed, hasHappened);
            ASSERT_TRUE(isEqual);
            ASSERT_EQ(after, before);
        }
    }
    ExpectSameDocument(document, FaultDocument());
}

TEST(DocumentFaults, LoadingFailsWithoutATraceAndSucceedsLater) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    // What the platform makes once, such as its exception for this case, is there after the first.
    bool isFirstRound = true;
    for (const Fails fails : {Fails::kOnce, Fails::kOnce, Fails::kFromThenOn}) {
        bool hasHappened = true;
        for (std::size_t number = 1; hasHappened; ++number) {
            const std::size_t before = LiveAllocations();
            bool hasFailed = false;
            {
                const CreatedMeshes created;
                MemoryFile file(good.Bytes());
                std::vector<Mesh> loaded;
                {
                    const FailAllocation failure(number, fails);
                    hasFailed = Throws([&] { loaded = LoadFrom(file, document.size()); });
                    hasHappened = failure.HasHappened();
                }
                ASSERT_EQ(loaded.empty(), hasHappened);
                MemoryFile again(good.Bytes());
                ExpectSameDocument(LoadFrom(again, document.size()), document);
            }
            const std::size_t after = LiveAllocations();
            SCOPED_TRACE("allocation " + std::to_string(number));
            ASSERT_EQ(hasFailed, hasHappened);
            if (!isFirstRound) {
                ASSERT_EQ(after, before);
            }
        }
        isFirstRound = false;
    }
}

}  // namespace
