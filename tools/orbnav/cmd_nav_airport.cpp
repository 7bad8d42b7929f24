// cmd_nav_airport.cpp: `orbnav airport ICAO [--procedures [NAME]]`: an
// airport and its runways as the detail loader reads them and, on request,
// its compiled procedures (SIDs, STARs, approaches), so that a data supplier
// can check their files without the simulator.
#include "cmd_nav_common.h"
#include "command.h"
#include "navdata/nav_database.h"
#include "navdata/procedures.h"
#include "frame/data_text.h"

#include <cstring>

namespace {
constexpr char kProcedureHelp[] =
    "  --procedures [NAME]  also the airport's procedures as the module compiles them:\n"
    "              the SIDs of sids.txt (or sids_user.txt), the STARs of stars.txt (or\n"
    "              stars_user.txt) and the approaches of apps.txt, each leg with its\n"
    "              transition, fix (computed fixes such as TR161, HD090, PT294 at their\n"
    "              estimated positions), runway, restriction, position, FO (fly-over)\n"
    "              and end mark (*: the shared last fix of a transitions-only\n"
    "              procedure); approaches also with marker, altitude and speed.\n"
    "              NAME shows only the procedures of that name. The file formats are\n"
    "              described in docs/navdata.md.\n";

void PrintRouteLegs(const char* kind, const ProcedureRecord& r) {
    std::printf("\n%s %s  runways %s  extra %s\n", kind, r.Name.data(), r.Runways[0] ? r.Runways.data() : "(all)",
                r.Extra[0] ? r.Extra.data() : "-");
    std::printf("  leg  transition  fix      runway       restriction  latitude    longitude    FO  end\n");
    for (int l = 1; l <= r.LegCount && l <= kProcedureLegLimit; ++l) {
        const ProcedureLeg& leg = r.Legs[l];
        std::printf("  %3d  %-10s  %-7s  %-11s  %-11s  %10.6f  %11.6f  %-2s  %s\n", l,
                    leg.Transition[0] ? leg.Transition.data() : "-", leg.Fix.data(),
                    leg.LegRunway[0] ? leg.LegRunway.data() : "-", leg.Restriction[0] ? leg.Restriction.data() : "-",
                    leg.Latitude, leg.Longitude, leg.Flyover ? "FO" : "-", leg.EndMark[0] ? leg.EndMark.data() : "-");
    }
}

void PrintApproachLegs(const ProcedureRecord& r) {
    std::printf("\nAPPROACH %s  runway %s\n", r.ApproachIdent.data(), r.Runways[0] ? r.Runways.data() : "(none)");
    std::printf("  leg  marker  transition  fix      restriction  latitude    longitude    altitude  speed  FO\n");
    for (int l = 1; l <= r.LegCount && l <= kProcedureLegLimit; ++l) {
        const ProcedureLeg& leg = r.Legs[l];
        std::printf("  %3d  %-6s  %-10s  %-7s  %-11s  %10.6f  %11.6f  %8.0f  %5.0f  %s\n", l,
                    leg.Marker[0] ? leg.Marker.data() : "-", leg.Transition[0] ? leg.Transition.data() : "-",
                    leg.Fix.data(), leg.Restriction[0] ? leg.Restriction.data() : "-", leg.Latitude, leg.Longitude,
                    leg.LegAltitude, leg.LegSpeed, leg.Flyover ? "FO" : "-");
    }
}

// The airport's procedures (origin and destination slots loaded), all or
// those named; false when a name matched none, and then nothing is printed.
bool PrintProcedures(const char* name, bool print) {
    const OriginProcedures& o = g_procedures.origin;
    const DestinationProcedures& d = g_procedures.destination;
    std::string wanted = name ? UpperCase(name) : std::string();
    auto fits = [&](std::string_view n) { return wanted.empty() || n == wanted; };
    int found = 0;
    for (int i = 1; i <= o.SidCount && i <= kSidLimit; ++i) found += fits(TextOf(o.SidTable[i].Name));
    for (int i = 1; i <= d.StarCount && i <= kStarLimit; ++i) found += fits(TextOf(d.StarTable[i].Name));
    for (int i = 1; i <= d.ApproachCount && i <= kApproachLimit; ++i) found += fits(TextOf(d.ApproachTable[i].ApproachIdent));
    if (found == 0 && !wanted.empty()) return false;
    if (!print) return true;
    int shown = 0;
    std::printf("\nmagnetic variation %+.0f (true = magnetic + variation); %d SIDs, %d STARs, %d approach rows\n",
                o.OriginMagVar, o.SidCount, d.StarCount, d.ApproachCount);
    for (int i = 1; i <= o.SidCount && i <= kSidLimit; ++i)
        if (fits(TextOf(o.SidTable[i].Name))) PrintRouteLegs("SID", o.SidTable[i]), ++shown;
    for (int i = 1; i <= d.StarCount && i <= kStarLimit; ++i)
        if (fits(TextOf(d.StarTable[i].Name))) PrintRouteLegs("STAR", d.StarTable[i]), ++shown;
    for (int i = 1; i <= d.ApproachCount && i <= kApproachLimit; ++i)
        if (fits(TextOf(d.ApproachTable[i].ApproachIdent))) PrintApproachLegs(d.ApproachTable[i]), ++shown;
    return shown > 0 || wanted.empty();
}

int Run(int argc, char** argv) {
    OrbnavOptions options;
    const char* ident = nullptr;
    const char* procedure = nullptr;
    bool procedures = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: orbnav airport ICAO [--procedures [NAME]] [--root DIR]\n\nReads the airport's line of "
                        "apts.txt (or apts_user.txt) as the module loads\nan origin and lists its runways. ICAO and NAME "
                        "are taken in capitals.\n\n%s%s",
                        kProcedureHelp, kRootHelp);
            return 0;
        } else if (std::strcmp(argv[i], "--procedures") == 0) {
            procedures = true;
        } else if (argv[i][0] != '-' && ident != nullptr && procedures && procedure == nullptr) {
            procedure = argv[i];
        } else if (std::strcmp(argv[i], "--root") == 0 && i + 1 < argc) {
            options.root = argv[++i];
        } else if (argv[i][0] != '-' && ident == nullptr) {
            ident = argv[i];
        } else {
            return Fail("airport: unexpected argument '%s' (--help)", argv[i]);
        }
    }
    if (ident == nullptr) return Fail("airport: ICAO missing (--help)");
    std::string error, missing;
    if (!UseSimulatorFolder(options.root, error) || !HasNavigationData(missing, error))
        return Fail("airport: %s", error.c_str());
    std::string icao = UpperCase(ident);
    g_airports = AirportSlots{};
    LoadAirportDetail(icao.c_str(), 1);
    const AirportDetail& a = g_airports.OriginAirport;
    if (TextOf(a.Ident) != icao) {
        if (procedures) return Fail("airport: %s is not in apts.txt or apts_user.txt", icao.c_str());
        std::printf("%s: NOT IN DATABASE\n", icao.c_str());
        return 1;
    }
    // The destination slot too, and a wrong procedure name before any output.
    if (procedures) {
        LoadAirportDetail(icao.c_str(), 2);
        if (!PrintProcedures(procedure, false))
            return Fail("airport: %s has no procedure %s in sids.txt, stars.txt or apps.txt", icao.c_str(),
                        UpperCase(procedure).c_str());
    }
    std::printf("%s %s  elevation %d ft  %s %s\n", a.Ident.data(), a.Name.data(), a.ElevationFt, a.LatitudeText.data(),
                a.LongitudeText.data());
    std::printf("rwy   length ft  threshold                 heading  recip   ils\n");
    for (int i = 1; i <= a.RunwayCount; ++i) {
        const RunwayRecord& r = a.Runways[i];
        std::printf("%-5s %9d  %10.6f %11.6f  %6.1f  %6.1f", r.Ident.data(), r.LengthFt, r.Latitude, r.Longitude,
                    r.Heading, r.ReciprocalHeading);
        if (r.IlsIdent[0] || r.IlsFrequency[0])
            std::printf("   %.3s %.6s %.1f", r.IlsIdent.data(), r.IlsFrequency.data(), r.IlsCourse);
        std::printf("\n");
    }
    if (procedures) PrintProcedures(procedure, true);
    return 0;
}

OrbnavCommand command("airport", "an airport's runways as the module reads them", Run);
}  // namespace
