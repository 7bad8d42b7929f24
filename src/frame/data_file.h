// data_file.h: the one way the module reads a file.
//
// Every file the module reads is put there by users, data suppliers or other
// programs, so a name may stand for a folder, a device, a pipe, a file we may
// not read, or one that another program writes while we read it. DataFile
// opens only a regular file, takes its size once at the open, and hands out
// bytes up to that size in reads no larger than the caller's buffer: a file
// that grows meanwhile is read as it was, one that shrinks simply ends early.
// It allocates nothing; a caller that sizes memory from DataFileBytes clamps
// the size to what it can use first.
//
// It sits at the bottom of the includes: Win32 and the standard library only.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

struct DataFile {
    HANDLE handle = INVALID_HANDLE_VALUE;
    uint64_t size = 0;                  // bytes the file had at the open; reads stop there
    uint64_t consumed = 0;              // bytes handed out so far

    DataFile() = default;
    DataFile(const DataFile&) = delete;
    DataFile& operator=(const DataFile&) = delete;
    ~DataFile() { Close(); }

    // Opens the regular file at `path` for reading, closing what was open.
    // False for a missing file, a folder, a device or pipe, and a file that
    // cannot be read; nothing stays open then.
    bool Open(const char* path);
    bool IsOpen() const { return handle != INVALID_HANDLE_VALUE; }
    // Reads up to `capacity` bytes into `buffer`; 0 at the end (the size of
    // the open reached, or the file ended sooner), after an error, or when
    // nothing is open.
    size_t Read(char* buffer, size_t capacity);
    // Goes to byte `offset` of the file, at most its size at the open; the
    // next Read starts there. False when nothing is open or the move fails.
    bool Seek(uint64_t offset);
    void Close();
};

// The size of the regular file at `path`; 0 when there is none to open.
uint64_t DataFileBytes(const char* path);
