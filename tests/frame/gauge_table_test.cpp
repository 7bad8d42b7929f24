// The gauge list as the simulator reads it: names, header fields, element
// chains and mouse tables.
#include "frame/gauge_callback.h"
#include "frame/gauge_linkage.h"
#include "frame/module_entry.h"
#include "frame/sim_access.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

TEST(GaugeTable, LinkageListsFiftyFourDistinctGaugesAndEndsWithNull) {
    EXPECT_EQ(Linkage.ModuleID, 0x13);
    EXPECT_EQ(Linkage.ModuleVersion, 0x900u);
    EXPECT_EQ(Linkage.ModuleFlags, 0u);
    EXPECT_EQ(Linkage.ModulePriority, 0u);
    EXPECT_NE(Linkage.ModuleInit, nullptr);
    EXPECT_NE(Linkage.ModuleDeinit, nullptr);
    std::set<std::string> names;
    for (int i = 0; i < kGaugeCount; ++i) {
        GAUGEHDR* h = Linkage.gauge_header_ptr[i];
        ASSERT_NE(h, nullptr) << i;
        EXPECT_EQ(h->gauge_header_version, 800u);
        EXPECT_EQ(h->size_x_mm, 312u);
        EXPECT_EQ(h->parameters, nullptr);
        EXPECT_NE(h->mouse_rect, nullptr);
        EXPECT_NE(h->query_routine, nullptr);
        EXPECT_NE(h->kill_routine, nullptr);
        names.insert(h->gauge_name);
        EXPECT_EQ(GaugeIdByName(h->gauge_name), static_cast<GaugeId>(i));
    }
    EXPECT_EQ(Linkage.gauge_header_ptr[kGaugeCount], nullptr);
    EXPECT_EQ(names.size(), 54u);
    EXPECT_EQ(ImportTable.PANELSentry.fnID, 0x0F);
    EXPECT_EQ(ImportTable.nullentry.fnID, 0);
}

TEST(GaugeTable, OnlyWindowOpenersLackACallback) {
    int without = 0;
    for (int i = 0; i < kGaugeCount; ++i) {
        auto id = static_cast<GaugeId>(i);
        bool opener = SpecOf(id).family == GaugeFamily::WindowOpener;
        EXPECT_EQ(HeaderOf(id).gauge_callback == nullptr, opener) << GaugeName(id);
        without += opener;
    }
    EXPECT_EQ(without, 10);
    EXPECT_EQ(kGaugeCount - without, 44);  // 43 working callbacks and BDRY's empty one
}

TEST(GaugeTable, MouseTablesHaveTheRowCountsAndTheNestedForm) {
    for (int i = 0; i < kGaugeCount; ++i) {
        auto id = static_cast<GaugeId>(i);
        const MOUSERECT* rows = MouseTableOf(id);
        int count = MouseRowCount(id);
        EXPECT_EQ(count, SpecOf(id).mouse_rows) << GaugeName(id);
        // Outer parent with an empty box and no cursor.
        EXPECT_EQ(rows[0].rect_type, MOUSE_RECT_PARENT);
        EXPECT_EQ(rows[0].cursor, CURSOR_NONE);
        EXPECT_EQ(rows[0].relative_box.size_x, 0);
        // Areas: parent, one or two children with a handler, end of parent.
        int at = 1;
        while (at < count - 1) {
            ASSERT_EQ(rows[at].rect_type, MOUSE_RECT_PARENT) << GaugeName(id) << " row " << at;
            int children = 0;
            ++at;
            while (rows[at].rect_type == MOUSE_RECT_CHILD) {
                EXPECT_NE(rows[at].mouse_function, nullptr);
                EXPECT_EQ(rows[at].help_id, 0);
                EXPECT_EQ(rows[at].event_id, 0);
                FLAGS32 flags = static_cast<FLAGS32>(rows[at].mouse_flags);
                EXPECT_TRUE(flags == MOUSE_LEFTSINGLE || flags == (MOUSE_LEFTSINGLE | MOUSE_DOWN_REPEAT));
                ++children;
                ++at;
            }
            EXPECT_TRUE(children == 1 || children == 2) << GaugeName(id);
            ASSERT_EQ(rows[at].rect_type, MOUSE_RECT_END_PARENT);
            ++at;
        }
        EXPECT_EQ(at, count - 1) << GaugeName(id);
        EXPECT_EQ(rows[count - 1].rect_type, MOUSE_RECT_END_PARENT);
        EXPECT_EQ(rows[count].rect_type, MOUSE_RECT_EOL);
    }
}

TEST(GaugeTable, DisplaysAndOpenersHaveOneWholeGaugeArea) {
    for (GaugeId id : {GaugeId::HW_B737_ND, GaugeId::FMS_OPEN, GaugeId::DU_1000_EHSI_NB, GaugeId::LNAV}) {
        const MOUSERECT* rows = MouseTableOf(id);
        const GaugeSpec& shape = SpecOf(id);
        int w = shape.bezel_width ? shape.bezel_width : shape.surface_width;
        int h = shape.bezel_width ? shape.bezel_height : shape.surface_height;
        EXPECT_EQ(rows[1].relative_box.x, 0);
        EXPECT_EQ(rows[1].relative_box.size_x, w) << GaugeName(id);
        EXPECT_EQ(rows[1].relative_box.size_y, h) << GaugeName(id);
        EXPECT_EQ(rows[1].cursor, CURSOR_HAND);
    }
}

TEST(GaugeTable, LayerChainsFollowBezelSurfaceIcons) {
    // A bezel gauge: bezel, then the surface with a drawing context at its offset.
    GAUGEHDR& nd = HeaderOf(GaugeId::HW_B737_ND);
    ELEMENT_HEADER* bezel = LayerElement(&nd, 0);
    ELEMENT_HEADER* surface = LayerElement(&nd, 1);
    ASSERT_NE(bezel, nullptr);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(LayerElement(&nd, 2), nullptr);
    EXPECT_EQ(surface->position.x, 18);
    EXPECT_EQ(surface->position.y, 25);
    EXPECT_TRUE(static_cast<FLAGS32>(surface->image_flags) & IMAGE_CREATE_DIBSECTION);
    EXPECT_FALSE(static_cast<FLAGS32>(bezel->image_flags) & IMAGE_CREATE_DIBSECTION);
    EXPECT_EQ(bezel->resource_id, ResourceIdOf(GaugeId::HW_B737_ND, 0));

    // The CDU's two lamps behind its surface, and the EFIS panel's eleven icons.
    EXPECT_EQ(LayerCount(GaugeId::SMITHS_FMS), 4);
    EXPECT_EQ(LayerElement(&HeaderOf(GaugeId::SMITHS_FMS), 3)->element_type, ELEMENT_TYPE_ICON);
    EXPECT_EQ(LayerCount(GaugeId::HW_B737_EFIS_CNTR), 12);
    EXPECT_EQ(LayerCount(GaugeId::A300_EFIS_CTRL), 13);
    // A gauge without bezel keeps its surface as layer 1; C17_MFD has it as layer 0.
    EXPECT_TRUE(LayerOf(GaugeId::HW_B737_ND_NB, 1).surface);
    EXPECT_TRUE(LayerOf(GaugeId::C17_MFD, 0).surface);
    EXPECT_EQ(LayerCount(GaugeId::C17_MFD), 1);
    EXPECT_EQ(LayerCount(GaugeId::SERVER), 0);
    // Luminous variants set the flag on their bezel only.
    EXPECT_TRUE(static_cast<FLAGS32>(LayerElement(&HeaderOf(GaugeId::GNSXLS_LM), 0)->image_flags) & IMAGE_USE_LUMINOUS);
    EXPECT_FALSE(static_cast<FLAGS32>(LayerElement(&HeaderOf(GaugeId::GNSXLS), 0)->image_flags) & IMAGE_USE_LUMINOUS);
}
