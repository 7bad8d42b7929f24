// mcu_rig.h: an MCU as a pilot meets it in the tests: one placed MCU on the
// demonstration simulator folder, keys pressed through the gauge's mouse
// table, frames drawn through its callback with the engine tick advanced on
// request, the PC keyboard of the keyboard tests, and the screen read back
// as it stands (the MCU keeps its screen between paints).
#pragma once

#include "cdu/mcu_keys.h"
#include "cdu/mcu_pages.h"
#include "cdu/plan_data_texts.h"
#include "frame/data_text.h"
#include "frame/gauge_callback.h"
#include "frame/gauge_linkage.h"
#include "frame/global_config.h"
#include "frame/input_capture.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"
#include "platform/keyboard_host.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>

namespace mcu_test {

// What the screen shows: strings by design row and column.
using ScreenMap = std::map<int, std::map<int, std::string>>;

inline ScreenMap& Drawn() {
    static ScreenMap drawn;
    return drawn;
}

class McuRig {
public:
    explicit McuRig(GaugeId id = GaugeId::MCU) : id_(id) {
        ResetModuleState();
        CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), ORB_SOURCE_DIR "/data/sim");
        g_candidates = {};
        g_airports = {};
        PresetPlanDataTexts();
        // The keyboard host, with the strings drawn recorded too.
        keyboard_ = std::make_unique<keyboard_test::KeyboardHost>();
        host_ = *platform::Host();
        host_.text_drawn = &TextDrawn;
        platform::SetHostForTesting(&host_);
        fake_.sim.tokens[Token::AVIONICS_POWER] = 1;
        gauge_ = std::make_unique<GaugeInstance>(id, "");
        gauge_->Service(PANEL_SERVICE_PRE_INSTALL);
        gauge_->Service(PANEL_SERVICE_PRE_INITIALIZE);
        gauge_->Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
        g_config.WriteVnavProfile = 0;
        Drawn().clear();
    }
    ~McuRig() {
        gauge_->Service(PANEL_SERVICE_DISCONNECT);
        StopDirectEntry();
    }

    // A click in the middle of the key's box, through the gauge's mouse table
    // (the placed gauge's, or its twin's).
    void Press(const char* name) { PressOn(id_, name); }
    void PressOn(GaugeId id, const char* name) {
        const McuKeyBox* key = FindMcuKey(name);
        ASSERT_NE(key, nullptr) << name;
        const MOUSERECT* rows = MouseTableOf(id);
        for (int r = 0; r + 1 < MouseRowCount(id); ++r) {
            const PIXBOX& b = rows[r].relative_box;
            if (rows[r].rect_type != MOUSE_RECT_PARENT || b.x != key->x || b.y != key->y || b.size_x != key->w ||
                b.size_y != key->h)
                continue;
            PIXPOINT point{key->x + key->w / 2, key->y + key->h / 2};
            ASSERT_NE(rows[r + 1].mouse_function, nullptr) << name;
            rows[r + 1].mouse_function(&point, rows[r + 1].mouse_flags);
            return;
        }
        FAIL() << "no mouse row for " << name;
    }
    // One frame: lamps at update, then the draw (tick and page).
    void Frame() {
        gauge_->Service(PANEL_SERVICE_PRE_UPDATE);
        gauge_->Service(PANEL_SERVICE_PRE_DRAW);
        gauge_->Service(PANEL_SERVICE_PRE_UPDATE);
    }
    void PressAndFrame(const char* name) {
        Press(name);
        Frame();
    }
    void PressTimes(const char* name, int times) {
        for (int i = 0; i < times; ++i) PressAndFrame(name);
    }
    // Frames with a new 18 Hz tick each.
    void Ticks(int n) {
        for (int i = 0; i < n; ++i) {
            fake_.sim.tokens[Token::TICK18] += 1;
            Frame();
        }
    }
    // A clock second of ticks.
    void Second() {
        fake_.sim.tokens[Token::CLOCK_SECOND] = std::fmod(fake_.sim.tokens[Token::CLOCK_SECOND] + 1, 60);
        Ticks(18);
    }
    // The aircraft, in the simulator's raw units.
    void Place(double lat, double lon, double ground_speed_kt = 0) {
        fake_.sim.tokens[Token::LATITUDE] = lat * 111130.555557;
        fake_.sim.tokens[Token::LONGITUDE] = (lon < 0 ? lon + 360 : lon) * 781874935307.4;
        fake_.sim.tokens[Token::GROUND_VELOCITY] = ground_speed_kt * 1.68781;
    }
    // PC keys: down for a frame, up for a frame.
    void Tap(uint8_t scan) {
        keyboard_->Down(scan);
        Frame();
        keyboard_->Up(scan);
        Frame();
    }

    // The screen as it stands: rows of strings in column order.
    std::string Row(int design_row) const {
        std::string out;
        auto it = Drawn().find(design_row);
        if (it == Drawn().end()) return out;
        for (const auto& [x, text] : it->second) out += (out.empty() ? "" : "|") + text;
        return out;
    }
    bool Shows(const std::string& text) const {
        for (const auto& [y, row] : Drawn())
            for (const auto& [x, t] : row)
                if (t.find(text) != std::string::npos) return true;
        return false;
    }
    std::string Screen() const {
        std::string out;
        for (const auto& [y, row] : Drawn()) out += std::to_string(y) + ": " + Row(y) + "\n";
        return out;
    }

    FakeSimulator& sim() { return fake_.sim; }
    keyboard_test::KeyboardHost& keyboard() { return *keyboard_; }
    GaugeInstance& gauge() { return *gauge_; }
    bool LnavLamp() const { return !gauge_->Hidden(2); }
    bool HoldLamp() const { return !gauge_->Hidden(3); }

private:
    // A whole paint starts with the screen's first string, the heading at
    // row 0: the map is then drawn afresh; a partial paint overwrites rows.
    static void TextDrawn(void*, const char* utf8, double x, double y, double, double, uint32_t, const char*, double,
                          int) {
        const GaugeSpec& shape = SpecOf(GaugeId::MCU);
        int row = static_cast<int>(std::lround(y / (shape.surface_height / kMcuDesignHeight)));
        int column = static_cast<int>(std::lround(x / (shape.surface_width / kMcuDesignWidth)));
        static uint64_t last_paint = 0;
        if (g_mcu_state.paints != last_paint) {
            last_paint = g_mcu_state.paints;
            Drawn().clear();
        }
        Drawn()[row][column] = utf8;
    }

    GaugeId id_;
    FakeSimulatorScope fake_;
    std::unique_ptr<keyboard_test::KeyboardHost> keyboard_;
    OrbHostInterface host_{};
    std::unique_ptr<GaugeInstance> gauge_;
};

}  // namespace mcu_test
