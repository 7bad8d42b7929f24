// procedures.cpp: the procedure tables and their reader. An airport's section
// of sids.txt, stars.txt or apps.txt (or a user file) is read when a detail
// slot is filled, and every coded leg ("turn right, track 270, until 1500 ft")
// is compiled into a computed fix with a made-up name (TR270, HD090, PT294),
// so that the plan and guidance fly it like any other waypoint.
//
// Sections:
//   [SECTION] Tables
//   [SECTION] Small helpers (runway matching, code words, columns)
//   [SECTION] Coded legs (climb, distance, intercept, procedure turn)
//   [SECTION] Reading a section
//   [SECTION] Loaders
#include "navdata/procedures.h"

#include "frame/data_text.h"
#include "frame/module_state.h"
#include "guidance/geodesy.h"
#include "navdata/magnetic_model.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

// [SECTION] Tables
ProcedureTables g_procedures;
SelectedLegSet g_selected_legs;

// The tables live for the module's life inside a 32-bit process.
static_assert(sizeof(ProcedureTables) <= size_t{16} << 20, "the procedure tables must fit in 16 MB");

// [SECTION] Small helpers
namespace {
constexpr int kProcedureColumns = 12;                  // a line has at most eleven; one more shows excess
constexpr double kClimbFeet = 1500.0;                  // fixed climb gradient: 1500 ft ...
constexpr double kClimbNm = 3.1666666666666665;        // ... in this many nm
constexpr double kTurnDegreesPerUnit = 72.0;           // chord table: turn / 72
constexpr double kHalfTurnUnits = 2.5;                 // 180 / 72
constexpr double kClimbRemainderMinimum = 0.2;         // nm; a shorter straight part after a turn is left out
constexpr double kDistanceStep = 0.1;                  // nm; steps of the distance search
constexpr double kDistanceSearchLimit = 50.0;          // nm searched at most
constexpr double kDistanceTolerance = 0.1;             // nm
constexpr double kInterceptTolerance = 2.0;            // degrees: the direct crossing must lie ahead
constexpr double kInterceptFallbackTolerance = 7.0;    // degrees: the mirrored crossings
constexpr double kInterceptShiftPerDegree = 0.019444444444444445;  // nm along the radial per degree of turn
constexpr double kProcedureTurnOutbound = 3.0;         // nm from the reference to the first fix
constexpr double kProcedureTurnAcross = 1.0;           // nm of the turn's side step
}  // namespace

bool RunwayNameMatches(std::string_view leg, std::string_view runway) {
    if (leg.empty() || runway.empty()) return false;
    // Equal names; "16B" for every runway 16; "RW16L" by its last two characters.
    if (leg == runway) return true;
    if (leg.size() >= 3 && runway.size() >= 2 && leg[0] == runway[0] && leg[1] == runway[1] && leg[2] == 'B') return true;
    if (leg.size() >= 5 && runway.size() >= 2 && leg[3] == runway[runway.size() - 2] && leg[4] == runway[runway.size() - 1])
        return true;
    return false;
}

int FindRunwayRow(const AirportDetail& airport, std::string_view leg_runway) {
    int count = std::clamp(airport.RunwayCount, 0, kRunwayLimit);
    for (int i = 1; i <= count; ++i)
        if (RunwayNameMatches(leg_runway, TextOf(airport.Runways[i].Ident))) return i;
    return 0;
}

bool ParseLegCode(std::string_view code, LegCode& out) {
    out = LegCode{};
    if (code.empty() || code[0] != '/') return false;
    // Words between slashes, in any order the supplier wrote them.
    size_t i = 0;
    while (i < code.size()) {
        while (i < code.size() && code[i] == '/') ++i;
        size_t end = code.find('/', i);
        if (end == std::string_view::npos) end = code.size();
        std::string_view word = code.substr(i, end - i);
        i = end;
        if (word.empty()) continue;
        if (word == "RT") {
            out.turn = LegTurn::Right;
        } else if (word == "LT") {
            out.turn = LegTurn::Left;
        } else if (word == "VT") {
            out.terminator = LegTerminator::Vectors;
        } else if (word.size() >= 2 && word[0] == 'U' && word[1] == 'A') {
            out.terminator = LegTerminator::Altitude;
        } else if (word.size() >= 2 && word[0] == 'U' && word[1] == 'D') {
            out.terminator = LegTerminator::Distance;
            out.value = ReadNumber(word.substr(2));
        } else if (word.size() >= 2 && word[0] == 'I' && word[1] == 'C') {
            out.terminator = LegTerminator::Intercept;
            out.value = ReadNumber(word.substr(2));
        } else if ((word[0] == 'T' || word[0] == 'H' || word[0] == 'C') && word.size() >= 2) {
            out.course_letter = word[0];
            out.course = ReadNumber(word.substr(1));
            out.has_course = true;
        }
    }
    return true;
}

namespace {
bool IsNone(std::string_view text) { return text.empty() || text == "---" || text == "--" || text == "-"; }

double Fold360(double angle) { return ModuloPositive(angle, 360.0); }

// "TR270": the code's kind and the three-digit course.
void NameComputedFix(std::array<char, 8>& fix, char letter, double course) {
    const char* kind = letter == 'H' ? "HD" : letter == 'C' ? "CR" : "TR";
    // The course as the file gives it ("H360" stays HD360); others folded.
    double shown = (course >= 0 && course <= 360) ? course : Fold360(course);
    if (!std::isfinite(shown)) shown = 0;
    std::snprintf(fix.data(), fix.size(), "%s%03.0f", kind, shown);
}

void Bearing(double lat1, double lon1, double lat2, double lon2, double& distance, double& bearing) {
    GreatCircle(lat1, lon1, lat2, lon2, distance, bearing);
}
}  // namespace

// [SECTION] Coded legs
// The turn into a leg, in degrees 0..360, for the chord and the intercept shift.
double TurnAngle(LegTurn turn, double course, double start_course) {
    if (turn == LegTurn::Right) return Fold360(course - start_course);
    if (turn == LegTurn::Left) return Fold360(start_course - course);
    return 0;
}

double TurnChordLength(double turn) {
    double a = turn / kTurnDegreesPerUnit;
    double square;
    if (turn <= 90) {
        square = 2 * a * a;
    } else if (turn <= 180) {
        square = a * a + (kHalfTurnUnits - a) * (kHalfTurnUnits - a);
    } else if (turn <= 270) {
        double p = (turn - 180) / kTurnDegreesPerUnit, q = (360 - turn) / kTurnDegreesPerUnit;
        square = p * p + q * q;
    } else {
        double q = (360 - turn) / kTurnDegreesPerUnit;
        square = 2 * q * q;
    }
    return std::sqrt(square);
}

bool ComputeCodedFix(const LegCode& code, const CodedLegInput& in, double& lat, double& lon) {
    if (!code.has_course || code.terminator == LegTerminator::None || code.terminator == LegTerminator::Vectors)
        return false;
    double course = code.course;
    double course_true = course + in.magvar;
    double turn = TurnAngle(code.turn, course, in.start_course);
    switch (code.terminator) {
        case LegTerminator::Altitude: {
            // 1. Climb at the fixed gradient from the elevation; an arc first with a turn.
            double climb = (in.parameter - in.elevation_ft) / kClimbFeet * kClimbNm;
            if (code.turn == LegTurn::None) {
                ProjectPoint(in.start_lat, in.start_lon, Fold360(course_true), climb, lat, lon);
                return true;
            }
            double chord = TurnChordLength(turn);
            double direction = course - turn / 2;
            ProjectPoint(in.start_lat, in.start_lon, Fold360(direction + in.magvar), chord, lat, lon);
            double rest = climb - chord;
            if (rest > kClimbRemainderMinimum) ProjectPoint(lat, lon, Fold360(course_true), rest, lat, lon);
            return true;
        }
        case LegTerminator::Distance: {
            // 2. Step out along the course until the distance from the reference fits.
            for (int step = 1; step * kDistanceStep <= kDistanceSearchLimit + 1e-9; ++step) {
                double plat, plon, d, b;
                ProjectPoint(in.start_lat, in.start_lon, Fold360(course_true), step * kDistanceStep, plat, plon);
                Bearing(plat, plon, in.reference_lat, in.reference_lon, d, b);
                if (std::fabs(d - code.value) <= kDistanceTolerance) {
                    lat = plat;
                    lon = plon;
                    return true;
                }
            }
            return false;
        }
        case LegTerminator::Intercept: {
            // 3. Cross the course with the radial: its reciprocal first, then plainly.
            for (int attempt = 0; attempt < 2; ++attempt) {
                double radial = attempt == 0 ? code.value + 180 : code.value;
                double xlat, xlon;
                if (RadialIntersection(in.start_lat, in.start_lon, Fold360(course_true), in.reference_lat, in.reference_lon,
                                       Fold360(radial + in.magvar), xlat, xlon) != 0)
                    continue;
                // The crossing must lie ahead on the course; the formula may hand the other one.
                const double candidates[3][2] = {{xlat, xlon}, {-xlat, xlon}, {xlat, -xlon}};
                bool found = false;
                for (int c = 0; c < 3 && !found; ++c) {
                    double d, b;
                    Bearing(in.start_lat, in.start_lon, candidates[c][0], candidates[c][1], d, b);
                    double limit = c == 0 ? kInterceptTolerance : kInterceptFallbackTolerance;
                    if (AngleBetween(b, Fold360(course_true)) < limit) {
                        lat = candidates[c][0];
                        lon = candidates[c][1];
                        found = true;
                    }
                }
                if (!found) continue;
                // With a turn the leg joins the radial a little beyond the crossing.
                if (code.turn != LegTurn::None)
                    ProjectPoint(lat, lon, Fold360(code.value + in.magvar), turn * kInterceptShiftPerDegree, lat, lon);
                return true;
            }
            return false;
        }
        default: return false;
    }
}

int ComputeProcedureTurn(const LegCode& code, double reference_lat, double reference_lon, double magvar,
                         std::array<ProcedureTurnFix, 2>& out) {
    if (!code.has_course || code.turn == LegTurn::None || (code.course_letter != 'T' && code.course_letter != 'H')) return 0;
    // 1. The outbound course; a heading is given inbound.
    double course = code.course;
    if (code.course_letter == 'H') course += code.turn == LegTurn::Right ? -180 : 180;
    course = Fold360(course);
    // 2. Outbound from the reference.
    out[0] = ProcedureTurnFix{};
    ProjectPoint(reference_lat, reference_lon, Fold360(course + magvar), kProcedureTurnOutbound, out[0].Latitude,
                 out[0].Longitude);
    NameComputedFix(out[0].Fix, code.course_letter, course);
    // 3. The side step, a quarter turn the coded way.
    double across = Fold360(code.turn == LegTurn::Right ? course + 90 : course - 90);
    if (across < 0.5) across = 360;  // north reads 360, as bearings do
    out[1] = ProcedureTurnFix{};
    ProjectPoint(out[0].Latitude, out[0].Longitude, Fold360(across + magvar), kProcedureTurnAcross, out[1].Latitude,
                 out[1].Longitude);
    std::snprintf(out[1].Fix.data(), out[1].Fix.size(), "PT%03.0f", across);
    // 4. The second quarter turn brings the aircraft back to the reference,
    // which the file's next line names.
    return 2;
}

// [SECTION] Reading a section
namespace {
// What the reader carries from line to line.
struct ReaderState {
    ProcedureFileKind kind = ProcedureFileKind::Sids;
    const AirportDetail* airport = nullptr;   // the slot: runways and elevation
    double magvar = 0;                        // degrees east; true = magnetic + this
    ProcedureRecord* table = nullptr;         // rows 1..*count
    int* count = nullptr;
    int limit = 0;
    int current = 0;                          // row the last line went to; 0 none
    int block_row = 0;                        // procedure of the current block, for the end marks
    double start_lat = 0, start_lon = 0;      // running position
    double start_course = 0;                  // running course, magnetic
    double reference_lat = 0, reference_lon = 0;  // approaches: the first leg's position
    bool have_reference = false;
    int pending_intercept_row = 0;            // STAR: row whose "/IC" leg waits for the next line
    int pending_intercept_leg = 0;
    LegCode pending_code;
    double pending_start_lat = 0, pending_start_lon = 0, pending_start_course = 0;
};

// When every leg belongs to a transition, the last leg is the shared end:
// it becomes a transition of its own name, marked, which every route takes.
void ApplyEndMark(ProcedureRecord& record) {
    int n = std::clamp(record.LegCount, 0, kProcedureLegLimit);
    if (n == 0) return;
    for (int i = 1; i <= n; ++i)
        if (record.Legs[i].Transition[0] == 0) return;
    ProcedureLeg& last = record.Legs[n];
    last.Transition = {};
    SetText(last.Transition, TextOf(last.Fix));
    SetText(last.EndMark, "*");
}

void TakeRunwayStart(ReaderState& st, std::string_view leg_runway) {
    int row = FindRunwayRow(*st.airport, leg_runway);
    if (row == 0) return;
    st.start_lat = st.airport->Runways[row].Latitude;
    st.start_lon = st.airport->Runways[row].Longitude;
    st.start_course = st.airport->Runways[row].Heading;
}

// The next free leg of the row; nullptr when the table is full.
ProcedureLeg* NewLeg(ReaderState& st, int row) {
    ProcedureRecord& r = st.table[row];
    if (r.LegCount >= kProcedureLegLimit) return nullptr;
    ProcedureLeg& leg = r.Legs[++r.LegCount];
    leg = ProcedureLeg{};
    return &leg;
}

void DropLastLeg(ReaderState& st, int row) {
    ProcedureRecord& r = st.table[row];
    if (r.LegCount > 0) --r.LegCount;
}

int OpenRecord(ReaderState& st) {
    if (*st.count >= st.limit) return 0;
    int row = ++*st.count;
    ProcedureRecord& r = st.table[row];
    r.Name = {};
    r.ApproachIdent = {};
    r.Extra = {};
    r.Runways = {};
    r.LegCount = 0;
    return row;
}

// The latest procedure of that name: a file may head one name twice, for
// two sets of runways, and the lines after a head belong to it.
int FindRecordByName(const ReaderState& st, std::string_view name) {
    for (int i = *st.count; i >= 1; --i)
        if (TextOf(st.table[i].Name) == name) return i;
    return 0;
}

int FindApproachRecord(const ReaderState& st, std::string_view approach, std::string_view runway) {
    for (int i = 1; i <= *st.count; ++i)
        if (TextOf(st.table[i].ApproachIdent) == approach && TextOf(st.table[i].Runways) == runway) return i;
    return 0;
}

// The new leg's position moves the running position and course on.
void AdvanceTo(ReaderState& st, double lat, double lon) {
    double d, b;
    Bearing(st.start_lat, st.start_lon, lat, lon, d, b);
    if (d > 0.01) st.start_course = NormaliseMagnetic(b - st.magvar);
    st.start_lat = lat;
    st.start_lon = lon;
}

// The leg of a "/IC" line that waited for its reference: this line's position.
void CompletePendingIntercept(ReaderState& st, double ref_lat, double ref_lon) {
    int row = st.pending_intercept_row;
    int leg_index = st.pending_intercept_leg;
    st.pending_intercept_row = 0;
    if (row == 0) return;
    ProcedureRecord& r = st.table[row];
    if (leg_index != r.LegCount) return;  // a later leg came in between: nothing to complete
    CodedLegInput in;
    in.start_lat = st.pending_start_lat;
    in.start_lon = st.pending_start_lon;
    in.start_course = st.pending_start_course;
    in.reference_lat = ref_lat;
    in.reference_lon = ref_lon;
    in.magvar = st.magvar;
    in.elevation_ft = st.airport->ElevationFt;
    double lat, lon;
    if (!ComputeCodedFix(st.pending_code, in, lat, lon)) {
        DropLastLeg(st, row);
        return;
    }
    ProcedureLeg& leg = r.Legs[leg_index];
    leg.Latitude = lat;
    leg.Longitude = lon;
    st.start_lat = st.pending_start_lat;
    st.start_lon = st.pending_start_lon;
    st.start_course = st.pending_start_course;
    AdvanceTo(st, lat, lon);
}

// One line of sids.txt or stars.txt in the section.
void ReadRouteLine(ReaderState& st, const std::string_view* c, int n) {
    bool star = st.kind == ProcedureFileKind::Stars;
    // 1. A head line opens a procedure and starts at its first runway.
    if (c[0] == "T") {
        int row = OpenRecord(st);
        if (row == 0) return;
        ProcedureRecord& r = st.table[row];
        SetText(r.Name, c[1]);
        SetText(r.Extra, c[2]);
        SetText(r.Runways, c[3]);
        std::string_view first = c[3].substr(0, c[3].find(','));
        TakeRunwayStart(st, first);
        st.current = st.block_row = row;
        return;
    }
    // 2. Name and transition; an empty second column skips the line.
    if (c[1].empty() || c[1] == "---") return;
    size_t dot = c[0].find('.');
    std::string_view name = c[0].substr(0, dot);
    std::string_view transition = dot == std::string_view::npos ? std::string_view{} : c[0].substr(dot + 1);
    // 3. The line's form: a fix, a code, or a name in front of a code.
    std::string_view fix_name, code_text, parameter, leg_runway, lat_text, lon_text;
    if (!c[1].empty() && c[1][0] == '/') {
        code_text = c[1];
        parameter = c[2];
        leg_runway = c[3];
        lat_text = c[4];
        lon_text = c[5];
    } else if (!c[2].empty() && c[2][0] == '/') {
        fix_name = c[1];
        code_text = c[2];
        parameter = c[3];
        leg_runway = c[4];
        lat_text = c[5];
        lon_text = c[6];
    } else {
        fix_name = c[1];
        parameter = c[2];
        leg_runway = c[3];
        lat_text = c[4];
        lon_text = c[5];
    }
    double lat = ReadNumber(lat_text), lon = ReadNumber(lon_text);
    int flyover = (n > 0 && c[n - 1] == "FO") ? 1 : 0;
    LegCode code;
    bool coded = ParseLegCode(code_text, code);
    // A vectored leg is never stored: the procedure stops at the fix before it.
    if (coded && code.terminator == LegTerminator::Vectors) return;

    // 4. The procedure, found or opened.
    int row = FindRecordByName(st, name);
    if (row == 0) {
        row = OpenRecord(st);
        if (row == 0) return;
        SetText(st.table[row].Name, name);
    }
    if (row != st.block_row) st.block_row = row;
    bool first_leg = st.table[row].LegCount == 0;
    std::array<char, 12> previous_runway{};
    if (!first_leg) previous_runway = st.table[row].Legs[st.table[row].LegCount].LegRunway;
    // A STAR's waiting intercept takes this line's position as its reference.
    if (star && st.pending_intercept_row != 0) CompletePendingIntercept(st, lat, lon);
    ProcedureLeg* leg = NewLeg(st, row);
    if (leg == nullptr) return;
    st.current = row;
    SetText(leg->Transition, transition);
    SetText(leg->Restriction, parameter);
    SetText(leg->LegRunway, leg_runway);
    leg->Flyover = flyover;

    // 5. The first leg starts at its runway's threshold.
    if (first_leg) {
        std::string_view r = leg_runway.size() > 4 ? leg_runway.substr(0, 3) : leg_runway;
        TakeRunwayStart(st, r);
    }

    // 6. A fix line, or a STAR's first leg however it is written.
    if (!coded || (star && first_leg)) {
        SetText(leg->Fix, fix_name.empty() ? code_text : fix_name);
        leg->Latitude = lat;
        leg->Longitude = lon;
        AdvanceTo(st, lat, lon);
        return;
    }

    // 7. A coded leg: from the threshold of a new runway, a named runway start, or the last fix.
    if (!star && !first_leg && TextOf(previous_runway) != leg_runway)
        TakeRunwayStart(st, leg_runway.size() > 4 ? leg_runway.substr(0, 3) : leg_runway);
    if (fix_name.size() >= 4 && fix_name[0] == 'R' && fix_name[1] == 'W' && lat > 0) {
        st.start_lat = lat;
        st.start_lon = lon;
    }
    CodedLegInput in;
    in.start_lat = st.start_lat;
    in.start_lon = st.start_lon;
    in.start_course = st.start_course;
    in.reference_lat = lat > 0 ? lat : st.start_lat;
    in.reference_lon = lat > 0 ? lon : st.start_lon;
    in.magvar = st.magvar;
    in.elevation_ft = st.airport->ElevationFt;
    in.parameter = ReadNumber(parameter);
    NameComputedFix(leg->Fix, code.course_letter, code.course);
    if (star && code.terminator == LegTerminator::Intercept) {
        // The next line holds the radial's station.
        st.pending_intercept_row = row;
        st.pending_intercept_leg = st.table[row].LegCount;
        st.pending_code = code;
        st.pending_start_lat = st.start_lat;
        st.pending_start_lon = st.start_lon;
        st.pending_start_course = st.start_course;
        return;
    }
    double flat, flon;
    if (!ComputeCodedFix(code, in, flat, flon)) {
        DropLastLeg(st, row);
        return;
    }
    leg->Latitude = flat;
    leg->Longitude = flon;
    if (star) {
        AdvanceTo(st, flat, flon);
    } else {
        st.start_lat = flat;
        st.start_lon = flon;
        st.start_course = code.course;
    }
}

// The markers of the approach itself; any other word in the column names a transition.
bool IsMarkerWord(std::string_view m) {
    return m == "IAF" || m == "IAF*" || m == "FAF" || m == "MAF" || m == "MAP" || m == "---" || m == "ARC" || m == "HP";
}

// One line of apps.txt in the section.
void ReadApproachLine(ReaderState& st, const std::string_view* c, int n) {
    // 1. Columns; a code in the marker's place stands for a name and its code.
    std::string_view runway = IsNone(c[0]) ? std::string_view{} : c[0];
    std::string_view approach = c[1];
    if (approach.empty() || IsNone(c[2])) return;
    std::string_view fix_text = c[2], marker = c[3], code_text;
    const std::string_view* rest = c + 4;  // restriction, latitude, longitude, transition, altitude, speed
    if (!marker.empty() && marker[0] == '/') {
        code_text = marker;
        marker = {};
    } else if (fix_text[0] == '/') {
        code_text = fix_text;
    }
    double lat = ReadNumber(rest[1]), lon = ReadNumber(rest[2]);
    std::string_view transition_column = rest[3];
    int flyover = (n > 0 && c[n - 1] == "FO") ? 1 : 0;
    LegCode code;
    bool coded = ParseLegCode(code_text, code);
    if (coded && code.terminator == LegTerminator::Vectors) return;

    // 2. The marker names a transition unless it is a marker; the transition column wins.
    std::string_view transition = (!marker.empty() && !IsMarkerWord(marker)) ? marker : std::string_view{};
    if (!IsNone(transition_column) && transition_column != marker) {
        marker = transition_column;
        transition = transition_column;
    }

    // 3. The approach's row, found or opened; its name once in the name table.
    int row = FindApproachRecord(st, approach, runway);
    if (row == 0) {
        row = OpenRecord(st);
        if (row == 0) return;
        SetText(st.table[row].ApproachIdent, approach);
        SetText(st.table[row].Runways, runway);
        DestinationProcedures& d = g_procedures.destination;
        bool known = false;
        for (int i = 1; i <= d.ApproachNameCount && !known; ++i) known = TextOf(d.ApproachNameTable[i].Name) == approach;
        if (!known && d.ApproachNameCount < kApproachNameLimit) {
            ++d.ApproachNameCount;
            d.ApproachNameTable[d.ApproachNameCount] = ProcedureListEntry{};
            SetText(d.ApproachNameTable[d.ApproachNameCount].Name, approach);
            d.ApproachNameTable[d.ApproachNameCount].Row = row;
        }
    }
    st.current = st.block_row = row;
    bool first_leg = st.table[row].LegCount == 0;
    if (st.pending_intercept_row != 0) CompletePendingIntercept(st, lat, lon);

    auto fill = [&](ProcedureLeg& leg) {
        SetText(leg.ApproachIdent, approach);
        SetText(leg.LegRunway, runway);
        SetText(leg.Marker, marker);
        SetText(leg.Transition, transition);
        SetText(leg.Restriction, rest[0]);
        leg.LegAltitude = ReadNumber(rest[4]);
        leg.LegSpeed = ReadNumber(rest[5]);
        leg.Flyover = flyover;
    };

    // 4. A fix line, or a first leg however written: it also sets the reference.
    if (!coded || first_leg) {
        ProcedureLeg* leg = NewLeg(st, row);
        if (leg == nullptr) return;
        fill(*leg);
        SetText(leg->Fix, coded ? code_text : fix_text);
        leg->Latitude = lat;
        leg->Longitude = lon;
        if (first_leg || !st.have_reference) {
            st.reference_lat = lat;
            st.reference_lon = lon;
            st.have_reference = true;
        }
        AdvanceTo(st, lat, lon);
        return;
    }
    double ref_lat = lat > 0 ? lat : st.reference_lat;
    double ref_lon = lat > 0 ? lon : st.reference_lon;

    // 5. A procedure turn: two computed fixes off the reference.
    bool turn_code = code_text.size() >= 5 && (code_text.substr(0, 5) == "/RT/T" || code_text.substr(0, 5) == "/LT/T" ||
                                               code_text.substr(0, 5) == "/RT/H" || code_text.substr(0, 5) == "/LT/H");
    if (turn_code && code.terminator == LegTerminator::None) {
        std::array<ProcedureTurnFix, 2> fixes{};
        int made = ComputeProcedureTurn(code, ref_lat, ref_lon, st.magvar, fixes);
        for (int i = 0; i < made; ++i) {
            ProcedureLeg* leg = NewLeg(st, row);
            if (leg == nullptr) return;
            fill(*leg);
            leg->Fix = fixes[i].Fix;
            leg->Latitude = fixes[i].Latitude;
            leg->Longitude = fixes[i].Longitude;
        }
        if (made > 0) {
            st.start_lat = ref_lat;
            st.start_lon = ref_lon;
            st.start_course = code.course;
        }
        return;
    }

    // 6. Other codes as for a STAR, from the last fix.
    ProcedureLeg* leg = NewLeg(st, row);
    if (leg == nullptr) return;
    fill(*leg);
    NameComputedFix(leg->Fix, code.course_letter, code.course);
    if (code.terminator == LegTerminator::Intercept) {
        st.pending_intercept_row = row;
        st.pending_intercept_leg = st.table[row].LegCount;
        st.pending_code = code;
        st.pending_start_lat = st.start_lat;
        st.pending_start_lon = st.start_lon;
        st.pending_start_course = st.start_course;
        return;
    }
    CodedLegInput in;
    in.start_lat = st.start_lat;
    in.start_lon = st.start_lon;
    in.start_course = st.start_course;
    in.reference_lat = ref_lat;
    in.reference_lon = ref_lon;
    in.magvar = st.magvar;
    in.elevation_ft = st.airport->ElevationFt;
    in.parameter = ReadNumber(rest[0]);
    double flat, flon;
    if (!ComputeCodedFix(code, in, flat, flon)) {
        DropLastLeg(st, row);
        return;
    }
    leg->Latitude = flat;
    leg->Longitude = flon;
    AdvanceTo(st, flat, flon);
}
}  // namespace

bool ReadProcedureSection(ProcedureFileId file, ProcedureFileKind kind, std::string_view ident, const AirportDetail& airport,
                          double magvar, ProcedureRecord* table, int& count, int limit) {
    char path[MAX_PATH];
    DataPath(ProcedureFilePath(file), path, sizeof path);
    static LineReader reader;  // 64 KB: kept off the stack
    if (!reader.Open(path)) return false;
    // 1. Start at the section the index names, or read from the top.
    uint64_t offset = 0;
    int indexed = LookUpSection(file, ident, reader.file.size, offset);
    if (indexed == 0) {
        reader.file.Close();
        return false;
    }
    if (indexed == 1 && !reader.file.Seek(offset)) {
        reader.Open(path);
        indexed = -1;
    }

    ReaderState st;
    st.kind = kind;
    st.airport = &airport;
    st.magvar = magvar;
    st.table = table;
    st.count = &count;
    st.limit = limit;
    st.start_lat = airport.Latitude;
    st.start_lon = airport.Longitude;

    // 2. Lines: before the section only "[...]" counts; in it, another ends it.
    static std::array<char, kProcedureLineSize> line;
    size_t length = 0;
    bool inside = false, found = false;
    while (reader.Next(line.data(), line.size(), length)) {
        std::string_view text(line.data(), length);
        if (!inside) {
            if (length == 0 || line[0] != '[') {
                // An index that led elsewhere (the file changed): read from the top.
                if (indexed == 1) {
                    reader.Open(path);
                    indexed = -1;
                }
                continue;
            }
            char word_buffer[kProcedureLineSize];
            if (ProcedureSectionWord(text, word_buffer, sizeof word_buffer) == ident) {
                inside = found = true;
            } else if (indexed == 1) {
                reader.Open(path);
                indexed = -1;
            }
            continue;
        }
        if (length > 0 && line[0] == '[') break;
        if (length > 0 && (line[0] == '*' || line[0] == ';')) {
            // A separator closes the block.
            if (st.block_row > 0 && st.block_row <= count && kind != ProcedureFileKind::Approaches)
                ApplyEndMark(table[st.block_row]);
            st.block_row = 0;
            continue;
        }
        // 3. Columns, the last one capitalised.
        std::array<std::string_view, kProcedureColumns> c{};
        int n = SplitColumns(text, c.data(), kProcedureColumns);
        if (n == 0) continue;
        char* last = line.data() + (c[n - 1].data() - line.data());
        UpperCase(last, c[n - 1].size());
        if (kind == ProcedureFileKind::Approaches)
            ReadApproachLine(st, c.data(), n);
        else
            ReadRouteLine(st, c.data(), n);
    }
    reader.file.Close();
    // 4. A "/IC" leg with no line behind it has nothing to cross: it goes.
    if (st.pending_intercept_row != 0) {
        ProcedureRecord& r = table[st.pending_intercept_row];
        if (r.LegCount == st.pending_intercept_leg) --r.LegCount;
    }
    // 5. The end marks of every procedure.
    if (kind != ProcedureFileKind::Approaches)
        for (int i = 1; i <= count; ++i) ApplyEndMark(table[i]);
    return found;
}

// [SECTION] Loaders
namespace {
int WholeDegree(double value) {
    if (!std::isfinite(value) || std::fabs(value) > 1000) return 0;
    return static_cast<int>(value);
}
// The airport's section of the main file, or, when that file has none, of
// the user file.
void ReadMainOrUserSection(ProcedureFileId main_file, ProcedureFileId user_file, ProcedureFileKind kind,
                           std::string_view ident, const AirportDetail& airport, double magvar,
                           ProcedureRecord* table, int& count, int limit) {
    if (!ReadProcedureSection(main_file, kind, ident, airport, magvar, table, count, limit))
        ReadProcedureSection(user_file, kind, ident, airport, magvar, table, count, limit);
}
}  // namespace

void LoadSids(std::string_view ident) {
    OriginProcedures& o = g_procedures.origin;
    const AirportDetail& airport = g_airports.OriginAirport;
    o.SidCount = 0;
    o.SelectedSidRow = 0;
    o.lists = ProcedureLists{};
    o.OriginMagVar = MagneticVariation(WholeDegree(airport.Latitude), WholeDegree(airport.Longitude));
    ReadMainOrUserSection(ProcedureFileId::Sids, ProcedureFileId::SidsUser, ProcedureFileKind::Sids, ident, airport,
                          o.OriginMagVar, o.SidTable.data(), o.SidCount, kSidLimit);
}

void LoadStars(std::string_view ident) {
    DestinationProcedures& d = g_procedures.destination;
    const AirportDetail& airport = g_airports.DestinationAirport;
    d.StarCount = 0;
    d.SelectedStarRow = 0;
    d.lists = ProcedureLists{};
    d.DestinationMagVar = MagneticVariation(WholeDegree(airport.Latitude), WholeDegree(airport.Longitude));
    ReadMainOrUserSection(ProcedureFileId::Stars, ProcedureFileId::StarsUser, ProcedureFileKind::Stars, ident, airport,
                          d.DestinationMagVar, d.StarTable.data(), d.StarCount, kStarLimit);
}

void LoadApproaches(std::string_view ident) {
    DestinationProcedures& d = g_procedures.destination;
    const AirportDetail& airport = g_airports.DestinationAirport;
    d.ApproachCount = 0;
    d.ApproachNameCount = 0;
    d.DestinationMagVar = MagneticVariation(WholeDegree(airport.Latitude), WholeDegree(airport.Longitude));
    ReadProcedureSection(ProcedureFileId::Apps, ProcedureFileKind::Approaches, ident, airport, d.DestinationMagVar,
                         d.ApproachTable.data(), d.ApproachCount, kApproachLimit);
}
