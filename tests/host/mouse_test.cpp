// mouse_test.cpp: clicks through mouse tables as the simulator delivers
// them: nested parent boxes, child rows in order, their flags, the relative
// point record, and the module's own tables.
#include "frame/gauge_linkage.h"
#include "guidance/lnav.h"
#include "orbsim/host_state.h"
#include "orbsim/mouse.h"

#include "plan/plan_tables.h"

#include <gtest/gtest.h>

namespace {
struct ClickLog {
    int first = 0, second = 0;
    PIXPOINT point{};
    const MOUSECALLBACK* record = nullptr;
    FLAGS32 flags = 0;
    GAUGEHDR* gauge = nullptr;
    MOUSERECT* row = nullptr;
};
ClickLog g_clicks;

BOOL_SDK FSAPI First(PIXPOINT* point, FLAGS32 flags) {
    ++g_clicks.first;
    g_clicks.point = *point;
    g_clicks.flags = flags;
    auto* record = reinterpret_cast<MOUSECALLBACK*>(point);  // the point is the record's first member
    g_clicks.gauge = static_cast<GAUGEHDR*>(record->user_data);
    g_clicks.row = record->mouse;
    return 1;
}
BOOL_SDK FSAPI Second(PIXPOINT* point, FLAGS32 flags) {
    ++g_clicks.second;
    g_clicks.point = *point;
    g_clicks.flags = flags;
    return 0;
}

MOUSERECT Row(MOUSE_RECT_TYPE type, PIXBOX box, FLAGS32 flags = 0, MOUSE_FUNCTION fn = nullptr) {
    return MOUSERECT{type, box, CURSOR_HAND, 0, static_cast<FLAGS>(flags), 0, fn, nullptr};
}
}  // namespace

TEST(Mouse, NestedBoxesChildOrderAndFlags) {
    // Outer parent (whole gauge); a parent at 100,50 holding a parent at 10,10 (20x20)
    // with a knob's two halves; a button at 0,0 (30x30) taking right clicks only.
    MOUSERECT rows[] = {
        Row(MOUSE_RECT_PARENT, {0, 0, 0, 0}),
        Row(MOUSE_RECT_PARENT, {100, 50, 60, 60}),
        Row(MOUSE_RECT_PARENT, {10, 10, 20, 20}),
        Row(MOUSE_RECT_CHILD, {0, 0, 10, 20}, MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT, First),
        Row(MOUSE_RECT_CHILD, {10, 0, 10, 20}, MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT, Second),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_PARENT, {0, 0, 30, 30}),
        Row(MOUSE_RECT_CHILD, {0, 0, 30, 30}, MOUSE_RIGHTSINGLE, First),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_PARENT, {0, 0, 0, 0}),  // an empty box inside the outer one takes nothing
        Row(MOUSE_RECT_CHILD, {0, 0, 500, 500}, MOUSE_LEFTSINGLE, Second),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_EOL, {}),
    };
    orbsim::GaugeInstance inst;
    inst.header.mouse_rect = rows;
    inst.x = 300;
    inst.y = 200;

    g_clicks = {};
    orbsim::ClickResult r = orbsim::DeliverClick(inst, 113, 65, MOUSE_LEFTSINGLE);  // left half of the knob
    EXPECT_TRUE(r.delivered);
    EXPECT_EQ(r.row, 3);
    EXPECT_EQ(g_clicks.first, 1);
    EXPECT_EQ(g_clicks.point.x, 3);
    EXPECT_EQ(g_clicks.point.y, 5);
    EXPECT_EQ(g_clicks.gauge, &inst.header);
    EXPECT_EQ(g_clicks.row, &rows[3]);
    EXPECT_EQ(g_clicks.flags, MOUSE_LEFTSINGLE);
    EXPECT_TRUE(r.handler_result);

    r = orbsim::DeliverClick(inst, 125, 79, MOUSE_LEFTSINGLE);  // right half
    EXPECT_EQ(r.row, 4);
    EXPECT_EQ(g_clicks.second, 1);
    EXPECT_EQ(g_clicks.point.x, 5);
    EXPECT_EQ(g_clicks.point.y, 19);

    // Just outside the inner parent: nothing, though the middle parent is hit.
    r = orbsim::DeliverClick(inst, 130, 65, MOUSE_LEFTSINGLE);
    EXPECT_FALSE(r.delivered);

    // The right-click button refuses a left click and takes a right one.
    r = orbsim::DeliverClick(inst, 5, 5, MOUSE_LEFTSINGLE);
    EXPECT_FALSE(r.delivered);
    r = orbsim::DeliverClick(inst, 5, 5, MOUSE_RIGHTSINGLE);
    EXPECT_TRUE(r.delivered);
    EXPECT_EQ(r.row, 8);
    EXPECT_EQ(g_clicks.first, 2);
    EXPECT_EQ(g_clicks.second, 1);
}

TEST(Mouse, AnAreaListedLaterLiesOverAnEarlierOne) {
    // A wide knob, and a small button listed after it inside its right half.
    MOUSERECT rows[] = {
        Row(MOUSE_RECT_PARENT, {0, 0, 0, 0}),
        Row(MOUSE_RECT_PARENT, {0, 0, 60, 40}),
        Row(MOUSE_RECT_CHILD, {0, 0, 30, 40}, MOUSE_LEFTSINGLE, First),
        Row(MOUSE_RECT_CHILD, {30, 0, 30, 40}, MOUSE_LEFTSINGLE, First),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_PARENT, {40, 10, 10, 10}),
        Row(MOUSE_RECT_CHILD, {0, 0, 10, 10}, MOUSE_LEFTSINGLE, Second),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_END_PARENT, {}),
        Row(MOUSE_RECT_EOL, {}),
    };
    orbsim::GaugeInstance inst;
    inst.header.mouse_rect = rows;
    g_clicks = {};
    orbsim::ClickResult r = orbsim::DeliverClick(inst, 45, 15, MOUSE_LEFTSINGLE);
    EXPECT_EQ(r.row, 6);
    EXPECT_EQ(g_clicks.second, 1);
    EXPECT_EQ(g_clicks.first, 0);
    EXPECT_EQ(g_clicks.point.x, 5);
    // Beside the button the knob's half still takes it.
    r = orbsim::DeliverClick(inst, 35, 15, MOUSE_LEFTSINGLE);
    EXPECT_EQ(r.row, 3);
    EXPECT_EQ(g_clicks.first, 1);
    // A later row that refuses the click's kind leaves it to the one below.
    r = orbsim::DeliverClick(inst, 45, 15, MOUSE_RIGHTSINGLE);
    EXPECT_FALSE(r.delivered);
}

TEST(Mouse, TheModulesLnavButtonTakesClicksThroughItsTable) {
    orbsim::GaugeInstance lnav;
    lnav.header = HeaderOf(GaugeId::LNAV);
    g_lnav = {};
    g_plan.context.ActiveLastRow = 1;  // LNAV engages only with a leg to fly
    g_plan.context.ActiveLeg = 1;
    orbsim::ClickResult r = orbsim::DeliverClick(lnav, 25, 25, MOUSE_LEFTSINGLE);
    EXPECT_TRUE(r.delivered);
    EXPECT_EQ(g_lnav.LnavOn, 1);
    orbsim::DeliverClick(lnav, 49, 48, MOUSE_LEFTSINGLE);
    EXPECT_EQ(g_lnav.LnavOn, 0);
    r = orbsim::DeliverClick(lnav, 50, 25, MOUSE_LEFTSINGLE);  // one pixel past the button
    EXPECT_FALSE(r.delivered);
    EXPECT_EQ(g_lnav.LnavOn, 0);
    g_lnav = {};
    ClearPlans();
}
