// nav_text.cpp: line reading, column splitting and number reading for the
// data files. See nav_text.h.
#include "navdata/nav_text.h"

#include <charconv>
#include <cmath>
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

int SplitColumns(std::string_view line, std::string_view* columns, int max_columns) {
    int count = 0;
    size_t i = 0;
    const size_t n = line.size();
    while (count < max_columns) {
        while (i < n && IsColumnBlank(line[i])) ++i;
        if (i >= n) break;
        size_t start = i;
        while (i < n && !IsColumnBlank(line[i])) ++i;
        columns[count++] = line.substr(start, i - start);
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
