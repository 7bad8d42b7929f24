// control_panels.cpp: what a click does on each control gauge, in the order
// of its mouse table, and which of its icon layers (knob positions, lit
// buttons) show.
//
// The areas of a panel whose display family is still to come are inert
// padding, so that every table keeps its row count.
//
// Index:
//   [SECTION] Handlers
//   [SECTION] Mouse areas
//   [SECTION] Icon layers and lamps
#include "display/control_panels.h"

#include "display/c17_mfd.h"
#include "display/display_state.h"
#include "display/p1000_soft_keys.h"
#include "frame/entry_guard.h"
#include "frame/sim_state.h"
#include "guidance/lnav.h"
#include "frame/sim_access.h"
#include "resources/panel_layouts.h"

#include <array>
#include <cmath>
#include <iterator>

// [SECTION] Handlers
namespace {
constexpr UINT32 kHeadingBugLeft = 0x1007E;   // the A300 heading knob's key events
constexpr UINT32 kHeadingBugRight = 0x1007F;

int Flip(int value) { return value != 0 ? 0 : 1; }

// Each handler's action runs behind the entry guard.
BOOL_SDK FSAPI B737ModeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(-1, kStepB737); }); }
BOOL_SDK FSAPI B737ModeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(1, kStepB737); }); }
BOOL_SDK FSAPI RangeDownClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { RangeDown(); }); }
BOOL_SDK FSAPI RangeUpClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { RangeUp(); }); }
BOOL_SDK FSAPI IntersectionsClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { ToggleMapIntersections(); }); }
BOOL_SDK FSAPI AirportsClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { ToggleMapAirports(); }); }
BOOL_SDK FSAPI NavaidsClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { ToggleMapNavaids(); }); }
BOOL_SDK FSAPI TrafficClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { ToggleTraffic(); }); }
BOOL_SDK FSAPI BoundariesClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { ToggleAtcBoundaries(); }); }
BOOL_SDK FSAPI B737AdfClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.b737_adf_pointer = Flip(g_display.b737_adf_pointer); });
}
BOOL_SDK FSAPI B737DataClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.b737_data = Flip(g_display.b737_data); });
}
BOOL_SDK FSAPI Du1000ModeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(-1, kStepDu1000); }); }
BOOL_SDK FSAPI Du1000ModeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(1, kStepDu1000); }); }
BOOL_SDK FSAPI Du1000NdbClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.du1000_ndb = Flip(g_display.du1000_ndb); });
}
BOOL_SDK FSAPI HeadingLeft(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { TriggerKeyEvent(kHeadingBugLeft, 0); }); }
BOOL_SDK FSAPI HeadingRight(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { TriggerKeyEvent(kHeadingBugRight, 0); }); }
BOOL_SDK FSAPI Proline4NdbClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.proline4_ndb = Flip(g_display.proline4_ndb); });
}
BOOL_SDK FSAPI Md80ModeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(-1, kStepMd80); }); }
BOOL_SDK FSAPI Md80ModeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(1, kStepMd80); }); }
BOOL_SDK FSAPI Md80AdfClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.md80_adf_pointer = Flip(g_display.md80_adf_pointer); });
}
BOOL_SDK FSAPI C17PrimaryClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17KeyPrimaryFlight(); }); }
BOOL_SDK FSAPI C17MapClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17KeyMap(); }); }
BOOL_SDK FSAPI C17EnginesClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17KeyEngines(); }); }
BOOL_SDK FSAPI C17ConfigurationClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17KeyConfiguration(); }); }
BOOL_SDK FSAPI C17NoAction(PIXPOINT*, FLAGS32) { return FALSE; }
BOOL_SDK FSAPI C17WindowClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { PanelWindowToggle(4025); }); }
BOOL_SDK FSAPI C17MapBackClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17MapPageStep(-1); }); }
BOOL_SDK FSAPI C17MapForwardClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { C17MapPageStep(1); }); }
BOOL_SDK FSAPI C17SymbolsLeftClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.c17_symbols_left = Flip(g_display.c17_symbols_left); });
}
BOOL_SDK FSAPI C17SymbolsRightClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.c17_symbols_right = Flip(g_display.c17_symbols_right); });
}

// MD11_EFIS_CTRL: each mode button sets its mode; MAP and PLAN also set the
// map radius, the VOR and APPR buttons keep the last one.
void Md11Mode(int mode, int radius) {
    g_display.md11_mode = mode;
    if (radius > 0) g_display.md11_radius = radius;
}
// The first bearing pointer's two sources: a press turns its source on and
// the other off, or turns the pointer off if its source was on.
void Md11BearingSource(int source) {
    g_display.md11_bearing1 = g_display.md11_bearing1 == source ? 0 : source;
}
constexpr int kMd11BearingVor = 1;
constexpr int kMd11BearingAdf = 2;
BOOL_SDK FSAPI Md11MapClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { Md11Mode(kMd11ModeMap, kMd11MapRadius); });
}
BOOL_SDK FSAPI Md11PlanClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { Md11Mode(kMd11ModePlan, kMd11PlanRadius); });
}
BOOL_SDK FSAPI Md11VorClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { Md11Mode(kMd11ModeVor, 0); }); }
BOOL_SDK FSAPI Md11ApprClick(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { Md11Mode(kMd11ModeAppr, 0); }); }
BOOL_SDK FSAPI Md11BearingVorClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { Md11BearingSource(kMd11BearingVor); });
}
BOOL_SDK FSAPI Md11BearingAdfClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { Md11BearingSource(kMd11BearingAdf); });
}
BOOL_SDK FSAPI Md11Bearing2Click(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.md11_bearing2 = Flip(g_display.md11_bearing2); });
}
BOOL_SDK FSAPI NoAction(PIXPOINT*, FLAGS32) { return FALSE; }

// PROLINE4_MFD_CTRL and the EFS 50 EHSI panel: bearing pointer sources 0, 1, 2, 3, 0.
int NextSource(int source) { return source >= 0 && source < 3 ? source + 1 : 0; }
BOOL_SDK FSAPI Proline4ModeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(-1, kStepProline4); }); }
BOOL_SDK FSAPI Proline4ModeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { StepMode(1, kStepProline4); }); }
BOOL_SDK FSAPI Proline4Bearing1(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.proline4_bearing[0] = NextSource(g_display.proline4_bearing[0]); });
}
BOOL_SDK FSAPI Proline4Bearing2(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.proline4_bearing[1] = NextSource(g_display.proline4_bearing[1]); });
}

// EFS50_EHSI_CNTR: the HSI mode keys step within their group, entering it at its first mode.
constexpr UINT32 kDecisionHeightUp = 0x10311;   // while below 990 ft
constexpr UINT32 kDecisionHeightDown = 0x10312; // while above 0
constexpr UINT32 kCourseRight = 0x10157;
constexpr UINT32 kCourseLeft = 0x10158;
BOOL_SDK FSAPI Efs50FullModes(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        int& m = g_display.efs50_hsi_mode;
        m = m >= 1 && m < 3 ? m + 1 : 1;
    });
}
BOOL_SDK FSAPI Efs50ArcModes(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        int& m = g_display.efs50_hsi_mode;
        m = m >= 4 && m < 7 ? m + 1 : 4;
    });
}
BOOL_SDK FSAPI Efs50NavMode(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.efs50_nav_mode = g_display.efs50_nav_mode == 1 ? 2 : 1; });
}
BOOL_SDK FSAPI Efs50RangeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { Efs50RangeKey(1); }); }
BOOL_SDK FSAPI Efs50RangeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { Efs50RangeKey(-1); }); }
BOOL_SDK FSAPI Efs50Bearing1(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.efs50_bearing[0] = NextSource(g_display.efs50_bearing[0]); });
}
BOOL_SDK FSAPI Efs50Bearing2(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.efs50_bearing[1] = NextSource(g_display.efs50_bearing[1]); });
}
BOOL_SDK FSAPI Efs50Lnav(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { LnavToggle(); }); }
BOOL_SDK FSAPI DecisionHeightUp(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        if (ExecuteCalculatorDouble("(A:DECISION HEIGHT,FEET)") < 990) TriggerKeyEvent(kDecisionHeightUp, 0);
    });
}
BOOL_SDK FSAPI DecisionHeightDown(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        if (ExecuteCalculatorDouble("(A:DECISION HEIGHT,FEET)") > 0) TriggerKeyEvent(kDecisionHeightDown, 0);
    });
}
BOOL_SDK FSAPI CourseLeft(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { TriggerKeyEvent(kCourseLeft, 0); }); }
BOOL_SDK FSAPI CourseRight(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { TriggerKeyEvent(kCourseRight, 0); }); }

// P1000_MFD_CNTR: its own flags; PLAN and traffic ask the MFD to repaint at once.
constexpr double kP1000MapX = 134, kP1000MapY = 148, kP1000MapRadius = 53;
BOOL_SDK FSAPI P1000Plan(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        DisplayState& d = g_display;
        d.p1000_plan = Flip(d.p1000_plan);
        if (d.p1000_plan == 0) {
            d.p1000_map_x = kP1000MapX;
            d.p1000_map_y = kP1000MapY;
            d.p1000_map_radius = kP1000MapRadius;
        }
        g_tick.slow_refresh = 999;
    });
}
BOOL_SDK FSAPI P1000Traffic(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] {
        g_display.p1000_traffic = Flip(g_display.p1000_traffic);
        g_tick.slow_refresh = 999;
    });
}
BOOL_SDK FSAPI P1000RangeUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { RangeUp(); }); }
BOOL_SDK FSAPI P1000RangeDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { RangeDown(); }); }
BOOL_SDK FSAPI P1000Airports(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.p1000_airports = Flip(g_display.p1000_airports); });
}
BOOL_SDK FSAPI P1000Navaids(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { g_display.p1000_navaids = Flip(g_display.p1000_navaids); });
}

// P1000_MFD and its bezel-less row P1000_MFD_NB_CNTR: the soft keys, the
// left knob that sets their values, the range knob; the screen opens the pop-up.
BOOL_SDK FSAPI P1000Key1(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000SoftKey(1); }); }
BOOL_SDK FSAPI P1000Key2(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000SoftKey(2); }); }
BOOL_SDK FSAPI P1000Key3(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000SoftKey(3); }); }
BOOL_SDK FSAPI P1000Key4(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000SoftKey(4); }); }
BOOL_SDK FSAPI P1000Key5(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000SoftKey(5); }); }
BOOL_SDK FSAPI P1000SetDown(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000LeftKnob(-1); }); }
BOOL_SDK FSAPI P1000SetUp(PIXPOINT*, FLAGS32) { return AtMouseEntry([] { P1000LeftKnob(1); }); }
constexpr UINT32 kP1000MfdWindow = 4002;    // the MFD's own pop-up window
BOOL_SDK FSAPI P1000WindowClick(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { PanelWindowToggle(kP1000MfdWindow); });
}

constexpr FLAGS32 kRepeat = MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT;

// The P1000's key row at a height: five keys, the left knob (repeat) and the
// range knob; the knobs stand 5 pixels lower than the keys.
void P1000KeyRow(MouseAreaList& areas, int key_y) {
    static constexpr int kKeyX[] = {70, 107, 144, 182, 220};
    static constexpr MOUSE_FUNCTION kKeys[] = {P1000Key1, P1000Key2, P1000Key3, P1000Key4, P1000Key5};
    for (size_t i = 0; i < std::size(kKeyX); ++i) areas.Button(kKeyX[i], key_y, 30, 24, kKeys[i]);
    areas.Knob(19, key_y + 5, 36, 36, P1000SetDown, P1000SetUp, kRepeat);
    areas.Knob(274, key_y + 5, 36, 36, RangeDownClick, RangeUpClick);
}
}  // namespace

// [SECTION] Mouse areas
void ControlPanelMouseAreas(GaugeId id, MouseAreaList& areas) {
    using G = GaugeId;
    switch (id) {
    case G::HW_B737_EFIS_CNTR:
    case G::HW_B737_EFIS_CNTR_BR:
        areas.Knob(145, 35, 52, 44, B737ModeDown, B737ModeUp);
        areas.Knob(238, 35, 52, 44, RangeDownClick, RangeUpClick);
        areas.Button(256, 174, 34, 36, IntersectionsClick);
        areas.Button(190, 174, 34, 36, AirportsClick);
        areas.Button(157, 174, 34, 36, NavaidsClick);
        areas.Button(122, 174, 34, 36, B737AdfClick);
        areas.Button(223, 174, 34, 36, BoundariesClick);
        areas.Button(256, 48, 14, 14, TrafficClick);
        areas.Button(245, 109, 38, 38, B737DataClick);
        break;
    case G::MD11_EFIS_CTRL:
        areas.Button(96, 6, 34, 23, BoundariesClick);
        areas.Button(96, 39, 34, 23, NoAction);
        areas.Button(96, 71, 34, 23, IntersectionsClick);
        areas.Button(96, 104, 34, 23, NavaidsClick);
        areas.Button(96, 138, 34, 23, AirportsClick);
        areas.Button(155, 22, 34, 23, Md11MapClick);
        areas.Button(155, 60, 34, 23, Md11PlanClick);
        areas.Button(210, 22, 34, 23, Md11VorClick);
        areas.Button(210, 60, 34, 23, Md11ApprClick);
        areas.Button(263, 22, 34, 23, TrafficClick);
        areas.Button(150, 105, 34, 23, Md11BearingVorClick);
        areas.Button(150, 138, 34, 23, Md11BearingAdfClick);
        areas.Button(191, 105, 34, 23, RangeUpClick);
        areas.Button(191, 138, 34, 23, RangeDownClick);
        areas.Button(232, 105, 34, 23, Md11Bearing2Click);
        break;
    case G::A300_EFIS_CTRL:
        areas.Knob(53, 145, 76, 76, Du1000ModeDown, Du1000ModeUp);
        areas.Knob(240, 145, 76, 76, RangeDownClick, RangeUpClick);
        areas.Button(94, 232, 55, 37, IntersectionsClick);
        areas.Button(158, 232, 55, 37, NavaidsClick);
        areas.Button(221, 232, 55, 37, Du1000NdbClick);
        areas.Button(284, 232, 55, 37, AirportsClick);
        areas.Button(21, 92, 55, 37, TrafficClick);
        areas.Knob(285, 48, 54, 54, HeadingLeft, HeadingRight, kRepeat);
        break;
    case G::PROLINE4_AUX_CTRL:
        areas.Button(28, 28, 36, 36, TrafficClick);
        areas.Button(73, 28, 36, 36, IntersectionsClick);
        areas.Button(116, 28, 36, 36, NavaidsClick);
        areas.Button(161, 28, 36, 36, Proline4NdbClick);
        areas.Button(205, 28, 36, 36, AirportsClick);
        areas.Button(250, 28, 36, 36, BoundariesClick);
        break;
    case G::MD80_EHSI_CTRL:
        areas.Knob(43, 48, 56, 56, Md80ModeDown, Md80ModeUp);
        areas.Button(166, 48, 44, 54, Md80AdfClick);
        areas.Knob(291, 48, 56, 56, RangeDownClick, RangeUpClick);
        areas.Button(40, 150, 52, 34, NavaidsClick);
        areas.Button(97, 150, 52, 34, AirportsClick);
        areas.Button(155, 150, 52, 34, BoundariesClick);
        areas.Button(215, 150, 52, 34, IntersectionsClick);
        areas.Button(264, 150, 52, 34, TrafficClick);
        break;
    case G::PROLINE4_MFD_CTRL:
        // The range knob lies over the middle of the mode knob: later in the table, it wins there.
        areas.Knob(120, 13, 68, 46, Proline4ModeDown, Proline4ModeUp);
        areas.Knob(137, 13, 34, 46, RangeDownClick, RangeUpClick);
        areas.Button(177, 55, 26, 26, TrafficClick);
        areas.Button(43, 15, 26, 26, Proline4Bearing1);
        areas.Button(43, 54, 26, 26, Proline4Bearing2);
        break;
    case G::EFS50_EHSI_CNTR:
    case G::EFS50_EHSI_CNTR_LM:
        areas.Knob(54, 100, 55, 55, HeadingLeft, HeadingRight, kRepeat);
        areas.Knob(60, 18, 36, 40, DecisionHeightUp, DecisionHeightDown, kRepeat);
        areas.Button(135, 46, 45, 30, Efs50FullModes);
        areas.Button(198, 46, 45, 30, Efs50ArcModes);
        areas.Button(260, 46, 45, 30, Efs50NavMode);
        areas.Button(324, 46, 45, 30, Efs50RangeUp);
        areas.Button(135, 83, 45, 30, Efs50Bearing1);
        areas.Button(198, 83, 45, 30, Efs50Bearing2);
        areas.Button(260, 83, 45, 30, TrafficClick);
        areas.Button(324, 83, 45, 30, Efs50RangeDown);
        areas.Button(198, 120, 45, 30, Efs50Lnav);
        areas.Button(260, 120, 45, 30, BoundariesClick);
        areas.Knob(384, 106, 54, 54, CourseLeft, CourseRight, kRepeat);
        break;
    case G::P1000_MFD_CNTR:
        areas.Button(65, 25, 55, 55, P1000Plan);
        areas.Button(131, 25, 60, 55, P1000Traffic);
        areas.StackedKnob(70, 135, 40, 50, P1000RangeDown, P1000RangeUp);
        areas.Button(150, 165, 40, 40, P1000Airports);
        areas.Button(215, 114, 40, 40, P1000Navaids);
        break;
    case G::P1000_MFD:
        P1000KeyRow(areas, 382);
        areas.Button(102, 147, 100, 100, P1000WindowClick);
        break;
    case G::P1000_MFD_NB_CNTR:
        P1000KeyRow(areas, 18);
        break;
    case G::C17_MFD:
        // The bezel's keys under the screen, and the screen itself opens the pop-up.
        areas.Button(58, 267, 29, 32, C17PrimaryClick);
        areas.Button(85, 267, 36, 32, C17MapClick);
        areas.Button(121, 267, 37, 32, C17NoAction);
        areas.Button(157, 267, 36, 32, C17EnginesClick);
        areas.Button(192, 267, 40, 32, C17ConfigurationClick);
        areas.Button(72, 75, 70, 70, C17WindowClick);
        break;
    case G::C17_MFCP:
        areas.Button(94, 198, 50, 50, NavaidsClick);
        areas.Button(162, 198, 50, 50, AirportsClick);
        areas.Button(344, 130, 48, 48, C17SymbolsRightClick);
        areas.Button(35, 131, 48, 48, C17SymbolsLeftClick);
        areas.Knob(66, 426, 82, 82, RangeDownClick, RangeUpClick);
        areas.Button(84, 291, 42, 38, C17MapBackClick);
        areas.Button(84, 332, 42, 38, C17MapForwardClick);
        areas.Button(356, 291, 42, 38, C17MapBackClick);
        areas.Button(356, 332, 42, 38, C17MapForwardClick);
        break;
    default:
        break;  // the panels of the families still to come: padding only
    }
    PadMouseAreas(areas, SpecOf(id).mouse_rows);
}

// [SECTION] Icon layers and lamps
// The icon layers lie over the knob or button they show turned or lit; the
// boxes and the meaning of each layer are those of resources/panel_layouts.h,
// from which the bitmaps are drawn. Control panels have no surface, so icon
// index i is layer i + 1.
const LayerSpec* ControlPanelIconLayer(GaugeId id, int icon_index) {
    static const auto kLayers = [] {
        std::array<LayerSpec, std::size(kIconSpecs)> layers{};
        for (size_t i = 0; i < layers.size(); ++i) {
            const IconSpec& icon = kIconSpecs[i];
            layers[i] = {icon.x, icon.y, icon.w, icon.h, false, true};
        }
        return layers;
    }();
    if (SpecOf(id).family != GaugeFamily::ControlPanel) return nullptr;
    const IconSpec* icon = IconSpecOf(id, icon_index + 1);
    if (icon == nullptr || icon->w <= 0) return nullptr;
    return &kLayers[static_cast<size_t>(icon - kIconSpecs)];
}

namespace {
bool RangeIs(double range, double value) { return std::fabs(range - value) < 1e-6; }
}  // namespace

bool ControlPanelLayerShown(GaugeId id, int layer) {
    using G = GaugeId;
    const DisplayState& d = g_display;
    switch (id) {
    case G::HW_B737_EFIS_CNTR:
    case G::HW_B737_EFIS_CNTR_BR: {
        // 1 to 6: the mode knob; 7 to 11: the range knob at 10 .. 320.
        static constexpr double kRangeLayers[] = {10, 40, 80, 160, 320};
        if (layer >= 1 && layer <= 6) return d.b737_mode == layer;
        if (layer >= 7 && layer <= 11) return RangeIs(d.b737_range, kRangeLayers[layer - 7]);
        return false;
    }
    case G::A300_EFIS_CTRL: {
        const MapSwitches& s = d.switches[static_cast<size_t>(MapFamily::DU1000)];
        switch (layer) {
        case 1: return d.du1000_range <= 15 + 1e-9;
        case 2: return RangeIs(d.du1000_range, 30);
        case 3: return RangeIs(d.du1000_range, 120);
        case 4: return RangeIs(d.du1000_range, 240);
        case 5: case 6: case 7: return d.du1000_mode == layer - 5;
        case 8: return s.intersections == 1;
        case 9: return s.navaids == 1;
        case 10: return d.du1000_ndb == 1;
        case 11: return s.airports == 1;
        case 12: return s.traffic == 1;
        default: return false;
        }
    }
    case G::PROLINE4_AUX_CTRL: {
        const MapSwitches& s = d.switches[static_cast<size_t>(MapFamily::PROLINE4)];
        switch (layer) {
        case 1: return s.traffic == 1;
        case 2: return s.intersections == 1;
        case 3: return s.navaids == 1;
        case 4: return d.proline4_ndb == 1;
        case 5: return s.airports == 1;
        case 6: return d.AtcBoundariesShown == 1;
        default: return false;
        }
    }
    case G::MD80_EHSI_CTRL: {
        const MapSwitches& s = d.switches[static_cast<size_t>(MapFamily::MD80)];
        switch (layer) {
        case 1: return s.navaids == 1;
        case 2: return s.airports == 1;
        case 3: return d.md80_boundaries_lamp == 1;
        case 4: return s.intersections == 1;
        case 5: return s.traffic == 1;
        case 6: return d.md80_adf_pointer == 1;
        case 7: return d.md80_adf_pointer == 0;
        case 8: return d.md80_mode != 2;   // the map-less mode darkens it
        default: return false;
        }
    }
    default:
        return false;
    }
}
