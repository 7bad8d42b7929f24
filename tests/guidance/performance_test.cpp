// performance_test.cpp: the cruise temperature pair of the performance page.
#include "guidance/performance.h"
#include "plan/plan_tables.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

TEST(CruiseTemperature, EnteringOneWorksOutTheOtherAtTheCruiseAltitude) {
    ResetModuleState();
    EXPECT_DOUBLE_EQ(g_performance.CruiseOat, -30);
    EXPECT_DOUBLE_EQ(g_performance.IsaDeviation, 30);
    // 35999 ft counts as 35 whole thousands: standard is 15 - 35 x 1.98 = -54.3.
    g_plan.context.CruiseAltitude = 35999;
    EnterIsaDeviation(10);
    EXPECT_DOUBLE_EQ(g_performance.IsaDeviation, 10);
    EXPECT_NEAR(g_performance.CruiseOat, -44.3, 1e-9);
    EnterCruiseOat(-50);
    EXPECT_DOUBLE_EQ(g_performance.CruiseOat, -50);
    EXPECT_NEAR(g_performance.IsaDeviation, 4.3, 1e-9);
    // Without a cruise altitude the standard is 15.
    g_plan.context.CruiseAltitude = 0;
    EnterIsaDeviation(-5);
    EXPECT_NEAR(g_performance.CruiseOat, 10, 1e-9);
    g_plan.context.CruiseAltitude = 999;  // still no whole thousand
    EnterCruiseOat(20);
    EXPECT_NEAR(g_performance.IsaDeviation, 5, 1e-9);
}
