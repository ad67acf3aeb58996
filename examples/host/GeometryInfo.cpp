// Names come from documents of other people and go to a terminal, so that what would steer it is replaced.

#include "GeometryInfo.h"

#include <fmt/format.h>

#include "KernelMaterial.h"
#include "Text.h"

namespace Host {

namespace {

std::string PointText(const ON_3dPoint& point) {
    return fmt::format("({:.12g}, {:.12g}, {:.12g})", point.x, point.y, point.z);
}

std::string DomainText(const ON_Interval& domain) {
    return fmt::format("{:.12g} to {:.12g}", domain[0], domain[1]);
}

// openNURBS's box of nothing is one that is turned inside out.
template <class Geometry>
std::string BoxOf(const Geometry& geometry) {
    const ON_BoundingBox box = geometry.BoundingBox();
    return box.IsValid() ? BoxText(box) : "none";
}

constexpr const char* kNotValid = "  valid: no\n";

}  // namespace

std::string BoxText(const ON_BoundingBox& box) {
    return PointText(box.m_min) + " to " + PointText(box.m_max);
}

std::string Describe(const ON_Curve& curve) {
    if (!curve.IsValid())
        return kNotValid;
    return fmt::format("  dimension: {}\n", curve.Dimension()) +
           fmt::format("  domain: {}\n", DomainText(curve.Domain())) +
           fmt::format("  start: {}\n", PointText(curve.PointAtStart())) +
           fmt::format("  end: {}\n", PointText(curve.PointAtEnd())) +
           fmt::format("  bounding box: {}\n", BoxOf(curve));
}

std::string Describe(const ON_Surface& surface) {
    if (!surface.IsValid())
        return kNotValid;
    return fmt::format("  domain in u: {}\n", DomainText(surface.Domain(0))) +
           fmt::format("  domain in v: {}\n", DomainText(surface.Domain(1))) +
           fmt::format("  bounding box: {}\n", BoxOf(surface));
}

std::string Describe(const ON_Material& material) {
    const ON_wString stored = NameOf(material);
    const std::string name = Printable(static_cast<const wchar_t*>(stored));
    const ON_Color diffuse = material.m_diffuse;
    return fmt::format("  name: {}\n", name.empty() ? "none" : name) +
           fmt::format("  diffuse colour: ({}, {}, {})\n", diffuse.Red(), diffuse.Green(),
                       diffuse.Blue()) +
           fmt::format("  shine: {:.12g} of {:.12g}\n", ShineOf(material), kGreatestShine) +
           fmt::format("  transparency: {:.12g}\n", TransparencyOf(material));
}

}  // namespace Host
