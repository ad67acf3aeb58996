#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "serialize/detail/CheckContext.h"

namespace Vr::detail {

/// Checks bodies of meshes, and keeps what the arrays of the archive are.
class MeshBodyCheck {
public:
    explicit MeshBodyCheck(CheckContext& context) : context_(context) {}

    /// Passes over one body.
    [[nodiscard]] bool Body(bool hasUVEnvelope);

private:
    enum class ArrayKind : uint8_t { Points, Vectors, Colors, Triangles, Numbers, UVs };

    /// An array of the archive, as far as later references need it.
    struct Array {
        ArrayKind kind;
        uint64_t count = 0;
        uint64_t greatestNumber = 0;  // Of an index array with elements.
    };

    /// One envelope.
    struct Handle {
        Array* array = nullptr;
        uint64_t offset = 0;   // Of the array number.
        bool isNew = false;    // The content follows.
        bool isWrong = false;  // There is an array, but of another kind.
    };

    /// What an index array says, and how it is reported.
    struct NumberRole {
        ArrayKind kind;
        const Handle* addressed;
        const Handle* triangles;  // Null for the triangles themselves.
        CheckCode numberCode;
        CheckCode lengthCode;
        const char* name;  // Of one addressed element.
    };

    [[nodiscard]] bool Values(ArrayKind kind, Handle& handle);
    [[nodiscard]] bool Numbers(const NumberRole& role, Handle& handle);
    [[nodiscard]] bool Envelope(ArrayKind kind, Handle& handle);
    [[nodiscard]] bool Count(CheckCode code, uint64_t elementBytes, Handle& handle);
    [[nodiscard]] bool Form(uint64_t& elementBytes);
    [[nodiscard]] bool Scan(const NumberRole& role, uint64_t numberCount, Handle& handle);
    void CheckReference(const NumberRole& role, const Handle& handle);
    void CheckLength(const NumberRole& role, uint64_t offset, const Handle& handle);
    void ReportNumber(const NumberRole& role, uint64_t offset, uint64_t number);
    static std::optional<uint64_t> CountBehind(const Handle& handle);
    static const char* NameOf(ArrayKind kind);

    CheckContext& context_;
    // Ordered: whoever chooses the numbers cannot make the look-ups slow.
    std::map<uint64_t, Array> arrayOfNumber_;
};

}  // namespace Vr::detail
