// gauge_store_test.cpp: what the simulator keeps for each placed gauge and
// how it walks it: header and chain copies, drawing contexts, the order of
// services, frames of visible windows only, the strings of the last frame,
// and the composed picture. A small gauge of the test's own stands in for
// the module's, so that every call it gets can be watched.
#include "frame/gauge_table.h"
#include "orbsim/gauge_store.h"
#include "orbsim/host_interface.h"
#include "orbsim/host_state.h"
#include "orbsim/png_out.h"
#include "orbsim/script.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {
using Calls = std::vector<std::pair<int, uint32_t>>;  // service, extra data

struct CallLog {
    Calls calls;
    std::vector<std::string> parameters;           // as each call saw them
};
CallLog g_log;

ELEMENT_STATIC_IMAGE g_bezel{};
ELEMENT_STATIC_IMAGE g_surface{};
ELEMENT_HEADER* g_bezel_next[2] = {&g_surface.header, nullptr};
ELEMENT_HEADER* g_first = &g_bezel.header;
GAUGEHDR g_fake{};
MODULE_LINKAGE g_linkage{};

// What the gauge does at a draw: its picture (two strings, the lower first,
// and a red pixel), nothing (it repaints only on request), or a dark screen.
enum class Paint { Picture, Nothing, Dark };
Paint g_paint = Paint::Picture;

// Paints as g_paint says at each draw, unless its parameter says "quiet";
// clears the surface's on-screen bit, drawn or not, as the module does.
void FSAPI FakeCallback(GAUGEHDR* gauge, SINT32 service, UINT32 extra) {
    g_log.calls.emplace_back(service, extra);
    g_log.parameters.emplace_back(gauge->parameters ? gauge->parameters : "(null)");
    if (service != PANEL_SERVICE_PRE_DRAW || std::string(gauge->parameters) == "quiet") return;
    ELEMENT_HEADER* bezel = *gauge->elements_list;
    auto* surface = reinterpret_cast<ELEMENT_STATIC_IMAGE*>(bezel->next_element[0]);
    auto* dc = static_cast<OrbDeviceContext*>(surface->hdc);
    const OrbHostInterface* host = orbsim::HostInterface();
    if (g_paint == Paint::Picture) {
        host->text_drawn(dc, "LOWER", 10, 50, 40, 12, 0xFF00FF00, "Arial", 12, 1);
        host->text_drawn(dc, "UPPER", 5, 20, 40, 12, 0xFFFFFFFF, "Arial", 12, 1);
        dc->pixels[3 * dc->width + 2] = 0xFFFF0000;
    } else if (g_paint == Paint::Dark) {
        for (int i = 0; i < dc->width * dc->height; ++i) dc->pixels[i] = 0xFF000000;
    }
    surface->header.image_flags =
        static_cast<FLAGS>(static_cast<FLAGS32>(surface->header.image_flags) & ~IMAGE_ON_SCREEN);
}

void BuildFakeGauge() {
    g_bezel = {};
    g_surface = {};
    g_bezel.header.element_type = ELEMENT_TYPE_STATIC_IMAGE;
    g_bezel.header.resource_id = ResourceIdOf(GaugeId::SMITHS_FMS, 0);  // its sizes, from the grey stand-ins
    g_bezel.header.image_flags = static_cast<FLAGS>(IMAGE_USE_TRANSPARENCY);
    g_bezel.header.next_element = g_bezel_next;
    g_surface.header.element_type = ELEMENT_TYPE_STATIC_IMAGE;
    g_surface.header.resource_id = ResourceIdOf(GaugeId::SMITHS_FMS, 1);
    g_surface.header.position = PIXPOINT{66, 40};
    g_surface.header.image_flags = static_cast<FLAGS>(IMAGE_USE_ERASE | IMAGE_CREATE_DIBSECTION);
    g_fake = {};
    g_fake.gauge_header_version = 800;
    g_fake.gauge_name = const_cast<char*>("FAKE");
    g_fake.elements_list = &g_first;
    g_fake.gauge_callback = FakeCallback;
    g_linkage = {};
    g_linkage.gauge_header_ptr[0] = &g_fake;
}

class GaugeStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        BuildFakeGauge();
        g_log = {};
        g_paint = Paint::Picture;
        orbsim::g_host = {};
        orbsim::g_host.gauges.resources.warned_absent = true;  // the grey layers are meant here
        orbsim::g_host.gauges.resource_handle = 0x5150;
        orbsim::PanelDesc panel;
        std::string error;
        ASSERT_TRUE(orbsim::ParsePanelText("[Window00]\nident=0\nvisible=1\ngauge00=orb1!FAKE,10,10\n"
                                           "gauge01=orb1!FAKE,400,10,,,quiet\n"
                                           "[Window01]\nident=4004\ngauge00=orb1!FAKE,0,0,415,640,WN\n",
                                           panel, error))
            << error;
        ASSERT_TRUE(orbsim::BuildInstances(store(), panel, &g_linkage, "p.cfg", error)) << error;
    }
    void TearDown() override { orbsim::g_host = {}; }
    orbsim::GaugeStore& store() { return orbsim::g_host.gauges; }
};
}  // namespace

TEST_F(GaugeStoreTest, EachInstanceHasItsOwnHeaderChainAndDrawingContext) {
    ASSERT_EQ(store().instances.size(), 3u);
    orbsim::GaugeInstance& first = *store().instances[0];
    orbsim::GaugeInstance& popup = *store().instances[2];
    EXPECT_EQ(first.ordinal, 1);
    EXPECT_EQ(popup.ordinal, 3);
    EXPECT_STREQ(first.header.parameters, "");
    EXPECT_STREQ(popup.header.parameters, "WN");
    EXPECT_EQ(first.header.size.x, 415);   // from the bezel's bitmap
    EXPECT_EQ(popup.header.size.y, 640);   // from the panel line
    ASSERT_EQ(first.layers.size(), 2u);
    EXPECT_NE(first.header.elements_list, g_fake.elements_list);
    EXPECT_NE(*first.header.elements_list, *popup.header.elements_list);
    EXPECT_EQ(first.layers[1].element->gauge_header, &first.header);
    EXPECT_EQ(first.layers[1].element->previous_element, first.layers[0].element);
    EXPECT_EQ(g_bezel.header.gauge_header, nullptr);  // the module's own chain is left alone

    // A drawing context only where the flags ask for one, of the bitmap's size.
    EXPECT_EQ(first.layers[0].dc, nullptr);
    ASSERT_NE(first.layers[1].dc, nullptr);
    auto* image = reinterpret_cast<ELEMENT_STATIC_IMAGE*>(first.layers[1].element);
    EXPECT_EQ(image->hdc, first.layers[1].dc.get());
    EXPECT_EQ(first.layers[1].dc->magic, kOrbDeviceContextMagic);
    EXPECT_EQ(first.layers[1].dc->width, 284);
    EXPECT_EQ(first.layers[1].dc->height, 233);
    EXPECT_EQ(first.layers[1].dc->stride_bytes, 284 * 4);
    EXPECT_EQ(first.layers[1].dc->pixels[0], orbsim::kFallbackGrey);
    EXPECT_EQ(g_surface.hdc, nullptr);

    // Gauge references of scripts.
    EXPECT_EQ(orbsim::FindInstance(store(), "FAKE"), &first);
    EXPECT_EQ(orbsim::FindInstance(store(), "fake#3"), &popup);
    EXPECT_EQ(orbsim::FindInstance(store(), "FAKE#4"), nullptr);
    EXPECT_EQ(orbsim::FindInstance(store(), "FAKE#x"), nullptr);
}

TEST_F(GaugeStoreTest, ServicesComeInTheSimulatorsOrderWithTheirExtraData) {
    orbsim::RunLoadServices(store());
    Calls load = {{2, 0x5150}, {3, 0x5150}, {4, 0}, {5, 0}, {14, 1}};
    ASSERT_EQ(g_log.calls.size(), 15u);
    EXPECT_EQ(Calls(g_log.calls.begin(), g_log.calls.begin() + 5), load);
    EXPECT_EQ(g_log.calls[14], (std::pair<int, uint32_t>{14, 2}));  // the pop-up's window
    EXPECT_EQ(g_log.parameters[10], "WN");

    // A frame: 6 then 10, for the open window's gauges only.
    g_log = {};
    orbsim::DrawFrame(store());
    Calls frame = {{6, 0}, {10, 0}, {6, 0}, {10, 0}};
    EXPECT_EQ(g_log.calls, frame);
    EXPECT_EQ(store().instances[0]->draws, 1u);
    EXPECT_EQ(store().instances[2]->draws, 0u);
    ASSERT_TRUE(orbsim::SetWindowVisible(store(), 4004, true));
    orbsim::DrawFrame(store());
    EXPECT_EQ(store().instances[2]->draws, 1u);

    g_log = {};
    orbsim::RunKillServices(store());
    Calls kill = {{12, 0}, {13, 0}, {15, 1}};
    EXPECT_EQ(Calls(g_log.calls.begin(), g_log.calls.begin() + 3), kill);
}

TEST_F(GaugeStoreTest, TheLastFrameKeepsItsStringsTopToBottomAndItsPixels) {
    orbsim::DrawFrame(store());
    orbsim::GaugeInstance& drawing = *store().instances[0];
    orbsim::GaugeInstance& quiet = *store().instances[1];
    EXPECT_EQ(drawing.redraws, 1u);
    EXPECT_EQ(quiet.redraws, 0u);
    // Taken and marked on screen again.
    EXPECT_TRUE(static_cast<FLAGS32>(drawing.layers[1].element->image_flags) & IMAGE_ON_SCREEN);

    orbsim::ScriptRun run;
    orbsim::ScriptValue value;
    std::string error;
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "screen FAKE", value, error)) << error;
    EXPECT_EQ(value.text, "UPPER\nLOWER");
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "screen FAKE#2", value, error));
    EXPECT_EQ(value.text, "");
    ASSERT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "gauge.FAKE.texts", value, error));
    EXPECT_EQ(value.number, 2);
    EXPECT_EQ(drawing.text_last[0].argb, 0xFF00FF00u);

    // A second frame replaces the strings rather than adding to them.
    orbsim::DrawFrame(store());
    EXPECT_EQ(drawing.text_last.size(), 2u);
    // Strings drawn on a context nobody owns go nowhere.
    int stray = 0;
    orbsim::HostInterface()->text_drawn(&stray, "STRAY", 0, 0, 1, 1, 0, "", 1, 0);
    EXPECT_EQ(drawing.text_now.size(), 0u);

    // The picture: the bezel's size, the surface at its offset with the red pixel.
    orbsim::Bitmap picture = orbsim::ComposeInstance(drawing);
    EXPECT_EQ(picture.width, 415);
    EXPECT_EQ(picture.height, 640);
    EXPECT_EQ(picture.pixels[static_cast<size_t>((40 + 3) * 415 + 66 + 2)], 0xFFFF0000u);
    EXPECT_EQ(picture.pixels[0], orbsim::kFallbackGrey);
    // A hidden surface leaves the bezel showing.
    drawing.layers[1].element->image_flags |= static_cast<FLAGS>(IMAGE_HIDDEN);
    picture = orbsim::ComposeInstance(drawing);
    EXPECT_EQ(picture.pixels[static_cast<size_t>((40 + 3) * 415 + 66 + 2)], orbsim::kFallbackGrey);
}

TEST_F(GaugeStoreTest, TheScreenKeepsTheStringsOfTheLastFrameThatDrew) {
    orbsim::ScriptRun run;
    orbsim::ScriptValue value;
    std::string error;
    auto screen = [&]() {
        EXPECT_TRUE(orbsim::EvaluateWhat(orbsim::g_host, run, "screen FAKE", value, error)) << error;
        return value.text;
    };
    orbsim::DrawFrame(store());
    EXPECT_EQ(screen(), "UPPER\nLOWER");
    // Frames in which the gauge draws nothing leave its picture, and so its
    // strings, on the screen.
    g_paint = Paint::Nothing;
    orbsim::DrawFrame(store());
    orbsim::DrawFrame(store());
    EXPECT_EQ(screen(), "UPPER\nLOWER");
    EXPECT_EQ(store().instances[0]->redraws, 3u);
    // A new picture without strings (the screen goes dark) takes them away,
    // and a frame without drawing after it keeps it dark.
    g_paint = Paint::Dark;
    orbsim::DrawFrame(store());
    EXPECT_EQ(screen(), "");
    g_paint = Paint::Nothing;
    orbsim::DrawFrame(store());
    EXPECT_EQ(screen(), "");
    g_paint = Paint::Picture;
    orbsim::DrawFrame(store());
    EXPECT_EQ(screen(), "UPPER\nLOWER");
}
