// gns_hostile_keys_test.cpp: long random key sequences on the GNS unit, with
// the demonstration data loaded and a plan flying, never overflow the field,
// leave the page table or break the plan's bounds.
#include "cdu/gns_rig.h"

#include <cstring>
#include <random>

using namespace gns_test;

TEST(GnsHostileKeys, RandomSequencesKeepTheUnitInBounds) {
    GnsRig gns;
    gns.Frame();
    // A plan to work on: KSEAKGEG, activated.
    gns.Key("LSK2L");
    gns.Key("ENTER");
    gns.Key("LSK5R");
    gns.Key("ENTER");
    ASSERT_EQ(g_plan.context.PlanState, 3);
    std::mt19937 random(20261125);
    const int keys = GnsKeyCount(GaugeId::GNSXLS);
    for (int press = 0; press < 6000; ++press) {
        const CduKeyBox* key = GnsKeyAt(GaugeId::GNSXLS, static_cast<int>(random() % static_cast<unsigned>(keys)));
        ASSERT_NE(key, nullptr);
        if (key->action == CduKeyAction::ScreenCentre) continue;
        // Now and then a jump to any page number, empty ones too.
        if (random() % 50 == 0) g_gns_page.GnsPage = static_cast<int>(random() % (gns_page::kHighest + 3));
        PressGnsKey(*key);
        gns.Frame();
        const GnsPageState& s = g_gns_page;
        ASSERT_LE(std::strlen(s.GnsField.data()), static_cast<size_t>(kGnsFieldCapacity - 1)) << press;
        ASSERT_LE(GnsFieldText().size(), static_cast<size_t>(s.GnsFieldWidth)) << press;
        ASSERT_GE(s.GnsPage, 0);
        ASSERT_LE(s.GnsPage, gns_page::kHighest + 2);
        ASSERT_LE(g_plan.context.ActiveLastRow, kPlanLastRowLimit);
        ASSERT_LE(g_plan.context.ModLastRow, kPlanLastRowLimit);
        ASSERT_TRUE(g_plan.context.ActiveLeg == kNoActiveLeg ||
                    (g_plan.context.ActiveLeg >= 0 && g_plan.context.ActiveLeg <= g_plan.context.ActiveLastRow + 1))
            << press;
        ASSERT_LE(s.GnsListCount, kGnsListLimit);
        for (int k = 1; k <= kGnsLineKeys; ++k) ASSERT_LE(s.GnsLineState[static_cast<size_t>(k)], 2) << press;
    }
}

TEST(GnsHostileKeys, AFullPlanTakesNoMoreEntries) {
    GnsRig gns;
    gns.Frame();
    gns.Key("LSK1L");
    gns.Key("ENTER");
    // ModPlan filled to its last row by hand, then one more name typed into the slot.
    PlanContext& pc = g_plan.context;
    for (int i = 0; i <= kPlanLastRowLimit; ++i) {
        NewPlanRow(g_plan.ModPlan[static_cast<size_t>(i)]);
        std::snprintf(g_plan.ModPlan[static_cast<size_t>(i)].Ident.data(), 24, "W%03d", i);
        g_plan.ModPlan[static_cast<size_t>(i)].Latitude = 47 + i * 0.001;
        g_plan.ModPlan[static_cast<size_t>(i)].Longitude = -122;
    }
    pc.ModLastRow = kPlanLastRowLimit;
    pc.ModActiveLeg = 1;
    g_gns_page.GnsInsertIndex = kPlanLastRowLimit + 2;
    GnsOpenField("******");
    gns.Type("SEA");
    gns.Key("ENTER");
    gns.Key("ENTER");
    EXPECT_EQ(pc.ModLastRow, kPlanLastRowLimit);
    EXPECT_STREQ(g_plan.ModPlan[kPlanLastRowLimit].Ident.data(), "W200");
}
