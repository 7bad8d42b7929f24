// The bitmaps of the gauges against the gauge table: the simulator takes each
// layer's size from the bitmap its resource id names, so every layer must
// have one of exactly its size; the resource script, the Linux module's
// resource section and the committed files must list the same ids; and the
// icon layers must sit on the controls they light or turn.
#include "display/control_panels.h"
#include "frame/gauge_linkage.h"
#include "make_bitmaps/resource_script.h"
#include "resource_reader.h"
#include "resources/panel_layouts.h"

#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

namespace {

const std::string kResources = std::string(ORB_SOURCE_DIR) + "/src/resources/";

std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The script's entries by id, read once.
const std::map<uint32_t, std::string>& ScriptEntries() {
    static const std::map<uint32_t, std::string> entries = [] {
        std::map<uint32_t, std::string> out;
        std::vector<uint8_t> text = ReadBytes(kResources + "resources.rc");
        std::vector<resource_script::Entry> parsed;
        std::string error;
        EXPECT_TRUE(resource_script::Parse({reinterpret_cast<const char*>(text.data()), text.size()}, parsed, error))
            << "resources.rc:" << error;
        for (const auto& e : parsed) out[e.resource_id] = e.path;
        return out;
    }();
    return entries;
}

std::set<uint32_t> LayerIds() {
    std::set<uint32_t> ids;
    for (int g = 0; g < kGaugeCount; ++g)
        for (int layer = 0; layer < LayerCount(static_cast<GaugeId>(g)); ++layer)
            ids.insert(static_cast<uint32_t>(ResourceIdOf(static_cast<GaugeId>(g), layer)));
    return ids;
}

std::set<uint32_t> KeysOf(const std::map<uint32_t, std::string>& m) {
    std::set<uint32_t> keys;
    for (const auto& [id, path] : m) keys.insert(id);
    return keys;
}

std::string LayerName(GaugeId id, int layer) { return std::string(GaugeName(id)) + " layer " + std::to_string(layer); }

}  // namespace

TEST(GaugeBitmaps, EveryLayerHasABitmapOfItsOwnSize) {
    const auto& script = ScriptEntries();
    EXPECT_EQ(KeysOf(script), LayerIds()) << "resources.rc and the gauge table list different ids";
    int layers = 0;
    for (int g = 0; g < kGaugeCount; ++g) {
        auto id = static_cast<GaugeId>(g);
        for (int layer = 0; layer < LayerCount(id); ++layer, ++layers) {
            auto it = script.find(static_cast<uint32_t>(ResourceIdOf(id, layer)));
            ASSERT_NE(it, script.end()) << LayerName(id, layer);
            std::vector<uint8_t> file = ReadBytes(kResources + it->second);
            resource_reader::Bitmap bitmap;
            std::string error;
            ASSERT_TRUE(resource_reader::DecodeBmp({file.data(), file.size()}, bitmap, error))
                << it->second << ": " << error;
            LayerSpec shape = LayerOf(id, layer);
            EXPECT_EQ(bitmap.width, shape.width) << LayerName(id, layer);
            EXPECT_EQ(bitmap.height, shape.height) << LayerName(id, layer);
            EXPECT_EQ(bitmap.bits_per_pixel, 24) << LayerName(id, layer);

            // Transparency is pure black; anything drawn must stay visibly
            // non-black after a reduction to 5-6-5 colour.
            size_t opaque = 0, too_dark = 0;
            for (uint32_t p : bitmap.pixels) {
                if (p == 0) continue;
                ++opaque;
                uint32_t r = (p >> 16) & 0xFF, g8 = (p >> 8) & 0xFF, b = p & 0xFF;
                if ((r >> 3) == 0 && (g8 >> 2) == 0 && (b >> 3) == 0) ++too_dark;
            }
            EXPECT_EQ(too_dark, 0u) << LayerName(id, layer) << " has pixels that vanish in 16-bit colour";
            if (shape.surface || (layer == 0 && SpecOf(id).bezel_width == 0 && !shape.icon)) {
                EXPECT_EQ(opaque, 0u) << LayerName(id, layer) << ": a surface or backing must be plain black";
            } else {
                // A bezel covers its box but for the screen and the rounded
                // corners; a lamp or switch shows at least a 10 x 10 patch.
                size_t frame = bitmap.pixels.size() - static_cast<size_t>(SpecOf(id).surface_width) *
                                                          static_cast<size_t>(SpecOf(id).surface_height);
                EXPECT_GT(opaque, shape.icon ? 100 : frame * 9 / 10) << LayerName(id, layer);
                if (!shape.icon) {
                    EXPECT_LE(opaque, frame) << LayerName(id, layer) << " paints over its screen";
                }
            }
        }
    }
    EXPECT_EQ(layers, static_cast<int>(LayerIds().size()));
}

TEST(GaugeBitmaps, EveryCommittedBitmapIsListed) {
    std::set<std::string> listed;
    for (const auto& [id, path] : ScriptEntries()) listed.insert(path);
    std::set<std::string> present;
    for (const auto& file : std::filesystem::directory_iterator(kResources + "bitmaps"))
        present.insert("bitmaps/" + file.path().filename().string());
    EXPECT_EQ(present, listed) << "stale or missing files in src/resources/bitmaps: run ./orb bitmaps";
}

TEST(GaugeBitmaps, TheLinuxModuleCarriesExactlyTheListedBitmaps) {
    std::vector<uint8_t> module = ReadBytes(ORB_MODULE_PATH);
    ASSERT_GT(module.size(), sizeof(Elf64_Ehdr));

    // Find the section by the ELF headers themselves, apart from the reader.
    Elf64_Ehdr eh;
    std::memcpy(&eh, module.data(), sizeof(eh));
    ASSERT_EQ(std::memcmp(eh.e_ident, ELFMAG, SELFMAG), 0);
    ASSERT_EQ(eh.e_ident[EI_CLASS], ELFCLASS64);
    ASSERT_LE(eh.e_shoff + uint64_t{eh.e_shnum} * sizeof(Elf64_Shdr), module.size());
    std::vector<Elf64_Shdr> sections(eh.e_shnum);
    std::memcpy(sections.data(), module.data() + eh.e_shoff, eh.e_shnum * sizeof(Elf64_Shdr));
    const char* names = reinterpret_cast<const char*>(module.data() + sections[eh.e_shstrndx].sh_offset);
    const Elf64_Shdr* ours = nullptr;
    int named = 0;
    for (const Elf64_Shdr& s : sections) {
        if (std::strcmp(names + s.sh_name, kResourceSectionName) != 0) continue;
        ours = &s;
        ++named;
    }
    ASSERT_EQ(named, 1) << "the module has no (or more than one) " << kResourceSectionName;
    EXPECT_EQ(ours->sh_type, static_cast<uint32_t>(SHT_PROGBITS));
    EXPECT_TRUE(ours->sh_flags & SHF_ALLOC);
    EXPECT_FALSE(ours->sh_flags & SHF_WRITE) << "the bitmaps belong in read-only memory";

    // The reader finds the same bytes.
    resource_reader::Span section;
    std::string error;
    ASSERT_TRUE(resource_reader::FindElfSection({module.data(), module.size()}, kResourceSectionName, section, error))
        << error;
    EXPECT_EQ(section.data, module.data() + ours->sh_offset);
    EXPECT_EQ(section.size, ours->sh_size);

    std::vector<ResourceBlobEntry> entries;
    ASSERT_TRUE(resource_reader::ParseResourceBlob(section, entries, error)) << error;
    std::set<uint32_t> ids;
    for (size_t i = 0; i < entries.size(); ++i) {
        ids.insert(entries[i].resource_id);
        if (i > 0) {
            EXPECT_LT(entries[i - 1].resource_id, entries[i].resource_id) << "entries sorted by id, once each";
        }
    }
    EXPECT_EQ(ids, LayerIds());

    // Each entry holds the very bytes of the committed file.
    for (const ResourceBlobEntry& e : entries) {
        auto it = ScriptEntries().find(e.resource_id);
        ASSERT_NE(it, ScriptEntries().end()) << e.resource_id;
        std::vector<uint8_t> file = ReadBytes(kResources + it->second);
        resource_reader::Span carried = resource_reader::FindResource(section, entries, e.resource_id);
        ASSERT_EQ(carried.size, file.size()) << it->second;
        EXPECT_EQ(std::memcmp(carried.data, file.data(), file.size()), 0) << it->second;
    }

    // A host reads it all in one call.
    resource_reader::ModuleResources read;
    ASSERT_TRUE(resource_reader::ReadModuleResources(ORB_MODULE_PATH, read, error)) << error;
    EXPECT_EQ(read.entries.size(), entries.size());
    EXPECT_FALSE(resource_reader::ReadModuleResources("/nonexistent/orb1.gau", read, error));
    EXPECT_NE(error.find("/nonexistent/orb1.gau"), std::string::npos);
}

TEST(GaugeBitmaps, IconLayersSitOnTheirControlsInsideTheBezel) {
    for (int g = 0; g < kGaugeCount; ++g) {
        auto id = static_cast<GaugeId>(g);
        const GaugeSpec& shape = SpecOf(id);
        for (int layer = 1; layer < LayerCount(id); ++layer) {
            LayerSpec l = LayerOf(id, layer);
            if (!l.icon) continue;
            EXPECT_GE(l.x, 0) << LayerName(id, layer);
            EXPECT_GE(l.y, 0) << LayerName(id, layer);
            EXPECT_LE(l.x + l.width, shape.bezel_width) << LayerName(id, layer);
            EXPECT_LE(l.y + l.height, shape.bezel_height) << LayerName(id, layer);
            const IconSpec* icon = IconSpecOf(id, layer);
            ASSERT_NE(icon, nullptr) << LayerName(id, layer) << " has no picture record";
            if (icon->w > 0) {
                EXPECT_EQ(l.x, icon->x) << LayerName(id, layer);
                EXPECT_EQ(l.width, icon->w) << LayerName(id, layer);
            }
        }
    }
    // The two switch panels whose layers the gauges' logic names by number.
    auto box = [](GaugeId id, int layer) {
        LayerSpec l = LayerOf(id, layer);
        return std::array<int, 4>{l.x, l.y, l.width, l.height};
    };
    for (GaugeId id : {GaugeId::HW_B737_EFIS_CNTR, GaugeId::HW_B737_EFIS_CNTR_BR}) {
        for (int k = 1; k <= 6; ++k) EXPECT_EQ(box(id, k), (std::array<int, 4>{145, 35, 52, 44})) << "mode " << k;
        for (int k = 7; k <= 11; ++k) EXPECT_EQ(box(id, k), (std::array<int, 4>{238, 35, 52, 44})) << "range " << k;
    }
    for (int k = 1; k <= 4; ++k) EXPECT_EQ(box(GaugeId::A300_EFIS_CTRL, k), (std::array<int, 4>{240, 145, 76, 76}));
    for (int k = 5; k <= 7; ++k) EXPECT_EQ(box(GaugeId::A300_EFIS_CTRL, k), (std::array<int, 4>{53, 145, 76, 76}));
    EXPECT_EQ(box(GaugeId::A300_EFIS_CTRL, 12), (std::array<int, 4>{21, 92, 55, 37}));
    // The knob positions the B737 layers turn to are distinct, as the modes are.
    std::set<int> positions;
    for (int k = 1; k <= 6; ++k) positions.insert(IconSpecOf(GaugeId::HW_B737_EFIS_CNTR, k)->position);
    EXPECT_EQ(positions.size(), 6u);
    EXPECT_EQ(ControlPanelIconLayer(GaugeId::LNAV, 0), nullptr) << "only control panels take their boxes here";
}

TEST(GaugeBitmaps, ClickAreasLandOnDrawnControls) {
    // Every clickable box of a gauge's mouse table that is neither the whole
    // gauge nor a screen must be the box of a key, button or knob the bezel
    // shows, so that no click lands on bare panel.
    int checked = 0;
    for (int g = 0; g < kGaugeCount; ++g) {
        auto id = static_cast<GaugeId>(g);
        const GaugeSpec& shape = SpecOf(id);
        if (shape.family != GaugeFamily::Cdu && shape.family != GaugeFamily::ControlPanel && id != GaugeId::P1000_MFD)
            continue;
        const MOUSERECT* rows = MouseTableOf(id);
        for (int r = 1; r < MouseRowCount(id); ++r) {
            if (rows[r].rect_type != MOUSE_RECT_PARENT) continue;
            PIXBOX b = rows[r].relative_box;
            if (b.size_x == 0 || b.size_y == 0) continue;  // an inert row of a table still to be filled
            if (shape.surface_width > 0 && b.x >= shape.surface_x && b.y >= shape.surface_y &&
                b.x + b.size_x <= shape.surface_x + shape.surface_width &&
                b.y + b.size_y <= shape.surface_y + shape.surface_height)
                continue;  // a click on the screen
            bool drawn = false;
            GaugeId base = LayoutGauge(id);
            for (const CapSpec& c : kCapSpecs)
                drawn |= c.gauge == base && c.kind != CapKind::Placard && c.x == b.x && c.y == b.y &&
                         c.w == b.size_x && c.h == b.size_y;
            for (const KnobSpec& k : kKnobSpecs)
                drawn |= k.gauge == base && k.x == b.x && k.y == b.y && k.w == b.size_x && k.h == b.size_y;
            // A rocker knob drawn as two keys (upper half up, lower half down).
            for (const CapSpec& c : kCapSpecs)
                drawn |= c.gauge == base && c.x == b.x && c.y == b.y && c.w == b.size_x && b.size_y == 2 * c.h;
            EXPECT_TRUE(drawn) << GaugeName(id) << " clicks at " << b.x << "," << b.y << " " << b.size_x << "x"
                               << b.size_y << " on no drawn control";
            ++checked;
        }
    }
    if (checked == 0) GTEST_SKIP() << "no keypad or panel has its click areas yet";
}
