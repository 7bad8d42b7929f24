// bizjet_panel_test.cpp: the business-jet sample panel: its windows, the GNS
// unit and its pop-up twin, a display family that suits it, every gauge one
// the module lists, drawn at the size its bitmaps are made for.
#include "frame/gauge_table.h"
#include "orbsim/panel_cfg.h"

#include <gtest/gtest.h>

#include <string>

using orbsim::PanelDesc;

TEST(BizjetPanel, GnsUnitWithItsDisplaysAndThePopUpTwin) {
    PanelDesc panel;
    std::string error;
    ASSERT_TRUE(orbsim::ReadPanelFile(std::string(ORB_SOURCE_DIR) + "/data/sim/panels/bizjet.cfg", panel, error))
        << error;
    ASSERT_EQ(panel.windows.size(), 2u);
    EXPECT_EQ(panel.windows[0].ident, 0);
    EXPECT_TRUE(panel.windows[0].visible);
    // The window the GNS screen's middle opens.
    EXPECT_EQ(panel.windows[1].ident, 4004);
    EXPECT_FALSE(panel.windows[1].visible);
    std::string main_gauges;
    bool profile = false;
    for (const auto& w : panel.windows)
        for (const auto& g : w.gauges) {
            EXPECT_EQ(g.module, "orb1");
            int id = -1;
            for (int i = 0; i < kGaugeCount; ++i)
                if (g.gauge == GaugeName(static_cast<GaugeId>(i))) id = i;
            ASSERT_GE(id, 0) << g.gauge << " is not a gauge of the module";
            profile |= g.parameters == "TwinJet";
            if (w.ident == 0) main_gauges += g.gauge + " ";
            // The GNS units at their bezel's proportions (550 x 433).
            if (g.gauge == "GNSXLS" || g.gauge == "GNSXLS_LM") {
                ASSERT_GT(g.h, 0);
                EXPECT_NEAR(static_cast<double>(g.w) / g.h, 550.0 / 433.0, 0.01) << g.gauge;
            }
        }
    EXPECT_EQ(main_gauges, "EFS50_EADI PROLINE4_MFD PROLINE4_MFD_CTRL PROLINE_EICAS LNAV VNAV SERVER GNSXLS ");
    EXPECT_TRUE(profile) << "a gauge names the aircraft profile";
    ASSERT_EQ(panel.windows[1].gauges.size(), 1u);
    EXPECT_EQ(panel.windows[1].gauges[0].gauge, "GNSXLS_LM");
}
