// c17_engine_pages.cpp: the C-17 engine pages (ENGINE, ENGINE 2, ENGINE OIL)
// and the FLIGHT CONTROLS page. Immediate mode: each frame reads the
// simulator and the tick's counters into one inputs struct and draws from it.
// The limits, colours and limit-time texts are the shared engine rules.
//
// Index:
//   [SECTION] Layout
//   [SECTION] Inputs
//   [SECTION] Shared readings
//   [SECTION] Drawing helpers
//   [SECTION] ENGINE
//   [SECTION] ENGINE 2
//   [SECTION] ENGINE OIL
//   [SECTION] FLIGHT CONTROLS
#include "display/c17_engine_pages.h"

#include "display/engine_limits.h"
#include "frame/sim_access.h"
#include "frame/sim_state.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

using gdi::TextAlign;

namespace {
// [SECTION] Layout
// Columns of the four engines: the dials' left edges and the values' x.
constexpr std::array<float, kC17Engines> kDialX = {7, 62, 138, 193};
constexpr std::array<float, kC17Engines> kTextX = {22, 77, 153, 208};
constexpr float kCentreX = static_cast<float>(kC17CentreX);
constexpr float kDialRadius = 25;         // the arc and the needle's length
constexpr float kMarkOuter = 30;          // limit marks stand from the arc out to here
constexpr float kDialStart = 135;         // degrees clockwise from the right where the arc begins
constexpr float kReadingDown = 10;        // a dial's reading sits this far below and left of its centre
constexpr float kValueFont = 10;          // Arial bold, values and titles
constexpr float kLabelFont = 8;           // Arial bold, labels
constexpr ARGB kCyan = palette::kSkyBlue; // 0xFF18C2E7
constexpr std::size_t kTextSize = 40;     // room for the longest text of a page

// ENGINE: rows of the column, top to bottom (design y).
constexpr float kReverserY = 15;          // top of the reverser circle
constexpr float kReverserRadius = 20;
constexpr float kReverserTextY = 20;
constexpr float kEprY = 55;
constexpr float kN1DialY = 70;
constexpr float kN2DialY = 125;
constexpr float kEgtDialY = 180;
constexpr float kFuelFlowY = 226;
// Limit marks, degrees from the start of the arc: yellow, then red.
constexpr float kN1Marks[2] = {25, 164};
constexpr float kN2Marks[2] = {89, 164};
constexpr float kEgtMarks[2] = {148, 155};

// ENGINE 2.
constexpr float kBarBottom = 180;         // design y of an empty bar
constexpr float kBarWidth = 14;
constexpr float kBarOffset = 18;          // bar's left edge from the column's dial x
constexpr int kBarTicks = 11;
constexpr float kTickShort = 4, kTickLong = 8;
constexpr double kAmbientBase = 300;      // ambient value where the scale's factor is 0
constexpr double kAmbientSpan = 15913;    // ambient value span of the factor 0 to 1
constexpr double kScaleTop = 104, kScaleTopShift = 3.5;       // N1 at the top of the scale
constexpr double kScaleBottom = 40, kScaleBottomShift = 16;   // N1 at its bottom
constexpr double kFixedReading = 1.8;     // the fixed EPR reading beside the bars
constexpr float kFuelFlowTopY = 16;
constexpr float kMaxEgtY = 33;
constexpr float kSecondaryEprY = 191;
constexpr float kSecondaryN1Y = 211;

// ENGINE OIL.
constexpr float kOilTitleY = 2;
constexpr float kOilEngineY = 18;
constexpr float kOilPressureY = 40;
constexpr float kOilDialY = 68;           // top of the temperature dial's box
constexpr float kOilQuantityY = 160;
constexpr float kFuelUsedY = 216;
constexpr double kOilFullScale = 200;     // degrees Celsius at the end of the temperature dial

// FLIGHT CONTROLS.
constexpr float kCentreY = 120;           // origin of the page's relative positions
constexpr float kRudderScaleY = 30;
constexpr float kRudderHalf = 40;         // design units of full rudder trim
constexpr float kStabX = kCentreX + 68, kStabY = kCentreY - 85;
constexpr float kStabScaleX = 222, kStabScaleTop = 34, kStabScaleHalf = 28;
constexpr float kAileronX = 38, kAileronScaleY = 70, kAileronHalf = 28;
constexpr float kWingY = 130;             // the wings' trailing edge
constexpr float kSpoilerX[2] = {78, 154}; // left edges of the spoiler panels
constexpr float kSpoilerWidth = 14, kSpoilerTravel = 24;
constexpr double kSpoilerShown = 800;     // raw position above which a panel shows raised
constexpr double kSpoilerDivide = 9362;   // raw position above which the panels brake
constexpr float kFlapX[2] = {52, 150};    // left edges of the flap panels
constexpr float kFlapWidth = 44, kFlapTravel = 18;
constexpr double kRawFull = 16383;        // a surface's raw value at its stop
constexpr float kFlapTextY = 160, kIndexY = 174, kSlatsY = 188, kGearTextY = 214;
constexpr float kGearBoxY = 196;
constexpr float kGearX[3] = {kCentreX - 7, kCentreX - 37, kCentreX + 23};  // nose, left, right
constexpr double kGearDownRaw = 16383;    // a leg down and locked
constexpr double kGearUpRaw = 0;          // a leg up

// [SECTION] Drawing helpers
// One frame's drawing objects, made and freed within the frame.
struct Ink {
    gdi::Graphics& g;
    gdi::Font value{kArialFont, kValueFont, FontStyleBold};
    gdi::Font label{kArialFont, kLabelFont, FontStyleBold};
    explicit Ink(gdi::Graphics& graphics) : g(graphics) {}

    void Label(const char* text, float x, float y, TextAlign align = TextAlign::Centre) {
        g.DrawText(text, label, palette::kWhite, x, y, align);
    }
    void Value(const char* text, ARGB colour, float x, float y, TextAlign align = TextAlign::Left) {
        g.DrawText(text, value, colour, x, y, align);
    }
};

ARGB LevelColour(LimitLevel level) { return LimitColour(level); }

// A radial line of a dial centred at (cx, cy), `degrees` from the arc's start.
void DrawRadial(gdi::Graphics& g, const gdi::Pen& pen, float cx, float cy, double degrees, float from, float to) {
    double a = (kDialStart + degrees) * 3.14159265358979323846 / 180.0;
    float c = static_cast<float>(std::cos(a)), s = static_cast<float>(std::sin(a));
    g.DrawLine(pen, cx + from * c, cy + from * s, cx + to * c, cy + to * s);
}

// A half-circle dial with its box's top left at (x, y): the white arc, its two
// limit marks, and the needle in the colour of the reading.
void DrawDial(gdi::Graphics& g, float x, float y, double value, double full_scale, const float (&marks)[2],
              ARGB needle_colour) {
    float cx = x + kDialRadius, cy = y + kDialRadius;
    gdi::Pen white(palette::kWhite, 1.5f);
    int box = static_cast<int>(2 * kDialRadius);
    g.DrawArc(white, static_cast<int>(x), static_cast<int>(y), box, box, kDialStart,
              static_cast<float>(kC17DialSweep));
    gdi::Pen yellow(palette::kYellow, 1.5f);
    gdi::Pen red(palette::kRed, 1.5f);
    DrawRadial(g, yellow, cx, cy, marks[0], kDialRadius, kMarkOuter);
    DrawRadial(g, red, cx, cy, marks[1], kDialRadius, kMarkOuter);
    gdi::Pen needle(needle_colour, 2.0f);
    DrawRadial(g, needle, cx, cy, C17NeedleDegrees(value, full_scale), 0, kDialRadius);
}
}  // namespace

// [SECTION] Inputs
C17EngineInputs ReadC17EngineInputs() {
    C17EngineInputs in;
    // 1. The engines' readings.
    for (int e = 0; e < kC17Engines; ++e) {
        auto i = static_cast<std::size_t>(e);
        in.n1[i] = EngineN1Percent(e);
        in.n2[i] = EngineN2Percent(e);
        in.egt[i] = EngineEgtCelsius(e);
        in.fuel_flow[i] = EngineFuelFlowPph(e);
        in.oil_pressure[i] = EngineOilPsi(e);
        in.oil_temperature[i] = EngineOilCelsius(e);
        in.oil_quantity[i] = EngineOilQuarts(e);
        in.reverser[i] = EngineReverserInUse(e);
        in.epr_source[i] = EngineEprSource(e);
        in.fuel_used[i] = g_tick.fuel_used[i];
    }
    in.epr_ambient = EprAmbientValue();
    // 2. The tick's limit counters.
    in.max_thrust_seconds = g_tick.over_n1_seconds;
    in.max_egt_seconds = g_tick.over_temperature_seconds;
    // 3. The surfaces.
    in.flaps_raw = FlapsRaw();
    in.slats_degrees = LeadingEdgeFlapsDegrees();
    for (int leg = 0; leg < 3; ++leg) in.gear[static_cast<std::size_t>(leg)] = GearRaw(leg);
    for (int side = 0; side < 2; ++side) in.spoiler[static_cast<std::size_t>(side)] = SpoilerRaw(side);
    in.elevator_trim = ElevatorTrimFraction();
    in.aileron_trim = AileronTrimFraction();
    in.rudder_trim = RudderTrimFraction();
    return in;
}

// [SECTION] Shared readings
double C17NeedleDegrees(double value, double full_scale) {
    if (!(full_scale > 0) || !std::isfinite(value)) return 0;
    return std::clamp(value / full_scale * kC17DialSweep, 0.0, kC17DialSweep);
}

double C17BarHeight(double n1, double ambient) {
    // The scale narrows as the air thins: a is 1 near sea level, 0 in thin air.
    double a = (ambient - kAmbientBase) / kAmbientSpan;
    double top = kScaleTop - kScaleTopShift * a;
    double bottom = kScaleBottom - kScaleBottomShift * a;
    if (!std::isfinite(n1) || !std::isfinite(a) || top == bottom) return 0;
    double height = kC17BarFull - (top - n1) / (top - bottom) * kC17BarFull;
    return std::clamp(height, 0.0, kC17BarFull);
}

const char* C17GearText(const std::array<double, 3>& gear) {
    bool down = true, up = true;
    for (double leg : gear) {
        down = down && leg >= kGearDownRaw;
        up = up && leg <= kGearUpRaw;
    }
    return down ? "DOWN" : up ? "UP" : "TRANSIT";
}

// [SECTION] ENGINE
void DrawC17EnginesFrom(const DisplaySurface& surface, const C17EngineInputs& in) {
    if (surface.graphics == nullptr) return;
    ResetToDesign(surface);
    Ink ink(*surface.graphics);
    gdi::Graphics& g = ink.g;
    char text[kTextSize];

    // 1. The thrust limit time, while the counter runs.
    ThrustTimeText(in.max_thrust_seconds, text, sizeof text);
    if (text[0] != 0) ink.Value(text, kCyan, kCentreX, 0, TextAlign::Centre);

    // 2. Labels in the gap between the inner columns.
    ink.g.DrawText("RATING  1.22 MCT", ink.label, palette::kWhite, 0, 43);
    ink.Label("EPR", kCentreX, 50);
    ink.Label("N1", kCentreX, 80);
    ink.Label("%", kCentreX, 90);
    ink.Label("RPM", kCentreX, 100);
    ink.Label("N2", kCentreX, 135);
    ink.Label("%", kCentreX, 145);
    ink.Label("RPM", kCentreX, 155);
    ink.Label("EGT", kCentreX, 180);
    ink.Label("\xC2\xB0" "C", kCentreX, 190);
    ink.Label("FF", kCentreX, 223);
    ink.Label("PPH", kCentreX, 230);

    // 3. Each engine's column, top to bottom.
    gdi::Pen reverser_pen(kCyan, 1.5f);
    for (int e = 0; e < kC17Engines; ++e) {
        auto i = static_cast<std::size_t>(e);
        float dial_x = kDialX[i], text_x = kTextX[i];

        // 3a. The reverser's two doors and its text.
        if (in.reverser[i]) {
            int box = static_cast<int>(2 * kReverserRadius);
            int left = static_cast<int>(dial_x + kDialRadius - kReverserRadius);
            g.DrawArc(reverser_pen, left, static_cast<int>(kReverserY), box, box, 210, 120);
            g.DrawArc(reverser_pen, left, static_cast<int>(kReverserY), box, box, 30, 120);
            ink.Value("REV", kCyan, dial_x + kDialRadius, kReverserTextY, TextAlign::Centre);
        }

        // 3b. EPR.
        std::snprintf(text, sizeof text, "%1.2f", EngineEpr(e, in.epr_source[i], in.epr_ambient));
        ink.Value(text, palette::kGreen, text_x, kEprY);

        // 3c. The N1, N2 and EGT dials with their readings.
        struct DialRow {
            double value;
            double full_scale;
            const float (&marks)[2];
            LimitLevel level;
            float y;
            const char* format;
        };
        const DialRow rows[3] = {
            {in.n1[i], kC17N1FullScale, kN1Marks, N1Level(in.n1[i]), kN1DialY, "%2.1f"},
            {in.n2[i], kC17N1FullScale, kN2Marks, N1Level(in.n2[i]), kN2DialY, "%2.1f"},
            {in.egt[i], kC17EgtFullScale, kEgtMarks, EgtLevel(in.egt[i]), kEgtDialY, "%3.0f"},
        };
        for (const DialRow& row : rows) {
            ARGB colour = LevelColour(row.level);
            DrawDial(g, dial_x, row.y, row.value, row.full_scale, row.marks, colour);
            std::snprintf(text, sizeof text, row.format, row.value);
            ink.Value(text, colour, text_x, row.y + kDialRadius + kReadingDown);
        }

        // 3d. Fuel flow, down to a multiple of 10.
        double flow = std::isfinite(in.fuel_flow[i]) ? std::clamp(in.fuel_flow[i], -1e9, 1e9) : 0;
        std::snprintf(text, sizeof text, "%4d", static_cast<int>(std::floor(flow / 10.0)) * 10);
        ink.Value(text, palette::kGreen, text_x, kFuelFlowY);
    }
}

void DrawC17Engines(const DisplaySurface& surface) { DrawC17EnginesFrom(surface, ReadC17EngineInputs()); }

// [SECTION] ENGINE 2
void DrawC17EnginesSecondaryFrom(const DisplaySurface& surface, const C17EngineInputs& in) {
    if (surface.graphics == nullptr) return;
    ResetToDesign(surface);
    Ink ink(*surface.graphics);
    gdi::Graphics& g = ink.g;
    char text[kTextSize];

    // 1. The thrust limit time, while the counter runs.
    ThrustTimeText(in.max_thrust_seconds, text, sizeof text);
    if (text[0] != 0) ink.Value(text, kCyan, kCentreX, 0, TextAlign::Centre);

    // 2. The hottest engine's limit and the time left over temperature.
    double hottest = *std::max_element(in.egt.begin(), in.egt.end());
    if (EgtLevel(hottest) == LimitLevel::Warning) {
        std::snprintf(text, sizeof text, "MAX EGT %03.0f", engine_limits::kEgtRed);
        g.DrawText(text, ink.label, palette::kRed, kCentreX, kMaxEgtY, TextAlign::Centre);
    } else if (EgtLevel(hottest) == LimitLevel::Caution) {
        std::snprintf(text, sizeof text, "MAX EGT %03.0f", engine_limits::kEgtYellow);
        g.DrawText(text, ink.label, palette::kYellow, kCentreX, kMaxEgtY, TextAlign::Centre);
    }
    int time_y = 0;
    EgtTimeText(in.max_egt_seconds, text, sizeof text, &time_y);
    if (text[0] != 0) g.DrawText(text, ink.label, kCyan, kCentreX, static_cast<float>(time_y), TextAlign::Centre);

    // 3. Labels.
    g.DrawText("RATING  1.22 MCT", ink.label, palette::kWhite, 0, 43);
    ink.Label("FF PPH", kCentreX, kFuelFlowTopY);
    ink.Label("EPR", kCentreX, kSecondaryEprY);
    ink.Label("%RPM", kCentreX, kSecondaryN1Y);
    std::snprintf(text, sizeof text, "%1.1f", kFixedReading);
    ink.Value(text, kCyan, kCentreX, kBarBottom - kC17BarFull - 4, TextAlign::Centre);

    // 4. Each engine: fuel flow, its bar on the moving scale, EPR and N1.
    gdi::Pen white(palette::kWhite, 1.0f);
    for (int e = 0; e < kC17Engines; ++e) {
        auto i = static_cast<std::size_t>(e);
        float text_x = kTextX[i];
        float bar_x = kDialX[i] + kBarOffset;
        ARGB colour = LevelColour(N1Level(in.n1[i]));

        std::snprintf(text, sizeof text, "%5.0f", in.fuel_flow[i]);
        ink.Value(text, palette::kGreen, bar_x + kBarWidth / 2, kFuelFlowTopY + 10, TextAlign::Centre);

        // 4a. The tick marks, every tenth of the scale; the ends long.
        for (int tick = 0; tick < kBarTicks; ++tick) {
            float y = kBarBottom - static_cast<float>(tick) * static_cast<float>(kC17BarFull) / (kBarTicks - 1);
            float length = (tick == 0 || tick == kBarTicks - 1) ? kTickLong : kTickShort;
            g.DrawLine(white, bar_x - 2 - length, y, bar_x - 2, y);
        }
        // 4b. The bar and its frame.
        float height = static_cast<float>(C17BarHeight(in.n1[i], in.epr_ambient));
        gdi::SolidBrush fill(colour);
        if (height > 0)
            g.FillRectangle(fill, static_cast<int>(bar_x), static_cast<int>(std::lround(kBarBottom - height)),
                            static_cast<int>(kBarWidth), static_cast<int>(std::lround(height)));
        g.DrawRectangle(white, static_cast<int>(bar_x), static_cast<int>(kBarBottom - kC17BarFull),
                        static_cast<int>(kBarWidth), static_cast<int>(kC17BarFull));

        // 4c. EPR and N1 under the bar.
        std::snprintf(text, sizeof text, "%1.2f", EngineEpr(e, in.epr_source[i], in.epr_ambient));
        ink.Value(text, palette::kGreen, text_x, kSecondaryEprY);
        std::snprintf(text, sizeof text, "%2.1f", in.n1[i]);
        ink.Value(text, colour, text_x, kSecondaryN1Y);
    }
}

void DrawC17EnginesSecondary(const DisplaySurface& surface) {
    // Over temperature, the first five minutes show as 05:00 left: the page
    // raises the tick's counter to 300 seconds, from where it counts on.
    int& seconds = g_tick.over_temperature_seconds;
    if (seconds > 0 && seconds < engine_limits::kEgtHeld) seconds = static_cast<int>(engine_limits::kEgtHeld);
    DrawC17EnginesSecondaryFrom(surface, ReadC17EngineInputs());
}

// [SECTION] ENGINE OIL
void DrawC17OilAndFuelFrom(const DisplaySurface& surface, const C17EngineInputs& in) {
    if (surface.graphics == nullptr) return;
    ResetToDesign(surface);
    Ink ink(*surface.graphics);
    gdi::Graphics& g = ink.g;
    char text[kTextSize];
    static constexpr float kOilMarks[2] = {
        static_cast<float>(engine_limits::kOilNeedleYellow / kOilFullScale * kC17DialSweep),
        static_cast<float>(engine_limits::kOilNeedleRed / kOilFullScale * kC17DialSweep)};

    // 1. Title and labels.
    ink.Value("ENGINE OIL", palette::kWhite, kCentreX, kOilTitleY, TextAlign::Centre);
    ink.Label("PRESS", kCentreX, kOilPressureY - 4);
    ink.Label("PSI", kCentreX, kOilPressureY + 6);
    ink.Label("TEMP", kCentreX, kOilDialY + kDialRadius);
    ink.Label("\xC2\xB0" "C", kCentreX, kOilDialY + kDialRadius + 10);
    ink.Label("QTY", kCentreX, kOilQuantityY - 4);
    ink.Label("QTS", kCentreX, kOilQuantityY + 6);
    ink.Label("FUEL", kCentreX, kFuelUsedY - 5);
    ink.Label("USED", kCentreX, kFuelUsedY + 5);

    // 2. Each engine's column.
    for (int e = 0; e < kC17Engines; ++e) {
        auto i = static_cast<std::size_t>(e);
        float text_x = kTextX[i];
        std::snprintf(text, sizeof text, "%d", e + 1);
        ink.Value(text, palette::kWhite, kDialX[i] + kDialRadius, kOilEngineY, TextAlign::Centre);

        // 2a. Oil pressure.
        std::snprintf(text, sizeof text, "%3.0f", in.oil_pressure[i]);
        ink.Value(text, LevelColour(OilPressureLevel(in.oil_pressure[i])), text_x, kOilPressureY);

        // 2b. Oil temperature: the dial's needle by its whole-degree limits,
        // the reading by the reading's own.
        double temperature = in.oil_temperature[i];
        DrawDial(g, kDialX[i], kOilDialY, temperature, kOilFullScale, kOilMarks,
                 LevelColour(OilNeedleLevel(temperature)));
        std::snprintf(text, sizeof text, "%2.0f", temperature);
        ink.Value(text, LevelColour(OilTemperatureLevel(temperature)), text_x, kOilDialY + kDialRadius + kReadingDown);

        // 2c. Oil quantity.
        std::snprintf(text, sizeof text, "%3.0f", in.oil_quantity[i]);
        ink.Value(text, LevelColour(OilQuantityLevel(in.oil_quantity[i])), text_x, kOilQuantityY);

        // 2d. Fuel used since the start.
        std::snprintf(text, sizeof text, "%5.0f", in.fuel_used[i]);
        ink.Value(text, kCyan, text_x + 16, kFuelUsedY, TextAlign::Right);
    }
}

void DrawC17OilAndFuel(const DisplaySurface& surface) { DrawC17OilAndFuelFrom(surface, ReadC17EngineInputs()); }

// [SECTION] FLIGHT CONTROLS
void DrawC17ConfigurationFrom(const DisplaySurface& surface, const C17EngineInputs& in) {
    if (surface.graphics == nullptr) return;
    ResetToDesign(surface);
    Ink ink(*surface.graphics);
    gdi::Graphics& g = ink.g;
    char text[kTextSize];
    gdi::Pen white(palette::kWhite, 1.5f);
    gdi::SolidBrush green(palette::kGreen);
    auto clamp_unit = [](double v) { return std::isfinite(v) ? std::clamp(v, -1.0, 1.0) : 0.0; };

    // 1. Rudder trim: a scale across the top and its pointer.
    ink.Label("RUD TRIM", kCentreX, 2);
    ink.Label("10     0     10", kCentreX, 13);
    g.DrawLine(white, kCentreX - kRudderHalf, kRudderScaleY, kCentreX + kRudderHalf, kRudderScaleY);
    g.DrawLine(white, kCentreX, kRudderScaleY - 3, kCentreX, kRudderScaleY + 3);
    float rudder_x = kCentreX + static_cast<float>(clamp_unit(in.rudder_trim)) * kRudderHalf;
    const GpPoint rudder[3] = {{static_cast<int>(rudder_x), static_cast<int>(kRudderScaleY)},
                               {static_cast<int>(rudder_x) - 4, static_cast<int>(kRudderScaleY) + 7},
                               {static_cast<int>(rudder_x) + 4, static_cast<int>(kRudderScaleY) + 7}};
    g.FillPolygon(green, rudder, 3);

    // 2. Stabiliser trim: a vertical scale at the right, nose up at the top.
    ink.Label("STAB", kStabX, kStabY);
    ink.Label("TRIM", kStabX, kStabY + 10);
    float stab_mid = kStabScaleTop + kStabScaleHalf;
    g.DrawLine(white, kStabScaleX, kStabScaleTop, kStabScaleX, kStabScaleTop + 2 * kStabScaleHalf);
    float stab_y = stab_mid - static_cast<float>(clamp_unit(in.elevator_trim)) * kStabScaleHalf;
    const GpPoint stab[3] = {{static_cast<int>(kStabScaleX), static_cast<int>(stab_y)},
                             {static_cast<int>(kStabScaleX) + 7, static_cast<int>(stab_y) - 4},
                             {static_cast<int>(kStabScaleX) + 7, static_cast<int>(stab_y) + 4}};
    g.FillPolygon(green, stab, 3);

    // 3. Aileron trim: a scale at the left, left wing down to the left.
    ink.Label("AIL", kAileronX, kStabY);
    ink.Label("TRIM", kAileronX, kStabY + 10);
    g.DrawLine(white, kAileronX - kAileronHalf, kAileronScaleY, kAileronX + kAileronHalf, kAileronScaleY);
    ink.Label("LWD", kAileronX - kAileronHalf, kAileronScaleY + 8, TextAlign::Left);
    ink.Label("RWD", kAileronX + kAileronHalf, kAileronScaleY + 8, TextAlign::Right);
    float ail_x = kAileronX + static_cast<float>(clamp_unit(in.aileron_trim)) * kAileronHalf;
    const GpPoint ail[3] = {{static_cast<int>(ail_x), static_cast<int>(kAileronScaleY)},
                            {static_cast<int>(ail_x) - 4, static_cast<int>(kAileronScaleY) - 7},
                            {static_cast<int>(ail_x) + 4, static_cast<int>(kAileronScaleY) - 7}};
    g.FillPolygon(green, ail, 3);

    // 4. The wings' trailing edge with the spoiler panels on it.
    g.DrawLine(white, 30, kWingY, kCentreX - 12, kWingY);
    g.DrawLine(white, kCentreX + 12, kWingY, kC17Width - 30, kWingY);
    ink.Label("GND", kCentreX, kWingY - 8);
    double raised = 0;
    for (int side = 0; side < 2; ++side) {
        double raw = in.spoiler[static_cast<std::size_t>(side)];
        if (!(raw > kSpoilerShown)) continue;
        raised = std::max(raised, raw);
        float height = static_cast<float>(std::min(raw, kRawFull) / kRawFull) * kSpoilerTravel;
        g.FillRectangle(green, static_cast<int>(kSpoilerX[side]), static_cast<int>(std::lround(kWingY - height)),
                        static_cast<int>(kSpoilerWidth), static_cast<int>(std::lround(height)));
    }
    if (raised > 0)
        ink.Value(raised > kSpoilerDivide ? "SPD BR" : "DLC", kCyan, kCentreX, kWingY - 36, TextAlign::Centre);

    // 5. Flaps below the trailing edge, and their position as text.
    double flaps = std::isfinite(in.flaps_raw) ? std::clamp(in.flaps_raw, 0.0, kRawFull) : 0;
    float droop = static_cast<float>(flaps / kRawFull) * kFlapTravel;
    for (float x : kFlapX) {
        g.DrawRectangle(white, static_cast<int>(x), static_cast<int>(kWingY), static_cast<int>(kFlapWidth), 4);
        if (droop > 0)
            g.FillRectangle(green, static_cast<int>(x), static_cast<int>(kWingY + 4), static_cast<int>(kFlapWidth),
                            static_cast<int>(std::lround(droop)));
    }
    std::snprintf(text, sizeof text, "FLAPS %s", FlapText(flaps));
    ink.Value(text, palette::kGreen, kCentreX, kFlapTextY, TextAlign::Centre);
    ink.Label("INDEX 100", kCentreX, kIndexY);

    // 6. Slats, shown down while the leading edge is out.
    ink.Label("SLATS", kAileronX, kSlatsY);
    if (in.slats_degrees > 0) ink.Value("DOWN", palette::kGreen, kAileronX, kSlatsY + 10, TextAlign::Centre);

    // 7. Gear: a box a leg, filled when down, and the text.
    gdi::SolidBrush yellow(palette::kYellow);
    for (std::size_t leg = 0; leg < 3; ++leg) {
        int x = static_cast<int>(kGearX[leg]);
        g.DrawRectangle(white, x, static_cast<int>(kGearBoxY), 14, 12);
        if (in.gear[leg] >= kGearDownRaw) g.FillRectangle(green, x + 2, static_cast<int>(kGearBoxY) + 2, 11, 9);
        else if (in.gear[leg] > kGearUpRaw) g.FillRectangle(yellow, x + 2, static_cast<int>(kGearBoxY) + 2, 11, 9);
    }
    const char* gear = C17GearText(in.gear);
    ARGB gear_colour = gear[0] == 'D' ? palette::kGreen : gear[0] == 'U' ? palette::kWhite : palette::kYellow;
    std::snprintf(text, sizeof text, "GEAR %s", gear);
    ink.Value(text, gear_colour, kCentreX, kGearTextY, TextAlign::Centre);
}

void DrawC17Configuration(const DisplaySurface& surface) {
    DrawC17ConfigurationFrom(surface, ReadC17EngineInputs());
}
