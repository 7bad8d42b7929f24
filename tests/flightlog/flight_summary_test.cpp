// flight_summary_test.cpp: the summary's reading of fpl.log lines: the bins
// and their rounding, the lists' limits, lines a pilot's editor may leave,
// and the record written from it.
#include "flightlog/flight_log_rig.h"

#define ORB_NO_FUZZ_MAIN
#include "fuzz/flight_summary.cpp"

#include <cmath>
#include <string>

namespace flightlog_test {
namespace {

// A line in the log's columns; the summary reads words, so any spacing does.
std::string LogLine(const char* time, const char* segment, double tas, double vs, double alt, double ff, double fob,
                    double zfw = 70000, double pld = 3500) {
    char text[256];
    std::snprintf(text, sizeof text, "%s %s --- 300 %.0f %.0f %.0f %.0f %.0f %.0f %.0f 250", time, segment, tas, vs,
                  alt, ff, fob, zfw, pld);
    return text;
}

std::string Record(const FlightSummary& summary) {
    char* buffer = nullptr;
    size_t size = 0;
    FILE* memory = open_memstream(&buffer, &size);
    WriteSummaryRecord(memory, summary, "KAAA", "KBBB", 2026, 3, 4, "TestJet");
    std::fclose(memory);
    std::string text(buffer, size);
    std::free(buffer);
    return text;
}

TEST(FlightSummary, AltitudeAndWeightBinsRoundToTheNearestStep) {
    FlightSummary s{};
    // Altitude: nearest 5000 ft, never below 5000.
    const double altitudes[] = {-3000, 0, 2499, 7499, 7500, 12600, 44999};
    const double bins[] = {5000, 5000, 5000, 5000, 10000, 15000, 45000};
    for (double alt : altitudes) SummaryAddLine(s, LogLine("00:01:00", "Descent", 280, -1500, alt, 1000, 20000));
    ASSERT_EQ(s.descent.bin_count, 4);
    EXPECT_EQ(s.descent.bins[0].altitude, bins[0]);
    EXPECT_EQ(s.descent.bins[0].count, 4);
    EXPECT_EQ(s.descent.bins[1].altitude, 10000);
    EXPECT_EQ(s.descent.bins[2].altitude, 15000);
    EXPECT_EQ(s.descent.bins[3].altitude, 45000);
    EXPECT_EQ(s.descent.weight_count, 0);  // descent rows have no weight bins

    // Weight: fuel + zero fuel weight + payload; by 5000 below 95500, then by 10000.
    struct Case {
        double gross;
        double bin;
    };
    const Case cases[] = {{72400, 70000}, {72600, 75000}, {95499, 95000}, {95500, 100000},
                          {104999, 100000}, {105000, 110000}, {250000, 250000}};
    FlightSummary w{};
    for (const Case& c : cases) SummaryAddLine(w, LogLine("00:01:00", "Cruise", 400, 0, 30000, 3000, c.gross - 73500));
    ASSERT_EQ(w.cruise.weight_count, 6);  // 95499 and 95500 land in different bins; 104999 joins 95500's
    EXPECT_EQ(w.cruise.weights[0], 70000);
    EXPECT_EQ(w.cruise.weights[1], 75000);
    EXPECT_EQ(w.cruise.weights[2], 95000);
    EXPECT_EQ(w.cruise.weights[3], 100000);
    EXPECT_EQ(w.cruise.weights[4], 110000);
    EXPECT_EQ(w.cruise.weights[5], 250000);
    EXPECT_EQ(w.cruise.bins[0].flow_count[3], 2);
}

TEST(FlightSummary, FullListsLeaveFurtherBinsOutOfTheMeans) {
    FlightSummary s{};
    // Ten altitude bins of climb, 5000 to 50000: the tenth has no room.
    for (int k = 1; k <= 10; ++k)
        SummaryAddLine(s, LogLine("00:10:00", "Climb", 200 + k, 2000, 5000.0 * k, 5000, 20000));
    // A second line in a bin that exists still counts.
    SummaryAddLine(s, LogLine("00:10:00", "Climb", 203, 1000, 15000, 3000, 20000));
    EXPECT_EQ(s.climb.bin_count, kSummaryAltitudeBins);
    EXPECT_EQ(s.climb.dropped_lines, 1);
    EXPECT_EQ(s.climb.weight_count, 1);
    EXPECT_EQ(s.climb.bins[2].count, 2);
    EXPECT_EQ(s.climb.bins[8].altitude, 45000);

    // Twenty-one weight bins of cruise at one altitude: the 21st has no room,
    // and its line leaves the altitude bin's TAS untouched.
    for (int k = 0; k < 21; ++k)
        SummaryAddLine(s, LogLine("00:20:00", "Cruise", 400, 0, 35000, 3000, 100000.0 + 10000 * k - 73500));
    EXPECT_EQ(s.cruise.weight_count, kSummaryWeightBins);
    EXPECT_EQ(s.cruise.dropped_lines, 1);
    EXPECT_EQ(s.cruise.bins[0].count, 20);
    // A new altitude with a full weight list but a known weight still fits.
    SummaryAddLine(s, LogLine("00:21:00", "Cruise", 380, 0, 30000, 2800, 100000 - 73500));
    EXPECT_EQ(s.cruise.bin_count, 2);
    // A new altitude with a new weight fits neither: no empty bin is left behind.
    SummaryAddLine(s, LogLine("00:22:00", "Cruise", 380, 0, 25000, 2800, 400000 - 73500));
    EXPECT_EQ(s.cruise.bin_count, 2);
    EXPECT_EQ(s.cruise.dropped_lines, 2);

    std::string record = Record(s);
    // Climb: 9 rows (one weight bin each); the 5000 ft bin's mean TAS is 201.
    size_t climb = record.find("Climb=");
    size_t cruise = record.find("\nCruise=");
    ASSERT_NE(climb, std::string::npos);
    ASSERT_NE(cruise, std::string::npos);
    std::string climb_line = record.substr(climb, cruise - climb);
    int rows = 0;
    for (char c : climb_line) rows += c == ' ';
    EXPECT_EQ(rows, 9);
    EXPECT_EQ(climb_line.substr(0, 30), "Climb=5000_201_2000_95000_5000");
    // 15000 ft: (203 + 203) / 2, (2000 + 1000) / 2, (5000 + 3000) / 2.
    EXPECT_NE(climb_line.find(" 15000_203_1500_95000_4000 "), std::string::npos) << climb_line;
    EXPECT_EQ(climb_line.find("50000_"), std::string::npos);
}

TEST(FlightSummary, EditedLinesAreReadAsWordsAndSurvive) {
    FlightSummary s{};
    // Comments are skipped, whatever they hold.
    SummaryAddLine(s, ";00:00:00 Climb --- 1 1 1 1 1 1 1 1 1");
    EXPECT_EQ(s.lines_read, 0);
    EXPECT_EQ(s.climb.bin_count, 0);
    // The start's fuel, and the End_Flight line's time and fuel used.
    SummaryAddLine(s, LogLine("00:00:00", "InitLoad", 0, 0, 400, 1000, 21000));
    SummaryAddLine(s, LogLine("01:42:17", "End_Flight", 0, 0, 400, 1000, 13250.4));
    EXPECT_STREQ(s.flight_time.data(), "01:42");
    EXPECT_DOUBLE_EQ(s.fuel_used, 21000 - 13250);
    // Short lines: missing words read 0, so the bin is the lowest.
    SummaryAddLine(s, "00:05:00 Climb");
    SummaryAddLine(s, "");
    SummaryAddLine(s, "   \t  ");
    ASSERT_EQ(s.climb.bin_count, 1);
    EXPECT_EQ(s.climb.bins[0].altitude, 5000);
    // Numbers that are no numbers, or out of any flight's range.
    SummaryAddLine(s, "00:06:00 Cruise --- x nan inf 1e999 -1e300 abc 1e308 1e308");
    ASSERT_EQ(s.cruise.bin_count, 1);
    EXPECT_TRUE(std::isfinite(s.cruise.bins[0].tas_sum));
    EXPECT_TRUE(std::isfinite(s.cruise.weights[0]));
    // A line is read up to 299 bytes: an altitude past that is cut off.
    std::string long_line = "00:07:00 Descent ---" + std::string(300, ' ') + "300 300 -1000 30000 800 9000";
    SummaryAddLine(s, long_line);
    ASSERT_EQ(s.descent.bin_count, 1);
    EXPECT_EQ(s.descent.bins[0].altitude, 5000);
    EXPECT_EQ(s.descent.bins[0].tas_sum, 0);
    // A short time gives what it has.
    SummaryAddLine(s, "1:2 End_Flight");
    EXPECT_STREQ(s.flight_time.data(), "1:2");

    // The fuzz entry over bytes no editor writes.
    const std::string inputs[] = {
        std::string("\0\0\0\n\r\r\n;\n", 9),
        std::string(5000, 'x'),
        std::string(4000, '\n'),
        "00:00:00 Climb --- 1 1 1 99999999999999999999 1 1 1 1 1\n00:00:01 Climb\n",
    };
    for (const std::string& input : inputs)
        flight_summary_fuzz::SummarizeBytes(reinterpret_cast<const uint8_t*>(input.data()), input.size());
    std::string many;
    for (int k = 0; k < 3000; ++k) many += LogLine("00:00:05", k % 2 ? "Climb" : "Cruise", k, k, 1000.0 * k, k, 97.0 * k) + "\n";
    flight_summary_fuzz::SummarizeBytes(reinterpret_cast<const uint8_t*>(many.data()), many.size());
}

class FlightSummaryFile : public FlightLogRig {};

TEST_F(FlightSummaryFile, ReadsAnEditedFileWithCarriageReturnsAndNulBytes) {
    std::string text = "FlightPlan=KAAA-KBBB\r\nAircraft=TestJet\r\n;----\r\n";
    text += LogLine("00:00:00", "InitLoad", 0, 0, 400, 1000, 21000) + "\r\n";
    text += "00:01:00 Climb --- 250 250 2000 3000 6000 20000 70000 3500 250" + std::string(1, '\0') + "junk\r\n";
    text += std::string(2000, '-') + "\n";
    text += LogLine("00:40:00", "End_Flight", 0, 0, 400, 900, 15000) + "\r\n";
    std::FILE* f = std::fopen((root() / "orb" / "FlightLog" / "fpl.log").c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
    WriteFlightSummary();
    std::vector<std::string> record = Lines("orb/FlightLog/Flight.log");
    ASSERT_EQ(record.size(), 9u);
    EXPECT_EQ(record[0], "[KAAA-KBBB]\n");
    EXPECT_EQ(record[2], "FlightTime=00:40\n");
    EXPECT_EQ(record[4], "FuelUsed=6000\n");
    // 20000 + 73500 = 93500 lb: 18.7 -> 95000.
    EXPECT_EQ(record[5], "Climb=5000_250_2000_95000_6000 \n");
    EXPECT_EQ(record[6], "Cruise=\n");

    // No fpl.log: nothing is appended.
    std::filesystem::remove(root() / "orb" / "FlightLog" / "fpl.log");
    WriteFlightSummary();
    EXPECT_EQ(Lines("orb/FlightLog/Flight.log").size(), 9u);
}

}  // namespace
}  // namespace flightlog_test
