// The diagnostic aids: orb1.log as a panel writes it (who opens it, what
// each callback writes, truncation, no flush while the process runs), the
// event list's bound and cut, and the DEBUG gauge's screen.
#include "display/traffic.h"
#include "frame/diagnostic_log.h"
#include "frame/sim_state.h"
#include "frame/module_state.h"
#include "frame/data_text.h"
#include "navdata/sim_folder.h"
#include "plan/plan_tables.h"
#include "plan/route_files.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"
#include "../platform/canvas.h"
#include "support/run_command.h"

#include <gtest/gtest.h>


#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {
namespace fs = std::filesystem;

// A simulator folder of the test's own under the build tree.
fs::path FreshFolder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    fs::path root = fs::path(ORB_BINARY_DIR) / "test-sim" / (std::string(info->test_suite_name()) + "." + info->name());
    fs::remove_all(root);
    fs::create_directories(root);
    return root;
}

void UseRoot(const fs::path& root) {
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
}

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// A panel's gauges, walked through the services as the simulator does.
struct Panel {
    std::vector<std::unique_ptr<GaugeInstance>> gauges;
    void Add(GaugeId id, const char* parameter) { gauges.push_back(std::make_unique<GaugeInstance>(id, parameter)); }
    void Load() {
        for (auto& g : gauges)
            for (int service : {PANEL_SERVICE_PRE_INSTALL, PANEL_SERVICE_POST_INSTALL, PANEL_SERVICE_PRE_INITIALIZE,
                                PANEL_SERVICE_POST_INITIALIZE, PANEL_SERVICE_CONNECT_TO_WINDOW})
                g->Service(service);
    }
    void Frame() {
        for (auto& g : gauges) {
            g->Service(PANEL_SERVICE_PRE_UPDATE);
            g->Service(PANEL_SERVICE_PRE_DRAW);
        }
    }
};

// The process ends: the operating system closes what the module left open.
void EndOfProcess() { ResetModuleState(); }

std::string Events() {
    std::string all;
    for (int i = 0; i < g_events.count; ++i) all += std::string(g_events.texts[static_cast<size_t>(i)].data()) + "|";
    return all;
}
}  // namespace

TEST(DiagnosticLog, OpenedByTheC17DisplayWithTheLinesOfEveryCallbackAfterIt) {
    ResetModuleState();
    fs::path root = FreshFolder();
    UseRoot(root);
    std::ofstream(root / "orb1.log") << "left from the last session\n";
    FakeSimulatorScope scope;
    scope.sim.named_ids["MFDx2 mode"] = 3;
    scope.sim.named_values[3] = 10;
    Panel panel;
    panel.Add(GaugeId::HW_B737_ND, "");   // initialised before the log is open: its load is lost
    panel.Add(GaugeId::C17_MFD, "2");
    panel.Add(GaugeId::SERVER, "");
    panel.Add(GaugeId::DEBUG, "");        // no line of its own
    panel.Load();
    panel.Frame();
    scope.sim.named_values[3] = 2;
    panel.Frame();
    // Truncated at open, and nothing reaches the disk while the process runs:
    // no line is flushed by itself.
    ASSERT_TRUE(fs::exists(root / "orb1.log"));
    EXPECT_EQ(fs::file_size(root / "orb1.log"), 0u);
    EndOfProcess();

    std::string server = "server_callback \n";
    std::string nd = "hw_b737_ehsi_callback \n";
    auto c17 = [](int request, bool acted) {
        std::string lines =
            "PANEL_SERVICE_PRE_UPDATE:\n"
            "PANEL_SERVICE_PRE_UPDATE-2: Param=2\n"
            "PANEL_SERVICE_PRE_UPDATE-3: iparam=2\n"
            "PANEL_SERVICE_PRE_UPDATE-4: iparam=2\n"
            "ProcessMFDX2()-1: as_mfdx2_mode=" + std::to_string(request) + "\n";
        if (acted) lines += "ProcessMFDX2()-2: as_mfdx2_mode=" + std::to_string(request) + "\n";
        return lines;
    };
    std::string expected = server + server + server + server + server +  // SERVER's load services
                           nd + nd + c17(10, false) + server + server +   // a frame: update and draw of each
                           nd + nd + c17(2, true) + server + server;
    EXPECT_EQ(ReadAll(root / "orb1.log"), expected);
}

TEST(DiagnosticLog, OnlyAC17DisplayOpensItAndOnlyOnce) {
    ResetModuleState();
    fs::path root = FreshFolder();
    UseRoot(root);
    FakeSimulatorScope scope;
    {
        Panel panel;
        for (GaugeId id : {GaugeId::SMITHS_FMS, GaugeId::HW_B737_ND, GaugeId::SERVER, GaugeId::DEBUG, GaugeId::LNAV})
            panel.Add(id, "");
        panel.Load();
        panel.Frame();
    }
    EndOfProcess();
    EXPECT_FALSE(fs::exists(root / "orb1.log"));

    // A C17_MFD initialised again (a panel reload) keeps the open log: the
    // lines from before the reload stay.
    ResetModuleState();
    UseRoot(root);
    Panel panel;
    panel.Add(GaugeId::C17_MFD, "1");
    panel.Add(GaugeId::LNAV, "");
    panel.Load();
    panel.gauges[0]->Service(PANEL_SERVICE_PRE_INITIALIZE);
    panel.gauges[1]->Service(PANEL_SERVICE_PRE_UPDATE);
    EndOfProcess();
    std::string lnav = "lnav_callback \n";
    EXPECT_EQ(ReadAll(root / "orb1.log"), lnav + lnav + lnav + lnav + lnav + lnav);  // five load services, one update
}

TEST(DiagnosticLog, AFolderThatCannotHoldTheLogLeavesItOffUntilTheNextTry) {
    ResetModuleState();
    fs::path root = FreshFolder() / "not yet";
    UseRoot(root);
    FakeSimulatorScope scope;
    GaugeInstance c17(GaugeId::C17_MFD, "1");
    GaugeInstance lnav(GaugeId::LNAV, "");
    c17.Service(PANEL_SERVICE_PRE_INITIALIZE);
    lnav.Service(PANEL_SERVICE_PRE_UPDATE);   // nowhere to go, and no harm
    fs::create_directories(root);
    c17.Service(PANEL_SERVICE_PRE_INITIALIZE);
    lnav.Service(PANEL_SERVICE_PRE_UPDATE);
    EndOfProcess();
    EXPECT_EQ(ReadAll(root / "orb1.log"), "lnav_callback \n");
}

TEST(DiagnosticLog, StopsAtItsCapWithOneClosingLine) {
    ResetModuleState();
    fs::path root = FreshFolder();
    UseRoot(root);
    FakeSimulatorScope scope;
    GaugeInstance c17(GaugeId::C17_MFD, "1");
    c17.Service(PANEL_SERVICE_PRE_INITIALIZE);
    // A long flight's worth of lines: a line 64 bytes long, past the cap.
    std::string line(63, 'x');
    line += '\n';
    long lines = kDiagnosticLogCap / 64 + 100;
    for (long i = 0; i < lines; ++i) WriteLogLine(line.c_str());
    WriteLogFormat("after the end %d\n", 1);
    EndOfProcess();
    std::string all = ReadAll(root / "orb1.log");
    const std::string closing = "orb1.log stops here: its size limit is reached\n";
    ASSERT_GE(all.size(), closing.size());
    EXPECT_EQ(all.substr(all.size() - closing.size()), closing);
    EXPECT_EQ(static_cast<long>(all.size()), kDiagnosticLogCap + static_cast<long>(closing.size()));
    EXPECT_EQ(all.find("after the end"), std::string::npos);
}

TEST(EventList, KeepsFourHundredEventsAndDropsTheRest) {
    ResetModuleState();
    LogEvent("FUEL '%6.0f' loaded", 12345.4);
    LogEvent("TWR Pos '%s' set", "[KSEA]");
    EXPECT_EQ(Events(), "FUEL ' 12345' loaded|TWR Pos '[KSEA]' set|");
    for (int i = 2; i < 450; ++i) LogEvent("APT '%d' Set", i);
    ASSERT_EQ(g_events.count, kEventListLimit);
    EXPECT_STREQ(g_events.texts[kEventListLimit - 1].data(), "APT '399' Set");
    // A text longer than an event's room is cut, not overrun.
    ResetModuleState();
    std::string long_text(1000, 'x');
    LogEvent("%s", long_text.c_str());
    LogEvent("next");
    EXPECT_EQ(std::string(g_events.texts[0].data()), long_text.substr(0, kEventTextSize - 1));
    EXPECT_STREQ(g_events.texts[1].data(), "next");
}

TEST(EventList, ANewPlanCutsItBackToItsFirstTwoEvents) {
    ResetModuleState();
    for (int i = 0; i < kEventListLimit + 5; ++i) LogEvent("event %d", i);
    TrimEventList(2);
    EXPECT_EQ(Events(), "event 0|event 1|");
    // Room again: later events follow the two.
    LogEvent("after");
    EXPECT_EQ(Events(), "event 0|event 1|after|");
    // Fewer than two: nothing to cut.
    ResetModuleState();
    LogEvent("only");
    TrimEventList(2);
    EXPECT_EQ(Events(), "only|");
}

TEST(EventList, LoadingARouteFileCutsIt) {
    SimFolder sim;
    g_events.count = 0;
    for (int i = 0; i < 5; ++i) LogEvent("before %d", i);
    sim.Write("orb/flightplans/R.RTE", "[FlightPlan]\nAAAAA 1 2 WPT ---\nBBBBB 3 4 WPT ---\n");
    SetText(g_plan.context.PlanLoadFile, "R.RTE");
    LoadRouteToActive(1);
    ASSERT_EQ(g_plan.context.ActiveLastRow, 1);   // the plan is on board
    EXPECT_EQ(Events(), "before 0|before 1|");
}

TEST(DebugGauge, ShowsTheTrafficLinkPositionAndVariationWithoutTestingPower) {
    ResetModuleState();
    FakeSimulatorScope scope;
    GaugeInstance debug(GaugeId::DEBUG, "");
    debug.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    g_sim.avionics_power = 0;
    g_sim.latitude = 47.4502;
    g_sim.longitude = -122.3088;
    g_sim.magnetic_variation = -17.25;
    g_traffic.link_status = -1;
    g_traffic.link_attempts = 20;
    g_traffic.TargetCount = 7;
    g_tick.last_tick_value = 0;           // the tick of this slot has run: nothing is sampled afresh
    test_canvas::TextHost host;
    debug.Service(PANEL_SERVICE_PRE_DRAW);
    std::vector<std::string> lines;
    double last_y = -1;
    for (const test_canvas::Seen& s : host.seen()) {
        lines.push_back(s.text);
        EXPECT_GT(s.box.layout_y, last_y) << s.text;  // top to bottom
        last_y = s.box.layout_y;
        EXPECT_EQ(s.family, "Arial") << s.text;
        EXPECT_TRUE(s.box.font_style & FontStyleBold) << s.text;
        // Inside the 148 x 185 surface.
        EXPECT_GE(s.box.text_x, 0) << s.text;
        EXPECT_LE(s.box.text_x + s.box.text_width, 148) << s.text;
        EXPECT_LE(s.box.text_y + s.box.text_height, 185) << s.text;
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"tcas_check=-1", "tcas_flag=20", "plat=47.450200", "plon=-122.308800",
                                               "magvar=-17.25", "tcas_target=7"}));
    debug.Service(PANEL_SERVICE_DISCONNECT);
}

// The whole road through the simulator stand-in, in a process of its own:
// the log is on disk when the process has ended.
namespace {
struct OrbsimRun {
    int code = -1;
    std::string output;
};

OrbsimRun Orbsim(const fs::path& sim, const std::string& script) {
    std::ofstream(sim / "test.orbsim") << script;
    std::string command = std::string(ORB_BINARY_DIR) + "/orbsim --generation 9 --sim '" + sim.string() + "' --out '" +
                          (sim / "out").string() + "' '" + (sim / "test.orbsim").string() + "' 2>&1";
    CommandRun run = RunCommand(command);
    return {run.code, run.output};
}

fs::path SimulatorFolder() {
    fs::path root = FreshFolder();
    fs::create_directories(root / "GAUGES");
    fs::copy_file(ORB_MODULE_PATH, root / "GAUGES" / "orb1.gau");
    return root;
}

size_t Count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++n;
    return n;
}
}  // namespace

TEST(DiagnosticLogEndToEnd, APanelWithTheC17DisplayLeavesItsTraceAndDebugShowsThePosition) {
    fs::path sim = SimulatorFolder();
    std::ofstream(sim / "orb1.log") << "left from the last session\n";
    std::ofstream(sim / "panel.cfg") << "[Window00]\nident=MAIN_PANEL\nvisible=1\n"
                                        "gauge00=orb1!HW_B737_ND, 0, 0, 281, 337\n"
                                        "gauge01=orb1!C17_MFD, 300, 0, 246, 241, 2\n"
                                        "gauge02=orb1!DEBUG, 560, 0, 188, 256\n"
                                        "gauge03=orb1!SERVER, 0, 0\n";
    OrbsimRun run = Orbsim(sim,
                     "set \"L:MFDx2 mode\" 10\n"
                     "aircraft lat=47.45 lon=-122.31 var=17\n"
                     "panel panel.cfg\n"
                     "run 1\n"
                     "expect screen DEBUG contains \"plat=47.450000\"\n"
                     "expect screen DEBUG contains \"plon=-122.310000\"\n"
                     "expect screen DEBUG contains \"tcas_check=0\"\n"
                     "print screen DEBUG\n"
                     "set \"L:MFDx2 mode\" 3\n"          // screen 2 from its map page to the engines
                     "frames 1\n"
                     "expect \"L:MFDx2 mode\" == 10\n"
                     "set \"L:MFDx2 mode\" 2\n"          // back to the map: the surface hides
                     "frames 1\n"
                     "expect layer.C17_MFD.0.hidden == 1\n"
                     "expect \"L:MFDx2 mode\" == 2\n"
                     "set \"L:MFDx2 mode\" 0\n"
                     "frames 1\n"
                     "expect layer.C17_MFD.0.hidden == 0\n"
                     "expect \"L:MFDx2 mode\" == 10\n"
                     "reload\n"
                     "frames 1\n");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_NE(run.output.find("magvar=17.00"), std::string::npos) << run.output;

    std::string log = ReadAll(sim / "orb1.log");
    // Truncated at open; the display initialised before the C17 display
    // shows up only from then on.
    EXPECT_EQ(log.find("left from"), std::string::npos);
    EXPECT_EQ(log.rfind("server_callback \n", 0), 0u) << log.substr(0, 200);
    EXPECT_NE(log.find("hw_b737_ehsi_callback \n"), std::string::npos);
    // The requests as the second screen's routine saw them, each acted on.
    EXPECT_NE(log.find("PANEL_SERVICE_PRE_UPDATE:\nPANEL_SERVICE_PRE_UPDATE-2: Param=2\n"
                       "PANEL_SERVICE_PRE_UPDATE-3: iparam=2\nPANEL_SERVICE_PRE_UPDATE-4: iparam=2\n"
                       "ProcessMFDX2()-1: as_mfdx2_mode=10\n"),
              std::string::npos);
    for (int request : {3, 2, 0})
        EXPECT_NE(log.find("ProcessMFDX2()-1: as_mfdx2_mode=" + std::to_string(request) +
                           "\nProcessMFDX2()-2: as_mfdx2_mode=" + std::to_string(request) + "\n"),
                  std::string::npos)
            << request;
    // One update of the C17 display a frame: 30 in the second, three frames, one after the reload.
    EXPECT_EQ(Count(log, "PANEL_SERVICE_PRE_UPDATE:\n"), 34u);
    // The reload's services (kill and load again) went on into the same file,
    // and so did the kill services when the stand-in closed.
    EXPECT_EQ(Count(log, "server_callback \n"), 5u + 2u * 34u + 3u + 5u + 3u);
}

TEST(DiagnosticLogEndToEnd, NoC17DisplayNoFile) {
    fs::path sim = SimulatorFolder();
    std::ofstream(sim / "panel.cfg") << "[Window00]\nident=MAIN_PANEL\nvisible=1\n"
                                        "gauge00=orb1!HW_B737_ND, 0, 0, 281, 337\n"
                                        "gauge01=orb1!DEBUG, 300, 0, 188, 256\n"
                                        "gauge02=orb1!SERVER, 0, 0\n";
    OrbsimRun run = Orbsim(sim, "panel panel.cfg\nrun 1\nreload\nrun 1\n");
    ASSERT_EQ(run.code, 0) << run.output;
    EXPECT_FALSE(fs::exists(sim / "orb1.log"));
}
