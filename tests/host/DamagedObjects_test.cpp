// Documents of every kind of object, damaged: the check finds it, and what it lets pass does no harm.

#include <opennurbs.h>

#include <stdexcept>

#include "host/Document.h"
#include "host/DocumentCheck.h"
#include "host/Failure.h"
#include "host/Info.h"
#include "host/KernelObjects.h"
#include "host/LoadFile.h"
#include "host/ObjectDocument.h"

namespace Vr::test {
namespace {

class DamagedObjects : public HostTest {
protected:
    /// Loads a document and returns why that failed, nothing where it did not.
    std::string FailureOf(const Bytes& document, bool isTrusted) {
        const std::string path = WriteAnew(document);
        try {
            loaded_ = Host::LoadDocument({path, isTrusted});
            return std::string();
        } catch (const Host::Failure& failure) {
            return std::string(failure.what()).substr(path.size() + 2);
        }
    }
    void ExpectRefused(const ByteScript& document, const std::string& whenChecked,
                       const std::string& whenTrusted) {
        EXPECT_EQ(FailureOf(document.Bytes(), false), "damaged document: " + whenChecked);
        EXPECT_EQ(FailureOf(document.Bytes(), true), "damaged document: " + whenTrusted);
    }
    bool IsSafe(const Bytes& document) const {
        Host::LoadFile file(WriteAnew(document));
        return Host::CheckDocument(file).summary.IsSafe();
    }
    /// Expects that what was loaded last is stored so that it can be loaded, or not at all.
    void ExpectStoredAsLoadable() {
        for (const Host::Object& object : loaded_.objects) {
            if (const auto* const curve = std::get_if<Host::Curve>(&object))
                ExpectStoredAsLoadable(*curve, 2);
            else if (const auto* const surface = std::get_if<Host::Surface>(&object))
                ExpectStoredAsLoadable(*surface, 3);
            else if (const auto* const material = std::get_if<Host::Material>(&object))
                ExpectStoredAsLoadable(*material, 4);
        }
    }

    Host::Document loaded_;
    size_t storedCount_ = 0;
    size_t unstorableCount_ = 0;

private:
    // A file that is overwritten goes to the disk each time, which takes longer than all else.
    std::string WriteAnew(const Bytes& document) const {
        std::filesystem::remove(Path("damaged.vrd"));
        return Write("damaged.vrd", document);
    }
    template <class Handle>
    static void Store(CMemFile& file, const Handle& object) {
        CArchive archive(&file, CArchive::store);
        Host::StoreFramed(archive, object);
        archive.Close();
        file.SeekToBegin();
    }
    template <class Handle>
    void ExpectStoredAsLoadable(const Handle& object, DWORD kind) {
        CMemFile first;
        try {
            Store(first, object);
        } catch (const std::runtime_error& error) {
            ASSERT_STREQ(error.what(), "openNURBS cannot store an object that is not valid");
            ++unstorableCount_;
            return;
        }
        CArchive archive(&first, CArchive::load);
        const Host::Object again = Host::LoadFramed(archive, kind);
        archive.Close();
        CMemFile second;
        Store(second, std::get<Handle>(again));
        ASSERT_EQ(second.GetLength(), first.GetLength());
        ++storedCount_;
    }
};

// Calls `visit(bytes, bit)` for the document with each of its bits flipped in turn.
template <class Visit>
void WithEachBitFlipped(Bytes bytes, const Visit& visit) {
    for (size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        SCOPED_TRACE("bit " + std::to_string(bit));
        const auto mask = static_cast<std::uint8_t>(1U << bit % 8);
        bytes[bit / 8] ^= mask;
        ASSERT_NO_FATAL_FAILURE(visit(bytes, bit));
        bytes[bit / 8] ^= mask;
    }
}

constexpr size_t kFirst = 16;  // the kind of the first object

TEST_F(DamagedObjects, EveryPrefixIsRefused) {
    const ByteScript document = OneOfEachKind();
    for (size_t length = 0; length < document.Bytes().size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_NE(FailureOf(document.Prefix(length), false), "");
        EXPECT_NE(FailureOf(document.Prefix(length), true), "");
    }
    EXPECT_EQ(FailureOf(document.Bytes(), false), "");
    EXPECT_EQ(FailureOf(document.Bytes(), true), "");
}

TEST_F(DamagedObjects, AKindOfTheFuture) {
    ExpectRefused(ObjectHeader(1).Append(Framed(9, golden::StraightCurve())).Append(DocumentEnd()),
                  "object 1, byte 16: object kind 9 is not known", "object kind 9 is not known");
}

// 410 bytes hold 20 of the smallest objects, which have a kind in front of them here.
TEST_F(DamagedObjects, ACountThatTheFileHasNoRoomFor) {
    ExpectRefused(
        ObjectHeader(21).Append(CurveObject()).Append(MaterialObject()).Append(DocumentEnd()),
        "byte 8: it is too short for its 21 objects", "it is too short for its 21 objects");
}

TEST_F(DamagedObjects, AHandleWithoutAnObject) {
    ExpectRefused(ObjectHeader(1).Append(Framed(2, golden::NoObject())).Append(DocumentEnd()),
                  "object 1, byte 60: an object is missing", "an object is missing");
}

TEST_F(DamagedObjects, ASurfaceInPlaceOfACurve) {
    ExpectRefused(
        ObjectHeader(1).Append(Framed(2, golden::WeightedSurface())).Append(DocumentEnd()),
        "object 1, byte 24: ON_NurbsSurface is not derived from ON_Curve", "an object is missing");
}

// What is behind the object in its frame, or in front of its end, is nobody's.
TEST_F(DamagedObjects, AFrameThatIsLongerThanItsObject) {
    ExpectRefused(ObjectHeader(1)
                      .Append(Framed(2, golden::StraightCurve().OneByte(0, "behind")))
                      .Append(DocumentEnd()),
                  "object 1, byte 225: an object does not end with its frame",
                  "an object does not end with its frame");
    ExpectRefused(ObjectHeader(1)
                      .Append(Framed(4, golden::OakMaterial().OneByte(0, "behind")))
                      .Append(DocumentEnd()),
                  "object 1, byte 165: an object does not end with its frame",
                  "an object does not end with its frame");
}

TEST_F(DamagedObjects, AFrameThatIsShorterThanItsObject) {
    ExpectRefused(ObjectHeader(1)
                      .Dword(3, "kind: surface")
                      .Dword(308, "length")
                      .Append(golden::WeightedSurface())
                      .Append(DocumentEnd()),
                  "object 1, byte 333: an object does not end with its frame",
                  "an object does not end with its frame");
}

TEST_F(DamagedObjects, AFrameThatIsLongerThanTheFile) {
    ExpectRefused(ObjectHeader(1)
                      .Dword(4, "kind: material")
                      .Dword(0xFFFFFFFF, "length")
                      .Append(golden::OakMaterial())
                      .Append(DocumentEnd()),
                  "object 1, byte 165: an object does not end with its frame",
                  "an object does not end with its frame");
}

TEST_F(DamagedObjects, AMaterialOfALaterForm) {
    Bytes bytes = ObjectHeader(1).Append(MaterialObject()).Append(DocumentEnd()).Bytes();
    bytes[kFirst + 8] = 0x21;
    EXPECT_EQ(FailureOf(bytes, false),
              "damaged document: object 1, byte 24: a material of version 2");
}

#if defined(VERIDANE_OPENNURBS_API)  // the embedded kernel, which takes any bytes

TEST_F(DamagedObjects, WhateverBitIsFlippedASafeDocumentIsLoadedDescribedAndStored) {
    size_t refusedCount = 0;
    size_t unreadableCount = 0;
    size_t loadedCount = 0;
    WithEachBitFlipped(OneOfEachKind().Bytes(), [&](const Bytes& bytes, size_t) {
        const bool isSafe = IsSafe(bytes);
        const std::string failure = FailureOf(bytes, false);
        if (!isSafe) {
            ++refusedCount;
            ASSERT_NE(failure, "");
        } else if (!failure.empty()) {
            ++unreadableCount;
            ASSERT_EQ(failure, "damaged document: an object is missing");
        } else {
            ++loadedCount;
            ASSERT_NE(Host::DescribeDocument(loaded_, Path("damaged.vrd")), "");
            ExpectStoredAsLoadable();
        }
    });
    // Nothing is checked and all is taken in boxes, knots, control points, checksums and colours.
    EXPECT_GT(loadedCount, 8u * (2 * 48 + 8 * 8 + 20 * 8 + 4 * 4 + 4 * 4));
    EXPECT_GT(unreadableCount, 0u);
    EXPECT_GT(storedCount_, loadedCount);
    EXPECT_GT(unstorableCount_, 0u) << "an object that openNURBS leaves empty";
    // Magic word, format, count, kinds, lengths, the class and its name, ids and the end mark.
    EXPECT_GT(refusedCount, 8u * (4 + 4 + 8 + 5 * 4 + 3 * 4 + 13 + 2 * 20 + 4) - 100);
}

TEST_F(DamagedObjects, WhateverBitIsFlippedInATrustedObjectLoadingEnds) {
    const size_t begin = kFirst + 32;
    const size_t end = begin + 209 + 317 + 181;
    size_t loadedCount = 0;
    size_t failedCount = 0;
    WithEachBitFlipped(OneOfEachKind().Bytes(), [&](const Bytes& bytes, size_t bit) {
        if (bit / 8 < begin || bit / 8 >= end)
            return;
        if (!FailureOf(bytes, true).empty()) {
            ++failedCount;
            return;
        }
        ++loadedCount;
        ASSERT_NE(Host::DescribeDocument(loaded_, Path("damaged.vrd")), "");
    });
    EXPECT_GT(loadedCount, 8u * (2 * 48 + 8 * 8 + 20 * 8 + 4 * 4 + 4 * 4));
    EXPECT_GT(failedCount, 8u * 3 * (4 + 4));
}

#endif

}  // namespace
}  // namespace Vr::test
