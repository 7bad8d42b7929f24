// geomag_entry.h: one fuzz input for the magnetic model, shared by the
// libFuzzer target (geomag.cpp) and the unit test that replays hostile
// inputs in the normal build.
//
// The bytes become the coefficient text (split at newlines, rows filled to
// the brim without a terminator where the input is long), then the model is
// initialised and evaluated at a handful of places, the poles included.
#pragma once

#include "navdata/magnetic_model.h"

#include <cstddef>
#include <cstdint>
#include <limits>

inline int GeomagFuzzOne(const uint8_t* data, size_t size) {
    g_magnetic = {};
    size_t row = 0, column = 0;
    for (size_t i = 0; i < size && row < kMagneticTextLines; ++i) {
        char ch = static_cast<char>(data[i]);
        if (ch == '\n') {
            ++row;
            column = 0;
            continue;
        }
        // Up to the last byte of the row: a full row has no terminator.
        if (column < kMagneticLineLength + 1) g_magnetic.coefficient_text[row][column++] = ch;
    }

    int max_degree = size > 0 ? static_cast<int>(data[0] % 16) - 1 : 12;
    InitMagneticModel(max_degree);
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    const float places[][4] = {
        {1.0f, 47.0f, -122.0f, 2005.0f}, {0.0f, 90.0f, 0.0f, 2005.0f},   {0.0f, -90.0f, 45.0f, 2010.0f},
        {100.0f, 0.0f, 180.0f, 1900.0f}, {-6000.0f, 60.0f, -60.0f, 2005.0f}, {kNan, kNan, kNan, kNan},
        {1.0f, 1e30f, -1e30f, 2005.0f},
    };
    for (const auto& place : places) {
        float declination = 0, dip = 0, intensity = 0, grid = 0;
        EvaluateMagneticModel(place[0], place[1], place[2], place[3], declination, dip, intensity, grid);
        (void)WholeDegreeVariation(declination);
    }
    // The operation the loaders call, on the same (hostile) text.
    (void)MagneticVariation(47, -122);
    (void)MagneticVariation(std::numeric_limits<int>::max(), std::numeric_limits<int>::min());
    return 0;
}
