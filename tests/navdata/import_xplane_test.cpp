// import_xplane_test.cpp: `orbnav import-xplane` on small hand-written
// X-Plane files (each mapping choice, the region, bad input) and, when the
// shared data is present, on the real files for a region.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
        Write("nav.dat", kNav);
        Write("fix.dat", kFix);
        Write("awy.dat", kAwy);
        Write("apt.dat", kApt);
    }
    void Write(const std::string& name, const std::string& text) { std::ofstream(base_ / "src" / name, std::ios::binary) << text; }
    Result Run(const std::string& arguments) {
        std::string command = std::string(ORB_BINARY_DIR) + "/orbnav import-xplane " + arguments + " 2>&1";
        Result r;
        FILE* pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return {-1, "popen failed"};
        std::array<char, 4096> buffer{};
        size_t n;
        while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) r.output.append(buffer.data(), n);
        int status = pclose(pipe);
        r.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return r;
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
    Result r = Import("--region 48,-123,46,-121");
    ASSERT_EQ(r.code, 0) << r.output;
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

TEST_F(ImportXplane, BadInputNamesFileAndLineAndWritesNothing) {
    // A first import leaves files that a failing one must not touch.
    ASSERT_EQ(Import().code, 0);
    std::string before = Out("apts.txt");
    struct Case {
        const char* file;
        std::string text;
        std::string message;
    } cases[] = {
        {"fix.dat", "I\n600 Version\n 47.1 -122.1 ALDER\n 47.x -122.0 BAD\n99\n", "fix.dat:4: bad latitude or longitude"},
        {"fix.dat", "I\n600 Version\n 47.1 -122.1 ALDER\n", "fix.dat:3: file ends without its closing 99 line"},
        {"nav.dat", "I\n850 Version\n99\n", "nav.dat:2: version 850 is not supported (810 expected)"},
        {"awy.dat", "I\n640 Version\nAAAAA 47.0 -122.0 BBBBB\n99\n", "awy.dat:3: airway row has 4 columns, 10 expected"},
        {"apt.dat", "I\n1000 Version\n1 433 1 0 KSEA X\n100 45 1 0\n99\n", "apt.dat:4: runway row has 4 columns, 26 expected"},
        {"apt.dat", "\x1f\x8b not really gzip\n", "apt.dat:1: empty or unreadable file"},
        {"nav.dat", "0x\n810\n99\n", "nav.dat:1: not an X-Plane data file"},
    };
    for (const Case& c : cases) {
        SetUp();
        ASSERT_EQ(Import().code, 0);
        Write(c.file, c.text);
        Result r = Import();
        EXPECT_NE(r.code, 0) << c.file;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << r.output;
        EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;  // one line
        EXPECT_EQ(Out("apts.txt"), before);
        for (const auto& entry : fs::directory_iterator(base_ / "dst" / "orb" / "navdata"))
            EXPECT_EQ(entry.path().extension(), ".txt") << entry.path();  // no temporary left behind
    }
    fs::remove(base_ / "src" / "awy.dat");
    Result missing = Import();
    EXPECT_NE(missing.code, 0);
    EXPECT_NE(missing.output.find("no awy.dat or awy.dat.gz"), std::string::npos) << missing.output;
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
