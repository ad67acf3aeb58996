/// NURBS surfaces.
#pragma once

#include <vector>

#include "ON_Surface.h"

/// A piecewise polynomial or rational surface given by two knot vectors and a grid of control points.
///
/// The numbers are public; the arrays they point to belong to the surface.
///
/// - Shape: as `ON_NurbsCurve` in each direction; control point (i, j) starts at
///   m_cv[i * m_cv_stride[0] + j * m_cv_stride[1]].
class VERIDANE_OPENNURBS_API ON_NurbsSurface : public ON_Surface {
public:
    static const ON_ClassId m_ON_NurbsSurface_class_id;

    int m_dim = 0;
    int m_is_rat = 0;
    int m_order[2] = {0, 0};
    int m_cv_count[2] = {0, 0};
    int m_knot_capacity[2] = {0, 0};
    double* m_knot[2] = {nullptr, nullptr};
    int m_cv_stride[2] = {0, 0};
    int m_cv_capacity = 0;
    double* m_cv = nullptr;

    ON_NurbsSurface() = default;
    ON_NurbsSurface(int dimension, bool isRational, int order0, int order1, int cvCount0,
                    int cvCount1) {
        Create(dimension, isRational, order0, order1, cvCount0, cvCount1);
    }
    ON_NurbsSurface(const ON_NurbsSurface& other);
    ON_NurbsSurface& operator=(const ON_NurbsSurface& other);

    static ON_NurbsSurface* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_NurbsSurface*>(object);
    }
    static const ON_NurbsSurface* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_NurbsSurface*>(object);
    }

    /// Makes room for a surface of these numbers, with knots and control points of zeros.
    ///
    /// - Result: false, and an empty surface, when the numbers make no surface.
    bool Create(int dimension, bool isRational, int order0, int order1, int cvCount0, int cvCount1);
    /// Becomes the default surface.
    void Destroy() noexcept;

    int Order(int direction) const noexcept { return m_order[direction ? 1 : 0]; }
    int Degree(int direction) const noexcept { return Order(direction) - 1; }
    int CVCount(int direction) const noexcept { return m_cv_count[direction ? 1 : 0]; }
    bool IsRational() const noexcept { return m_is_rat != 0; }
    int CVSize() const noexcept { return m_is_rat != 0 ? m_dim + 1 : m_dim; }
    int KnotCount(int direction) const noexcept;

    double* CV(int i, int j) noexcept { return m_cv ? m_cv + OffsetOf(i, j) : nullptr; }
    const double* CV(int i, int j) const noexcept { return m_cv ? m_cv + OffsetOf(i, j) : nullptr; }
    /// The control point divided by its weight, with 0.0 for coordinates beyond the dimension.
    ON_3dPoint ControlPoint(int i, int j) const noexcept;

    /// @name Setters: false when a number is out of range
    /// @{
    bool SetKnot(int direction, int number, double value) noexcept;
    /// Sets a point; its weight becomes 1.0.
    bool SetCV(int i, int j, const ON_3dPoint& point) noexcept;
    /// Sets a homogeneous point; on a surface that is not rational it is divided by its weight.
    bool SetCV(int i, int j, const ON_4dPoint& point) noexcept;
    /// @}

    /// Exchanges u and v.
    void Transpose();

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override { return m_dim; }
    ON_BoundingBox BoundingBox() const override;
    ON_NurbsSurface* DuplicateSurface() const override;
    ON_Interval Domain(int direction) const override;
    ON_3dPoint PointAt(double u, double v) const override;
    int GetNurbForm(ON_NurbsSurface& form) const override;

private:
    ptrdiff_t OffsetOf(int i, int j) const noexcept {
        return static_cast<ptrdiff_t>(i) * m_cv_stride[0] +
               static_cast<ptrdiff_t>(j) * m_cv_stride[1];
    }
    /// Takes over arrays that fit the public numbers, with v as the inner index.
    void TakeArrays(std::vector<double>&& knots0, std::vector<double>&& knots1,
                    std::vector<double>&& controlPoints) noexcept;
    bool HasArrays() const noexcept;
    bool ReadNumbers(ON_BinaryArchive& archive);

    std::vector<double> m_knotMemory[2];
    std::vector<double> m_cvMemory;
};
