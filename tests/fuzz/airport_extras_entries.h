// airport_extras_entries.h: the entries that feed any bytes to the readers
// of the airport extras: apt_additional_info.txt (right-hand circuits and
// the tower view), the parking file, orb_apts.txt (runway lengths) and
// atc_bdry.txt. The libFuzzer targets call them, and a unit test runs them
// over a few hostile inputs.
#pragma once

#include "frame/data_text.h"
#include "frame/global_config.h"
#include "frame/module_state.h"
#include "navdata/airport_extras.h"
#include "navdata/atc_boundaries.h"
#include "navdata/nav_database.h"
#include "plan/plan_tables.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace extras_fuzz {

inline bool WriteFile(const std::filesystem::path& path, const uint8_t* data, size_t size) {
    std::filesystem::create_directories(path.parent_path());
    FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) return false;
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    return true;
}

// The first word of the bytes (up to 8), as an ident the readers look for.
inline std::string FirstIdent(const uint8_t* data, size_t size) {
    std::string ident(reinterpret_cast<const char*>(data), size < 8 ? size : 8);
    size_t cut = ident.find_first_of(" \t\r\n[]=");
    if (cut != std::string::npos) ident.resize(cut);
    return ident.empty() ? std::string("KSEA") : ident;
}

inline void UseFolder(const std::filesystem::path& folder) {
    std::snprintf(g_module.RootFolder.data(), g_module.RootFolder.size(), "%s", folder.c_str());
}

// The bytes as apt_additional_info.txt and the parking file, read for an
// airport of four runways, then as the destination's tower view.
inline void AirportInfo(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    if (!WriteFile(folder / "orb" / "navdata" / "apt_additional_info.txt", data, size)) return;
    if (!WriteFile(folder / "orb" / "Aircraft" / "parking.txt", data, size)) return;
    const char apts[] = "KSEA Seattle 433 47.449 -122.309 16R_11901_47.46_-122.31_163.0 09L_8000_47.45_-122.32_90.0\n";
    if (!WriteFile(folder / "orb" / "navdata" / "apts.txt", reinterpret_cast<const uint8_t*>(apts), sizeof apts - 1))
        return;
    UseFolder(folder);
    SetText(g_config.ParkingFile, "parking.txt");
    std::string ident = FirstIdent(data, size);
    SetAirport("KSEA", 0);
    LoadParkingPosition(ident);
    ReadRightPatterns(ident);
    g_plan.context.ActiveLastRow = 1;
    SetText(g_plan.ActivePlan[1].Ident, ident);
    for (int selection : {kNoRunwaySelected, 1}) {
        g_airport_extras.runway_page_selection = selection;
        SetTowerView();
    }
}

// The bytes as orb_apts.txt, searched for the first word's runways.
inline void RunwayLengths(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    if (!WriteFile(folder / "orb" / "navdata" / "orb_apts.txt", data, size)) return;
    UseFolder(folder);
    std::string ident = FirstIdent(data, size);
    for (const char* runway : {"16L", "_", "", "09"}) (void)FindRunwayLength(ident, runway);
}

// The bytes as atc_bdry.txt, loaded into the table.
inline void Boundaries(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    if (!WriteFile(folder / "orb" / "navdata" / "atc_bdry.txt", data, size)) return;
    UseFolder(folder);
    g_atc_boundaries.AtcBoundariesLoaded = 0;
    LoadAtcBoundaries();
}

}  // namespace extras_fuzz
