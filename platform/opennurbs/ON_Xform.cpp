// Products, rotations and the inverse. The inverse is a Gauss-Jordan elimination with full
// pivoting; rank and determinant run the same elimination, so that the three never disagree about
// which pivot is zero.
#include "ON_Xform.h"

#include <utility>

namespace {

using Matrix = double[4][4];

struct Elimination {
    int rank = 0;
    double smallestPivot = 0.0;
    double reciprocalDeterminant = 1.0;
};

// Brings the entry of largest magnitude of the lower right block to (step, step) and returns its
// magnitude. Columns of the inverse are not exchanged here; `exchangedColumn` remembers them.
double BringPivot(int step, Matrix& matrix, Matrix& inverse, int& exchangedColumn,
                  double& determinantSign) noexcept {
    int pivotRow = step;
    int pivotColumn = step;
    double magnitude = std::fabs(matrix[step][step]);
    for (int row = step; row < 4; ++row) {
        for (int column = step; column < 4; ++column) {
            if (std::fabs(matrix[row][column]) > magnitude) {
                magnitude = std::fabs(matrix[row][column]);
                pivotRow = row;
                pivotColumn = column;
            }
        }
    }
    exchangedColumn = pivotColumn;
    if (pivotRow != step) {
        determinantSign = -determinantSign;
        std::swap(matrix[pivotRow], matrix[step]);
        std::swap(inverse[pivotRow], inverse[step]);
    }
    if (pivotColumn != step) {
        determinantSign = -determinantSign;
        for (auto& row : matrix) {
            std::swap(row[pivotColumn], row[step]);
        }
    }
    return magnitude;
}

void ReduceColumn(int step, Matrix& matrix, Matrix& inverse) noexcept {
    const double pivot = matrix[step][step];
    for (int column = step + 1; column < 4; ++column) {
        matrix[step][column] /= pivot;
    }
    for (double& entry : inverse[step]) {
        entry /= pivot;
    }
    // Entries this far below the pivot are rounding errors of zeros.
    const double negligible = std::fabs(pivot) * ON_EPSILON;
    for (int row = 0; row < 4; ++row) {
        if (row == step || !(std::fabs(matrix[row][step]) > negligible)) {
            continue;
        }
        const double factor = -matrix[row][step];
        for (int column = step + 1; column < 4; ++column) {
            matrix[row][column] += factor * matrix[step][column];
        }
        for (int column = 0; column < 4; ++column) {
            inverse[row][column] += factor * inverse[step][column];
        }
    }
}

// `inverse` starts as the identity and holds the inverse afterwards, or as much of it as there was
// before the first zero pivot.
Elimination Eliminate(Matrix& matrix, Matrix& inverse) noexcept {
    Elimination result;
    int exchangedColumn[4] = {0, 1, 2, 3};
    for (int step = 0; step < 4; ++step) {
        const double magnitude =
            BringPivot(step, matrix, inverse, exchangedColumn[step], result.reciprocalDeterminant);
        if (step == 0 || magnitude < result.smallestPivot) {
            result.smallestPivot = magnitude;
        }
        if (!(magnitude > 0.0)) {
            break;
        }
        ++result.rank;
        result.reciprocalDeterminant /= matrix[step][step];
        ReduceColumn(step, matrix, inverse);
    }
    for (int step = 3; step >= 0; --step) {
        if (exchangedColumn[step] != step) {
            std::swap(inverse[exchangedColumn[step]], inverse[step]);
        }
    }
    return result;
}

Elimination EliminateCopy(const ON_Xform& xform) noexcept {
    ON_Xform matrix = xform;
    ON_Xform inverse(1.0);
    return Eliminate(matrix.m_xform, inverse.m_xform);
}

// A sine and cosine within `tolerance` of a quarter turn become exactly that.
struct Turn {
    double sine;
    double cosine;

    void SnapToQuarter(double tolerance) noexcept {
        if (std::fabs(sine) >= 1.0 - tolerance && std::fabs(cosine) <= tolerance) {
            cosine = 0.0;
            sine = sine < 0.0 ? -1.0 : 1.0;
        }
    }

    void Normalize() noexcept {
        SnapToQuarter(ON_SQRT_EPSILON);
        if (std::fabs(cosine) >= 1.0 - ON_SQRT_EPSILON && std::fabs(sine) <= ON_SQRT_EPSILON) {
            cosine = cosine < 0.0 ? -1.0 : 1.0;
            sine = 0.0;
        } else if (std::fabs(cosine * cosine + sine * sine - 1.0) > ON_SQRT_EPSILON) {
            ON_2dVector direction(cosine, sine);
            if (direction.Unitize()) {
                cosine = direction.x;
                sine = direction.y;
            } else {
                cosine = 1.0;
                sine = 0.0;
            }
        }
        if (std::fabs(cosine) > 1.0 - ON_EPSILON || std::fabs(sine) < ON_EPSILON) {
            cosine = cosine < 0.0 ? -1.0 : 1.0;
            sine = 0.0;
        } else if (std::fabs(sine) > 1.0 - ON_EPSILON || std::fabs(cosine) < ON_EPSILON) {
            cosine = 0.0;
            sine = sine < 0.0 ? -1.0 : 1.0;
        }
    }
};

}  // namespace

ON_Xform ON_Xform::operator*(const ON_Xform& other) const noexcept {
    ON_Xform product;
    for (int row = 0; row < 4; ++row) {
        const double* left = m_xform[row];
        for (int column = 0; column < 4; ++column) {
            product.m_xform[row][column] =
                left[0] * other.m_xform[0][column] + left[1] * other.m_xform[1][column] +
                left[2] * other.m_xform[2][column] + left[3] * other.m_xform[3][column];
        }
    }
    return product;
}

void ON_Xform::Zero() noexcept {
    *this = ON_Xform();
    m_xform[3][3] = 0.0;
}

void ON_Xform::Scale(double x, double y, double z) noexcept {
    *this = ON_Xform();
    m_xform[0][0] = x;
    m_xform[1][1] = y;
    m_xform[2][2] = z;
}

void ON_Xform::Scale(ON_3dPoint fixedPoint, double factor) noexcept {
    const ON_Xform scale(factor);
    if (fixedPoint.IsZero()) {
        *this = scale;
        return;
    }
    ON_Xform toOrigin;
    ON_Xform fromOrigin;
    toOrigin.Translation(-fixedPoint);
    fromOrigin.Translation(fixedPoint);
    *this = fromOrigin * scale * toOrigin;
}

void ON_Xform::Translation(double x, double y, double z) noexcept {
    Identity();
    m_xform[0][3] = x;
    m_xform[1][3] = y;
    m_xform[2][3] = z;
}

void ON_Xform::Rotation(double angle, ON_3dVector axis, ON_3dPoint center) noexcept {
    Rotation(std::sin(angle), std::cos(angle), axis, center);
}

void ON_Xform::Rotation(double sinAngle, double cosAngle, ON_3dVector axis,
                        ON_3dPoint center) noexcept {
    Identity();
    Turn turn{sinAngle, cosAngle};
    turn.Normalize();
    const double s = turn.sine;
    const double c = turn.cosine;
    if (s == 0.0 && c == 1.0) {
        return;
    }
    ON_3dVector a = axis;
    if (std::fabs(a.LengthSquared() - 1.0) > ON_EPSILON) {
        a.Unitize();
    }
    const double u = 1.0 - c;
    auto& m = m_xform;
    m[0][0] = a.x * a.x * u + c;
    m[0][1] = a.x * a.y * u - a.z * s;
    m[0][2] = a.x * a.z * u + a.y * s;
    m[1][0] = a.y * a.x * u + a.z * s;
    m[1][1] = a.y * a.y * u + c;
    m[1][2] = a.y * a.z * u - a.x * s;
    m[2][0] = a.z * a.x * u - a.y * s;
    m[2][1] = a.z * a.y * u + a.x * s;
    m[2][2] = a.z * a.z * u + c;
    if (!center.IsZero()) {
        m[0][3] = -((m[0][0] - 1.0) * center.x + m[0][1] * center.y + m[0][2] * center.z);
        m[1][3] = -(m[1][0] * center.x + (m[1][1] - 1.0) * center.y + m[1][2] * center.z);
        m[2][3] = -(m[2][0] * center.x + m[2][1] * center.y + (m[2][2] - 1.0) * center.z);
    }
}

bool ON_Xform::IsValid() const noexcept {
    bool isValid = true;
    for (const auto& row : m_xform) {
        for (const double entry : row) {
            isValid = isValid && ON_IsValid(entry);
        }
    }
    return isValid;
}

bool ON_Xform::IsIdentity() const noexcept {
    bool isIdentity = true;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            isIdentity = isIdentity && m_xform[row][column] == (row == column ? 1.0 : 0.0);
        }
    }
    return isIdentity;
}

void ON_Xform::Transpose() noexcept {
    for (int row = 0; row < 4; ++row) {
        for (int column = row + 1; column < 4; ++column) {
            std::swap(m_xform[row][column], m_xform[column][row]);
        }
    }
}

bool ON_Xform::Invert(double* smallestPivot) noexcept {
    ON_Xform matrix = *this;
    Identity();
    const Elimination elimination = Eliminate(matrix.m_xform, m_xform);
    if (smallestPivot) {
        *smallestPivot = elimination.smallestPivot;
    }
    return elimination.rank == 4;
}

int ON_Xform::Rank(double* smallestPivot) const noexcept {
    const Elimination elimination = EliminateCopy(*this);
    if (smallestPivot) {
        *smallestPivot = elimination.smallestPivot;
    }
    return elimination.rank;
}

double ON_Xform::Determinant(double* smallestPivot) const noexcept {
    const Elimination elimination = EliminateCopy(*this);
    if (smallestPivot) {
        *smallestPivot = elimination.smallestPivot;
    }
    if (elimination.rank < 4 || elimination.reciprocalDeterminant == 0.0) {
        return 0.0;
    }
    return 1.0 / elimination.reciprocalDeterminant;
}
