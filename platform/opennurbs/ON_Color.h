/// A colour packed into 32 bits.
#pragma once

#include "ON_Defines.h"

/// Packed as 0xAABBGGRR: red in the low byte, alpha in the high one.
///
/// - Deliberate: alpha 0 means opaque.
class ON_Color {
public:
    static const ON_Color UnsetColor;

    /// Black and opaque.
    ON_Color() noexcept {}
    /// Opaque. Components are clamped to 0..255.
    ON_Color(int red, int green, int blue) noexcept { SetRGBA(red, green, blue, 0); }
    /// Components are clamped to 0..255.
    ON_Color(int red, int green, int blue, int alpha) noexcept { SetRGBA(red, green, blue, alpha); }
    constexpr ON_Color(unsigned int packed) noexcept : m_color(packed) {}

    operator unsigned int() const noexcept { return m_color; }

    /// Returns the sign of the difference of the packed values, taken as a signed 32-bit number.
    ///
    /// - Deliberate: not an order. Colours more than 2^31 apart compare the other way round; sort
    /// by
    ///   the packed value instead.
    int Compare(const ON_Color& other) const noexcept {
        return static_cast<int>(m_color - other.m_color);
    }

    int Red() const noexcept { return static_cast<int>(m_color & 0xffu); }
    int Green() const noexcept { return static_cast<int>((m_color >> 8) & 0xffu); }
    int Blue() const noexcept { return static_cast<int>((m_color >> 16) & 0xffu); }
    int Alpha() const noexcept { return static_cast<int>(m_color >> 24); }

    /// @name Components as fractions of 255.
    /// @{
    double FractionRed() const noexcept { return kFraction * Red(); }
    double FractionGreen() const noexcept { return kFraction * Green(); }
    double FractionBlue() const noexcept { return kFraction * Blue(); }
    double FractionAlpha() const noexcept { return kFraction * Alpha(); }
    /// @}

    /// - Deliberate: alpha becomes 0.
    void SetRGB(int red, int green, int blue) noexcept { SetRGBA(red, green, blue, 0); }
    void SetRGBA(int red, int green, int blue, int alpha) noexcept {
        m_color = ClampedByte(red) | (ClampedByte(green) << 8) | (ClampedByte(blue) << 16) |
                  (ClampedByte(alpha) << 24);
    }
    void SetAlpha(int alpha) noexcept {
        m_color = (m_color & 0x00ffffffu) | (ClampedByte(alpha) << 24);
    }

    /// Fractions are clamped to 0..1 and rounded half up; alpha becomes 0.
    void SetFractionalRGB(double red, double green, double blue) noexcept {
        SetFractionalRGBA(red, green, blue, 0.0);
    }
    void SetFractionalRGBA(double red, double green, double blue, double alpha) noexcept {
        SetRGBA(RoundedByte(red), RoundedByte(green), RoundedByte(blue), RoundedByte(alpha));
    }
    /// - Deliberate: truncates where `SetFractionalRGBA` rounds.
    void SetFractionalAlpha(double alpha) noexcept {
        SetAlpha(static_cast<int>(ClampedFraction(alpha) * 255.0));
    }

private:
    static constexpr double kFraction = 0.003921568627450980392;

    static unsigned int ClampedByte(int component) noexcept {
        return component < 0 ? 0u : (component > 255 ? 255u : static_cast<unsigned int>(component));
    }
    static double ClampedFraction(double fraction) noexcept {
        return fraction > 0.0 ? (fraction < 1.0 ? fraction : 1.0) : 0.0;
    }
    static int RoundedByte(double fraction) noexcept {
        return static_cast<int>(ClampedFraction(fraction) * 255.0 + 0.5);
    }

    unsigned int m_color = 0;
};

inline const ON_Color ON_Color::UnsetColor = ON_Color(ON_UNSET_COLOR);
