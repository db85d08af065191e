#pragma once

#include <cmath>

/// A vector or point in space. A plain value.
struct Vector3D {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr Vector3D& operator+=(const Vector3D& other)
    {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }
    constexpr Vector3D& operator-=(const Vector3D& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }
    constexpr Vector3D& operator*=(double factor)
    {
        x *= factor;
        y *= factor;
        z *= factor;
        return *this;
    }
    constexpr Vector3D& operator/=(double divisor)
    {
        x /= divisor;
        y /= divisor;
        z /= divisor;
        return *this;
    }
    /// Without overflow on the way.
    [[nodiscard]] double length() const { return std::hypot(x, y, z); }

    friend constexpr Vector3D operator+(Vector3D a, const Vector3D& b) { return a += b; }
    friend constexpr Vector3D operator-(Vector3D a, const Vector3D& b) { return a -= b; }
    friend constexpr Vector3D operator-(const Vector3D& a) { return {-a.x, -a.y, -a.z}; }
    friend constexpr Vector3D operator*(Vector3D a, double factor) { return a *= factor; }
    friend constexpr Vector3D operator*(double factor, Vector3D a) { return a *= factor; }
    friend constexpr Vector3D operator/(Vector3D a, double divisor) { return a /= divisor; }
    friend constexpr bool operator==(const Vector3D&, const Vector3D&) = default;
};

/// The scalar product.
[[nodiscard]] constexpr double dot(const Vector3D& a, const Vector3D& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The vector product, right-handed.
[[nodiscard]] constexpr Vector3D cross(const Vector3D& a, const Vector3D& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
