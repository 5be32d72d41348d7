#include "mx3DManipulationVersion.h"

// Generated at configure time; included by this file only, so that a new commit rebuilds
// nothing else.
#include "mxRevision.h"

namespace mx {
namespace mx3DManipulation {

namespace {
// One array per flag combination: separate storage for equal texts, on purpose.
const char csMajorMinor[2][4] = {"3.0", "3.0"};
const char csMajorMinorRelease[2][6] = {"3.0.0", "3.0.0"};
const char csRevision[2][11] = {"3.0.0.1297", "3.0.0.1297"};
const char csRevisionWithId[2][sizeof("3.0.0.1297 #" MX3D_REVISION_ID)] = {
    "3.0.0.1297 #" MX3D_REVISION_ID, "3.0.0.1297 #" MX3D_REVISION_ID};
const char csRevisionDate[] = "3.0.0.1297 #" MX3D_REVISION_ID " 2026-2";
const char csCommitId[] = MX3D_REVISION_ID;
} // namespace

unsigned int Version::GetMajor() { return 3; }
unsigned int Version::GetMinor() { return 0; }
unsigned int Version::GetRelease() { return 0; }
unsigned int Version::GetRevision() { return 1297; }
unsigned short Version::GetYear() { return 2026; }
unsigned char Version::GetMonth() { return 2; }
const char* Version::GetCommitId() { return csCommitId; }
bool Version::IsDev() { return false; }
bool Version::IsDebug() { return false; }
bool Version::IsBeta() { return false; }

const char* Version::GetDescStringMajorMinor(bool flag) { return csMajorMinor[flag ? 1 : 0]; }

const char* Version::GetDescStringMajorMinorRelease(bool flag) {
    return csMajorMinorRelease[flag ? 1 : 0];
}

const char* Version::GetDescStringMajorMinorReleaseRevision(bool flag, bool withCommitId) {
    return withCommitId ? csRevisionWithId[flag ? 1 : 0] : csRevision[flag ? 1 : 0];
}

const char* Version::GetDescStringMajorMinorReleaseRevisionDate() { return csRevisionDate; }

} // namespace mx3DManipulation
} // namespace mx
