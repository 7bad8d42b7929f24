// cdu_rig.h: a Boeing-style CDU as a pilot meets it in the tests: one placed
// SMITHS_FMS instance on the demonstration simulator folder (database and
// stored routes loaded by its own start-up), keys pressed through the
// gauge's mouse table, frames drawn through its callback, and the screen
// read back as a text grid.
#pragma once

#include "frame/gauge_linkage.h"
#include "cdu/cdu_keys.h"
#include "cdu/cdu_screen.h"
#include "cdu/keypad.h"
#include "cdu/plan_data_texts.h"
#include "frame/gauge_callback.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "navdata/nav_database.h"
#include "frame/data_text.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"
#include "platform/canvas.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <map>
#include <string>
#include <vector>

namespace cdu_test {

constexpr float kColumnUnits = 7;  // design units a grid column stands for

// The strings of one frame as rows of text: one row a drawn y (design
// units), strings placed at their x over `column_units`, text drawn in the
// `marked` colour (reverse video, a cursor) in brackets.
inline std::string TextGrid(const std::vector<test_canvas::Seen>& seen, int width, int height, int design_width,
                            int design_height, double column_units, ARGB marked) {
    double sx = width / static_cast<double>(design_width);
    double sy = height / static_cast<double>(design_height);
    struct Item {
        int column;
        std::string text;
    };
    std::map<int, std::vector<Item>> rows;
    for (const test_canvas::Seen& s : seen) {
        int y = static_cast<int>(std::lround(s.box.layout_y / sy));
        int column = static_cast<int>(std::lround(s.box.text_x / sx / column_units));
        std::string text = s.box.argb == marked ? "[" + s.text + "]" : s.text;
        rows[y].push_back({column, text});
    }
    std::string out;
    for (auto& [y, items] : rows) {
        std::stable_sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.column < b.column; });
        std::string line;
        for (const Item& item : items) {
            size_t column = static_cast<size_t>(std::max(0, item.column));
            if (!line.empty()) column = std::max(column, line.size() + 1);
            line.resize(std::max(line.size(), column), ' ');
            line += item.text;
        }
        while (!line.empty() && line.back() == ' ') line.pop_back();
        char head[16];
        std::snprintf(head, sizeof head, "%3d|", y);
        out += head + line + "\n";
    }
    return out;
}

// A Boeing-style screen's grid: a column every 7 units, reverse video in brackets.
inline std::string ScreenGrid(const std::vector<test_canvas::Seen>& seen, int width, int height) {
    return TextGrid(seen, width, height, kCduDesignWidth, kCduDesignHeight, kColumnUnits, kCduBlack);
}

class CduRig {
public:
    explicit CduRig(GaugeId id = GaugeId::SMITHS_FMS) {
        ResetModuleState();
        CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), ORB_SOURCE_DIR "/data/sim");
        g_candidates = {};
        g_airports = {};
        PresetPlanDataTexts();
        cdu_ = std::make_unique<GaugeInstance>(id, "");
        cdu_->Service(PANEL_SERVICE_PRE_INSTALL);
        cdu_->Service(PANEL_SERVICE_PRE_INITIALIZE);
        cdu_->Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
        // The rig works on the source tree's sample folder: EXEC must not
        // leave a profile file in it.
        g_config.WriteVnavProfile = 0;
        id_ = id;
    }
    ~CduRig() { cdu_->Service(PANEL_SERVICE_DISCONNECT); }

    // A click in the middle of the key's box, through the gauge's mouse table.
    void Press(const char* name) {
        const CduKeyBox* key = FindCduKey(id_, name);
        ASSERT_NE(key, nullptr) << name;
        Click(*key);
    }
    void Click(const CduKeyBox& key) {
        const MOUSERECT* rows = MouseTableOf(id_);
        for (int r = 0; r + 1 < MouseRowCount(id_); ++r) {
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
    // Each character on its key.
    void Type(const char* text) {
        for (const char* c = text; *c; ++c) {
            const CduKeyBox* key = FindCduKeyForCharacter(id_, *c);
            ASSERT_NE(key, nullptr) << *c;
            Click(*key);
        }
    }
    // One frame of the gauge: lamps at update, then the drawn page.
    void Frame() {
        host_.seen().clear();
        cdu_->Service(PANEL_SERVICE_PRE_UPDATE);
        cdu_->Service(PANEL_SERVICE_PRE_DRAW);
        seen_ = host_.seen();
        cdu_->Service(PANEL_SERVICE_PRE_UPDATE);  // lamps as the next frame shows them
    }
    void PressAndFrame(const char* name) {
        Press(name);
        Frame();
    }
    std::string Screen() const { return ScreenGrid(seen_, SpecOf(id_).surface_width, SpecOf(id_).surface_height); }
    bool ScreenHas(const std::string& text) const {
        for (const test_canvas::Seen& s : seen_)
            if (s.text.find(text) != std::string::npos) return true;
        return false;
    }
    int StringsDrawn() const { return static_cast<int>(seen_.size()); }
    bool ExecLit() const { return !cdu_->Hidden(2); }
    bool MessageLit() const { return !cdu_->Hidden(3); }
    GaugeInstance& gauge() { return *cdu_; }
    FakeSimulator& sim() { return fake_.sim; }

private:
    FakeSimulatorScope fake_;
    test_canvas::TextHost host_;
    std::unique_ptr<GaugeInstance> cdu_;
    GaugeId id_ = GaugeId::SMITHS_FMS;
    std::vector<test_canvas::Seen> seen_;
};

inline std::string Scratchpad() { return std::string(ScratchpadText()); }
inline std::string Message() { return std::string(CduMessageText()); }
inline std::string Ident(const PlanTable& plan, int row) { return plan[row].Ident.data(); }

// The idents of a plan's rows 0..last, blank-separated.
inline std::string Idents(const PlanTable& plan, int last) {
    std::string out;
    for (int i = 0; i <= last && i < kPlanRows; ++i) out += (i ? " " : "") + Ident(plan, i);
    return out;
}

// A stored route loaded on RTE by its name, activated and executed: the
// plan active (PlanState 3), flown from its first leg.
inline void ExecuteCompanyRoute(CduRig& cdu, const char* route) {
    cdu.PressAndFrame("RTE");
    cdu.Type(route);
    cdu.PressAndFrame("LSK2L");
    cdu.PressAndFrame("LSK6R");
    cdu.PressAndFrame("EXEC");
}

// DEL then SP: the quick way to an empty entry line and no message.
inline void ClearEntry(CduRig& cdu) {
    cdu.Press("DEL");
    cdu.Press("SP");
}

// The text row of the screen grid whose strings contain `text`, or "".
inline std::string RowWith(const CduRig& cdu, const std::string& text) {
    std::string screen = cdu.Screen();
    size_t at = screen.find(text);
    if (at == std::string::npos) return "";
    size_t begin = screen.rfind('\n', at);
    size_t end = screen.find('\n', at);
    begin = begin == std::string::npos ? 0 : begin + 1;
    return screen.substr(begin, end - begin);
}

// The screen against its reference text in tests/cdu/reference/NAME.txt;
// with ORB_UPDATE_REFERENCE=1 the reference is written anew instead.
inline void ExpectScreen(const CduRig& cdu, const char* name) {
    std::string path = std::string(ORB_SOURCE_DIR) + "/tests/cdu/reference/" + name + ".txt";
    std::string screen = cdu.Screen();
    const char* update = std::getenv("ORB_UPDATE_REFERENCE");
    if (update != nullptr && update[0] == '1') {
        std::ofstream(path, std::ios::binary) << screen;
        return;
    }
    std::ifstream in(path, std::ios::binary);
    ASSERT_TRUE(in.good()) << "no reference " << path;
    std::stringstream want;
    want << in.rdbuf();
    EXPECT_EQ(screen, want.str()) << name;
}

}  // namespace cdu_test
