// decimal_number.cpp: plain decimal numbers, read with from_chars so that
// neither the locale nor a hex prefix changes what a text means.
#include "decimal_number.h"

#include <charconv>
#include <cmath>

bool ParseDecimal(std::string_view text, double& value) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    size_t digits = 0, points = 0;
    for (size_t j = i; j < text.size(); ++j) {
        char c = text[j];
        if (c >= '0' && c <= '9')
            ++digits;
        else if (c == '.' && points == 0)
            ++points;
        else
            return false;
    }
    if (digits == 0) return false;
    // from_chars takes no leading '+'.
    size_t from = text[0] == '+' ? 1 : 0;
    double read = 0;
    auto [end, error] = std::from_chars(text.data() + from, text.data() + text.size(), read, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(read)) return false;
    value = read;
    return true;
}
