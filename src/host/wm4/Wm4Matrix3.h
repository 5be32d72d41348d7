// Wm4::Matrix3: Wild Magic 5's 3x3 matrix. Stored row by row, M[r][c] is row r, column c;
// it acts on column vectors (M * v), so column j is the image of unit axis j.
// Matrix3<Real>(true) is the zero matrix, Matrix3<Real>(false) the identity.
#pragma once

#include <Wm5Matrix3.h>

namespace Wm4 {

template <class Real> using Matrix3 = Wm5::Matrix3<Real>;

} // namespace Wm4
