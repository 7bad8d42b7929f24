// xml_gauge_test.cpp: orbsim's XML gauge player: scripts worked out by hand
// (arithmetic, comparisons, if{ } els{ } nested, variables in and out, key
// events), and bad gauge files refused with the file and line to look at.
#include "orbsim/host_state.h"
#include "orbsim/sim_values.h"
#include "orbsim/xml_gauge.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
using namespace orbsim;

struct Rig {
    std::unique_ptr<HostState> host = std::make_unique<HostState>();
    double L(const std::string& name) {
        int id = FindNamedVariable(*host, name);
        return id < 0 ? -999 : host->named[static_cast<size_t>(id)].value;
    }
    void Set(const std::string& name, double v) { host->named[static_cast<size_t>(RegisterNamedVariable(*host, name))].value = v; }
    void Run(const std::string& text) {
        XmlScript script;
        std::string error;
        ASSERT_TRUE(CompileXmlScript(text, "t.xml", 1, script, error)) << error;
        RunXmlScript(*host, script);
    }
};

std::string CompileError(const std::string& text, int first_line = 1) {
    XmlScript script;
    std::string error;
    EXPECT_FALSE(CompileXmlScript(text, "g.xml", first_line, script, error)) << text;
    return error;
}
}  // namespace

TEST(XmlScript, ArithmeticComparisonsAndVariables) {
    Rig r;
    r.Set("a", 7);
    r.Run("(L:a, number) 3 - 4 * (>L:b, number)");        // (7 - 3) * 4
    EXPECT_EQ(r.L("b"), 16);
    r.Run("(L:b,number) 5 / (L:a,number) 4 % + (>L:c,number)");  // 16 / 5 + 7 mod 4 = 6.2
    EXPECT_DOUBLE_EQ(r.L("c"), 6.2);
    r.Run("(L:a) 7 == (L:a) 8 &lt; and (>L:d) (L:a) 7 != ! (>L:e) 0 1 or (>L:f) 3 d * (>L:g)");
    EXPECT_EQ(r.L("d"), 1);
    EXPECT_EQ(r.L("e"), 1);
    EXPECT_EQ(r.L("f"), 1);
    EXPECT_EQ(r.L("g"), 9);
    r.Run("1 0 / (>L:h) 5 p (>L:i)");                    // no division by zero; an empty stack reads 0
    EXPECT_EQ(r.L("h"), 0);
    EXPECT_EQ(r.L("i"), 0);
    // A: variables through the same answers as the calculator strings.
    r.host->aircraft.hdg_bug = 123;
    r.Run("(A:AUTOPILOT HEADING LOCK DIR, degrees) 3 + (>L:bug)");
    EXPECT_NEAR(r.L("bug"), 126, 1e-9);
}

TEST(XmlScript, IfElseNestedBothWays) {
    Rig r;
    const std::string script =
        "(L:x) 0 &gt; if{ (L:y) if{ 1 (>L:out) } els{ 2 (>L:out) } 10 (>L:after) } els{ 3 (>L:out) (L:y) if{ 4 (>L:out) } } "
        "99 (>L:end)";
    struct Case {
        double x, y, out, after;
    } cases[] = {{1, 1, 1, 10}, {1, 0, 2, 10}, {0, 0, 3, 0}, {0, 1, 4, 0}};
    for (const Case& c : cases) {
        r.Set("x", c.x);
        r.Set("y", c.y);
        r.Set("out", 0);
        r.Set("after", 0);
        r.Set("end", 0);
        r.Run(script);
        EXPECT_EQ(r.L("out"), c.out) << c.x << " " << c.y;
        EXPECT_EQ(r.L("after"), c.after) << c.x << " " << c.y;
        EXPECT_EQ(r.L("end"), 99) << "the script goes on after the blocks";
    }
}

TEST(XmlScript, KeyEventsByNameAndNumberWithTheirValue) {
    Rig r;
    r.Run("(>K:0x10337) 250 (>K:HEADING_BUG_SET)");
    const auto& events = r.host->key_events;
    ASSERT_EQ(events.Kept(), 2u);
    EXPECT_EQ(events.KeptAt(0).event, 0x10337u);
    EXPECT_EQ(events.KeptAt(0).value, 0u);
    EXPECT_EQ(events.KeptAt(1).event, 0x101FAu);
    EXPECT_EQ(events.KeptAt(1).value, 250u);
    EXPECT_FALSE(events.KeptAt(1).from_module);
    EXPECT_EQ(r.host->aircraft.hdg_bug, 250);  // the aircraft obeyed it
}

TEST(XmlGaugeFile, BadScriptsAndFilesNameTheirLine) {
    EXPECT_EQ(CompileError("1 (>L:x)\n2 (X:what) +", 10), "g.xml:11: '(X:what)' is no variable orbsim plays (L:, A:, >L:, >K:)");
    EXPECT_EQ(CompileError("1 if{ 2\n\n(>L:x)"), "g.xml:1: if{ or els{ without its \"}\"");
    EXPECT_EQ(CompileError("1\n}"), "g.xml:2: a \"}\" without its if{ or els{");
    EXPECT_EQ(CompileError("1 els{ 2 }"), "g.xml:1: els{ without an if{ } before it");
    EXPECT_EQ(CompileError("(L:x\n1"), "g.xml:1: a \"(\" without its \")\" on the line");
    EXPECT_EQ(CompileError("(>K:NO_SUCH_EVENT)"), "g.xml:1: key event 'NO_SUCH_EVENT' is not one orbsim knows (give its number)");
    EXPECT_EQ(CompileError("1 2 frobnicate"), "g.xml:1: 'frobnicate' is no word of the scripts orbsim plays");

    XmlGauge gauge;
    std::string error;
    EXPECT_FALSE(ParseXmlGauge("<Nothing/>", "g.xml", gauge, error));
    EXPECT_EQ(error, "g.xml:1: no <Gauge> element: not an XML gauge");
    EXPECT_FALSE(ParseXmlGauge("<Gauge>\n<Update>\n1 (>L:x)\n 2 +  bad\n</Update>\n</Gauge>", "g.xml", gauge, error));
    EXPECT_EQ(error, "g.xml:4: 'bad' is no word of the scripts orbsim plays");
    EXPECT_FALSE(ParseXmlGauge("<Gauge>\n<Mouse>\n<Area Left=\"0\" Top=\"x\">\n</Area>\n</Mouse>\n</Gauge>", "g.xml", gauge, error));
    EXPECT_EQ(error, "g.xml:3: <Area> needs Left, Top, Width and Height in whole pixels");

    // A good one: the update and both areas, the click scripts where they belong.
    gauge = XmlGauge{};
    ASSERT_TRUE(ParseXmlGauge("<Gauge Name=\"T\">\n<Update>(L:a) 1 + (>L:a)</Update>\n<Mouse>\n"
                              "<Area Left=\"0\" Top=\"0\" Width=\"10\" Height=\"10\"><Click>5 (>L:b)</Click></Area>\n"
                              "<Area Left=\"10\" Top=\"0\" Width=\"10\" Height=\"10\"><Click>6 (>L:b)</Click></Area>\n"
                              "</Mouse>\n</Gauge>\n",
                              "g.xml", gauge, error))
        << error;
    ASSERT_EQ(gauge.areas.size(), 2u);
    gauge.name = "T";
    Rig r;
    r.host->xml_gauges.push_back(gauge);
    RunXmlGauges(*r.host);
    RunXmlGauges(*r.host);
    EXPECT_EQ(r.L("a"), 2);
    bool hit = false;
    ASSERT_TRUE(ClickXmlGauge(*r.host, "T", 15, 5, hit));
    EXPECT_TRUE(hit);
    EXPECT_EQ(r.L("b"), 6);
    ASSERT_TRUE(ClickXmlGauge(*r.host, "T", 25, 5, hit));
    EXPECT_FALSE(hit);
    EXPECT_FALSE(ClickXmlGauge(*r.host, "Other", 5, 5, hit));
}
