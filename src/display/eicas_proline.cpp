// eicas_proline.cpp: the PROLINE_EICAS strip. Two N1 dials (engine 1 left,
// engine 2 right), each with its scale, red limit, cyan reference bug, needle
// and digital N1, then a block of N2, fuel flow and oil readings for both
// engines. Immediate mode: every frame reads the simulator and draws.
#include "display/eicas_proline.h"

#include "frame/sim_access.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {
// [SECTION] Geometry, in design units
constexpr double kFullScalePercent = 115.0;   // N1 at the end of the scale
constexpr float kFullScaleDegrees = 290.0f;   // clockwise from the right
constexpr float kLimitDegrees = 252.174f;     // 100 per cent
constexpr float kReferenceDegrees = 233.261f; // 92.5 per cent
constexpr float kLowMarkDegrees = 6.76667f;
constexpr int kScaleRadius = 40;
constexpr float kDialCentreX[2] = {100.0f, 270.0f};  // engine 1, engine 2
constexpr float kDialCentreY = 55.0f;
constexpr float kBlockX = 360.0f;             // the readings' block
constexpr float kBlockY = 10.0f;
constexpr float kEngine2ValueX = 2.0f;        // left edge of engine 2's values
constexpr float kEngine1ValueEnd = 125.0f;    // right edge of engine 1's values
constexpr float kCharBox = 16.0f;             // width of a character's box
constexpr float kFontSize = 16.0f;
constexpr ARGB kCyan = palette::kBlue;        // 0xFF02A7EB
constexpr std::size_t kValueTextSize = 24;

// Draws one dial about its centre, already translated there.
void DrawN1Dial(gdi::Graphics& g, const gdi::Font& font, double n1) {
    gdi::Pen white(palette::kWhite, 1.0f);
    gdi::Pen green(palette::kGreen, 1.0f);
    gdi::Pen red(palette::kRed, 2.0f);
    gdi::SolidBrush cyan(kCyan);

    // 1. Scale: the arc and its end ticks.
    g.DrawArc(white, -kScaleRadius, -kScaleRadius, 2 * kScaleRadius, 2 * kScaleRadius, 0.0f, kFullScaleDegrees);
    for (float angle : {0.0f, kFullScaleDegrees}) {
        GraphicsState s = g.Save();
        g.Rotate(angle);
        g.DrawLine(white, 35, 0, 45, 0);
        g.Restore(s);
    }

    // 2. The red limit at 100 per cent.
    GraphicsState s = g.Save();
    g.Rotate(kLimitDegrees);
    g.DrawLine(red, 30, 0, 48, 0);
    g.Restore(s);

    // 3. The cyan reference bug at 92.5 per cent.
    s = g.Save();
    g.Rotate(kReferenceDegrees);
    const GpPoint bug[3] = {{40, 0}, {48, -4}, {48, 4}};
    g.FillPolygon(cyan, bug, 3);
    g.Restore(s);

    // 4. The low mark: a spoke and its cross line.
    s = g.Save();
    g.Rotate(kLowMarkDegrees);
    g.DrawLine(white, 0, 0, kScaleRadius, 0);
    g.DrawLine(white, 35, -5, 35, 5);
    g.Restore(s);

    // 5. The needle, unlimited: past 115 per cent it turns past the scale's end.
    float turn = static_cast<float>(n1 / kFullScalePercent * kFullScaleDegrees);
    if (!std::isfinite(turn)) turn = 0;
    s = g.Save();
    g.Rotate(turn);
    const GpPoint needle[7] = {{0, -3}, {32, -3}, {32, -6}, {40, 0}, {32, 6}, {32, 3}, {0, 3}};
    g.DrawPolygon(green, needle, 7);
    g.Restore(s);

    // 6. Top left: the label, the digital N1 and the arrow.
    g.DrawText("N1", font, palette::kWhite, -100, -30);
    char text[kValueTextSize];
    std::snprintf(text, sizeof text, "%.1f", n1);
    g.DrawText(text, font, palette::kGreen, -95, -15);
    const GpPoint arrow[7] = {{-70, -35}, {-62, -27}, {-66, -27}, {-66, -19}, {-74, -19}, {-74, -27}, {-78, -27}};
    g.DrawPolygon(green, arrow, 7);
}

// One row of the block: engine 2's value from the left edge, engine 1's
// right-aligned to its end.
void DrawValueRow(gdi::Graphics& g, const gdi::Font& font, float y, const char* format, double engine1,
                  double engine2) {
    char text[kValueTextSize];
    std::snprintf(text, sizeof text, format, engine2);
    g.DrawText(text, font, palette::kGreen, kBlockX + kEngine2ValueX, kBlockY + y);
    std::snprintf(text, sizeof text, format, engine1);
    float width = kCharBox * static_cast<float>(std::strlen(text));
    gdi::StringFormat right(StringAlignmentFar);
    GpRectF box{kBlockX + kEngine1ValueEnd - width, kBlockY + y, width, 2 * kFontSize};
    g.DrawTextInBox(text, font, palette::kGreen, box, right);
}
}  // namespace

// [SECTION] The page
void DrawProlineEicas(const DisplaySurface& surface) {
    if (surface.graphics == nullptr) return;
    gdi::Graphics& g = *surface.graphics;
    gdi::Font font(kArialFont, kFontSize, FontStyleBold);

    // 1. The two N1 dials.
    for (int engine = 0; engine < 2; ++engine) {
        ResetToDesign(surface);
        g.Translate(kDialCentreX[engine], kDialCentreY);
        DrawN1Dial(g, font, EngineN1Percent(engine));
    }
    ResetToDesign(surface);

    // 2. The block's labels.
    g.DrawText("N2", font, palette::kWhite, kBlockX + 40, kBlockY + 0);
    g.DrawText("FF", font, palette::kWhite, kBlockX + 40, kBlockY + 18);
    g.DrawText("PRESS", font, palette::kWhite, kBlockX + 20, kBlockY + 36);
    g.DrawText("OIL", font, palette::kWhite, kBlockX + 40, kBlockY + 54);
    g.DrawText("TEMP", font, palette::kWhite, kBlockX + 20, kBlockY + 72);

    // 3. The readings of both engines.
    DrawValueRow(g, font, 0, "%.1f", EicasN2Percent(0), EicasN2Percent(1));
    DrawValueRow(g, font, 18, "%.0f", EngineFuelFlowPph(0), EngineFuelFlowPph(1));
    DrawValueRow(g, font, 36, "%.0f", EngineOilPsi(0), EngineOilPsi(1));
    DrawValueRow(g, font, 72, "%.0f", EngineOilCelsius(0), EngineOilCelsius(1));
}
