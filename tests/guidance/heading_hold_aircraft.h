// heading_hold_aircraft.h: a point-mass aircraft on the sphere for guidance
// tests. Its autopilot holds the heading bug and turns toward it at 3 degrees
// a second; the wind drifts it. It sees the module only as the simulator
// does: it takes the heading bug events the module sends, and shows its state
// through the fake simulator's tokens. Each tick advances TICK18, runs the
// module's tick and moves the aircraft by 1/18 s.
#pragma once

#include "frame/engine_tick.h"
#include "frame/sim_access.h"
#include "guidance/geodesy.h"
#include "support/fake_panels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace guidance_test {

constexpr unsigned kHeadingBugEvent = 0x101FA;

struct HeadingHoldAircraft {
    explicit HeadingHoldAircraft(FakeSimulator& simulator) : sim(simulator) {
        sim.tokens[Token::AP_HEADING_HOLD] = 1;
        events_seen = sim.key_events.size();
    }

    // Puts the aircraft somewhere, its bug on its heading, and runs a second
    // of ticks without moving it, so that every sample group has run.
    void Place(double latitude, double longitude, double heading_true) {
        lat = latitude;
        lon = longitude;
        heading = heading_true;
        bug_magnetic = NormaliseMagnetic(heading_true - variation);
        Publish();
        for (int i = 0; i < 18; ++i) {
            sim.tokens[Token::TICK18] += 1;
            EngineTick();
        }
        TakeBugEvents();
    }

    void Publish() {
        sim.tokens[Token::MAGNETIC_VARIATION] = variation;
        sim.tokens[Token::LATITUDE] = lat * 111130.555557;
        sim.tokens[Token::LONGITUDE] = (lon < 0 ? lon + 360.0 : lon) * 781874935307.4;
        sim.tokens[Token::HEADING_TRUE] = heading;
        sim.tokens[Token::HEADING_MAGNETIC] = NormaliseMagnetic(heading - variation);
        sim.tokens[Token::AP_HEADING_BUG] = bug_magnetic;
        sim.tokens[Token::GROUND_VELOCITY] = ground_speed * 1.68781;
        sim.tokens[Token::WIND_SPEED] = wind_speed;
        sim.tokens[Token::WIND_DIRECTION] = wind_from;
    }

    // The bug follows every heading event the module sent since the last look.
    void TakeBugEvents() {
        for (size_t i = events_seen; i < sim.key_events.size(); ++i)
            if (sim.key_events[i].first == kHeadingBugEvent && follow_bug) bug_magnetic = sim.key_events[i].second;
        events_seen = sim.key_events.size();
    }

    // One tick of 1/18 s: the module's tick, then the aircraft moves.
    void Tick() {
        sim.tokens[Token::TICK18] += 1;
        EngineTick();
        TakeBugEvents();
        const double dt = 1.0 / 18.0;
        double target = bug_magnetic + variation;
        double diff = std::remainder(target - heading, 360.0);
        heading += std::clamp(diff, -3.0 * dt, 3.0 * dt);
        heading = ModuloPositive(heading, 360.0);
        // Air vector plus wind (blowing from wind_from).
        double north = true_airspeed * std::cos(heading * kDegToRad) - wind_speed * std::cos(wind_from * kDegToRad);
        double east = true_airspeed * std::sin(heading * kDegToRad) - wind_speed * std::sin(wind_from * kDegToRad);
        ground_speed = std::hypot(north, east);
        double track = ModuloPositive(std::atan2(east, north) * kRadToDeg, 360.0);
        ProjectPoint(lat, lon, track, ground_speed * dt / 3600.0, lat, lon);
        Publish();
    }

    void Fly(double seconds) {
        for (int i = 0; i < static_cast<int>(seconds * 18.0); ++i) Tick();
    }

    // The magnetic bearing from the aircraft to a point, as a pilot would work it out.
    double MagneticBearingTo(double to_lat, double to_lon) const {
        double distance = 0, bearing = 0;
        GreatCircle(lat, lon, to_lat, to_lon, distance, bearing);
        return NormaliseMagnetic(bearing - variation);
    }

    FakeSimulator& sim;
    double lat = 0, lon = 0;                // degrees
    double heading = 0;                     // true, degrees
    double bug_magnetic = 0;                // the autopilot's heading bug
    double variation = 16;                  // east, as around Seattle
    double true_airspeed = 300, ground_speed = 300;  // knots
    double wind_speed = 0, wind_from = 0;   // knots; true direction it blows from
    bool follow_bug = true;                 // false: the autopilot keeps its heading
    size_t events_seen = 0;
};

// Heading bug events the module has sent so far, and the last one's value.
inline int HeadingEvents(const FakeSimulator& sim) { return sim.CountEvents(kHeadingBugEvent); }

inline int LastHeadingSent(const FakeSimulator& sim) {
    for (size_t i = sim.key_events.size(); i > 0; --i)
        if (sim.key_events[i - 1].first == kHeadingBugEvent) return static_cast<int>(sim.key_events[i - 1].second);
    return -1;
}

// The difference of two directions, -180..180.
inline double DirectionDifference(double a, double b) { return std::remainder(a - b, 360.0); }

}  // namespace guidance_test
