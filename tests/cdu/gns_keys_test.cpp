// gns_keys_test.cpp: the GNS keypad's table against the bezel it is drawn
// on and the mouse tables of both twins, and the keys as a pilot uses them.
#include "cdu/gns_rig.h"

#include "resources/panel_layouts.h"

#include <set>

using namespace gns_test;

TEST(GnsKeys, EveryKeyLandsOnACapOfTheBezel) {
    std::set<std::string> names;
    for (int i = 0; i < GnsKeyCount(GaugeId::GNSXLS); ++i) {
        const CduKeyBox* key = GnsKeyAt(GaugeId::GNSXLS, i);
        ASSERT_NE(key, nullptr);
        EXPECT_TRUE(names.insert(key->name).second) << "two keys named " << key->name;
        if (key->action == CduKeyAction::ScreenCentre) continue;
        // The cap drawn at the very box, with its legend where it has one.
        bool found = false;
        for (const CapSpec& cap : kCapSpecs) {
            if (cap.gauge != GaugeId::GNSXLS || cap.x != key->x || cap.y != key->y || cap.w != key->w ||
                cap.h != key->h)
                continue;
            found = true;
            if (key->action == CduKeyAction::Character) {
                ASSERT_NE(cap.label, nullptr) << key->name;
                EXPECT_EQ(cap.label[0], static_cast<char>(key->value)) << key->name;
            }
        }
        EXPECT_TRUE(found) << "no cap under " << key->name;
    }
    // Letters, digits, "*" and "#" all have a key.
    for (char c : std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789*#"))
        EXPECT_NE(FindGnsKeyForCharacter(GaugeId::GNSXLS, c), nullptr) << c;
    EXPECT_EQ(FindGnsKeyForCharacter(GaugeId::GNSXLS, ' '), nullptr) << "the unit has no blank";
    EXPECT_NE(FindCduKey(GaugeId::GNSXLS, "hash"), nullptr);
}

TEST(GnsKeys, TwinsShareTheKeysAndOnlyTheFirstOpensThePopUp) {
    EXPECT_EQ(GnsKeyCount(GaugeId::GNSXLS_LM), GnsKeyCount(GaugeId::GNSXLS) - 1);
    EXPECT_NE(FindCduKey(GaugeId::GNSXLS, "SCREEN"), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::GNSXLS_LM, "SCREEN"), nullptr);
    EXPECT_EQ(FindCduKey(GaugeId::SMITHS_FMS, "HASH"), nullptr) << "the Boeing-style table is its own";
    // Each key is one area of three rows, with the outer and closing rows.
    for (GaugeId id : {GaugeId::GNSXLS, GaugeId::GNSXLS_LM})
        EXPECT_EQ(MouseRowCount(id), 3 * GnsKeyCount(id) + 2) << GaugeName(id);
    // A key of the _LM twin edits the one unit's field.
    GnsRig gns;
    gns.Frame();
    gns.Key("LSK1L");
    gns.Key("ENTER");
    gns.Key("LSK1L");
    const MOUSERECT* rows = MouseTableOf(GaugeId::GNSXLS_LM);
    const CduKeyBox* q = FindCduKey(GaugeId::GNSXLS_LM, "Q");
    bool pressed = false;
    for (int r = 0; r + 1 < MouseRowCount(GaugeId::GNSXLS_LM); ++r) {
        const PIXBOX& b = rows[r].relative_box;
        if (rows[r].rect_type != MOUSE_RECT_PARENT || b.x != q->x || b.y != q->y) continue;
        PIXPOINT point{q->x + q->w / 2, q->y + q->h / 2};
        rows[r + 1].mouse_function(&point, rows[r + 1].mouse_flags);
        pressed = true;
    }
    ASSERT_TRUE(pressed);
    EXPECT_EQ(Field(), "Q");
}

TEST(GnsKeys, PageKeysAndTheirPages) {
    GnsRig gns;
    gns.Frame();
    // NAV steps its four pages round; PERF its six.
    gns.Key("NAV");
    EXPECT_TRUE(gns.Has("NAVIGATION   1/4"));
    for (int i = 0; i < 4; ++i) gns.Key("NAV");
    EXPECT_TRUE(gns.Has("NAVIGATION   1/4"));
    gns.Key("PERF");
    EXPECT_TRUE(gns.Has("PLAN 1/6"));
    gns.Key("PREV");
    EXPECT_TRUE(gns.Has("PLAN 6/6")) << "PREV below 1 wraps to the last";
    // Without a plan: VNAV has two pages and says INVALID; DIRECT opens nothing.
    gns.Key("VNAV");
    EXPECT_TRUE(gns.Has("VNAV   1/2"));
    EXPECT_TRUE(gns.Has("INVALID"));
    EXPECT_TRUE(gns.Has("TO ------"));
    gns.Key("DIRECT");
    EXPECT_EQ(g_gns_page.GnsPage, gns_page::kVnav);
    // HOLD without a mark only opens the page; FPL goes to the active plan.
    gns.Key("HOLD");
    EXPECT_TRUE(gns.Has("HOLDING PATTERN 1/1"));
    EXPECT_TRUE(gns.Has("AT ------"));
    gns.Key("FPL");
    EXPECT_TRUE(gns.Has("ACTIVE FPL   1/1"));
    // A page number without a page draws nothing and acts on nothing.
    g_gns_page.GnsPage = 4;
    gns.Type("A");
    gns.Key("ENTER");
    EXPECT_EQ(gns.Screen(), "");
    // The screen's middle opens the pop-up window.
    g_gns_page.GnsPage = gns_page::kNavigation;
    gns.Key("SCREEN");
    ASSERT_EQ(gns.sim().window_toggles.size(), 1u);
    EXPECT_EQ(gns.sim().window_toggles[0], 4004u);
}

TEST(GnsKeys, BoeingLettersFromGReachAnOpenGnsField) {
    GnsRig gns;
    gns.Frame();
    gns.Key("LSK1L");
    gns.Key("ENTER");
    gns.Key("LSK1L");
    ASSERT_EQ(g_gns_page.GnsEditing, 1);
    // A to F stay on the Boeing-style entry line; G to Z reach the field too.
    PressCduKey(*FindCduKey(GaugeId::SMITHS_FMS, "A"));
    PressCduKey(*FindCduKey(GaugeId::SMITHS_FMS, "K"));
    PressCduKey(*FindCduKey(GaugeId::SMITHS_FMS, "7"));
    PressCduKey(*FindCduKey(GaugeId::SMITHS_FMS, "Z"));
    EXPECT_EQ(Field(), "KZ");
    EXPECT_EQ(cdu_test::Scratchpad(), "AK7Z");
}

TEST(GnsKeys, NavigationPageFourSwitchesThePauses) {
    GnsRig gns;
    gns.Frame();
    g_config.PauseAtDistFromDest = 20;
    g_config.PauseAtDistFromDestOn = 0;
    g_config.PauseAtTod = 0;
    for (int i = 0; i < 4; ++i) gns.Key("NAV");
    ASSERT_TRUE(gns.Has("NAVIGATION   4/4"));
    EXPECT_TRUE(gns.Has("PAUSE 20 FROM (----)(OFF)")) << gns.Screen();
    EXPECT_TRUE(gns.Has("PAUSE AT TOD (OFF)"));
    gns.Key("LSK4L");
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 1);
    EXPECT_EQ(g_config.ArmPauseAtDistFromDest, 1);
    EXPECT_TRUE(gns.Has("PAUSE 20 FROM (----)(ON)")) << gns.Screen();
    gns.Key("LSK5L");
    EXPECT_EQ(g_config.PauseAtTod, 1);
    EXPECT_TRUE(gns.Has("PAUSE AT TOD (ON)"));
    gns.Key("LSK4L");
    EXPECT_EQ(g_config.PauseAtDistFromDestOn, 0);
}

TEST(GnsKeys, PlanDatePageReadsTheZuluDate) {
    GnsRig gns;
    // Day 60 of a leap year is the 29th of February; of another year, the 1st of March.
    gns.sim().tokens[Token::ZULU_DAY] = 60;
    gns.sim().tokens[Token::ZULU_YEAR] = 2024;
    for (int i = 0; i < 5; ++i) gns.Key("PERF");
    ASSERT_TRUE(gns.Has("PLAN 5/6"));
    EXPECT_NE(gns.RowWith("DATE").find("29 FEB 24"), std::string::npos) << gns.Screen();
    gns.sim().tokens[Token::ZULU_YEAR] = 2023;
    gns.Frame();
    EXPECT_NE(gns.RowWith("DATE").find("01 MAR 23"), std::string::npos) << gns.Screen();
    gns.sim().tokens[Token::ZULU_DAY] = 365;
    gns.Frame();
    EXPECT_NE(gns.RowWith("DATE").find("31 DEC 23"), std::string::npos) << gns.Screen();
}
