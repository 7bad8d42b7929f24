// display_state.h: the process-wide state of the moving-map displays: each
// family's mode and range, the map switches of each family, the ATC
// boundaries switch, and the operations every control (knobs, buttons, named
// variables, key events) uses to change them.
//
// Modes and ranges are process-wide so that two gauges of one family show
// the same page; every family steps its range together with the others.
#pragma once

#include <array>

// The display families that carry a mode, a range or map switches.
enum class MapFamily : int { B737, MD11, DU1000, EFS50, P1000, MD80, PROLINE4, C17, Count };
constexpr int kMapFamilyCount = static_cast<int>(MapFamily::Count);

// The EFS 50 EHSI's traffic ranges, nm, that its range keys step in HSI mode 8.
inline constexpr std::array<double, 5> kEfs50TrafficRanges = {2, 5, 10, 20, 40};

// StepMode's display numbers.
constexpr int kStepAllDisplays = 0;
constexpr int kStepEfs50 = 5;
constexpr int kStepB737 = 8;
constexpr int kStepDu1000 = 10;
constexpr int kStepProline4 = 11;
constexpr int kStepMd80 = 12;

// B737 ND modes.
constexpr int kB737ModeNav = 1;         // full rose, FMS source
constexpr int kB737ModeVor = 2;         // full rose, radio source
constexpr int kB737ModeExpNav = 3;      // arc, FMS source, no map
constexpr int kB737ModeExpVor = 4;      // arc, radio source, no map
constexpr int kB737ModeMap = 5;         // arc with the map
constexpr int kB737ModeCtrMap = 6;      // centred map
constexpr int kB737ModePlan = 7;        // north-up plan

// MD-11 ND modes, and the map radius its panel's MAP and PLAN buttons set.
constexpr int kMd11ModePlan = 2;        // north-up plan around the plan's centre row
constexpr int kMd11ModeMap = 3;         // heading-up map on the arc
constexpr int kMd11ModeVor = 4;         // arc with the VOR course
constexpr int kMd11ModeAppr = 5;        // arc with the localiser course
constexpr int kMd11MapRadius = 150;     // pixels, set by the MAP button
constexpr int kMd11PlanRadius = 94;     // pixels, set by the PLAN button

// One screen of the C-17 multi-function display (the gauge serves four).
struct C17Screen {
    int page = 1;                       // 0 to 12: what the screen shows
    int sub_page = 0;                   // the map page last chosen by the map key: 0, 3 or 6
    int map_value_a = 3;                // working values of the map pages
    int map_value_b = 9;
};
constexpr int kC17ScreenCount = 4;

// The P1000 MFD's soft keys: what their second page is setting up, a
// descent from here to an altitude over a distance, or at an angle.
struct P1000SoftKeys {
    int page = 1;                       // 1 or 2: the keys' page while the pop-up is open
    int distance_select = 0;            // 0 off, 1 "TO", 2 "FM": the left knob sets the distance
    int altitude_select = 0;            // 1: the left knob sets the altitude
    int angle_select = 0;               // 1: the left knob sets FPA
    double distance = 0;                // nm to where the altitude is to be reached
    double altitude = 0;                // feet, the altitude to descend to
    double vertical_speed = 0;          // ft/min, worked out for the pilot, sent nowhere
};

struct MapSwitches {
    int airports = 0;                   // 1: airports on the map
    int navaids = 0;                    // 1: navaids on the map
    int intersections = 0;              // 1: intersections on the map
    int traffic = 0;                    // 1: traffic shown
};

struct DisplayState {
    // HW_B737_ND
    int b737_mode = 1;                  // 1 to 7
    double b737_range = 10;             // nm, on the 0.5 .. 320 ladder
    double b737_radius = 215;           // pixels of the last frame's map radius
    int b737_adf_pointer = 0;           // 1: ADF pointer shown in mode 2
    int b737_data = 0;                  // 1: the panel's DATA flag, read in mode 5
    int du1000_ndb = 0;                 // 1: NDBs on the DU 1000 map (its own switch)
    int proline4_ndb = 0;               // 1: NDBs on the PROLINE 4 map (its own switch)
    int md80_adf_pointer = 0;           // 1: the MD-80 bearing pointer shows the ADF
    // The other families' modes and ranges
    int md11_mode = 3;                  // 2 PLAN, 3 MAP, 4 VOR, 5 APPR
    int md11_radius = 150;              // pixels of the map radius, set by the MAP and PLAN buttons
    int md11_bearing1 = 0;              // first bearing pointer's source: 0 off, 1 VOR, 2 ADF
    int md11_bearing2 = 0;              // 1: second bearing pointer (VOR 2) shown
    double md11_range = 80;
    int du1000_mode = 0;                // 0 to 3
    double du1000_range = 60;
    int efs50_hsi_mode = 1;             // 1 to 7, 8 traffic
    int efs50_nav_mode = 1;             // 1 or 2
    int efs50_stored_hsi_mode = 1;      // the mode the traffic key returns to
    double efs50_range = 12.5;
    double efs50_traffic_range = 10;    // nm, in HSI mode 8
    double p1000_range = 12.5;
    double md80_range = 20;
    int md80_mode = 3;                  // 0 to 3, 2 the map-less mode
    double proline4_range = 40;
    int proline4_mode = 3;              // 0 to 3
    int proline4_radius = 140;          // 70 in mode 2, 140 in mode 3; kept in modes 0, 1
    std::array<int, 2> proline4_bearing{};  // sources of the two bearing pointers, 0 off .. 3
    std::array<int, 2> efs50_bearing{};     // the EFS 50 EHSI's two bearing pointer sources, 0 .. 3
    int p1000_plan = 0;                 // 1: the P1000 MFD shows north-up PLAN
    int p1000_traffic = 0;              // 1: the P1000 MFD's traffic flag (its panel's own key)
    int p1000_airports = 0;             // 1: airports on the P1000 map (its own switch)
    int p1000_navaids = 0;              // 1: navaids on the P1000 map (its own switch)
    int p1000_intersections = 0;        // 1: intersections on the P1000 map (its own switch)
    P1000SoftKeys p1000_keys;           // the soft keys' page, selections and values
    double p1000_map_x = 134;           // the P1000 map's centre and radius, set by PLAN
    double p1000_map_y = 148;
    double p1000_map_radius = 53;
    double c17_range = 80;
    int c17_first_screen_request = 10;  // "MFDX1 mode" as last read; 10 no request
    // The C-17 screens 1 to 4 at [0] to [3]: primary flight, map, engines, engines secondary.
    std::array<C17Screen, kC17ScreenCount> c17_screens{{{1, 0, 3, 9}, {3, 0, 3, 9}, {9, 0, 3, 9}, {10, 0, 3, 9}}};
    // The record the draw routine works on: the last drawn screen's state,
    // loaded before its draw and stored back after it; the gauge's keys act on it.
    C17Screen c17_working{1, 0, 3, 9};
    int c17_working_screen = 1;         // 1 to 4: whose state the working record holds
    int c17_symbols_left = 0;           // C17_MFCP's two on/off flags the map pages read
    int c17_symbols_right = 0;
    // Map switches, one set per family; the common switches flip them all.
    std::array<MapSwitches, kMapFamilyCount> switches{};
    int AtcBoundariesShown = 0;         // 1: ATC boundaries on the maps
    int md80_boundaries_lamp = 0;       // the MD-80 panel's lamp, flipped with it
    // The LEGS page's PLAN-mode centre: the plan row (of the plan LEGS shows)
    // whose entry carries "<CTR>" and that the PLAN maps centre on; 0 = none,
    // then the active waypoint. The CDU steps it; the maps only read it.
    int PlanCentreIndex = 0;
    // Flight director bars of the attitude displays, filtered frame to frame
    double fd_bank_bar = 0;             // degrees of bank the bar stands at
    double fd_pitch_bar = 0;            // degrees of pitch the bar stands at
};

extern DisplayState g_display;

// [SECTION] Operations of the controls
// direction +1 next mode, -1 previous; display as the constants above.
void StepMode(int direction, int display);
void RangeUp();
void RangeDown();
// The EFS 50 EHSI's range keys: the map ladder, or in HSI mode 8 the traffic ranges.
void Efs50RangeKey(int direction);
// The common switches: each flips its flag in every family at once.
void ToggleMapAirports();
void ToggleMapNavaids();
void ToggleMapIntersections();
void ToggleTraffic();
void ToggleAtcBoundaries();
// The profile's starting modes, after it has been read.
void ApplyDisplayStartModes();
// Whether a navigation display shows PLAN now (the LEGS page's CTR and STEP).
bool AnyNdInPlanMode();
// The HW_B737_ND range for a range of the ladder; the nearest rung is kept
// for a value off the ladder (orb_nd_range and the [Lvars] bridge set it).
void SetB737Range(double range);
