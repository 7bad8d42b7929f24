// data_text.h: the small text tools every reader of the data files shares:
// a bounded line reader, column splitting at blanks and tabs, atof/atoi-like
// number reading and bounded copies into fixed text fields.
//
// All of it survives any bytes: a line longer than the reader's buffer is cut
// (the rest of it is dropped, it never becomes a line of its own), a NUL inside
// a line is kept as an ordinary byte, numbers that aren't numbers read 0.
#pragma once

#include "frame/data_file.h"

#include <array>
#include <cstddef>
#include <string_view>

constexpr size_t kLineReaderChunk = 64 * 1024;  // one read a chunk: the load is bound by this loop
constexpr size_t kLineReaderSlack = 64;         // never filled: what a read past the chunk's end finds

// Reads a data file line by line into a caller's bounded buffer. The line end
// ("\n", "\r\n" or a lone "\r" before "\n") is not part of the line.
// A line is cut to the buffer's capacity - 1 bytes or to the chunk's size,
// whichever is less; the rest of it is dropped.
struct LineReader {
    DataFile file;                              // the bytes come from here only
    std::array<char, kLineReaderChunk + kLineReaderSlack> chunk{};  // bytes read ahead, then the slack
    size_t position = 0;                        // next unread byte of chunk
    size_t filled = 0;                          // bytes valid in chunk
    bool at_end = false;                        // the file has nothing more
    long line_number = 0;                       // lines handed out so far

    bool skipping = false;                      // inside the dropped rest of a cut line

    // Opens the file (see DataFile::Open) and starts at its first line;
    // false when it doesn't open, and then every read ends at once.
    bool Open(const char* path);
    // Copies the next line, cut to capacity - 1 bytes, NUL-terminated.
    // Returns false at the end of the file.
    bool Next(char* line, size_t capacity, size_t& length);

    // The same lines without the copy, for the bulk load: the view stands in
    // the chunk. Step::Refill asks the caller to let go of every view into
    // the chunk and call Refill(), which moves the unread bytes and reads on.
    enum class Step { Line, Refill, End };
    Step NextView(std::string_view& line, size_t capacity);
    void Refill();
    // The fast way for the common short line: when the next line ends within
    // 64 bytes of the chunk, takes it and splits its first max_columns
    // columns in the same pass, returning their count; otherwise returns -1
    // and takes nothing (NextView then does). Columns as SplitColumns gives.
    int NextShortLine(std::string_view& line, std::string_view* columns, int max_columns);
    // The next piece of text as fgets gives it: up to capacity - 1 bytes,
    // ending after the first "\n" when that comes sooner, so that a longer
    // line comes in several pieces. NUL-terminated; NULs read stay in it.
    // Returns false at the end of the file.
    bool NextPiece(char* piece, size_t capacity, size_t& length);
};

constexpr bool IsColumnBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Splits at runs of blanks and tabs. Returns the number of columns found, at
// most max_columns (further text is left in no column).
int SplitColumns(std::string_view line, std::string_view* columns, int max_columns);

// The leading decimal number of the text, as atof reads it; 0 without one.
double ReadNumber(std::string_view text);
// The same for a text that has kReadAhead readable bytes from its start (a
// column of a line in the reader's chunk, or one copied out of it): the
// common form is read in one 16-byte block, without a branch per digit.
constexpr size_t kReadAhead = 17;  // a sign and the 16 bytes after it
double ReadNumberReadAhead(std::string_view text);
// The leading whole number, as atoi reads it (cut toward zero); 0 without one.
int ReadInteger(std::string_view text);

// Bounded copy: the text is cut to fit and always NUL-terminated.
void CopyText(char* destination, size_t capacity, std::string_view text);
template <size_t N>
void SetText(std::array<char, N>& destination, std::string_view text) {
    CopyText(destination.data(), N, text);
}
template <size_t N>
std::string_view TextOf(const std::array<char, N>& text) {
    size_t n = 0;
    while (n < N && text[n] != 0) ++n;
    return {text.data(), n};
}

// ASCII upper case in place (the data files are ASCII; other bytes stay).
void UpperCase(char* text, size_t length);
constexpr char UpperChar(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
bool EqualNoCase(std::string_view a, std::string_view b);
bool EndsWithNoCase(std::string_view text, std::string_view tail);
