// text_util.h: small text helpers of the script and aircraft readers.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

namespace orbsim {

// A whole number in decimal or 0x hex, or a decimal fraction; all of the text.
inline bool ParseNumber(std::string_view text, double& value) {
    if (text.empty() || text.size() > 64) return false;
    std::string s(text);
    char* end = nullptr;
    bool hex = s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
    bool negative_hex = s.size() > 3 && s[0] == '-' && s[1] == '0' && (s[2] == 'x' || s[2] == 'X');
    if (hex || negative_hex) {
        long long v = std::strtoll(s.c_str(), &end, 16);
        value = static_cast<double>(v);
    } else {
        value = std::strtod(s.c_str(), &end);
    }
    return end != s.c_str() && *end == 0 && std::isfinite(value);
}

inline std::string Lower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return out;
}

inline std::string Upper(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return out;
}

inline std::string_view TrimView(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

}  // namespace orbsim
