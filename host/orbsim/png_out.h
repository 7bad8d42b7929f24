// png_out.h: a gauge's last frame as a picture: its layers composed in chain
// order (bezel, surface, lamps), hidden layers left out, written as PNG.
#pragma once

#include "gauge_store.h"

#include <string>

namespace orbsim {

// The composed frame: premultiplied ARGB, `width` pixels a row.
Bitmap ComposeInstance(const GaugeInstance& inst);

// Writes straight RGBA PNG; the file appears whole or not at all. Parent
// folders are made. On failure returns false with a reason.
bool WritePng(const std::string& path, const Bitmap& picture, std::string& error);

// The PNG file's bytes in memory (straight RGBA), zlib level 0 to 9 (-1 its
// default). False
// for a picture without pixels.
bool EncodePng(const Bitmap& picture, int compression_level, std::string& out);

// mkdir -p; false with a reason when a folder cannot be made.
bool MakeFolders(const std::string& folder, std::string& error);

}  // namespace orbsim
