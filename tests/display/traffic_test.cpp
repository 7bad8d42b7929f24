// The traffic link and layer: linking to an outside traffic gauge (retries,
// giving up, a gauge that loads late), reading its block into the target
// table (walk limit, valid flags, sequences, receipts), the texts, colours
// and vertical range of the layer, its placement on the B737 ND, the ND's
// side texts by the traffic switch, the EFS 50 traffic screen, the second
// source's count, and orbsim playing the outside gauge end to end.
#include "display/efs50_tcas.h"
#include "display/nd_b737.h"
#include "display/traffic.h"
#include "nd_fixture.h"
#include "orbsim/host_state.h"
#include "orbsim/traffic_source.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"

#include <cstring>
#include <map>

using namespace nd_test;

namespace {
// [SECTION] A fake outside gauge and the simulator's export lookup
struct Export {
    void* pointer = nullptr;
    VAR_TYPE type = VAR_TYPE_NONE;
};
std::map<std::string, Export>& Exports() {
    static std::map<std::string, Export> exports;
    return exports;
}
int& Lookups() {
    static int lookups = 0;
    return lookups;
}
// orbsim's own registry instead of the map, for the end-to-end case.
bool& UseOrbsimRegistry() {
    static bool use = false;
    return use;
}

void FSAPI TestInitializeVarByName(MODULE_VAR* var, PSTRINGZ name) {
    ++Lookups();
    var->var_ptr = nullptr;
    var->var_type = VAR_TYPE_NONE;
    if (UseOrbsimRegistry()) {
        for (const orbsim::ModuleVariable& v : orbsim::g_host.module_vars)
            if (v.name == name) {
                var->var_ptr = v.pointer;
                var->var_type = v.type;
            }
        return;
    }
    auto it = Exports().find(name);
    if (it == Exports().end()) return;
    var->var_ptr = it->second.pointer;
    var->var_type = it->second.type;
}

// The gauge's block and records, laid out as the module reads them.
struct FakeGauge {
    alignas(8) std::array<unsigned char, kTrafficBlockBytes> block{};
    alignas(8) std::array<std::array<unsigned char, 20>, 16> records{};
    int calls = 0;
    std::string last_key;
};
FakeGauge& Gauge() {
    static FakeGauge gauge;
    return gauge;
}
void* GaugeAnswer(const char* key, int* status) {
    FakeGauge& g = Gauge();
    ++g.calls;
    g.last_key = key ? key : "";
    // The key written out here, not taken from the module's header.
    bool ok = g.last_key == "b3JiMSBvdXRzaWRlIHRyYWZmaWMgbGluayBrZXkgMDE=";
    *status = ok ? 0 : 7;
    return ok ? g.block.data() : nullptr;
}

void InstallGauge() { Exports()[kTrafficExportName] = {reinterpret_cast<void*>(&GaugeAnswer), TYPE_PVOID}; }

// Record k: altitude feet, trend -1..1, class 0..3, distance nm, relative bearing radians.
void SetRecord(int k, float altitude, int trend, int target_class, float distance, float bearing, bool valid = true) {
    unsigned char* r = Gauge().records[static_cast<size_t>(k)].data();
    uint32_t flags = (static_cast<uint32_t>(trend) & 0xF) << 16 | static_cast<uint32_t>(target_class & 0xF) << 20;
    std::memcpy(r + 0, &altitude, 4);
    std::memcpy(r + 4, &flags, 4);
    r[8] = valid ? 1 : 0;
    std::memcpy(r + 12, &distance, 4);
    std::memcpy(r + 16, &bearing, 4);
}
// Slot i points at record k.
void SetSlot(int i, int k) {
    void* p = Gauge().records[static_cast<size_t>(k)].data();
    size_t offset = sizeof(void*) == 4 ? 44 + 4 * static_cast<size_t>(i) : 40 + 8 * static_cast<size_t>(i);
    std::memcpy(Gauge().block.data() + offset, &p, sizeof p);
}
void Publish(int n, uint16_t sequence) {
    Gauge().block[44] = static_cast<unsigned char>(n);
    std::memcpy(Gauge().block.data() + 14, &sequence, 2);
    uint32_t one = 1;
    std::memcpy(Gauge().block.data(), &one, 4);
}
uint32_t Receipt() {
    uint32_t word = 0;
    std::memcpy(&word, Gauge().block.data(), 4);
    return word;
}

class Traffic : public ::testing::Test {
protected:
    FakeSimulatorScope scope;
    void SetUp() override {
        FreshAircraft();
        scope.sim.table.slots[static_cast<int>(PanelSlot::initialize_var_by_name)] =
            reinterpret_cast<void*>(&TestInitializeVarByName);
        Exports().clear();
        Lookups() = 0;
        UseOrbsimRegistry() = false;
        Gauge() = FakeGauge{};
        g_config.TcasVertRange = 140;
    }
    void TearDown() override { UseOrbsimRegistry() = false; }
};

const TrafficTarget& Row(int i) { return g_traffic.targets[static_cast<size_t>(i)]; }
}  // namespace

// [SECTION] Link
TEST_F(Traffic, NoGaugeRetriesTwentyTimesThenGivesUp) {
    // The install-time try finds nothing: the status word says so.
    TryTrafficLink(GaugeId::HW_B737_ND);
    EXPECT_EQ(g_module.traffic_link, nullptr);
    EXPECT_EQ(g_traffic.status_word, 1);
    EXPECT_EQ(Lookups(), 1);
    // Each draw retries until 20 attempts; later draws don't look again.
    for (int draw = 1; draw <= 25; ++draw) {
        ReadTrafficBlock();
        EXPECT_EQ(g_traffic.link_status, -1);
        EXPECT_EQ(g_traffic.link_attempts, std::min(draw, 20));
    }
    EXPECT_EQ(Lookups(), 21);
    // A gauge that turns up after the attempts are spent is never linked.
    InstallGauge();
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.link_status, -1);
    EXPECT_EQ(Gauge().calls, 0);
    EXPECT_EQ(g_traffic.TargetCount, 0);
}

TEST_F(Traffic, LateGaugeLinksAtTheNextDrawAndAnswersTheKey) {
    TryTrafficLink(GaugeId::EFS50_TCAS);
    for (int draw = 0; draw < 6; ++draw) ReadTrafficBlock();
    EXPECT_EQ(g_traffic.link_attempts, 6);
    InstallGauge();
    SetRecord(0, 500, 0, 0, 3, 0);
    SetSlot(1, 0);
    Publish(1, 9);
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.link_attempts, 7);
    EXPECT_EQ(g_traffic.link_status, 2);
    EXPECT_EQ(g_module.traffic_link, Gauge().block.data());
    EXPECT_EQ(Gauge().last_key.size(), 44u);
    EXPECT_EQ(g_traffic.status_word, 0);
    EXPECT_EQ(g_traffic.TargetCount, 1);
    // Linked: no further calls of the gauge, and no further attempts.
    ReadTrafficBlock();
    EXPECT_EQ(Gauge().calls, 1);
    EXPECT_EQ(g_traffic.link_attempts, 7);
}

TEST_F(Traffic, ExportOfTheWrongTypeOrARefusedKeyLeavesNoLink) {
    Exports()[kTrafficExportName] = {reinterpret_cast<void*>(&GaugeAnswer), TYPE_PFLOAT64};
    EXPECT_EQ(LinkTraffic(kTrafficLinkKey), nullptr);
    EXPECT_EQ(g_traffic.status_word, 1);
    EXPECT_EQ(Gauge().calls, 0);
    InstallGauge();
    EXPECT_EQ(LinkTraffic("not the key"), nullptr);
    EXPECT_EQ(g_traffic.status_word, 7);
    EXPECT_NE(LinkTraffic(kTrafficLinkKey), nullptr);
    // The name and key have their fixed lengths.
    EXPECT_EQ(std::strlen(kTrafficExportName), 48u);
    EXPECT_EQ(std::strlen(kTrafficLinkKey), 44u);
}

// [SECTION] Reading the block
TEST_F(Traffic, WalkReadsAtMostTheLastFiveValidTargets) {
    InstallGauge();
    TryTrafficLink(GaugeId::HW_B737_ND);
    // Twelve pointers; record k has altitude k x 100 ft. Record 10 is invalid.
    for (int k = 1; k <= 12; ++k) {
        SetRecord(k, static_cast<float>(k * 100), 0, 0, 5, 0, k != 10);
        SetSlot(k, k);
    }
    Publish(12, 1);
    ReadTrafficBlock();
    // 12, 11, 9, 8 (10 skipped); 7 and below are never read.
    ASSERT_EQ(g_traffic.TargetCount, 4);
    EXPECT_DOUBLE_EQ(Row(1).relative_altitude, 12);
    EXPECT_DOUBLE_EQ(Row(2).relative_altitude, 11);
    EXPECT_DOUBLE_EQ(Row(3).relative_altitude, 9);
    EXPECT_DOUBLE_EQ(Row(4).relative_altitude, 8);
    EXPECT_EQ(Receipt(), 0u);

    // All valid: the five of 12 down to 8.
    SetRecord(10, 1000, 0, 0, 5, 0);
    Publish(12, 2);
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.TargetCount, 5);
    EXPECT_DOUBLE_EQ(Row(5).relative_altitude, 8);

    // n of 3: three rows, from 3 down.
    Publish(3, 3);
    ReadTrafficBlock();
    ASSERT_EQ(g_traffic.TargetCount, 3);
    EXPECT_DOUBLE_EQ(Row(1).relative_altitude, 3);
    EXPECT_DOUBLE_EQ(Row(3).relative_altitude, 1);

    // n of 0 empties the table.
    Publish(0, 4);
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.TargetCount, 0);
}

TEST_F(Traffic, UnchangedSequenceKeepsTheTableAndGivesNoReceipt) {
    InstallGauge();
    SetRecord(1, 1200, 0, 0, 4, 0);
    SetSlot(1, 1);
    Publish(1, 40);
    ReadTrafficBlock();
    ASSERT_EQ(g_traffic.TargetCount, 1);
    EXPECT_EQ(g_traffic.last_sequence, 40);
    // The gauge changes its record but not the counter: nothing is read.
    SetRecord(1, -300, 0, 0, 4, 0);
    uint32_t one = 1;
    std::memcpy(Gauge().block.data(), &one, 4);
    ReadTrafficBlock();
    EXPECT_DOUBLE_EQ(Row(1).relative_altitude, 12);
    EXPECT_EQ(Receipt(), 1u);
    // A new counter: read, and receipted.
    Publish(1, 41);
    ReadTrafficBlock();
    EXPECT_DOUBLE_EQ(Row(1).relative_altitude, -3);
    EXPECT_EQ(Receipt(), 0u);
    // The gauge goes away (counter stays): the targets stay.
    Exports().clear();
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.TargetCount, 1);
}

TEST_F(Traffic, RecordFieldsBecomeBearingTrendAndClass) {
    InstallGauge();
    g_sim.heading_true = 300;
    // A quarter turn right of a nose at 300: 30 true.
    SetRecord(1, 0, 1, 2, 6.5f, 1.5707963f);
    // Dead ahead at a heading of exactly 360: stored as 0.
    SetRecord(2, 0, -1, 3, 2, 0);
    // Left of the nose, level, proximate; then an unknown class.
    SetRecord(3, 0, 0, 1, 1, -0.5f);
    SetRecord(4, 0, 0, 9, 1, 0);
    for (int k = 1; k <= 4; ++k) SetSlot(k, k);
    Publish(1, 1);
    ReadTrafficBlock();
    ASSERT_EQ(g_traffic.TargetCount, 1);
    EXPECT_NEAR(Row(1).bearing, 30.0, 1e-4);
    EXPECT_NEAR(Row(1).distance, 6.5, 1e-6);
    EXPECT_EQ(Row(1).trend, '^');
    EXPECT_EQ(Row(1).target_class, 'T');

    g_sim.heading_true = 360;
    Publish(4, 2);
    ReadTrafficBlock();
    ASSERT_EQ(g_traffic.TargetCount, 4);
    // Rows run from slot 4 down.
    EXPECT_EQ(Row(1).target_class, 'O');
    EXPECT_EQ(Row(2).trend, '-');
    EXPECT_EQ(Row(2).target_class, 'P');
    EXPECT_NEAR(Row(2).bearing, 360 - 0.5 * 180 / 3.14159254, 1e-4);
    EXPECT_EQ(Row(3).bearing, 0.0);
    EXPECT_EQ(Row(3).trend, 'v');
    EXPECT_EQ(Row(3).target_class, 'R');
}

// [SECTION] Texts, colours, vertical range
TEST_F(Traffic, AltitudeTextsColoursAndTheVerticalRangeLimits) {
    char text[16];
    TrafficAltitudeText(5, text, sizeof text);
    EXPECT_STREQ(text, "+5");
    TrafficAltitudeText(-12.4, text, sizeof text);
    EXPECT_STREQ(text, "-12");
    TrafficAltitudeText(0, text, sizeof text);
    EXPECT_STREQ(text, "+0");
    TrafficAltitudeText(140, text, sizeof text);
    EXPECT_STREQ(text, "+140");

    EXPECT_EQ(TrafficTextColour('T', kTrafficKindB737), 0xFFFFFF00u);
    EXPECT_EQ(TrafficTextColour('R', kTrafficKindEfs50), 0xFFF10101u);
    for (char c : {'O', 'P'}) {
        EXPECT_EQ(TrafficTextColour(c, kTrafficKindB737), 0xFFDEE6E9u);
        EXPECT_EQ(TrafficTextColour(c, kTrafficKindMd11), 0xFFDEE6E9u);
        EXPECT_EQ(TrafficTextColour(c, kTrafficKindEfs50), 0xFF00E6E9u);
        EXPECT_EQ(TrafficTextColour(c, kTrafficKindP1000), 0xFF00E6E9u);
        EXPECT_EQ(TrafficTextColour(c, kTrafficKindCduMap), 0xFF00E6E9u);
    }

    EXPECT_TRUE(TrafficInVerticalRange(140));
    EXPECT_TRUE(TrafficInVerticalRange(-140));
    EXPECT_FALSE(TrafficInVerticalRange(140.01));
    EXPECT_FALSE(TrafficInVerticalRange(-140.01));
    g_config.TcasVertRange = 27;
    EXPECT_TRUE(TrafficInVerticalRange(27));
    EXPECT_FALSE(TrafficInVerticalRange(28));
}

// [SECTION] On the pictures
TEST_F(Traffic, EfsScreenDrawsOnlyTargetsInsideTheVerticalRangeAndTheRing) {
    InstallGauge();
    g_config.TcasVertRange = 27;
    // +2700 ft (drawn, advisory), +2800 (not), -2700 (drawn, other), -2800 (not).
    SetRecord(1, 2700, 1, 2, 4, 0.6f);
    SetRecord(2, 2800, 0, 0, 4, -0.6f);
    SetRecord(3, -2700, -1, 0, 6, 2.5f);
    SetRecord(4, -2800, 0, 3, 2, -2.5f);
    for (int k = 1; k <= 4; ++k) SetSlot(k, k);
    Publish(4, 5);
    g_display.efs50_traffic_range = 10;

    // Switch off: a dark screen, and the block isn't even read.
    Frame off = DrawNd(1, GaugeId::EFS50_TCAS, 280, 262);
    EXPECT_TRUE(off.seen.empty());
    EXPECT_EQ(g_traffic.TargetCount, 0);

    ToggleTraffic();
    Frame on = DrawNd(1, GaugeId::EFS50_TCAS, 280, 262);
    on.WritePng("efs50_tcas_traffic.png");
    EXPECT_TRUE(on.Has("TCAS"));
    EXPECT_TRUE(on.Has("10"));
    ASSERT_TRUE(on.Has("+27"));
    ASSERT_TRUE(on.Has("-27"));
    EXPECT_FALSE(on.Has("+28"));
    EXPECT_FALSE(on.Has("-28"));
    EXPECT_EQ(on.Find("+27")->box.argb, 0xFFFFFF00u);
    EXPECT_EQ(on.Find("-27")->box.argb, 0xFF00E6E9u);
    // The advisory 4 nm out on a 100-pixel, 10 nm screen, 0.6 rad right of the nose;
    // its text 13 left of and 12 below the symbol.
    double a = 0.6 / 3.14159254 * 180 * 3.14159265358979 / 180;
    double x = 140 + 40 * std::sin(a), y = 146 - 40 * std::cos(a);
    EXPECT_NEAR(on.Find("+27")->box.layout_x, x - 13, 1.5);
    EXPECT_NEAR(on.Find("+27")->box.layout_y, y + 12, 1.5);

    // A resolution advisory dead ahead at 9 nm is inside the ring, at 13 nm outside it:
    // red at 90 pixels above the centre, nothing at 130.
    SetRecord(5, 0, 0, 3, 9, 0);
    SetRecord(6, 0, 0, 3, 13, 0);
    SetSlot(1, 5);
    SetSlot(2, 6);
    Publish(2, 6);
    Frame ring = DrawNd(1, GaugeId::EFS50_TCAS, 280, 262);
    EXPECT_GT(ring.Near(0xFFFF0000, 30, 134, 146 - 90 - 6, 146, 146 - 90 + 6), 20);
    EXPECT_EQ(ring.Near(0xFFFF0000, 30, 134, 146 - 130 - 6, 146, 146 - 130 + 6), 0);
}

TEST_F(Traffic, NdPlacesTargetsAtRangeAndShowsTheSwitchAtTheSide) {
    InstallGauge();
    g_display.b737_mode = kB737ModeMap;
    g_display.b737_range = 10;
    g_display.b737_radius = kB737ArcRadius;
    // A resolution advisory 5 nm to the right (a quarter turn), 300 ft above.
    SetRecord(1, 300, 0, 3, 5, 1.5707963f);
    SetSlot(1, 1);
    Publish(1, 1);

    // Off: "TCAS" over "OFF" at the side, no target.
    Frame off = DrawNd();
    EXPECT_TRUE(off.Has("TCAS"));
    EXPECT_TRUE(off.Has("OFF"));
    EXPECT_FALSE(off.Has("TFC"));
    EXPECT_FALSE(off.Has("+3"));

    ToggleTraffic();
    Frame on = DrawNd();
    on.WritePng("b737_nd_traffic.png");
    EXPECT_TRUE(on.Has("TFC"));
    EXPECT_FALSE(on.Has("OFF"));
    ASSERT_TRUE(on.Has("+3"));
    EXPECT_EQ(on.Find("+3")->box.argb, 0xFFF10101u);
    // Half the range to the right of the arc's centre: 107.5 design pixels.
    double x = 122 + 215 * 0.5, y = 249;
    EXPECT_NEAR(on.Find("+3")->box.layout_x, SurfaceX(x - 13), 2);
    EXPECT_NEAR(on.Find("+3")->box.layout_y, SurfaceY(y + 12), 2);
    // The red square there, and nothing red on the mirror side.
    EXPECT_GT(on.Near(0xFFFF0000, 30, static_cast<int>(SurfaceX(x - 6)), static_cast<int>(SurfaceY(y - 6)),
                      static_cast<int>(SurfaceX(x + 6)), static_cast<int>(SurfaceY(y + 6))),
              20);
    double mirror = 122 - 215 * 0.5;
    EXPECT_EQ(on.Near(0xFFFF0000, 30, static_cast<int>(SurfaceX(mirror - 6)), static_cast<int>(SurfaceY(y - 6)),
                      static_cast<int>(SurfaceX(mirror + 6)), static_cast<int>(SurfaceY(y + 6))),
              0);

    // PLAN has no traffic and no side text; the arc mode without a map has both.
    g_display.b737_mode = kB737ModePlan;
    Frame plan = DrawNd();
    EXPECT_FALSE(plan.Has("+3"));
    EXPECT_FALSE(plan.Has("TFC"));
    g_display.b737_mode = kB737ModeExpNav;
    Frame arc = DrawNd();
    EXPECT_TRUE(arc.Has("+3"));
    EXPECT_TRUE(arc.Has("TFC"));
}

TEST_F(Traffic, Md11MapAndMd80MapsShowTargetsWithTheirSwitchMd11PlanDoesNot) {
    InstallGauge();
    // A traffic advisory 4 nm ahead, 500 ft below: "-5" on this kind of display.
    SetRecord(1, -500, 0, 2, 4, 0.0f);
    SetSlot(1, 1);
    Publish(1, 1);
    g_display.md11_mode = kMd11ModeMap;
    g_display.md80_mode = 3;
    EXPECT_FALSE(DrawNd(1, GaugeId::HW_MD11_ND, 240, 258).Has("-5"));
    EXPECT_FALSE(DrawNd(1, GaugeId::MD80_EHSI_NB, 266, 232).Has("-5"));
    ToggleTraffic();
    Frame md11 = DrawNd(1, GaugeId::HW_MD11_ND, 240, 258);
    ASSERT_TRUE(md11.Has("-5"));
    EXPECT_EQ(md11.Find("-5")->box.argb, TrafficTextColour('T', kTrafficKindMd11));
    EXPECT_TRUE(DrawNd(1, GaugeId::MD80_EHSI_NB, 266, 232).Has("-5"));
    g_display.md11_mode = kMd11ModePlan;
    EXPECT_FALSE(DrawNd(1, GaugeId::HW_MD11_ND, 240, 258).Has("-5"));
}

// [SECTION] The second source's count
TEST_F(Traffic, OutsideCountIsTakenAndBoundedToTheTable) {
    int32_t count = 3;
    int targets = 0;
    Exports()["tcas_target_cnt"] = {&count, TYPE_PSINT32};
    Exports()["tcas_targets"] = {&targets, TYPE_PVOID};
    ReadOutsideTrafficVariables();
    EXPECT_EQ(g_traffic.outside_targets, &targets);
    ReadOutsideTargetCount();
    EXPECT_EQ(g_traffic.TargetCount, 3);
    count = 40;
    ReadOutsideTargetCount();
    EXPECT_EQ(g_traffic.TargetCount, 5);
    count = -2;
    ReadOutsideTargetCount();
    EXPECT_EQ(g_traffic.TargetCount, 0);
    // Without the export the count stays as it was.
    g_traffic.TargetCount = 2;
    Exports().clear();
    ReadOutsideTrafficVariables();
    ReadOutsideTargetCount();
    EXPECT_EQ(g_traffic.TargetCount, 2);
}

TEST_F(Traffic, GaugeServicesLinkAtInstallAndTheNbTakesTheCountAtUpdate) {
    InstallGauge();
    int32_t count = 4;
    Exports()["tcas_target_cnt"] = {&count, TYPE_PSINT32};
    // A display of the list links at its install service; a CDU doesn't.
    GaugeInstance cdu(GaugeId::SMITHS_FMS, "");
    cdu.Service(PANEL_SERVICE_POST_INSTALL);
    EXPECT_EQ(g_module.traffic_link, nullptr);
    GaugeInstance nd(GaugeId::HW_B737_ND_NB, "");
    nd.Service(PANEL_SERVICE_POST_INSTALL);
    EXPECT_EQ(g_module.traffic_link, Gauge().block.data());
    EXPECT_EQ(Gauge().calls, 1);
    // The _NB twin reads the second source at start-up and its count at each update.
    nd.Service(PANEL_SERVICE_PRE_INITIALIZE);
    nd.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(g_traffic.TargetCount, 4);
    count = 2;
    nd.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(g_traffic.TargetCount, 2);
    // The plain ND has no second source.
    g_traffic.TargetCount = 0;
    GaugeInstance plain(GaugeId::HW_B737_ND, "");
    plain.Service(PANEL_SERVICE_PRE_UPDATE);
    EXPECT_EQ(g_traffic.TargetCount, 0);
}

// [SECTION] orbsim as the outside gauge
TEST_F(Traffic, OrbsimTargetsMoveAndReachTheTable) {
    using namespace orbsim;
    g_host = HostState{};
    g_host.aircraft.lat = 47.0;
    g_host.aircraft.lon = -122.0;
    g_host.aircraft.alt = 10000;
    g_host.aircraft.hdg = 90;
    std::string error;
    EXPECT_STREQ(kTrafficSourceExport, kTrafficExportName);
    EXPECT_STREQ(kTrafficSourceKey, kTrafficLinkKey);
    // 7 nm north (7 minutes of latitude), 1,000 ft above, flying south at 360 kt.
    const std::vector<std::string> add = {"traffic", "add", "A1", "47.11666667", "-122", "11000", "180", "360", "-800"};
    ASSERT_TRUE(CheckTrafficCommand(add, error));
    ASSERT_TRUE(RunTrafficCommand(g_host, add, error));
    EXPECT_FALSE(CheckTrafficCommand({"traffic", "add", "B", "95", "0", "0"}, error));
    EXPECT_FALSE(CheckTrafficCommand({"traffic", "fly"}, error));
    EXPECT_FALSE(CheckTrafficCommand({"traffic", "add", "C", "47", "-122", "inf"}, error));
    PublishTraffic(g_host);
    UseOrbsimRegistry() = true;
    g_sim.heading_true = 90;
    ReadTrafficBlock();
    ASSERT_EQ(g_traffic.link_status, 2);
    ASSERT_EQ(g_traffic.TargetCount, 1);
    // Left of a nose pointing east: true north; 7 nm; +10 hundreds; descending; other.
    EXPECT_NEAR(Row(1).distance, 7.0, 0.01);
    EXPECT_NEAR(Row(1).bearing, 0.0, 0.05);
    EXPECT_NEAR(Row(1).relative_altitude, 10, 1e-3);
    EXPECT_EQ(Row(1).trend, 'v');
    EXPECT_EQ(Row(1).target_class, 'O');

    // A minute later: 6 nm flown south, 800 ft lower: 1 nm north, 200 ft
    // above, a resolution advisory. The aircraft stands still (its model isn't stepped).
    g_host.aircraft.sim_time = 60;
    PublishTraffic(g_host);
    EXPECT_EQ(g_host.traffic.receipts, 1);
    ReadTrafficBlock();
    EXPECT_NEAR(Row(1).distance, 1.0, 0.01);
    EXPECT_NEAR(Row(1).bearing, 0.0, 0.05);
    EXPECT_NEAR(Row(1).relative_altitude, 2, 1e-2);
    EXPECT_EQ(Row(1).target_class, 'R');
    // Cleared: the next refresh, at once, has none.
    ASSERT_TRUE(RunTrafficCommand(g_host, {"traffic", "clear"}, error));
    PublishTraffic(g_host);
    ReadTrafficBlock();
    EXPECT_EQ(g_traffic.TargetCount, 0);
    EXPECT_EQ(g_host.traffic.answers, 1);
    g_host = HostState{};
}
