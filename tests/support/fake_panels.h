// fake_panels.h: an in-process panel function table for unit tests, playing
// the simulator's side of the calls the module makes: tokens, calculator
// strings, key events, windows and named variables.
#pragma once

#include "frame/module_entry.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

struct FakeSimulator {
    std::map<int, double> tokens;                       // token number -> value
    std::map<int, int> token_reads;                     // token number -> lookups
    std::map<std::string, double> calculator;           // code -> double result
    std::map<std::string, std::string> calculator_text; // code -> text result
    std::vector<std::pair<unsigned, unsigned>> key_events;
    std::map<unsigned, bool> window_visible;            // panel ident -> visible
    std::vector<unsigned> window_toggles;
    std::map<std::string, int> named_ids;
    std::map<int, double> named_values;
    std::vector<std::string> unregistered;
    PANELS table = {};

    int Reads(int token) const {
        auto it = token_reads.find(token);
        return it == token_reads.end() ? 0 : it->second;
    }
    int CountEvents(unsigned event) const {
        int n = 0;
        for (auto& e : key_events) n += e.first == event;
        return n;
    }
};

// Installs a fresh fake into ImportTable (and removes it on destruction).
class FakeSimulatorScope {
public:
    FakeSimulatorScope();
    ~FakeSimulatorScope();
    FakeSimulator& sim;
};

FakeSimulator& CurrentFakeSimulator();
