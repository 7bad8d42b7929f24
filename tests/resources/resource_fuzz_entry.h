// resource_fuzz_entry.h: one entry that feeds bytes to every reader of the
// module's resources, shared by the libFuzzer target and the unit tests.
//
// The first byte picks the reader, the rest is its input: an ELF file to
// search for the resource section, a resource section, a BMP file, or a
// resource script. Each must give an answer, never a crash or a read past
// the bytes.
#pragma once

#include "make_bitmaps/resource_script.h"
#include "resource_reader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline int ResourceFuzzEntry(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const resource_reader::Span input{data + 1, size - 1};
    std::string error;
    switch (data[0] % 4) {
    case 0: {
        resource_reader::Span section;
        if (resource_reader::FindElfSection(input, kResourceSectionName, section, error)) {
            std::vector<ResourceBlobEntry> entries;
            resource_reader::ParseResourceBlob(section, entries, error);
        }
        break;
    }
    case 1: {
        std::vector<ResourceBlobEntry> entries;
        if (resource_reader::ParseResourceBlob(input, entries, error)) {
            for (const ResourceBlobEntry& e : entries) {
                resource_reader::Bitmap bitmap;
                resource_reader::DecodeBmp(resource_reader::FindResource(input, entries, e.resource_id), bitmap,
                                           error);
            }
        }
        break;
    }
    case 2: {
        resource_reader::Bitmap bitmap;
        resource_reader::DecodeBmp(input, bitmap, error);
        break;
    }
    default: {
        std::vector<resource_script::Entry> entries;
        resource_script::Parse(std::string_view(reinterpret_cast<const char*>(input.data), input.size), entries,
                               error);
        break;
    }
    }
    return 0;
}
