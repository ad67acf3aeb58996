// Strings go through the archive's buffer unit by unit; geometry values and objects through a bridge
// each.

#include "serialize/ValueSerializers.h"

#include <cassert>
#include <cstdint>

#include "mesh/detail/Throw.h"
#include "serialize/VrmOpenNurbsBinaryArchive.h"
#include "serialize/detail/ArchiveMode.h"

namespace Vr {

namespace {

constexpr uint32_t kReplacement = 0xFFFD;
constexpr bool kWideIsUtf32 = sizeof(wchar_t) == 4;

bool IsHighSurrogate(uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(uint32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

uint32_t CodePoint(wchar_t character) {
    const auto code = static_cast<uint32_t>(character);
    return kWideIsUtf32 && code > 0x10FFFF ? kReplacement : code;
}

ULONGLONG CountUnits(const std::wstring& text) {
    ULONGLONG count = text.size();
    for (const wchar_t character : text)
        count += CodePoint(character) > 0xFFFF ? 1U : 0U;
    return count;
}

// Joins each surrogate pair of `text` into one character, in place.
void JoinSurrogates(std::wstring& text) {
    size_t kept = 0;
    for (size_t position = 0; position < text.size(); ++position) {
        const auto unit = static_cast<uint32_t>(text[position]);
        const uint32_t next =
            position + 1 < text.size() ? static_cast<uint32_t>(text[position + 1]) : 0;
        if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
            text[kept++] =
                static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++position;
        } else {
            text[kept++] = text[position];
        }
    }
    text.resize(kept);
}

// The object of the next record, whatever its class; null where there is none.
std::shared_ptr<ON_Object> ReadAnyObject(VrmOpenNurbsBinaryArchive& bridge) {
    ON_Object* object = nullptr;
    try {
        bridge.ReadObject(&object);
    } catch (...) {
        delete object;
        throw;
    }
    return object ? std::shared_ptr<ON_Object>(object) : nullptr;
}

template <class Base>
void StoreOrLoadObject(CArchive& archive, std::shared_ptr<Base>& handle) {
    VrmOpenNurbsBinaryArchive bridge(archive);
    if (archive.IsStoring()) {
        bridge.WriteObject(static_cast<const ON_Object*>(handle.get()));
        return;
    }
    const auto object = ReadAnyObject(bridge);
    // Deliberate: not checked. Each class has one base, so that an object of any class stands at the
    // address of its base; the way over void says that no check is wanted.
    void* const address = object.get();
    handle = std::shared_ptr<Base>(object, static_cast<Base*>(address));
}

}  // namespace

CArchive& operator<<(CArchive& archive, const std::wstring& text) {
    detail::RequireStoring(archive);
    archive << CountUnits(text);
    for (const wchar_t character : text) {
        const uint32_t code = CodePoint(character);
        if (code > 0xFFFF) {
            archive << static_cast<WORD>(0xD800 + ((code - 0x10000) >> 10));
            archive << static_cast<WORD>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            archive << static_cast<WORD>(code);
        }
    }
    return archive;
}

CArchive& operator>>(CArchive& archive, std::wstring& text) {
    detail::RequireLoading(archive);
    ULONGLONG count = 0;
    archive >> count;
    if (count > text.max_size())
        detail::ThrowStringTooLong();
    text.resize(static_cast<size_t>(count));
    for (wchar_t& character : text) {
        WORD unit = 0;
        archive >> unit;
        character = static_cast<wchar_t>(unit);
    }
    if constexpr (kWideIsUtf32)
        JoinSurrogates(text);
    return archive;
}

CArchive& operator<<(CArchive& archive, const ON_2dPoint& point) {
    detail::RequireStoring(archive);
    VrmOpenNurbsBinaryArchive(archive).WritePoint(point);
    return archive;
}

CArchive& operator>>(CArchive& archive, ON_2dPoint& point) {
    detail::RequireLoading(archive);
    VrmOpenNurbsBinaryArchive(archive).ReadPoint(point);
    return archive;
}

CArchive& operator<<(CArchive& archive, const ON_Color& color) {
    detail::RequireStoring(archive);
    VrmOpenNurbsBinaryArchive(archive).WriteColor(color);
    return archive;
}

CArchive& operator>>(CArchive& archive, ON_Color& color) {
    detail::RequireLoading(archive);
    VrmOpenNurbsBinaryArchive(archive).ReadColor(color);
    return archive;
}

CArchive& operator<<(CArchive& archive, const ON_Plane& plane) {
    detail::RequireStoring(archive);
    VrmOpenNurbsBinaryArchive(archive).WritePlane(plane);
    return archive;
}

CArchive& operator>>(CArchive& archive, ON_Plane& plane) {
    detail::RequireLoading(archive);
    VrmOpenNurbsBinaryArchive(archive).ReadPlane(plane);
    return archive;
}

CArchive& operator<<(CArchive& archive, const ON_Arc& arc) {
    detail::RequireStoring(archive);
    VrmOpenNurbsBinaryArchive(archive).WriteArc(arc);
    return archive;
}

CArchive& operator>>(CArchive& archive, ON_Arc& arc) {
    detail::RequireLoading(archive);
    VrmOpenNurbsBinaryArchive(archive).ReadArc(arc);
    return archive;
}

CArchive& operator<<(CArchive& archive, const ON_Xform& xf) {
    detail::RequireStoring(archive);
    VrmOpenNurbsBinaryArchive(archive).WriteXform(xf);
    return archive;
}

CArchive& operator>>(CArchive& archive, ON_Xform& xf) {
    detail::RequireLoading(archive);
    VrmOpenNurbsBinaryArchive(archive).ReadXform(xf);
    return archive;
}

CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Curve>& curve) {
    StoreOrLoadObject(archive, curve);
    return archive;
}

CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Surface>& surface) {
    StoreOrLoadObject(archive, surface);
    return archive;
}

CArchive& operator&(CArchive& archive, std::shared_ptr<ON_Material>& material) {
    assert(material);
    VrmOpenNurbsBinaryArchive bridge(archive);
    if (archive.IsStoring())
        material->Write(bridge);
    else
        material->Read(bridge);
    return archive;
}

}  // namespace Vr
