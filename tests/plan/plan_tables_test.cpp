// plan_tables_test.cpp: the row defaults, the copies between the active and
// modified plans, and the route page's rows.
#include "plan/plan_tables.h"

#include "frame/data_text.h"

#include <gtest/gtest.h>

namespace {
void Row(PlanTable& plan, int row, const char* ident, const char* via) {
    plan[row] = PlanWaypoint{};
    SetText(plan[row].Ident, ident);
    SetText(plan[row].Via, via);
}
}  // namespace

TEST(PlanTables, NewRowsAndModificationCopies) {
    g_plan = PlanTables{};
    PlanWaypoint row;
    SetText(row.Ident, "X");
    row.Altitude = 5;
    row.Flyover = 1;
    NewPlanRow(row);
    EXPECT_STREQ(row.Ident.data(), "");
    EXPECT_DOUBLE_EQ(row.Altitude, -999);
    EXPECT_DOUBLE_EQ(row.Speed, -999);
    EXPECT_DOUBLE_EQ(row.InboundCourse, -1);
    EXPECT_EQ(row.Flyover + row.Restricted + row.HoldIndex, 0);

    PlanContext& pc = g_plan.context;
    Row(g_plan.ActivePlan, 0, "KSEA", "");
    Row(g_plan.ActivePlan, 1, "SEA", "");
    Row(g_plan.ActivePlan, 2, "ALDER", "J1");
    SetText(g_plan.ActivePlan[1].ActualTime, "12:05");
    g_plan.ActivePlan[1].Altitude = 12000;
    g_plan.ActivePlan[2].HoldIndex = 1;
    SetText(g_plan.ActivePlan[2].NameCopy, "KEEP");
    pc.ActiveLastRow = 2;
    pc.ActiveLeg = 2;
    pc.NextRestrictionRow = 2;
    BeginModification();
    EXPECT_EQ(pc.ModLastRow, 2);
    EXPECT_EQ(pc.ModActiveLeg, 2);
    EXPECT_EQ(pc.ModNextRestrictionRow, 2);
    EXPECT_STREQ(g_plan.ModPlan[1].ActualTime.data(), "");
    EXPECT_DOUBLE_EQ(g_plan.ModPlan[1].Altitude, 12000);
    EXPECT_EQ(g_plan.ModPlan[2].HoldIndex, 1);
    EXPECT_STREQ(g_plan.ModPlan[2].Via.data(), "J1");

    // Executing copies the edit back, times as they stand in ModPlan, NameCopy left alone.
    SetText(g_plan.ModPlan[2].ActualTime, "12:30");
    SetText(g_plan.ModPlan[2].NameCopy, "OTHER");
    Row(g_plan.ModPlan, 3, "KPDX", "");
    pc.ModLastRow = 3;
    pc.ModActiveLeg = kNoActiveLeg;
    g_plan.ModPlan[1].Latitude = 47.4;
    CopyModPlanToActive();
    EXPECT_EQ(pc.ActiveLastRow, 3);
    EXPECT_STREQ(g_plan.ActivePlan[1].ActualTime.data(), "");
    EXPECT_STREQ(g_plan.ActivePlan[2].ActualTime.data(), "12:30");
    EXPECT_STREQ(g_plan.ActivePlan[2].NameCopy.data(), "KEEP");
    EXPECT_STREQ(g_plan.ActivePlan[3].Ident.data(), "KPDX");
    EXPECT_EQ(pc.ActiveLeg, 1);  // 999 becomes 1
    EXPECT_DOUBLE_EQ(pc.ActiveWaypointLatitude, 47.4);

    ClearPlans();
    EXPECT_EQ(pc.ActiveLastRow, -1);
    EXPECT_EQ(pc.ModLastRow, -1);
    EXPECT_EQ(pc.ActiveLeg, kNoActiveLeg);
}

TEST(PlanTables, RouteRowsGroupRowsByAirway) {
    g_plan = PlanTables{};
    g_route_rows = RouteRowList{};
    PlanContext& pc = g_plan.context;
    Row(g_plan.ModPlan, 0, "KSEA", "");
    Row(g_plan.ModPlan, 1, "SEA", "");
    Row(g_plan.ModPlan, 2, "NORMY", "J70");
    Row(g_plan.ModPlan, 3, "EPH", "J70");
    Row(g_plan.ModPlan, 4, "THEN", "J70");
    Row(g_plan.ModPlan, 5, "WIPES", "V120");
    Row(g_plan.ModPlan, 6, "GEG", "V120");
    Row(g_plan.ModPlan, 7, "KGEG", "");
    pc.ModLastRow = 7;
    BuildRouteRows();
    ASSERT_EQ(g_route_rows.count, 4);
    EXPECT_STREQ(g_route_rows.rows[1].ToWaypoint.data(), "SEA");
    EXPECT_STREQ(g_route_rows.rows[1].Airway.data(), "DIRECT");
    EXPECT_STREQ(g_route_rows.rows[2].ToWaypoint.data(), "EPH");
    EXPECT_STREQ(g_route_rows.rows[2].Airway.data(), "J70");
    EXPECT_STREQ(g_route_rows.rows[3].ToWaypoint.data(), "THEN");  // a THEN row starts a new entry
    EXPECT_STREQ(g_route_rows.rows[4].ToWaypoint.data(), "GEG");
    EXPECT_STREQ(g_route_rows.rows[4].Airway.data(), "V120");
    // A shorter plan empties the rows behind the new count.
    pc.ModLastRow = 3;
    BuildRouteRows();
    EXPECT_EQ(g_route_rows.count, 2);
    EXPECT_STREQ(g_route_rows.rows[3].ToWaypoint.data(), "");
    EXPECT_STREQ(g_route_rows.rows[4].Airway.data(), "");
}
