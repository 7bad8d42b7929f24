// plan_tables.cpp: the plan tables and the copies between them.
#include "plan/plan_tables.h"

#include "frame/data_text.h"

#include <cstring>

PlanTables g_plan;
RouteRowList g_route_rows;

void NewPlanRow(PlanWaypoint& row) { row = PlanWaypoint{}; }

void ClearPlans() {
    g_plan.context.ActiveLastRow = -1;
    g_plan.context.ModLastRow = -1;
    g_plan.context.ActiveLeg = kNoActiveLeg;
}

void BeginModification() {
    PlanContext& pc = g_plan.context;
    for (int i = 0; i <= pc.ActiveLastRow && i < kPlanRows; ++i) {
        const PlanWaypoint& from = g_plan.ActivePlan[i];
        PlanWaypoint& to = g_plan.ModPlan[i];
        to.Ident = from.Ident;
        to.Latitude = from.Latitude;
        to.Longitude = from.Longitude;
        to.WaypointType = from.WaypointType;
        to.Via = from.Via;
        to.SegmentKind = from.SegmentKind;
        to.LegMarker = from.LegMarker;
        to.Altitude = from.Altitude;
        to.Speed = from.Speed;
        to.InboundCourse = from.InboundCourse;
        to.Flyover = from.Flyover;
        to.Restricted = from.Restricted;
        to.HoldIndex = from.HoldIndex;
        to.Frequency = from.Frequency;
        to.ActualTime = {};
    }
    pc.ModActiveLeg = pc.ActiveLeg;
    pc.ModNextRestrictionRow = pc.NextRestrictionRow;
    pc.ModLastRow = pc.ActiveLastRow;
}

void CopyModPlanToActive() {
    PlanContext& pc = g_plan.context;
    for (int i = 0; i <= pc.ModLastRow && i < kPlanRows; ++i) {
        const PlanWaypoint& from = g_plan.ModPlan[i];
        PlanWaypoint& to = g_plan.ActivePlan[i];
        std::array<char, 24> keep_name_copy = to.NameCopy;  // the only field the copy leaves
        to = from;
        to.NameCopy = keep_name_copy;
    }
    pc.ActiveLastRow = pc.ModLastRow;
    pc.ActiveLeg = pc.ModActiveLeg;
    pc.NextRestrictionRow = pc.ModNextRestrictionRow;
    if (pc.ActiveLeg == kNoActiveLeg && pc.ActiveLastRow >= 1) pc.ActiveLeg = 1;
    if (pc.ActiveLeg >= 0 && pc.ActiveLeg <= pc.ActiveLastRow) {
        pc.ActiveWaypointLatitude = g_plan.ActivePlan[pc.ActiveLeg].Latitude;
        pc.ActiveWaypointLongitude = g_plan.ActivePlan[pc.ActiveLeg].Longitude;
    }
}

bool IsDiscontinuity(const PlanWaypoint& row) { return TextOf(row.Ident) == "DISCO"; }

void BuildRouteRows() {
    int previous_count = g_route_rows.count;
    int count = 0;
    const PlanContext& pc = g_plan.context;
    for (int i = 1; i <= pc.ModLastRow - 1 && i < kPlanRows; ++i) {
        const PlanWaypoint& row = g_plan.ModPlan[i];
        std::string_view via = TextOf(row.Via);
        bool new_row = false;
        std::string_view airway = via;
        if (via.empty()) {
            new_row = true;
            airway = "DIRECT";
        } else if (count == 0 || via != TextOf(g_route_rows.rows[count].Airway) || TextOf(row.Ident) == "THEN") {
            new_row = true;
        }
        if (new_row) {
            if (count >= kRouteRowLimit) break;
            ++count;
            SetText(g_route_rows.rows[count].Airway, airway);
        }
        SetText(g_route_rows.rows[count].ToWaypoint, TextOf(row.Ident));
    }
    for (int i = count + 1; i <= previous_count && i <= kRouteRowLimit; ++i) g_route_rows.rows[i] = RouteRow{};
    g_route_rows.count = count;
}
