// cdu_screen.h: the page grid of the Boeing-style CDU and the drawing
// helpers every page of the family uses: fonts, the green of the screen,
// labels and values at their rows, box prompts for values not yet entered,
// reverse fields for modified values, the title row, the rule, the entry
// line, and the page-of-pages stepping.
//
// Pages are laid out on a 282 x 245 design grid; the dispatcher scales it to
// the surface. Drawing objects are made for one frame and freed at its end.
#pragma once

#include "cdu/keypad.h"
#include "display/gdi_objects.h"

#include <string_view>

constexpr float kCduDesignWidth = 282;        // design units across the screen
constexpr float kCduDesignHeight = 245;
constexpr ARGB kCduGreen = 0xFF00FA00;
constexpr ARGB kCduBlack = 0xFF000000;
constexpr float kCduSmallFont = 12;           // Arial, pixel unit: labels
constexpr float kCduLargeFont = 18;           // Arial, pixel unit: values
constexpr float kCduTitleX = 63;              // page title
constexpr float kCduStateX = 18;              // "ACT" / "MOD"
constexpr float kCduCountX = 220;             // page-of-pages count
constexpr float kCduRightEdge = 280;          // right column values end here
constexpr float kCduRightLabelEdge = 272;     // right column labels end here
constexpr float kCduLeftLabelX = 12;
constexpr float kCduRuleY = 184;
constexpr float kCduEntryY = 227;
constexpr float kReverseCharWidth = 14;       // a reverse field's width per character
constexpr float kReverseHeight = 20;

// Row n (1..6) of the grid.
constexpr float CduLabelY(int n) { return 22.0f + 33.0f * static_cast<float>(n - 1); }
constexpr float CduValueY(int n) { return 33.0f + 33.0f * static_cast<float>(n - 1); }

// One frame's drawing on the CDU screen.
class CduScreen {
public:
    explicit CduScreen(gdi::Graphics& graphics);

    // Small letter-spaced label and large value text; align about x.
    void Label(std::string_view text, float x, float y, gdi::TextAlign align = gdi::TextAlign::Left);
    void Value(std::string_view text, float x, float y, gdi::TextAlign align = gdi::TextAlign::Left);
    // The page title at x 63 and, by PlanState, "ACT" green or "MOD" reversed at x 18.
    void Title(std::string_view title, float x = kCduTitleX);
    // The page-of-pages count, in the page's own format ("%2d/%2d", "%2d / %2d").
    void Count(const char* format, int page, int count, float x = kCduCountX);
    // `boxes` outlined 5 x 10 boxes at a pitch of 10 from x, drawn at y + 5.
    void BoxPrompt(float x, float y, int boxes = 5);
    // Green field of 14 units a character and 20 high from (x, y), black text over it.
    void Reverse(std::string_view text, float x, float y);
    // The "- - - -" rule across at y 184.
    void Rule();
    // The message line if a message stands, else the scratchpad, at y 227.
    void EntryLine();

    gdi::Graphics& graphics() { return g_; }

private:
    gdi::Graphics& g_;
    gdi::Font small_;
    gdi::Font large_;
    gdi::SolidBrush green_;
    gdi::Pen pen_;
};

// Page-of-pages stepping of one frame: with the page count of the data, a
// NEXT past the last page gives 1 and a PREV below 1 the last. `reversed`
// turns the sense round (PREV raises the counter). Run before the keys act.
void StepPages(PageCounter& counter, int count, bool reversed = false);
