// Laws of storing and loading on random meshes that share arrays among roles and objects.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "serialize/VrwSerializeObserver.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::VrmArchive;

// The roles in the order of the stream.
constexpr Role kStoredRoles[] = {kVertices,      kNormals,      kColors, kVertexIndices,
                                 kNormalIndices, kColorIndices, kUVs};

// Objects of one document: some share arrays, some occur twice, some are null.
std::vector<Mesh> RandomDocument(Random& random, const RandomMeshOptions& options = {}) {
    std::vector<Mesh> objects;
    const std::size_t count = 1 + random.Below(5);
    while (objects.size() < count) {
        if (random.Chance(10)) {
            objects.push_back(nullptr);
            continue;
        }
        if (!objects.empty() && random.Chance(15)) {
            objects.push_back(random.OneOf(objects));
            continue;
        }
        RandomMeshOptions own = options;
        own.isVraMesh = random.Chance(50);
        const Mesh mesh = RandomMesh(random, own);
        const Mesh other = objects.empty() ? nullptr : random.OneOf(objects);
        if (other && random.Chance(40))
            mesh->SetVertexArray(other->GetModifiableVertexArray());
        if (other && random.Chance(25))
            mesh->SetColorIndexArray(other->GetModifiableNormalIndexArray());
        if (other && random.Chance(25))
            mesh->SetUVArray(other->GetModifiableTextureUVArray());
        if (other && random.Chance(25))
            mesh->SetColorArray(other->GetModifiableColorArray());
        objects.push_back(mesh);
    }
    return objects;
}

// Numbers objects and stored arrays by first appearance, so that two documents that share alike have
// the same list. 0 stands for what is missing.
std::vector<std::size_t> SharingPattern(const std::vector<Mesh>& objects) {
    std::map<const void*, std::size_t> numberOf{{nullptr, 0}};
    const auto number = [&](const void* address) {
        return numberOf.emplace(address, numberOf.size()).first->second;
    };
    std::vector<std::size_t> pattern;
    for (const Mesh& object : objects) {
        pattern.push_back(number(object.get()));
        if (!object)
            continue;
        const ArrayAddresses addresses = AddressesOf(*object);
        for (const Role role : kStoredRoles)
            pattern.push_back(number(addresses[role]));
    }
    return pattern;
}

void DropTextures(const std::vector<Mesh>& objects) {
    for (const Mesh& object : objects) {
        if (!object)
            continue;
        object->SetTextureUVIndexArray(nullptr);
        object->SetTextureUVArray(nullptr);
    }
}

void ExpectSameDocument(const std::vector<Mesh>& loaded, std::vector<Mesh> stored) {
    DropTextures(stored);
    ASSERT_EQ(loaded.size(), stored.size());
    for (std::size_t number = 0; number < stored.size(); ++number) {
        ASSERT_EQ(loaded[number] == nullptr, stored[number] == nullptr);
        if (!stored[number])
            continue;
        EXPECT_EQ(loaded[number]->GetRuntimeClass(), stored[number]->GetRuntimeClass());
        EXPECT_TRUE(AreBitEqual(*loaded[number], *stored[number])) << "object " << number;
    }
    EXPECT_EQ(SharingPattern(loaded), SharingPattern(stored));
}

RandomMeshOptions WithSpecialValues() {
    RandomMeshOptions options;
    options.hasSpecialValues = true;
    return options;
}

TEST(SerializeLaw, LoadingGivesBackContentsAndSharing) {
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = RandomDocument(random, WithSpecialValues());
        ExpectSameDocument(LoadedObjects(StoredObjects(objects), objects.size()), objects);
        if (HasFailure())
            return;
    }
}

TEST(SerializeLaw, StoringWhatWasLoadedGivesTheSameBytes) {
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = RandomDocument(random, WithSpecialValues());
        const Bytes bytes = StoredObjects(objects);
        ASSERT_EQ(StoredObjects(LoadedObjects(bytes, objects.size())), bytes);
    }
}

TEST(SerializeLaw, StoringChangesNothing) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        Random same(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = RandomDocument(random);
        const std::vector<std::size_t> pattern = SharingPattern(objects);
        StoredObjects(objects);
        EXPECT_EQ(SharingPattern(objects), pattern);
        const std::vector<Mesh> untouched = RandomDocument(same);
        for (std::size_t number = 0; number < objects.size(); ++number)
            if (objects[number])
                ExpectBitEqual(*objects[number], *untouched[number]);
    }
}

TEST(SerializeLaw, AnyBufferGivesTheSameStreamAndReadsIt) {
    RandomMeshOptions larger;
    larger.maxVertices = 120;
    larger.maxTriangles = 200;
    Bytes callersBuffer(1 << 20);
    for (std::size_t round = 0; round < 25; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = RandomDocument(random, larger);
        const Bytes bytes = StoredObjects(objects);
        for (const int bufferSize : {0, 1, 127, 128, 129, 137, 1000, 4095, 65536, 1 << 20}) {
            ASSERT_EQ(StoredObjects(objects, bufferSize), bytes) << bufferSize;
            ASSERT_EQ(StoredObjects(objects, bufferSize, callersBuffer.data()), bytes)
                << bufferSize;
            ExpectSameDocument(LoadedObjects(bytes, objects.size(), bufferSize), objects);
            ExpectSameDocument(
                LoadedObjects(bytes, objects.size(), bufferSize, callersBuffer.data()), objects);
        }
    }
}

TEST(SerializeLaw, LoadingLeavesTheFileBehindTheLastByte) {
    for (std::size_t round = 0; round < 50; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = RandomDocument(random);
        Bytes bytes = StoredObjects(objects);
        const std::size_t end = bytes.size();
        bytes.resize(end + 1000, 0xEE);
        LoadedFrom loaded(bytes, 256);
        std::vector<Mesh> kept;
        while (kept.size() < objects.size())
            kept.push_back(loaded.Next());
        loaded.archive.Close();
        EXPECT_EQ(loaded.file.GetPosition(), end);
    }
}

// Where one envelope of a stored body lies, worked out from the mesh and not from the stream.
struct Envelope {
    Role role;
    std::size_t numberEnd = 0;  // behind the array number; the array is installed from here on
    std::size_t contentBegin = 0;
    std::size_t elementBytes = 0;
    std::size_t elementCount = 0;
    bool isThere = false;
    bool isNew = false;
    bool isReported = true;  // whether an end of the stream within the content throws
};

std::size_t SizeOf(const IndexArray& indices) {
    return indices.which() == 1 ? PerVertexOf(indices).size() : PerTriangleOf(indices).size();
}

// Sizes by role: what one element takes in the stream, and how many there are.
std::pair<std::size_t, std::size_t> ElementsOf(const VraMeshPrimitive& mesh, Role role) {
    switch (role) {
        case kVertices:
            return {24, mesh.GetVertexArray()->size()};
        case kNormals:
            return {24, mesh.GetNormalArray()->size()};
        case kColors:
            return {4, mesh.GetColorArray()->size()};
        case kVertexIndices:
            return {24, mesh.GetVertexIndexArray()->size()};
        case kNormalIndices:
            return {mesh.IsNormalPerVertex() ? 24 : 8, SizeOf(*mesh.GetNormalIndexArray())};
        case kColorIndices:
            return {mesh.IsColorPerVertex() ? 24 : 8, SizeOf(*mesh.GetColorIndexArray())};
        default:
            return {16, mesh.GetUVArray()->size()};
    }
}

std::vector<Envelope> EnvelopesOf(const VraMeshPrimitive& mesh) {
    std::vector<Envelope> envelopes;
    std::vector<const void*> met;
    std::size_t offset = 8;
    const ArrayAddresses addresses = AddressesOf(mesh);
    for (const Role role : kStoredRoles) {
        Envelope envelope{role};
        envelope.isThere = addresses[role] != nullptr;
        offset += envelope.isThere ? 9 : 1;
        envelope.numberEnd = offset;
        envelope.isNew =
            envelope.isThere && std::find(met.begin(), met.end(), addresses[role]) == met.end();
        if (envelope.isNew) {
            met.push_back(addresses[role]);
            const bool hasFlag = role == kNormalIndices || role == kColorIndices;
            offset += hasFlag ? 9 : 8;
            envelope.contentBegin = offset;
            std::tie(envelope.elementBytes, envelope.elementCount) = ElementsOf(mesh, role);
            offset += envelope.elementBytes * envelope.elementCount;
            envelope.isReported = role != kColors && role != kUVs;
        }
        envelopes.push_back(envelope);
    }
    return envelopes;
}

std::size_t LoadedCount(const VraMeshPrimitive& mesh, Role role) {
    return ElementsOf(mesh, role).second;
}

// What must be in a primitive, empty before, that was loaded from the first `size` bytes.
void ExpectPrefixLoaded(const VraMeshPrimitive& loaded, const VraMeshPrimitive& source,
                        std::size_t size) {
    const ArrayAddresses addresses = AddressesOf(loaded);
    for (const Envelope& envelope : EnvelopesOf(source)) {
        const bool isInstalled = envelope.isThere && envelope.numberEnd <= size;
        ASSERT_EQ(addresses[envelope.role] != nullptr, isInstalled) << NameOf(envelope.role);
        if (!isInstalled || !envelope.isNew)
            continue;
        std::size_t expected = 0;
        if (envelope.contentBegin <= size)
            expected = envelope.isReported
                           ? std::min((size - envelope.contentBegin) / envelope.elementBytes,
                                      envelope.elementCount)
                           : envelope.elementCount;
        ASSERT_EQ(LoadedCount(loaded, envelope.role), expected) << NameOf(envelope.role);
    }
}

TEST(SerializeLaw, EveryPrefixOfABodyEndsInEndOfFileWithTheArraysReadSoFar) {
    RandomMeshOptions small;
    small.maxVertices = 4;
    small.maxTriangles = 4;
    for (std::size_t round = 0; round < 60; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh source = RandomMesh(random, small);
        const Bytes body = StoredBody(*source);
        const Envelope uvs = EnvelopesOf(*source).back();
        for (std::size_t size = 0; size < body.size(); ++size) {
            SCOPED_TRACE(std::to_string(size) + " of " + std::to_string(body.size()) + " bytes");
            LoadedFrom loaded(Bytes(body.begin(), body.begin() + static_cast<long>(size)), 128);
            const Mesh target = NewPrimitive();
            const Caught caught = CaughtFrom([&] { SerializeBody(*target, loaded.archive); });
            // The UVs come last and go unreported, so nothing is left to notice the end.
            const bool isUnnoticed = uvs.isNew && size >= uvs.contentBegin;
            ASSERT_EQ(caught, isUnnoticed ? Nothing() : EndOfFile());
            ExpectPrefixLoaded(*target, *source, size);
            if (HasFailure())
                return;
        }
    }
}

TEST(SerializeLaw, EveryPrefixOfAnObjectEndsInAnExceptionOfItsEnvelope) {
    const Mesh mesh = SingleTriangle();
    const Bytes bytes = StoredObjects({mesh});
    // tag, schema and length word, then 16 letters of "VraMeshPrimitive"
    const std::size_t nameBegin = 6;
    const std::size_t nameEnd = nameBegin + 16;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        SCOPED_TRACE(std::to_string(size) + " bytes");
        const CreatedMeshes created;
        LoadedFrom loaded(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(size)));
        const Caught caught = CaughtFrom([&] { loaded.Next(); });
        const bool isInName = size >= nameBegin && size < nameEnd;
        EXPECT_EQ(caught, isInName ? ArchiveException(CArchiveException::badClass) : EndOfFile());
        EXPECT_EQ(created.Count(), size < nameEnd ? 0u : 1u);
    }
}

RandomMeshOptions Everything() {
    RandomMeshOptions options;
    options.missingPercent = 0;
    options.noTrianglesPercent = 0;
    options.sharesRoles = false;
    options.maxVertices = 30;
    options.maxTriangles = 40;
    return options;
}

TEST(SerializeLaw, AWriteThatFailsAtAnyCallReachesTheCaller) {
    for (std::size_t round = 0; round < 10; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomMesh(random, Everything());
        Random same(round);
        const Mesh untouched = RandomMesh(same, Everything());
        for (std::size_t call = 1;; ++call) {
            SCOPED_TRACE("write " + std::to_string(call));
            MemoryFile file;
            file.FailWrite(call);
            VrmArchive archive(&file, CArchive::store, 128);
            const Caught caught = CaughtFrom([&] {
                archive.WriteObject(mesh.get());
                archive.Close();
            });
            archive.Abort();
            ASSERT_EQ(caught, file.WriteCalls() >= call ? FileException(CFileException::diskFull)
                                                        : Nothing());
            ASSERT_TRUE(AreBitEqual(*mesh, *untouched));
            if (file.WriteCalls() < call)
                break;
        }
    }
}

// Loads from a file that `prepare` makes fail at a call, for each call; `callsOf` counts them.
template <class Prepare, class CallsOf>
void FailEachCallWhileLoading(MemoryFile::Fails fails, int cause, const Prepare& prepare,
                              const CallsOf& callsOf) {
    for (std::size_t round = 0; round < 10; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh source = RandomMesh(random, Everything());
        const Bytes body = StoredBody(*source);
        for (std::size_t call = 1;; ++call) {
            SCOPED_TRACE("call " + std::to_string(call));
            MemoryFile file(body);
            prepare(file, call, fails);
            const Mesh target = NewPrimitive();
            VrmArchive archive(&file, CArchive::load, 128);
            const Caught caught = CaughtFrom([&] { SerializeBody(*target, archive); });
            const bool hasFailed = callsOf(file) >= call;
            ASSERT_EQ(caught, hasFailed ? FileException(cause) : Nothing());
            // Arrays are there up to the one that failed, and none behind it.
            const ArrayAddresses addresses = AddressesOf(*target);
            const auto firstMissing =
                std::find_if(std::begin(kStoredRoles), std::end(kStoredRoles),
                             [&](Role role) { return addresses[role] == nullptr; });
            for (auto role = firstMissing; role != std::end(kStoredRoles); ++role)
                ASSERT_EQ(addresses[*role], nullptr) << NameOf(*role);
            ASSERT_TRUE(hasFailed || firstMissing == std::end(kStoredRoles));
            archive.Abort();
            if (!hasFailed)
                break;
        }
    }
}

void FailReads(MemoryFile& file, std::size_t call, MemoryFile::Fails fails) {
    file.FailRead(call, CFileException::hardIO, fails);
}

void FailSeeks(MemoryFile& file, std::size_t call, MemoryFile::Fails fails) {
    file.FailSeek(call, CFileException::badSeek, fails);
}

TEST(SerializeLaw, AReadThatFailsAtAnyCallReachesTheCaller) {
    FailEachCallWhileLoading(MemoryFile::Fails::kFromThenOn, CFileException::hardIO, FailReads,
                             [](const MemoryFile& file) { return file.ReadCalls(); });
}

TEST(SerializeLaw, AReadThatFailsOnceReachesTheCallerToo) {
    FailEachCallWhileLoading(MemoryFile::Fails::kOnce, CFileException::hardIO, FailReads,
                             [](const MemoryFile& file) { return file.ReadCalls(); });
}

TEST(SerializeLaw, ASeekThatFailsAtAnyCallReachesTheCaller) {
    FailEachCallWhileLoading(MemoryFile::Fails::kOnce, CFileException::badSeek, FailSeeks,
                             [](const MemoryFile& file) { return file.SeekCalls(); });
}

// Cancels at the n-th question.
class CancelAt final : public Vr::VrwSerializeObserver {
public:
    explicit CancelAt(std::size_t question) : question_(question) {}
    bool IsCanceled() override { return ++asked == question_; }
    void OnProgress(ULONGLONG position, ULONGLONG length) override {
        EXPECT_LE(position, length);
        ++reports;
    }
    std::size_t asked = 0;
    std::size_t reports = 0;

private:
    std::size_t question_;
};

TEST(SerializeLaw, ACancelAtAnyObjectStopsThereAndKeepsTheOnesBefore) {
    for (std::size_t round = 0; round < 40; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<Mesh> objects;
        const std::size_t count = 1 + random.Below(6);
        while (objects.size() < count)
            objects.push_back(RandomMesh(random));
        const Bytes bytes = StoredObjects(objects);
        DropTextures(objects);
        for (std::size_t cancelled = 1; cancelled <= count; ++cancelled) {
            const CreatedMeshes created;
            LoadedFrom loaded(bytes);
            CancelAt observer(cancelled);
            loaded.archive.SetObserver(&observer);
            for (std::size_t number = 0; number + 1 < cancelled; ++number)
                EXPECT_TRUE(AreBitEqual(*loaded.Next(), *objects[number]));
            EXPECT_EQ(CaughtFrom([&] { loaded.Next(); }), PlatformException("CUserException"));
            EXPECT_TRUE(AreBitEqual(*created[cancelled - 1], *NewPrimitive()));
            EXPECT_EQ(observer.reports, cancelled - 1);
        }
    }
}

}  // namespace
