#include "rendering/mxRendererInterface.h"

#include "support/mxRecordingRenderer.h"

#include <gtest/gtest.h>

using mx::mxRendererInterface;
using mx::test::mxRecordingRenderer;

namespace {

class mxRendererInterfaceTest : public ::testing::Test {
protected:
    void TearDown() override { mxRendererInterface::SetHardwareRenderer(nullptr); }
};

} // namespace

TEST_F(mxRendererInterfaceTest, HardwareRendererIsNullUntilOneIsSet) {
    EXPECT_EQ(nullptr, mxRendererInterface::GetHardwareRenderer());
}

TEST_F(mxRendererInterfaceTest, GetHardwareRendererReturnsTheOneSetLast) {
    mxRecordingRenderer first;
    mxRecordingRenderer second;
    mxRendererInterface::SetHardwareRenderer(&first);
    EXPECT_EQ(&first, mxRendererInterface::GetHardwareRenderer());
    mxRendererInterface::SetHardwareRenderer(&second);
    EXPECT_EQ(&second, mxRendererInterface::GetHardwareRenderer());
    mxRendererInterface::SetHardwareRenderer(nullptr);
    EXPECT_EQ(nullptr, mxRendererInterface::GetHardwareRenderer());
}
