// attitude_pages_test.cpp: every attitude page against the samples a broken
// simulator value brings (not a number, infinities, absurd sizes): none
// prints "nan", "inf" or runaway text, and a plausible frame does print.
#include "attitude_rig.h"
#include "display/c17_attitude.h"
#include "display/eadi_a320.h"
#include "display/eadi_efs50.h"
#include "display/pfd_b777.h"

#include <cmath>

namespace {
AttitudeInputs WildInputs(double v) {
    AttitudeInputs in;
    for (double* field : {&in.ias, &in.mach, &in.altitude, &in.vertical_speed, &in.radio_altitude, &in.baro_mb,
                          &in.baro_inches, &in.selected_ias, &in.selected_mach, &in.selected_altitude,
                          &in.selected_vs, &in.dme, &in.nav_frequency})
        *field = v;
    in.ias_hold = in.altitude_hold = in.nav_signal = in.fd_switch = true;
    return in;
}

struct Page {
    const char* name;
    attitude_rig::PageFrom draw;
    int width, height;                  // the gauge's surface
    float design_width, design_height;  // the page's canvas
};
}  // namespace

TEST(AttitudePages, BrokenSamplesPrintNothingAbsurd) {
    const Page pages[] = {{"B777_PFD_NB", DrawB777PfdFrom, 247, 294, 260, 260},
                          {"A320_EADI_NB", DrawA320EadiFrom, 318, 311, 318, 310},
                          {"EFS50_EADI", DrawEfs50EadiFrom, 280, 262, 266, 230},
                          {"C17 ATT", DrawC17AttitudeFrom, 246, 241, 246, 241}};
    for (const Page& page : pages) {
        nd_test::FreshAircraft();
        for (double v : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300}) {
            nd_test::Frame f = attitude_rig::DrawPage(page.draw, WildInputs(v), page.width, page.height,
                                                      page.design_width, page.design_height);
            for (const auto& s : f.seen) {
                EXPECT_EQ(s.text.find("nan"), std::string::npos) << page.name << ": " << s.text;
                EXPECT_EQ(s.text.find("inf"), std::string::npos) << page.name << ": " << s.text;
                EXPECT_LE(s.text.size(), 10u) << page.name << ": " << s.text;
            }
        }
        // A plausible frame does print: the check above has texts to look at.
        EXPECT_GT(attitude_rig::DrawPage(page.draw, WildInputs(1200), page.width, page.height, page.design_width,
                                         page.design_height)
                      .seen.size(),
                  5u)
            << page.name;
    }
}
