// Edits that keep the curve: domain, weights, clamping, degree and joining. Clamping and raising the
// degree take each new control point as a value of the blossom of the span it belongs to.
#include <algorithm>
#include <utility>

#include "ON_NurbsCurve.h"
#include "detail/NurbsBasis.h"

namespace {

// The control points and knots of one span of a curve, to evaluate its blossom again and again.
class SpanBlossom {
public:
    SpanBlossom(const ON_NurbsCurve& curve, int span) : curve_(curve), span_(span) {}

    // Returns the value for order - 1 arguments; it is overwritten by the next call.
    const std::vector<double>& At(const double* arguments) {
        const size_t pointSize = static_cast<size_t>(curve_.CVSize());
        points_.resize(pointSize * static_cast<size_t>(curve_.m_order));
        for (int number = 0; number < curve_.m_order; ++number) {
            std::copy_n(curve_.CV(span_ + number), pointSize,
                        points_.begin() + static_cast<ptrdiff_t>(pointSize) * number);
        }
        kernel_detail::EvaluateBlossom(curve_.m_order, curve_.CVSize(), curve_.m_knot + span_,
                                       arguments, points_.data());
        return points_;
    }

private:
    const ON_NurbsCurve& curve_;
    int span_;
    std::vector<double> points_;
};

// The knots of a curve with the multiplicity of each one higher.
std::vector<double> RaisedKnots(const ON_NurbsCurve& curve) {
    std::vector<double> raised;
    const int count = curve.KnotCount();
    for (int number = 0; number < count; ++number) {
        raised.push_back(curve.m_knot[number]);
        if (number + 1 == count || curve.m_knot[number + 1] != curve.m_knot[number]) {
            raised.push_back(curve.m_knot[number]);
        }
    }
    return raised;
}

// The control point of the raised curve that belongs to `knots`, one more than the old degree: the
// mean of the old span's blossoms with each of them left out in turn.
void SetRaisedPoint(SpanBlossom& blossom, const double* knots, int newDegree, int pointSize,
                    double* target) {
    std::vector<double> arguments(static_cast<size_t>(newDegree - 1));
    std::fill_n(target, pointSize, 0.0);
    for (int leftOut = 0; leftOut < newDegree; ++leftOut) {
        std::copy_n(knots, leftOut, arguments.begin());
        std::copy(knots + leftOut + 1, knots + newDegree, arguments.begin() + leftOut);
        const std::vector<double>& value = blossom.At(arguments.data());
        for (int axis = 0; axis < pointSize; ++axis) {
            target[axis] += value[static_cast<size_t>(axis)];
        }
    }
    for (int axis = 0; axis < pointSize; ++axis) {
        target[axis] /= newDegree;
    }
}

ON_NurbsCurve RaisedByOne(const ON_NurbsCurve& curve) {
    const std::vector<double> knots = RaisedKnots(curve);
    const int newOrder = curve.m_order + 1;
    const int newCount = static_cast<int>(knots.size()) - newOrder + 2;
    ON_NurbsCurve raised(curve.m_dim, curve.IsRational(), newOrder, newCount);
    std::copy(knots.begin(), knots.end(), raised.m_knot);
    int newSpan = 0;
    int doneCount = 0;
    for (int span = 0; span + curve.m_order <= curve.m_cv_count; ++span) {
        const double start = curve.m_knot[span + curve.m_order - 2];
        if (!(start < curve.m_knot[span + curve.m_order - 1])) {
            continue;
        }
        while (!(knots[static_cast<size_t>(newSpan + newOrder - 2)] == start &&
                 knots[static_cast<size_t>(newSpan + newOrder - 1)] > start)) {
            ++newSpan;
        }
        SpanBlossom blossom(curve, span);
        for (int number = std::max(newSpan, doneCount); number < newSpan + newOrder; ++number) {
            SetRaisedPoint(blossom, knots.data() + number, newOrder - 1, curve.CVSize(),
                           raised.CV(number));
        }
        doneCount = newSpan + newOrder;
    }
    std::copy_n(curve.CV(0), curve.CVSize(), raised.CV(0));
    std::copy_n(curve.CV(curve.m_cv_count - 1), curve.CVSize(), raised.CV(newCount - 1));
    return raised;
}

}  // namespace

bool ON_NurbsCurve::SetDomain(double t0, double t1) noexcept {
    return kernel_detail::SetKnotDomain(m_order, m_cv_count, m_knot, t0, t1);
}

bool ON_NurbsCurve::MakeRational() {
    if (m_is_rat != 0 || !HasArrays()) {
        return m_is_rat != 0;
    }
    ON_NurbsCurve rational(m_dim, true, m_order, m_cv_count);
    std::copy_n(m_knot, m_knot ? KnotCount() : 0, rational.m_knot);
    for (int number = 0; number < m_cv_count; ++number) {
        std::copy_n(CV(number), m_dim, rational.CV(number));
        rational.CV(number)[m_dim] = 1.0;
    }
    *this = rational;
    return true;
}

bool ON_NurbsCurve::ChangeDimension(int dimension) {
    if (dimension < 1 || !HasArrays()) {
        return false;
    }
    ON_NurbsCurve changed(dimension, m_is_rat != 0, m_order, m_cv_count);
    std::copy_n(m_knot, m_knot ? KnotCount() : 0, changed.m_knot);
    for (int number = 0; number < m_cv_count; ++number) {
        std::copy_n(CV(number), std::min(m_dim, dimension), changed.CV(number));
        if (m_is_rat != 0) {
            changed.CV(number)[dimension] = CV(number)[m_dim];
        }
    }
    *this = changed;
    return true;
}

bool ON_NurbsCurve::ClampEnd(int end) {
    if (!IsValid()) {
        return false;
    }
    const int degree = m_order - 1;
    const int knotCount = KnotCount();
    const ON_NurbsCurve source(*this);
    if (end != 1) {
        std::fill_n(m_knot, degree, source.Domain()[0]);
    }
    if (end != 0) {
        std::fill_n(m_knot + (knotCount - degree), degree, source.Domain()[1]);
    }
    const auto evaluate = [&](int first, int last, int span) {
        SpanBlossom blossom(source, span);
        for (int number = first; number < last; ++number) {
            std::copy_n(blossom.At(m_knot + number).begin(), CVSize(), CV(number));
        }
    };
    if (!std::equal(m_knot, m_knot + degree, source.m_knot)) {
        evaluate(0, degree, 0);
    }
    if (!std::equal(m_knot + (knotCount - degree), m_knot + knotCount,
                    source.m_knot + (knotCount - degree))) {
        evaluate(m_cv_count - degree, m_cv_count, m_cv_count - m_order);
    }
    return true;
}

bool ON_NurbsCurve::IncreaseDegree(int degree) {
    if (!IsValid() || degree < m_order - 1) {
        return false;
    }
    while (m_order - 1 < degree) {
        ClampEnd(2);
        *this = RaisedByOne(*this);
    }
    return true;
}

bool ON_NurbsCurve::Append(const ON_NurbsCurve& curve) {
    ON_NurbsCurve tail(curve);
    if (!IsValid() || !tail.IsValid()) {
        return false;
    }
    if (m_dim != tail.m_dim) {
        const int dimension = std::max(m_dim, tail.m_dim);
        ChangeDimension(dimension);
        tail.ChangeDimension(dimension);
    }
    if (m_is_rat != tail.m_is_rat) {
        MakeRational();
        tail.MakeRational();
    }
    IncreaseDegree(tail.m_order - 1);
    tail.IncreaseDegree(m_order - 1);
    ClampEnd(1);
    tail.ClampEnd(0);

    const double shift = m_knot[m_cv_count - 1] - tail.m_knot[m_order - 2];
    std::vector<double> knots(m_knot, m_knot + KnotCount());
    for (int number = m_order - 1; number < tail.KnotCount(); ++number) {
        knots.push_back(tail.m_knot[number] + shift);
    }
    const double endWeight = Weight(m_cv_count - 1);
    const double startWeight = tail.Weight(0);
    const double factor = endWeight != startWeight ? endWeight / startWeight : 1.0;
    const ON_NurbsCurve head(*this);
    std::vector<double> controlPoints(head.m_cv, head.m_cv + head.m_cv_count * head.CVSize());
    for (int number = 1; number < tail.m_cv_count; ++number) {
        for (int axis = 0; axis < CVSize(); ++axis) {
            controlPoints.push_back(tail.CV(number)[axis] * factor);
        }
    }
    m_cv_count += tail.m_cv_count - 1;
    TakeArrays(std::move(knots), std::move(controlPoints));
    return true;
}
