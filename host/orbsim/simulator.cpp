// simulator.cpp: loading the module, loading panels, and the frame.
#include "simulator.h"

#include "panel_table.h"
#include "resources.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace orbsim {

bool StartModule(HostState& host, const std::string& sim_dir, std::string& error) {
    if (host.module != nullptr) return true;
    // 1. The simulator's working folder is its own; the module finds it so.
    if (chdir(sim_dir.c_str()) != 0) {
        error = sim_dir + ": cannot enter the simulator folder";
        return false;
    }
    // 2. The module tells the generation by the simulator's own files; say so
    // when the folder would make it take the other one than orbsim plays.
    int signs = 0;
    for (const char* sign : {"fsx.exe", "ace.exe", "SimObjects", "Missions"})
        if (access((sim_dir + "/" + sign).c_str(), F_OK) == 0) ++signs;
    if ((signs >= 3) != (host.generation == 10))
        std::fprintf(stderr,
                     "orbsim: warning: %s %s the FSX files (fsx.exe, SimObjects, Missions); the module will take it "
                     "for %s while orbsim plays %s\n",
                     sim_dir.c_str(), signs >= 3 ? "has" : "lacks", signs >= 3 ? "FSX" : "FS2004",
                     host.generation == 10 ? "FSX" : "FS2004 (--generation 9)");
    // 3. The module file, checked before the loader maps it (a truncated file
    // would kill orbsim with SIGBUS), then the module and its two exports.
    host.module_path = sim_dir + "/GAUGES/orb1.gau";
    std::vector<uint8_t> image;
    struct stat module_stat{};
    if (stat(host.module_path.c_str(), &module_stat) == 0 && S_ISDIR(module_stat.st_mode)) {
        error = host.module_path + ": is a directory";
        return false;
    }
    {
        std::ifstream in(host.module_path, std::ios::binary);
        if (!in) {
            error = host.module_path + ": cannot read the module";
            return false;
        }
        image.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad()) {
            error = host.module_path + ": cannot read the module";
            return false;
        }
    }
    std::string why;
    if (!CheckModuleImage(image.data(), image.size(), OwnElfMachine(), why)) {
        error = host.module_path + ": " + why;
        return false;
    }
    void* module = dlopen(host.module_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        const char* why = dlerror();
        error = host.module_path + ": cannot load the module: " + (why ? why : "unknown error");
        return false;
    }
    auto* import_table = static_cast<IMPORT_TABLE*>(dlsym(module, "ImportTable"));
    auto* linkage = static_cast<MODULE_LINKAGE*>(dlsym(module, "Linkage"));
    if (import_table == nullptr || linkage == nullptr) {
        error = host.module_path + ": the module exports no ImportTable or no Linkage";
        dlclose(module);
        return false;
    }
    if (import_table->PANELSentry.fnID != kPanelsImportId) {
        error = host.module_path + ": ImportTable does not ask for the panel table";
        dlclose(module);
        return false;
    }
    host.module = module;
    host.import_table = import_table;
    host.linkage = linkage;
    // 4. The panel table, then the module's start.
    BuildPanelTable(host);
    host.fsuipc.simulator = host.generation == 10 ? 8 : 7;
    import_table->PANELSentry.fnptr = &host.panels;
    LoadResourcesFromImage(image, host.gauges.resources);
    host.gauges.resource_handle = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(module));
    if (linkage->ModuleInit != nullptr) linkage->ModuleInit();
    host.module_initialised = true;
    return true;
}

bool LoadPanel(HostState& host, const std::string& path, std::string& error) {
    PanelDesc panel;
    if (!ReadPanelFile(path, panel, error)) return false;
    if (host.gauges.loaded) {
        RunKillServices(host.gauges);
        ClearInstances(host.gauges);
    }
    if (!BuildInstances(host.gauges, panel, host.linkage, path, error)) return false;
    if (!LoadXmlGauges(host, path, error)) return false;
    RunLoadServices(host.gauges);
    return true;
}

bool ReloadPanel(HostState& host, std::string& error) {
    if (!host.gauges.loaded) {
        error = "no panel is loaded";
        return false;
    }
    std::string path = host.gauges.panel_path;
    return LoadPanel(host, path, error);
}

void StopModule(HostState& host) {
    if (host.module == nullptr) return;
    if (host.gauges.loaded) {
        RunKillServices(host.gauges);
        ClearInstances(host.gauges);
    }
    if (host.module_initialised && host.linkage->ModuleDeinit != nullptr) host.linkage->ModuleDeinit();
    host.module_initialised = false;
    host.import_table->PANELSentry.fnptr = nullptr;
    dlclose(host.module);
    host.module = nullptr;
    host.linkage = nullptr;
    host.import_table = nullptr;
}

void RunFrame(HostState& host, bool advance) {
    if (advance) {
        double dt = 1.0 / host.fps;
        host.panel_time += dt;
        if (!host.aircraft.paused) StepAircraft(host.aircraft, dt * host.aircraft.rate);
    }
    // The outside traffic gauge refreshes its block before the gauges draw.
    PublishTraffic(host);
    if (host.gauges.loaded) RunXmlGauges(host);  // the panel's XML gauges update first
    if (host.gauges.loaded) DrawFrame(host.gauges);
}

}  // namespace orbsim
