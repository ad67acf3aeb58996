// Follows the body as it is loaded. Coordinates, colours and UVs may hold anything, so they are only
// counted; of an index array the greatest number is kept, which later references are compared by.

#include "serialize/detail/MeshBodyCheck.h"

#include <algorithm>

#include "serialize/detail/GreatestNumber.h"
#include "serialize/detail/MeshFormat.h"

namespace Vr::detail {

namespace {

constexpr uint64_t kAngleBytes = 8;
constexpr uint64_t kPointBytes = 24;
constexpr uint64_t kColorBytes = 4;
constexpr uint64_t kUVBytes = 16;
constexpr uint64_t kNumberBytes = 8;
constexpr uint64_t kTripleBytes = 24;

}  // namespace

bool MeshBodyCheck::Body(bool hasUVEnvelope) {
    Handle vertices, normals, colors, triangles, normalNumbers, colorNumbers, uvs;
    const NumberRole corners = {
        ArrayKind::Triangles,    &vertices, nullptr, CheckCode::VertexNumber,
        CheckCode::VertexNumber, "vertex"};
    const NumberRole normalRole = {
        ArrayKind::Numbers,          &normals, &triangles, CheckCode::NormalNumber,
        CheckCode::NormalListLength, "normal"};
    const NumberRole colorRole = {
        ArrayKind::Numbers,         &colors, &triangles, CheckCode::ColorNumber,
        CheckCode::ColorListLength, "colour"};
    return context_.Skip(kAngleBytes) && Values(ArrayKind::Points, vertices) &&
           Values(ArrayKind::Vectors, normals) && Values(ArrayKind::Colors, colors) &&
           Numbers(corners, triangles) && Numbers(normalRole, normalNumbers) &&
           Numbers(colorRole, colorNumbers) && (!hasUVEnvelope || Values(ArrayKind::UVs, uvs));
}

bool MeshBodyCheck::Values(ArrayKind kind, Handle& handle) {
    if (!Envelope(kind, handle))
        return false;
    if (!handle.isNew)
        return true;
    // Loading does not notice where colours and UVs end early: it would fill up all of a false count.
    const bool isNoticed = kind == ArrayKind::Points || kind == ArrayKind::Vectors;
    const uint64_t elementBytes = isNoticed                   ? kPointBytes
                                  : kind == ArrayKind::Colors ? kColorBytes
                                                              : kUVBytes;
    return Count(isNoticed ? CheckCode::ElementCount : CheckCode::UnnoticedCount, elementBytes,
                 handle) &&
           context_.Skip(handle.array->count * elementBytes);
}

bool MeshBodyCheck::Numbers(const NumberRole& role, Handle& handle) {
    if (!Envelope(role.kind, handle))
        return false;
    if (!handle.isNew) {
        CheckReference(role, handle);
        return true;
    }
    uint64_t elementBytes = kTripleBytes;
    if (role.kind == ArrayKind::Numbers && !Form(elementBytes))
        return false;
    if (!Count(CheckCode::ElementCount, elementBytes, handle))
        return false;
    CheckLength(role, context_.LastOffset(), handle);
    return Scan(role, handle.array->count * (elementBytes / kNumberBytes), handle);
}

bool MeshBodyCheck::Envelope(ArrayKind kind, Handle& handle) {
    BYTE presence = 0;
    if (!context_.Read(presence))
        return false;
    if (presence > 1)
        context_.Report(CheckCode::PresenceByte, context_.LastOffset(), [&] {
            return "presence byte " + std::to_string(presence) + " stands for no array";
        });
    if (presence != 1)
        return true;
    uint64_t number = 0;
    if (!context_.Read(number))
        return false;
    handle.offset = context_.LastOffset();
    const auto known = arrayOfNumber_.find(number);
    if (known != arrayOfNumber_.end()) {
        handle.isWrong = known->second.kind != kind;
        if (handle.isWrong)
            context_.Report(CheckCode::ElementType, handle.offset, [&] {
                return "array " + std::to_string(number) + " holds " + NameOf(known->second.kind) +
                       " and is used for " + NameOf(kind);
            });
        else
            handle.array = &known->second;
        return true;
    }
    if (arrayOfNumber_.size() >= context_.Limits().arrays)
        return context_.Stop(CheckCode::ArrayLimit, handle.offset, [&] {
            return "more than " + std::to_string(context_.Limits().arrays) + " arrays";
        });
    const uint64_t next = arrayOfNumber_.size() + 1;
    if (number != next)
        context_.Report(CheckCode::ArrayNumber, handle.offset, [&] {
            return "a new array has number " + std::to_string(number) + " instead of " +
                   std::to_string(next);
        });
    handle.array = &arrayOfNumber_.emplace(number, Array{kind}).first->second;
    handle.isNew = true;
    ++context_.Result().arrayCount;
    return true;
}

bool MeshBodyCheck::Form(uint64_t& elementBytes) {
    BYTE flag = 0;
    if (!context_.Read(flag))
        return false;
    if (flag > kPerTriangleFlag)
        context_.Report(CheckCode::FormByte, context_.LastOffset(), [&] {
            return "form byte " + std::to_string(flag) + " stands for the per-triangle form";
        });
    elementBytes = flag == kPerVertexFlag ? kTripleBytes : kNumberBytes;
    return true;
}

bool MeshBodyCheck::Count(CheckCode code, uint64_t elementBytes, Handle& handle) {
    uint64_t& count = handle.array->count;
    if (!context_.Read(count))
        return false;
    if (count <= context_.Remaining() / elementBytes)
        return true;
    return context_.Stop(code, context_.LastOffset(), [&] {
        return std::to_string(count) + " " + NameOf(handle.array->kind) + " of " +
               std::to_string(elementBytes) + " bytes do not fit the " +
               std::to_string(context_.Remaining()) + " bytes that are left";
    });
}

bool MeshBodyCheck::Scan(const NumberRole& role, uint64_t numberCount, Handle& handle) {
    const std::optional<uint64_t> bound = CountBehind(*role.addressed);
    bool isLooking = bound.has_value();
    uint64_t& greatest = handle.array->greatestNumber;
    while (numberCount > 0) {
        const CheckSource::Piece piece = context_.Take(kNumberBytes, numberCount * kNumberBytes);
        if (piece.count == 0)
            return false;
        const size_t pieceNumbers = piece.count / kNumberBytes;
        const uint64_t greatestInPiece = GreatestNumber(piece.bytes, pieceNumbers);
        if (isLooking && greatestInPiece >= *bound) {
            const size_t place = FindNumberFrom(*bound, piece.bytes);
            ReportNumber(role, context_.LastOffset() + place * kNumberBytes,
                         NumberAt(piece.bytes, place));
            isLooking = false;
        }
        greatest = (std::max)(greatest, greatestInPiece);
        numberCount -= pieceNumbers;
    }
    return true;
}

void MeshBodyCheck::CheckReference(const NumberRole& role, const Handle& handle) {
    if (handle.array == nullptr)
        return;
    CheckLength(role, handle.offset, handle);
    const std::optional<uint64_t> bound = CountBehind(*role.addressed);
    if (handle.array->count > 0 && bound && handle.array->greatestNumber >= *bound)
        ReportNumber(role, handle.offset, handle.array->greatestNumber);
}

void MeshBodyCheck::CheckLength(const NumberRole& role, uint64_t offset, const Handle& handle) {
    // Without triangles nobody walks along the list.
    if (role.triangles == nullptr || role.triangles->array == nullptr)
        return;
    const uint64_t triangleCount = role.triangles->array->count;
    if (handle.array->count != triangleCount)
        context_.Report(role.lengthCode, offset, [&] {
            return std::to_string(handle.array->count) + " entries of " + role.name +
                   " numbers for " + std::to_string(triangleCount) + " triangles";
        });
}

void MeshBodyCheck::ReportNumber(const NumberRole& role, uint64_t offset, uint64_t number) {
    context_.Report(role.numberCode, offset, [&] {
        return std::string(role.name) + " number " + std::to_string(number) + " where there are " +
               std::to_string(*CountBehind(*role.addressed));
    });
}

// Returns how many elements a role has; nothing where that was found wrong already.
std::optional<uint64_t> MeshBodyCheck::CountBehind(const Handle& handle) {
    if (handle.isWrong)
        return std::nullopt;
    return handle.array != nullptr ? handle.array->count : 0;
}

const char* MeshBodyCheck::NameOf(ArrayKind kind) {
    // In the order of the kinds.
    static constexpr const char* kNames[] = {"vertices",  "normals",       "colours",
                                             "triangles", "index entries", "UVs"};
    return kNames[static_cast<size_t>(kind)];
}

}  // namespace Vr::detail
