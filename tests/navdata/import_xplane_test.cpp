// import_xplane_test.cpp: `orbnav import-xplane` on small hand-written
// X-Plane files (each mapping choice, the region, bad input) and, when the
// shared data is present, on the real files for a region.
#include "support/run_command.h"

#include <gtest/gtest.h>


#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {
const char* kNav =
    "I\n"
    "810 Version - data cycle 2013.10, build 20131334, metadata NavXP810.\n"
    "\n"
    "3  47.43536111 -122.30961111    354 11680 130   19.0 SEA  SEATTLE VORTAC\n"
    "2  47.50000000 -122.00000000      0   396  50    0.0 AB   ALPHA  BRAVO NDB\n"
    "12 47.43536111 -122.30961111    354 11680 130    0.0 SEA  SEATTLE VORTAC DME\n"
    "13 47.00000000 -122.00000000      0 11000  25    0.0 DMX  SOME DME\n"
    "4  47.43577800 -122.31123100    355 11170  18     180.337 ISZI KSEA 16C ILS-cat-III\n"
    "6  47.46074700 -122.31262800    418 11170  10  300180.337 ISZI KSEA 16C GS\n"
    "6  40.75644400  016.94085000   1184        10  300321.163  LIBV 32L GS\n"
    "2  10.00000000  010.00000000      0   300  50    0.0 FAR  FAR AWAY NDB\n"
    "99\n";
const char* kFix = "I\n600 Version - data cycle 2013.10\n\n 47.100000 -122.100000 ALDER\n 10.0 10.0 FARFX\n99\n";
const char* kAwy =
    "I\n640 Version - data cycle 2013.10\n\n"
    "BBBBB  47.1 -122.0 AAAAA  47.0 -122.0 2 180 450 J1-J5\n"
    "BBBBB  47.1 -122.0 CCCCC  47.2 -122.0 2 180 450 J1\n"
    "DDDDD  47.5 -122.0 EEEEE  47.6 -122.0 2 180 450 J1\n"
    "CCCCC  47.2 -122.0 BBBBB  47.1 -122.0 2 180 450 J1\n"
    "FARA   10.0  10.0 FARB   10.1  10.0 1 0 180 V9\n"
    "99\n";
const char* kApt =
    "I\n1000 Version - data cycle 2013.10\n\n"
    "1      433 1 0 KSEA Seattle Tacoma Intl\n"
    "100   45.72   1   0 0.25 1 3 0 16C  47.46381100 -122.31098800    0.00    0.00 3  0 0 2 "
    "34C  47.43797200 -122.31121300  300.00    0.00 3  1 0 2\n"
    "1      100 0 0 KXXX Little  Field\n"
    "100   30 1 0 0.25 0 0 0 09  47.00000000 -122.00000000 0 0 1 0 0 0 27  47.00000000 -121.99000000 0 0 1 0 0 0\n"
    "17     10 0 0 H1 A Heliport\n"
    "102 H1 47.0 -122.0 0 10 10 1 0 0 0 0\n"
    "16     0 0 0 SEA1 Sea Base\n"
    "101 50 0 11 47.2 -122.2 29 47.3 -122.3\n"
    "99\n";

struct Result {
    int code = 0;
    std::string output;
};

class ImportXplane : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        base_ = fs::path(ORB_BINARY_DIR) / "test-import" / info->name();
        fs::remove_all(base_);
        fs::create_directories(base_ / "src");
        WriteGoodInputs();
    }
    void WriteGoodInputs() {
        Write("nav.dat", kNav);
        Write("fix.dat", kFix);
        Write("awy.dat", kAwy);
        Write("apt.dat", kApt);
    }
    void Write(const std::string& name, const std::string& text) { std::ofstream(base_ / "src" / name, std::ios::binary) << text; }
    Result Run(const std::string& arguments) {
        std::string command = std::string(ORB_BINARY_DIR) + "/orbnav import-xplane " + arguments + " 2>&1";
        CommandRun run = RunCommand(command);
        return {run.code, run.output};
    }
    Result Import(const std::string& extra = "") { return Run((base_ / "src").string() + " " + (base_ / "dst").string() + " --quiet " + extra); }
    std::string Out(const std::string& name) {
        std::ifstream in(base_ / "dst" / "orb" / "navdata" / name);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    std::vector<std::string> Lines(const std::string& name) {
        std::vector<std::string> lines;
        std::istringstream in(Out(name));
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }
    fs::path base_;
};

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> w;
    std::istringstream in(line);
    for (std::string word; in >> word;) w.push_back(word);
    return w;
}

std::vector<std::string> Split(const std::string& text, char c) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, c)) parts.push_back(part);
    return parts;
}
}  // namespace

TEST_F(ImportXplane, NavaidsSortedWithTheCycleAndWithoutDmes) {
    Result r = Import();
    ASSERT_EQ(r.code, 0) << r.output;
    EXPECT_NE(r.output.find("2 DME/TACAN skipped"), std::string::npos) << r.output;
    std::vector<std::string> navs = Lines("navs.txt");
    ASSERT_EQ(navs.size(), 4u);
    EXPECT_EQ(navs[0], ";AIRAC cycle is 1310 (19-SEP-2013 to 17-OCT-2013)");
    // Sorted by ident; names joined by '_', the kind word dropped.
    EXPECT_EQ(navs[1], "AB ALPHA_BRAVO 47.500000 -122.000000 NDB 396");
    EXPECT_EQ(Words(navs[2])[0], "FAR");
    EXPECT_EQ(navs[3], "SEA SEATTLE 47.435361 -122.309611 VOR 116.80");
    // Fixes: the ident is the name too.
    EXPECT_EQ(Lines("ints.txt")[0], "ALDER ALDER 47.100000 -122.100000");
}

TEST_F(ImportXplane, RunwaysMagneticWithTheirLocalizer) {
    ASSERT_EQ(Import().code, 0);
    std::vector<std::string> apts = Lines("apts.txt");
    ASSERT_EQ(apts.size(), 2u);  // no heliport, no seaplane base
    std::vector<std::string> w = Words(apts[0]);
    ASSERT_EQ(w.size(), 7u);
    EXPECT_EQ(w[0], "KSEA");
    EXPECT_EQ(w[1], "Seattle_Tacoma_Intl");
    EXPECT_EQ(w[2], "433");
    EXPECT_NEAR(std::stod(w[3]), (47.463811 + 47.437972) / 2, 1e-6);  // the middle of the runway ends
    std::vector<std::string> r16 = Split(w[5], '_');
    ASSERT_EQ(r16.size(), 8u);
    EXPECT_EQ(r16[0], "16C");
    EXPECT_NEAR(std::stoi(r16[1]), 9413, 10);          // end to end, feet
    EXPECT_EQ(r16[2], "47.463811");                     // no displaced threshold
    // Heading and localizer course magnetic: true less the nearest VOR's variation (19 E).
    EXPECT_NEAR(std::stod(r16[4]), 180.3 - 19.0, 0.1);
    EXPECT_EQ(r16[5], "111.70");
    EXPECT_EQ(r16[6], "ISZI");
    EXPECT_NEAR(std::stod(r16[7]), 180.337 - 19.0, 0.06);
    // 34C: its threshold displaced 300 m up the runway, no localizer.
    std::vector<std::string> r34 = Split(w[6], '_');
    ASSERT_EQ(r34.size(), 5u);
    EXPECT_NEAR(std::stod(r34[2]), 47.437972 + 300.0 / 1852.0 / 60.0, 2e-5);
    EXPECT_NEAR(std::stod(r34[4]), 360.3 - 19.0, 0.1);
    EXPECT_EQ(Words(apts[1])[1], "Little_Field");
}

TEST_F(ImportXplane, AirwaysChainedIntoRunsPerName) {
    Result r = Import();
    ASSERT_EQ(r.code, 0) << r.output;
    std::vector<std::string> awys = Lines("awys.txt");
    std::vector<std::string> j1, j5;
    for (const std::string& line : awys) {
        std::vector<std::string> w = Words(line);
        if (w[0] == "J1") j1.push_back(w[2]);
        if (w[0] == "J5") j5.push_back(w[2]);
    }
    // The repeated segment counts once; the gap makes a second run.
    EXPECT_EQ(j1, (std::vector<std::string>{"AAAAA", "BBBBB", "CCCCC", "DDDDD", "EEEEE"}));
    EXPECT_EQ(j5, (std::vector<std::string>{"AAAAA", "BBBBB"}));
    EXPECT_NE(r.output.find("3 airways in 4 runs, 9 rows"), std::string::npos) << r.output;
    // One airway's lines stand together.
    EXPECT_EQ(Words(awys[5])[0], "J5");
}

TEST_F(ImportXplane, RegionKeepsOnlyWhatLiesInside) {
    // The DME at 47.0 N lies outside, SEA's inside.
    Result r = Import("--region 48,-123,47.2,-121");
    ASSERT_EQ(r.code, 0) << r.output;
    EXPECT_NE(r.output.find(" 1 DME/TACAN skipped"), std::string::npos) << r.output;
    EXPECT_EQ(Out("navs.txt").find("FAR"), std::string::npos);
    EXPECT_EQ(Out("ints.txt").find("FARFX"), std::string::npos);
    EXPECT_EQ(Out("awys.txt").find("V9"), std::string::npos);
    EXPECT_NE(Out("apts.txt").find("KSEA"), std::string::npos);
    Result bad = Import("--region 48,-123,46");
    EXPECT_NE(bad.code, 0);
    EXPECT_NE(bad.output.find("LAT1,LON1,LAT2,LON2"), std::string::npos);
}

TEST_F(ImportXplane, GzipInputReadsLikePlain) {
    ASSERT_EQ(std::system(("gzip -f " + (base_ / "src" / "apt.dat").string()).c_str()), 0);
    Result r = Import();
    ASSERT_EQ(r.code, 0) << r.output;
    EXPECT_NE(Out("apts.txt").find("KSEA Seattle_Tacoma_Intl 433"), std::string::npos);
}

// Every entry of the output folder that is not one of the four files: a
// temporary, a backup or a journal left behind.
std::vector<std::string> Leftovers(const fs::path& folder) {
    std::vector<std::string> left;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() != ".txt") left.push_back(entry.path().filename().string());
    return left;
}

TEST_F(ImportXplane, BadInputNamesFileAndLineAndWritesNothing) {
    // A first import leaves files that a failing one must not touch.
    ASSERT_EQ(Import().code, 0);
    std::string before = Out("apts.txt");
    const std::string nav_head = "I\n810 Version\n";
    const std::string apt_head = "I\n1000 Version\n1 433 1 0 KSEA X\n";
    const char kNulInLine[] = "I\n600 Version\n 47.1 -122.1 ALDER\n 45.600000  045.020000\0 47.0\n 46.0 -121.389506 BBBBB\n99\n";
    const std::string runway = "100 45 1 0 0.25 1 3 0 16C 47.46 -122.31 0 0 3 0 0 2 34C 47.43 -122.31 0 0 3 1 0 2\n";
    struct Case {
        const char* file;
        std::string text;
        std::string message;
    } cases[] = {
        // Structure
        {"fix.dat", "I\n600 Version\n 47.1 -122.1 ALDER\n", "fix.dat:3: file ends without its closing 99 line"},
        {"nav.dat", "I\n850 Version\n99\n", "nav.dat:2: version 850 is not supported (810 expected)"},
        {"awy.dat", "I\n640 Version\nAAAAA 47.0 -122.0 BBBBB\n99\n", "awy.dat:3: airway row has 4 columns, 10 expected"},
        {"apt.dat", apt_head + "100 45 1 0\n99\n", "apt.dat:4: runway row has 4 columns, 26 expected"},
        {"apt.dat", "\x1f\x8b not really gzip\n", "apt.dat:1: cannot read ("},
        {"nav.dat", "0x\n810\n99\n", "nav.dat:1: not an X-Plane data file"},
        // A NUL byte ends no line: the two lines around it are not merged into one.
        {"fix.dat", std::string(kNulInLine, sizeof kNulInLine - 1), "fix.dat:4: NUL byte inside the line"},
        // Numbers strtod would take that no data file holds
        {"fix.dat", "I\n600 Version\n 0x1p4 -122.1 ALDER\n99\n", "fix.dat:3: bad latitude '0x1p4' (decimal degrees within -90..90)"},
        {"fix.dat", "I\n600 Version\n 47.1 -122.1e0 ALDER\n99\n", "fix.dat:3: bad longitude '-122.1e0'"},
        {"fix.dat", "I\n600 Version\n 47.1 " + std::string(400, '1') + " ALDER\n99\n", "fix.dat:3: bad longitude '1111"},
        {"awy.dat", "I\n640 Version\nAAAAA nan -122.0 BBBBB 47.1 -122.0 2 180 450 J1\n99\n", "awy.dat:3: bad latitude 'nan'"},
        {"awy.dat", "I\n640 Version\nAAAAA 47.0 -122.0 BBBBB 47.1 inf 2 180 450 J1\n99\n", "awy.dat:3: bad longitude 'inf'"},
        {"awy.dat", "I\n640 Version\nAAAAA 47.0 -122.0 BBBBB 47.1 -122.0 2 180 450 J1\nCCCCC 47.0 -200 DDDDD 47.1 -122.0 2 180 450 J1\n99\n",
         "awy.dat:4: bad longitude '-200'"},
        // Values beyond an int or the column's range
        {"nav.dat", nav_head + "2  47.5 -122.0 0 1e300 50 0.0 AB ALPHA NDB\n99\n", "nav.dat:3: bad NDB frequency '1e300' (whole kHz within 100..1999)"},
        {"nav.dat", nav_head + "2  47.5 -122.0 0 99999999999 50 0.0 AB ALPHA NDB\n99\n", "nav.dat:3: bad NDB frequency '99999999999'"},
        {"nav.dat", nav_head + "2  47.5 -122.0 0 396.5 50 0.0 AB ALPHA NDB\n99\n", "nav.dat:3: bad NDB frequency '396.5'"},
        {"nav.dat", nav_head + "3  47.4 -122.3 354 1168 130 19.0 SEA SEATTLE VORTAC\n99\n", "nav.dat:3: bad frequency '1168'"},
        {"nav.dat", nav_head + "4  47.4 -122.3 355 11170 18 1e3 ISZI KSEA 16C ILS\n99\n", "nav.dat:3: bad variation or course '1e3'"},
        {"nav.dat", nav_head + "3e0  47.4 -122.3 354 11680 130 19.0 SEA SEATTLE VORTAC\n99\n", "nav.dat:3: bad row code '3e0'"},
        {"nav.dat", nav_head + "2147483648 47.4 -122.3 354 11680 130 19.0 SEA SEATTLE\n99\n", "nav.dat:3: bad row code '2147483648'"},
        {"nav.dat", nav_head + "12 nan -122.3 354 11680 130 0.0 SEA SEATTLE DME\n99\n", "nav.dat:3: bad latitude 'nan'"},
        {"apt.dat", "I\n1000 Version\n1 1e300 1 0 KSEA X\n" + runway + "99\n", "apt.dat:3: bad elevation '1e300' (feet within -2000..30000)"},
        {"apt.dat", "I\n1000 Version\n1 -inf 1 0 KSEA X\n" + runway + "99\n", "apt.dat:3: bad elevation '-inf'"},
        {"apt.dat", apt_head + "100 45 1 0 0.25 1 3 0 16C 47.46 -122.31 99999 0 3 0 0 2 34C 47.43 -122.31 0 0 3 1 0 2\n99\n",
         "apt.dat:4: bad displaced threshold '99999'"},
        // Texts that would break the module's lines
        {"apt.dat", apt_head + "100 45 1 0 0.25 1 3 0 16_L 47.46 -122.31 0 0 3 0 0 2 34C 47.43 -122.31 0 0 3 1 0 2\n99\n",
         "apt.dat:4: runway designator '16_L' holds a '_'"},
        {"nav.dat", nav_head + "4  47.4 -122.3 355 11170 18 180.3 IS_ZI KSEA 16C ILS\n99\n", "nav.dat:3: localizer ident 'IS_ZI' holds a '_'"},
        {"fix.dat", "I\n600 Version\n 47.1 -122.1 ;ALDER\n99\n", "fix.dat:3: ident ';ALDER' holds a leading ';'"},
        {"fix.dat", "I\n600 Version\n 47.1 -122.1 AL\x01" "DER\n99\n", "fix.dat:3: ident 'AL?DER' holds a control character"},
        {"apt.dat", "I\n1000 Version\n1 433 1 0 KSEA Seattle\x1bTacoma\n" + runway + "99\n", "apt.dat:3: name 'Seattle?Tacoma' holds a control character"},
    };
    for (const Case& c : cases) {
        WriteGoodInputs();
        Write(c.file, c.text);
        Result r = Import();
        EXPECT_NE(r.code, 0) << c.file;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << c.message << "\n" << r.output;
        EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;  // one line
        EXPECT_EQ(Out("apts.txt"), before);
        EXPECT_EQ(Leftovers(base_ / "dst" / "orb" / "navdata"), std::vector<std::string>{});
    }
    // A gzip file cut short: its last, cut line is not read as a row.
    SetUp();
    std::string fixes = "I\n600 Version\n";
    for (int i = 0; i < 20000; ++i) fixes += " 47.100000 -122.100000 F" + std::to_string(i) + "\n";
    Write("fix.dat", fixes + "99\n");
    ASSERT_EQ(std::system(("gzip -f " + (base_ / "src" / "fix.dat").string()).c_str()), 0);
    fs::resize_file(base_ / "src" / "fix.dat.gz", fs::file_size(base_ / "src" / "fix.dat.gz") / 2);
    Result cut = Import();
    EXPECT_NE(cut.code, 0);
    EXPECT_NE(cut.output.find("fix.dat.gz:"), std::string::npos) << cut.output;
    EXPECT_NE(cut.output.find(": cannot read (unexpected end of file)"), std::string::npos) << cut.output;

    fs::remove(base_ / "src" / "awy.dat");
    Result missing = Import();
    EXPECT_NE(missing.code, 0);
    EXPECT_NE(missing.output.find("no awy.dat or awy.dat.gz"), std::string::npos) << missing.output;
}

TEST_F(ImportXplane, NumbersInTheirPlainForms) {
    // A sign, leading zeros, a bare point: all plain decimal numbers.
    Write("fix.dat", "I\n600 Version\n +47.1 -0122. ALDER\n -.5 0 EQFIX\n99\n");
    Result r = Import();
    ASSERT_EQ(r.code, 0) << r.output;
    EXPECT_EQ(Lines("ints.txt"), (std::vector<std::string>{"ALDER ALDER 47.100000 -122.000000", "EQFIX EQFIX -0.500000 0.000000"}));
}

// The four files are one database: a failed commit leaves all four old ones.
class ImportCommit : public ImportXplane {
protected:
    fs::path Folder() { return base_ / "dst" / "orb" / "navdata"; }
    std::map<std::string, std::string> Files() {
        std::map<std::string, std::string> files;
        for (const char* name : {"apts.txt", "navs.txt", "ints.txt", "awys.txt"})
            if (fs::is_regular_file(Folder() / name)) files[name] = Out(name);
        return files;
    }
    // Inputs that change every one of the four files.
    void ChangeInputs() {
        Write("nav.dat", std::string(kNav).replace(std::string(kNav).find(" 396 "), 5, " 397 "));
        Write("fix.dat", "I\n600 Version\n 47.2 -122.2 BIRCH\n99\n");
        Write("awy.dat", "I\n640 Version\nBBBBB 47.1 -122.0 AAAAA 47.0 -122.0 2 180 450 J9\n99\n");
        Write("apt.dat", std::string(kApt).replace(std::string(kApt).find("433"), 3, "434"));
    }
    Result ImportCrashingAfter(int renames) {
        setenv("ORBNAV_TEST_CRASH_AFTER_RENAMES", std::to_string(renames).c_str(), 1);
        Result r = Import();
        unsetenv("ORBNAV_TEST_CRASH_AFTER_RENAMES");
        return r;
    }
};

TEST_F(ImportCommit, AFailedRenamePutsTheOldFilesBack) {
    ASSERT_EQ(Import().code, 0);
    // awys.txt, replaced last, cannot be: a folder stands in its place.
    fs::remove(Folder() / "awys.txt");
    fs::create_directories(Folder() / "awys.txt" / "inside");
    auto before = Files();
    ASSERT_EQ(before.size(), 3u);
    ChangeInputs();
    Result r = Import();
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.output.find("awys.txt: cannot replace"), std::string::npos) << r.output;
    EXPECT_NE(r.output.find("the old files are back"), std::string::npos) << r.output;
    EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;
    EXPECT_EQ(Files(), before);
    EXPECT_TRUE(fs::is_directory(Folder() / "awys.txt" / "inside"));
    EXPECT_EQ(Leftovers(Folder()), std::vector<std::string>{});

    // Where nothing stood before, nothing stands after.
    fs::remove_all(base_ / "dst");
    fs::create_directories(Folder() / "awys.txt");
    EXPECT_NE(Import().code, 0);
    EXPECT_TRUE(Files().empty());
    EXPECT_EQ(Leftovers(Folder()), std::vector<std::string>{});
}

TEST_F(ImportCommit, AnImportKilledBetweenRenamesIsUndoneByTheNext) {
    ASSERT_EQ(Import().code, 0);
    auto old_files = Files();
    ChangeInputs();
    // Killed after two of the four renames: two files new, two old.
    Result killed = ImportCrashingAfter(2);
    ASSERT_EQ(killed.code, 3) << killed.output;
    auto mixed = Files();
    EXPECT_NE(mixed["apts.txt"], old_files["apts.txt"]);
    EXPECT_NE(mixed["navs.txt"], old_files["navs.txt"]);
    EXPECT_EQ(mixed["ints.txt"], old_files["ints.txt"]);
    EXPECT_EQ(mixed["awys.txt"], old_files["awys.txt"]);

    // The next import, even one that fails on its input, first puts the old set back.
    Write("fix.dat", "I\n600 Version\n 47.x -122.1 ALDER\n99\n");
    Result next = Import();
    EXPECT_NE(next.code, 0);
    EXPECT_NE(next.output.find("cut off while replacing the files; its old files are back"), std::string::npos) << next.output;
    EXPECT_NE(next.output.find("fix.dat:3: bad latitude"), std::string::npos) << next.output;
    EXPECT_EQ(Files(), old_files);
    EXPECT_EQ(Leftovers(Folder()), std::vector<std::string>{});

    // A first import killed the same way leaves no database at all after the next.
    fs::remove_all(base_ / "dst");
    ChangeInputs();
    ASSERT_EQ(ImportCrashingAfter(3).code, 3);
    EXPECT_EQ(Files().size(), 3u);
    Write("fix.dat", "I\n600 Version\n 47.x -122.1 ALDER\n99\n");
    Result after_first = Import();
    EXPECT_NE(after_first.code, 0);
    EXPECT_TRUE(Files().empty());
    EXPECT_EQ(Leftovers(Folder()), std::vector<std::string>{});

    // And an import that goes through is not disturbed by what came before.
    ChangeInputs();
    ASSERT_EQ(Import().code, 0);
    EXPECT_EQ(Files().size(), 4u);
    EXPECT_NE(Out("ints.txt").find("BIRCH"), std::string::npos);
    EXPECT_EQ(Leftovers(Folder()), std::vector<std::string>{});
}

TEST_F(ImportXplane, RealDataForARegion) {
    fs::path real = fs::path(ORB_SHARED_DATA_DIR) / "xplane";
    if (!fs::exists(real / "apt.dat.gz") && !fs::exists(real / "apt.dat"))
        GTEST_SKIP() << "no X-Plane data at " << real << "; the real-data import is not checked";
    Result r = Run(real.string() + " " + (base_ / "dst").string() + " --quiet --region 47.0,-123.0,47.8,-121.5");
    ASSERT_EQ(r.code, 0) << r.output;
    std::string apts = Out("apts.txt"), navs = Out("navs.txt"), awys = Out("awys.txt");
    EXPECT_EQ(navs.rfind(";AIRAC cycle is ", 0), 0u);
    EXPECT_NE(navs.find("\nSEA SEATTLE 47.435361 -122.309611 VOR 116.80\n"), std::string::npos);
    size_t ksea = apts.find("\nKSEA ");
    ASSERT_NE(ksea, std::string::npos);
    std::string line = apts.substr(ksea + 1, apts.find('\n', ksea + 1) - ksea - 1);
    EXPECT_EQ(Words(line).size(), 5u + 6u);  // three runways, six ends
    EXPECT_NE(line.find("_ISNQ_"), std::string::npos);
    EXPECT_NE(awys.find("J70 "), std::string::npos);
    for (const std::string& l : Split(navs, '\n')) {
        if (!l.empty() && l[0] != ';') {
            EXPECT_TRUE(Words(l)[4] == "VOR" || Words(l)[4] == "NDB") << l;
        }
    }
}

namespace {
std::string ReadText(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}
// The runway length column "NAME_FEET" of a line, by name; -1 without it.
int LengthOf(const std::string& line, const std::string& runway) {
    for (const std::string& w : Words(line)) {
        std::vector<std::string> parts = Split(w, '_');
        if (parts.size() >= 2 && parts[0] == runway) return std::atoi(parts[1].c_str());
    }
    return -1;
}
std::string LineOf(const std::string& text, const std::string& ident) {
    for (const std::string& l : Split(text, '\n'))
        if (!l.empty() && Words(l)[0] == ident) return l;
    return {};
}
}  // namespace

TEST_F(ImportXplane, AirportExtrasFromTowerStartAndPatternRows) {
    std::string apt =
        "I\n1000 Version - data cycle 2013.10\n\n"
        "1      433 1 0 KSEA Seattle\n"
        "100 45.72 1 0 0.25 1 3 0 16C 47.46381100 -122.31098800 0.00 0.00 3 0 0 2 "
        "34C 47.43797200 -122.31121300 0.00 0.00 3 1 0 2\n"
        "14 47.45572596 -122.30139282 242 0 ATC Tower\n"
        "14 1 1 1 0 A second viewpoint\n"
        "15 47.448 -122.304 300.70 Exit North Ramp\n"
        "1300 47.44 -122.30 45.40 misc jets X1\n"
        "1300 47.442 -122.302 360.00 gate jets A1\n"
        "1101 16C right\n1101 16C right\n1101 34C left\n"
        "1      100 0 0 KXXX Little Field\n";
    // Eleven runways: 22 ends, two more than a line holds.
    for (int i = 0; i < 11; ++i)
        apt += "100 30 1 0 0.25 0 0 0 A" + std::to_string(i) + " 47.0 -122.0 0 0 1 0 0 0 B" + std::to_string(i) +
               " 47.0 -121.99 0 0 1 0 0 0\n";
    apt += "15 47.0 -122.0 90 Ramp\n99\n";
    Write("apt.dat", apt);
    Result r = Import();
    ASSERT_EQ(r.code, 0) << r.output;

    // The section: right circuits once each, the tower at elevation + height.
    std::string info = Out("apt_additional_info.txt");
    EXPECT_NE(info.find("[KSEA]\nRWY16C=RIGHTPATTERN\nTowerViewLat=47.45572596\nTowerViewLon=-122.30139282\n"
                        "TowerViewAlt=675\n\n"),
              std::string::npos)
        << info;
    EXPECT_EQ(info.find("RWY34C"), std::string::npos) << "a left circuit is the default, not written";
    EXPECT_EQ(info.find("[KXXX]"), std::string::npos) << "an airport without extras has no section";

    // Parking: the first gate, its 360 as 0; else the first ramp start.
    std::string parking = ReadText(base_ / "dst" / "orb" / "Aircraft" / "orb_parking.txt");
    EXPECT_EQ(LineOf(parking, "KSEA"), "KSEA 47.44200000 -122.30200000 0.00");
    EXPECT_EQ(LineOf(parking, "KXXX"), "KXXX 47.00000000 -122.00000000 90.00");

    // Runway lengths: the apts.txt lengths, ends past twenty on a second line.
    std::string lengths = Out("orb_apts.txt");
    std::string ksea = LineOf(lengths, "KSEA");
    // 16C to 34C on a sphere of 3,440.065 nm: 9,427 ft.
    EXPECT_NEAR(LengthOf(ksea, "16C"), 9427, 20);
    EXPECT_EQ(LengthOf(ksea, "34C"), LengthOf(ksea, "16C"));
    EXPECT_EQ(LengthOf(LineOf(Out("apts.txt"), "KSEA"), "16C"), LengthOf(ksea, "16C"));
    int kxxx_lines = 0, kxxx_ends = 0;
    for (const std::string& l : Split(lengths, '\n')) {
        if (l.empty() || Words(l)[0] != "KXXX") continue;
        ++kxxx_lines;
        kxxx_ends += static_cast<int>(Words(l).size()) - 5;
    }
    EXPECT_EQ(kxxx_lines, 2);
    EXPECT_EQ(kxxx_ends, 22);
    EXPECT_NE(r.output.find("1 tower views, 1 right-hand circuits, 2 parking positions"), std::string::npos) << r.output;
}

TEST_F(ImportXplane, BadExtrasRowsNameTheirLine) {
    Write("apt.dat", std::string(kApt).replace(std::string(kApt).find("1      100"), 0, "1101 16C sideways\n"));
    Result r = Import();
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.output.find("apt.dat:6: traffic pattern 'sideways' is neither left nor right"), std::string::npos)
        << r.output;
    Write("apt.dat", std::string(kApt).replace(std::string(kApt).find("1      100"), 0, "14 47.4 -122.3 tall 0 T\n"));
    r = Import();
    EXPECT_NE(r.output.find("apt.dat:6: bad tower height 'tall'"), std::string::npos) << r.output;
    Write("apt.dat", std::string(kApt).replace(std::string(kApt).find("1      100"), 0, "1300 47.4 -122.3\n"));
    r = Import();
    EXPECT_NE(r.output.find("apt.dat:6: start row has 3 columns"), std::string::npos) << r.output;
    EXPECT_FALSE(fs::exists(base_ / "dst" / "orb" / "Aircraft" / "orb_parking.txt"));
}

TEST_F(ImportXplane, RealDataExtrasForARegion) {
    fs::path real = fs::path(ORB_SHARED_DATA_DIR) / "xplane";
    if (!fs::exists(real / "apt.dat.gz") && !fs::exists(real / "apt.dat"))
        GTEST_SKIP() << "no X-Plane data at " << real << "; the real-data import is not checked";
    Result r = Run(real.string() + " " + (base_ / "dst").string() + " --quiet --region 47.0,-123.0,47.8,-121.5");
    ASSERT_EQ(r.code, 0) << r.output;
    // apt.dat's KSEA: elevation 433, "1101 16R right" in its flows, and row
    // "14 47.45572596 -122.30139282 242 0 ATC Tower".
    std::string info = Out("apt_additional_info.txt");
    EXPECT_NE(info.find("[KSEA]\nRWY16R=RIGHTPATTERN\nTowerViewLat=47.45572596\nTowerViewLon=-122.30139282\n"
                        "TowerViewAlt=675\n\n"),
              std::string::npos);
    // KBFI's "1101 13R right".
    EXPECT_NE(info.find("[KBFI]\nRWY13R=RIGHTPATTERN\n"), std::string::npos);
    // KSEA's first gate: "1300 47.44221033 -122.30213657 45.40 gate jets A1".
    std::string parking = ReadText(base_ / "dst" / "orb" / "Aircraft" / "orb_parking.txt");
    EXPECT_EQ(LineOf(parking, "KSEA"), "KSEA 47.44221033 -122.30213657 45.40");
    // 16L from 47.46379733 -122.30775222 to 47.43117533 -122.30804122: 11,901 ft.
    std::string lengths = Out("orb_apts.txt");
    std::string ksea = LineOf(lengths, "KSEA");
    EXPECT_EQ(Words(ksea).size(), 5u + 6u);
    EXPECT_NEAR(LengthOf(ksea, "16L"), 11901, 20);
    EXPECT_EQ(LengthOf(ksea, "34R"), LengthOf(ksea, "16L"));
    EXPECT_EQ(LengthOf(LineOf(Out("apts.txt"), "KSEA"), "16L"), LengthOf(ksea, "16L"));
}
