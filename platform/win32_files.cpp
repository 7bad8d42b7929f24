// win32_files.cpp: the Win32 and CRT file calls of the module, on POSIX.
//
// Paths are `\`-separated and matched without regard to case (see
// path_resolve.h). Find handles hold a snapshot of the folder's names.
#include "path_resolve.h"

#include <windows.h>
#include <share.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {

static char FoldCase(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNoCase(const char* a, const char* b) {
    while (*a && *b) {
        if (FoldCase(*a) != FoldCase(*b)) return false;
        ++a;
        ++b;
    }
    return *a == *b;
}

bool WildcardMatch(const char* pattern, const char* name) {
    // "*.*" is everything on Windows, names without a dot included.
    if (std::strcmp(pattern, "*.*") == 0 || std::strcmp(pattern, "*") == 0) return true;
    const char* star_p = nullptr;
    const char* star_n = nullptr;
    while (*name) {
        if (*pattern == '*') {
            star_p = pattern++;
            star_n = name;
        } else if (*pattern == '?' || (*pattern && FoldCase(*pattern) == FoldCase(*name))) {
            ++pattern;
            ++name;
        } else if (star_p) {
            pattern = star_p + 1;
            name = ++star_n;
        } else {
            return false;
        }
    }
    while (*pattern == '*') ++pattern;
    // A trailing ".*" matches a name without extension too.
    if (pattern[0] == '.' && pattern[1] == '*' && pattern[2] == 0) return true;
    return *pattern == 0;
}

static bool Exists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0;
}

bool ResolvePath(const char* windows_path, std::string& posix_path, bool last_may_be_missing) {
    posix_path.clear();
    if (windows_path == nullptr || windows_path[0] == 0) return false;
    std::string path = windows_path;
    for (char& c : path)
        if (c == '\\') c = '/';
    // A drive letter means nothing here.
    if (path.size() >= 2 && path[1] == ':') path.erase(0, 2);

    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= path.size()) {
        size_t slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        if (slash > start) parts.push_back(path.substr(start, slash - start));
        start = slash + 1;
    }
    std::string current = (!path.empty() && path[0] == '/') ? "/" : ".";
    if (parts.empty()) {
        posix_path = current;
        return true;
    }
    for (size_t i = 0; i < parts.size(); ++i) {
        const std::string& part = parts[i];
        std::string joined = current == "/" ? "/" + part : current + "/" + part;
        if (part == "." || part == ".." || Exists(joined)) {
            current = joined;
            continue;
        }
        std::string found;
        if (DIR* dir = ::opendir(current.c_str())) {
            while (dirent* entry = ::readdir(dir)) {
                if (EqualNoCase(entry->d_name, part.c_str())) {
                    found = entry->d_name;
                    break;
                }
            }
            ::closedir(dir);
        }
        if (found.empty()) {
            if (i + 1 == parts.size() && last_may_be_missing) {
                current = joined;
                break;
            }
            return false;
        }
        current = current == "/" ? "/" + found : current + "/" + found;
    }
    if (current.rfind("./", 0) == 0) current.erase(0, 2);
    posix_path = current;
    return true;
}

}  // namespace platform

using platform::ResolvePath;

namespace {
struct FindState {
    std::vector<std::string> names;
    std::vector<bool> is_dir;
    std::vector<long long> sizes;
    size_t next = 0;
};

void FillFindData(const FindState& state, size_t index, WIN32_FIND_DATAA* data) {
    *data = {};
    data->dwFileAttributes = state.is_dir[index] ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
    data->nFileSizeLow = static_cast<DWORD>(state.sizes[index] & 0xFFFFFFFF);
    data->nFileSizeHigh = static_cast<DWORD>(state.sizes[index] >> 32);
    std::snprintf(data->cFileName, sizeof data->cFileName, "%s", state.names[index].c_str());
}
}  // namespace

extern "C" {

DWORD GetCurrentDirectoryA(DWORD nBufferLength, LPSTR lpBuffer) {
    char cwd[4096];
    if (::getcwd(cwd, sizeof cwd) == nullptr) return 0;
    DWORD needed = static_cast<DWORD>(std::strlen(cwd));
    if (lpBuffer == nullptr || nBufferLength <= needed) return needed + 1;
    std::memcpy(lpBuffer, cwd, needed + 1);
    return needed;
}

HANDLE FindFirstFileA(LPCSTR lpFileName, LPWIN32_FIND_DATAA lpFindFileData) {
    if (lpFileName == nullptr || lpFindFileData == nullptr) return INVALID_HANDLE_VALUE;
    std::string pattern_path = lpFileName;
    for (char& c : pattern_path)
        if (c == '\\') c = '/';
    size_t slash = pattern_path.rfind('/');
    std::string folder = slash == std::string::npos ? "." : pattern_path.substr(0, slash);
    std::string pattern = slash == std::string::npos ? pattern_path : pattern_path.substr(slash + 1);
    if (folder.empty()) folder = "/";
    std::string posix_folder;
    if (!ResolvePath(folder.c_str(), posix_folder, false)) return INVALID_HANDLE_VALUE;

    auto* state = new FindState;
    if (DIR* dir = ::opendir(posix_folder.c_str())) {
        while (dirent* entry = ::readdir(dir)) {
            if (!platform::WildcardMatch(pattern.c_str(), entry->d_name)) continue;
            std::string full = posix_folder + "/" + entry->d_name;
            struct stat st = {};
            ::stat(full.c_str(), &st);
            state->names.emplace_back(entry->d_name);
            state->is_dir.push_back(S_ISDIR(st.st_mode));
            state->sizes.push_back(static_cast<long long>(st.st_size));
        }
        ::closedir(dir);
    }
    if (state->names.empty()) {
        delete state;
        return INVALID_HANDLE_VALUE;
    }
    FillFindData(*state, 0, lpFindFileData);
    state->next = 1;
    return state;
}

BOOL FindNextFileA(HANDLE hFindFile, LPWIN32_FIND_DATAA lpFindFileData) {
    if (hFindFile == nullptr || hFindFile == INVALID_HANDLE_VALUE || lpFindFileData == nullptr) return FALSE;
    auto* state = static_cast<FindState*>(hFindFile);
    if (state->next >= state->names.size()) return FALSE;
    FillFindData(*state, state->next++, lpFindFileData);
    return TRUE;
}

BOOL FindClose(HANDLE hFindFile) {
    if (hFindFile == nullptr || hFindFile == INVALID_HANDLE_VALUE) return FALSE;
    delete static_cast<FindState*>(hFindFile);
    return TRUE;
}

FILE* _fsopen(const char* filename, const char* mode, int) {
    if (filename == nullptr || mode == nullptr) return nullptr;
    bool writing = std::strpbrk(mode, "wa+") != nullptr;
    std::string posix;
    if (!ResolvePath(filename, posix, writing)) return nullptr;
    int flags = std::strchr(mode, '+') != nullptr ? O_RDWR : (writing ? O_WRONLY : O_RDONLY);
    if (mode[0] == 'w') flags |= O_CREAT | O_TRUNC;
    if (mode[0] == 'a') flags |= O_CREAT | O_APPEND;
    // Never wait: a pipe without a partner fails at once, as a file that
    // cannot be opened, instead of stalling the panel thread.
    int fd = ::open(posix.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    // Windows opens no folder as a stream.
    struct stat st;
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        ::close(fd);
        return nullptr;
    }
    // Text and binary modes are one on POSIX; strip what fdopen may not know.
    char clean_mode[8] = {};
    size_t n = 0;
    for (const char* m = mode; *m && n + 1 < sizeof clean_mode; ++m)
        if (*m != 't' && *m != 'b') clean_mode[n++] = *m;
    FILE* file = ::fdopen(fd, clean_mode);
    if (file == nullptr) ::close(fd);
    return file;
}

// File handles carry the descriptor, moved by one so that no handle is null.
static HANDLE HandleOf(int fd) { return reinterpret_cast<HANDLE>(static_cast<intptr_t>(fd) + 1); }
static int DescriptorOf(HANDLE handle) {
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return -1;
    return static_cast<int>(reinterpret_cast<intptr_t>(handle) - 1);
}

HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD, void*, DWORD dwCreationDisposition, DWORD, HANDLE) {
    // The module only reads files that are there.
    if (lpFileName == nullptr || dwDesiredAccess != GENERIC_READ || dwCreationDisposition != OPEN_EXISTING)
        return INVALID_HANDLE_VALUE;
    std::string posix;
    if (!ResolvePath(lpFileName, posix, false)) return INVALID_HANDLE_VALUE;
    // Non-blocking, so that a pipe without a writer opens at once (and is
    // then refused by its type) instead of waiting for one.
    int fd = ::open(posix.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return INVALID_HANDLE_VALUE;
    // Windows opens a folder only with backup semantics, which we never ask for.
    struct stat st;
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        ::close(fd);
        return INVALID_HANDLE_VALUE;
    }
    return HandleOf(fd);
}

DWORD GetFileType(HANDLE hFile) {
    struct stat st;
    if (::fstat(DescriptorOf(hFile), &st) != 0) return FILE_TYPE_UNKNOWN;
    if (S_ISREG(st.st_mode) || S_ISBLK(st.st_mode)) return FILE_TYPE_DISK;
    if (S_ISCHR(st.st_mode)) return FILE_TYPE_CHAR;
    if (S_ISFIFO(st.st_mode) || S_ISSOCK(st.st_mode)) return FILE_TYPE_PIPE;
    return FILE_TYPE_UNKNOWN;
}

BOOL GetFileSizeEx(HANDLE hFile, PLARGE_INTEGER lpFileSize) {
    struct stat st;
    if (lpFileSize == nullptr || ::fstat(DescriptorOf(hFile), &st) != 0) return FALSE;
    // A whole disk has no file size on Windows either.
    if (!S_ISREG(st.st_mode)) return FALSE;
    lpFileSize->QuadPart = static_cast<long long>(st.st_size);
    return TRUE;
}

BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead, LPDWORD lpNumberOfBytesRead, void*) {
    if (lpNumberOfBytesRead != nullptr) *lpNumberOfBytesRead = 0;
    int fd = DescriptorOf(hFile);
    if (fd < 0 || (lpBuffer == nullptr && nNumberOfBytesToRead > 0)) return FALSE;
    ssize_t got;
    do {
        got = ::read(fd, lpBuffer, nNumberOfBytesToRead);
    } while (got < 0 && errno == EINTR);
    if (got < 0) return FALSE;
    // At the end of a file ReadFile succeeds with no bytes.
    if (lpNumberOfBytesRead != nullptr) *lpNumberOfBytesRead = static_cast<DWORD>(got);
    return TRUE;
}

BOOL SetFilePointerEx(HANDLE hFile, LARGE_INTEGER liDistanceToMove, PLARGE_INTEGER lpNewFilePointer, DWORD dwMoveMethod) {
    int fd = DescriptorOf(hFile);
    int whence = dwMoveMethod == FILE_BEGIN ? SEEK_SET : dwMoveMethod == FILE_CURRENT ? SEEK_CUR : SEEK_END;
    off_t at = ::lseek(fd, static_cast<off_t>(liDistanceToMove.QuadPart), whence);
    if (fd < 0 || at < 0) return FALSE;
    if (lpNewFilePointer != nullptr) lpNewFilePointer->QuadPart = static_cast<long long>(at);
    return TRUE;
}

BOOL CloseHandle(HANDLE hObject) {
    int fd = DescriptorOf(hObject);
    return fd >= 0 && ::close(fd) == 0;
}

BOOL DeleteFileA(LPCSTR lpFileName) {
    std::string posix;
    if (!ResolvePath(lpFileName, posix, false)) return FALSE;
    return ::unlink(posix.c_str()) == 0;
}

BOOL MoveFileExA(LPCSTR lpExistingFileName, LPCSTR lpNewFileName, DWORD dwFlags) {
    std::string from, to;
    if (!ResolvePath(lpExistingFileName, from, false)) return FALSE;
    if (!ResolvePath(lpNewFileName, to, true)) return FALSE;
    if (!(dwFlags & MOVEFILE_REPLACE_EXISTING) && platform::ResolvePath(lpNewFileName, to, false)) return FALSE;
    return std::rename(from.c_str(), to.c_str()) == 0;
}

BOOL CreateDirectoryA(LPCSTR lpPathName, void*) {
    std::string posix;
    if (!ResolvePath(lpPathName, posix, true)) return FALSE;
    return ::mkdir(posix.c_str(), 0777) == 0;
}

DWORD GetFileAttributesA(LPCSTR lpFileName) {
    std::string posix;
    if (!ResolvePath(lpFileName, posix, false)) return INVALID_FILE_ATTRIBUTES;
    struct stat st;
    if (::stat(posix.c_str(), &st) != 0) return INVALID_FILE_ATTRIBUTES;
    return S_ISDIR(st.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
}

}  // extern "C"
