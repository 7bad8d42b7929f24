// nav_text.cpp: line reading, column splitting and number reading for the
// data files. See nav_text.h.
#include "navdata/nav_text.h"

#include <emmintrin.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

LineReader::Step LineReader::NextView(std::string_view& line, size_t capacity) {
    line = {};
    if (file == nullptr || capacity == 0) return Step::End;
    const size_t longest = capacity - 1;
    for (;;) {
        const char* start = chunk.data() + position;
        size_t available = filled - position;
        const void* newline = available > 0 ? std::memchr(start, '\n', available) : nullptr;
        if (skipping) {
            // The rest of a line that was cut never becomes a line of its own.
            if (newline == nullptr) {
                position = filled;
                if (at_end) return Step::End;
                return Step::Refill;
            }
            position += static_cast<size_t>(static_cast<const char*>(newline) - start) + 1;
            skipping = false;
            continue;
        }
        size_t length = 0;
        if (newline != nullptr) {
            length = static_cast<size_t>(static_cast<const char*>(newline) - start);
            position += length + 1;
        } else if (at_end) {
            if (available == 0) return Step::End;
            length = available;  // the last line has no line end
            position = filled;
        } else if (available >= longest || available == chunk.size()) {
            // Longer than a line may be (or than the chunk) and its end not
            // yet read: cut it here.
            length = available;
            position = filled;
            skipping = true;
        } else {
            return Step::Refill;
        }
        if (length > longest) length = longest;
        if (length > 0 && start[length - 1] == '\r') --length;
        line = std::string_view(start, length);
        ++line_number;
        return Step::Line;
    }
}

void LineReader::Refill() {
    if (file == nullptr || at_end) return;
    size_t unread = filled - position;
    if (unread > 0 && position > 0) std::memmove(chunk.data(), chunk.data() + position, unread);
    position = 0;
    filled = unread;
    size_t got = std::fread(chunk.data() + filled, 1, chunk.size() - filled, file);
    if (got == 0) at_end = true;
    filled += got;
}

bool LineReader::Next(char* line, size_t capacity, size_t& length) {
    length = 0;
    if (file == nullptr || capacity == 0) return false;
    std::string_view view;
    for (;;) {
        Step step = NextView(view, capacity);
        if (step == Step::Refill) {
            Refill();
            continue;
        }
        if (step == Step::End) {
            line[0] = 0;
            return false;
        }
        break;
    }
    std::memcpy(line, view.data(), view.size());
    length = view.size();
    line[length] = 0;
    return true;
}

namespace {
constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The byte masks of 64 bytes at a time, four SSE2 compares of 16 bytes: the
// column splits and line ends of half a million lines were bound by
// mispredicted branches at every column edge when found byte by byte.
struct ByteMasks64 {
    uint64_t newline = 0;   // '\n'
    uint64_t space = 0;     // ' '
    uint64_t low = 0;       // any byte at or below a space
};

inline ByteMasks64 MasksOf64(const char* bytes) {
    const __m128i newline = _mm_set1_epi8('\n');
    const __m128i space = _mm_set1_epi8(' ');
    ByteMasks64 masks;
    for (int k = 0; k < 4; ++k) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * k));
        int shift = 16 * k;
        masks.newline |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, newline)))) << shift;
        masks.space |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, space)))) << shift;
        __m128i at_most_space = _mm_cmpeq_epi8(_mm_min_epu8(v, space), v);
        masks.low |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(at_most_space))) << shift;
    }
    return masks;
}

// The blanks among 64 bytes: spaces, and, only when some other low byte is
// there (data files separate columns with spaces), tabs, CRs and line ends.
inline uint64_t BlanksOf64(const char* bytes, const ByteMasks64& masks) {
    uint64_t blank = masks.space | masks.newline;
    if ((masks.low & ~blank) == 0) return blank;
    for (int k = 0; k < 4; ++k) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * k));
        __m128i other = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\t')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\r')));
        blank |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(other))) << (16 * k);
    }
    return blank;
}

// Columns from a mask of the bytes that are in a column (bit i for byte i).
inline int ColumnsOfMask(const char* data, uint64_t filled, std::string_view* columns, int max_columns) {
    uint64_t starts = filled & ~(filled << 1);
    uint64_t ends = filled & ~(filled >> 1);  // the last byte of each column
    int count = 0;
    while (starts != 0 && count < max_columns) {
        int first = std::countr_zero(starts);
        int last = std::countr_zero(ends);
        columns[count++] = std::string_view(data + first, static_cast<size_t>(last - first + 1));
        starts &= starts - 1;
        ends &= ends - 1;
    }
    return count;
}
}  // namespace

int SplitColumns(std::string_view line, std::string_view* columns, int max_columns) {
    int count = 0;
    if (max_columns <= 0) return 0;
    const char* data = line.data();
    const size_t size = line.size();
    bool in_column = false;
    size_t column_start = 0;
    uint64_t carry = 0;  // whether the byte before this block was part of a column
    for (size_t base = 0; base < size; base += 64) {
        // A block of 64 bytes as one mask; bytes past the end count as blanks.
        size_t span = size - base < 64 ? size - base : 64;
        const char* block = data + base;
        alignas(16) char padded[64];
        if (span < 64) {
            std::memset(padded, ' ', sizeof padded);
            std::memcpy(padded, block, span);
            block = padded;
        }
        uint64_t filled = ~BlanksOf64(block, MasksOf64(block));
        // Each set bit is where a column begins or ends.
        uint64_t edges = filled ^ ((filled << 1) | carry);
        while (edges != 0) {
            size_t at = base + static_cast<size_t>(std::countr_zero(edges));
            edges &= edges - 1;
            if (!in_column) {
                column_start = at;
                in_column = true;
                continue;
            }
            columns[count++] = std::string_view(data + column_start, at - column_start);
            in_column = false;
            if (count == max_columns) return count;
        }
        carry = filled >> 63;
    }
    if (in_column) columns[count++] = std::string_view(data + column_start, size - column_start);
    return count;
}

int LineReader::NextShortLine(std::string_view& line, std::string_view* columns, int max_columns) {
    // Only a line whose end lies within the next 64 bytes, all of them
    // inside the chunk; anything else goes the long way.
    size_t available = filled - position;
    if (skipping || available == 0 || position + 64 > chunk.size()) return -1;
    const char* start = chunk.data() + position;
    ByteMasks64 masks = MasksOf64(start);
    uint64_t in_file = available >= 64 ? ~uint64_t{0} : (uint64_t{1} << available) - 1;
    uint64_t ends = masks.newline & in_file;
    if (ends == 0) return -1;
    size_t length = static_cast<size_t>(std::countr_zero(ends));
    position += length + 1;
    ++line_number;
    if (length > 0 && start[length - 1] == '\r') --length;
    line = std::string_view(start, length);
    uint64_t in_line = (uint64_t{1} << length) - 1;  // length is below 64
    uint64_t filled_bytes = ~BlanksOf64(start, masks) & in_line;
    return ColumnsOfMask(start, filled_bytes, columns, max_columns);
}

double ReadNumber(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && IsColumnBlank(text[i])) ++i;
    // The sign without a branch: in a file sorted by ident, signs come at
    // random, and a mispredicted sign cost more than the digits.
    char first = i < text.size() ? text[i] : '\0';
    bool negative = first == '-';
    i += static_cast<size_t>((first == '-') | (first == '+'));
    // A sign in front of another sign isn't a number for atof either.
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) return 0;
    // The common form, digits with at most one point, read exactly: a
    // mantissa below 2^53 divided by an exact power of ten is the correctly
    // rounded value. One plain loop: the digit chain's latency is the cost.
    {
        const char* p = text.data() + i;
        const char* end = text.data() + text.size();
        uint64_t mantissa = 0;
        unsigned digits = 0, decimals = 0, point = 0;
        for (; p < end; ++p) {
            unsigned digit = static_cast<unsigned char>(*p) - unsigned{'0'};
            if (digit < 10) {
                mantissa = mantissa * 10 + digit;
                ++digits;
                decimals += point;
            } else if (*p == '.' && point == 0) {
                point = 1;
            } else {
                break;
            }
        }
        bool plain_end = p == end || !(*p == 'e' || *p == 'E' || *p == '.');
        if (plain_end && digits - 1 < 18 && mantissa < (uint64_t{1} << 53)) {
            double value = static_cast<double>(mantissa) / kExactPowersOfTen[decimals];
            return std::bit_cast<double>(std::bit_cast<uint64_t>(value) ^ (static_cast<uint64_t>(negative) << 63));
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
