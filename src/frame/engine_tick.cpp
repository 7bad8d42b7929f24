// engine_tick.cpp: the gate of the tick. The stages behind it come next.
#include "frame/engine_tick.h"

#include "frame/sim_access.h"

SimState g_sim;
TickState g_tick;

void EngineTick() {
    SimState& s = g_sim;
    TickState& t = g_tick;
    s.ground_speed = GroundSpeedKnots();
    s.ias_smoothed = 0.7 * s.ias_smoothed + 0.3 * IndicatedAirspeedKnots();
    s.indicated_altitude.Set(IndicatedAltitudeFeet());
    s.tick_value = ReadToken(Token::TICK18);
    if (s.tick_value == t.last_tick_value) return;
    t.last_tick_value = s.tick_value;
    ++t.ticks;
}
