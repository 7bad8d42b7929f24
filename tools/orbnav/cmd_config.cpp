// cmd_config.cpp: `orbnav config`, the options as the module holds them after
// reading orb.cfg and an aircraft profile, each with where its value came
// from, and the lines that did not take with the reason why.
#include "command.h"

#include "frame/aircraft_profile.h"
#include "frame/global_config.h"
#include "frame/module_state.h"

#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace {

void Usage(FILE* out) {
    std::fprintf(out,
                 "usage: orbnav config [--root DIR] [--profile NAME]\n"
                 "\n"
                 "Reads DIR\\orb\\orb.cfg and, with --profile, DIR\\orb\\Aircraft\\NAME.cfg in the\n"
                 "order the module does at start-up, then prints every option as the module\n"
                 "holds it, one \"Key = value\" a line: first the options of orb.cfg, then those\n"
                 "of the profile, its [Lvars] rows and what is worked out from it. Behind each\n"
                 "value stands where it came from (file:line, or default); a value that the\n"
                 "profile set says so. Lines that did not take are listed at the end.\n"
                 "\n"
                 "  --root DIR      the simulator folder, the one that holds orb/ (default\n"
                 "                  data/sim, relative to the current folder)\n"
                 "  --profile NAME  the aircraft profile, as a panel's gauge parameter names it\n"
                 "  --help          this text\n");
}

// Where an option's value came from: the line that set it, and the value
// right after that line, to tell when a later step changed it again.
struct Source {
    std::string file;
    int line = 0;
    std::string value_then;
};

struct Listing {
    std::map<const void*, Source> sources;  // by the option's field
    std::vector<std::string> notes;          // lines that did not take
    bool orb_cfg_found = false;
    bool profile_found = false;
} g_listing;

const void* FieldOf(const OptionEntry& entry) {
    if (entry.integer != nullptr) return entry.integer;
    if (entry.real != nullptr) return entry.real;
    return entry.text;
}

std::string ValueOf(const OptionEntry& entry) {
    char text[kConfigTextSize];
    FormatOptionValue(entry, text, sizeof text);
    return text;
}

const char* RefusalReason(OptionRule rule) {
    switch (rule) {
        case OptionRule::AboveZero: return "taken only above 0";
        case OptionRule::IntegerPartAboveZero: return "taken only when its integer part is above 0";
        case OptionRule::TcasFeet: return "given in feet, taken from 1000 up";
        default: return "refused";
    }
}

void Listen(const ConfigNoteInfo& info) {
    char where[512];
    std::snprintf(where, sizeof where, "%s:%d", info.file, info.line);
    switch (info.note) {
        case ConfigNote::FileRead:
            (std::strcmp(info.file, "orb.cfg") == 0 ? g_listing.orb_cfg_found : g_listing.profile_found) = true;
            break;
        case ConfigNote::FileMissing:
            break;
        case ConfigNote::Taken:
            g_listing.sources[FieldOf(*info.entry)] = {info.file, info.line, ValueOf(*info.entry)};
            break;
        case ConfigNote::Refused:
            g_listing.notes.push_back(std::string(where) + ": " + info.entry->key + " = " + info.value + " not taken (" +
                                      RefusalReason(info.entry->rule) + "); it stays " + ValueOf(*info.entry));
            break;
        case ConfigNote::UnknownKey: {
            std::string note = std::string(where) + ": \"" + info.key + "\" is no key of this file";
            if (std::strchr(info.key, '*') != nullptr) note += " (a blank before \"=\" or at the line's start?)";
            g_listing.notes.push_back(note);
            break;
        }
        case ConfigNote::LvarRow:
            break;
        case ConfigNote::LvarDropped:
            g_listing.notes.push_back(std::string(where) + ": [Lvars] row dropped: the table holds " +
                                      std::to_string(kLvarRowLimit) + " rows");
            break;
    }
}

void PrintOption(const char* key, const std::string& value, const std::string& source) {
    std::string line = std::string(key) + " = " + value;
    std::printf("%-44s ; %s\n", line.c_str(), source.c_str());
}

void PrintNotes() {
    if (g_listing.notes.empty()) return;
    std::printf("# lines that did not take\n");
    for (const std::string& note : g_listing.notes) std::printf("# %s\n", note.c_str());
}

// "orb.cfg:12", "default", "TwinJet.cfg:8, worked out to ..." for one row.
std::string SourceOf(const OptionEntry& entry, const std::string& changed_by) {
    std::string now = ValueOf(entry);
    auto found = g_listing.sources.find(FieldOf(entry));
    if (found == g_listing.sources.end()) return "default";
    std::string source = found->second.file + ":" + std::to_string(found->second.line);
    if (found->second.value_then != now) source += ", then " + changed_by;
    return source;
}

int RunConfig(int argc, char** argv) {
    const char* root = OrbnavOptions{}.root;
    const char* profile = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            Usage(stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--root") == 0 || std::strcmp(argv[i], "--profile") == 0) {
            if (i + 1 >= argc || argv[i + 1][0] == 0) return Fail("config: %s needs a value", argv[i]);
            (argv[i][2] == 'r' ? root : profile) = argv[i + 1];
            ++i;
            continue;
        }
        return Fail("config: unknown option '%s' (orbnav config --help)", argv[i]);
    }
    std::error_code error;
    if (!std::filesystem::is_directory(root, error)) return Fail("config: %s", NoSimulatorFolder(root).c_str());
    if (std::strlen(root) >= static_cast<size_t>(kRootFolderSize) - 32)
        return Fail("config: the folder path '%s' is too long for the module", root);
    if (profile != nullptr && std::strlen(profile) >= static_cast<size_t>(kProfileNameSize))
        return Fail("config: the profile name '%s' is too long", profile);

    // Start-up's order: orb.cfg, then the profile.
    CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), root);
    g_config_observer = Listen;
    LoadGlobalConfig();
    std::map<const void*, std::string> after_orb_cfg;
    for (const OptionEntry& entry : GlobalOptionTable()) after_orb_cfg[FieldOf(entry)] = ValueOf(entry);
    std::map<const void*, Source> orb_cfg_sources = g_listing.sources;
    if (profile != nullptr) {
        CopyText(g_module.AircraftProfileName.data(), g_module.AircraftProfileName.size(), profile);
        LoadAircraftProfile(profile);
    }
    g_config_observer = nullptr;
    std::string profile_file = profile != nullptr ? std::string(profile) + ".cfg" : "";

    // orb.cfg's options, with the profile's hand marked.
    std::printf("# orb.cfg: %s/orb/orb.cfg%s\n", root, g_listing.orb_cfg_found ? "" : " not found: defaults");
    for (const OptionEntry& entry : GlobalOptionTable()) {
        const void* field = FieldOf(entry);
        auto by_profile = g_listing.sources.find(field);
        std::string source;
        if (by_profile != g_listing.sources.end() && by_profile->second.file == profile_file && profile != nullptr)
            source = "set by profile " + SourceOf(entry, "worked out");
        else if (after_orb_cfg[field] != ValueOf(entry))
            source = (orb_cfg_sources.count(field) ? "orb.cfg:" + std::to_string(orb_cfg_sources[field].line)
                                                   : std::string("default")) +
                     ", changed by the profile's load (was " + after_orb_cfg[field] + ")";
        else
            source = SourceOf(entry, "changed");
        PrintOption(entry.key, ValueOf(entry), source);
    }
    if (profile == nullptr) {
        PrintNotes();
        return 0;
    }

    // The profile's own options (those it sets in orb.cfg's stand above).
    std::printf("# profile: %s/orb/Aircraft/%s%s\n", root, profile_file.c_str(),
                g_listing.profile_found ? "" : " not found: defaults");
    std::vector<const void*> global_fields;
    for (const OptionEntry& entry : GlobalOptionTable()) global_fields.push_back(FieldOf(entry));
    for (const OptionEntry& entry : ProfileOptionTable()) {
        bool shared = false;
        for (const void* field : global_fields) shared = shared || field == FieldOf(entry);
        if (shared) continue;
        std::string source = SourceOf(entry, "worked out after the file");
        PrintOption(entry.key, ValueOf(entry), source);
    }

    // What the module works out from it.
    std::printf("# worked out from the profile\n");
    const AircraftProfile& p = g_profile;
    const std::pair<const char*, double> derived[] = {
        {"ClimbMachMin", p.ClimbMachMin},   {"ClimbMachMax", p.ClimbMachMax},     {"CruiseMachMin", p.CruiseMachMin},
        {"CruiseMachMax", p.CruiseMachMax}, {"DescentMachMin", p.DescentMachMin}, {"DescentMachMax", p.DescentMachMax},
        {"ClimbIasBase", p.ClimbIasBase},   {"CruiseIasBase", p.CruiseIasBase},   {"DescentIasBase", p.DescentIasBase},
    };
    for (const auto& [key, value] : derived) {
        char text[64];
        std::snprintf(text, sizeof text, "%.6g", value);
        PrintOption(key, text, "worked out");
    }
    PrintOption("AiracCycle", g_airac.cycle.data(), "navs.txt");
    PrintOption("AiracValidity", g_airac.validity.data(), "navs.txt");
    PrintOption("AiracDates", g_airac.dates.data(), "navs.txt");

    // The [Lvars] rows in the file's own form.
    std::printf("# [Lvars]: %d rows\n", g_lvars.count);
    for (int i = 0; i < g_lvars.count; ++i) {
        const LvarRow& row = g_lvars.rows[i];
        std::string line = std::string(row.name.data()) + "=" + std::to_string(row.value);
        if (row.action_text[0] != 0) line += "," + std::string(row.action_text.data()) + "=" + std::to_string(row.parameter);
        const char* remark = row.action != LvarAction::None ? "" : row.action_text[0] == 0 ? " ; no action: never acts"
                                                                                           : " ; no such action: never acts";
        std::printf("%s%s\n", line.c_str(), remark);
    }
    PrintNotes();
    if (!g_listing.profile_found) {
        Fail("config: no profile '%s/orb/Aircraft/%s'; the module would run on the defaults above", root,
             profile_file.c_str());
        return 1;
    }
    return 0;
}

const OrbnavCommand kConfigCommand("config", "the options of orb.cfg and an aircraft profile as the module holds them",
                                   RunConfig);
}  // namespace
