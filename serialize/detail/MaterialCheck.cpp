// A material has no length of its own, so that its fields are walked along one by one. Where they do not
// fit, openNURBS stops somewhere between them.

#include "serialize/detail/MaterialCheck.h"

namespace Vr::detail {

namespace {

constexpr uint64_t kColorBytes = 4;
constexpr uint64_t kUuidBytes = 16;
constexpr uint64_t kUnitBytes = 2;
constexpr DWORD kGreatestUnitCount = 0x7FFFFFFF;  // counts are signed when they are read
// Four colours, shine and transparency; what openNURBS has kept without a meaning.
constexpr uint64_t kLightingBytes = 4 * kColorBytes + 2 * 8 + (4 + kColorBytes + 2 * 2 + 2 * 8);
// Mode and a constant, behind the file name.
constexpr uint64_t kTextureBytes = 4 + 4;
constexpr uint64_t kBumpScaleBytes = 8;
constexpr uint64_t kIndexBytes = 4;
// UUID, two colours and the index of refraction, since version 1.1.
constexpr uint64_t kAdditionBytes = kUuidBytes + 2 * kColorBytes + 8;

/// One material, from its first byte.
class MaterialCheck {
public:
    explicit MaterialCheck(CheckContext& context) : context_(context), begin_(context.Position()) {}

    bool Check() {
        BYTE version = 0;
        if (!context_.Read(version))
            return false;
        const int major = version >> 4;
        const int minor = version & 15;
        if (major != 1)
            return Stop("a material of version " + std::to_string(major));
        return Skip(kLightingBytes) && SkipTextures() && Skip(kIndexBytes + kUuidBytes) &&
               SkipString() && SkipString() && (minor < 1 || Skip(kAdditionBytes));
    }

private:
    // Bitmap, bump and environment.
    bool SkipTextures() {
        return SkipString() && Skip(kTextureBytes) && SkipString() &&
               Skip(kTextureBytes + kBumpScaleBytes) && SkipString() && Skip(kTextureBytes);
    }

    bool SkipString() {
        DWORD unitCount = 0;
        return RequireRoom(sizeof(unitCount)) && context_.Read(unitCount) &&
               (unitCount <= kGreatestUnitCount || StopAtFields()) && Skip(unitCount * kUnitBytes);
    }

    bool Skip(uint64_t byteCount) { return RequireRoom(byteCount) && context_.Skip(byteCount); }

    bool RequireRoom(uint64_t byteCount) {
        return byteCount <= context_.Remaining() || StopAtFields();
    }

    bool StopAtFields() {
        return Stop("the fields of a material do not fit the bytes that are left");
    }

    bool Stop(const std::string& text) {
        return context_.Stop(CheckCode::MaterialFields, begin_, [&] { return text; });
    }

    CheckContext& context_;
    uint64_t begin_;
};

}  // namespace

bool CheckMaterial(CheckContext& context) {
    return context.CanGoOn() && MaterialCheck(context).Check();
}

}  // namespace Vr::detail
