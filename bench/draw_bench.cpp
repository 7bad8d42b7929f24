// draw_bench.cpp: the cost of drawing through the GDI+ stand-in: a map-like
// frame (clear, scale, clip to a disc, symbols, route lines, arcs, labels),
// and string measuring alone.
#include "display/gdi_objects.h"

#include <benchmark/benchmark.h>
#include <orbhost.h>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

struct Surface {
    std::vector<uint32_t> pixels;
    OrbDeviceContext dc{};
    Surface(int w, int h) : pixels(static_cast<size_t>(w) * h) {
        dc = OrbDeviceContext{kOrbDeviceContextMagic, pixels.data(), w, h, w * 4};
    }
};

// One frame of a 488 x 604 display drawn from a 244 x 302 design.
void DrawMapFrame(HDC hdc, int symbols, int labels, bool clip) {
    gdi::Graphics g(hdc);
    g.SetSmoothing(SmoothingModeHighQuality);
    g.Clear(0xFF000000);
    g.SetTextHint(TextRenderingHintAntiAlias);
    g.ResetTransform();
    g.Scale(2.0f, 2.0f);
    gdi::SolidBrush background(0xFF101010);
    g.FillRectangle(background, 0, 0, 244, 302);
    gdi::Path disc;
    disc.AddEllipse(2, 40, 240, 240);
    if (clip) g.SetClip(disc);
    g.Translate(122, 160);
    gdi::Pen white(0xFFDEE6E9, 1.0f);
    gdi::Pen magenta(0xFFFF13D5, 2.0f);
    gdi::Pen dashed(0xFF02A7EB, 1.0f);
    dashed.SetDash(DashStyleDash);
    gdi::Font font("HW Arial", 10, FontStyleBold);
    g.DrawArc(white, -110, -110, 220, 220, 210, 120);
    for (int i = 0; i < symbols; ++i) {
        int x = (i * 37) % 220 - 110, y = (i * 53) % 220 - 110;
        GpPoint star[9] = {{x, y}, {x + 1, y + 5}, {x + 5, y + 6}, {x + 1, y + 7}, {x, y + 11},
                           {x - 1, y + 7}, {x - 5, y + 6}, {x - 1, y + 5}, {x, y}};
        g.DrawLines(i % 7 == 0 ? magenta : white, star, 9);
        if (i > 0) g.DrawLine(i % 5 == 0 ? dashed : white, float(x), float(y), float(x - 37), float(y - 53));
    }
    char label[16];
    for (int i = 0; i < labels; ++i) {
        std::snprintf(label, sizeof label, "WPT%02d", i);
        g.DrawText(label, font, 0xFFDEE6E9, float((i * 41) % 200 - 100), float((i * 29) % 200 - 100));
    }
    g.ResetClip();
}

void BM_MapFrame(benchmark::State& state) {
    Surface s(488, 604);
    for (auto _ : state) DrawMapFrame(&s.dc, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), state.range(2) != 0);
    state.SetItemsProcessed(state.iterations());
}
// Arguments: symbols, labels, clip to the map disc.
BENCHMARK(BM_MapFrame)->Args({50, 20, 1})->Args({200, 60, 1})->Args({200, 60, 0})->Unit(benchmark::kMillisecond);

// A CDU screen: 14 lines of 24 monospace characters.
void BM_CduTextScreen(benchmark::State& state) {
    Surface s(400, 320);
    for (auto _ : state) {
        gdi::Graphics g(&s.dc);
        g.Clear(0xFF000000);
        gdi::Font font("Courier New", 17, FontStyleBold);
        for (int row = 0; row < 14; ++row) {
            g.DrawText("1L  KSEA/16L   310/FL350", font, 0xFF00FA00, 8, 8.0f + row * 21);
        }
    }
    state.SetItemsProcessed(state.iterations() * 14);
}
BENCHMARK(BM_CduTextScreen)->Unit(benchmark::kMillisecond);

void BM_MeasureString(benchmark::State& state) {
    Surface s(16, 16);
    gdi::Graphics g(&s.dc);
    gdi::Font font("Arial", 12);
    for (auto _ : state) benchmark::DoNotOptimize(g.MeasureText("ILS-1 110.30", font));
}
BENCHMARK(BM_MeasureString);

}  // namespace
