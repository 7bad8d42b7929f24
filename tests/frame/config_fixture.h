// config_fixture.h: a simulator folder of its own for each configuration test.
// Each test gets a fresh folder under /tmp as RootFolder and fresh state.
#pragma once

#include "cdu/plan_data_texts.h"
#include "frame/aircraft_profile.h"
#include "frame/sim_state.h"
#include "frame/global_config.h"
#include "frame/module_state.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

class ConfigFolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/orb_config_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder_ = pattern;
        std::filesystem::create_directories(folder_ + "/orb/Aircraft");
        std::filesystem::create_directories(folder_ + "/orb/navdata");
        g_module = {};
        g_config = {};
        g_profile = {};
        g_lvars = {};
        g_airac = {};
        g_plan_texts = {};
        g_tick = {};
        g_config_observer = nullptr;
        CopyText(g_module.RootFolder.data(), g_module.RootFolder.size(), folder_.c_str());
    }
    void TearDown() override {
        g_config_observer = nullptr;
        std::filesystem::remove_all(folder_);
    }
    // Writes a file below the folder; `relative` uses "/".
    void Write(const std::string& relative, const std::string& content) {
        std::ofstream out(folder_ + "/" + relative, std::ios::binary);
        out << content;
    }
    void WriteOrbCfg(const std::string& content) { Write("orb/orb.cfg", content); }
    void WriteProfile(const std::string& name, const std::string& content) {
        Write("orb/Aircraft/" + name + ".cfg", content);
    }
    // orb.cfg, then the profile, as start-up reads them.
    void LoadBoth(const std::string& orb_cfg, const std::string& profile) {
        WriteOrbCfg(orb_cfg);
        WriteProfile("Test", profile);
        LoadGlobalConfig();
        LoadAircraftProfile("Test");
    }
    std::string folder_;
};

inline std::string Text(const OptionText& text) { return text.data(); }
