// entry_guard_test.cpp: no exception leaves the module through an entry point
// the simulator calls, whether it comes from the simulator's side of a call
// or from memory that ran out during the load; the module flies on.
#include "display/control_panels.h"
#include "frame/diagnostic_log.h"
#include "frame/entry_guard.h"
#include "frame/gauge_callback.h"
#include "frame/module_entry.h"
#include "frame/module_state.h"
#include "frame/sim_access.h"
#include "navdata/nav_database.h"
#include "support/fake_panels.h"
#include "support/gauge_instance.h"
#include "support/module_reset.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

// Allocations of this many bytes or more fail, as when the simulator's
// address space runs out; no limit unless a test sets one.
static size_t g_failing_allocation = std::numeric_limits<size_t>::max();

// The replacements free what they allocated; GCC can't tell.
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
static void* Allocate(size_t bytes) {
    if (bytes >= g_failing_allocation) return nullptr;
    return std::malloc(bytes != 0 ? bytes : 1);
}
void* operator new(size_t bytes) {
    if (void* p = Allocate(bytes)) return p;
    throw std::bad_alloc();
}
void* operator new[](size_t bytes) { return operator new(bytes); }
void* operator new(size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void* operator new[](size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace {
uint32_t Stopped(EntryKind kind) { return g_entry_guard.stopped[static_cast<size_t>(kind)]; }

// The events whose text holds `part`, in the order they were kept.
std::vector<std::string> EventsWith(const std::string& part) {
    std::vector<std::string> found;
    for (int i = 0; i < g_events.count; ++i) {
        std::string text = g_events.texts[static_cast<size_t>(i)].data();
        if (text.find(part) != std::string::npos) found.push_back(text);
    }
    return found;
}

template <typename Fn>
void PutSlot(FakeSimulator& sim, PanelSlot slot, Fn fn) {
    sim.table.slots[static_cast<int>(slot)] = reinterpret_cast<void*>(fn);
}

BOOL_SDK FSAPI ThrowingWindowToggle(UINT32) { throw std::runtime_error("window toggle"); }
ERR FSAPI ThrowingKeyEvent(ID32, UINT32) { throw 42; }  // not even a std::exception
void FSAPI ThrowingLookup(MODULE_VAR*) { throw std::runtime_error("token"); }
void FSAPI ThrowingElementList(ELEMENT_HEADER*) { throw std::logic_error("element list"); }

// A fresh module with RootFolder at a folder of the test's own.
std::filesystem::path FreshModule() {
    ResetModuleState();
    g_navdb = NavDatabase{};
    g_entry_guard = {};
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    auto root = std::filesystem::path(ORB_BINARY_DIR) / "test-sim" / (std::string(info->test_suite_name()) + "." + info->name());
    std::filesystem::remove_all(root);
    std::filesystem::create_directories(root / "orb" / "navdata");
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", root.c_str());
    return root;
}
}  // namespace

TEST(EntryGuard, ExceptionsFromTheSimulatorsSideStopAtTheEntry) {
    FreshModule();
    FakeSimulatorScope scope;

    // A window opener's click.
    PutSlot(scope.sim, PanelSlot::panel_window_toggle, &ThrowingWindowToggle);
    MOUSE_FUNCTION open_fms = GaugeClickHandler(GaugeId::FMS_OPEN);
    EXPECT_EQ(open_fms(nullptr, MOUSE_LEFTSINGLE), 0);
    EXPECT_EQ(open_fms(nullptr, MOUSE_LEFTSINGLE), 0);
    EXPECT_EQ(Stopped(EntryKind::MouseHandler), 2u);

    // A control panel's knob, whose key event fails with something that isn't a std::exception.
    PutSlot(scope.sim, PanelSlot::trigger_key_event, &ThrowingKeyEvent);
    MouseAreaList areas;
    ControlPanelMouseAreas(GaugeId::A300_EFIS_CTRL, areas);
    int knobs_tried = 0;
    for (int i = 0; i < areas.count; ++i) {
        if (areas.areas[i].second == nullptr) continue;
        EXPECT_EQ(areas.areas[i].first(nullptr, MOUSE_LEFTSINGLE), 0);
        ++knobs_tried;
    }
    EXPECT_EQ(knobs_tried, 3);
    EXPECT_EQ(Stopped(EntryKind::MouseHandler), 3u);  // the heading knob sends a key event

    // A display's frame whose token reads fail; the frames after it draw.
    GaugeInstance nd(GaugeId::HW_B737_ND, "");
    nd.Service(PANEL_SERVICE_PRE_INITIALIZE);
    nd.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    PutSlot(scope.sim, PanelSlot::lookup_var, &ThrowingLookup);
    scope.sim.tokens[Token::TICK18] = 1;  // a new tick
    nd.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(Stopped(EntryKind::GaugeCallback), 1u);
    scope.sim.table.slots[static_cast<int>(PanelSlot::lookup_var)] = nullptr;
    nd.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(Stopped(EntryKind::GaugeCallback), 1u);

    // The common gauge routines.
    PutSlot(scope.sim, PanelSlot::element_list_query, &ThrowingElementList);
    PutSlot(scope.sim, PanelSlot::element_list_plot, &ThrowingElementList);
    CommonQuery();
    CommonDraw();
    EXPECT_EQ(Stopped(EntryKind::GaugeRoutine), 2u);
    nd.Service(PANEL_SERVICE_DISCONNECT);

    // Each kind of entry logged its first stop once, however often it stopped.
    EXPECT_EQ(EventsWith("stopped in mouse handler"),
              std::vector<std::string>{"Exception 'window toggle' stopped in mouse handler"});
    EXPECT_EQ(EventsWith("stopped in gauge callback").size(), 1u);
    EXPECT_EQ(EventsWith("stopped in gauge routine").size(), 1u);
}

TEST(EntryGuard, MemoryRunningOutDuringTheLoadLeavesTheModuleFlying) {
    auto root = FreshModule();
    std::ofstream(root / "orb" / "navdata" / "apts.txt") << "KSEA SEATTLE 433 47.45019 -122.31232\n";
    FakeSimulatorScope scope;
    GaugeInstance nd(GaugeId::HW_B737_ND, "");
    GaugeInstance fms(GaugeId::SMITHS_FMS, "");

    // The tables are sized at the load, megabytes at once: that fails.
    g_failing_allocation = size_t{4} << 20;
    nd.Service(PANEL_SERVICE_PRE_INITIALIZE);
    g_failing_allocation = std::numeric_limits<size_t>::max();
    EXPECT_EQ(Stopped(EntryKind::GaugeCallback), 1u);
    EXPECT_EQ(g_navdb.AirportTable.count, 0);

    // The next gauge's load finds memory again and reads the database.
    fms.Service(PANEL_SERVICE_PRE_INITIALIZE);
    EXPECT_EQ(g_navdb.AirportTable.count, 1);
    nd.Service(PANEL_SERVICE_CONNECT_TO_WINDOW);
    scope.sim.tokens[Token::TICK18] = 1;
    nd.Service(PANEL_SERVICE_PRE_DRAW);
    EXPECT_EQ(Stopped(EntryKind::GaugeCallback), 1u);
    nd.Service(PANEL_SERVICE_DISCONNECT);
}
