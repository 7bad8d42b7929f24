// nd_fixture.h: what the display tests share: a fresh module with the
// avionics powered, an aircraft over Washington state, a plan placed in
// ActivePlan, the ND drawn onto an in-memory surface, and the strings it drew.
#pragma once

#include "display/display_frame.h"
#include "display/display_state.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/module_state.h"
#include "frame/global_config.h"
#include "guidance/geodesy.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "support/module_reset.h"
#include "../platform/canvas.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace nd_test {

constexpr int kSurfaceWidth = 247;      // the HW_B737_ND's surface
constexpr int kSurfaceHeight = 294;

struct PlanRow {
    const char* ident;
    double latitude;
    double longitude;
};

// A fresh module, powered, the aircraft at Seattle heading north at 300 kt.
inline void FreshAircraft() {
    ResetModuleState();
    g_plan = PlanTables{};
    g_nearby = ProximitySubsets{};
    g_sim.avionics_power = 1;
    g_sim.latitude = 47.45;
    g_sim.longitude = -122.31;
    g_sim.heading_true = 0;
    g_sim.heading_magnetic.now = 343;
    g_sim.magnetic_variation = 17;
    g_sim.ground_speed = 300;
    g_sim.true_airspeed.now = 320;
    // The subsets count as built here, so that nothing rebuilds them from
    // the (empty) bulk tables.
    auto centre = [](auto& subset) {
        subset.centre_latitude = g_sim.latitude;
        subset.centre_longitude = g_sim.longitude;
    };
    centre(g_nearby.AirportsNear600);
    centre(g_nearby.AirportsNear180);
    centre(g_nearby.NavaidsNear600);
    centre(g_nearby.NavaidsNear320);
    centre(g_nearby.FixesNear600);
    centre(g_nearby.FixesNear200);
}

inline void PlacePlan(const std::vector<PlanRow>& rows, int active) {
    for (size_t i = 0; i < rows.size(); ++i) {
        PlanWaypoint& w = g_plan.ActivePlan[i];
        NewPlanRow(w);
        std::snprintf(w.Ident.data(), w.Ident.size(), "%s", rows[i].ident);
        w.Latitude = rows[i].latitude;
        w.Longitude = rows[i].longitude;
    }
    g_plan.context.ActiveLastRow = static_cast<int>(rows.size()) - 1;
    g_plan.context.ActiveLeg = active;
}

// The point `nm` along the true `bearing` from the aircraft.
inline void Offset(double bearing, double nm, double& latitude, double& longitude) {
    ProjectPoint(g_sim.latitude, g_sim.longitude, bearing, nm, latitude, longitude);
}

template <int N>
void AddNearby(ProximitySubset<N>& subset, const char* ident, const char* kind, double latitude, double longitude) {
    NearbyRecord& r = subset.rows[static_cast<size_t>(++subset.count)];
    std::snprintf(r.Ident.data(), r.Ident.size(), "%s", ident);
    std::snprintf(r.Kind.data(), r.Kind.size(), "%s", kind);
    r.Latitude = latitude;
    r.Longitude = longitude;
}

// One drawn frame of a display: pixels and strings.
struct Frame {
    test_canvas::Canvas canvas;
    std::vector<test_canvas::Seen> seen;
    explicit Frame(int width = kSurfaceWidth, int height = kSurfaceHeight) : canvas(width, height) {}

    const test_canvas::Seen* Find(const std::string& text) const {
        for (const auto& s : seen)
            if (s.text == text) return &s;
        return nullptr;
    }
    bool Has(const std::string& text) const { return Find(text) != nullptr; }
    int CountText(const std::string& text) const {
        int n = 0;
        for (const auto& s : seen) n += s.text == text;
        return n;
    }
    // Opaque pixels within `tolerance` of a colour in each channel.
    int Near(uint32_t argb, int tolerance = 40, int x0 = 0, int y0 = 0, int x1 = 1 << 20, int y1 = 1 << 20) const {
        int n = 0;
        for (int y = y0; y < y1 && y < canvas.dc.height; ++y)
            for (int x = x0; x < x1 && x < canvas.dc.width; ++x) {
                uint32_t p = canvas.At(x, y);
                if ((p >> 24) != 0xFF) continue;
                bool close = true;
                for (int shift : {16, 8, 0}) {
                    int a = static_cast<int>((p >> shift) & 0xFF), b = static_cast<int>((argb >> shift) & 0xFF);
                    close = close && std::abs(a - b) <= tolerance;
                }
                n += close;
            }
        return n;
    }
    void WritePng(const char* name) {
        std::filesystem::path dir = std::filesystem::path(ORB_BINARY_DIR) / "nd-shots";
        std::filesystem::create_directories(dir);
        cairo_surface_t* surface = cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(canvas.pixels.data()), CAIRO_FORMAT_ARGB32, canvas.dc.width,
            canvas.dc.height, canvas.dc.stride_bytes);
        cairo_surface_write_to_png(surface, (dir / name).c_str());
        cairo_surface_destroy(surface);
    }
};

inline Frame DrawNd(int instance = 1, GaugeId id = GaugeId::HW_B737_ND, int width = kSurfaceWidth,
                    int height = kSurfaceHeight) {
    Frame frame(width, height);
    test_canvas::TextHost host;
    DrawDisplay(id, frame.canvas.hdc(), width, height, instance);
    frame.seen = host.seen();
    return frame;
}

// Design pixels to surface pixels of the ND.
inline double SurfaceX(double design_x) { return design_x * kSurfaceWidth / 244.0; }
inline double SurfaceY(double design_y) { return design_y * kSurfaceHeight / 302.0; }

// A copy of a text drawn below the top corner texts (the map's, not the
// corner's): its box starts lower than 45 design pixels.
inline const test_canvas::Seen* SeenBelowCorner(const Frame& f, const std::string& text) {
    for (const auto& s : f.seen)
        if (s.text == text && s.box.layout_y > 45) return &s;
    return nullptr;
}

}  // namespace nd_test
