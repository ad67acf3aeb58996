/// NURBS curves.
#pragma once

#include <vector>

#include "ON_Curve.h"

/// A piecewise polynomial or rational curve given by knots and control points.
///
/// The numbers are public. The arrays they point to belong to the curve, which makes room with
/// `Create`, `ReserveKnotCapacity` and `ReserveCVCapacity`.
///
/// - Shape: order + cv_count - 2 knots, without superfluous ones at the ends; control point i starts
///   at m_cv[i * m_cv_stride] and has dim numbers, or homogeneously (x*w, y*w, z*w, w) dim + 1.
class VERIDANE_OPENNURBS_API ON_NurbsCurve : public ON_Curve {
public:
    static const ON_ClassId m_ON_NurbsCurve_class_id;

    int m_dim = 0;
    int m_is_rat = 0;
    int m_order = 0;
    int m_cv_count = 0;
    int m_knot_capacity = 0;
    double* m_knot = nullptr;
    int m_cv_stride = 0;
    int m_cv_capacity = 0;
    double* m_cv = nullptr;

    ON_NurbsCurve() = default;
    ON_NurbsCurve(int dimension, bool isRational, int order, int cvCount) {
        Create(dimension, isRational, order, cvCount);
    }
    ON_NurbsCurve(const ON_NurbsCurve& other);
    ON_NurbsCurve& operator=(const ON_NurbsCurve& other);

    static ON_NurbsCurve* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_NurbsCurve*>(object);
    }
    static const ON_NurbsCurve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_NurbsCurve*>(object);
    }

    /// Makes room for a curve of these numbers, with knots and control points of zeros.
    ///
    /// - Result: false, and an empty curve, when the numbers make no curve.
    bool Create(int dimension, bool isRational, int order, int cvCount);
    /// Becomes the default curve.
    void Destroy() noexcept;

    bool ReserveKnotCapacity(int knotCapacity);
    /// - Units: `cvCapacity` counts doubles.
    bool ReserveCVCapacity(int cvCapacity);

    int Order() const noexcept { return m_order; }
    int Degree() const noexcept { return m_order - 1; }
    bool IsRational() const noexcept { return m_is_rat != 0; }
    int CVCount() const noexcept { return m_cv_count; }
    int CVSize() const noexcept { return m_is_rat != 0 ? m_dim + 1 : m_dim; }
    int KnotCount() const noexcept;

    double* CV(int number) noexcept {
        return m_cv ? m_cv + static_cast<ptrdiff_t>(number) * m_cv_stride : nullptr;
    }
    const double* CV(int number) const noexcept {
        return m_cv ? m_cv + static_cast<ptrdiff_t>(number) * m_cv_stride : nullptr;
    }
    /// The weight of a control point; 1.0 on a curve that is not rational.
    double Weight(int number) const noexcept;
    /// The control point divided by its weight, with 0.0 for coordinates beyond the dimension.
    ON_3dPoint ControlPoint(int number) const noexcept;
    double Knot(int number) const noexcept { return m_knot[number]; }

    /// @name Setters: false when the number is out of range
    /// @{
    bool SetKnot(int number, double value) noexcept;
    /// Sets a point; its weight becomes 1.0.
    bool SetCV(int number, const ON_3dPoint& point) noexcept;
    /// Sets a homogeneous point; on a curve that is not rational it is divided by its weight.
    bool SetCV(int number, const ON_4dPoint& point) noexcept;
    /// @}

    /// Moves the knots so that the domain becomes [t0, t1].
    bool SetDomain(double t0, double t1) noexcept;
    /// Adds the weight 1.0 to every control point of a curve that is not rational.
    bool MakeRational();
    /// Changes the number of coordinates; new ones are 0.0.
    bool ChangeDimension(int dimension);
    /// Repeats the end knots until the curve begins (`end` 0), ends (1) or does both (2) in a control
    /// point.
    bool ClampEnd(int end);
    /// Raises the degree without changing the curve; the ends are clamped first.
    bool IncreaseDegree(int degree);
    /// Appends a curve, whose domain is moved to follow.
    ///
    /// Both become rational, and of the higher degree and dimension, where they differ.
    ///
    /// - Deliberate: the first control point of the appended curve is dropped without comparison.
    bool Append(const ON_NurbsCurve& curve);

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override { return m_dim; }
    ON_BoundingBox BoundingBox() const override;
    ON_NurbsCurve* DuplicateCurve() const override;
    ON_Interval Domain() const override;
    ON_3dPoint PointAt(double t) const override;
    int GetNurbForm(ON_NurbsCurve& form) const override;

private:
    /// Takes over arrays that fit the public numbers.
    void TakeArrays(std::vector<double>&& knots, std::vector<double>&& controlPoints) noexcept;
    bool HasArrays() const noexcept;

    std::vector<double> m_knotMemory;
    std::vector<double> m_cvMemory;
};
