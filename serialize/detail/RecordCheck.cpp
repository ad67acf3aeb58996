// A record is a chunk around the class's identifier and the object's data; its length says where the
// next value begins, whatever is inside. docs/stream-format.md has the layout.

#include "serialize/detail/RecordCheck.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace Vr::detail {

namespace {

constexpr DWORD kRecordChunk = 0x00027FFA;
constexpr DWORD kClassIdChunk = 0x0002FFFB;
constexpr DWORD kClassDataChunk = 0x0002FFFC;
constexpr DWORD kEndChunk = 0x80027FFF;
constexpr DWORD kShortChunkBit = 0x80000000;
constexpr DWORD kClassIdBytes = 20;  // with its checksum
constexpr uint64_t kChecksumBytes = 4;

// Classes whose data has no chunks inside. A chunk inside may claim a length that leads the reader far
// behind the record, and further than its 32-bit positions can tell.
constexpr std::string_view kFlatClasses[] = {"ON_NurbsCurve",   "ON_LineCurve",
                                             "ON_ArcCurve",     "ON_PolylineCurve",
                                             "ON_NurbsSurface", "ON_PlaneSurface"};

bool IsFlat(std::string_view className) {
    return std::find(std::begin(kFlatClasses), std::end(kFlatClasses), className) !=
           std::end(kFlatClasses);
}

struct ChunkHeader {
    DWORD typecode = 0;
    DWORD byteCount = 0;
};

/// One record, from its first byte.
class RecordCheck {
public:
    explicit RecordCheck(CheckContext& context) : context_(context), begin_(context.Position()) {}

    CheckedObject Check(std::string_view baseName) {
        ChunkHeader record;
        if (!ReadHeader(record, kRecordChunk, context_.Remaining()))
            return CheckedObject::None;
        end_ = context_.Position() + record.byteCount;
        ON_UUID id = ON_nil_uuid;
        if (!ReadClassId(id))
            return CheckedObject::None;
        if (id == ON_nil_uuid)
            return SkipRest() ? CheckedObject::Null : CheckedObject::None;
        const ON_ClassId* const storedClass = ON_ClassId::ClassId(id);
        if (storedClass == nullptr) {
            context_.Report(CheckCode::UnknownRecord, begin_, [] {
                return std::string("an object of a class that openNURBS does not know");
            });
            return SkipRest() ? CheckedObject::Null : CheckedObject::None;
        }
        CheckClass(*storedClass, baseName);
        return CheckData() ? CheckedObject::New : CheckedObject::None;
    }

private:
    uint64_t Left() const { return end_ - context_.Position(); }
    bool SkipRest() { return context_.Skip(Left()); }

    void CheckClass(const ON_ClassId& storedClass, std::string_view baseName) {
        const std::string name = storedClass.ClassName();
        if (storedClass.BaseClassName() != baseName)
            context_.Report(CheckCode::RecordClass, begin_,
                            [&] { return name + " is not derived from " + std::string(baseName); });
        if (!IsFlat(name))
            context_.Report(CheckCode::NestedRecord, begin_,
                            [&] { return name + " may hold further records"; });
    }

    // Walks along the chunks behind the class's identifier, as the reader does up to the end mark.
    bool CheckData() {
        ChunkHeader chunk;
        if (!ReadHeader(chunk, kClassDataChunk, Left()) || !context_.Skip(chunk.byteCount))
            return false;
        while (chunk.typecode != kEndChunk)
            if (!ReadAnyHeader(chunk, Left()) || !context_.Skip(chunk.byteCount))
                return false;
        return SkipRest();
    }

    bool ReadClassId(ON_UUID& id) {
        ChunkHeader header;
        if (!ReadHeader(header, kClassIdChunk, Left()))
            return false;
        if (header.byteCount != kClassIdBytes)
            return StopAtFrame();
        static_assert(sizeof(id) == kClassIdBytes - kChecksumBytes);
        return context_.Read(&id, sizeof(id)) && context_.Skip(kChecksumBytes);
    }

    // Reads the header of a chunk that lies within so many bytes.
    bool ReadAnyHeader(ChunkHeader& header, uint64_t byteCount) {
        if (byteCount < sizeof(header) && end_ > 0)
            return StopAtFrame();
        if (!context_.Read(header.typecode) || !context_.Read(header.byteCount))
            return false;
        if ((header.typecode & kShortChunkBit) != 0)
            header.byteCount = 0;  // a value, and no body
        return header.byteCount <= byteCount - sizeof(header) || StopAtFrame();
    }
    bool ReadHeader(ChunkHeader& header, DWORD typecode, uint64_t byteCount) {
        return ReadAnyHeader(header, byteCount) && (header.typecode == typecode || StopAtFrame());
    }

    bool StopAtFrame() {
        return context_.Stop(CheckCode::RecordFrame, begin_, [] {
            return std::string("the chunks of a record do not fit into each other");
        });
    }

    CheckContext& context_;
    uint64_t begin_;
    uint64_t end_ = 0;
};

}  // namespace

CheckedObject CheckRecord(CheckContext& context, const char* baseName) {
    return context.CanGoOn() ? RecordCheck(context).Check(baseName) : CheckedObject::None;
}

}  // namespace Vr::detail
