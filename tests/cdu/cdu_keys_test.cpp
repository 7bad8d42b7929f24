// cdu_keys_test.cpp: the Boeing-style keypad's mouse table against its key
// table and the bezel bitmaps, and the look-up by key name.
#include "frame/gauge_linkage.h"
#include "cdu_rig.h"

#include "cdu/cdu_mouse.h"
#include "resources/panel_layouts.h"

#include <cctype>
#include <set>

using namespace cdu_test;

namespace {
// The legend a key's cap carries, as the key table names it.
std::string CapName(const CapSpec& cap) {
    std::string name = cap.label ? cap.label : "";
    if (cap.label2) name += std::string("_") + cap.label2;
    return name;
}
}  // namespace

TEST(CduKeys, MouseTableRowsCarryEveryKeyWithItsHandler) {
    for (GaugeId id : {GaugeId::SMITHS_FMS, GaugeId::SMITHS_FMS_BR}) {
        ResetModuleState();
        ASSERT_EQ(MouseRowCount(id), 212) << GaugeName(id);
        const MOUSERECT* rows = MouseTableOf(id);
        std::set<std::string> seen;
        int inert = 0;
        for (int r = 1; r + 1 < MouseRowCount(id); ++r) {
            if (rows[r].rect_type != MOUSE_RECT_PARENT) continue;
            const PIXBOX& b = rows[r].relative_box;
            if (b.size_x == 0) {
                ++inert;
                continue;
            }
            const CduKeyBox* key = nullptr;
            for (int k = 0; k < CduKeyCount(id); ++k) {
                const CduKeyBox* candidate = CduKeyAt(id, k);
                if (candidate->x == b.x && candidate->y == b.y && candidate->w == b.size_x && candidate->h == b.size_y)
                    key = candidate;
            }
            ASSERT_NE(key, nullptr) << "a row at " << b.x << "," << b.y << " is no key";
            EXPECT_TRUE(seen.insert(key->name).second) << key->name << " twice";
            EXPECT_EQ(rows[r].cursor, CURSOR_HAND);
            const MOUSERECT& child = rows[r + 1];
            ASSERT_EQ(child.rect_type, MOUSE_RECT_CHILD);
            // CLR alone repeats while the button is held.
            EXPECT_EQ(child.mouse_flags, std::string(key->name) == "CLR" ? MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT
                                                                         : MOUSE_LEFTSINGLE)
                << key->name;

            // The row's handler does what its key does.
            g_smiths = {};
            g_smiths.CduPage = 25;
            PIXPOINT point{b.x + 1, b.y + 1};
            child.mouse_function(&point, child.mouse_flags);
            switch (key->action) {
            case CduKeyAction::Character:
                EXPECT_EQ(Scratchpad(), std::string(1, static_cast<char>(key->value))) << key->name;
                break;
            case CduKeyAction::LineSelect: EXPECT_EQ(g_smiths.LineSelectLatch, key->value) << key->name; break;
            case CduKeyAction::Space: EXPECT_EQ(Scratchpad(), " "); break;
            case CduKeyAction::PlusMinus: EXPECT_EQ(Scratchpad(), "-"); break;
            case CduKeyAction::Delete: EXPECT_EQ(Message(), "DELETE"); break;
            case CduKeyAction::PrevPage: EXPECT_EQ(g_smiths.PrevPageLatch, 1); break;
            case CduKeyAction::NextPage: EXPECT_EQ(g_smiths.NextPageLatch, 1); break;
            case CduKeyAction::Rte: EXPECT_EQ(g_smiths.CduPage, 22); break;
            case CduKeyAction::Legs: EXPECT_EQ(g_smiths.CduPage, 6); break;
            default: break;  // the function keys are followed in the page tests
            }
        }
        EXPECT_EQ(static_cast<int>(seen.size()), CduKeyCount(id));
        EXPECT_EQ(2 + 3 * (CduKeyCount(id) + inert), 212);
    }
}

TEST(CduKeys, EveryKeyBoxIsACapOfTheBezelWithItsLegend) {
    const GaugeSpec& shape = SpecOf(GaugeId::SMITHS_FMS);
    int line_keys = 0;
    for (int k = 0; k < CduKeyCount(GaugeId::SMITHS_FMS); ++k) {
        const CduKeyBox& key = *CduKeyAt(GaugeId::SMITHS_FMS, k);
        if (key.action == CduKeyAction::ScreenCentre) {
            // A click on the screen itself.
            EXPECT_GE(key.x, shape.surface_x);
            EXPECT_GE(key.y, shape.surface_y);
            EXPECT_LE(key.x + key.w, shape.surface_x + shape.surface_width);
            EXPECT_LE(key.y + key.h, shape.surface_y + shape.surface_height);
            continue;
        }
        const CapSpec* cap = nullptr;
        for (const CapSpec& c : kCapSpecs)
            if (c.gauge == GaugeId::SMITHS_FMS && c.x == key.x && c.y == key.y && c.w == key.w && c.h == key.h)
                cap = &c;
        ASSERT_NE(cap, nullptr) << key.name << " has no cap drawn at its box";
        if (key.action == CduKeyAction::LineSelect) {
            EXPECT_EQ(cap->kind, CapKind::LineKey) << key.name;
            // Left keys in the left column, right keys in the right one, top to bottom.
            bool left = key.name[4] == 'L';
            EXPECT_EQ(key.x < shape.surface_x, left) << key.name;
            EXPECT_EQ(key.value, left ? (key.name[3] == '6' ? 11 : key.name[3] - '0')
                                      : (key.name[3] == '6' ? 12 : key.name[3] - '0' + 5))
                << key.name;
            ++line_keys;
        } else {
            EXPECT_EQ(cap->kind, CapKind::Key) << key.name;
            EXPECT_EQ(CapName(*cap), key.name);
        }
    }
    EXPECT_EQ(line_keys, 12);
}

TEST(CduKeys, FindCduKeyByNameAndByCharacter) {
    const CduKeyBox* exec = FindCduKey(GaugeId::SMITHS_FMS, "EXEC");
    ASSERT_NE(exec, nullptr);
    EXPECT_EQ(exec->x, 318);
    EXPECT_EQ(exec->y, 338);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS_BR, "exec"), exec);  // twins share the keys
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "init ref"), FindCduKey(GaugeId::SMITHS_FMS, "INIT_REF"));
    ASSERT_NE(FindCduKey(GaugeId::SMITHS_FMS, "LSK6R"), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "LSK6R")->value, 12);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "lsk1l")->y, 68);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "LSK7L"), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "EXE"), nullptr);  // no prefix matches
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, ""), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, nullptr), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::GNSXLS, "EXEC"), nullptr);     // its keys come with its pages
    EXPECT_EQ(FindCduKey(GaugeId::HW_B737_ND, "A"), nullptr);

    // Every byte either types its own character or finds nothing.
    for (int c = 1; c < 256; ++c) {
        const CduKeyBox* key = FindCduKeyForCharacter(GaugeId::SMITHS_FMS, static_cast<char>(c));
        bool typeable = std::isupper(c) || std::islower(c) || std::isdigit(c) || c == '.' || c == '/' ||
                        c == ' ' || c == '-';
        EXPECT_EQ(key != nullptr, typeable) << c;
        if (key == nullptr) continue;
        if (c == ' ') EXPECT_STREQ(key->name, "SP");
        else if (c == '-') EXPECT_STREQ(key->name, "+/-");
        else EXPECT_EQ(key->value, std::toupper(c)) << c;
    }
}

TEST(CduKeys, OtherCduTablesKeepTheirFullShape) {
    for (GaugeId id : {GaugeId::GNSXLS, GaugeId::GNSXLS_LM, GaugeId::MCU, GaugeId::MCU_LM}) {
        MouseAreaList areas;
        CduMouseAreas(id, areas);
        int rows = 2;
        for (int i = 0; i < areas.count; ++i) rows += areas.areas[i].second ? 4 : 3;
        EXPECT_EQ(rows, SpecOf(id).mouse_rows) << GaugeName(id);
    }
}
