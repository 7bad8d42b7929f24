// pln_convert.cpp: the simulator planner's .PLN files converted into the
// temporary route file "temp.rte" of the flight plan folder, which the route
// readers then load as any route file. Apart from the plan writer so that
// the route readers, which call it, and it, which needs their folder, stay
// out of each other's way.
#include "plan/sim_plans.h"

#include "cdu/keypad.h"
#include "plan/pln_reader.h"
#include "plan/route_files.h"

#include <windows.h>
#include <share.h>

#include <cstdio>
#include <cstring>

namespace {
constexpr char kConvertedFile[] = "temp.rte";
constexpr char kUnableToLoadFp[] = "Unable to load FP";
}  // namespace

int ConvertPlanFile(const char* name) {
    // 1. The plan file and the temporary route file, both in the plan folder.
    char folder[MAX_PATH], in_path[MAX_PATH], out_path[MAX_PATH];
    FlightPlanFolder(folder, sizeof folder);
    bool fits = std::snprintf(in_path, sizeof in_path, "%s%s", folder, name ? name : "") < static_cast<int>(sizeof in_path) &&
                std::snprintf(out_path, sizeof out_path, "%s%s", folder, kConvertedFile) < static_cast<int>(sizeof out_path);
    FILE* in = fits && name != nullptr && name[0] != 0 ? _fsopen(in_path, "rb", _SH_DENYNO) : nullptr;
    if (in == nullptr) {
        SetCduMessage(kUnableToLoadFp);
        return kConvertFailed;
    }
    FILE* out = _fsopen(out_path, "w", _SH_DENYNO);
    if (out == nullptr) {
        std::fclose(in);
        SetCduMessage(kUnableToLoadFp);
        return kConvertFailed;
    }
    std::fprintf(out, "[FlightPlan]\n");

    // 2. Line by line; a line longer than the reader takes is cut, its rest dropped.
    static PlnReader reader;  // keeps the frame's stack small
    reader = PlnReader{};
    static char line[kPlnLineSize + 2];
    while (std::fgets(line, sizeof line, in) != nullptr) {
        size_t n = std::strlen(line);
        bool whole = n > 0 && line[n - 1] == '\n';
        if (!whole && n + 1 >= sizeof line) {
            int c = 0;
            while ((c = std::fgetc(in)) != EOF && c != '\n') {
            }
        }
        while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r')) line[--n] = 0;
        PlnRow row;
        if (!ReadPlnLine(reader, std::string_view(line, n), row)) continue;
        // 3. One converted row: four columns, so that the navaids are looked up on loading.
        std::fprintf(out, "%-8s %-3.5f %-3.5f  %s\n", row.ident.data(), row.latitude, row.longitude, row.type.data());
    }
    std::fclose(in);
    std::fclose(out);
    return 0;
}
