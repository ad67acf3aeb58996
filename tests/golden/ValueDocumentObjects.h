/// What the golden documents of values, curves, surfaces and materials hold, and how a host stores and
/// loads it.
#pragma once

#include <memory>
#include <string>

#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"
#include "support/MeshBuilders.h"

namespace Vr::golden {

constexpr LONG kHostNumber = 4711;

struct Values {
    std::wstring text;
    ON_2dPoint point;
    ON_Color color;
    ON_Plane plane;
    ON_Arc arc;
    ON_Xform xf;
    LONG number = 0;
};

/// Empty handles are loaded over what these hold.
struct Curves {
    std::shared_ptr<ON_Curve> curve;
    std::shared_ptr<ON_Curve> noCurve = std::make_shared<ON_LineCurve>();
    test::Mesh mesh;
    std::shared_ptr<ON_Surface> surface;
    test::Mesh meshAgain;
    std::shared_ptr<ON_Surface> noSurface = std::make_shared<ON_PlaneSurface>();
    LONG number = 0;
};

struct CurveOfItsOwnClass {
    std::shared_ptr<ON_Curve> curve;
    LONG number = 0;
};

struct Materials {
    std::shared_ptr<ON_Material> oak = std::make_shared<ON_Material>();
    test::Mesh mesh;
    std::shared_ptr<ON_Material> wood = std::make_shared<ON_Material>();
    test::Mesh meshAgain;
};

/// Stores or loads, as the archive does.
/// @{
template <class Archive, class Value>
void Exchange(Archive& archive, Value& value) {
    using Vr::operator<<;
    using Vr::operator>>;
    if (archive.IsStoring())
        archive << value;
    else
        archive >> value;
}

inline void Exchange(VrmArchive& archive, Values& values) {
    Exchange(archive, values.text);
    Exchange(archive, values.point);
    Exchange(archive, values.color);
    Exchange(archive, values.plane);
    Exchange(archive, values.arc);
    Exchange(archive, values.xf);
    Exchange(archive, values.number);
}

inline void Exchange(VrmArchive& archive, test::Mesh& mesh) {
    if (archive.IsStoring()) {
        archive.WriteObject(mesh.get());
        return;
    }
    VraMeshPrimitive* loaded = nullptr;
    Vr::operator>>(archive, loaded);
    mesh = loaded;
}

template <class Object>
void ExchangeObject(VrmArchive& archive, std::shared_ptr<Object>& handle) {
    using Vr::operator&;
    static_cast<void>(archive & handle);
}

inline void Exchange(VrmArchive& archive, Curves& curves) {
    ExchangeObject(archive, curves.curve);
    ExchangeObject(archive, curves.noCurve);
    Exchange(archive, curves.mesh);
    ExchangeObject(archive, curves.surface);
    Exchange(archive, curves.meshAgain);
    ExchangeObject(archive, curves.noSurface);
    Exchange(archive, curves.number);
}

inline void Exchange(VrmArchive& archive, CurveOfItsOwnClass& document) {
    ExchangeObject(archive, document.curve);
    Exchange(archive, document.number);
}

inline void Exchange(VrmArchive& archive, Materials& materials) {
    ExchangeObject(archive, materials.oak);
    Exchange(archive, materials.mesh);
    ExchangeObject(archive, materials.wood);
    Exchange(archive, materials.meshAgain);
}
/// @}

}  // namespace Vr::golden
