// magnetic_model.cpp: the WMM-2005 synthesis that turns the built-in
// coefficient text into a declination, and the whole-degree variation the
// loaders store with each procedure file.
//
// [SECTION] Coefficient text
// [SECTION] Initialisation: parse the text, fold in the Schmidt factors
// [SECTION] Evaluation: the published synthesis, step by step
// [SECTION] Whole-degree variation
//
// All arithmetic is in 32-bit floats, as the published synthesis keeps it.
// Where that method takes a square root, sine or arc tangent it does so in
// double precision and stores the result back into a float; the code below
// spells those conversions out so that the results match it to the last bit
// the float allows, which matters only at the edges of the whole-degree rule.
#include "navdata/magnetic_model.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

MagneticModelState g_magnetic;

namespace {

// The end mark of the text: a line beginning with four nines.
constexpr char kEndMark[] = "9999";

// A bounded copy of one text row, so that a row filled to the brim (no NUL)
// still parses as at most kMagneticLineLength characters.
void CopyTextLine(int row, char (&line)[kMagneticLineLength + 1]) {
    const auto& text = g_magnetic.coefficient_text[static_cast<size_t>(row)];
    size_t length = 0;
    while (length < kMagneticLineLength && text[length] != 0) ++length;
    std::memcpy(line, text.data(), length);
    line[length] = 0;
}

double Sqrt(double x) { return std::sqrt(x); }

}  // namespace

// ---------------------------------------------------------------------------
// [SECTION] Coefficient text
// ---------------------------------------------------------------------------

void StoreMagneticCoefficients() {
    for (int row = 0; row < kMagneticTextLines; ++row) {
        auto& line = g_magnetic.coefficient_text[static_cast<size_t>(row)];
        line = {};
        const char* source = kWmm2005CoefficientLines[static_cast<size_t>(row)];
        if (source == nullptr) continue;
        for (size_t i = 0; i < kMagneticLineLength && source[i] != 0; ++i) line[i] = source[i];
    }
}

// ---------------------------------------------------------------------------
// [SECTION] Initialisation: parse the text, fold in the Schmidt factors
// ---------------------------------------------------------------------------

void InitMagneticModel(int maxDegree) {
    if (maxDegree < 1 || maxDegree > kMagneticMaxDegree) maxDegree = kMagneticMaxDegree;
    MagneticModel& mm = g_magnetic.model;
    mm = {};
    mm.max_degree = maxDegree;
    mm.sp[0] = 0.0f;
    mm.cp[0] = mm.p[0] = mm.pp[0] = 1.0f;
    mm.dp[0][0] = 0.0f;

    // The ellipsoid and the reference sphere, km.
    mm.a = 6378.137f;
    mm.b = 6356.7523f;
    mm.re = 6371.2f;
    mm.a2 = mm.a * mm.a;
    mm.b2 = mm.b * mm.b;
    mm.c2 = mm.a2 - mm.b2;
    mm.a4 = mm.a2 * mm.a2;
    mm.b4 = mm.b2 * mm.b2;
    mm.c4 = mm.a4 - mm.b4;

    // 1. The epoch leads the header line.
    char line[kMagneticLineLength + 1];
    CopyTextLine(0, line);
    char* end = nullptr;
    float epoch = std::strtof(line, &end);
    mm.epoch = (end != line && std::isfinite(epoch)) ? epoch : 0.0f;

    // 2. The coefficient lines, n m g h dg dh, up to the end mark. g goes to
    //    [m][n], h to [n][m - 1]; a line that doesn't name a term of the
    //    matrices is passed over.
    for (int row = 1; row < kMagneticTextLines; ++row) {
        CopyTextLine(row, line);
        if (std::strncmp(line, kEndMark, 4) == 0) break;
        const char* cursor = line;
        long n = std::strtol(cursor, &end, 10);
        if (end == cursor) continue;
        cursor = end;
        long m = std::strtol(cursor, &end, 10);
        if (end == cursor) continue;
        cursor = end;
        float values[4] = {0.0f, 0.0f, 0.0f, 0.0f};  // g, h, dg, dh
        for (float& value : values) {
            float read = std::strtof(cursor, &end);
            if (end == cursor) break;
            value = read;
            cursor = end;
        }
        if (n < 0 || n > kMagneticMaxDegree || m < 0 || m > n) continue;
        mm.c[m][n] = values[0];
        mm.cd[m][n] = values[2];
        if (m != 0) {
            mm.c[n][m - 1] = values[1];
            mm.cd[n][m - 1] = values[3];
        }
    }

    // 3. Schmidt quasi-normalisation folded into the coefficients, and the
    //    factor tables of the Legendre recursion.
    mm.snorm[0] = 1.0f;
    for (int n = 1; n <= maxDegree; ++n) {
        mm.snorm[n] = mm.snorm[n - 1] * static_cast<float>(2 * n - 1) / static_cast<float>(n);
        int j = 2;
        for (int m = 0; m <= n; ++m) {
            mm.k[m][n] = static_cast<float>((n - 1) * (n - 1) - m * m) / static_cast<float>((2 * n - 1) * (2 * n - 3));
            if (m > 0) {
                float flnmj = static_cast<float>((n - m + 1) * j) / static_cast<float>(n + m);
                mm.snorm[n + m * kMagneticSize] =
                    static_cast<float>(mm.snorm[n + (m - 1) * kMagneticSize] * Sqrt(flnmj));
                j = 1;
                mm.c[n][m - 1] = mm.snorm[n + m * kMagneticSize] * mm.c[n][m - 1];
                mm.cd[n][m - 1] = mm.snorm[n + m * kMagneticSize] * mm.cd[n][m - 1];
            }
            mm.c[m][n] = mm.snorm[n + m * kMagneticSize] * mm.c[m][n];
            mm.cd[m][n] = mm.snorm[n + m * kMagneticSize] * mm.cd[m][n];
        }
        mm.fn[n] = static_cast<float>(n + 1);
        mm.fm[n] = static_cast<float>(n);
    }
    mm.k[1][1] = 0.0f;

    // 4. Nothing remembered: the first evaluation works every term out.
    mm.old_time = mm.old_alt = mm.old_lat = mm.old_lon = -1000.0f;
}

// ---------------------------------------------------------------------------
// [SECTION] Evaluation: the published synthesis, step by step
// ---------------------------------------------------------------------------

void EvaluateMagneticModel(float altitudeKm, float latitude, float longitude, float year, float& declination,
                           float& dip, float& totalIntensity, float& gridVariation) {
    MagneticModel& mm = g_magnetic.model;
    constexpr int kRow = kMagneticSize;  // stride of the flat [n + m * 13] tables
    const float pi = 3.14159265359f;
    const float dtr = static_cast<float>(pi / 180.0);
    const float alt = altitudeKm, glat = latitude, glon = longitude, time = year;
    const int maxord = mm.max_degree;
    const bool new_position = alt != mm.old_alt || glat != mm.old_lat;

    // Time offset from the epoch; sines and cosines of the position.
    float dt = time - mm.epoch;
    float rlon = glon * dtr;
    float rlat = glat * dtr;
    float srlon = static_cast<float>(std::sin(static_cast<double>(rlon)));
    float srlat = static_cast<float>(std::sin(static_cast<double>(rlat)));
    float crlon = static_cast<float>(std::cos(static_cast<double>(rlon)));
    float crlat = static_cast<float>(std::cos(static_cast<double>(rlat)));
    float srlat2 = srlat * srlat;
    float crlat2 = crlat * crlat;
    mm.sp[1] = srlon;
    mm.cp[1] = crlon;

    // Geodetic to spherical coordinates.
    if (new_position) {
        float q = static_cast<float>(Sqrt(mm.a2 - mm.c2 * srlat2));
        float q1 = alt * q;
        float q2 = ((q1 + mm.a2) / (q1 + mm.b2)) * ((q1 + mm.a2) / (q1 + mm.b2));
        mm.ct = static_cast<float>(srlat / Sqrt(q2 * crlat2 + srlat2));
        mm.st = static_cast<float>(Sqrt(1.0 - static_cast<double>(mm.ct * mm.ct)));
        float r2 = static_cast<float>(static_cast<double>(alt * alt) + 2.0 * q1 +
                                      static_cast<double>((mm.a4 - mm.c4 * srlat2) / (q * q)));
        mm.r = static_cast<float>(Sqrt(r2));
        float d = static_cast<float>(Sqrt(mm.a2 * crlat2 + mm.b2 * srlat2));
        mm.ca = (alt + d) / mm.r;
        mm.sa = mm.c2 * crlat * srlat / (mm.r * d);
    }
    if (glon != mm.old_lon) {
        for (int m = 2; m <= maxord; ++m) {
            mm.sp[m] = mm.sp[1] * mm.cp[m - 1] + mm.cp[1] * mm.sp[m - 1];
            mm.cp[m] = mm.cp[1] * mm.cp[m - 1] - mm.sp[1] * mm.sp[m - 1];
        }
    }

    // The recursion up to the model's degree.
    float aor = mm.re / mm.r;
    float ar = aor * aor;
    float br = 0.0f, bt = 0.0f, bp = 0.0f, bpp = 0.0f;
    for (int n = 1; n <= maxord; ++n) {
        ar = ar * aor;
        for (int m = 0; m <= n; ++m) {
            // Unnormalised associated Legendre values and derivatives.
            if (new_position) {
                if (n == m) {
                    mm.p[n + m * kRow] = mm.st * mm.p[n - 1 + (m - 1) * kRow];
                    mm.dp[m][n] = mm.st * mm.dp[m - 1][n - 1] + mm.ct * mm.p[n - 1 + (m - 1) * kRow];
                } else if (n == 1 && m == 0) {
                    mm.p[n + m * kRow] = mm.ct * mm.p[n - 1 + m * kRow];
                    mm.dp[m][n] = mm.ct * mm.dp[m][n - 1] - mm.st * mm.p[n - 1 + m * kRow];
                } else if (n > 1 && n != m) {
                    if (m > n - 2) {
                        mm.p[n - 2 + m * kRow] = 0.0f;
                        mm.dp[m][n - 2] = 0.0f;
                    }
                    mm.p[n + m * kRow] = mm.ct * mm.p[n - 1 + m * kRow] - mm.k[m][n] * mm.p[n - 2 + m * kRow];
                    mm.dp[m][n] = mm.ct * mm.dp[m][n - 1] - mm.st * mm.p[n - 1 + m * kRow] -
                                  mm.k[m][n] * mm.dp[m][n - 2];
                }
            }
            // Coefficients moved to the year asked for.
            if (time != mm.old_time) {
                mm.tc[m][n] = mm.c[m][n] + dt * mm.cd[m][n];
                if (m != 0) mm.tc[n][m - 1] = mm.c[n][m - 1] + dt * mm.cd[n][m - 1];
            }
            // Terms of the expansion.
            float par = ar * mm.p[n + m * kRow];
            float temp1, temp2;
            if (m == 0) {
                temp1 = mm.tc[m][n] * mm.cp[m];
                temp2 = mm.tc[m][n] * mm.sp[m];
            } else {
                temp1 = mm.tc[m][n] * mm.cp[m] + mm.tc[n][m - 1] * mm.sp[m];
                temp2 = mm.tc[m][n] * mm.sp[m] - mm.tc[n][m - 1] * mm.cp[m];
            }
            bt = bt - ar * temp1 * mm.dp[m][n];
            bp += mm.fm[m] * temp2 * par;
            br += mm.fn[n] * temp1 * par;
            // At a geographic pole the east term is the limit of its order-1 part.
            if (mm.st == 0.0f && m == 1) {
                if (n == 1)
                    mm.pp[n] = mm.pp[n - 1];
                else
                    mm.pp[n] = mm.ct * mm.pp[n - 1] - mm.k[m][n] * mm.pp[n - 2];
                float parp = ar * mm.pp[n];
                bpp += mm.fm[m] * temp2 * parp;
            }
        }
    }
    if (mm.st == 0.0f)
        bp = bpp;
    else
        bp /= mm.st;

    // Rotate from spherical to geodetic components: north, east, down.
    float bx = -bt * mm.ca - br * mm.sa;
    float by = bp;
    float bz = bt * mm.sa - br * mm.ca;

    // Declination, dip and total intensity.
    float bh = static_cast<float>(Sqrt(bx * bx + by * by));
    totalIntensity = static_cast<float>(Sqrt(bh * bh + bz * bz));
    declination = static_cast<float>(std::atan2(static_cast<double>(by), static_cast<double>(bx)) / dtr);
    dip = static_cast<float>(std::atan2(static_cast<double>(bz), static_cast<double>(bh)) / dtr);

    // Grid variation, in the polar caps only.
    gridVariation = -999.0f;
    if (std::fabs(static_cast<double>(glat)) >= 55.0) {
        if (glat > 0.0f && glon >= 0.0f) gridVariation = declination - glon;
        if (glat > 0.0f && glon < 0.0f) gridVariation = declination + std::fabs(glon);
        if (glat < 0.0f && glon >= 0.0f) gridVariation = declination + glon;
        if (glat < 0.0f && glon < 0.0f) gridVariation = declination - std::fabs(glon);
        if (gridVariation > 180.0f) gridVariation -= 360.0f;
        if (gridVariation < -180.0f) gridVariation += 360.0f;
    }

    mm.old_time = time;
    mm.old_alt = alt;
    mm.old_lat = glat;
    mm.old_lon = glon;
}

// ---------------------------------------------------------------------------
// [SECTION] Whole-degree variation
// ---------------------------------------------------------------------------

int WholeDegreeVariation(float declination) {
    // A declination is within +-180; anything else (a broken text) reads 0
    // rather than overflow the conversion.
    if (!std::isfinite(declination) || std::fabs(declination) > 360.0f) return 0;
    int whole = static_cast<int>(declination);  // toward zero
    if (static_cast<double>(declination) > 0.54) whole += 1;
    return whole;
}

float MagneticDeclination(float latitude, float longitude, float altitudeKm, float year) {
    // The database load stores the text first; a call ahead of it still
    // gets the model rather than an empty one.
    if (g_magnetic.coefficient_text[0][0] == 0) StoreMagneticCoefficients();
    InitMagneticModel(kMagneticMaxDegree);
    float declination = 0, dip = 0, total_intensity = 0, grid_variation = 0;
    EvaluateMagneticModel(altitudeKm, latitude, longitude, year, declination, dip, total_intensity, grid_variation);
    return declination;
}

int MagneticVariation(int latitude, int longitude) {
    // The year is fixed: the date of the flight plays no part.
    return WholeDegreeVariation(
        MagneticDeclination(static_cast<float>(latitude), static_cast<float>(longitude), 1.0f, 2005.0f));
}
