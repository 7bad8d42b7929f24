// route_formats_test.cpp: other tools' plan files, read from samples written
// after the formats' public descriptions, converted between every pair of
// formats with every waypoint and position kept to the coarser format's
// precision, and refused with the right line when a line is wrong.
#include "plan/route_formats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {
std::string Sample(const std::string& name) {
    std::ifstream in(std::filesystem::path(ORB_SOURCE_DIR) / "tests/plan/plans" / name, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

RoutePlan Read(RouteFormat format, const std::string& text) {
    RoutePlan plan;
    RouteError error;
    EXPECT_TRUE(ReadRouteText(format, text, plan, error)) << FormatName(format) << ": line " << error.line << ": " << error.message;
    return plan;
}

RouteError ReadBad(RouteFormat format, const std::string& text) {
    RoutePlan plan;
    RouteError error;
    EXPECT_FALSE(ReadRouteText(format, text, plan, error)) << FormatName(format) << " took:\n" << text;
    EXPECT_FALSE(error.message.empty());
    return error;
}

// Degrees a position may move through one write and read of the format.
double Precision(RouteFormat format) {
    switch (format) {
    case RouteFormat::Rte: return 0.5e-5;                  // five decimals
    case RouteFormat::PlnXml: return 0.005 / 3600 + 1e-12; // hundredths of a second
    case RouteFormat::PlnText: return 0.005 / 60 + 1e-12;  // hundredths of a minute
    case RouteFormat::Fms3:
    case RouteFormat::Fms11: return 0.5e-6;                // six decimals
    case RouteFormat::FlightGear: return 0.5e-8;           // eight decimals
    }
    return 0;
}

bool HasKinds(RouteFormat format) { return format != RouteFormat::FlightGear; }

constexpr RouteFormat kAll[] = {RouteFormat::Rte,  RouteFormat::PlnXml, RouteFormat::PlnText,
                                RouteFormat::Fms3, RouteFormat::Fms11,  RouteFormat::FlightGear};

// A plan with every kind of point, airways, southern and eastern positions.
RoutePlan Reference() {
    RoutePlan plan;
    auto add = [&](const char* ident, double lat, double lon, PointKind kind, const char* via) {
        RoutePoint p;
        p.ident = ident;
        p.lat = lat;
        p.lon = lon;
        p.kind = kind;
        p.via = via;
        plan.points.push_back(p);
    };
    add("YSSY", -33.946111, 151.177222, PointKind::Airport, "");
    add("SY", -33.958333, 151.176667, PointKind::Vor, "");
    add("RIVET", -33.500012, 150.700004, PointKind::Fix, "H65");
    add("CB", -35.309444, 149.195000, PointKind::Ndb, "H65");
    add("WP1", -36.000001, 148.999999, PointKind::LatLon, "");
    add("YMML", -37.673333, 144.843333, PointKind::Airport, "");
    plan.cruise_altitude = 35000;
    return plan;
}
}  // namespace

TEST(PlanFormats, SamplesReadAsTheirFormatsDescribeThem) {
    RoutePlan v3 = Read(RouteFormat::Fms3, Sample("KSEAKGEG_v3.fms"));
    ASSERT_EQ(v3.points.size(), 5u);
    EXPECT_EQ(v3.points[3].ident, "MWH");
    EXPECT_EQ(v3.points[3].kind, PointKind::Ndb);
    EXPECT_EQ(v3.points[1].kind, PointKind::Vor);
    EXPECT_DOUBLE_EQ(v3.points[0].altitude, 433);
    EXPECT_DOUBLE_EQ(v3.points[4].lon, -117.533965);

    RoutePlan v11 = Read(RouteFormat::Fms11, Sample("KSEAKGEG.fms"));
    ASSERT_EQ(v11.points.size(), 5u);
    EXPECT_EQ(v11.points[2].via, "J70");
    EXPECT_EQ(v11.points[1].via, "");       // DRCT
    EXPECT_EQ(v11.points[0].via, "");       // ADEP
    EXPECT_EQ(v11.points[3].kind, PointKind::LatLon);
    EXPECT_EQ(v11.points[3].ident, "+47.300_-119.800");

    RoutePlan fg = Read(RouteFormat::FlightGear, Sample("KSEAKGEG.fgfp"));
    ASSERT_EQ(fg.points.size(), 4u);
    EXPECT_EQ(fg.points[0].kind, PointKind::Airport);  // the departure airport named
    EXPECT_EQ(fg.points[3].kind, PointKind::Airport);
    EXPECT_FALSE(fg.points[1].kind_known);             // "navaid" alone: VOR, NDB or fix?
    EXPECT_EQ(fg.points[2].kind, PointKind::LatLon);
    EXPECT_DOUBLE_EQ(fg.points[2].altitude, 12000);
    EXPECT_DOUBLE_EQ(fg.points[1].lat, 47.435361);

    // The module's own reading and this one agree on the older form: OLM at
    // 58.30' and 54.11' (minutes kept whole here, not cut to seconds).
    RoutePlan fs9 = Read(RouteFormat::PlnText, Sample("SEAOLM_FS9.PLN"));
    ASSERT_EQ(fs9.points.size(), 3u);
    EXPECT_EQ(fs9.points[1].ident, "OLM");
    EXPECT_EQ(fs9.points[1].kind, PointKind::Vor);
    EXPECT_NEAR(fs9.points[1].lat, 46 + 58.30 / 60, 1e-9);
    EXPECT_NEAR(fs9.points[1].lon, -(122 + 54.11 / 60), 1e-9);

    RoutePlan fsx = Read(RouteFormat::PlnXml, Sample("SEAOLM_FSX.PLN"));
    ASSERT_EQ(fsx.points.size(), 3u);
    EXPECT_NEAR(fsx.points[1].lat, 46 + 58 / 60.0 + 17.90 / 3600, 1e-9);
    EXPECT_NEAR(fsx.points[1].lon, -(122 + 54 / 60.0 + 6.60 / 3600), 1e-9);
    EXPECT_EQ(fsx.points[0].kind, PointKind::Airport);
    EXPECT_EQ(fsx.cruise_altitude, 8000);
}

TEST(PlanFormats, EveryPairRoundTripsItsWaypointsPositionsKindsAndAirways) {
    const RoutePlan reference = Reference();
    for (RouteFormat a : kAll) {
        for (RouteFormat b : kAll) {
            // Reference -> A -> B -> back, as a user's chain of conversions.
            RoutePlan in_a = Read(a, WriteRouteText(a, reference));
            RoutePlan in_b = Read(b, WriteRouteText(b, in_a));
            SCOPED_TRACE(std::string(FormatName(a)) + " -> " + FormatName(b));
            ASSERT_EQ(in_b.points.size(), reference.points.size());
            double tolerance = Precision(a) + Precision(b) + 1e-12;
            for (size_t i = 0; i < reference.points.size(); ++i) {
                const RoutePoint& want = reference.points[i];
                const RoutePoint& got = in_b.points[i];
                EXPECT_EQ(got.ident, want.ident) << i;
                EXPECT_NEAR(got.lat, want.lat, tolerance) << i;
                EXPECT_NEAR(got.lon, want.lon, tolerance) << i;
                if (HasKinds(a) && HasKinds(b)) {
                    EXPECT_EQ(got.kind, want.kind) << i;
                }
                if (FormatHasAirways(a) && FormatHasAirways(b)) {
                    EXPECT_EQ(got.via, want.via) << i;
                } else {
                    EXPECT_EQ(got.via, "") << i;
                }
            }
        }
    }
}

TEST(PlanFormats, ModuleFormsAreWhatTheModuleWritesAndReads) {
    RoutePlan plan = Reference();
    std::string rte = WriteRouteText(RouteFormat::Rte, plan);
    // The module's row: ident padded to 16, positions with five decimals,
    // "---" for no frequency, the airway padded to 7.
    EXPECT_NE(rte.find("CruiseAlt=35000\n[FlightPlan]\n"), std::string::npos);
    EXPECT_NE(rte.find("RIVET            -33.50001  150.70000  INT ---    H65    \n"), std::string::npos) << rte;
    EXPECT_NE(rte.find("WP1              -36.00000  149.00000  WPT ---\n"), std::string::npos) << rte;
    // The older form: hemisphere, degrees, "*", minutes with two decimals.
    std::string pln = WriteRouteText(RouteFormat::PlnText, plan);
    // 33.946111 S = 33 deg 56.77'; 151.177222 E = 151 deg 10.63'.
    EXPECT_NE(pln.find("waypoint.0=, YSSY, , YSSY, A, S33* 56.77', E151* 10.63', "), std::string::npos) << pln;
    EXPECT_NE(pln.find("departure_id=YSSY, "), std::string::npos);
    // The XML form: seconds with hundredths and the degree sign in UTF-8.
    std::string xml = WriteRouteText(RouteFormat::PlnXml, plan);
    // 33.958333 S = 33 deg 57' 30.00"
    EXPECT_NE(xml.find("<WorldPosition>S33\xC2\xB0 57' 30.00\",E151\xC2\xB0 10' 36.00\","), std::string::npos) << xml;
    EXPECT_NE(xml.find("<ATCAirway>H65</ATCAirway>"), std::string::npos);
}

TEST(PlanFormats, WrongLinesAreNamed) {
    EXPECT_EQ(ReadBad(RouteFormat::Rte, "[FlightPlan]\nKSEA 47.45 -122.31 APT ---\nSEA 47.x -122.3 VOR\n").line, 3);
    EXPECT_EQ(ReadBad(RouteFormat::Rte, "KSEA 47.45 -122.31 APT\n").line, 0);  // no [FlightPlan]
    EXPECT_EQ(ReadBad(RouteFormat::Rte, "[FlightPlan]\nKSEA 47.45\n").line, 2);
    EXPECT_EQ(ReadBad(RouteFormat::Rte, "[FlightPlan]\nKSEA 97.45 -122.31 APT\n").line, 2);  // off the globe
    EXPECT_EQ(ReadBad(RouteFormat::Fms3, "I\n3 version\n1\n1\n1 KSEA 0 47.45 -122.31\n7 X 0 1 1\n").line, 6);
    EXPECT_EQ(ReadBad(RouteFormat::Fms11, "I\n1100 Version\nCYCLE 1801\nNUMENR 3\n1 KSEA ADEP 0 47.45 -122.31\n").line, 0);
    EXPECT_EQ(ReadBad(RouteFormat::Fms11, "I\n1100 Version\n1 KSEA ADEP 0 47.45\n").line, 3);
    EXPECT_EQ(ReadBad(RouteFormat::Fms3, "X\n3 version\n").line, 1);
    EXPECT_EQ(ReadBad(RouteFormat::PlnText, "[flightplan]\nwaypoint.0=KSEA, A, N47* 27.01', W122* xx'\n").line, 2);
    EXPECT_EQ(ReadBad(RouteFormat::PlnText, "[flightplan]\nwaypoint.0 KSEA\n").line, 2);
    EXPECT_EQ(ReadBad(RouteFormat::PlnText, "waypoint.0=, KSEA, A, N47* 1', W122* 1'\n").line, 0);  // no section
    EXPECT_EQ(ReadBad(RouteFormat::PlnXml,
                      "<FlightPlan.FlightPlan>\n<ATCWaypoint id=\"A\">\n<ATCWaypointType>VOR</ATCWaypointType>\n"
                      "<WorldPosition>N47 garbage</WorldPosition>\n</ATCWaypoint>\n")
                  .line,
              4);
    EXPECT_EQ(ReadBad(RouteFormat::PlnXml, "<FlightPlan.FlightPlan>\n\n<ATCWaypoint id=\"A\">\n").line, 3);
    EXPECT_EQ(ReadBad(RouteFormat::PlnXml, "<PropertyList/>").line, 0);
    EXPECT_EQ(ReadBad(RouteFormat::FlightGear,
                      "<PropertyList>\n<route>\n<wp>\n<ident>A</ident>\n<lat>1</lat>\n</wp>\n</route>\n</PropertyList>\n")
                  .line,
              3);
}

TEST(PlanFormats, HostileBytesNeverCrashAReader) {
    // Every sample cut at every tenth byte and with bytes flipped: each
    // reader either takes it or names a wrong line, and never reads past it.
    std::string samples[] = {Sample("KSEAKGEG_v3.fms"), Sample("KSEAKGEG.fms"), Sample("KSEAKGEG.fgfp"),
                             Sample("SEAOLM_FS9.PLN"), Sample("SEAOLM_FSX.PLN"), WriteRouteText(RouteFormat::Rte, Reference())};
    int refused = 0, taken = 0;
    for (const std::string& sample : samples) {
        for (size_t cut = 0; cut < sample.size(); cut += 10) {
            std::string text = sample.substr(0, cut);
            if (cut % 20 == 0 && !text.empty()) text[cut / 2] = static_cast<char>(0xFF - text[cut / 2]);
            for (RouteFormat format : kAll) {
                RoutePlan plan;
                RouteError error;
                if (ReadRouteText(format, text, plan, error)) {
                    ++taken;
                    EXPECT_LE(plan.points.size(), kMaxRoutePoints);
                } else {
                    ++refused;
                    EXPECT_FALSE(error.message.empty());
                }
            }
        }
    }
    EXPECT_GT(refused, 0);
    EXPECT_GT(taken, 0);
    // An ident with a field separator of another format in it (a comma and a
    // "*" part the older .PLN's fields) is made one plain word on reading, so
    // that it converts to every format and back.
    RoutePlan odd = Read(RouteFormat::Fms3, "I\n3 version\n1\n1\n11 A,B*C 0 1 2\n11 <X> 0 3 4\n");
    ASSERT_EQ(odd.points.size(), 2u);
    EXPECT_EQ(odd.points[0].ident, "A_B_C");
    EXPECT_EQ(odd.points[1].ident, "_X_");
    for (RouteFormat format : kAll) {
        RoutePlan back = Read(format, WriteRouteText(format, odd));
        ASSERT_EQ(back.points.size(), 2u) << FormatName(format);
        EXPECT_EQ(back.points[0].ident, "A_B_C") << FormatName(format);
    }
    // More points than any plan holds is a broken file, not a plan.
    std::string many = "I\n3 version\n1\n1\n";
    for (int i = 0; i < 1001; ++i) many += "11 FIX 0 1 1\n";
    EXPECT_EQ(ReadBad(RouteFormat::Fms3, many).line, 1005);
}
