// Template implementation of mxGenericTransformation<Real>; included by
// mxGenericTransformation.h only.
//
// All arithmetic stays in Real (single precision for float). Nothing here divides by zero or
// takes a square root, so NaN or infinite input only propagates into the result.

namespace mx {

namespace mxGenericTransformationDetail {

template <class Real> inline Wm4::Vector3<Real> ZeroVector() {
    return Wm4::Vector3<Real>((Real)0, (Real)0, (Real)0);
}

template <class Real> inline Wm4::Matrix3<Real> ZeroMatrix() {
    return Wm4::Matrix3<Real>(true);
}

} // namespace mxGenericTransformationDetail

template <class Real>
mxGenericTransformation<Real>::mxGenericTransformation()
    : matrix(false), // identity
      translate((Real)0, (Real)0, (Real)0), scale((Real)1, (Real)1, (Real)1), isIdentity(true),
      isRSMatrix(true), isUniformScale(true) {}

template <class Real>
bool mxGenericTransformation<Real>::operator==(const mxGenericTransformation& other) const {
    // Entry by entry with ==, so 0 equals -0 and NaN equals nothing.
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            if (matrix(row, col) != other.matrix(row, col)) {
                return false;
            }
        }
    }
    for (int i = 0; i < 3; ++i) {
        if (translate[i] != other.translate[i] || scale[i] != other.scale[i]) {
            return false;
        }
    }
    return isIdentity == other.isIdentity && isRSMatrix == other.isRSMatrix &&
           isUniformScale == other.isUniformScale;
}

template <class Real> void mxGenericTransformation<Real>::MakeIdentity() {
    matrix.MakeIdentity();
    translate = mxGenericTransformationDetail::ZeroVector<Real>();
    scale = Wm4::Vector3<Real>((Real)1, (Real)1, (Real)1);
    isIdentity = true;
    isRSMatrix = true;
    isUniformScale = true;
}

template <class Real> void mxGenericTransformation<Real>::MakeUnitScale() {
    scale = Wm4::Vector3<Real>((Real)1, (Real)1, (Real)1);
    isUniformScale = true;
}

template <class Real>
void mxGenericTransformation<Real>::SetRotate(const Wm4::Matrix3<Real>& rotate) {
    matrix = rotate;
    isIdentity = false;
    isRSMatrix = true;
}

template <class Real> void mxGenericTransformation<Real>::SetMatrix(const Wm4::Matrix3<Real>& m) {
    matrix = m;
    isIdentity = false;
    isRSMatrix = false;
    isUniformScale = false;
}

template <class Real>
void mxGenericTransformation<Real>::SetTranslate(const Wm4::Vector3<Real>& t) {
    translate = t;
    isIdentity = false;
}

template <class Real> void mxGenericTransformation<Real>::SetScale(const Wm4::Vector3<Real>& s) {
    scale = s;
    isIdentity = false;
    isUniformScale = false;
}

template <class Real> void mxGenericTransformation<Real>::SetUniformScale(Real s) {
    scale = Wm4::Vector3<Real>(s, s, s);
    isIdentity = false;
    isUniformScale = true;
}

template <class Real> Wm4::Matrix3<Real>& mxGenericTransformation<Real>::GetRotate() {
    isIdentity = false;
    isRSMatrix = true;
    return matrix;
}

template <class Real> Wm4::Matrix3<Real> mxGenericTransformation<Real>::GetFullMatrix() const {
    return isRSMatrix ? matrix.TimesDiagonal(scale) : matrix;
}

template <class Real>
Wm4::Vector3<Real> mxGenericTransformation<Real>::ApplyForward(const Wm4::Vector3<Real>& v,
                                                               bool isPoint) const {
    if (isIdentity) {
        return v;
    }
    Wm4::Vector3<Real> result = GetFullMatrix() * v;
    if (isPoint) {
        result += translate;
    }
    return result;
}

template <class Real>
void mxGenericTransformation<Real>::Product(const mxGenericTransformation& A,
                                            const mxGenericTransformation& B) {
    // A or B may be *this: build the result aside and assign it at the end.
    if (A.isIdentity) {
        *this = B;
        return;
    }
    if (B.isIdentity) {
        *this = A;
        return;
    }

    mxGenericTransformation result;
    if (A.isRSMatrix && B.isRSMatrix && A.IsUniformScale()) {
        // A*B = (Ra*sa)(Rb*Sb) = (Ra*Rb)(sa*Sb): still rotation times scale.
        const Real sa = A.GetUniformScale();
        result.SetRotate(A.matrix * B.matrix);
        result.SetTranslate(sa * (A.matrix * B.translate) + A.translate);
        if (B.IsUniformScale()) {
            result.SetUniformScale(sa * B.GetUniformScale());
        } else {
            result.SetScale(sa * B.scale);
        }
    } else {
        const Wm4::Matrix3<Real> ma = A.GetFullMatrix();
        const Wm4::Matrix3<Real> mb = B.GetFullMatrix();
        result.SetMatrix(ma * mb);
        result.SetTranslate(ma * B.translate + A.translate);
    }
    *this = result;
}

template <class Real>
void mxGenericTransformation<Real>::Inverse(mxGenericTransformation& out) const {
    // out may be *this: build the result aside and assign it at the end.
    mxGenericTransformation result;
    if (isIdentity) {
        out = result;
        return;
    }

    if (isRSMatrix) {
        const bool singular = scale.X() == (Real)0 || scale.Y() == (Real)0 || scale.Z() == (Real)0;
        if (singular) {
            result.SetMatrix(mxGenericTransformationDetail::ZeroMatrix<Real>());
            result.SetTranslate(mxGenericTransformationDetail::ZeroVector<Real>());
        } else if (isUniformScale) {
            // (R*s)^-1 = R^T * (1/s): stays in RS form.
            const Real invScale = (Real)1 / scale.X();
            const Wm4::Matrix3<Real> rotateT = matrix.Transpose();
            result.SetRotate(rotateT);
            result.SetUniformScale(invScale);
            result.SetTranslate(-(invScale * (rotateT * translate)));
        } else {
            // (R*S)^-1 = S^-1 * R^T, which is not of the form R'*S' in general.
            const Wm4::Vector3<Real> invScale((Real)1 / scale.X(), (Real)1 / scale.Y(),
                                              (Real)1 / scale.Z());
            const Wm4::Matrix3<Real> inverse = matrix.Transpose().DiagonalTimes(invScale);
            result.SetMatrix(inverse);
            result.SetTranslate(-(inverse * translate));
        }
    } else {
        // Wild Magic's Inverse gives the zero matrix for a singular (or NaN) matrix.
        const Wm4::Matrix3<Real> inverse = matrix.Inverse();
        result.SetMatrix(inverse);
        result.SetTranslate(-(inverse * translate));
    }
    out = result;
}

} // namespace mx
