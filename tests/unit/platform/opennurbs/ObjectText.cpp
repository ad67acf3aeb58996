// One function per class in each direction, found by the word of the class.
#include "unit/platform/opennurbs/ObjectText.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "unit/platform/opennurbs/SameBits.h"

namespace kerneltest {

namespace {

std::unique_ptr<ON_Curve> CurveFrom(GoldenLine& line) {
    return std::unique_ptr<ON_Curve>(ON_Curve::Cast(ObjectFrom(line).release()));
}

std::unique_ptr<ON_Object> LineFrom(GoldenLine& line) {
    auto curve = std::make_unique<ON_LineCurve>();
    curve->m_line = line.Line();
    curve->m_t = line.Interval();
    curve->m_dim = line.Integer();
    return curve;
}

std::unique_ptr<ON_Object> ArcFrom(GoldenLine& line) {
    auto curve = std::make_unique<ON_ArcCurve>();
    const ON_Circle circle = line.Circle();
    curve->m_arc = ON_Arc(circle, line.Interval());
    curve->m_arc.plane = circle.plane;
    curve->m_t = line.Interval();
    curve->m_dim = line.Integer();
    return curve;
}

std::unique_ptr<ON_Object> PolylineFrom(GoldenLine& line) {
    auto curve = std::make_unique<ON_PolylineCurve>();
    for (size_t left = line.Count(); left > 0; --left) {
        curve->m_pline.Append(line.Point());
    }
    for (size_t left = line.Count(); left > 0; --left) {
        curve->m_t.Append(line.Number());
    }
    curve->m_dim = line.Integer();
    return curve;
}

std::unique_ptr<ON_Object> NurbsFrom(GoldenLine& line) {
    const int dimension = line.Integer();
    const bool isRational = line.Flag();
    const int order = line.Integer();
    const int count = line.Integer();
    auto curve = std::make_unique<ON_NurbsCurve>(dimension, isRational, order, count);
    for (int number = 0; number < curve->KnotCount(); ++number) {
        curve->m_knot[number] = line.Number();
    }
    for (int number = 0; number < count * curve->CVSize(); ++number) {
        curve->m_cv[number] = line.Number();
    }
    return curve;
}

std::unique_ptr<ON_Object> PolyCurveFrom(GoldenLine& line) {
    auto curve = std::make_unique<ON_PolyCurve>();
    const size_t segmentCount = line.Count();
    Doubles parameters;
    for (size_t number = 0; segmentCount > 0 && number <= segmentCount; ++number) {
        parameters.push_back(line.Number());
    }
    for (size_t number = 0; number < segmentCount; ++number) {
        EXPECT_TRUE(curve->Append(CurveFrom(line).release())) << line.Where();
    }
    const ON_SimpleArray<double>& made = curve->SegmentParameters();
    EXPECT_SAME_BITS(Doubles(made.Array(), made.Array() + made.Count()), parameters);
    return curve;
}

std::unique_ptr<ON_Object> PlaneFrom(GoldenLine& line) {
    auto surface = std::make_unique<ON_PlaneSurface>();
    surface->m_plane = line.Plane();
    for (int direction = 0; direction < 2; ++direction) {
        const ON_Interval domain = line.Interval();
        surface->SetDomain(direction, domain[0], domain[1]);
    }
    for (int direction = 0; direction < 2; ++direction) {
        surface->SetExtents(direction, line.Interval());
    }
    return surface;
}

std::unique_ptr<ON_Object> NurbsSurfaceFrom(GoldenLine& line) {
    const int dimension = line.Integer();
    const bool isRational = line.Flag();
    const int order[2] = {line.Integer(), line.Integer()};
    const int count[2] = {line.Integer(), line.Integer()};
    auto surface = std::make_unique<ON_NurbsSurface>(dimension, isRational, order[0], order[1],
                                                     count[0], count[1]);
    for (int direction = 0; direction < 2; ++direction) {
        for (int number = 0; number < surface->KnotCount(direction); ++number) {
            surface->m_knot[direction][number] = line.Number();
        }
    }
    for (int number = 0; number < count[0] * count[1] * surface->CVSize(); ++number) {
        surface->m_cv[number] = line.Number();
    }
    return surface;
}

std::unique_ptr<ON_Object> RevolvedFrom(GoldenLine& line) {
    auto surface = std::make_unique<ON_RevSurface>();
    surface->m_axis = line.Line();
    surface->m_angle = line.Interval();
    surface->m_t = line.Interval();
    surface->m_bTransposed = line.Integer();
    surface->m_bbox = line.Box();
    surface->m_curve = CurveFrom(line).release();
    return surface;
}

std::unique_ptr<ON_Object> SumFrom(GoldenLine& line) {
    auto surface = std::make_unique<ON_SumSurface>();
    surface->m_basepoint = line.Vector();
    surface->m_bbox = line.Box();
    surface->m_curve[0] = CurveFrom(line).release();
    surface->m_curve[1] = CurveFrom(line).release();
    return surface;
}

// Collects fields; numbers as the hexadecimal of their bits, all NaNs alike.
class Text {
public:
    explicit Text(std::string word) : text_(std::move(word)) {}

    Text& Add(int number) {
        text_ += " " + std::to_string(number);
        return *this;
    }
    template <class Value>
    Text& AddNumbers(const Value& value) {
        for (const double number : DoublesOf(value)) {
            char digits[24];
            std::snprintf(digits, sizeof digits, " %016" PRIx64,
                          std::isnan(number) ? 0x7ff8000000000000u : BitsOf(number));
            text_ += digits;
        }
        return *this;
    }
    Text& AddNumbers(const double* numbers, int count) {
        return numbers ? AddNumbers(Doubles(numbers, numbers + count)) : *this;
    }
    Text& AddObject(const ON_Object* object) {
        text_ += " (" + TextOf(object) + ")";
        return *this;
    }
    std::string Take() { return std::move(text_); }

private:
    std::string text_;
};

std::string TextOfCurve(const ON_Curve& curve) {
    Text text(ClassWordOf(&curve));
    if (const auto* const line = dynamic_cast<const ON_LineCurve*>(&curve)) {
        text.AddNumbers(line->m_line).AddNumbers(line->m_t).Add(line->m_dim);
    } else if (const auto* const arc = dynamic_cast<const ON_ArcCurve*>(&curve)) {
        text.AddNumbers(static_cast<const ON_Circle&>(arc->m_arc)).AddNumbers(arc->m_arc.Domain());
        text.AddNumbers(arc->m_t).Add(arc->m_dim);
    } else if (const auto* const polyline = dynamic_cast<const ON_PolylineCurve*>(&curve)) {
        text.Add(polyline->m_pline.Count());
        for (int number = 0; number < polyline->m_pline.Count(); ++number) {
            text.AddNumbers(polyline->m_pline[number]);
        }
        text.AddNumbers(polyline->m_t.Array(), polyline->m_t.Count()).Add(polyline->m_dim);
    } else if (const auto* const nurbs = dynamic_cast<const ON_NurbsCurve*>(&curve)) {
        text.Add(nurbs->m_dim).Add(nurbs->m_is_rat).Add(nurbs->m_order).Add(nurbs->m_cv_count);
        text.AddNumbers(nurbs->m_knot, nurbs->KnotCount());
        for (int number = 0; number < nurbs->m_cv_count; ++number) {
            text.AddNumbers(nurbs->CV(number), nurbs->CVSize());
        }
    } else if (const auto* const joined = dynamic_cast<const ON_PolyCurve*>(&curve)) {
        const ON_SimpleArray<double>& parameters = joined->SegmentParameters();
        text.Add(joined->Count()).AddNumbers(parameters.Array(), parameters.Count());
        for (int number = 0; number < joined->Count(); ++number) {
            text.AddObject(joined->SegmentCurve(number));
        }
    }
    return text.Take();
}

std::string TextOfSurface(const ON_Surface& surface) {
    Text text(ClassWordOf(&surface));
    if (const auto* const plane = dynamic_cast<const ON_PlaneSurface*>(&surface)) {
        text.AddNumbers(plane->m_plane).AddNumbers(plane->Domain(0)).AddNumbers(plane->Domain(1));
        text.AddNumbers(plane->Extents(0)).AddNumbers(plane->Extents(1));
    } else if (const auto* const nurbs = dynamic_cast<const ON_NurbsSurface*>(&surface)) {
        text.Add(nurbs->m_dim).Add(nurbs->m_is_rat).Add(nurbs->m_order[0]).Add(nurbs->m_order[1]);
        text.Add(nurbs->m_cv_count[0]).Add(nurbs->m_cv_count[1]);
        text.AddNumbers(nurbs->m_knot[0], nurbs->KnotCount(0));
        text.AddNumbers(nurbs->m_knot[1], nurbs->KnotCount(1));
        for (int i = 0; i < nurbs->m_cv_count[0]; ++i) {
            for (int j = 0; j < nurbs->m_cv_count[1]; ++j) {
                text.AddNumbers(nurbs->CV(i, j), nurbs->CVSize());
            }
        }
    } else if (const auto* const revolved = dynamic_cast<const ON_RevSurface*>(&surface)) {
        text.AddNumbers(revolved->m_axis).AddNumbers(revolved->m_angle).AddNumbers(revolved->m_t);
        text.Add(revolved->m_bTransposed).AddNumbers(revolved->m_bbox);
        text.AddObject(revolved->m_curve);
    } else if (const auto* const sum = dynamic_cast<const ON_SumSurface*>(&surface)) {
        text.AddNumbers(sum->m_basepoint).AddNumbers(sum->m_bbox);
        text.AddObject(sum->m_curve[0]).AddObject(sum->m_curve[1]);
    }
    return text.Take();
}

struct ClassWord {
    const char* word;
    const char* className;
    std::unique_ptr<ON_Object> (*build)(GoldenLine&);
};

constexpr ClassWord kClassWords[] = {{"line", "ON_LineCurve", &LineFrom},
                                     {"arc", "ON_ArcCurve", &ArcFrom},
                                     {"polyline", "ON_PolylineCurve", &PolylineFrom},
                                     {"nurbs", "ON_NurbsCurve", &NurbsFrom},
                                     {"polycurve", "ON_PolyCurve", &PolyCurveFrom},
                                     {"plane", "ON_PlaneSurface", &PlaneFrom},
                                     {"nurbsSurface", "ON_NurbsSurface", &NurbsSurfaceFrom},
                                     {"revolved", "ON_RevSurface", &RevolvedFrom},
                                     {"sum", "ON_SumSurface", &SumFrom}};

}  // namespace

std::unique_ptr<ON_Object> ObjectFrom(GoldenLine& line) {
    const std::string word = line.Word();
    if (word == "-") {
        return nullptr;
    }
    for (const ClassWord& known : kClassWords) {
        if (word == known.word) {
            return known.build(line);
        }
    }
    throw std::runtime_error(line.Where() + ": no class " + word);
}

std::string ClassWordOf(const ON_Object* object) {
    if (!object) {
        return "-";
    }
    for (const ClassWord& known : kClassWords) {
        if (object->ClassId()->ClassName() == std::string(known.className)) {
            return known.word;
        }
    }
    return object->ClassId()->ClassName();
}

std::string TextOf(const ON_Object* object) {
    if (const auto* const curve = ON_Curve::Cast(object)) {
        return TextOfCurve(*curve);
    }
    if (const auto* const surface = ON_Surface::Cast(object)) {
        return TextOfSurface(*surface);
    }
    return ClassWordOf(object);
}

}  // namespace kerneltest
