// data_text.cpp: line reading, column splitting and number reading for the
// data files. See data_text.h.
#include "frame/data_text.h"

#include <emmintrin.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

bool LineReader::Open(const char* path) {
    position = 0;
    filled = 0;
    line_number = 0;
    skipping = false;
    at_end = !file.Open(path);
    return !at_end;
}

LineReader::Step LineReader::NextView(std::string_view& line, size_t capacity) {
    line = {};
    if (capacity == 0) return Step::End;
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
        } else if (available >= longest || available == kLineReaderChunk) {
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
    if (at_end) return;
    size_t unread = filled - position;
    if (unread > 0 && position > 0) std::memmove(chunk.data(), chunk.data() + position, unread);
    position = 0;
    filled = unread;
    size_t got = file.Read(chunk.data() + filled, kLineReaderChunk - filled);
    if (got == 0) at_end = true;
    filled += got;
}

bool LineReader::Next(char* line, size_t capacity, size_t& length) {
    length = 0;
    if (capacity == 0) return false;
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

bool LineReader::NextPiece(char* piece, size_t capacity, size_t& length) {
    length = 0;
    if (piece == nullptr || capacity == 0) return false;
    piece[0] = 0;
    if (skipping) return false;  // not mixed with the cutting reads
    while (length + 1 < capacity) {
        if (position == filled) {
            Refill();
            if (position == filled) break;
        }
        size_t room = capacity - 1 - length;
        size_t available = filled - position;
        size_t take = available < room ? available : room;
        const char* start = chunk.data() + position;
        const void* newline = std::memchr(start, '\n', take);
        if (newline != nullptr) take = static_cast<size_t>(static_cast<const char*>(newline) - start) + 1;
        std::memcpy(piece + length, start, take);
        length += take;
        position += take;
        if (newline != nullptr) break;
    }
    piece[length] = 0;
    return length > 0;
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
    if (skipping || available == 0 || position + 64 > kLineReaderChunk) return -1;
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

double ReadNumberReadAhead(std::string_view text) {
    const char* p = text.data();
    size_t size = text.size();
    char first = size > 0 ? p[0] : '\0';
    bool negative = first == '-';
    size_t sign = static_cast<size_t>((first == '-') | (first == '+'));
    size_t length = size - sign;
    // One block of sixteen bytes after the sign: up to 16 digits and the point.
    if (length == 0 || length > 16) return ReadNumber(text);
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + sign));
    __m128i values = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
    __m128i is_digit = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    __m128i is_point = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('.'));
    unsigned in_token = (1u << length) - 1;
    unsigned digit_bits = static_cast<unsigned>(_mm_movemask_epi8(is_digit)) & in_token;
    unsigned point_bits = static_cast<unsigned>(_mm_movemask_epi8(is_point)) & in_token;
    // Anything but digits and one point (signs, exponents, blanks) goes the general way.
    if ((digit_bits | point_bits) != in_token || (point_bits & (point_bits - 1)) != 0 || digit_bits == 0)
        return ReadNumber(text);
    int point_at = point_bits != 0 ? std::countr_zero(point_bits) : -1;
    int decimals = point_bits != 0 ? static_cast<int>(length) - 1 - point_at : 0;
    // The digits left-aligned without the point: the integer part moves one
    // byte on over the point's place, in the register.
    const __m128i index = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    __m128i inside = _mm_cmpgt_epi8(_mm_set1_epi8(static_cast<char>(length)), index);
    __m128i before = _mm_cmpgt_epi8(_mm_set1_epi8(static_cast<char>(point_at)), index);
    __m128i after = _mm_andnot_si128(_mm_or_si128(before, is_point), inside);
    __m128i digits = _mm_or_si128(_mm_slli_si128(_mm_and_si128(values, before), 1), _mm_and_si128(values, after));
    // Sixteen digits to two numbers of eight: pairs, fours, eights.
    __m128i zero = _mm_setzero_si128();
    const __m128i ten_one = _mm_setr_epi16(10, 1, 10, 1, 10, 1, 10, 1);
    __m128i pairs = _mm_packs_epi32(_mm_madd_epi16(_mm_unpacklo_epi8(digits, zero), ten_one),
                                    _mm_madd_epi16(_mm_unpackhi_epi8(digits, zero), ten_one));
    __m128i fours = _mm_madd_epi16(pairs, _mm_setr_epi16(100, 1, 100, 1, 100, 1, 100, 1));
    fours = _mm_packs_epi32(fours, fours);
    __m128i eights = _mm_madd_epi16(fours, _mm_setr_epi16(10000, 1, 10000, 1, 10000, 1, 10000, 1));
    uint64_t high = static_cast<uint32_t>(_mm_cvtsi128_si32(eights));
    uint64_t low = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(eights, 4)));
    // The digits stand for the number times 10^(16 - length); that product,
    // when a double holds it exactly, divided by the exact power of ten is
    // the correctly rounded value, as the digits alone would give.
    int64_t scaled = static_cast<int64_t>(high * 100000000ULL + low);
    double scaled_value = static_cast<double>(scaled);
    if (static_cast<int64_t>(scaled_value) != scaled) return ReadNumber(text);
    double value = scaled_value / kExactPowersOfTen[16 - length + static_cast<size_t>(decimals)];
    return std::bit_cast<double>(std::bit_cast<uint64_t>(value) ^ (static_cast<uint64_t>(negative) << 63));
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
