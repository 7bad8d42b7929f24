// nav_text.cpp: line reading, column splitting and number reading for the
// data files. See nav_text.h.
#include "navdata/nav_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

bool LineReader::Next(char* line, size_t capacity, size_t& length) {
    length = 0;
    if (file == nullptr || capacity == 0) return false;
    bool got_any = false;
    for (;;) {
        if (position >= filled) {
            if (at_end) break;
            filled = std::fread(chunk.data(), 1, chunk.size(), file);
            position = 0;
            if (filled == 0) {
                at_end = true;
                break;
            }
        }
        got_any = true;
        const char* start = chunk.data() + position;
        size_t available = filled - position;
        const void* newline = std::memchr(start, '\n', available);
        size_t take = newline ? static_cast<size_t>(static_cast<const char*>(newline) - start) : available;
        size_t room = capacity - 1 - length;
        size_t copy = take < room ? take : room;
        std::memcpy(line + length, start, copy);
        length += copy;
        position += take;
        if (newline) {
            ++position;  // the '\n' itself
            break;
        }
    }
    if (!got_any) {
        line[0] = 0;
        return false;
    }
    if (length > 0 && line[length - 1] == '\r') --length;
    line[length] = 0;
    ++line_number;
    return true;
}

namespace {
// Byte classes from a table: the loaders split half a million lines.
constexpr std::array<bool, 256> MakeBlankTable() {
    std::array<bool, 256> table{};
    table[' '] = table['\t'] = table['\r'] = table['\n'] = true;
    return table;
}
constexpr std::array<bool, 256> kBlank = MakeBlankTable();
inline bool Blank(char c) { return kBlank[static_cast<unsigned char>(c)]; }

constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
}  // namespace

int SplitColumns(std::string_view line, std::string_view* columns, int max_columns) {
    int count = 0;
    const char* p = line.data();
    const char* end = p + line.size();
    while (count < max_columns) {
        while (p < end && Blank(*p)) ++p;
        if (p >= end) break;
        const char* start = p;
        while (p < end && !Blank(*p)) ++p;
        columns[count++] = std::string_view(start, static_cast<size_t>(p - start));
    }
    return count;
}

double ReadNumber(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && IsColumnBlank(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    // A sign in front of another sign isn't a number for atof either.
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) return 0;
    // The common form, digits with a point, read exactly: a mantissa below
    // 2^53 divided by an exact power of ten is the correctly rounded value.
    {
        const char* p = text.data() + i;
        const char* end = text.data() + text.size();
        uint64_t mantissa = 0;
        int digits = 0, decimals = 0;
        while (p < end && static_cast<unsigned>(*p - '0') < 10 && digits < 18) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0'), ++digits;
        if (p < end && *p == '.') {
            ++p;
            while (p < end && static_cast<unsigned>(*p - '0') < 10 && digits < 18)
                mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0'), ++digits, ++decimals;
        }
        bool plain_end = p == end || !(static_cast<unsigned>(*p - '0') < 10 || *p == 'e' || *p == 'E' || *p == '.');
        if (digits > 0 && plain_end && mantissa < (uint64_t{1} << 53)) {
            double value = static_cast<double>(mantissa) / kExactPowersOfTen[decimals];
            return negative ? -value : value;
        }
    }
    double value = 0;
    auto result = std::from_chars(text.data() + i, text.data() + text.size(), value, std::chars_format::general);
    if (result.ec != std::errc() || !std::isfinite(value)) {
        // A number too large for a double reads as the largest one, as atof gives inf;
        // the tables want finite values, so out-of-range reads 0.
        return 0;
    }
    return negative ? -value : value;
}

int ReadInteger(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && IsColumnBlank(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > 2147483647LL) value = 2147483647LL;  // saturate: atoi's overflow is undefined
    }
    return static_cast<int>(negative ? -value : value);
}

void CopyText(char* destination, size_t capacity, std::string_view text) {
    if (destination == nullptr || capacity == 0) return;
    size_t n = text.size() < capacity - 1 ? text.size() : capacity - 1;
    if (n > 0) std::memcpy(destination, text.data(), n);
    destination[n] = 0;
}

void UpperCase(char* text, size_t length) {
    for (size_t i = 0; i < length; ++i) text[i] = UpperChar(text[i]);
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (UpperChar(a[i]) != UpperChar(b[i])) return false;
    return true;
}

bool EndsWithNoCase(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && EqualNoCase(text.substr(text.size() - tail.size()), tail);
}
