// gns_rig.h: a GNS unit as a pilot meets it in the tests: one placed GNSXLS
// on the demonstration simulator folder (database and stored routes loaded
// by its own start-up), keys pressed through the gauge's mouse table, a
// frame drawn after each press, and the screen read back as a text grid.
#pragma once

#include "cdu/cdu_rig.h"
#include "cdu/gns_keys.h"
#include "cdu/gns_screen.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"

#include <initializer_list>

namespace gns_test {

constexpr double kGnsColumnUnits = 10;  // design units a grid column stands for

// The strings of one frame as rows of text, a column every 10 units, text on
// the cursor in brackets.
inline std::string GnsGrid(const std::vector<test_canvas::Seen>& seen, int width, int height) {
    return cdu_test::TextGrid(seen, width, height, kGnsDesignWidth, kGnsDesignHeight, kGnsColumnUnits, kGnsBlack);
}

class GnsRig {
public:
    GnsRig() {
        ResetModuleState();
        CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), ORB_SOURCE_DIR "/data/sim");
        g_candidates = {};
        g_airports = {};
        g_gns_page = {};
        PresetPlanDataTexts();
        fake_.sim.tokens[Token::AVIONICS_POWER] = 1;
        gauge_ = std::make_unique<GaugeInstance>(GaugeId::GNSXLS, "");
        gauge_->Service(PANEL_SERVICE_PRE_INSTALL);
        gauge_->Service(PANEL_SERVICE_PRE_INITIALIZE);
        gauge_->Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
        g_config.WriteVnavProfile = 0;
        g_sim.avionics_power = 1;
    }
    ~GnsRig() { gauge_->Service(PANEL_SERVICE_DISCONNECT); }

    // A click in the middle of the key's box through the mouse table, then a frame.
    void Key(const char* name) {
        const CduKeyBox* key = FindCduKey(GaugeId::GNSXLS, name);
        ASSERT_NE(key, nullptr) << name;
        Click(*key);
        Frame();
    }
    // Each character on its key, a frame after each.
    void Type(const char* text) {
        for (const char* c = text; *c; ++c) {
            const CduKeyBox* key = FindCduKeyForCharacter(GaugeId::GNSXLS, *c);
            ASSERT_NE(key, nullptr) << *c;
            Click(*key);
            Frame();
        }
    }
    void Frame() {
        host_.seen().clear();
        g_sim.avionics_power = 1;
        gauge_->Service(PANEL_SERVICE_PRE_UPDATE);
        gauge_->Service(PANEL_SERVICE_PRE_DRAW);
        seen_ = host_.seen();
    }
    std::string Screen() const {
        return GnsGrid(seen_, SpecOf(GaugeId::GNSXLS).surface_width, SpecOf(GaugeId::GNSXLS).surface_height);
    }
    bool Has(const std::string& text) const {
        for (const test_canvas::Seen& s : seen_)
            if (s.text.find(text) != std::string::npos) return true;
        return false;
    }
    // The text row of the grid whose strings contain `text`, or "".
    std::string RowWith(const std::string& text) const {
        std::string screen = Screen();
        size_t at = screen.find(text);
        if (at == std::string::npos) return "";
        size_t begin = screen.rfind('\n', at);
        size_t end = screen.find('\n', at);
        begin = begin == std::string::npos ? 0 : begin + 1;
        return screen.substr(begin, end - begin);
    }
    // The screen against tests/cdu/reference/NAME.txt (ORB_UPDATE_REFERENCE=1 writes it).
    void ExpectScreen(const char* name) const {
        std::string path = std::string(ORB_SOURCE_DIR) + "/tests/cdu/reference/" + name + ".txt";
        const char* update = std::getenv("ORB_UPDATE_REFERENCE");
        if (update != nullptr && update[0] == '1') {
            std::ofstream(path, std::ios::binary) << Screen();
            return;
        }
        std::ifstream in(path, std::ios::binary);
        ASSERT_TRUE(in.good()) << "no reference " << path;
        std::stringstream want;
        want << in.rdbuf();
        EXPECT_EQ(Screen(), want.str()) << name;
    }
    FakeSimulator& sim() { return fake_.sim; }
    // Samples the tick takes at every call, set where the simulator keeps them.
    void SetGroundSpeed(double knots) {
        fake_.sim.tokens[Token::GROUND_VELOCITY] = knots * 1.68781;
        g_sim.ground_speed = knots;
    }
    void SetAltitude(double feet) {
        fake_.sim.calculator["(A:INDICATED ALTITUDE, feet)"] = feet;
        g_sim.indicated_altitude.now = feet;
    }

private:
    void Click(const CduKeyBox& key) {
        const MOUSERECT* rows = MouseTableOf(GaugeId::GNSXLS);
        for (int r = 0; r + 1 < MouseRowCount(GaugeId::GNSXLS); ++r) {
            const PIXBOX& b = rows[r].relative_box;
            if (rows[r].rect_type != MOUSE_RECT_PARENT || b.x != key.x || b.y != key.y || b.size_x != key.w ||
                b.size_y != key.h)
                continue;
            PIXPOINT point{key.x + key.w / 2, key.y + key.h / 2};
            ASSERT_NE(rows[r + 1].mouse_function, nullptr) << key.name;
            rows[r + 1].mouse_function(&point, rows[r + 1].mouse_flags);
            return;
        }
        FAIL() << "no mouse row for " << key.name;
    }

    FakeSimulatorScope fake_;
    test_canvas::TextHost host_;
    std::unique_ptr<GaugeInstance> gauge_;
    std::vector<test_canvas::Seen> seen_;
};

inline std::string Field() { return std::string(GnsFieldText()); }

// The idents of ActivePlan or ModPlan, blank-separated.
inline std::string ActiveIdents() { return cdu_test::Idents(g_plan.ActivePlan, g_plan.context.ActiveLastRow); }
inline std::string ModIdents() { return cdu_test::Idents(g_plan.ModPlan, g_plan.context.ModLastRow); }

// From the list the unit starts on: "NEXT FPL" (its first row) opened as an empty plan.
inline void OpenEmptyPlan(GnsRig& gns) {
    gns.Key("LSK1L");
    gns.Key("ENTER");
}

// A waypoint typed into the marked slot and taken from DATABASE WPT.
inline void AddWaypoint(GnsRig& gns, const char* name) {
    gns.Type(name);
    gns.Key("ENTER");
    gns.Key("ENTER");
}

// The empty plan opened, its first slot marked, and the waypoints added.
inline void BuildPlan(GnsRig& gns, std::initializer_list<const char*> names) {
    OpenEmptyPlan(gns);
    gns.Key("LSK1L");
    for (const char* name : names) AddWaypoint(gns, name);
}

// A plan built so and made active ("ACTIVATE?" and ENTER).
inline void ActivatePlan(GnsRig& gns, std::initializer_list<const char*> names) {
    BuildPlan(gns, names);
    gns.Key("LSK5R");
    gns.Key("ENTER");
}

}  // namespace gns_test
