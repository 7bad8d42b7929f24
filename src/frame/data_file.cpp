// data_file.cpp: opening and reading a data file. See data_file.h.
#include "frame/data_file.h"

namespace {
// One ReadFile asks for at most this much: DWORD counts, and no caller's
// buffer is near it.
constexpr size_t kLargestRead = 1u << 30;
}  // namespace

bool DataFile::Open(const char* path) {
    Close();
    if (path == nullptr || path[0] == 0) return false;
    // Others may write, rename or delete the file meanwhile, as with _SH_DENYNO.
    HANDLE opened = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return false;
    // A folder does not open at all; a console, a serial port, a pipe or a
    // socket does, and would hand out bytes without end or wait for them.
    LARGE_INTEGER bytes{};
    if (GetFileType(opened) != FILE_TYPE_DISK || !GetFileSizeEx(opened, &bytes) || bytes.QuadPart < 0) {
        CloseHandle(opened);
        return false;
    }
    handle = opened;
    size = static_cast<uint64_t>(bytes.QuadPart);
    consumed = 0;
    return true;
}

size_t DataFile::Read(char* buffer, size_t capacity) {
    if (!IsOpen() || buffer == nullptr || consumed >= size) return 0;
    uint64_t left = size - consumed;
    size_t wanted = capacity < kLargestRead ? capacity : kLargestRead;
    if (left < wanted) wanted = static_cast<size_t>(left);
    if (wanted == 0) return 0;
    DWORD got = 0;
    if (!ReadFile(handle, buffer, static_cast<DWORD>(wanted), &got, nullptr) || got == 0) {
        // An error, or the file was cut shorter since the open: it ends here.
        consumed = size;
        return 0;
    }
    consumed += got;
    return got;
}

bool DataFile::Seek(uint64_t offset) {
    if (!IsOpen() || offset > size) return false;
    LARGE_INTEGER to{};
    to.QuadPart = static_cast<long long>(offset);
    if (!SetFilePointerEx(handle, to, nullptr, FILE_BEGIN)) return false;
    consumed = offset;
    return true;
}

void DataFile::Close() {
    if (IsOpen()) CloseHandle(handle);
    handle = INVALID_HANDLE_VALUE;
    size = 0;
    consumed = 0;
}

uint64_t DataFileBytes(const char* path) {
    DataFile file;
    return file.Open(path) ? file.size : 0;
}
