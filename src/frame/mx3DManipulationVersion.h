// mx3DManipulation::Version: the library's version record, 3.0.0 build 1297 of 2026-2.
//
// Every function is static and free of side effects. The description texts are static,
// NUL-terminated and live as long as the library; never free them. Each flag combination of
// a description function has its own copy of the text, so two combinations never share a
// pointer even when the texts are equal.
#pragma once

namespace mx {
namespace mx3DManipulation {

struct Version {
    static unsigned int GetMajor();
    static unsigned int GetMinor();
    static unsigned int GetRelease();
    static unsigned int GetRevision();
    static unsigned short GetYear();
    static unsigned char GetMonth();
    // The source revision id: 16 lower-case hexadecimal digits.
    static const char* GetCommitId();
    static bool IsDev();
    static bool IsDebug();
    static bool IsBeta();

    // "3.0" whatever the flag.
    static const char* GetDescStringMajorMinor(bool flag);
    // "3.0.0" whatever the flag.
    static const char* GetDescStringMajorMinorRelease(bool flag);
    // withCommitId false: "3.0.0.1297"; true: "3.0.0.1297 #" and the revision id. flag does
    // not change the text.
    static const char* GetDescStringMajorMinorReleaseRevision(bool flag, bool withCommitId);
    // "3.0.0.1297 #<revision id> 2026-2".
    static const char* GetDescStringMajorMinorReleaseRevisionDate();
};

} // namespace mx3DManipulation
} // namespace mx

// The record is also reachable as ::mx3DManipulation::Version.
namespace mx3DManipulation = mx::mx3DManipulation;
