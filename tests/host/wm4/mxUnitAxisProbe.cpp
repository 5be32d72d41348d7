#include "mxUnitAxisProbe.h"

namespace mx {
namespace test {

namespace {
const Wm4::Vector3<float> csUnitX = Wm4::Vector3<float>::UNIT_X;
const Wm4::Vector3<float> csUnitZ = Wm4::Vector3<float>::UNIT_Z;
} // namespace

const Wm4::Vector3<float>& unitXCopiedAtLoad() { return csUnitX; }
const Wm4::Vector3<float>& unitZCopiedAtLoad() { return csUnitZ; }

} // namespace test
} // namespace mx
