// instrument_frame_bench.cpp: whole frames of every attitude and engine
// display (B777_PFD_NB, A320_EADI_NB, EFS50_EADI, the C-17 ATT page, the
// C-17 ENGINE, ENGINE 2, ENGINE OIL and FLIGHT CONTROLS pages and
// PROLINE_EICAS), each at its gauge's surface size, in the phases of the
// demonstration flight: the take-off roll, a banked climb, cruise, and an
// ILS approach with every scale and readout lit; the engine pages also with
// every engine over its limits. A frame is what the display frame does
// (graphics object, smoothing, clear, scale, background) plus the page.
//
// Each state draws kFrames frames kRuns times over; a frame's time is the
// median of its runs, so that a neighbour on the shared machine taking the
// processor once does not pass for a slow frame. Reported: the median frame
// and the worst frame, in microseconds.
#include "display/c17_attitude.h"
#include "display/c17_engine_pages.h"
#include "display/eadi_a320.h"
#include "display/eadi_efs50.h"
#include "display/eicas_proline.h"
#include "display/pfd_b777.h"
#include "display/display_state.h"
#include "frame/sim_state.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdint>
#include <vector>

namespace {
constexpr int kFrames = 200;   // frames of one run
constexpr int kRuns = 5;       // runs per state; a frame's time is their median

// A display's page drawn for flight state `state` at frame `n`.
using StatePage = void (*)(const DisplaySurface&, int state, int n);

struct Display {
    StatePage page;             // builds the state's inputs and draws the page
    int surface_width;          // the gauge's surface, pixels
    int surface_height;
    int design_width;           // the page's design canvas
    int design_height;
};

AttitudeInputs FlightState(int state, int n);
C17EngineInputs EngineState(int state, int n);

template <void (*Page)(const DisplaySurface&, const AttitudeInputs&)>
void AttitudePage(const DisplaySurface& surface, int state, int n) {
    Page(surface, FlightState(state, n));
}
template <void (*Page)(const DisplaySurface&, const C17EngineInputs&)>
void EnginePage(const DisplaySurface& surface, int state, int n) {
    Page(surface, EngineState(state, n));
}
// The strip reads the simulator's engine values itself: without one they read 0.
void EicasPage(const DisplaySurface& surface, int, int) { DrawProlineEicas(surface); }

constexpr Display kB777{AttitudePage<DrawB777PfdFrom>, 247, 294, kB777PfdWidth, kB777PfdHeight};
constexpr Display kA320{AttitudePage<DrawA320EadiFrom>, 318, 311, kA320EadiWidth, kA320EadiHeight};
constexpr Display kEfs50{AttitudePage<DrawEfs50EadiFrom>, 280, 262, kEfs50EadiWidth, kEfs50EadiHeight};
constexpr Display kC17Attitude{AttitudePage<DrawC17AttitudeFrom>, 246, 241, kC17Width, kC17Height};
constexpr Display kC17EnginesPage{EnginePage<DrawC17EnginesFrom>, 246, 241, kC17Width, kC17Height};
constexpr Display kC17Engines2{EnginePage<DrawC17EnginesSecondaryFrom>, 246, 241, kC17Width, kC17Height};
constexpr Display kC17Oil{EnginePage<DrawC17OilAndFuelFrom>, 246, 241, kC17Width, kC17Height};
constexpr Display kC17Controls{EnginePage<DrawC17ConfigurationFrom>, 246, 241, kC17Width, kC17Height};
constexpr Display kEicas{EicasPage, 486, 110, kEicasWidth, kEicasHeight};

// The four flight states; frame `n` moves attitude and speeds a little so
// that the drums and the ladder are redrawn at new places every frame.
AttitudeInputs FlightState(int state, int n) {
    AttitudeInputs in;
    double wobble = (n % 20 - 10) * 0.1;
    in.heading_bug = 163;
    in.heading = 163;
    in.fd_switch = true;
    in.autothrottle = true;
    switch (state) {
    case 0:  // take-off roll
        in.ias = 60 + n * 0.3;
        in.altitude = 430;
        in.radio_altitude = 0;
        in.selected_ias = 150;
        in.selected_altitude = 5000;
        in.ias_hold = true;
        break;
    case 1:  // banked climb on the altitude hold
        in.pitch = 12 + wobble;
        in.bank = -20 + wobble;
        in.ias = 250 + wobble;
        in.altitude = 8000 + n * 5;
        in.radio_altitude = 7600;
        in.vertical_speed = 2200;
        in.selected_vs = 2000;
        in.selected_altitude = 11000;
        in.selected_ias = 250;
        in.altitude_hold = in.heading_hold = in.ap_master = in.ias_hold = true;
        in.heading_bug = 200;
        in.fd_bank = -20;
        in.fd_pitch = 12;
        break;
    case 2:  // cruise on LNAV and VNAV at Mach
        in.pitch = 2 + wobble * 0.1;
        in.ias = 275 + wobble;
        in.mach = 0.78;
        in.altitude = 35000 + wobble * 10;
        in.radio_altitude = 34000;
        in.selected_altitude = 35000;
        in.selected_mach = 0.78;
        in.lnav_on = in.vnav_on = in.ap_master = in.mach_hold = in.altitude_hold = in.heading_hold = true;
        in.baro_mb = 1013.25;
        break;
    default:  // ILS approach: signal, needles, marker, DME, low radio altitude
        in.pitch = 2.5 + wobble * 0.2;
        in.bank = 3 + wobble;
        in.ias = 142 + wobble;
        in.selected_ias = 140;
        in.altitude = 1900 - n * 2;
        in.radio_altitude = 1450 - n * 2;
        in.vertical_speed = -720;
        in.selected_altitude = 1500;
        in.nav_signal = in.nav_is_localizer = in.approach_hold = in.loc_captured = in.gs_captured = true;
        in.ap_master = in.ias_hold = true;
        in.nav_frequency = 110.9;
        in.dme = 4.6 - n * 0.01;
        in.loc_needle = -20 + wobble * 5;
        in.gs_needle = 30 + wobble * 5;
        in.marker = 1 + (n / 70) % 3;
        in.baro_mb = 1021;
        in.baro_inches = 30.15;
        std::snprintf(in.nav_ident.data(), in.nav_ident.size(), "ISEA");
        break;
    }
    return in;
}

// The four engines in each phase; frame `n` moves the readings a little.
// State 4: every engine over its limits, the limit times running, reversers,
// spoilers, flaps and slats out, the gear in transit.
C17EngineInputs EngineState(int state, int n) {
    C17EngineInputs in;
    double wobble = (n % 20 - 10) * 0.05;
    static constexpr double kN1[] = {92, 88, 72, 55, 101.5};
    static constexpr double kEgt[] = {600, 580, 520, 450, 690};
    static constexpr double kFlow[] = {6200, 5400, 3100, 2200, 7000};
    int s = std::clamp(state, 0, 4);
    for (int e = 0; e < kC17Engines; ++e) {
        size_t i = static_cast<size_t>(e);
        in.n1[i] = kN1[s] + wobble + e * 0.3;
        in.n2[i] = in.n1[i] + 6;
        in.egt[i] = kEgt[s] + wobble * 10 + e * 4;
        in.fuel_flow[i] = kFlow[s] + e * 20;
        in.oil_pressure[i] = s == 4 ? 62 : 82;
        in.oil_temperature[i] = s == 4 ? 179 : 96;
        in.oil_quantity[i] = s == 4 ? 3 : 14;
        in.epr_source[i] = 14000 + in.n1[i] * 90;
        in.fuel_used[i] = 400 + n * 2 + s * 1500;
        in.reverser[i] = s == 4;
    }
    in.epr_ambient = s == 2 ? 6000 : 16212;
    in.flaps_raw = s == 0 ? 6000 : s == 3 ? 12000 : s == 4 ? 16383 : 0;
    in.slats_degrees = in.flaps_raw > 0 ? 15 : 0;
    in.gear = s == 1 || s == 2 ? std::array<double, 3>{0, 0, 0} : std::array<double, 3>{16383, 16383, 16383};
    if (s == 4) {
        in.max_thrust_seconds = 901;
        in.max_egt_seconds = 400;
        in.spoiler = {16000, 16000};
        in.gear = {16383, 8000, 0};
    }
    return in;
}

// One frame as the display frame draws it, timed in microseconds.
double TimedFrame(const Display& d, OrbDeviceContext& dc, int flight_state, int n) {
    auto start = std::chrono::steady_clock::now();
    {
        gdi::Graphics graphics(&dc);
        graphics.SetSmoothing(SmoothingModeAntiAlias);
        graphics.SetTextHint(TextRenderingHintAntiAlias);
        graphics.Clear(0);
        DisplaySurface surface;
        surface.graphics = &graphics;
        surface.width = d.surface_width;
        surface.height = d.surface_height;
        surface.scale_x = static_cast<float>(d.surface_width) / static_cast<float>(d.design_width);
        surface.scale_y = static_cast<float>(d.surface_height) / static_cast<float>(d.design_height);
        ResetToDesign(surface);
        gdi::SolidBrush background(palette::kBlack);
        graphics.FillRectangle(background, 0, 0, d.design_width, d.design_height);
        d.page(surface, flight_state, n);
    }
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

void RunState(benchmark::State& state, const Display& d) {
    int flight_state = static_cast<int>(state.range(0));
    std::vector<uint32_t> pixels(static_cast<size_t>(d.surface_width) * d.surface_height);
    OrbDeviceContext dc{kOrbDeviceContextMagic, pixels.data(), d.surface_width, d.surface_height,
                        d.surface_width * 4};
    g_sim.avionics_power = 1;
    std::vector<std::vector<double>> runs;
    for (auto _ : state) {
        for (int run = 0; run < kRuns; ++run) {
            g_display = DisplayState{};
            std::vector<double> times;
            times.reserve(kFrames);
            for (int n = 0; n < kFrames; ++n) times.push_back(TimedFrame(d, dc, flight_state, n));
            runs.push_back(std::move(times));
        }
    }
    benchmark::DoNotOptimize(pixels.data());
    // Each frame's median over the runs, then the median and worst of those.
    std::vector<double> frame_times(kFrames), samples(runs.size());
    for (size_t n = 0; n < frame_times.size(); ++n) {
        for (size_t r = 0; r < runs.size(); ++r) samples[r] = runs[r][n];
        std::nth_element(samples.begin(), samples.begin() + static_cast<long>(samples.size() / 2), samples.end());
        frame_times[n] = samples[samples.size() / 2];
    }
    double worst = *std::max_element(frame_times.begin(), frame_times.end());
    std::nth_element(frame_times.begin(), frame_times.begin() + kFrames / 2, frame_times.end());
    state.counters["frames"] = kFrames;
    state.counters["median_us"] = frame_times[kFrames / 2];
    state.counters["worst_us"] = worst;
    state.counters["worst_over_median"] = worst / frame_times[kFrames / 2];
}

void BM_B777PfdFrame(benchmark::State& state) { RunState(state, kB777); }
void BM_A320EadiFrame(benchmark::State& state) { RunState(state, kA320); }
void BM_Efs50EadiFrame(benchmark::State& state) { RunState(state, kEfs50); }
void BM_C17AttitudeFrame(benchmark::State& state) { RunState(state, kC17Attitude); }
void BM_C17EnginesFrame(benchmark::State& state) { RunState(state, kC17EnginesPage); }
void BM_C17Engines2Frame(benchmark::State& state) { RunState(state, kC17Engines2); }
void BM_C17OilFrame(benchmark::State& state) { RunState(state, kC17Oil); }
void BM_C17ControlsFrame(benchmark::State& state) { RunState(state, kC17Controls); }
void BM_ProlineEicasPhaseFrame(benchmark::State& state) { RunState(state, kEicas); }
}  // namespace

// Argument: 0 take-off roll, 1 climb, 2 cruise, 3 ILS approach; the engine
// pages also 4, every engine over its limits.
BENCHMARK(BM_B777PfdFrame)->DenseRange(0, 3)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_A320EadiFrame)->DenseRange(0, 3)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Efs50EadiFrame)->DenseRange(0, 3)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_C17AttitudeFrame)->DenseRange(0, 3)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_C17EnginesFrame)->DenseRange(0, 4)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_C17Engines2Frame)->DenseRange(0, 4)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_C17OilFrame)->DenseRange(0, 4)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_C17ControlsFrame)->DenseRange(0, 4)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProlineEicasPhaseFrame)->DenseRange(0, 3)->Iterations(1)->Unit(benchmark::kMillisecond);
