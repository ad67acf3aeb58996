#include "serialize/VrmArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "serialize/VrwSerializeObserver.h"
#include "support/ByteScript.h"
#include "support/Caught.h"
#include "support/MemoryFile.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using Vr::VraMeshPrimitive;
using Vr::VrmArchive;
using Vr::VrwSerializeObserver;

constexpr UINT kUnknownSchema = 0xFFFFFFFF;

// Notes what the file and the observer are asked, in one list.
class NotingFile : public MemoryFile {
public:
    NotingFile(Vr::test::Bytes content, std::vector<std::string>& notes)
        : MemoryFile(std::move(content)), notes_(notes) {}
    ULONGLONG GetLength() const override {
        notes_.push_back("GetLength");
        if (failsAtLength)
            AfxThrowFileException(CFileException::hardIO);
        return MemoryFile::GetLength();
    }
    ULONGLONG GetPosition() const override {
        notes_.push_back("GetPosition");
        return MemoryFile::GetPosition();
    }
    bool failsAtLength = false;

private:
    std::vector<std::string>& notes_;
};

class NotingObserver final : public VrwSerializeObserver {
public:
    explicit NotingObserver(std::vector<std::string>& notes) : notes_(notes) {}
    bool IsCanceled() override {
        notes_.push_back("IsCanceled");
        return cancels;
    }
    void OnProgress(ULONGLONG position, ULONGLONG length) override {
        notes_.push_back("OnProgress " + std::to_string(position) + " " + std::to_string(length));
    }
    bool cancels = false;

private:
    std::vector<std::string>& notes_;
};

TEST(VrmArchive, AddsAVirtualDestructorToCArchive) {
    EXPECT_TRUE((std::is_base_of_v<CArchive, VrmArchive>));
    EXPECT_TRUE(std::has_virtual_destructor_v<VrmArchive>);
    EXPECT_FALSE(std::is_polymorphic_v<CArchive>);
}

TEST(VrmArchive, GivesFileModeAndBufferToCArchive) {
    MemoryFile file(Bytes(300, 1));
    file.SetFilePath(_T("mesh.doc"));
    VrmArchive storing(&file, CArchive::store);
    EXPECT_TRUE(storing.IsStoring());
    EXPECT_EQ(storing.GetFile(), &file);
    EXPECT_TRUE(storing.m_strFileName == _T("mesh.doc"));
    storing.Abort();

    Bytes buffer(256, 0);
    VrmArchive loading(&file, CArchive::load, 256, buffer.data());
    EXPECT_TRUE(loading.IsLoading());
    BYTE value = 0;
    loading >> value;
    EXPECT_EQ(buffer, Bytes(256, 1)) << "the caller's buffer was filled";
    EXPECT_EQ(file.GetPosition(), 256u);
}

TEST(VrmArchive, ClosesInItsDestructor) {
    MemoryFile file;
    {
        VrmArchive archive(&file, CArchive::store);
        archive << 7;
    }
    EXPECT_EQ(file.Bytes(), (Bytes{7, 0, 0, 0}));
}

TEST(VrmArchive, KeepsTheNoFlushMode) {
    MemoryFile file;
    {
        VrmArchive archive(&file, CArchive::store | CArchive::bNoFlushOnDelete);
        archive << 7;
    }
    EXPECT_TRUE(file.Bytes().empty());
}

TEST(GetVrmObjectSchema, AsksOnceAndAnswersTheSameForEver) {
    MemoryFile file;
    VrmArchive archive(&file, CArchive::load);
    archive.SetObjectSchema(10);
    EXPECT_EQ(archive.GetVrmObjectSchema(), 10u);
    EXPECT_EQ(archive.GetVrmObjectSchema(), 10u);
    EXPECT_EQ(archive.GetObjectSchema(), kUnknownSchema) << "the platform's answer is used up";
    archive.SetObjectSchema(16);
    EXPECT_EQ(archive.GetVrmObjectSchema(), 10u);
    EXPECT_EQ(archive.GetObjectSchema(), 16u) << "and is not asked for again";
}

TEST(GetVrmObjectSchema, AnUnknownAnswerIsNotKept) {
    MemoryFile file;
    VrmArchive archive(&file, CArchive::load);
    EXPECT_EQ(archive.GetVrmObjectSchema(), kUnknownSchema);
    archive.SetObjectSchema(3);
    EXPECT_EQ(archive.GetVrmObjectSchema(), 3u);
}

TEST(GetVrmObjectSchema, KeepsTheVersionableBitAndZero) {
    MemoryFile file;
    VrmArchive versionable(&file, CArchive::load);
    versionable.SetObjectSchema(VERSIONABLE_SCHEMA | 16);
    EXPECT_EQ(versionable.GetVrmObjectSchema(), 0x80000010u);
    VrmArchive zero(&file, CArchive::load);
    zero.SetObjectSchema(0);
    EXPECT_EQ(zero.GetVrmObjectSchema(), 0u);
    zero.SetObjectSchema(5);
    EXPECT_EQ(zero.GetVrmObjectSchema(), 0u);
}

TEST(GetVrmObjectSchema, IsKnownAfterTheFirstMeshWasLoaded) {
    LoadedFrom loaded(StoredObjects({NewPrimitive()}));
    EXPECT_EQ(loaded.archive.GetVrmObjectSchema(), kUnknownSchema);
    loaded.Next();
    EXPECT_EQ(loaded.archive.GetVrmObjectSchema(), 16u);
}

TEST(CommunicateToObserver, AsksThenReportsPositionAndLength) {
    std::vector<std::string> notes;
    NotingFile file(Bytes(500, 0), notes);
    NotingObserver observer(notes);
    VrmArchive archive(&file, CArchive::load, 128);
    archive.SetObserver(&observer);
    BYTE value = 0;
    archive >> value;
    notes.clear();
    archive.CommunicateToObserver();
    // The file stands one buffer of 128 bytes ahead.
    EXPECT_THAT(notes, ElementsAre("IsCanceled", "GetLength", "GetPosition", "OnProgress 128 500"));
}

TEST(CommunicateToObserver, ACancelThrowsBeforeTheFileIsAsked) {
    std::vector<std::string> notes;
    NotingFile file({}, notes);
    NotingObserver observer(notes);
    observer.cancels = true;
    VrmArchive archive(&file, CArchive::load);
    archive.SetObserver(&observer);
    notes.clear();
    EXPECT_EQ(CaughtFrom([&] { archive.CommunicateToObserver(); }),
              PlatformException("CUserException"));
    EXPECT_THAT(notes, ElementsAre("IsCanceled"));
}

TEST(CommunicateToObserver, AsksNothingWhileStoring) {
    std::vector<std::string> notes;
    NotingFile file({}, notes);
    NotingObserver observer(notes);
    observer.cancels = true;
    VrmArchive archive(&file, CArchive::store);
    archive.SetObserver(&observer);
    notes.clear();
    archive.CommunicateToObserver();
    EXPECT_THAT(notes, ElementsAre());
}

TEST(CommunicateToObserver, AsksNothingWithoutAnObserver) {
    std::vector<std::string> notes;
    NotingFile file({}, notes);
    NotingObserver observer(notes);
    VrmArchive archive(&file, CArchive::load);
    notes.clear();
    archive.CommunicateToObserver();
    archive.SetObserver(&observer);
    archive.SetObserver(nullptr);
    archive.CommunicateToObserver();
    EXPECT_THAT(notes, ElementsAre());
}

TEST(CommunicateToObserver, PassesOnWhatTheFileThrows) {
    std::vector<std::string> notes;
    NotingFile file({}, notes);
    file.failsAtLength = true;
    NotingObserver observer(notes);
    VrmArchive archive(&file, CArchive::load);
    archive.SetObserver(&observer);
    notes.clear();
    EXPECT_EQ(CaughtFrom([&] { archive.CommunicateToObserver(); }),
              FileException(CFileException::hardIO));
    EXPECT_THAT(notes, ElementsAre("IsCanceled", "GetLength"));
}

TEST(VrwSerializeObserver, IsAnInterfaceThatCopiesAndMoves) {
    EXPECT_TRUE(std::is_abstract_v<VrwSerializeObserver>);
    EXPECT_FALSE(std::has_virtual_destructor_v<VrwSerializeObserver>);
    struct Host final : VrwSerializeObserver {
        bool IsCanceled() override { return false; }
        void OnProgress(ULONGLONG, ULONGLONG) override {}
    };
    EXPECT_TRUE(std::is_default_constructible_v<Host>);
    EXPECT_TRUE(std::is_copy_constructible_v<Host>);
    EXPECT_TRUE(std::is_move_constructible_v<Host>);
    EXPECT_TRUE(std::is_copy_assignable_v<Host>);
    EXPECT_TRUE(std::is_move_assignable_v<Host>);
}

// Stores `mesh` on a storing archive and says which number its vertex array got there.
ULONGLONG NumberOfVertexArray(VrmArchive& archive, MemoryFile& file, VraMeshPrimitive& mesh) {
    archive.Flush();
    const std::size_t begin = file.Bytes().size();
    SerializeBody(mesh, archive);
    archive.Flush();
    // Behind the crease angle (8 bytes) and the presence byte.
    return file.Bytes().at(begin + 9);
}

// A stored vertex array as a second archive would see it: whether its content was written.
bool WritesContent(VrmArchive& archive, MemoryFile& file, VraMeshPrimitive& mesh) {
    archive.Flush();
    const std::size_t begin = file.Bytes().size();
    SerializeBody(mesh, archive);
    archive.Flush();
    // A body with one array known before: angle, presence and number, six absent arrays.
    return file.Bytes().size() - begin != 8 + 9 + 6;
}

Mesh OneVertex() {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(Vertices({{1, 2, 3}}));
    return mesh;
}

TEST(CopyOfAVrmArchive, IsNoArchive) {
    MemoryFile file;
    file.SetFilePath(_T("mesh.doc"));
    VrmArchive archive(&file, CArchive::store);
    archive << 7;
    {
        const VrmArchive copy(archive);
        EXPECT_EQ(copy.GetFile(), nullptr);
        EXPECT_TRUE(copy.m_strFileName.IsEmpty());
        EXPECT_EQ(archive.GetFile(), &file);
    }
    EXPECT_TRUE(file.Bytes().empty()) << "destroying the copy flushed nothing";
    archive << 8;
    archive.Close();
    EXPECT_EQ(file.Bytes(), (Bytes{7, 0, 0, 0, 8, 0, 0, 0}));
}

TEST(CopyOfAVrmArchive, OfALoadingOneIsDestroyedWithoutMovingTheFile) {
    MemoryFile file(Bytes(500, 0));
    VrmArchive archive(&file, CArchive::load, 128);
    BYTE value = 0;
    archive >> value;
    { const VrmArchive copy(archive); }
    EXPECT_EQ(file.SeekCalls(), 0u);
    EXPECT_EQ(file.GetPosition(), 128u);
}

TEST(CopyOfAVrmArchive, HoldsTheSchema) {
    MemoryFile file;
    VrmArchive archive(&file, CArchive::load);
    archive.SetObjectSchema(10);
    archive.GetVrmObjectSchema();
    VrmArchive copy(archive);
    EXPECT_EQ(copy.GetVrmObjectSchema(), 10u);
}

TEST(CopyOfAVrmArchive, HoldsTheNumbersOfWrittenArrays) {
    const Mesh first = OneVertex();
    const Mesh second = OneVertex();
    MemoryFile firstFile;
    VrmArchive firstArchive(&firstFile, CArchive::store);
    SerializeBody(*second, firstArchive);
    SerializeBody(*first, firstArchive);
    const VrmArchive copy(firstArchive);

    MemoryFile file;
    VrmArchive archive(&file, CArchive::store);
    archive = copy;
    EXPECT_FALSE(WritesContent(archive, file, *first));
    EXPECT_EQ(NumberOfVertexArray(archive, file, *first), 2u);
    EXPECT_EQ(NumberOfVertexArray(archive, file, *second), 1u);
    const Mesh third = OneVertex();
    EXPECT_EQ(NumberOfVertexArray(archive, file, *third), 3u);
}

TEST(CopyOfAVrmArchive, KeepsLoadedArraysAlive) {
    std::weak_ptr<const VraMeshPrimitive::VertexArray> watched;
    std::unique_ptr<VrmArchive> copy;
    {
        LoadedFrom loaded(StoredObjects({OneVertex()}));
        watched = loaded.Next()->GetVertexArray();
        EXPECT_EQ(watched.use_count(), 1);
        copy = std::make_unique<VrmArchive>(loaded.archive);
        EXPECT_EQ(watched.use_count(), 2);
    }
    EXPECT_EQ(watched.use_count(), 1);
    copy.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(CopyOfAVrmArchive, HoldsTheObserver) {
    std::vector<std::string> notes;
    NotingObserver observer(notes);
    MemoryFile file(Bytes(9, 0));
    VrmArchive archive(&file, CArchive::load);
    archive.SetObserver(&observer);
    const VrmArchive copy(archive);

    VrmArchive other(&file, CArchive::load);
    other = copy;
    other.CommunicateToObserver();
    EXPECT_THAT(notes, ElementsAre("IsCanceled", "OnProgress 0 9"));
}

TEST(AssignmentOfAVrmArchive, TakesTheTablesAndDropsItsOwn) {
    const Mesh first = OneVertex();
    const Mesh second = OneVertex();
    MemoryFile firstFile;
    VrmArchive firstArchive(&firstFile, CArchive::store);
    SerializeBody(*first, firstArchive);

    MemoryFile file;
    VrmArchive archive(&file, CArchive::store);
    SerializeBody(*second, archive);
    archive = firstArchive;
    EXPECT_FALSE(WritesContent(archive, file, *first));
    EXPECT_TRUE(WritesContent(archive, file, *second)) << "its own number was dropped";
    EXPECT_TRUE(WritesContent(firstArchive, firstFile, *second)) << "the source stays as it was";
}

TEST(AssignmentOfAVrmArchive, TakesTheLoadedArraysAndDropsItsOwn) {
    LoadedFrom source(StoredObjects({OneVertex()}));
    LoadedFrom target(StoredObjects({OneVertex()}));
    const std::weak_ptr<const VraMeshPrimitive::VertexArray> taken =
        source.Next()->GetVertexArray();
    const std::weak_ptr<const VraMeshPrimitive::VertexArray> dropped =
        target.Next()->GetVertexArray();
    target.archive = source.archive;
    EXPECT_EQ(taken.use_count(), 2);
    EXPECT_TRUE(dropped.expired());
}

TEST(AssignmentOfAVrmArchive, KeepsFileBufferAndMode) {
    MemoryFile sourceFile(Bytes(200, 9));
    sourceFile.SetFilePath(_T("source.doc"));
    VrmArchive source(&sourceFile, CArchive::load);
    source.SetObjectSchema(10);
    source.GetVrmObjectSchema();

    MemoryFile file;
    file.SetFilePath(_T("target.doc"));
    VrmArchive target(&file, CArchive::store);
    target << 7;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_TRUE(target.IsStoring());
    EXPECT_EQ(target.GetFile(), &file);
    EXPECT_TRUE(target.m_strFileName == _T("target.doc"));
    EXPECT_EQ(target.GetVrmObjectSchema(), 10u);
    target << 8;
    target.Close();
    EXPECT_EQ(file.Bytes(), (Bytes{7, 0, 0, 0, 8, 0, 0, 0}));
}

TEST(AssignmentOfAVrmArchive, TakesAnUnknownSchemaAndNoObserverToo) {
    std::vector<std::string> notes;
    NotingObserver observer(notes);
    MemoryFile file(Bytes(9, 0));
    VrmArchive source(&file, CArchive::load);
    VrmArchive target(&file, CArchive::load);
    target.SetObserver(&observer);
    target.SetObjectSchema(10);
    target.GetVrmObjectSchema();
    target = source;
    EXPECT_EQ(target.GetVrmObjectSchema(), kUnknownSchema);
    target.CommunicateToObserver();
    EXPECT_THAT(notes, ElementsAre());
}

TEST(AssignmentOfAVrmArchive, ToItselfKeepsBothTables) {
    const Mesh mesh = OneVertex();
    MemoryFile file;
    VrmArchive storing(&file, CArchive::store);
    SerializeBody(*mesh, storing);
    VrmArchive& sameStoring = storing;
    storing = sameStoring;
    EXPECT_FALSE(WritesContent(storing, file, *mesh));

    LoadedFrom loaded(StoredObjects({mesh}));
    const std::weak_ptr<const VraMeshPrimitive::VertexArray> watched =
        loaded.Next()->GetVertexArray();
    VrmArchive& sameLoading = loaded.archive;
    loaded.archive = sameLoading;
    EXPECT_EQ(watched.use_count(), 1);
}

// Tells when it is moved.
class MovedFile : public MemoryFile {
public:
    MovedFile(Vr::test::Bytes content, std::function<void()> onSeek)
        : MemoryFile(std::move(content)), onSeek_(std::move(onSeek)) {}
    ULONGLONG Seek(LONGLONG offset, UINT from) override {
        onSeek_();
        return MemoryFile::Seek(offset, from);
    }

private:
    std::function<void()> onSeek_;
};

TEST(DestructorOfAVrmArchive, LetsGoOfLoadedArraysBeforeItCloses) {
    std::weak_ptr<const VraMeshPrimitive::VertexArray> watched;
    std::vector<bool> wasExpired;
    Bytes content = StoredObjects({OneVertex()});
    content.resize(content.size() + 50);
    MovedFile file(content, [&] { wasExpired.push_back(watched.expired()); });
    {
        VrmArchive archive(&file, CArchive::load);
        VraMeshPrimitive* mesh = nullptr;
        archive >> mesh;
        watched = Mesh(mesh)->GetVertexArray();
        EXPECT_FALSE(watched.expired());
    }
    // Closing moves the file back over the 50 bytes read ahead.
    EXPECT_THAT(wasExpired, ElementsAre(true));
}

TEST(DestructorOfAVrmArchive, RunsThroughAPointerToTheDerivedClass) {
    MemoryFile file;
    class HostArchive : public VrmArchive {
    public:
        HostArchive(CFile* hostFile, int& destroyedCount)
            : VrmArchive(hostFile, CArchive::store), count(destroyedCount) {}
        ~HostArchive() override { ++count; }
        int& count;
    };
    int destroyedCount = 0;
    const VrmArchive* const archive = new HostArchive(&file, destroyedCount);
    delete archive;
    EXPECT_EQ(destroyedCount, 1);
}

}  // namespace
