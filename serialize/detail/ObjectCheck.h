#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "serialize/detail/CheckContext.h"
#include "serialize/detail/MeshBodyCheck.h"

namespace Vr::detail {

/// Checks objects by the grammar of `CArchive`, and keeps what its numbers stand for.
class ObjectCheck {
public:
    explicit ObjectCheck(CheckContext& context) : context_(context), bodies_(context) {}

    /// Passes over one object, as `CArchive::ReadObject(wanted)` would load it.
    CheckedObject Object(const CRuntimeClass* wanted);

private:
    /// What a number stands for: a class, or an object of it.
    struct Entry {
        const CRuntimeClass* runtimeClass;
        bool isClass;
    };

    CheckedObject Reference(uint64_t number, const CRuntimeClass* wanted);
    CheckedObject NewObject(const CRuntimeClass* stored, const CRuntimeClass* wanted);
    [[nodiscard]] const CRuntimeClass* NewClass();
    [[nodiscard]] const CRuntimeClass* FindClass(uint64_t number);
    [[nodiscard]] bool IsWanted(const CRuntimeClass* stored, const CRuntimeClass* wanted);
    void NoteSchema(WORD schema, uint64_t offset);

    CheckContext& context_;
    MeshBodyCheck bodies_;
    std::vector<Entry> entries_ = {{nullptr, false}};  // By number; 0 is the null object.
    std::optional<WORD> schema_;                       // Of the first object.
    uint64_t tagOffset_ = 0;
};

}  // namespace Vr::detail
