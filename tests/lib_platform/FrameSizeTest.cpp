// A size the editor gives its frame in units reaches the window in pixels at the GUI scale (a
// host's onSize at 150 % must not shrink the window to the unscaled size).
#include "lib_platform/PlatformTestSupport.h"

using PlatformTest::HostWindowTest;

TEST_F(HostWindowTest, ASizeInUnitsGrowsTheWindowByTheScale) {
    for (double scale : {1.0, 1.5, 2.0}) {
        PlatformTest::Panel panel = open(scale, PlatformTest::EventDriver::HostIdle);
        ASSERT_NE(panel.frame, nullptr);
        panel.frame->setSize(200.0, 120.0);
        Vinta::CRect pixels;
        ASSERT_TRUE(panel.platform->getRect(pixels));
        EXPECT_DOUBLE_EQ(pixels.getWidth(), 200.0 * scale);
        EXPECT_DOUBLE_EQ(pixels.getHeight(), 120.0 * scale);
        close(panel);
    }
}
