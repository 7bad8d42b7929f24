// pack_resources.cpp: build step of the Linux module that turns the bitmaps
// listed in resources.rc into one byte array in the ELF section ".orb_rsrc".
//
// The Windows DLL gets its bitmaps from windres; a shared object has no
// resources, so this tool writes a C++ file holding the section's bytes in
// the layout of src/resources/resource_blob.h: magic, count, entries sorted
// by resource id, then the BMP files. Identical files are stored once and
// shared by their entries (the twins' surfaces and bezels). Every BMP is
// decoded first, so a broken bitmap stops the build with its name.
#include "../../host/resource_reader.h"
#include "resource_script.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr const char* kUsage =
    "usage: pack_resources --rc FILE --out FILE\n"
    "\n"
    "Reads the resource script FILE (lines 'ID BITMAP \"path\"', paths relative\n"
    "to its folder) and writes a C++ source holding the resource section of the\n"
    "Linux module. The output is written whole or not at all.\n";

bool ReadFile(const std::string& path, std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) return false;
    char chunk[65536];
    size_t got;
    bytes.clear();
    while ((got = std::fread(chunk, 1, sizeof(chunk), f)) > 0) bytes.append(chunk, got);
    bool ok = std::ferror(f) == 0;
    std::fclose(f);
    return ok;
}

void PutLe32(std::string& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

// One string literal, cut into lines: printable bytes as themselves, the rest
// as three-digit octal escapes so that no escape can swallow what follows.
void AppendLiteral(std::string& out, const std::string& bytes) {
    constexpr size_t kBytesPerLine = 96;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i % kBytesPerLine == 0) out += i == 0 ? "    \"" : "\"\n    \"";
        unsigned char c = static_cast<unsigned char>(bytes[i]);
        if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\' && c != '?') {
            out.push_back(static_cast<char>(c));
        } else {
            char esc[5];
            std::snprintf(esc, sizeof(esc), "\\%03o", c);
            out += esc;
        }
    }
    out += "\"";
}

}  // namespace

int main(int argc, char** argv) {
    std::string rc_path, out_path;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if ((arg == "--rc" || arg == "--out") && i + 1 < argc) {
            (arg == "--rc" ? rc_path : out_path) = argv[++i];
            continue;
        }
        std::fprintf(stderr, "pack_resources: unknown argument '%s'\n", arg.c_str());
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (rc_path.empty() || out_path.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }

    // 1. The list of resources.
    std::string script;
    if (!ReadFile(rc_path, script)) {
        std::fprintf(stderr, "pack_resources: %s: cannot read\n", rc_path.c_str());
        return 1;
    }
    std::vector<resource_script::Entry> entries;
    std::string error;
    if (!resource_script::Parse(script, entries, error)) {
        std::fprintf(stderr, "pack_resources: %s:%s\n", rc_path.c_str(), error.c_str());
        return 1;
    }
    if (entries.empty()) {
        std::fprintf(stderr, "pack_resources: %s: lists no bitmap\n", rc_path.c_str());
        return 1;
    }
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return a.resource_id < b.resource_id; });
    std::string folder = rc_path.find('/') == std::string::npos ? "." : rc_path.substr(0, rc_path.rfind('/'));

    // 2. Each file once, checked as a bitmap.
    std::vector<std::string> files;             // distinct contents, in order of first use
    std::map<std::string, uint32_t> file_index; // content -> index in files
    std::vector<uint32_t> entry_file;           // per entry, its index in files
    for (const auto& e : entries) {
        std::string path = folder + "/" + e.path;
        std::string bytes;
        if (!ReadFile(path, bytes)) {
            std::fprintf(stderr, "pack_resources: %s:%d: cannot read %s\n", rc_path.c_str(), e.line, path.c_str());
            return 1;
        }
        resource_reader::Bitmap bitmap;
        if (!resource_reader::DecodeBmp({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, bitmap,
                                        error)) {
            std::fprintf(stderr, "pack_resources: %s:%d: %s: %s\n", rc_path.c_str(), e.line, path.c_str(),
                         error.c_str());
            return 1;
        }
        auto [it, added] = file_index.emplace(bytes, static_cast<uint32_t>(files.size()));
        if (added) files.push_back(std::move(bytes));
        entry_file.push_back(it->second);
    }

    // 3. The section: header, entries, data.
    std::string blob(kResourceMagic, sizeof(kResourceMagic));
    PutLe32(blob, static_cast<uint32_t>(entries.size()));
    uint64_t data_start = blob.size() + entries.size() * sizeof(ResourceBlobEntry);
    std::vector<uint32_t> file_offset;
    uint64_t at = data_start;
    for (const std::string& f : files) {
        file_offset.push_back(static_cast<uint32_t>(at));
        at += f.size();
    }
    if (at > UINT32_MAX) {
        std::fprintf(stderr, "pack_resources: %s: bitmaps exceed 4 GiB\n", rc_path.c_str());
        return 1;
    }
    for (size_t i = 0; i < entries.size(); ++i) {
        PutLe32(blob, entries[i].resource_id);
        PutLe32(blob, file_offset[entry_file[i]]);
        PutLe32(blob, static_cast<uint32_t>(files[entry_file[i]].size()));
    }
    for (const std::string& f : files) blob += f;

    // 4. The source, written beside the target and renamed into place.
    std::string source =
        "// Generated by pack_resources from resources.rc; do not edit.\n"
        "// The module's bitmaps in the layout of resources/resource_blob.h.\n";
    source += "__attribute__((section(\".orb_rsrc\"), used))\n";
    source += "static const unsigned char orb_resource_section[" + std::to_string(blob.size() + 1) + "] =\n";
    AppendLiteral(source, blob);
    source += ";\n";

    std::string temp_path = out_path + ".tmp";
    std::FILE* out = std::fopen(temp_path.c_str(), "wb");
    if (out == nullptr) {
        std::fprintf(stderr, "pack_resources: %s: cannot write\n", temp_path.c_str());
        return 1;
    }
    bool ok = std::fwrite(source.data(), 1, source.size(), out) == source.size();
    ok = std::fclose(out) == 0 && ok;
    if (!ok || std::rename(temp_path.c_str(), out_path.c_str()) != 0) {
        std::remove(temp_path.c_str());
        std::fprintf(stderr, "pack_resources: %s: cannot write\n", out_path.c_str());
        return 1;
    }
    std::printf("pack_resources: %zu bitmaps (%zu distinct), %zu bytes\n", entries.size(), files.size(),
                blob.size());
    return 0;
}
