// resource_script.h: the Windows resource script that lists the bitmaps.
//
// src/resources/resources.rc is the one list of resource id and BMP file that
// both builds follow: windres compiles it into the DLL, and the Linux packer
// reads it to fill the ELF resource section. make_bitmaps writes it; this
// header reads and writes its one form of line:
//
//     4096 BITMAP "bitmaps/smiths_fms_0.bmp"
//
// with "//" comments and blank lines between. Header-only, shared by the
// tools and the tests.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace resource_script {

constexpr size_t kMaxLineBytes = 1024;   // a line of ours is under 80; longer is not ours
constexpr uint32_t kMaxResourceId = 0xFFFF;  // Windows resource ids are 16 bits

struct Entry {
    uint32_t resource_id = 0;  // the element's resource_id
    std::string path;          // BMP file, relative to the script's folder
    int line = 0;              // 1-based line of the script
};

// Parses a script; on a bad line gives false and "LINE: reason" in error.
inline bool Parse(std::string_view text, std::vector<Entry>& entries, std::string& error) {
    entries.clear();
    int line_number = 0;
    size_t at = 0;
    while (at < text.size()) {
        size_t end = text.find('\n', at);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(at, end - at);
        at = end + 1;
        ++line_number;
        auto fail = [&](const char* why) {
            error = std::to_string(line_number) + ": " + why;
            entries.clear();
            return false;
        };
        if (line.size() > kMaxLineBytes) return fail("line too long");
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        auto skip_blanks = [&](size_t i) {
            while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
            return i;
        };
        size_t i = skip_blanks(0);
        if (i == line.size() || line.substr(i, 2) == "//") continue;

        // Resource id: decimal or 0x hex.
        size_t id_start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t') ++i;
        std::string id_text(line.substr(id_start, i - id_start));
        char* id_end = nullptr;
        unsigned long id = std::strtoul(id_text.c_str(), &id_end, 0);
        if (id_text.empty() || *id_end != '\0' || id_text[0] == '-' || id_text[0] == '+' || id == 0 ||
            id > kMaxResourceId)
            return fail("expected a resource id from 1 to 65535");

        i = skip_blanks(i);
        if (line.substr(i, 6) != "BITMAP") return fail("expected BITMAP after the id");
        i = skip_blanks(i + 6);
        if (i >= line.size() || line[i] != '"') return fail("expected a quoted file name");
        size_t close = line.find('"', i + 1);
        if (close == std::string_view::npos || close == i + 1) return fail("unterminated or empty file name");
        std::string path(line.substr(i + 1, close - i - 1));
        if (path.find('\\') != std::string::npos || path.find("..") != std::string::npos || path[0] == '/')
            return fail("file name must be a plain relative path with / separators");
        i = skip_blanks(close + 1);
        if (i != line.size() && line.substr(i, 2) != "//") return fail("unexpected text after the file name");
        for (const Entry& e : entries)
            if (e.resource_id == id) return fail("resource id listed twice");
        entries.push_back({static_cast<uint32_t>(id), std::move(path), line_number});
    }
    return true;
}

// Writes a script for the entries, in their order, under a comment header.
inline std::string Write(const std::vector<Entry>& entries, std::string_view header_comment) {
    std::string out;
    size_t at = 0;
    while (at < header_comment.size()) {
        size_t end = header_comment.find('\n', at);
        if (end == std::string_view::npos) end = header_comment.size();
        out += "// ";
        out += header_comment.substr(at, end - at);
        out += '\n';
        at = end + 1;
    }
    out += '\n';
    for (const Entry& e : entries) {
        out += std::to_string(e.resource_id);
        out += " BITMAP \"";
        out += e.path;
        out += "\"\n";
    }
    return out;
}

}  // namespace resource_script
