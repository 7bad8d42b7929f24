// The built module as the simulator sees it: a library with exactly two
// exports, whose gauges all go through the load, frame and unload services.
#include "support/fake_panels.h"
#include "support/gauge_instance.h"

#include "support/run_command.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <cctype>
#include <set>
#include <string>

namespace {
std::set<std::string> DefinedDynamicSymbols(const std::string& path) {
    std::set<std::string> names;
    std::string out = RunCommand("nm -D --defined-only '" + path + "' 2>/dev/null").output;
    size_t start = 0;
    while (start < out.size()) {
        size_t end = out.find('\n', start);
        if (end == std::string::npos) end = out.size();
        std::string line = out.substr(start, end - start);
        size_t space = line.rfind(' ');
        if (space != std::string::npos) names.insert(line.substr(space + 1));
        start = end + 1;
    }
    return names;
}
}  // namespace

TEST(ModuleLoad, LinuxModuleExportsOnlyTheLinkage) {
    auto names = DefinedDynamicSymbols(ORB_MODULE_PATH);
    ASSERT_FALSE(names.empty()) << "nm could not read " << ORB_MODULE_PATH;
    EXPECT_EQ(names, (std::set<std::string>{"ImportTable", "Linkage"}));
}

TEST(ModuleLoad, EveryGaugeGoesThroughTheServices) {
    char root_pattern[] = "/tmp/orb-load-XXXXXX";
    ASSERT_NE(mkdtemp(root_pattern), nullptr);
    char cwd[4096];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    ASSERT_EQ(chdir(root_pattern), 0);  // the simulator's folder: nothing in it

    void* module = dlopen(ORB_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    auto* import_table = static_cast<IMPORT_TABLE*>(dlsym(module, "ImportTable"));
    auto* linkage = static_cast<MODULE_LINKAGE*>(dlsym(module, "Linkage"));
    ASSERT_NE(import_table, nullptr);
    ASSERT_NE(linkage, nullptr);
    EXPECT_EQ(dlsym(module, "EngineTick"), nullptr);
    EXPECT_EQ(import_table->PANELSentry.fnID, 0x0F);
    ASSERT_EQ(linkage->ModuleID, 0x13);

    FakeSimulatorScope scope;
    import_table->PANELSentry.fnptr = &scope.sim.table;
    linkage->ModuleInit();

    // Place every gauge once and walk it as the simulator does.
    std::vector<std::unique_ptr<GaugeInstance>> placed;
    int gauges = 0;
    for (; linkage->gauge_header_ptr[gauges] != nullptr; ++gauges) {
        const GAUGEHDR& h = *linkage->gauge_header_ptr[gauges];
        placed.push_back(std::make_unique<GaugeInstance>(h, static_cast<GaugeId>(gauges), ""));
    }
    ASSERT_EQ(gauges, 54);
    for (int service : {PANEL_SERVICE_PRE_INSTALL, PANEL_SERVICE_POST_INSTALL, PANEL_SERVICE_PRE_INITIALIZE,
                        PANEL_SERVICE_POST_INITIALIZE, PANEL_SERVICE_CONNECT_TO_WINDOW})
        for (auto& g : placed) g->Service(service);
    for (int frame = 0; frame < 3; ++frame) {
        scope.sim.tokens[1] += 1;  // TICK18
        for (auto& g : placed) {
            g->Service(PANEL_SERVICE_PRE_UPDATE);
            g->Service(PANEL_SERVICE_PRE_DRAW);
        }
    }
    // The tick ran once a frame, however many gauges called it.
    EXPECT_EQ(scope.sim.Reads(0x47), 3);
    // A window opener's click reaches the simulator's window toggle.
    PIXPOINT point{1, 1};
    const GAUGEHDR& opener = *linkage->gauge_header_ptr[static_cast<int>(GaugeId::MCU_OPEN)];
    opener.mouse_rect[2].mouse_function(&point, MOUSE_LEFTSINGLE);
    ASSERT_EQ(scope.sim.window_toggles.size(), 1u);
    EXPECT_EQ(scope.sim.window_toggles[0], 4001u);

    for (int service : {PANEL_SERVICE_PRE_KILL, PANEL_SERVICE_POST_KILL, PANEL_SERVICE_DISCONNECT})
        for (auto& g : placed) g->Service(service);
    linkage->ModuleDeinit();
    import_table->PANELSentry.fnptr = nullptr;
    placed.clear();
    dlclose(module);
    ASSERT_EQ(chdir(cwd), 0);
}

TEST(ModuleLoad, WindowsBuildExportsTwoNamesAndImportsOnlySystemLibraries) {
    std::string dll = std::string(ORB_SOURCE_DIR) + "/build/windows/orb1.gau";
    if (RunCommand("command -v i686-w64-mingw32-objdump").output.empty() || access(dll.c_str(), R_OK) != 0)
        GTEST_SKIP() << "no Windows build here (./orb build --windows makes one)";
    std::string dump = RunCommand("i686-w64-mingw32-objdump -p '" + dll + "'").output;
    EXPECT_NE(dump.find("file format pei-i386"), std::string::npos);
    // Exports: the name table lists exactly the two.
    size_t table = dump.find("[Ordinal/Name Pointer] Table");
    ASSERT_NE(table, std::string::npos);
    std::set<std::string> exports;
    size_t at = dump.find('\n', table) + 1;
    while (at < dump.size()) {
        size_t end = dump.find('\n', at);
        std::string line = dump.substr(at, end - at);
        size_t bracket = line.find(']');
        if (line.empty() || bracket == std::string::npos) break;
        exports.insert(line.substr(line.find_first_not_of(' ', bracket + 1)));
        at = end + 1;
    }
    EXPECT_EQ(exports, (std::set<std::string>{"ImportTable", "Linkage"}));
    // Imports: system libraries that an old Windows has; SimConnect is found at run time.
    // Windows matches library names without regard to case ("dinput8.dll" as its import library spells it).
    const std::set<std::string> allowed = {"KERNEL32.DLL", "USER32.DLL", "GDI32.DLL", "GDIPLUS.DLL",
                                           "MSVCRT.DLL", "ADVAPI32.DLL", "WINMM.DLL", "DINPUT8.DLL"};
    size_t pos = 0;
    int imports = 0;
    while ((pos = dump.find("DLL Name: ", pos)) != std::string::npos) {
        pos += 10;
        std::string name = dump.substr(pos, dump.find('\n', pos) - pos);
        std::string upper = name;
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        EXPECT_TRUE(allowed.count(upper)) << "unexpected import " << name;
        ++imports;
    }
    EXPECT_GT(imports, 0);
    EXPECT_EQ(dump.find("SimConnect"), std::string::npos);
}
