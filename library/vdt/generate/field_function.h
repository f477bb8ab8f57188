// Fields around points: what each point adds to the strength of a soft body at a place near it.
#pragma once

#include "vdt/math/vector.h"

namespace vdt {

class FieldFunction {
public:
    virtual ~FieldFunction() = default;

    /// What a point at `b` adds to the field at `a`; 0 beyond the radius.
    virtual double Value(const Vector3& a, const Vector3& b) const = 0;
    /// How the field at `a` changes because of a point at `b`. Gives `out` back, for use in expressions.
    virtual Vector3& Gradient(Vector3& out, const Vector3& a, const Vector3& b) const = 0;
    virtual double Radius() const = 0; // model units
};

/// A smooth bump, 1 at the point and 0 at the radius: Wyvill, McPheeters and Wyvill, "Data Structure for Soft Objects",
/// 1986.
class WyvillFieldFunction final : public FieldFunction {
public:
    explicit WyvillFieldFunction(double fieldRadius) : radius(fieldRadius), radiusSquared(fieldRadius * fieldRadius) {}

    double Value(const Vector3& a, const Vector3& b) const override;
    Vector3& Gradient(Vector3& out, const Vector3& a, const Vector3& b) const override;
    double Radius() const override { return radius; }

private:
    double radius;
    double radiusSquared;
};

} // namespace vdt
