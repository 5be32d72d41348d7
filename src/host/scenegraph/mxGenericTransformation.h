// mxGenericTransformation<Real>: an affine transformation Y = M*X + T, after the model of
// Wild Magic 5's Transform.
//
// M is held in one of two forms:
// - RS form (IsRSMatrix() true): M = R*S with R a rotation (GetRotate()) and S = diag(scale)
//   (GetScale()); IsUniformScale() tells that the three scales are equal (GetUniformScale()).
// - general form (IsRSMatrix() false): M is any 3x3 matrix (GetMatrix()).
// A default-constructed transformation is the identity (RS form, R = I, scale (1, 1, 1),
// T = 0) and IsIdentity() is true until one of the Set operations runs.
//
// Matrices are Wm4::Matrix3<Real>, stored row by row and acting on column vectors. GetMatrix()
// returns the stored matrix: the rotation R for an RS transformation, the general matrix
// otherwise. The hints follow Wild Magic 5:
// - every Set operation makes IsIdentity() false;
// - SetRotate makes the transformation RS (keeps its scale); SetMatrix makes it general;
// - SetScale clears the uniform-scale hint, SetUniformScale sets it. On a general
//   transformation SetScale and SetUniformScale store the scale but M stays the matrix.
//
// Copy, assignment and operator== are member-wise (matrix, translation, scale and hints).
#pragma once

#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

namespace mx {

template <class Real> class mxGenericTransformation {
public:
    // The identity.
    mxGenericTransformation();

    bool operator==(const mxGenericTransformation& other) const;
    bool operator!=(const mxGenericTransformation& other) const { return !(*this == other); }

    // Back to the identity (RS form, unit scale, zero translation).
    void MakeIdentity();
    // Scale back to (1, 1, 1), keeping rotation and translation (RS form only; no effect on a
    // general transformation's matrix).
    void MakeUnitScale();

    bool IsIdentity() const { return isIdentity; }
    bool IsRSMatrix() const { return isRSMatrix; }
    bool IsUniformScale() const { return isRSMatrix && isUniformScale; }

    void SetRotate(const Wm4::Matrix3<Real>& rotate);
    void SetMatrix(const Wm4::Matrix3<Real>& matrix);
    void SetTranslate(const Wm4::Vector3<Real>& translate);
    void SetScale(const Wm4::Vector3<Real>& scale);
    void SetUniformScale(Real scale);

    // The rotation of an RS transformation (for a general one: the stored matrix).
    const Wm4::Matrix3<Real>& GetRotate() const { return matrix; }
    // Writable rotation: the caller writes a rotation, so the transformation becomes a
    // non-identity RS transformation (its scale is kept).
    Wm4::Matrix3<Real>& GetRotate();
    const Wm4::Matrix3<Real>& GetMatrix() const { return matrix; }
    const Wm4::Vector3<Real>& GetTranslate() const { return translate; }
    const Wm4::Vector3<Real>& GetScale() const { return scale; }
    // The scale of a uniformly scaled transformation (scale.X() otherwise).
    Real GetUniformScale() const { return scale.X(); }

    // The full matrix M: R*S for an RS transformation, the general matrix otherwise.
    Wm4::Matrix3<Real> GetFullMatrix() const;

    // isPoint true: M*v + T (a point); false: M*v (a direction).
    Wm4::Vector3<Real> ApplyForward(const Wm4::Vector3<Real>& v, bool isPoint = true) const;

    // this = A*B (B applied first, then A). The result stays in RS form when both are RS and
    // A's scale is uniform; otherwise it is general. A and B may be this object.
    void Product(const mxGenericTransformation& A, const mxGenericTransformation& B);

    // out = the inverse of this transformation, exact also for a rotation with non-uniform
    // scale (whose inverse is general). An RS transformation with uniform scale inverts to RS
    // form. A singular matrix gives the zero matrix (Wild Magic's Inverse). out may be this
    // object.
    void Inverse(mxGenericTransformation& out) const;

private:
    Wm4::Matrix3<Real> matrix;
    Wm4::Vector3<Real> translate;
    Wm4::Vector3<Real> scale;
    bool isIdentity;
    bool isRSMatrix;
    bool isUniformScale;
};

} // namespace mx

#include "mxGenericTransformation.inl"
