// resource_blob.h: how the Linux build of the module carries its bitmaps.
//
// On Windows the bezels and lamps are BITMAP resources of the DLL (see
// resources.rc). A shared object has no resources, so the Linux build puts
// the same BMP files into one read-only ELF section of that name, which a
// host reads from the module file as the simulator reads a DLL's resources.
#pragma once

#include <cstdint>

constexpr const char* kResourceSectionName = ".orb_rsrc";
constexpr char kResourceMagic[8] = {'O', 'R', 'B', 'R', 'S', 'R', 'C', '1'};

// Section layout, little-endian: magic[8], uint32 count, then count entries,
// then the data. Each entry's data is a complete BMP file.
struct ResourceBlobEntry {
    uint32_t resource_id;   // ResourceIdOf(gauge, layer)
    uint32_t offset;        // from the start of the section
    uint32_t size;          // bytes of the BMP file
};
