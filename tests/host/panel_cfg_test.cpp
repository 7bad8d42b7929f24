// panel_cfg_test.cpp: the panel.cfg reader takes the simulator's form,
// skips what isn't orbsim's, and stops at a hostile line with its number.
#include "orbsim/fuzz_entry.h"
#include "orbsim/panel_cfg.h"

#include <gtest/gtest.h>

#include <string>

using orbsim::PanelDesc;

TEST(PanelCfg, TheSamplePanelHasItsWindowsGaugesAndProfileName) {
    PanelDesc panel;
    std::string error;
    ASSERT_TRUE(orbsim::ReadPanelFile(std::string(ORB_SOURCE_DIR) + "/data/sim/panels/twinjet.cfg", panel, error)) << error;
    ASSERT_EQ(panel.windows.size(), 6u);
    EXPECT_EQ(panel.windows[0].ident, 0);
    EXPECT_TRUE(panel.windows[0].visible);
    EXPECT_EQ(panel.windows[1].ident, 4004);
    EXPECT_FALSE(panel.windows[1].visible);
    EXPECT_EQ(panel.windows[2].ident, 4011);
    EXPECT_EQ(panel.windows[3].ident, 4030);
    EXPECT_FALSE(panel.windows[3].visible);
    // The instrument window: each C-17 screen once, by the digit of its parameter.
    std::string screens;
    for (const auto& g : panel.windows[3].gauges)
        if (g.gauge == "C17_MFD") screens += g.parameters;
    EXPECT_EQ(screens, "1234");
    // The navigation displays' window: one display of every family besides
    // the B737's (the whole-panel benchmark counts on it).
    EXPECT_EQ(panel.windows[4].ident, 4031);
    std::string families;
    for (const auto& g : panel.windows[4].gauges)
        if (g.gauge.find("CNTR") == std::string::npos &&
            (g.gauge.find("_ND") != std::string::npos || g.gauge.find("EHSI_NB") != std::string::npos ||
             g.gauge.find("MFD_NB") != std::string::npos))
            families += g.gauge + " ";
    EXPECT_EQ(families, "HW_MD11_ND MD80_EHSI_NB DU_1000_EHSI_NB EFS50_EHSI_NB P1000_MFD_NB PROLINE4_MFD_NB ");
    bool profile = false, cdu = false, popup_nd = false;
    for (const auto& w : panel.windows)
        for (const auto& g : w.gauges) {
            EXPECT_EQ(g.module, "orb1");
            profile |= g.parameters == "TwinJet";
            cdu |= g.gauge == "SMITHS_FMS" && w.ident == 4004;
            popup_nd |= g.gauge == "HW_B737_ND" && g.parameters == "WN" && w.ident == 4011;
        }
    EXPECT_TRUE(profile);
    EXPECT_TRUE(cdu);
    EXPECT_TRUE(popup_nd);
}

TEST(PanelCfg, ReadsTheSimulatorsFormAndSkipsWhatIsNotOrbsims) {
    const char* text =
        "[fltsim]\r\n"
        "this line means nothing to orbsim\r\n"
        "[Window Titles]\r\n"
        "Window00=Main\r\n"
        "[Window00]\r\n"
        "// a comment\r\n"
        "; another\r\n"
        "ident = MAIN_PANEL\r\n"
        "Visible=1\r\n"
        "size_mm=1024,768\r\n"
        "window_size_ratio=1.0\r\n"
        "gauge00=orb1!LNAV,  10,20,50,49 // the LNAV button\r\n"
        "gauge01=orb1!SERVER, 0,0\r\n"
        "gauge02=Other!Clock, 5, 5, 60, 60, a, b, c\r\n"
        "[VCockpit01]\r\n"
        "texture=$VC01\r\n"
        "gauge00=orb1!HW_B737_ND, 0,0,281,337,VC\r\n";
    PanelDesc panel;
    std::string error;
    ASSERT_TRUE(orbsim::ParsePanelText(text, panel, error)) << error;
    ASSERT_EQ(panel.windows.size(), 2u);
    const auto& main = panel.windows[0];
    EXPECT_EQ(main.ident, 0);
    EXPECT_EQ(main.size_w, 1024);
    ASSERT_EQ(main.gauges.size(), 3u);
    EXPECT_EQ(main.gauges[0].gauge, "LNAV");
    EXPECT_EQ(main.gauges[0].x, 10);
    EXPECT_EQ(main.gauges[0].h, 49);
    EXPECT_EQ(main.gauges[0].parameters, "");
    EXPECT_EQ(main.gauges[0].line, 12);
    EXPECT_EQ(main.gauges[1].w, 0);  // size left to the bitmap
    EXPECT_EQ(main.gauges[2].module, "Other");
    EXPECT_EQ(main.gauges[2].parameters, "a, b, c");  // the rest of the line
    const auto& cockpit = panel.windows[1];
    EXPECT_TRUE(cockpit.virtual_cockpit);
    EXPECT_TRUE(cockpit.visible);
    EXPECT_EQ(cockpit.ident, orbsim::kVirtualCockpitIdent);
    EXPECT_EQ(cockpit.gauges[0].parameters, "VC");
}

TEST(PanelCfg, HostileLinesStopTheReadingWithTheirLineNumber) {
    struct Case {
        std::string text;
        const char* expected;  // "LINE: part of the message"
    };
    const std::string head = "[Window00]\nident=0\n";
    const Case cases[] = {
        {"[Window00\n", "1: section header without ']'"},
        {head + "gauge00=orb1LNAV, 1, 2\n", "3: gauge line needs MODULE!GAUGE"},
        {head + "gauge00=orb1!, 1, 2\n", "3: gauge line needs MODULE!GAUGE"},
        {head + "gauge00=orb1!LNAV, x, 2\n", "3: gauge X 'x' is not a whole number"},
        {head + "gauge00=orb1!LNAV, 1\n", "3: gauge line needs MODULE!GAUGE, X, Y"},
        {head + "gauge00=orb1!LNAV, 1, 2, 50\n", "3: gauge line gives a width without a height"},
        {head + "gauge00=orb1!LNAV, 1, 2, -5, 5\n", "3: gauge size is negative"},
        {head + "gauge00=orb1!LN<AV>, 1, 2\n", "3: gauge name 'LN<AV>'"},
        {head + "gauge00=orb1!LNAV, 1, 2, 3, 4, " + std::string(300, 'p') + "\n", "3: gauge parameter string longer"},
        {head + "gauge00=orb1!LNAV,1,2\ngauge00=orb1!VNAV,1,2\n", "4: key 'gauge00' given twice"},
        {head + "visible=2\n", "3: visible must be 0 or 1"},
        {"[Window00]\nident=FOO\n", "2: ident 'FOO' is not MAIN_PANEL or a number"},
        {"[Window00]\nident=-3\n", "2: ident '-3'"},
        {head + "size_mm=12\n", "3: size_mm must be WIDTH,HEIGHT"},
        {head + "position=9\n", "3: position must be 0 to 8"},
        {head + "no equals sign here\n", "3: expected KEY=VALUE"},
        {head + "=5\n", "3: expected KEY=VALUE"},
        {head + "gauge00=orb1!LNAV, 1, 2\x01\n", "3: line holds a control byte"},
        {head + std::string(2000, 'x') + "\n", "3: line longer than 1024 characters"},
        {"[Window00]\nvisible=1\n", "1: [Window00] has no ident="},
        {head + "[Window01]\nident=0\n", "3: [Window01] has the ident of [Window00]"},
        {head + "[window00]\nident=5\n", "3: section [window00] appears twice"},
        {"[Window01]\nident=1\n[Window02]\nident=999999999\n", "4: ident '999999999'"},
    };
    for (const Case& c : cases) {
        PanelDesc panel;
        std::string error;
        EXPECT_FALSE(orbsim::ParsePanelText(c.text, panel, error)) << c.expected;
        EXPECT_EQ(error.rfind(c.expected, 0), 0u) << "got: " << error;
    }

    // More gauges than a panel may have.
    std::string many = head;
    for (int i = 0; i < 300; ++i) many += "gauge" + std::to_string(i) + "=orb1!LNAV,0,0\n";
    PanelDesc panel;
    std::string error;
    EXPECT_FALSE(orbsim::ParsePanelText(many, panel, error));
    EXPECT_EQ(error, "259: more than 256 gauges");

    // A file that is no text at all is refused by its size or its bytes, and a missing one by name.
    EXPECT_FALSE(orbsim::ReadPanelFile("/nonexistent/panel.cfg", panel, error));
    EXPECT_EQ(error, "/nonexistent/panel.cfg: cannot open the panel file");
}

TEST(PanelCfg, EveryParserSurvivesHostileBytes) {
    // The fuzz entry over a few hand-made inputs, one or more for each parser.
    std::vector<std::string> inputs = {
        std::string("\0BM", 3),
        std::string("\0BM\xff\xff\xff\xff\0\0\0\0\x36\0\0\0\x28\0\0\0\xff\xff\xff\x7f\x01\0\0\0\x01\0\x18\0", 31),
        std::string("\x01\x7f" "ELF\x02\x01", 7) + std::string(100, '\xff'),
        std::string("\x02ORBRSRC1\xff\xff\xff\xff", 13),
        std::string("\x02ORBRSRC1\x01\0\0\0\x01\0\0\0\xf0\xff\xff\xff\x10\0\0\0", 25),
        "\x03[Window00]\nident=0\ngauge00=orb1!A,1,2,3,4," + std::string(5000, ','),
        "\x03[[[[\n]]]]\n[Window00]\n=\n==\nident==\n",
        "\x04panel \"unclosed\nrun -1\nexpect a == \nclick X 1e400 2\n",
        "\x04" + std::string(10000, '"'),
        std::string("\x05\x01\0\0\0\x01\0\0\0\x04\x33\0\0\xff\xff\xff\x7f", 17) + std::string(16, '\0'),
        std::string("\x05\x01\0\0\0\x02\0\0\0\0\xd0\0\0\x04\0\0\0\xd9\x4b\0\0", 21) + std::string(8, '\0'),
    };
    for (const std::string& input : inputs)
        EXPECT_EQ(orbsim::FuzzOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size()), 0);
    // Every prefix of every input, too: truncation is the commonest damage.
    for (const std::string& input : inputs)
        for (size_t n = 0; n <= input.size() && n < 64; ++n)
            orbsim::FuzzOneInput(reinterpret_cast<const uint8_t*>(input.data()), n);
}
