#include <afx.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include "ExceptionMatchers.h"
#include "TestClasses.h"
#include "golden/AfxArchives.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::MemoryFile;
using Bytes = std::vector<BYTE>;

template <class Value, class = void>
struct CanPut : std::false_type {};
template <class Value>
struct CanPut<Value, std::void_t<decltype(std::declval<CArchive&>() << std::declval<Value>())>>
    : std::true_type {};

template <class Value, class = void>
struct CanGet : std::false_type {};
template <class Value>
struct CanGet<Value, std::void_t<decltype(std::declval<CArchive&>() >> std::declval<Value&>())>>
    : std::true_type {};

enum PlainEnumeration { kPlainZero, kPlainOne };
enum ByteEnumeration : BYTE { kByteZero };
enum WordEnumeration : WORD { kWordZero };
enum class ScopedEnumeration { kZero };

template <class Value>
std::size_t StoredSize(Value value) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << value;
    archive.Close();
    return file.Bytes().size();
}

template <class Value>
Bytes Stored(Value value) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << value;
    archive.Close();
    return file.Bytes();
}

template <class Value>
Value Loaded(const Bytes& bytes) {
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    Value value{};
    archive >> value;
    return value;
}

TEST(CArchiveScalars, WriteTheGoldenBytes) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << true << false << 'A' << static_cast<BYTE>(0xAB) << static_cast<short>(-2)
            << static_cast<WORD>(0xBEEF) << static_cast<WORD>(0x3042) << -3 << 0xDEADBEEFU
            << static_cast<LONG>(-4) << static_cast<DWORD>(0x01020304) << static_cast<LONGLONG>(-5)
            << static_cast<ULONGLONG>(0x1122334455667788) << 1.5F << -2.25;
    archive.Close();
    EXPECT_TRUE(Vr::golden::Scalars().Matches(file.Bytes()));
}

TEST(CArchiveScalars, ReadTheGoldenBytes) {
    MemoryFile file(Vr::golden::Scalars().Bytes());
    CArchive archive(&file, CArchive::load);
    bool yes = false;
    bool no = true;
    char character = 0;
    BYTE byte = 0;
    short shortNumber = 0;
    WORD word = 0;
    WORD unit = 0;
    int number = 0;
    unsigned unsignedNumber = 0;
    LONG longNumber = 0;
    DWORD doubleWord = 0;
    LONGLONG longLongNumber = 0;
    ULONGLONG unsignedLongLong = 0;
    float single = 0.0F;
    double precise = 0.0;
    archive >> yes >> no >> character >> byte >> shortNumber >> word >> unit >> number >>
        unsignedNumber >> longNumber >> doubleWord >> longLongNumber >> unsignedLongLong >>
        single >> precise;
    EXPECT_TRUE(yes);
    EXPECT_FALSE(no);
    EXPECT_EQ('A', character);
    EXPECT_EQ(0xAB, byte);
    EXPECT_EQ(-2, shortNumber);
    EXPECT_EQ(0xBEEF, word);
    EXPECT_EQ(0x3042, unit);
    EXPECT_EQ(-3, number);
    EXPECT_EQ(0xDEADBEEFU, unsignedNumber);
    EXPECT_EQ(-4, longNumber);
    EXPECT_EQ(0x01020304U, doubleWord);
    EXPECT_EQ(-5, longLongNumber);
    EXPECT_EQ(0x1122334455667788U, unsignedLongLong);
    EXPECT_EQ(1.5F, single);
    EXPECT_EQ(-2.25, precise);
    archive.Close();
    EXPECT_EQ(file.GetLength(), file.GetPosition());
}

TEST(CArchiveScalars, TypesOfTheWindowsNamesHaveTheirWidth) {
    EXPECT_EQ(1U, sizeof(BYTE));
    EXPECT_EQ(2U, sizeof(WORD));
    EXPECT_EQ(4U, sizeof(DWORD));
    EXPECT_EQ(4U, sizeof(LONG));
    EXPECT_EQ(4U, sizeof(UINT));
    EXPECT_EQ(4U, sizeof(INT));
    EXPECT_EQ(4U, sizeof(BOOL));
    EXPECT_EQ(8U, sizeof(LONGLONG));
    EXPECT_EQ(8U, sizeof(ULONGLONG));
    EXPECT_TRUE(std::is_signed_v<LONG>);
    EXPECT_TRUE(std::is_unsigned_v<DWORD>);
    EXPECT_EQ(1, TRUE);
    EXPECT_EQ(0, FALSE);
}

TEST(CArchiveScalars, PromotedTypesTakeFourBytes) {
    EXPECT_EQ(4U, StoredSize(static_cast<signed char>(-1)));
    EXPECT_EQ(4U, StoredSize(static_cast<std::int8_t>(-1)));
    EXPECT_EQ(4U, StoredSize(u'x'));
    EXPECT_EQ(4U, StoredSize(U'x'));
    EXPECT_EQ(4U, StoredSize(kPlainOne));
    EXPECT_EQ(4U, StoredSize(static_cast<BOOL>(TRUE)));
    EXPECT_EQ((Bytes{0xFF, 0xFF, 0xFF, 0xFF}), Stored(static_cast<signed char>(-1)));
}

TEST(CArchiveScalars, EnumerationsOfAFixedTypeTakeItsWidth) {
    EXPECT_EQ(1U, StoredSize(kByteZero));
    EXPECT_EQ(2U, StoredSize(kWordZero));
    EXPECT_FALSE(CanPut<ScopedEnumeration>::value);
}

TEST(CArchiveScalars, AnyNonzeroByteReadsAsTrue) {
    EXPECT_TRUE(Loaded<bool>({0x01}));
    EXPECT_TRUE(Loaded<bool>({0x80}));
    EXPECT_FALSE(Loaded<bool>({0x00}));
}

TEST(CArchiveScalars, FloatingPointBitsAreCopiedAsTheyAre) {
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0x80}), Stored(-0.0));
    // A signalling NaN with a payload.
    const Bytes nan = {0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0xF3, 0x7F};
    const double loaded = Loaded<double>(nan);
    Bytes bits(sizeof(loaded));
    std::memcpy(bits.data(), &loaded, sizeof(loaded));
    EXPECT_EQ(nan, bits);
    EXPECT_EQ((Bytes{1, 0, 0, 0, 0, 0, 0, 0}), Stored(std::numeric_limits<double>::denorm_min()));
}

// Where long has eight bytes, four (as on Windows) and eight (its own) would contradict each other.
TEST(CArchiveScalars, LongDoesNotCompileWhereItsWidthIsNotTheStoredOne) {
    constexpr bool kIsStoredWidth = sizeof(long) == 4;
    EXPECT_EQ(kIsStoredWidth, CanPut<long>::value);
    EXPECT_EQ(kIsStoredWidth, CanPut<unsigned long>::value);
    EXPECT_EQ(kIsStoredWidth, CanGet<long>::value);
    EXPECT_EQ(kIsStoredWidth, CanGet<unsigned long>::value);
}

TEST(CArchiveScalars, WideCharacterDoesNotCompileWhereItHasFourBytes) {
    constexpr bool kIsStoredWidth = sizeof(wchar_t) == 2;
    EXPECT_EQ(kIsStoredWidth, CanPut<wchar_t>::value);
    EXPECT_EQ(kIsStoredWidth, CanGet<wchar_t>::value);
}

// MFC stores any other pointer as a bool of one byte.
TEST(CArchiveScalars, PointersToAnythingButObjectsDoNotCompile) {
    EXPECT_FALSE(CanPut<const char*>::value);
    EXPECT_FALSE(CanPut<void*>::value);
    EXPECT_FALSE(CanPut<const double*>::value);
    EXPECT_FALSE(CanPut<std::nullptr_t>::value);
    EXPECT_TRUE(CanPut<CObject*>::value);
    EXPECT_TRUE(CanPut<const CObject*>::value);
    EXPECT_TRUE(CanPut<CTestDerivedMesh*>::value);
    EXPECT_TRUE(CanPut<const CTestItem*>::value);
}

TEST(CArchiveScalars, ReadingWantsTheExactType) {
    EXPECT_TRUE(CanGet<int>::value);
    EXPECT_TRUE(CanGet<LONGLONG>::value);
    EXPECT_TRUE(CanGet<CTestItem*>::value);
    EXPECT_TRUE(CanGet<CObject*>::value);
    EXPECT_TRUE(CanGet<const CObject*>::value);
    EXPECT_FALSE(CanGet<signed char>::value);
    EXPECT_FALSE(CanGet<char16_t>::value);
    EXPECT_FALSE(CanGet<PlainEnumeration>::value);
    EXPECT_FALSE(CanGet<char*>::value);
}

struct Misuse {
    const char* name;
    void (*code)(CArchive&);
};

template <class Value>
void Put(CArchive& archive) {
    archive << Value();
}

template <class Value>
void Get(CArchive& archive) {
    Value value{};
    archive >> value;
}

class WritingWhileLoading : public ::testing::TestWithParam<Misuse> {};
TEST_P(WritingWhileLoading, IsReadOnly) {
    MemoryFile file(Bytes(100, 1));
    file.SetFilePath("mesh.doc");
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(ArchiveFailure(CArchiveException::readOnly, "mesh.doc"),
              ThrownBy([&] { GetParam().code(archive); }));
    // Also with bytes in the buffer, which would take the value otherwise.
    BYTE first = 0;
    archive >> first;
    EXPECT_EQ(ArchiveFailure(CArchiveException::readOnly, "mesh.doc"),
              ThrownBy([&] { GetParam().code(archive); }));
    archive.Close();
    EXPECT_EQ(1U, file.GetPosition());
    EXPECT_EQ(Bytes(100, 1), file.Bytes());
}
INSTANTIATE_TEST_SUITE_P(
    CArchive, WritingWhileLoading,
    ::testing::Values(
        Misuse{"Bool", &Put<bool>}, Misuse{"Char", &Put<char>}, Misuse{"Byte", &Put<BYTE>},
        Misuse{"Short", &Put<short>}, Misuse{"Word", &Put<WORD>}, Misuse{"Int", &Put<int>},
        Misuse{"Unsigned", &Put<unsigned>}, Misuse{"LongLong", &Put<LONGLONG>},
        Misuse{"UnsignedLongLong", &Put<ULONGLONG>}, Misuse{"Float", &Put<float>},
        Misuse{"Double", &Put<double>},
        Misuse{"Raw", [](CArchive& archive) { archive.Write("x", 1); }},
        Misuse{"Null", [](CArchive& archive) { archive.WriteObject(nullptr); }},
        Misuse{"Object",
               [](CArchive& archive) {
                   const CTestItem item;
                   archive << &item;
               }},
        Misuse{"Class", [](CArchive& archive) { archive.WriteClass(RUNTIME_CLASS(CTestItem)); }}),
    [](const auto& instance) { return instance.param.name; });

class ReadingWhileStoring : public ::testing::TestWithParam<Misuse> {};
TEST_P(ReadingWhileStoring, IsWriteOnly) {
    MemoryFile file(Bytes(100, 1));
    file.SetFilePath("mesh.doc");
    CArchive archive(&file, CArchive::store);
    archive << 7;
    EXPECT_EQ(ArchiveFailure(CArchiveException::writeOnly, "mesh.doc"),
              ThrownBy([&] { GetParam().code(archive); }));
    archive.Close();
    EXPECT_EQ(0U, file.ReadCalls());
    EXPECT_EQ(std::vector<UINT>{4}, file.WriteSizes());
}
INSTANTIATE_TEST_SUITE_P(
    CArchive, ReadingWhileStoring,
    ::testing::Values(Misuse{"Bool", &Get<bool>}, Misuse{"Char", &Get<char>},
                      Misuse{"Byte", &Get<BYTE>}, Misuse{"Short", &Get<short>},
                      Misuse{"Word", &Get<WORD>}, Misuse{"Int", &Get<int>},
                      Misuse{"Unsigned", &Get<unsigned>}, Misuse{"LongLong", &Get<LONGLONG>},
                      Misuse{"UnsignedLongLong", &Get<ULONGLONG>}, Misuse{"Float", &Get<float>},
                      Misuse{"Double", &Get<double>},
                      Misuse{"Raw",
                             [](CArchive& archive) {
                                 BYTE byte = 0;
                                 archive.Read(&byte, 1);
                             }},
                      Misuse{"Ensured",
                             [](CArchive& archive) {
                                 BYTE byte = 0;
                                 archive.EnsureRead(&byte, 1);
                             }},
                      Misuse{"Fill", [](CArchive& archive) { archive.FillBuffer(1); }},
                      Misuse{"Object", [](CArchive& archive) { archive.ReadObject(nullptr); }},
                      Misuse{"Class", [](CArchive& archive) { archive.ReadClass(); }}),
    [](const auto& instance) { return instance.param.name; });

class EveryWidthCutShort
    : public ::testing::TestWithParam<std::pair<std::size_t, void (*)(CArchive&)>> {};
TEST_P(EveryWidthCutShort, EndsInEndOfFile) {
    const std::size_t width = GetParam().first;
    const auto get = GetParam().second;
    for (std::size_t available = 0; available < width; ++available) {
        MemoryFile file{Bytes(available)};
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(ArchiveFailure(CArchiveException::endOfFile), ThrownBy([&] { get(archive); }))
            << available << " of " << width << " bytes";
    }
    MemoryFile whole{Bytes(width)};
    CArchive archive(&whole, CArchive::load);
    EXPECT_EQ(Thrown(), ThrownBy([&] { get(archive); }));
}
INSTANTIATE_TEST_SUITE_P(CArchive, EveryWidthCutShort,
                         ::testing::Values(std::pair(1U, &Get<bool>), std::pair(1U, &Get<char>),
                                           std::pair(1U, &Get<BYTE>), std::pair(2U, &Get<short>),
                                           std::pair(2U, &Get<WORD>), std::pair(4U, &Get<int>),
                                           std::pair(4U, &Get<unsigned>),
                                           std::pair(8U, &Get<LONGLONG>),
                                           std::pair(8U, &Get<ULONGLONG>),
                                           std::pair(4U, &Get<float>),
                                           std::pair(8U, &Get<double>)));

// Random values and blocks through archives of random buffer sizes, against a writer that appends
// each value's bytes to a vector. What went in must come out through another buffer size, from a
// file that reads in pieces, with flushes in between.
class AnyBufferSize : public ::testing::TestWithParam<unsigned> {};
TEST_P(AnyBufferSize, GivesTheSameStream) {
    const unsigned seed = GetParam();
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };

    struct Operation {
        unsigned kind;
        Bytes bytes;
    };
    std::vector<Operation> operations;
    Bytes expected;
    for (int count = 0; count < 300; ++count) {
        const unsigned kind = below(6);
        const std::size_t widths[] = {1, 2, 4, 8, below(50), below(5000)};
        Bytes bytes(widths[kind]);
        for (BYTE& byte : bytes) {
            byte = static_cast<BYTE>(random());
        }
        expected.insert(expected.end(), bytes.begin(), bytes.end());
        operations.push_back({kind, bytes});
    }

    std::vector<BYTE> callersBuffer(128 + below(600));
    void* const buffer = below(2) == 0 ? callersBuffer.data() : nullptr;
    const int bufferSize =
        buffer != nullptr ? static_cast<int>(callersBuffer.size()) : static_cast<int>(below(9000));
    MemoryFile file;
    {
        CArchive archive(&file, CArchive::store, bufferSize, buffer);
        for (const auto& [kind, bytes] : operations) {
            const auto put = [&archive, &source = bytes](auto value) {
                std::memcpy(&value, source.data(), sizeof(value));
                archive << value;
            };
            switch (kind) {
                case 0:
                    put(BYTE());
                    break;
                case 1:
                    put(WORD());
                    break;
                case 2:
                    put(DWORD());
                    break;
                case 3:
                    put(ULONGLONG());
                    break;
                default:
                    archive.Write(bytes.data(), static_cast<UINT>(bytes.size()));
            }
            if (below(20) == 0) {
                archive.Flush();
            }
        }
        archive.Close();
    }
    ASSERT_EQ(expected, file.Bytes());

    file.SeekToBegin();
    if (below(2) == 0) {
        file.LimitReads(1 + below(300));
    }
    CArchive archive(&file, CArchive::load, static_cast<int>(below(9000)));
    for (const auto& [kind, bytes] : operations) {
        Bytes loaded(bytes.size());
        const auto get = [&](auto value) {
            archive >> value;
            std::memcpy(loaded.data(), &value, sizeof(value));
        };
        switch (kind) {
            case 0:
                get(BYTE());
                break;
            case 1:
                get(WORD());
                break;
            case 2:
                get(DWORD());
                break;
            case 3:
                get(ULONGLONG());
                break;
            default:
                archive.EnsureRead(loaded.data(), static_cast<UINT>(loaded.size()));
        }
        ASSERT_EQ(bytes, loaded);
        if (below(20) == 0) {
            archive.Flush();
        }
    }
    archive.Close();
    EXPECT_EQ(file.GetLength(), file.GetPosition());
}
INSTANTIATE_TEST_SUITE_P(CArchive, AnyBufferSize, ::testing::Range(1U, 41U));

}  // namespace
