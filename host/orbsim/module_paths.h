// module_paths.h: the module names files as Windows does, in any case and
// with "\\"; orbsim finds them on a case-sensitive file system.
#pragma once

#include <dirent.h>
#include <strings.h>

#include <string>

namespace orbsim {

// The path with "/" for "\\" and each part matched against its folder's
// entries without case; a part not found is kept as written.
inline std::string PathIgnoringCase(const std::string& windows_path) {
    std::string path = windows_path;
    for (char& c : path)
        if (c == '\\') c = '/';
    if (path.empty()) return {};
    std::string out = path[0] == '/' ? "/" : "";
    size_t start = path[0] == '/' ? 1 : 0;
    while (start < path.size()) {
        size_t slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        std::string part = path.substr(start, slash - start);
        start = slash + 1;
        if (part.empty()) continue;
        std::string found = part;
        if (DIR* dir = opendir(out.empty() ? "." : out.c_str())) {
            while (dirent* entry = readdir(dir))
                if (strcasecmp(entry->d_name, part.c_str()) == 0) {
                    found = entry->d_name;
                    break;
                }
            closedir(dir);
        }
        if (!out.empty() && out.back() != '/') out += '/';
        out += found;
    }
    return out;
}

}  // namespace orbsim
