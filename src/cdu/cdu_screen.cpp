// cdu_screen.cpp: the Boeing-style CDU's drawing helpers.
#include "cdu/cdu_screen.h"

#include "plan/plan_tables.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr float kBoxWidth = 5;                // a box prompt's box
constexpr float kBoxHeight = 10;
constexpr float kBoxPitch = 10;
constexpr float kBoxDrop = 5;                 // below the value's y
constexpr int kRuleDashes = 24;               // "- " pairs that span the screen
}  // namespace

CduScreen::CduScreen(gdi::Graphics& graphics)
    : g_(graphics),
      small_("Arial", kCduSmallFont, FontStyleRegular, UnitPixel),
      large_("Arial", kCduLargeFont, FontStyleRegular, UnitPixel),
      green_(kCduGreen),
      pen_(kCduGreen, 1.0f) {}

void CduScreen::Label(std::string_view text, float x, float y, gdi::TextAlign align) {
    g_.DrawText(text, small_, kCduGreen, x, y, align);
}

void CduScreen::Value(std::string_view text, float x, float y, gdi::TextAlign align) {
    g_.DrawText(text, large_, kCduGreen, x, y, align);
}

void CduScreen::Title(std::string_view title, float x) {
    int state = g_plan.context.PlanState;
    if (state == 3) Value("ACT", kCduStateX, 0);
    if (state == 4) Reverse("MOD", kCduStateX, 0);
    Value(title, x, 0);
}

void CduScreen::Count(const char* format, int page, int count, float x) {
    char text[32];
    std::snprintf(text, sizeof text, format, page, count);
    Label(text, x, 0);
}

void CduScreen::BoxPrompt(float x, float y, int boxes) {
    for (int i = 0; i < boxes; ++i) {
        int left = static_cast<int>(x + kBoxPitch * static_cast<float>(i));
        int top = static_cast<int>(y + kBoxDrop);
        int right = left + static_cast<int>(kBoxWidth);
        int bottom = top + static_cast<int>(kBoxHeight);
        const GpPoint strip[5] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
        g_.DrawLines(pen_, strip, 5);
    }
}

void CduScreen::Reverse(std::string_view text, float x, float y) {
    int width = static_cast<int>(kReverseCharWidth * static_cast<float>(text.size()));
    g_.FillRectangle(green_, static_cast<int>(x), static_cast<int>(y), width, static_cast<int>(kReverseHeight));
    g_.DrawText(text, large_, kCduBlack, x, y);
}

void CduScreen::Rule() {
    char rule[2 * kRuleDashes + 1] = {};
    for (int i = 0; i < kRuleDashes; ++i) {
        rule[2 * i] = '-';
        rule[2 * i + 1] = ' ';
    }
    rule[2 * kRuleDashes - 1] = 0;
    Value(rule, 0, kCduRuleY);
}

void CduScreen::EntryLine() {
    std::string_view message = CduMessageText();
    Value(message.empty() ? ScratchpadText() : message, 0, kCduEntryY);
}

void StepPages(PageCounter& counter, int count, bool reversed) {
    counter.count = std::max(1, count);
    int up = g_smiths.NextPageLatch ? 1 : 0;
    int down = g_smiths.PrevPageLatch ? 1 : 0;
    if (reversed) std::swap(up, down);
    int page = counter.page + up - down;
    if (page > counter.count) page = 1;
    if (page < 1) page = counter.count;
    counter.page = page;
}
