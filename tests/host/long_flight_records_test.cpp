// long_flight_records_test.cpp: what orbsim records over a flight (the key
// events, the flown path for `plot`) takes the same memory however long the
// flight, while what scripts check and draw stays exact and whole.
#include "orbsim/host_state.h"
#include "orbsim/panel_table.h"
#include "orbsim/script.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

TEST(KeyEventLog, KeepsTheLatestEventsAndCountsThemAll) {
    orbsim::g_host = {};
    orbsim::HostState& host = orbsim::g_host;
    // Three rings' worth: every third event the script's, the module's
    // alternating between two numbers.
    constexpr uint32_t kEvents = 3 * orbsim::kKeyEventRingSize + 17;
    for (uint32_t i = 0; i < kEvents; ++i) {
        host.aircraft.sim_time = i;
        bool from_module = i % 3 != 0;
        orbsim::DeliverKeyEvent(host, from_module ? 0x10100 + i % 2 : 0x10019, i, from_module);
    }
    const orbsim::KeyEventLog& log = host.key_events;
    EXPECT_EQ(log.total, kEvents);
    // The memory stays the ring's.
    ASSERT_EQ(log.Kept(), orbsim::kKeyEventRingSize);
    EXPECT_EQ(log.ring.capacity(), orbsim::kKeyEventRingSize);
    // Oldest first, without a gap, ending at the latest.
    for (size_t i = 0; i < log.Kept(); ++i)
        ASSERT_EQ(log.KeptAt(i).value, kEvents - orbsim::kKeyEventRingSize + i) << i;
    EXPECT_EQ(log.Last().value, kEvents - 1);

    // Scripts' values count all the module's events, also those no longer kept.
    orbsim::ScriptRun run;
    run.out = std::tmpfile();
    ASSERT_NE(run.out, nullptr);
    std::string error;
    orbsim::ScriptValue value;
    uint32_t module_events = 0, even = 0, last_even = 0;
    for (uint32_t i = 0; i < kEvents; ++i) {
        if (i % 3 == 0) continue;
        ++module_events;
        if (i % 2 == 0) ++even, last_even = i;
    }
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "keyevents.count", value, error)) << error;
    EXPECT_EQ(value.number, module_events);
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "keyevents.last.value", value, error)) << error;
    EXPECT_EQ(value.number, kEvents - 1 - ((kEvents - 1) % 3 == 0 ? 1 : 0));
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "event.0x10100.count", value, error)) << error;
    EXPECT_EQ(value.number, even);
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "event.0x10100.last", value, error)) << error;
    EXPECT_EQ(value.number, last_even);
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "event.0x10100.time", value, error)) << error;
    EXPECT_EQ(value.number, last_even);
    ASSERT_TRUE(orbsim::EvaluateWhat(host, run, "event.0x10019.count", value, error)) << error;
    EXPECT_EQ(value.number, 0);  // the script's own events are not the module's

    // The print tells how many were sent and which are shown.
    std::vector<orbsim::ScriptLine> lines;
    ASSERT_TRUE(orbsim::ParseScript("t.orbsim", "print keyevents\nclear keyevents\nexpect keyevents.count == 0\n", lines, error));
    EXPECT_EQ(orbsim::RunScript(host, run, lines, error), orbsim::ExitCode::Ok) << error;
    std::rewind(run.out);
    char line[256];
    ASSERT_NE(std::fgets(line, sizeof line, run.out), nullptr);
    EXPECT_EQ(std::string(line), "keyevents (" + std::to_string(kEvents) + "):\n");
    ASSERT_NE(std::fgets(line, sizeof line, run.out), nullptr);
    EXPECT_EQ(std::string(line), "  (the first " + std::to_string(kEvents - orbsim::kKeyEventRingSize) + " not kept; the latest " +
                                     std::to_string(orbsim::kKeyEventRingSize) + " follow)\n");
    ASSERT_NE(std::fgets(line, sizeof line, run.out), nullptr);
    EXPECT_NE(std::string(line).find(" " + std::to_string(kEvents - orbsim::kKeyEventRingSize) + "  "), std::string::npos) << line;
    std::fclose(run.out);
    EXPECT_EQ(host.key_events.total, 0u);
    EXPECT_EQ(host.key_events.Kept(), 0u);
    orbsim::g_host = {};
}

TEST(FlownPath, ThinsOutToCoverAFlightOfAnyLengthInTheSameRoom) {
    orbsim::g_host = {};
    orbsim::g_host.fps = 1;
    orbsim::ScriptRun run;
    run.out = std::tmpfile();
    ASSERT_NE(run.out, nullptr);
    std::vector<orbsim::ScriptLine> lines;
    std::string error;
    // Due east along the equator: longitude grows evenly with time.
    ASSERT_TRUE(orbsim::ParseScript("t.orbsim", "aircraft lat=0 lon=0 alt=10000 ias=250 hdg=90 ap_hdg_hold=1 hdg_bug=90\nrun 60\n",
                                    lines, error));
    ASSERT_EQ(orbsim::RunScript(orbsim::g_host, run, lines, error), orbsim::ExitCode::Ok) << error;
    ASSERT_EQ(run.flown.size(), 60u);  // a point a second while there is room
    const size_t capacity = run.flown.capacity();
    EXPECT_EQ(capacity, orbsim::kFlownLimit);

    // Three and a half times the room's worth of seconds.
    ASSERT_TRUE(orbsim::ParseScript("t.orbsim", "run 28700\n", lines, error));
    ASSERT_EQ(orbsim::RunScript(orbsim::g_host, run, lines, error), orbsim::ExitCode::Ok) << error;
    EXPECT_EQ(run.flown.capacity(), capacity);
    ASSERT_GT(run.flown.size(), orbsim::kFlownLimit / 2);
    ASSERT_LE(run.flown.size(), orbsim::kFlownLimit);
    EXPECT_EQ(run.flown_spacing, 4);
    // From the first second to now, evenly spaced, in order (a frame's time
    // may fall a hair short of a whole second and put a point one late).
    double step = run.flown[1].second - run.flown[0].second;
    ASSERT_GT(step, 0);
    EXPECT_NEAR(run.flown.front().second, step / run.flown_spacing, step * 1e-3);
    for (size_t i = 1; i < run.flown.size(); ++i)
        ASSERT_NEAR(run.flown[i].second - run.flown[i - 1].second, step, step * 0.3) << i;
    EXPECT_NEAR(run.flown.back().second, orbsim::g_host.aircraft.lon, step);
    std::fclose(run.out);
    orbsim::g_host = {};
}
