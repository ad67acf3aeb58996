/// Axis-aligned boxes.
#pragma once

#include "ON_Point.h"

class ON_BoundingBox {
public:
    ON_3dPoint m_min;
    ON_3dPoint m_max;

    /// A box that is not valid: min (1,0,0), max (-1,0,0).
    ON_BoundingBox() noexcept : m_min(1.0, 0.0, 0.0), m_max(-1.0, 0.0, 0.0) {}
    ON_BoundingBox(const ON_3dPoint& minimum, const ON_3dPoint& maximum) noexcept
        : m_min(minimum), m_max(maximum) {}
    ON_BoundingBox(const ON_BoundingBox&) = default;
    ON_BoundingBox& operator=(const ON_BoundingBox&) = default;
    ~ON_BoundingBox() noexcept {}

    /// Says whether every axis is ordered and holds usable numbers.
    bool IsValid() const noexcept {
        return m_min.x <= m_max.x && m_min.y <= m_max.y && m_min.z <= m_max.z && m_min.IsValid() &&
               m_max.IsValid();
    }

    /// Returns a corner: per axis the maximum for a positive index, otherwise the minimum.
    ON_3dPoint Corner(int xIndex, int yIndex, int zIndex) const noexcept {
        return ON_3dPoint(xIndex > 0 ? m_max.x : m_min.x, yIndex > 0 ? m_max.y : m_min.y,
                          zIndex > 0 ? m_max.z : m_min.z);
    }

    ON_3dPoint Center() const noexcept {
        return ON_3dPoint(0.5 * (m_max.x + m_min.x), 0.5 * (m_max.y + m_min.y),
                          0.5 * (m_max.z + m_min.z));
    }
    ON_3dVector Diagonal() const noexcept { return m_max - m_min; }

    /// Becomes the single point, or grows to hold it.
    ///
    /// - Result: always true.
    /// - Deliberate: growing a box that is not valid replaces it. A NaN coordinate leaves its axis
    ///   alone; an infinite one is stored, so that the next point replaces the box.
    bool Set(const ON_3dPoint& point, int grows = 0) noexcept {
        if (grows == 0 || !IsValid()) {
            m_min = point;
            m_max = point;
            return true;
        }
        GrowAxis(point.x, m_min.x, m_max.x);
        GrowAxis(point.y, m_min.y, m_max.y);
        GrowAxis(point.z, m_min.z, m_max.z);
        return true;
    }

private:
    static void GrowAxis(double coordinate, double& minimum, double& maximum) noexcept {
        if (coordinate < minimum) {
            minimum = coordinate;
        } else if (maximum < coordinate) {
            maximum = coordinate;
        }
    }
};
