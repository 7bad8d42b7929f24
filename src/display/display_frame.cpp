// display_frame.cpp: the frame every display shares; it calls the page the
// families' table gives for the gauge.
//
// A frame: graphics object from the layer's context, smoothing, dark screen
// when the avionics power is off or the picture belongs to the pop-up
// (instance 2; a C-17 screen's instance 0), otherwise text hint, background in the profile's colour over
// the design rectangle, the page, and every object deleted before return.
//
// Index:
//   [SECTION] Design sizes and backgrounds
//   [SECTION] The frame
//   [SECTION] Update-time work
#include "display/display_frame.h"

#include "display/display_families.h"
#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"

// [SECTION] Design sizes and backgrounds
DisplayFrameSpec FrameSpecOf(GaugeId id) {
    using G = GaugeId;
    constexpr ARGB kB777Clear = 0x0072BD61;
    switch (id) {
    case G::EFS50_EADI: case G::EFS50_EADI_NB: return {266, 230, SmoothingModeAntiAlias, 0, true};
    case G::EFS50_EHSI: case G::EFS50_EHSI_NB: return {266, 230, SmoothingModeHighQuality, 0, true};
    case G::EFS50_TCAS: return {280, 262, SmoothingModeHighQuality, 0, false};
    case G::HW_B737_ND: case G::HW_B737_ND_BR: case G::HW_B737_ND_NB:
        return {244, 302, SmoothingModeHighQuality, 0, true};
    case G::HW_MD11_ND: case G::HW_MD11_ND_NB: return {240, 258, SmoothingModeHighQuality, 0, true};
    case G::DU_1000_EHSI: case G::DU_1000_EHSI_NB: return {318, 310, SmoothingModeHighQuality, 0, true};
    case G::MD80_EHSI_NB: return {266, 232, SmoothingModeHighQuality, 0, true};
    case G::P1000_MFD: case G::P1000_MFD_NB: return {272, 314, SmoothingModeHighQuality, 0, true};
    case G::PROLINE4_MFD: case G::PROLINE4_MFD_NB: return {247, 285, SmoothingModeHighQuality, 0, true};
    case G::PROLINE_EICAS: return {486, 110, SmoothingModeHighQuality, 0, true};
    case G::B777_PFD_NB: return {260, 260, SmoothingModeHighQuality, kB777Clear, true};
    case G::A320_EADI_NB: return {318, 310, SmoothingModeAntiAlias, 0, true};
    case G::C17_MFD: return {246, 241, SmoothingModeHighQuality, 0, true};
    case G::DEBUG: return {330, 310, SmoothingModeHighQuality, 0, false, false};
    default: return {0, 0, SmoothingModeHighQuality, 0, false};
    }
}

namespace {
// The profile's background colour of a display (EADI, TCAS: black).
ProfileColour BackgroundOf(GaugeId id) {
    using G = GaugeId;
    const AircraftProfile& p = g_profile;
    switch (id) {
    case G::EFS50_EHSI: case G::EFS50_EHSI_NB: return p.EFS50EHSIBkgrd;
    case G::HW_B737_ND: case G::HW_B737_ND_BR: case G::HW_B737_ND_NB: return p.HWB737NDBkgrd;
    case G::HW_MD11_ND: case G::HW_MD11_ND_NB: return p.HWMD11NDBkgrd;
    case G::DU_1000_EHSI: case G::DU_1000_EHSI_NB: return p.DU1000EHSIBkgrd;
    case G::MD80_EHSI_NB: return p.MD80EHSIBkgrd;
    case G::P1000_MFD: case G::P1000_MFD_NB: return p.P1000MFDBkgrd;
    case G::PROLINE4_MFD: case G::PROLINE4_MFD_NB: case G::PROLINE_EICAS: return p.PROLINE4MFDBkgrd;
    case G::B777_PFD_NB: return p.B777PFDBkgrd;
    case G::A320_EADI_NB: return p.A320EADIBkgrd;
    case G::C17_MFD: return p.C17MfdBkgrd;
    default: return {0, 0, 0};
    }
}

ARGB OpaqueOf(const ProfileColour& c) {
    auto byte = [](int v) { return static_cast<ARGB>(v < 0 ? 0 : v > 255 ? 255 : v); };
    return 0xFF000000u | byte(c.red) << 16 | byte(c.green) << 8 | byte(c.blue);
}

bool IsB737Nd(GaugeId id) {
    return id == GaugeId::HW_B737_ND || id == GaugeId::HW_B737_ND_BR || id == GaugeId::HW_B737_ND_NB;
}
}  // namespace

// [SECTION] The frame
void DrawDisplay(GaugeId id, HDC hdc, int width, int height, int instance) {
    // 1. No context, no picture.
    if (hdc == nullptr || width <= 0 || height <= 0) return;
    DisplayFrameSpec shape = FrameSpecOf(id);
    if (shape.design_width <= 0) return;

    // 2. Size and graphics object.
    gdi::Graphics graphics(hdc);
    if (!graphics.ok()) return;
    DisplaySurface surface;
    surface.graphics = &graphics;
    surface.width = width;
    surface.height = height;
    surface.scale_x = static_cast<float>(width) / static_cast<float>(shape.design_width);
    surface.scale_y = static_cast<float>(height) / static_cast<float>(shape.design_height);
    surface.instance = instance;

    // 3. Smoothing.
    graphics.SetSmoothing(shape.smoothing);

    // 4. Dark screen: power off, or the picture is shown by the pop-up. A
    // C-17 instance is its screen number; 0 is its cleared surface.
    bool cleared = id == GaugeId::C17_MFD ? instance == 0 : instance == 2;
    if ((shape.needs_power && g_sim.avionics_power == 0) || cleared) {
        graphics.Clear(shape.clear_colour);
        return;
    }

    // 5. Text hint, only on a lit screen.
    graphics.SetTextHint(TextRenderingHintAntiAlias);

    // 6. Background over the design rectangle.
    graphics.Clear(shape.clear_colour);
    ResetToDesign(surface);
    if (shape.has_background) {
        gdi::SolidBrush background(OpaqueOf(BackgroundOf(id)));
        graphics.FillRectangle(background, 0, 0, shape.design_width, shape.design_height);
    }

    // 7. The page; the families still to come show their background.
    if (DisplayPage page = DisplayPageOf(id)) page(surface);

    // 8. The objects of the frame go with their scopes.
}

// [SECTION] Update-time work
void DisplayUpdate(GaugeId id) {
    // HW_B737_ND keeps the first C-17 screen's request in the same store,
    // without acting on it.
    if (IsB737Nd(id)) {
        int variable = g_module.c17_mode_variable[0];
        if (variable < 0) variable = CheckNamedVariable("MFDX1 mode");
        if (variable >= 0) g_display.c17_first_screen_request = static_cast<int>(GetNamedVariableValue(variable));
    }
}
