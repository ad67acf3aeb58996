// Single values. Numbers go out as they lie in memory, which is the format's byte order on every
// machine the kernel supports; structures go out field by field, because a short read must stop
// between fields.
#include "ON_BinaryArchive.h"

#include <algorithm>
#include <string>
#include <vector>

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "the stream is little-endian; this machine needs byte swapping in WriteByte and ReadByte"
#endif

namespace {

// As many elements as are taken from the stream at once when their count cannot be trusted.
constexpr int kBlockElements = 65536;

template <class Element>
bool ReadInBlocks(ON_BinaryArchive& archive, int count, ON_SimpleArray<Element>& elements) {
    elements.Empty();
    while (elements.Count() < count) {
        const int present = elements.Count();
        const int block = std::min(count - present, kBlockElements);
        elements.SetCount(present + block);
        if (!archive.ReadByte(static_cast<size_t>(block) * sizeof(Element),
                              elements.Array() + present)) {
            elements.Empty();
            return false;
        }
    }
    return true;
}

template <class Element>
bool ReadCountedArray(ON_BinaryArchive& archive, ON_SimpleArray<Element>& elements) {
    int count = 0;
    elements.Empty();
    return archive.ReadInt(&count) && count >= 0 && ReadInBlocks(archive, count, elements);
}

bool IsHighSurrogate(std::uint32_t unit) noexcept {
    return (unit & 0xfffffc00u) == 0xd800u;
}
bool IsLowSurrogate(std::uint32_t unit) noexcept {
    return (unit & 0xfffffc00u) == 0xdc00u;
}

bool IsSurrogate(std::uint32_t unit) noexcept {
    return (unit & 0xfffff800u) == 0xd800u;
}

constexpr bool kCharactersAreUnits = sizeof(wchar_t) == 2;

// Stands for what is no character.
constexpr std::uint16_t kReplacement = 0xfffd;

std::vector<std::uint16_t> EncodeUtf16(const ON_wString& text) {
    std::vector<std::uint16_t> units;
    const wchar_t* characters = text.Array();
    const size_t length = static_cast<size_t>(text.Length());
    units.reserve(length + 1);
    for (size_t index = 0; index < length; ++index) {
        const auto character = static_cast<std::uint32_t>(characters[index]);
        if (kCharactersAreUnits || (character < 0x10000u && !IsSurrogate(character))) {
            units.push_back(static_cast<std::uint16_t>(character));
        } else if (character >= 0x10000u && character < 0x110000u) {
            const std::uint32_t offset = character - 0x10000u;
            units.push_back(static_cast<std::uint16_t>(0xd800u + (offset >> 10)));
            units.push_back(static_cast<std::uint16_t>(0xdc00u + (offset & 0x3ffu)));
        } else {
            units.push_back(kReplacement);
        }
    }
    units.push_back(0);
    return units;
}

std::wstring DecodeUtf16(const std::uint16_t* units, size_t count) {
    std::wstring text;
    text.reserve(count);
    bool isInRun = false;  // of surrogates without their partners, which become one character
    for (size_t index = 0; index < count; ++index) {
        if (kCharactersAreUnits || !IsSurrogate(units[index])) {
            text.push_back(static_cast<wchar_t>(units[index]));
            isInRun = false;
        } else if (index + 1 < count && IsHighSurrogate(units[index]) &&
                   IsLowSurrogate(units[index + 1])) {
            const std::uint32_t offset =
                ((units[index] & 0x3ffu) << 10) | (units[index + 1] & 0x3ffu);
            text.push_back(static_cast<wchar_t>(0x10000u + offset));
            ++index;
            isInRun = false;
        } else if (!isInRun) {
            text.push_back(static_cast<wchar_t>(kReplacement));
            isInRun = true;
        }
    }
    return text;
}

}  // namespace

ON_BinaryArchive::~ON_BinaryArchive() = default;

int ON_BinaryArchive::LoadUserDataApplication(ON_UUID) {
    return 0;
}

bool ON_BinaryArchive::WriteByte(size_t byteCount, const void* source) {
    if (!WriteMode()) {
        return false;
    }
    if (byteCount == 0) {
        return true;
    }
    if (!m_chunks.empty()) {
        UpdateChecksum(byteCount, source);
    }
    return Write(byteCount, source) == byteCount;
}

bool ON_BinaryArchive::ReadByte(size_t byteCount, void* destination) {
    if (!ReadMode()) {
        return false;
    }
    if (byteCount == 0) {
        return true;
    }
    if (Read(byteCount, destination) != byteCount) {
        return false;
    }
    if (!m_chunks.empty()) {
        UpdateChecksum(byteCount, destination);
    }
    return true;
}

bool ON_BinaryArchive::WriteBool(bool value) {
    const unsigned char byte = value ? 1 : 0;
    return WriteByte(1, &byte);
}

bool ON_BinaryArchive::ReadBool(bool* value) {
    unsigned char byte = 0;
    if (!ReadByte(1, &byte)) {
        return false;
    }
    *value = byte != 0;
    return true;
}

bool ON_BinaryArchive::WriteUuid(const ON_UUID& id) {
    return WriteByte(4, &id.Data1) && WriteByte(2, &id.Data2) && WriteByte(2, &id.Data3) &&
           WriteByte(8, id.Data4);
}

bool ON_BinaryArchive::ReadUuid(ON_UUID& id) {
    return ReadByte(4, &id.Data1) && ReadByte(2, &id.Data2) && ReadByte(2, &id.Data3) &&
           ReadByte(8, id.Data4);
}

bool ON_BinaryArchive::ReadColor(ON_Color& color) {
    unsigned int packed = 0;
    const bool isComplete = ReadInt(&packed);
    color = ON_Color(packed);
    return isComplete;
}

bool ON_BinaryArchive::WriteLine(const ON_Line& line) {
    return WritePoint(line.from) && WritePoint(line.to);
}

bool ON_BinaryArchive::ReadLine(ON_Line& line) {
    return ReadPoint(line.from) && ReadPoint(line.to);
}

bool ON_BinaryArchive::WriteBoundingBox(const ON_BoundingBox& box) {
    return WritePoint(box.m_min) && WritePoint(box.m_max);
}

bool ON_BinaryArchive::ReadBoundingBox(ON_BoundingBox& box) {
    return ReadPoint(box.m_min) && ReadPoint(box.m_max);
}

bool ON_BinaryArchive::WritePlaneEquation(const ON_PlaneEquation& equation) {
    const double coefficients[4] = {equation.x, equation.y, equation.z, equation.d};
    return WriteDouble(4, coefficients);
}

bool ON_BinaryArchive::ReadPlaneEquation(ON_PlaneEquation& equation) {
    double coefficients[4] = {equation.x, equation.y, equation.z, equation.d};
    const bool isComplete = ReadDouble(4, coefficients);
    equation = ON_PlaneEquation(coefficients[0], coefficients[1], coefficients[2], coefficients[3]);
    return isComplete;
}

bool ON_BinaryArchive::WritePlane(const ON_Plane& plane) {
    return WritePoint(plane.origin) && WriteVector(plane.xaxis) && WriteVector(plane.yaxis) &&
           WriteVector(plane.zaxis) && WritePlaneEquation(plane.plane_equation);
}

bool ON_BinaryArchive::ReadPlane(ON_Plane& plane) {
    return ReadPoint(plane.origin) && ReadVector(plane.xaxis) && ReadVector(plane.yaxis) &&
           ReadVector(plane.zaxis) && ReadPlaneEquation(plane.plane_equation);
}

bool ON_BinaryArchive::WriteCircle(const ON_Circle& circle) {
    return WritePlane(circle.plane) && WriteDouble(circle.radius) &&
           WritePoint(circle.PointAt(0.0)) && WritePoint(circle.PointAt(0.5 * ON_PI)) &&
           WritePoint(circle.PointAt(ON_PI));
}

bool ON_BinaryArchive::ReadCircle(ON_Circle& circle) {
    ON_3dPoint dropped;
    return ReadPlane(circle.plane) && ReadDouble(&circle.radius) && ReadPoint(dropped) &&
           ReadPoint(dropped) && ReadPoint(dropped);
}

bool ON_BinaryArchive::WriteArc(const ON_Arc& arc) {
    return WriteCircle(arc) && WriteInterval(arc.m_angle);
}

bool ON_BinaryArchive::ReadArc(ON_Arc& arc) {
    return ReadCircle(arc) && ReadInterval(arc.m_angle);
}

bool ON_BinaryArchive::WriteString(const ON_wString& text) {
    if (text.IsEmpty()) {
        return WriteInt(0);
    }
    const std::vector<std::uint16_t> units = EncodeUtf16(text);
    return WriteInt(static_cast<int>(units.size())) && WriteByte(2 * units.size(), units.data());
}

bool ON_BinaryArchive::ReadString(ON_wString& text) {
    text.Empty();
    ON_SimpleArray<std::uint16_t> units;
    if (!ReadCountedArray(*this, units)) {
        return false;
    }
    if (units.Count() > 0) {
        text = ON_wString(DecodeUtf16(units.Array(), static_cast<size_t>(units.Count()) - 1));
    }
    return true;
}

bool ON_BinaryArchive::WriteArray(const ON_SimpleArray<double>& values) {
    return WriteInt(values.Count()) &&
           WriteDouble(static_cast<size_t>(values.Count()), values.Array());
}

bool ON_BinaryArchive::WriteArray(const ON_SimpleArray<ON_3dPoint>& points) {
    return WriteInt(points.Count()) &&
           WriteByte(sizeof(ON_3dPoint) * static_cast<size_t>(points.Count()), points.Array());
}

bool ON_BinaryArchive::ReadArray(ON_SimpleArray<double>& values) {
    return ReadCountedArray(*this, values);
}

bool ON_BinaryArchive::ReadArray(ON_SimpleArray<ON_3dPoint>& points) {
    return ReadCountedArray(*this, points);
}

bool ON_BinaryArchive::Write3dmChunkVersion(int major, int minor) {
    if (major < 0 || major > 15 || minor < 0 || minor > 15) {
        return false;
    }
    return WriteChar(static_cast<char>(major * 16 + minor));
}

bool ON_BinaryArchive::Read3dmChunkVersion(int* major, int* minor) {
    unsigned char version = 0;
    if (!ReadByte(1, &version)) {
        return false;
    }
    *major = version >> 4;
    *minor = version & 0x0f;
    return true;
}
