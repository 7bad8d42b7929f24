// gauge_store.h: the placed gauges of the loaded panel, their windows, and
// what the simulator keeps for each instance: its own copy of the gauge
// header (with the parameter string filled in), its own copy of the element
// chain, the layers' bitmaps and the drawing contexts it hands the module.
#pragma once

#include "panel_cfg.h"
#include "resources.h"

#include <orbhost.h>
#include <panel_sdk.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orbsim {

constexpr int kMaxElementsPerGauge = 64;       // the module's chains have at most 14
constexpr int kMaxElementChildren = 16;        // entries of one next-element array
constexpr int kServiceCount = 18;              // panel services 0..17
constexpr size_t kMaxTextsPerFrame = 4096;     // strings kept of one gauge's frame

// One string the module drew on a drawing context.
struct DrawnText {
    double x = 0, y = 0, width = 0, height = 0;  // device pixels of the surface
    uint32_t argb = 0;
    std::string text;                            // UTF-8
    std::string font;
    double font_size = 0;                        // pixels
    int style = 0;
};

// One element of an instance's chain, in depth-first order (layer k).
struct Layer {
    ELEMENT_HEADER* element = nullptr;          // the instance's copy
    Bitmap bitmap;                               // from the module's resources, or the grey stand-in
    std::unique_ptr<OrbDeviceContext> dc;        // with IMAGE_CREATE_DIBSECTION only
    std::vector<uint32_t> dc_pixels;             // what dc->pixels points at
};

struct GaugeInstance {
    std::string name;                            // gauge name, as the module lists it
    int ordinal = 1;                             // 1 for the first instance of this name in the panel
    int window = 0;                              // index into GaugeStore::windows
    int x = 0, y = 0, w = 0, h = 0;              // placement in the window, panel pixels
    std::string parameters;                      // storage behind header.parameters
    const GAUGEHDR* source = nullptr;            // the module's own header
    GAUGEHDR header{};                           // the instance's copy the module is called with
    ELEMENT_HEADER* first_element = nullptr;     // what header.elements_list points at
    std::vector<std::unique_ptr<uint8_t[]>> element_storage;
    std::vector<std::unique_ptr<ELEMENT_HEADER*[]>> next_arrays;
    std::vector<Layer> layers;
    std::vector<DrawnText> text_now;             // arriving during the present draw
    std::vector<DrawnText> text_last;            // what the screen shows: of the last frame that drew
    uint64_t pixels_digest = 0;                  // of the drawing contexts' pixels after the last draw
    uint64_t draws = 0;                          // draw services delivered
    double last_module_us = 0;                   // the last frame's update and draw, microseconds
    uint64_t redraws = 0;                        // draws after which a layer asked to be taken anew
    std::array<uint64_t, kServiceCount> services{};  // calls per service id
    int panel_line = 0;
};

struct PanelWindow {
    std::string section;
    int ident = 0;                               // kVirtualCockpitIdent for a cockpit
    bool virtual_cockpit = false;
    bool visible = false;
};

struct GaugeStore {
    std::string panel_path;                      // the file of the loaded panel
    bool loaded = false;
    std::vector<PanelWindow> windows;
    std::vector<std::unique_ptr<GaugeInstance>> instances;  // panel order; addresses stay put
    ResourceSet resources;
    uint32_t resource_handle = 0;                // what the install services get as extra data
    uint64_t frames = 0;                         // frames drawn since start
    double last_frame_module_us = 0;             // the last frame's services, update and draw calls, microseconds
};

// Finds a module gauge header by name in the linkage's list; null if absent.
const GAUGEHDR* FindModuleGauge(const MODULE_LINKAGE* linkage, const std::string& name);

// Builds the instances of a parsed panel (headers, element chains, bitmaps,
// drawing contexts). Gauges of another module are skipped with a warning;
// an orb1 gauge the module does not list is an error "FILE:LINE: ...".
bool BuildInstances(GaugeStore& store, const PanelDesc& panel, const MODULE_LINKAGE* linkage,
                    const std::string& panel_path, std::string& error);

// Services, each for every instance in panel order.
void RunLoadServices(GaugeStore& store);    // 2, install, 3, 4, initialize, 5, 14
void RunKillServices(GaugeStore& store);    // 12, kill, 13, 15
void ClearInstances(GaugeStore& store);

// One frame: 6 and 10 for each gauge of each visible window. A gauge's
// strings are those of the last frame in which it drew: a frame in which it
// drew no string and left its pixels as they were (a gauge that repaints only
// on request) keeps the strings the pilot still sees; a frame that changed the
// pixels without a string (a dark screen) leaves none.
void DrawFrame(GaugeStore& store);

// A digest of the pixels of an instance's drawing contexts.
uint64_t DrawingDigest(const GaugeInstance& inst);

// Windows.
bool WindowVisible(const GaugeStore& store, int ident);
bool SetWindowVisible(GaugeStore& store, int ident, bool visible);   // false: no such window
bool ToggleWindow(GaugeStore& store, int ident);

// Gauge references of scripts: "NAME" (the first instance) or "NAME#N".
GaugeInstance* FindInstance(GaugeStore& store, const std::string& reference);

// Which instance owns a drawing context the module drew on; null if none.
GaugeInstance* InstanceOfContext(GaugeStore& store, const void* hdc);

}  // namespace orbsim
