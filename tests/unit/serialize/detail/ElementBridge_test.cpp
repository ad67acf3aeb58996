// Colours and UVs of a mesh must leave the very bytes, and after a fault the very state, that one
// bridge a value leaves. The reference here is that: the exported operator, value by value.

#include <gtest/gtest.h>

#include <algorithm>

#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"
#include "serialize/detail/ElementBridge.h"
#include "support/MemoryFile.h"

namespace {

using Vr::VraMeshPrimitive;
using Vr::test::MemoryFile;
using ByteVector = std::vector<BYTE>;
using Mesh = boost::intrusive_ptr<VraMeshPrimitive>;

// Where the content of the only array of an otherwise empty VraMeshPrimitive's body starts.
constexpr size_t kBodyBegin = 22;  // class description
constexpr size_t kColorContent =
    kBodyBegin + 8 + 1 + 1 + 1 + 8;                        // crease, two absent, there, number
constexpr size_t kUVContent = kBodyBegin + 8 + 6 + 1 + 8;  // crease, six absent, there, number

std::vector<ON_Color> Colors(size_t count) {
    std::vector<ON_Color> colors;
    for (size_t number = 0; number < count; ++number)
        colors.push_back(ON_Color(static_cast<unsigned int>(number * 2654435761u)));
    return colors;
}

std::vector<ON_2dPoint> UVs(size_t count) {
    std::vector<ON_2dPoint> uvs;
    for (size_t number = 0; number < count; ++number)
        uvs.push_back(ON_2dPoint(0.5 * static_cast<double>(number), -1.0));
    return uvs;
}

Mesh WithColors(size_t count) {
    Mesh mesh(new VraMeshPrimitive);
    mesh->SetColorArray(std::make_shared<VraMeshPrimitive::ColorArray>(Colors(count)));
    return mesh;
}

Mesh WithUVs(size_t count) {
    Mesh mesh(new VraMeshPrimitive);
    mesh->SetUVArray(std::make_shared<VraMeshPrimitive::UVArray>(UVs(count)));
    return mesh;
}

ByteVector Stored(const VraMeshPrimitive& mesh, int bufferSize = 4096) {
    MemoryFile file;
    Vr::VrmArchive archive(&file, CArchive::store, bufferSize);
    archive.WriteObject(&mesh);
    archive.Close();
    return file.Bytes();
}

template <class Value>
ByteVector StoredOneByOne(const std::vector<Value>& values) {
    using Vr::operator<<;
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << static_cast<ULONGLONG>(values.size());
    for (const Value& value : values)
        archive << value;
    archive.Close();
    return file.Bytes();
}

ByteVector Part(const ByteVector& bytes, size_t begin, size_t count) {
    const auto first = bytes.begin() + static_cast<ptrdiff_t>(begin);
    return ByteVector(first, first + static_cast<ptrdiff_t>(count));
}

// A file that takes or gives what comes before one byte, and fails at it: a full or damaged disk.
class FileUpTo : public MemoryFile {
public:
    FileUpTo(ByteVector content, size_t limit) : MemoryFile(std::move(content)), limit_(limit) {}

    UINT Read(void* target, UINT count) override {
        if (GetPosition() + count > limit_ && GetPosition() < GetLength())
            AfxThrowFileException(CFileException::hardIO);
        return MemoryFile::Read(target, count);
    }
    void Write(const void* source, UINT count) override {
        const auto room = static_cast<size_t>(limit_ - GetPosition());
        if (room >= count) {
            MemoryFile::Write(source, count);
            return;
        }
        MemoryFile::Write(source, static_cast<UINT>(room));
        AfxThrowFileException(CFileException::diskFull);
    }

private:
    size_t limit_;
};

// Calls `Serialize` directly, so that the object is at hand after a fault.
struct Loader : VraMeshPrimitive {
    static void Load(VraMeshPrimitive& target, CArchive& archive) {
        (target.*&Loader::Serialize)(archive);
    }
};

class ElementBridgeCount : public testing::TestWithParam<size_t> {};

// 16384 colours and 4096 UVs fill one 64 KiB piece.
INSTANTIATE_TEST_SUITE_P(AroundThePiece, ElementBridgeCount,
                         testing::Values(0, 1, 4095, 4096, 4097, 16383, 16384, 16385, 40000));

TEST_P(ElementBridgeCount, ColoursHaveTheBytesOfOneBridgeAColour) {
    const ByteVector expected = StoredOneByOne(Colors(GetParam()));
    EXPECT_EQ(Part(Stored(*WithColors(GetParam())), kColorContent, expected.size()), expected);
    EXPECT_EQ(Part(Stored(*WithColors(GetParam()), 128), kColorContent, expected.size()), expected);
}

TEST_P(ElementBridgeCount, UVsHaveTheBytesOfOneBridgeAUV) {
    const ByteVector expected = StoredOneByOne(UVs(GetParam()));
    EXPECT_EQ(Part(Stored(*WithUVs(GetParam())), kUVContent, expected.size()), expected);
}

TEST_P(ElementBridgeCount, WhatWasStoredIsLoadedAndTheStreamGoesOnBehindIt) {
    MemoryFile file;
    const Mesh colored = WithColors(GetParam());
    const Mesh textured = WithUVs(GetParam());
    Vr::VrmArchive storing(&file, CArchive::store);
    storing << colored.get() << textured.get() << 4711;
    storing.Close();
    file.SeekToBegin();

    Vr::VrmArchive loading(&file, CArchive::load);
    VraMeshPrimitive* first = nullptr;
    VraMeshPrimitive* second = nullptr;
    int behind = 0;
    loading >> first >> second >> behind;
    const Mesh loadedColors(first);
    const Mesh loadedUVs(second);

    EXPECT_EQ(*loadedColors->GetColorArray(), Colors(GetParam()));
    EXPECT_EQ(*loadedUVs->GetUVArray(), UVs(GetParam()));
    EXPECT_EQ(behind, 4711);
}

TEST(ElementBridge, AFullDiskHoldsEveryByteThatFitted) {
    const Mesh mesh = WithColors(40000);
    const ByteVector whole = Stored(*mesh);
    for (const size_t limit : {kColorContent + 8 + 1, kColorContent + 8 + 65536, size_t{100001}}) {
        FileUpTo file(ByteVector(), limit);
        Vr::VrmArchive archive(&file, CArchive::store);
        EXPECT_THROW(
            try { archive.WriteObject(mesh.get()); } catch (CFileException* exception) {
                const int cause = exception->m_cause;
                exception->Delete();
                throw cause;
            },
            int);
        archive.Abort();
        EXPECT_EQ(file.Bytes(), Part(whole, 0, limit));
    }
}

TEST(ElementBridge, ColoursBeforeADamagedByteAreLoaded) {
    const ByteVector whole = Stored(*WithColors(40000));
    for (const size_t intact : {size_t{100}, size_t{16384}, size_t{30000}}) {
        // the fault lies inside the colour behind the intact ones
        FileUpTo file(whole, kColorContent + 8 + 4 * intact + 2);
        char buffer[128];
        Vr::VrmArchive archive(&file, CArchive::load, sizeof buffer, buffer);
        Mesh mesh(new VraMeshPrimitive);
        file.Seek(kBodyBegin, CFile::begin);
        try {
            Loader::Load(*mesh, archive);
            ADD_FAILURE() << "no fault";
        } catch (CFileException* exception) {
            EXPECT_EQ(exception->m_cause, CFileException::hardIO);
            exception->Delete();
        }
        archive.Abort();
        EXPECT_EQ(*mesh->GetColorArray(), Colors(intact));
    }
}

TEST(ElementBridge, ColoursThatTheStreamLacksAreOpaqueBlack) {
    ByteVector bytes = Stored(*WithColors(3));
    bytes.resize(kColorContent + 8 + 4 + 2);  // one colour and two bytes of the second
    MemoryFile file(bytes);
    Vr::VrmArchive archive(&file, CArchive::load);
    Mesh mesh(new VraMeshPrimitive);
    file.Seek(kBodyBegin, CFile::begin);
    try {
        Loader::Load(*mesh, archive);
        ADD_FAILURE() << "the envelopes behind the colours are missing too";
    } catch (CArchiveException* exception) {
        EXPECT_EQ(exception->m_cause, CArchiveException::endOfFile);
        exception->Delete();
    }
    const auto whole = Colors(3);
    const unsigned int half = static_cast<unsigned int>(whole[1]) & 0xFFFFu;
    const std::vector<ON_Color> expected = {whole[0], ON_Color(half), ON_Color(0u)};
    EXPECT_EQ(*mesh->GetColorArray(), expected);
}

TEST(ElementBridge, AFileThatGivesTenBytesAtATimeLoadsTheSame) {
    MemoryFile file(Stored(*WithColors(3)));
    file.LimitReads(10);
    Vr::VrmArchive archive(&file, CArchive::load, 128);
    VraMeshPrimitive* object = nullptr;
    archive >> object;
    const Mesh mesh(object);
    EXPECT_EQ(*mesh->GetColorArray(), Colors(3));
}

TEST(ElementBridge, AMillionColoursTakeFewFileOperations) {
    const Mesh mesh = WithColors(1000000);
    MemoryFile file;
    Vr::VrmArchive storing(&file, CArchive::store);
    storing.WriteObject(mesh.get());
    storing.Close();
    // 4 000 000 bytes in pieces of 65536 are 62; the archive's own buffer adds two
    EXPECT_LE(file.WriteCalls(), 64u);
    file.SeekToBegin();
    Vr::VrmArchive loading(&file, CArchive::load);
    VraMeshPrimitive* object = nullptr;
    loading >> object;
    const Mesh loaded(object);
    EXPECT_LE(file.ReadCalls(), 65u);
}

// Makes the operations that only openNURBS calls reachable.
class PieceBridge : public Vr::detail::ElementBridge {
public:
    using ElementBridge::ElementBridge;
    using ElementBridge::Read;
    using ElementBridge::Write;
};

// No colour and no UV does, and only the bridge itself sees it.
TEST(ElementBridge, ValuesMayLieAcrossTheEndsOfPiecesAndBeLongerThanOne) {
    constexpr size_t kCount = 300000;
    ByteVector values;
    for (size_t number = 0; number < kCount; ++number)
        values.push_back(static_cast<BYTE>(number * 2654435761u >> 8));
    for (const size_t length : {size_t{7}, size_t{1000}, size_t{140000}}) {
        SCOPED_TRACE(length);
        MemoryFile file;
        CArchive storing(&file, CArchive::store);
        PieceBridge writer(storing);
        for (size_t begin = 0; begin < kCount; begin += length) {
            const size_t count = std::min(length, kCount - begin);
            ASSERT_EQ(writer.Write(count, values.data() + begin), count);
        }
        writer.HandOver();
        EXPECT_TRUE(file.Bytes() == values);

        file.SeekToBegin();
        CArchive loading(&file, CArchive::load);
        PieceBridge reader(loading, kCount);
        ByteVector read(kCount);
        for (size_t begin = 0; begin < kCount; begin += length) {
            const size_t count = std::min(length, kCount - begin);
            ASSERT_EQ(reader.Read(count, read.data() + begin), count);
        }
        EXPECT_TRUE(read == values);
    }
}

TEST(ElementBridge, WithNothingToHandOverTheFileIsLeftAlone) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    PieceBridge bridge(archive);
    bridge.HandOver();
    EXPECT_EQ(file.WriteCalls(), 0u);
    const BYTE value = 7;
    bridge.Write(1, &value);
    bridge.HandOver();
    bridge.HandOver();
    EXPECT_EQ(file.WriteCalls(), 1u);
}

}  // namespace
