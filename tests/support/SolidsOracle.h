/// Cone and cylinder, corner by corner from the tables of their triangles.
#pragma once

#include <memory>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// A primitive with what a cone or a cylinder of `n` segments has: ring vertices by openNURBS, and
/// the triangles one by one.
class SolidsOracle {
public:
    SolidsOracle(const ON_3dPoint& first, const ON_3dPoint& second, double radius, std::size_t n)
        : first_(first), second_(second), radius_(radius), n_(n), axis_(second - first) {
        height_ = axis_.Length();
        axis_.Unitize();
        plane_ = ON_Plane(first, axis_);
        vertices_->push_back(second);
        vertices_->push_back(first);
        normals_->push_back(axis_);
        normals_->push_back(-axis_);
    }

    void MakeCone() {
        const ON_Cone cone(plane_, height_, radius_);
        for (std::size_t k = 0; k < n_; ++k) {
            vertices_->push_back(cone.PointAt(Angle(k), 0.0));
            normals_->push_back(cone.NormalAt(Angle(k), 0.0));
        }
        for (std::size_t k = 0; k < n_; ++k)
            Add(0, First(k), First(k + 1), 0, First(k), First(k + 1));
        for (std::size_t k = 0; k < n_; ++k)
            Add(1, First(k + 1), First(k), 1, 1, 1);
    }

    void MakeCylinder() {
        const ON_Cylinder cylinder(ON_Circle(plane_, first_, radius_), height_);
        for (std::size_t k = 0; k < n_; ++k) {
            vertices_->push_back(cylinder.PointAt(Angle(k), 0.0));
            normals_->push_back(ON_3dVector(cylinder.NormalAt(Angle(k), 0.0)));
        }
        for (std::size_t k = 0; k < n_; ++k)
            vertices_->push_back(cylinder.PointAt(Angle(k), height_));
        for (std::size_t k = 0; k < n_; ++k) {
            Add(First(k), First(k + 1), Second(k), First(k), First(k + 1), First(k));
            Add(Second(k + 1), Second(k), First(k + 1), First(k + 1), First(k), First(k + 1));
        }
        for (std::size_t k = 0; k < n_; ++k)
            Add(1, First(k + 1), First(k), 1, 1, 1);
        for (std::size_t k = 0; k < n_; ++k)
            Add(1, Second(k), Second(k + 1), 0, 0, 0);
    }

    boost::intrusive_ptr<VraMeshPrimitive> Mesh() const {
        const boost::intrusive_ptr<VraMeshPrimitive> mesh(new VraMeshPrimitive);
        mesh->SetVertexArray(vertices_);
        mesh->SetNormalArray(normals_);
        mesh->SetVertexIndexArray(triangles_);
        mesh->SetNormalIndexArray(std::make_shared<VraMeshPrimitive::IndexArray>(triples_));
        return mesh;
    }

private:
    double Angle(std::size_t k) const {
        return (static_cast<double>(k) * 6.283185307179586) / static_cast<double>(n_);
    }
    std::size_t First(std::size_t k) const { return 2 + k % n_; }
    std::size_t Second(std::size_t k) const { return n_ + 2 + k % n_; }

    void Add(std::size_t v0, std::size_t v1, std::size_t v2, std::size_t n0, std::size_t n1,
             std::size_t n2) {
        triangles_->push_back({{v0, v1, v2}});
        triples_.push_back({{n0, n1, n2}});
    }

    ON_3dPoint first_;
    ON_3dPoint second_;
    double radius_;
    std::size_t n_;
    ON_3dVector axis_;
    double height_;
    ON_Plane plane_;
    std::shared_ptr<VraMeshPrimitive::VertexArray> vertices_ =
        std::make_shared<VraMeshPrimitive::VertexArray>();
    std::shared_ptr<VraMeshPrimitive::NormalArray> normals_ =
        std::make_shared<VraMeshPrimitive::NormalArray>();
    std::shared_ptr<VraMeshPrimitive::VertexIndexArray> triangles_ =
        std::make_shared<VraMeshPrimitive::VertexIndexArray>();
    VraMeshPrimitive::IndexArray::PerVertex triples_;
};

}  // namespace Vr::test
