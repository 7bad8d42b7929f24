// gauge_callback.cpp: what each gauge does at each panel service.
//
// Index:
//   [SECTION] Trampolines (one callback and one click handler per gauge)
//   [SECTION] Start-up: StartupOnce and the parameter-string rules
//   [SECTION] Instance logic and the draw step
//   [SECTION] Layer switching
//   [SECTION] GaugeCallback, service by service
#include "frame/gauge_callback.h"

#include "cdu/cdu_draw.h"
#include "cdu/keypad.h"
#include "cdu/plan_data_texts.h"
#include "display/c17_mfd.h"
#include "display/control_panels.h"
#include "display/display_frame.h"
#include "display/display_state.h"
#include "display/traffic.h"
#include "flightlog/flight_log.h"
#include "frame/aircraft_profile.h"
#include "frame/diagnostic_log.h"
#include "frame/engine_tick.h"
#include "frame/entry_guard.h"
#include "frame/global_config.h"
#include "frame/input_capture.h"
#include "frame/module_state.h"
#include "frame/named_variables.h"
#include "frame/sim_access.h"
#include "frame/sim_generation.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/performance.h"
#include "guidance/vnav.h"
#include "navdata/nav_database.h"
#include "plan/plan_execute.h"
#include "plan/route_files.h"

#include <gdiplus_flat.h>

#include <cstdio>
#include <cstring>
#include <utility>

namespace {
using G = GaugeId;

bool Is(GaugeId id, std::initializer_list<GaugeId> set) {
    for (GaugeId g : set)
        if (g == id) return true;
    return false;
}

bool ParamIs(const char* parameters, const char* word) {
    return parameters != nullptr && std::strcmp(parameters, word) == 0;
}

void GaugeClick(GaugeId id) {
    const GaugeSpec& shape = SpecOf(id);
    switch (id) {
    case G::LNAV: LnavToggle(); return;
    case G::VNAV: VnavToggle(); return;
    case G::BDRY: ToggleAtcBoundaries(); return;
    case G::DEBUG: return;
    default: break;
    }
    if (shape.window != 0) PanelWindowToggle(static_cast<UINT32>(shape.window));
}
}  // namespace

// [SECTION] Trampolines
namespace {
// The simulator calls these: no exception goes past them.
template <int I>
void FSAPI CallbackTrampoline(GAUGEHDR* gauge, SINT32 service_id, UINT32 extra_data) {
    AtEntry(EntryKind::GaugeCallback, [=] { GaugeCallback(static_cast<GaugeId>(I), gauge, service_id, extra_data); });
}

template <int I>
BOOL_SDK FSAPI ClickTrampoline(PIXPOINT*, FLAGS32) {
    return AtMouseEntry([] { GaugeClick(static_cast<GaugeId>(I)); });
}

template <int... I>
constexpr std::array<GAUGE_CALLBACK, kGaugeCount> MakeCallbacks(std::integer_sequence<int, I...>) {
    return {&CallbackTrampoline<I>...};
}
template <int... I>
constexpr std::array<MOUSE_FUNCTION, kGaugeCount> MakeClicks(std::integer_sequence<int, I...>) {
    return {&ClickTrampoline<I>...};
}

constexpr auto kCallbacks = MakeCallbacks(std::make_integer_sequence<int, kGaugeCount>{});
constexpr auto kClicks = MakeClicks(std::make_integer_sequence<int, kGaugeCount>{});
}  // namespace

GAUGE_CALLBACK GaugeCallbackOf(GaugeId id) { return kCallbacks[Index(id)]; }
MOUSE_FUNCTION GaugeClickHandler(GaugeId id) { return kClicks[Index(id)]; }

// [SECTION] Start-up
void StartupOnce(GaugeId id, const char* parameters) {
    bool skip_database = Is(id, {G::LNAV, G::VNAV, G::P1000_MFD_CNTR, G::P1000_MFD_NB_CNTR, G::C17_MFCP});
    bool skip_plan_list = Is(id, {G::LNAV, G::VNAV, G::P1000_MFD_CNTR, G::P1000_MFD_NB_CNTR, G::PROLINE_EICAS});
    bool skip_profile = id == G::C17_MFD;

    // 1. Where the simulator is.
    FindRootFolder();
    // 2. Global configuration (which ends by detecting the generation).
    if (!g_module.configuration_loaded) {
        LoadGlobalConfig();
        PresetPlanDataTexts();
        FlightLogFirstPass(3);
    }
    // 3. The navigation database.
    if (!skip_database && g_navdb.AirportTable.count == 0) {
        LoadNavDatabase();
        ReadDatabaseCycle();  // the IDENT page's cycle and validity
        if (Is(id, {G::SMITHS_FMS, G::SMITHS_FMS_BR})) FlightLogFirstPass(3);
    }
    // 4. The aircraft profile, named by the first gauge whose parameter is a name.
    if (!skip_profile && g_module.AircraftProfileName[0] == 0) {
        auto& name = g_module.AircraftProfileName;
        std::snprintf(name.data(), name.size(), "%s", parameters ? parameters : "");
        if (Is(id, {G::GNSXLS, G::GNSXLS_LM, G::SMITHS_FMS}) && ParamIs(name.data(), "GPSSynch")) {
            g_config.synchfplanwithfsgps = 1;
            name[0] = 0;
        }
        bool tests_only_vc_wn = Is(id, {G::EFS50_EHSI_CNTR, G::EFS50_EHSI_CNTR_LM, G::LNAV, G::VNAV});
        if (ParamIs(name.data(), "VC") || ParamIs(name.data(), "WN") ||
            (!tests_only_vc_wn && ParamIs(name.data(), "VC2")))
            name[0] = 0;
        if (name[0] != 0) {
            LoadAircraftProfile(name.data());
            LoadPerformanceTable();
            ApplyDisplayStartModes();
        }
    }
    // 5. The list of stored plans.
    if (!skip_plan_list && g_stored_plans.count == 0) BuildStoredPlanTable();
}

// [SECTION] Instance logic and the draw step
int WorkOutDrawInstance(GaugeId id, const char* parameters) {
    const GaugeSpec& shape = SpecOf(id);
    int instance = 1;
    if (ParamIs(parameters, "VC") && IsPanelWindowVisible(0)) instance = 0;
    bool own_window_visible = shape.window != 0 && IsPanelWindowVisible(static_cast<UINT32>(shape.window));
    if (own_window_visible && !ParamIs(parameters, "WN")) instance = 2;
    if (Is(id, {G::P1000_MFD, G::P1000_MFD_NB})) {
        if (ParamIs(parameters, "VC2")) instance = 3;
    } else if (!Is(id, {G::EFS50_EADI, G::EFS50_EADI_NB, G::EFS50_TCAS})) {
        if (own_window_visible && ParamIs(parameters, "VC2")) instance = 3;
    }
    return instance;
}

namespace {
// Calls the family's draw routine on the surface, then marks the layer for
// the simulator to take the new pixels, drawn or not.
void DrawStep(GaugeId id, GAUGEHDR* gauge, int instance) {
    const GaugeSpec& shape = SpecOf(id);
    int surface_layer = id == G::C17_MFD ? 0 : 1;
    ELEMENT_HEADER* element = LayerElement(gauge, surface_layer);
    if (element == nullptr) return;
    if (element->element_type == ELEMENT_TYPE_STATIC_IMAGE) {
        auto* image = reinterpret_cast<ELEMENT_STATIC_IMAGE*>(element);
        if (image->hdc != nullptr && shape.surface_width > 0) {
            if (shape.family == GaugeFamily::Cdu)
                DrawCdu(id, static_cast<HDC>(image->hdc), shape.surface_width, shape.surface_height);
            else
                DrawDisplay(id, static_cast<HDC>(image->hdc), shape.surface_width, shape.surface_height, instance);
        }
    }
    element->image_flags = static_cast<FLAGS>(static_cast<FLAGS32>(element->image_flags) & ~IMAGE_ON_SCREEN);
}

void StartGdiplus() {
    if (g_module.gdiplus_token != 0) return;
    GdiplusStartupInput input = {1, nullptr, FALSE, FALSE};
    ULONG_PTR token = 0;
    if (GdiplusStartup(&token, &input, nullptr) == Ok) g_module.gdiplus_token = token;
}

void StopGdiplus() {
    if (g_module.gdiplus_token == 0) return;
    GdiplusShutdown(g_module.gdiplus_token);
    g_module.gdiplus_token = 0;
}
}  // namespace

// [SECTION] Layer switching
void SwitchLayers(GaugeId id, GAUGEHDR* gauge) {
    switch (id) {
    case G::SMITHS_FMS:
    case G::SMITHS_FMS_BR:
        ShowLayer(gauge, 2, ExecutePending());
        ShowLayer(gauge, 3, g_smiths.CduMessage[0] != 0);
        return;
    case G::MCU:
    case G::MCU_LM:
        ShowLayer(gauge, 2, g_lnav.LnavOn != 0);
        ShowLayer(gauge, 3, g_holds.HoldFlying != 0);
        return;
    case G::LNAV: ShowLayer(gauge, 1, g_lnav.LnavOn != 0); return;
    case G::VNAV: ShowLayer(gauge, 1, g_vnav.VnavOn != 0); return;
    case G::HW_B737_EFIS_CNTR:
    case G::HW_B737_EFIS_CNTR_BR:
    case G::A300_EFIS_CTRL:
    case G::PROLINE4_AUX_CTRL:
    case G::MD80_EHSI_CTRL:
        for (int k = 1; k <= SpecOf(id).icon_layers; ++k) ShowLayer(gauge, k, ControlPanelLayerShown(id, k));
        return;
    default: return;
    }
}

// [SECTION] GaugeCallback
void GaugeCallback(GaugeId id, GAUGEHDR* gauge, SINT32 service_id, UINT32 extra_data) {
    const GaugeSpec& shape = SpecOf(id);
    if (shape.log_line != nullptr) WriteLogLine(shape.log_line);
    if (id == G::BDRY) return;  // its one click is all it does
    const char* parameters = gauge != nullptr ? gauge->parameters : nullptr;
    bool is_cdu = shape.family == GaugeFamily::Cdu && id != G::C17_MFCP;
    bool is_display = shape.family == GaugeFamily::Display;

    switch (service_id) {
    case PANEL_SERVICE_PRE_INSTALL:
        if (is_cdu || is_display || id == G::DEBUG ||
            Is(id, {G::PROLINE4_MFD_CTRL, G::P1000_MFD_CNTR, G::P1000_MFD_NB_CNTR, G::C17_MFCP}))
            FindRootFolder();
        if (Is(id, {G::SMITHS_FMS, G::SMITHS_FMS_BR}) && g_smiths.CduPage == 0) g_smiths.CduPage = 25;
        if (Is(id, {G::GNSXLS, G::GNSXLS_LM})) ResetGnsPageState();
        break;

    case PANEL_SERVICE_POST_INSTALL:
        if (Is(id, {G::SMITHS_FMS, G::SMITHS_FMS_BR, G::GNSXLS, G::GNSXLS_LM}) && !g_module.initial_load_done)
            FlightLogFirstPass(3);
        if (Is(id, {G::EFS50_EHSI, G::EFS50_EHSI_NB, G::EFS50_TCAS, G::HW_B737_ND, G::HW_B737_ND_BR,
                    G::HW_B737_ND_NB, G::HW_MD11_ND, G::HW_MD11_ND_NB, G::DU_1000_EHSI, G::DU_1000_EHSI_NB,
                    G::P1000_MFD, G::P1000_MFD_NB, G::PROLINE4_MFD, G::PROLINE4_MFD_NB, G::PROLINE_EICAS,
                    G::A320_EADI_NB, G::MD80_EHSI_NB}))
            TryTrafficLink(id);
        if (Is(id, {G::EFS50_EHSI, G::DU_1000_EHSI, G::DU_1000_EHSI_NB, G::MD80_EHSI_NB, G::A320_EADI_NB}) &&
            !g_module.initial_load_done)
            FlightLogFirstPass(3);
        break;

    case PANEL_SERVICE_PRE_INITIALIZE:
        if (id == G::DEBUG) {
            FindRootFolder();
            break;
        }
        if (Is(id, {G::PROLINE4_MFD_CTRL, G::PROLINE4_AUX_CTRL})) break;
        if (id == G::C17_MFD) {
            OpenDiagnosticLog();
            std::snprintf(g_module.c17_parameter.data(), g_module.c17_parameter.size(), "%s",
                          parameters ? parameters : "");
        }
        if (id == G::HW_B737_ND_NB) ReadOutsideTrafficVariables();
        StartupOnce(id, parameters);
        if (Is(id, {G::MCU, G::MCU_LM})) {
            g_mcu_page.repaint = 1;
            g_tick.phase = 999;
            g_tick.slow_refresh = 999;
        }
        if (Is(id, {G::P1000_MFD, G::P1000_MFD_NB})) {
            g_tick.slow_refresh = 999;
            g_tick.warm_up = 999;
        }
        break;

    case PANEL_SERVICE_POST_INITIALIZE:
        if (id == G::SERVER) {
            char title[128];
            if (ExecuteCalculatorText("(A:TITLE,string)", title, sizeof title)) {
                for (char* c = title; *c; ++c)
                    if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 32);
                std::snprintf(g_module.aircraft_title.data(), g_module.aircraft_title.size(), "%s", title);
            }
            DetectSimGeneration();
        }
        break;

    case PANEL_SERVICE_PRE_UPDATE:
        if (id == G::SERVER) {
            NamedVariablePump();
        } else if (id == G::C17_MFD) {
            // The one gauge that runs the tick at update; then its screen's requests.
            WriteLogLine("PANEL_SERVICE_PRE_UPDATE:\n");
            EngineTick();
            C17MfdUpdate(gauge, parameters);
        } else if (id == G::HW_B737_ND) {
            DisplayUpdate(id);
        } else if (id == G::HW_B737_ND_NB) {
            ReadOutsideTargetCount();  // its second traffic source gives the count
            SwitchLayers(id, gauge);
        } else {
            SwitchLayers(id, gauge);
        }
        break;

    case PANEL_SERVICE_PRE_DRAW:
        if (is_cdu) {
            if (Is(id, {G::MCU, G::MCU_LM}) && g_mcu_page.direct_entry) PollKeyboard();
            EngineTick();
            // The MCU in the virtual cockpit rests while the 2D panel shows.
            bool resting = Is(id, {G::MCU, G::MCU_LM}) && ParamIs(parameters, "VC") && IsPanelWindowVisible(0);
            if (!resting) DrawStep(id, gauge, 1);
        } else if (is_display) {
            if (id != G::C17_MFD) EngineTick();
            if (id == G::C17_MFD) ApplyC17PresetWord(parameters);
            if (id == G::C17_MFD) {
                // The instance is the screen; its 0 still draws, as a cleared surface.
                DrawStep(id, gauge, C17DrawInstance(parameters));
            } else {
                int instance = WorkOutDrawInstance(id, parameters);
                if (instance != 0) DrawStep(id, gauge, instance);
            }
        } else if (id == G::DEBUG) {
            EngineTick();
            DrawStep(id, gauge, 1);
        } else if (id == G::SERVER) {
            EngineTick();
        } else if (Is(id, {G::EFS50_EHSI_CNTR, G::EFS50_EHSI_CNTR_LM, G::HW_B737_EFIS_CNTR,
                           G::HW_B737_EFIS_CNTR_BR, G::MD11_EFIS_CTRL})) {
            EngineTick();
        } else if (id == G::A300_EFIS_CTRL) {
            SwitchLayers(id, gauge);
        } else if (id == G::P1000_MFD_CNTR) {
            // The pop-up has no close notice; the tick watches this count.
            TickState& t = g_tick;
            if (!t.p1000_window_open) {
                t.p1000_window_open = 1;
                t.slow_refresh = 999;
                t.p1000_draw_count = 1;
            } else {
                if (t.p1000_draw_count > 29999) t.p1000_draw_count = 0;
                ++t.p1000_draw_count;
            }
        }
        break;

    case PANEL_SERVICE_CONNECT_TO_WINDOW:
        if (id == G::SERVER) {
            RegisterAllVariables();
        } else if (is_cdu || is_display || id == G::DEBUG) {
            StartGdiplus();
            if (id == G::C17_MFD && !g_module.c17_named_checked) {
                g_module.c17_named_checked = true;
                for (size_t i = 0; i < kC17ModeVariableNames.size(); ++i)
                    g_module.c17_mode_variable[i] = CheckNamedVariable(kC17ModeVariableNames[i]);
            }
        }
        break;

    case PANEL_SERVICE_DISCONNECT:
        if (id == G::SERVER) {
            UnregisterAllVariables();
        } else if (is_cdu || is_display || id == G::DEBUG) {
            StopGdiplus();
            if (id == G::C17_MFD)
                for (const char* name : kC17ModeVariableNames) UnregisterVarByName(name);
        }
        break;

    default:
        break;  // services 0, 1, 7, 8, 9, 11, 12, 13, 16, 17: nothing
    }
    (void)extra_data;
}
