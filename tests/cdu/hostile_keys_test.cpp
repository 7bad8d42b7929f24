// hostile_keys_test.cpp: long random and hostile key sequences on the CDU,
// with the demonstration data loaded, never overflow a line or break the plan.
#include "cdu_rig.h"

#include "fuzz/cdu_fuzz_entry.h"

#include <random>

using namespace cdu_test;

TEST(CduHostileKeys, RandomSequencesKeepEveryLineBounded) {
    CduRig cdu;
    std::mt19937 random(20240611);
    const int keys = CduKeyCount(GaugeId::SMITHS_FMS);
    for (int run = 0; run < 12; ++run) {
        std::vector<uint8_t> bytes(600);
        for (uint8_t& b : bytes) {
            // Mostly keys, a frame now and then, seldom a page jump.
            int roll = static_cast<int>(random() % 100);
            b = static_cast<uint8_t>(roll < 80 ? random() % keys : roll < 97 ? 0x80 : 0xF0 + random() % 16);
        }
        ASSERT_TRUE(cdu_fuzz::KeySequence(bytes.data(), bytes.size())) << "run " << run;
    }
    // A route typed into every entry line of RTE, long and short.
    g_smiths.CduPage = 22;
    for (const char* text : {"KSEAKGEGKSEAKGEGKSEAKGEG", "K", "KSEAKGE", "////////", "-", "."}) {
        for (int key = 1; key <= 12; ++key) {
            SetScratchpad(text);
            g_smiths.LineSelectLatch = key;
            cdu.Frame();
            EXPECT_LE(ScratchpadText().size(), kScratchpadCapacity - 1);
            for (int page_turn = 0; page_turn < 2; ++page_turn) {
                g_smiths.NextPageLatch = 1;
                cdu.Frame();
            }
        }
    }
    // A copied-in value longer than the line is cut to the buffer, not beyond.
    SetScratchpad(std::string(500, 'Q'));
    EXPECT_EQ(ScratchpadText().size(), kScratchpadCapacity - 1);
    SetCduMessage(std::string(500, 'M'));
    EXPECT_EQ(CduMessageText().size(), kCduMessageCapacity - 1);
    cdu.Frame();
}
