/// Two doubles that are worked on at once, each as the same operation on one double would.
///
/// SSE2, which every 64-bit x86 processor has; two plain numbers elsewhere.
#pragma once

#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Vr::detail {

#if defined(__SSE2__)

class Pair {
public:
    Pair() = default;
    explicit Pair(__m128d value) : value_(value) {}
    static Pair Both(double value) { return Pair(_mm_set1_pd(value)); }
    /// Two neighbours in memory; no alignment is needed.
    static Pair Load(const double* two) { return Pair(_mm_loadu_pd(two)); }
    static Pair Load(const double& low, const double& high) {
        return Pair(_mm_loadh_pd(_mm_load_sd(&low), &high));
    }

    [[nodiscard]] double Low() const { return _mm_cvtsd_f64(value_); }
    [[nodiscard]] double High() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(value_, value_)); }
    void Store(double* two) const { _mm_storeu_pd(two, value_); }

    friend Pair operator+(Pair a, Pair b) { return Pair(_mm_add_pd(a.value_, b.value_)); }
    friend Pair operator-(Pair a, Pair b) { return Pair(_mm_sub_pd(a.value_, b.value_)); }
    friend Pair operator*(Pair a, Pair b) { return Pair(_mm_mul_pd(a.value_, b.value_)); }
    friend Pair operator/(Pair a, Pair b) { return Pair(_mm_div_pd(a.value_, b.value_)); }
    friend Pair Magnitudes(Pair a) { return Pair(_mm_andnot_pd(_mm_set1_pd(-0.0), a.value_)); }
    /// The lesser (greater) of two numbers; the second one where a NaN is met or both are zeros.
    friend Pair Min(Pair a, Pair b) { return Pair(_mm_min_pd(a.value_, b.value_)); }
    friend Pair Max(Pair a, Pair b) { return Pair(_mm_max_pd(a.value_, b.value_)); }
    /// Takes `chosen` where `a` and `b` are equal, otherwise `other`.
    friend Pair WhereEqual(Pair a, Pair b, Pair chosen, Pair other) {
        const __m128d isEqual = _mm_cmpeq_pd(a.value_, b.value_);
        return Pair(
            _mm_or_pd(_mm_and_pd(isEqual, chosen.value_), _mm_andnot_pd(isEqual, other.value_)));
    }
    /// Takes `chosen` where `a` is less than `b`, otherwise `other`.
    friend Pair WhereLess(Pair a, Pair b, Pair chosen, Pair other) {
        const __m128d isLess = _mm_cmplt_pd(a.value_, b.value_);
        return Pair(
            _mm_or_pd(_mm_and_pd(isLess, chosen.value_), _mm_andnot_pd(isLess, other.value_)));
    }
    /// Answers true when both numbers are equal to those of the other pair.
    friend bool AreEqual(Pair a, Pair b) {
        return _mm_movemask_pd(_mm_cmpeq_pd(a.value_, b.value_)) == 3;
    }
    /// One number of `a` and one of `b`, as the name says.
    friend Pair LowLow(Pair a, Pair b) { return Pair(_mm_unpacklo_pd(a.value_, b.value_)); }
    friend Pair LowHigh(Pair a, Pair b) { return Pair(_mm_shuffle_pd(a.value_, b.value_, 2)); }
    friend Pair HighLow(Pair a, Pair b) { return Pair(_mm_shuffle_pd(a.value_, b.value_, 1)); }
    friend Pair HighHigh(Pair a, Pair b) { return Pair(_mm_unpackhi_pd(a.value_, b.value_)); }

private:
    __m128d value_;
};

#else

class Pair {
public:
    Pair() = default;
    static Pair Of(double low, double high) {
        Pair pair;
        pair.low_ = low;
        pair.high_ = high;
        return pair;
    }
    static Pair Both(double value) { return Of(value, value); }
    static Pair Load(const double* two) { return Of(two[0], two[1]); }
    static Pair Load(const double& low, const double& high) { return Of(low, high); }

    [[nodiscard]] double Low() const { return low_; }
    [[nodiscard]] double High() const { return high_; }
    void Store(double* two) const {
        two[0] = low_;
        two[1] = high_;
    }

    friend Pair operator+(Pair a, Pair b) { return Of(a.low_ + b.low_, a.high_ + b.high_); }
    friend Pair operator-(Pair a, Pair b) { return Of(a.low_ - b.low_, a.high_ - b.high_); }
    friend Pair operator*(Pair a, Pair b) { return Of(a.low_ * b.low_, a.high_ * b.high_); }
    friend Pair operator/(Pair a, Pair b) { return Of(a.low_ / b.low_, a.high_ / b.high_); }
    friend Pair Magnitudes(Pair a) { return Of(std::fabs(a.low_), std::fabs(a.high_)); }
    friend Pair Min(Pair a, Pair b) {
        return Of(a.low_ < b.low_ ? a.low_ : b.low_, a.high_ < b.high_ ? a.high_ : b.high_);
    }
    friend Pair Max(Pair a, Pair b) {
        return Of(a.low_ > b.low_ ? a.low_ : b.low_, a.high_ > b.high_ ? a.high_ : b.high_);
    }
    friend Pair WhereEqual(Pair a, Pair b, Pair chosen, Pair other) {
        return Of(a.low_ == b.low_ ? chosen.low_ : other.low_,
                  a.high_ == b.high_ ? chosen.high_ : other.high_);
    }
    friend Pair WhereLess(Pair a, Pair b, Pair chosen, Pair other) {
        return Of(a.low_ < b.low_ ? chosen.low_ : other.low_,
                  a.high_ < b.high_ ? chosen.high_ : other.high_);
    }
    friend bool AreEqual(Pair a, Pair b) { return a.low_ == b.low_ && a.high_ == b.high_; }
    friend Pair LowLow(Pair a, Pair b) { return Of(a.low_, b.low_); }
    friend Pair LowHigh(Pair a, Pair b) { return Of(a.low_, b.high_); }
    friend Pair HighLow(Pair a, Pair b) { return Of(a.high_, b.low_); }
    friend Pair HighHigh(Pair a, Pair b) { return Of(a.high_, b.high_); }

private:
    double low_;
    double high_;
};

#endif

}  // namespace Vr::detail
