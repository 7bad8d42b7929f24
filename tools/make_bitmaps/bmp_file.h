// bmp_file.h: turns a drawn canvas into the BMP file a layer carries.
//
// The bitmaps are Windows 24-bit uncompressed BMPs. Every layer but the
// drawing surfaces has the transparency flag, with which the simulator keys
// out pure black (0,0,0); alpha channels are not read. So a canvas pixel less
// than half covered becomes pure black (transparent), and a covered pixel
// keeps its colour but is lifted to at least (8,8,8): the simulator may
// reduce a bitmap to 16 bits a pixel, where anything darker would turn into
// the transparent key and punch a hole in the bezel.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

constexpr uint8_t kOpaqueFloor = 8;  // darkest channel value that survives a 5-6-5 reduction

// Encodes an ARGB32 cairo image surface. With `pure_black` every pixel is
// written as (0,0,0) whatever was drawn (surfaces, backings).
std::vector<uint8_t> EncodeBmp(cairo_surface_t* canvas, bool pure_black);
