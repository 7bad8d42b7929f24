// panel_sdk.h: our declarations of the simulator's panel SDK binary interface.
//
// Layouts and numbers are the simulator's own (32-bit, 4-byte packing, 4-byte
// enums). The 32-bit build checks every offset and size at compile time; the
// 64-bit Linux build keeps the field order and lets pointers widen.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
#define FSAPI __stdcall
#define ORB_EXPORT __declspec(dllexport)
#else
#define FSAPI
#define ORB_EXPORT __attribute__((visibility("default")))
#endif

// The simulator's 4-byte packing; a 64-bit build keeps natural alignment so
// that its pointers stay aligned (only the 32-bit layout is the simulator's).
#if defined(__i386__) || defined(_M_IX86)
#pragma pack(push, 4)
#define ORB_SDK_PACKED 1
#endif

extern "C" {

using ID = int;
using ENUM = int;
using FLAGS = int;
using BOOL_SDK = int;  // the SDK's BOOL; named apart so windows.h keeps its own
using SINT32 = int;
using PIXEL = int;
using ID32 = unsigned int;
using FLAGS32 = unsigned int;
using ERR = unsigned int;
using VAR32 = unsigned int;
using UINT32 = unsigned int;
using GENERATE_PHASE = unsigned int;
using FLOAT64 = double;
using FLOAT32 = float;
using PSTRINGZ = char*;
using PCSTRINGZ = const char*;
using PVOID = void*;

struct PIXPOINT {
    SINT32 x;
    SINT32 y;
};

struct PIXBOX {
    PIXEL x;
    PIXEL y;
    PIXEL size_x;
    PIXEL size_y;
};

struct GAUGEHDR;
struct MOUSERECT;
struct ELEMENT_HEADER;

using QUERY_ROUTINE = void(FSAPI*)(void);
using INSTALL_ROUTINE = void(FSAPI*)(PVOID resource_file_handle);
using INITIALIZE_ROUTINE = void(FSAPI*)(void);
using UPDATE_ROUTINE = void(FSAPI*)(void);
using GENERATE_ROUTINE = void(FSAPI*)(UINT32 phase);
using DRAW_ROUTINE = void(FSAPI*)(void);
using KILL_ROUTINE = void(FSAPI*)(void);
using GAUGE_CALLBACK = void(FSAPI*)(GAUGEHDR* gauge, SINT32 service_id, UINT32 extra_data);
using MOUSE_FUNCTION = BOOL_SDK(FSAPI*)(PIXPOINT* relative_point, FLAGS32 mouse_flags);
using SERIALIZE_CALLBACK = void (*)(void);  // cdecl, unused by the module
using KEY_EVENT_HANDLER = void (*)(ID32 event, UINT32 evdata, PVOID userdata);  // cdecl

// ---------------------------------------------------------------------------
// Gauge header
// ---------------------------------------------------------------------------
struct GAUGEHDR {
    UINT32 gauge_header_version;          // 800 for the module's gauges
    char* gauge_name;
    ELEMENT_HEADER** elements_list;       // points at the gauge's first-element variable
    QUERY_ROUTINE query_routine;
    INSTALL_ROUTINE install_routine;
    INITIALIZE_ROUTINE initialize_routine;
    UPDATE_ROUTINE update_routine;
    GENERATE_ROUTINE generate_routine;
    DRAW_ROUTINE draw_routine;
    KILL_ROUTINE kill_routine;
    PVOID reserved1;
    UINT32 size_x_mm;                     // default size; 312 for every gauge here
    UINT32 size_y_mm;
    FLOAT32 x_adjust;
    FLOAT32 y_adjust;
    PVOID reserved2;
    PVOID reserved3;
    PIXPOINT position;
    PVOID reserved4;
    MOUSERECT* mouse_rect;
    GAUGE_CALLBACK gauge_callback;
    UINT32 user_data;
    char* parameters;                     // filled by the simulator from panel.cfg
    char* usage;
    SINT32 reserved5;
    PVOID reserved6;
    PIXPOINT size;
    FLOAT64 user_area[10];
    FLAGS32 flags;
    PVOID reserved7;
    uint8_t guid[16];                     // version 1000 only
    UINT32 key_id;
    SERIALIZE_CALLBACK serialize_callbacks[5];
    PIXPOINT original_position;
};

// ---------------------------------------------------------------------------
// Mouse rectangle
// ---------------------------------------------------------------------------
enum MOUSE_RECT_TYPE : int {
    MOUSE_RECT_EOL = 0,
    MOUSE_RECT_PARENT = 1,
    MOUSE_RECT_CHILD = 2,
    MOUSE_RECT_END_PARENT = 3,
    MOUSE_RECT_USER = 4,
};

enum CURSOR_TYPE : int {
    CURSOR_NONE = -1,
    CURSOR_NORMAL = 0,
    CURSOR_UPARROW = 1,
    CURSOR_DOWNARROW = 2,
    CURSOR_LEFTARROW = 3,
    CURSOR_RIGHTARROW = 4,
    CURSOR_HAND = 5,
    CURSOR_CROSSHAIR = 6,
    CURSOR_GRAB = 7,
};

struct MOUSERECT {
    MOUSE_RECT_TYPE rect_type;
    PIXBOX relative_box;
    CURSOR_TYPE cursor;
    ID help_id;
    FLAGS mouse_flags;
    ID event_id;
    MOUSE_FUNCTION mouse_function;
    PVOID api_data;
};

// What the FSX generation passes as the relative point: the point is its first member.
struct MOUSECALLBACK {
    PIXPOINT relative_point;
    PVOID user_data;                      // the gauge header
    MOUSERECT* mouse;
    PIXPOINT screen_point;
    PVOID reserved;
};

constexpr FLAGS32 MOUSE_RIGHTSINGLE = 0x80000000u;
constexpr FLAGS32 MOUSE_MIDDLESINGLE = 0x40000000u;
constexpr FLAGS32 MOUSE_LEFTSINGLE = 0x20000000u;
constexpr FLAGS32 MOUSE_RIGHTDOUBLE = 0x10000000u;
constexpr FLAGS32 MOUSE_MIDDLEDOUBLE = 0x08000000u;
constexpr FLAGS32 MOUSE_LEFTDOUBLE = 0x04000000u;
constexpr FLAGS32 MOUSE_RIGHTDRAG = 0x02000000u;
constexpr FLAGS32 MOUSE_MIDDLEDRAG = 0x01000000u;
constexpr FLAGS32 MOUSE_LEFTDRAG = 0x00800000u;
constexpr FLAGS32 MOUSE_MOVE = 0x00400000u;
constexpr FLAGS32 MOUSE_DOWN_REPEAT = 0x00200000u;
constexpr FLAGS32 MOUSE_RIGHTRELEASE = 0x00080000u;
constexpr FLAGS32 MOUSE_MIDDLERELEASE = 0x00040000u;
constexpr FLAGS32 MOUSE_LEFTRELEASE = 0x00020000u;
constexpr FLAGS32 MOUSE_WHEEL_FLIP = 0x00010000u;
constexpr FLAGS32 MOUSE_WHEEL_SKIP = 0x00008000u;
constexpr FLAGS32 MOUSE_WHEEL_UP = 0x00004000u;
constexpr FLAGS32 MOUSE_WHEEL_DOWN = 0x00002000u;
constexpr FLAGS32 MOUSE_MOVE_REPEAT = 0x00001000u;
constexpr FLAGS32 MOUSE_LEAVE = 0x00000800u;
constexpr FLAGS32 MOUSE_GETALL = 0x00000400u;

// ---------------------------------------------------------------------------
// Token variable
// ---------------------------------------------------------------------------
enum VAR_TYPE : int {
    VAR_TYPE_NONE = 0,
    TYPE_FLOAT64 = 33,
    TYPE_BOOL = 34,
    TYPE_FLAGS = 35,
    TYPE_ENUM = 36,
    TYPE_VOID = 37,
    TYPE_PVOID = 38,
    TYPE_PUINT32 = 39,
    TYPE_PSINT32 = 40,
    TYPE_PFLOAT64 = 41,
};

union MODULE_VAR_VALUE {
    FLOAT64 n;
    BOOL_SDK b;
    ENUM e;
    FLAGS f;
    PVOID p;
    VAR32 d;
    VAR32 o;
};

struct MODULE_VAR {
    ID id;                                // token number
    PVOID var_ptr;
    VAR_TYPE var_type;
    MODULE_VAR_VALUE var_value;
    MODULE_VAR_VALUE var_old;
};

// ---------------------------------------------------------------------------
// Elements
// ---------------------------------------------------------------------------
enum ELEMENT_TYPE_ENUM : int {
    ELEMENT_TYPE_STATIC_IMAGE = 0,
    ELEMENT_TYPE_NEEDLE = 1,
    ELEMENT_TYPE_STRING = 2,
    ELEMENT_TYPE_SLIDER = 3,
    ELEMENT_TYPE_ICON = 4,
    ELEMENT_TYPE_MOVING_IMAGE = 5,
    ELEMENT_TYPE_SPRITE = 6,
};

struct IMAGE;

struct IMAGE_SET {
    IMAGE* final;
    IMAGE* source;
    PVOID reserved1;
    PVOID reserved2;
};

struct ELEMENT_HEADER {
    ELEMENT_TYPE_ENUM element_type;
    ID resource_id;
    PIXPOINT position;
    PIXPOINT previous_position;
    PIXPOINT ofs;
    GAUGEHDR* gauge_header;
    ELEMENT_HEADER* previous_element;
    ELEMENT_HEADER** next_element;        // null-terminated array of element pointers
    PVOID failure_systems;
    FLAGS image_flags;
    PVOID aircraft_special_instrumentation;
    PVOID reserved;
};

struct ELEMENT_STATIC_IMAGE {
    ELEMENT_HEADER header;
    IMAGE_SET image_data;
    IMAGE* save_buffer;
    void* hdc;                            // drawing context, with IMAGE_CREATE_DIBSECTION
    void* hbmp;
    PVOID reserved1;
    PVOID reserved2;
};

using MODULE_VAR_CB = void(FSAPI*)(MODULE_VAR*);

struct ELEMENT_ICON {
    ELEMENT_HEADER header;
    MODULE_VAR source_var;
    MODULE_VAR_CB source_var_cb;
    ENUM switch_type;
    ENUM switch_count;
    FLOAT64 scale;
    SINT32 offset;
    SINT32 num_icons;
    SINT32 cur_icon;
    SINT32 dst_icon;
    PVOID picon_data;
    PVOID save_buffer;
    PVOID update_cb;
    PVOID reserved;
};

constexpr FLAGS32 IMAGE_USE_TRANSPARENCY = 0x00000001u;
constexpr FLAGS32 IMAGE_USE_ERASE = 0x00000002u;
constexpr FLAGS32 IMAGE_USE_BRIGHT = 0x00000004u;
constexpr FLAGS32 IMAGE_ERASE_ON_FAILURE = 0x00000008u;
constexpr FLAGS32 IMAGE_NO_STATIC_BLENDING = 0x00000010u;
constexpr FLAGS32 IMAGE_CREATE_DIBSECTION = 0x00000020u;
constexpr FLAGS32 IMAGE_BILINEAR_GRAY = 0x00000040u;
constexpr FLAGS32 IMAGE_BILINEAR_COLOR = 0x00000080u;
constexpr FLAGS32 IMAGE_PRESERVE_COLOR_IN_HUD = 0x00000100u;
constexpr FLAGS32 IMAGE_CONTAINS_NO_MASK = 0x00000200u;
constexpr FLAGS32 IMAGE_SPRITE_FORCE_TRANS = 0x00000400u;
constexpr FLAGS32 IMAGE_BLT_MASK_ONLY = 0x00000800u;
constexpr FLAGS32 IMAGE_CONTAINS_MASK = 0x00001000u;
constexpr FLAGS32 IMAGE_USE_ALPHA = 0x00002000u;
constexpr FLAGS32 IMAGE_USE_LUMINOUS = 0x00004000u;
constexpr FLAGS32 IMAGE_USE_LUMINOUS_PARTIAL = 0x00008000u;
constexpr FLAGS32 IMAGE_ERASE_ALWAYS = 0x00010000u;
constexpr FLAGS32 IMAGE_HIDDEN_TREE = 0x02000000u;
constexpr FLAGS32 IMAGE_NO_STRETCH = 0x08000000u;
constexpr FLAGS32 IMAGE_HUD_COLOR_MAP = 0x10000000u;
constexpr FLAGS32 IMAGE_NO_TRANSLATION = 0x20000000u;
constexpr FLAGS32 IMAGE_HIDDEN = 0x40000000u;
constexpr FLAGS32 IMAGE_ON_SCREEN = 0x80000000u;

// ---------------------------------------------------------------------------
// Panel services and other numbers
// ---------------------------------------------------------------------------
enum PANEL_SERVICE : int {
    PANEL_SERVICE_PRE_QUERY = 0,
    PANEL_SERVICE_POST_QUERY = 1,
    PANEL_SERVICE_PRE_INSTALL = 2,
    PANEL_SERVICE_POST_INSTALL = 3,
    PANEL_SERVICE_PRE_INITIALIZE = 4,
    PANEL_SERVICE_POST_INITIALIZE = 5,
    PANEL_SERVICE_PRE_UPDATE = 6,
    PANEL_SERVICE_POST_UPDATE = 7,
    PANEL_SERVICE_PRE_GENERATE = 8,
    PANEL_SERVICE_POST_GENERATE = 9,
    PANEL_SERVICE_PRE_DRAW = 10,
    PANEL_SERVICE_POST_DRAW = 11,
    PANEL_SERVICE_PRE_KILL = 12,
    PANEL_SERVICE_POST_KILL = 13,
    PANEL_SERVICE_CONNECT_TO_WINDOW = 14,
    PANEL_SERVICE_DISCONNECT = 15,
    PANEL_SERVICE_PANEL_OPEN = 16,
    PANEL_SERVICE_PANEL_CLOSE = 17,
};

constexpr FLAGS32 GAUGE_FLAG_NORMAL = 0;
constexpr FLAGS32 GAUGE_FLAG_HIDDEN = 1;
constexpr FLAGS32 GAUGE_FLAG_BLINKING = 2;
constexpr FLAGS32 GAUGE_FLAG_GRAYED = 4;
constexpr FLAGS32 GAUGE_FLAG_HIGHLIGHTED = 8;

constexpr ID32 KEY_EVENT_FIRST = 0x10000;
constexpr ID32 THIRD_PARTY_EVENT_FIRST = 0x11000;

constexpr UINT32 GAUGE_HEADER_VERSION_FS700 = 800;

// ---------------------------------------------------------------------------
// Panel function table: six header words, then 80 function slots.
// ---------------------------------------------------------------------------
struct PANELS {
    UINT32 header[6];                     // header[5]: the simulator's module version
    void* slots[80];
};

enum class PanelSlot : int {
    is_panel_window_visible_ident = 5,
    tooltip_units_getset = 6,
    element_list_query = 18,
    element_list_install = 19,
    element_list_initialize = 20,
    element_list_update = 21,
    element_list_generate = 22,
    element_list_plot = 23,
    element_list_erase = 24,
    element_list_kill = 25,
    mouse_list_install = 26,
    mouse_list_register = 27,
    mouse_list_unregister = 28,
    panel_window_toggle = 29,
    trigger_key_event = 30,
    register_var_by_name = 31,
    initialize_var = 32,
    initialize_var_by_name = 33,
    lookup_var = 34,
    unregister_var_by_name = 35,
    unregister_all_named_vars = 36,
    panel_window_close_ident = 39,
    panel_window_open_ident = 40,
    check_named_variable = 45,
    register_named_variable = 46,
    get_named_variable_value = 47,
    get_named_variable_typed_value = 48,
    set_named_variable_value = 49,
    set_named_variable_typed_value = 50,
    get_name_of_named_variable = 53,
    panel_resource_string_get = 55,
    panel_window_toggle_menu_id = 56,
    element_use_color = 59,
    set_gauge_flags = 60,
    get_gauge_flags = 61,
    gauge_calculator_code_precompile = 62,
    execute_calculator_code = 63,
    format_calculator_string = 64,
    get_units_enum = 67,
    get_aircraft_var_enum = 68,
    aircraft_varget = 69,
    send_key_event = 73,
    register_key_event_handler = 74,
    unregister_key_event_handler = 75,
    process_shared_event_out = 78,
    is_master = 79,
};

constexpr int kPanelSlotCount = 80;
// First slot of the newer generation; the older table may end before it.
constexpr int kFirstNewerGenerationSlot = 67;

// Signatures of the slots, in the simulator's calling convention.
using PFN_is_panel_window_visible_ident = BOOL_SDK(FSAPI*)(UINT32 panel_id);
using PFN_element_list_query = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_element_list_install = void(FSAPI*)(ELEMENT_HEADER*, PVOID resource_file_handle);
using PFN_element_list_initialize = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_element_list_update = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_element_list_generate = void(FSAPI*)(ELEMENT_HEADER*, GENERATE_PHASE);
using PFN_element_list_plot = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_element_list_erase = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_element_list_kill = void(FSAPI*)(ELEMENT_HEADER*);
using PFN_mouse_list_install = void(FSAPI*)(MOUSERECT*, GAUGEHDR*, PIXPOINT* size);
using PFN_mouse_list_register = void(FSAPI*)(MOUSERECT*, GAUGEHDR*);
using PFN_mouse_list_unregister = void(FSAPI*)(MOUSERECT*, GAUGEHDR*);
using PFN_panel_window_toggle = BOOL_SDK(FSAPI*)(UINT32 panel_id);
using PFN_trigger_key_event = ERR(FSAPI*)(ID32 event_id, UINT32 value);
using PFN_register_var_by_name = void(FSAPI*)(PVOID var, VAR_TYPE type, PSTRINGZ name);
using PFN_initialize_var = void(FSAPI*)(MODULE_VAR*);
using PFN_initialize_var_by_name = void(FSAPI*)(MODULE_VAR*, PSTRINGZ name);
using PFN_lookup_var = void(FSAPI*)(MODULE_VAR*);
using PFN_unregister_var_by_name = void(FSAPI*)(PSTRINGZ name);
using PFN_unregister_all_named_vars = void(FSAPI*)(void);
using PFN_panel_window_close_ident = BOOL_SDK(FSAPI*)(UINT32 panel_id);
using PFN_panel_window_open_ident = BOOL_SDK(FSAPI*)(UINT32 panel_id);
using PFN_check_named_variable = ID(FSAPI*)(PCSTRINGZ name);
using PFN_register_named_variable = ID(FSAPI*)(PCSTRINGZ name);
using PFN_get_named_variable_value = FLOAT64(FSAPI*)(ID);
using PFN_get_named_variable_typed_value = FLOAT64(FSAPI*)(ID, ENUM units);
using PFN_set_named_variable_value = void(FSAPI*)(ID, FLOAT64);
using PFN_set_named_variable_typed_value = void(FSAPI*)(ID, FLOAT64, ENUM units);
using PFN_get_name_of_named_variable = PCSTRINGZ(FSAPI*)(ID);
using PFN_set_gauge_flags = void(FSAPI*)(PCSTRINGZ, FLAGS32);
using PFN_get_gauge_flags = FLAGS32(FSAPI*)(PCSTRINGZ);
using PFN_execute_calculator_code = BOOL_SDK(FSAPI*)(PCSTRINGZ code, FLOAT64* f, SINT32* i, PCSTRINGZ* s);
using PFN_format_calculator_string = BOOL_SDK(FSAPI*)(PSTRINGZ result, UINT32 size, PCSTRINGZ format);
using PFN_get_units_enum = ENUM(FSAPI*)(PCSTRINGZ);
using PFN_get_aircraft_var_enum = ENUM(FSAPI*)(PCSTRINGZ);
using PFN_aircraft_varget = FLOAT64(FSAPI*)(ENUM, ENUM, SINT32);
using PFN_send_key_event = void(FSAPI*)(ID32, UINT32);
using PFN_register_key_event_handler = void(FSAPI*)(KEY_EVENT_HANDLER, PVOID userdata);
using PFN_unregister_key_event_handler = void(FSAPI*)(KEY_EVENT_HANDLER, PVOID userdata);

// ---------------------------------------------------------------------------
// Module linkage
// ---------------------------------------------------------------------------
using MODULE_INIT = void(FSAPI*)(void);
using MODULE_DEINIT = void(FSAPI*)(void);

constexpr int kMaxLinkedGauges = 54;

struct MODULE_LINKAGE {
    ID ModuleID;                          // 0x13
    MODULE_INIT ModuleInit;
    MODULE_DEINIT ModuleDeinit;
    FLAGS32 ModuleFlags;
    UINT32 ModulePriority;
    UINT32 ModuleVersion;                 // 0x0900
    GAUGEHDR* gauge_header_ptr[kMaxLinkedGauges + 1];  // inline, null-terminated
};

struct IMPORT_ENTRY {
    ID fnID;
    PVOID fnptr;
};

struct IMPORT_TABLE {
    IMPORT_ENTRY PANELSentry;             // fnID 0x0F, fnptr filled by the simulator
    IMPORT_ENTRY nullentry;
};

constexpr ID kModuleId = 0x13;
constexpr UINT32 kModuleVersion = 0x0900;
constexpr ID kPanelsImportId = 0x0000000F;

}  // extern "C"

#if defined(ORB_SDK_PACKED)
#pragma pack(pop)
#undef ORB_SDK_PACKED
#endif

// ---------------------------------------------------------------------------
// Layout checks for the 32-bit build (the only layout the simulator loads).
// ---------------------------------------------------------------------------
namespace sdk_layout {
constexpr bool k32 = sizeof(void*) == 4;
static_assert(sizeof(PIXPOINT) == 8 && sizeof(PIXBOX) == 16);
static_assert(!k32 || sizeof(GAUGEHDR) == 252);
static_assert(!k32 || offsetof(GAUGEHDR, gauge_name) == 0x004);
static_assert(!k32 || offsetof(GAUGEHDR, elements_list) == 0x008);
static_assert(!k32 || offsetof(GAUGEHDR, query_routine) == 0x00C);
static_assert(!k32 || offsetof(GAUGEHDR, install_routine) == 0x010);
static_assert(!k32 || offsetof(GAUGEHDR, initialize_routine) == 0x014);
static_assert(!k32 || offsetof(GAUGEHDR, update_routine) == 0x018);
static_assert(!k32 || offsetof(GAUGEHDR, generate_routine) == 0x01C);
static_assert(!k32 || offsetof(GAUGEHDR, draw_routine) == 0x020);
static_assert(!k32 || offsetof(GAUGEHDR, kill_routine) == 0x024);
static_assert(!k32 || offsetof(GAUGEHDR, reserved1) == 0x028);
static_assert(!k32 || offsetof(GAUGEHDR, size_x_mm) == 0x02C);
static_assert(!k32 || offsetof(GAUGEHDR, size_y_mm) == 0x030);
static_assert(!k32 || offsetof(GAUGEHDR, x_adjust) == 0x034);
static_assert(!k32 || offsetof(GAUGEHDR, y_adjust) == 0x038);
static_assert(!k32 || offsetof(GAUGEHDR, reserved2) == 0x03C);
static_assert(!k32 || offsetof(GAUGEHDR, reserved3) == 0x040);
static_assert(!k32 || offsetof(GAUGEHDR, position) == 0x044);
static_assert(!k32 || offsetof(GAUGEHDR, reserved4) == 0x04C);
static_assert(!k32 || offsetof(GAUGEHDR, mouse_rect) == 0x050);
static_assert(!k32 || offsetof(GAUGEHDR, gauge_callback) == 0x054);
static_assert(!k32 || offsetof(GAUGEHDR, user_data) == 0x058);
static_assert(!k32 || offsetof(GAUGEHDR, parameters) == 0x05C);
static_assert(!k32 || offsetof(GAUGEHDR, usage) == 0x060);
static_assert(!k32 || offsetof(GAUGEHDR, reserved5) == 0x064);
static_assert(!k32 || offsetof(GAUGEHDR, reserved6) == 0x068);
static_assert(!k32 || offsetof(GAUGEHDR, size) == 0x06C);
static_assert(!k32 || offsetof(GAUGEHDR, user_area) == 0x074);
static_assert(!k32 || offsetof(GAUGEHDR, flags) == 0x0C4);
static_assert(!k32 || offsetof(GAUGEHDR, reserved7) == 0x0C8);
static_assert(!k32 || offsetof(GAUGEHDR, guid) == 0x0CC);
static_assert(!k32 || offsetof(GAUGEHDR, key_id) == 0x0DC);
static_assert(!k32 || offsetof(GAUGEHDR, serialize_callbacks) == 0x0E0);
static_assert(!k32 || offsetof(GAUGEHDR, original_position) == 0x0F4);

static_assert(!k32 || sizeof(MOUSERECT) == 44);
static_assert(!k32 || offsetof(MOUSERECT, relative_box) == 0x04);
static_assert(!k32 || offsetof(MOUSERECT, cursor) == 0x14);
static_assert(!k32 || offsetof(MOUSERECT, help_id) == 0x18);
static_assert(!k32 || offsetof(MOUSERECT, mouse_flags) == 0x1C);
static_assert(!k32 || offsetof(MOUSERECT, event_id) == 0x20);
static_assert(!k32 || offsetof(MOUSERECT, mouse_function) == 0x24);
static_assert(!k32 || offsetof(MOUSERECT, api_data) == 0x28);
static_assert(!k32 || sizeof(MOUSECALLBACK) == 28);

static_assert(!k32 || sizeof(MODULE_VAR) == 28);
static_assert(!k32 || offsetof(MODULE_VAR, var_ptr) == 0x04);
static_assert(!k32 || offsetof(MODULE_VAR, var_type) == 0x08);
static_assert(!k32 || offsetof(MODULE_VAR, var_value) == 0x0C);
static_assert(!k32 || offsetof(MODULE_VAR, var_old) == 0x14);

static_assert(!k32 || sizeof(ELEMENT_HEADER) == 60);
static_assert(!k32 || offsetof(ELEMENT_HEADER, resource_id) == 0x04);
static_assert(!k32 || offsetof(ELEMENT_HEADER, position) == 0x08);
static_assert(!k32 || offsetof(ELEMENT_HEADER, previous_position) == 0x10);
static_assert(!k32 || offsetof(ELEMENT_HEADER, ofs) == 0x18);
static_assert(!k32 || offsetof(ELEMENT_HEADER, gauge_header) == 0x20);
static_assert(!k32 || offsetof(ELEMENT_HEADER, previous_element) == 0x24);
static_assert(!k32 || offsetof(ELEMENT_HEADER, next_element) == 0x28);
static_assert(!k32 || offsetof(ELEMENT_HEADER, failure_systems) == 0x2C);
static_assert(!k32 || offsetof(ELEMENT_HEADER, image_flags) == 0x30);
static_assert(!k32 || offsetof(ELEMENT_HEADER, aircraft_special_instrumentation) == 0x34);
static_assert(!k32 || offsetof(ELEMENT_HEADER, reserved) == 0x38);

static_assert(!k32 || sizeof(ELEMENT_STATIC_IMAGE) == 96);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, image_data) == 0x3C);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, save_buffer) == 0x4C);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, hdc) == 0x50);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, hbmp) == 0x54);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, reserved1) == 0x58);
static_assert(!k32 || offsetof(ELEMENT_STATIC_IMAGE, reserved2) == 0x5C);

static_assert(!k32 || sizeof(ELEMENT_ICON) == 140);
static_assert(!k32 || offsetof(ELEMENT_ICON, source_var) == 0x3C);
static_assert(!k32 || offsetof(ELEMENT_ICON, source_var_cb) == 0x58);
static_assert(!k32 || offsetof(ELEMENT_ICON, switch_type) == 0x5C);
static_assert(!k32 || offsetof(ELEMENT_ICON, switch_count) == 0x60);
static_assert(!k32 || offsetof(ELEMENT_ICON, scale) == 0x64);
static_assert(!k32 || offsetof(ELEMENT_ICON, offset) == 0x6C);
static_assert(!k32 || offsetof(ELEMENT_ICON, num_icons) == 0x70);
static_assert(!k32 || offsetof(ELEMENT_ICON, cur_icon) == 0x74);
static_assert(!k32 || offsetof(ELEMENT_ICON, dst_icon) == 0x78);
static_assert(!k32 || offsetof(ELEMENT_ICON, picon_data) == 0x7C);
static_assert(!k32 || offsetof(ELEMENT_ICON, save_buffer) == 0x80);
static_assert(!k32 || offsetof(ELEMENT_ICON, update_cb) == 0x84);
static_assert(!k32 || offsetof(ELEMENT_ICON, reserved) == 0x88);

static_assert(!k32 || sizeof(PANELS) == 0x158);
static_assert(!k32 || offsetof(PANELS, slots) == 0x18);
static_assert(!k32 || offsetof(MODULE_LINKAGE, ModuleInit) == 0x04);
static_assert(!k32 || offsetof(MODULE_LINKAGE, ModuleDeinit) == 0x08);
static_assert(!k32 || offsetof(MODULE_LINKAGE, ModuleFlags) == 0x0C);
static_assert(!k32 || offsetof(MODULE_LINKAGE, ModulePriority) == 0x10);
static_assert(!k32 || offsetof(MODULE_LINKAGE, ModuleVersion) == 0x14);
static_assert(!k32 || offsetof(MODULE_LINKAGE, gauge_header_ptr) == 0x18);
static_assert(!k32 || sizeof(IMPORT_TABLE) == 16);
}  // namespace sdk_layout
