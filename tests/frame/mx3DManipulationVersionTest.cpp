#include "frame/mx3DManipulationVersion.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using Version = mx3DManipulation::Version;

bool isRevisionId(const std::string& text) {
    if (text.size() != 16) {
        return false;
    }
    for (char c : text) {
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'))) {
            return false;
        }
    }
    return true;
}

TEST(mx3DManipulationVersionTest, NumbersAre3_0_0Build1297Of2026_2) {
    EXPECT_EQ(Version::GetMajor(), 3u);
    EXPECT_EQ(Version::GetMinor(), 0u);
    EXPECT_EQ(Version::GetRelease(), 0u);
    EXPECT_EQ(Version::GetRevision(), 1297u);
    EXPECT_EQ(Version::GetYear(), 2026);
    EXPECT_EQ(Version::GetMonth(), 2);
}

TEST(mx3DManipulationVersionTest, IsAReleaseBuild) {
    EXPECT_FALSE(Version::IsDev());
    EXPECT_FALSE(Version::IsDebug());
    EXPECT_FALSE(Version::IsBeta());
}

TEST(mx3DManipulationVersionTest, CommitIdIsSixteenLowerCaseHexDigits) {
    EXPECT_TRUE(isRevisionId(Version::GetCommitId())) << Version::GetCommitId();
}

TEST(mx3DManipulationVersionTest, MajorMinorIsThreePointZeroWhateverTheFlag) {
    EXPECT_STREQ(Version::GetDescStringMajorMinor(false), "3.0");
    EXPECT_STREQ(Version::GetDescStringMajorMinor(true), "3.0");
    EXPECT_STREQ(Version::GetDescStringMajorMinorRelease(false), "3.0.0");
    EXPECT_STREQ(Version::GetDescStringMajorMinorRelease(true), "3.0.0");
}

TEST(mx3DManipulationVersionTest, RevisionWithoutIdIsTheSameForEitherFirstFlag) {
    EXPECT_STREQ(Version::GetDescStringMajorMinorReleaseRevision(true, false), "3.0.0.1297");
    EXPECT_STREQ(Version::GetDescStringMajorMinorReleaseRevision(false, false), "3.0.0.1297");
}

TEST(mx3DManipulationVersionTest, RevisionWithIdAppendsHashAndTheCommitId) {
    const std::string expected = std::string("3.0.0.1297 #") + Version::GetCommitId();
    EXPECT_EQ(Version::GetDescStringMajorMinorReleaseRevision(false, true), expected);
    EXPECT_EQ(Version::GetDescStringMajorMinorReleaseRevision(true, true), expected);
}

TEST(mx3DManipulationVersionTest, RevisionDateEndsWithUnpaddedMonth) {
    const std::string expected =
        std::string("3.0.0.1297 #") + Version::GetCommitId() + " 2026-2";
    EXPECT_EQ(Version::GetDescStringMajorMinorReleaseRevisionDate(), expected);
}

TEST(mx3DManipulationVersionTest, EachFlagCombinationHasItsOwnStorage) {
    EXPECT_NE(Version::GetDescStringMajorMinor(false), Version::GetDescStringMajorMinor(true));
    EXPECT_NE(Version::GetDescStringMajorMinorRelease(false),
              Version::GetDescStringMajorMinorRelease(true));
    const char* combinations[] = {Version::GetDescStringMajorMinorReleaseRevision(false, false),
                                  Version::GetDescStringMajorMinorReleaseRevision(true, false),
                                  Version::GetDescStringMajorMinorReleaseRevision(false, true),
                                  Version::GetDescStringMajorMinorReleaseRevision(true, true)};
    for (int i = 0; i < 4; ++i) {
        for (int j = i + 1; j < 4; ++j) {
            EXPECT_NE(combinations[i], combinations[j]) << i << " " << j;
        }
    }
}

TEST(mx3DManipulationVersionTest, TextsAreStableAcrossCalls) {
    EXPECT_EQ(Version::GetDescStringMajorMinor(true), Version::GetDescStringMajorMinor(true));
    EXPECT_EQ(Version::GetCommitId(), Version::GetCommitId());
}

TEST(mx3DManipulationVersionTest, IsReachableInsideNamespaceMxToo) {
    EXPECT_EQ(mx::mx3DManipulation::Version::GetRevision(), 1297u);
    Version a;
    Version b;
    a = b; // the record has the ordinary, empty assignment
    (void)a;
}

} // namespace
