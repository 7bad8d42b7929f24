// gps_data_block.h: the layout of the simulator's "FS2002 GPS DATA" block,
// as far as the module reads it: the block's length in its first word, the
// count of waypoints in word 42 and, in word 43, the address of an array of
// 64-byte waypoint records. On the 32-bit simulator the address is one word;
// a 64-bit host puts a pointer-wide address at the same offset, and the
// block is as much longer.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr char kGpsDataBlockName[] = "FS2002 GPS DATA";
constexpr size_t kGpsCountOffset = 42 * 4;                  // word 42: waypoints
constexpr size_t kGpsArrayOffset = 43 * 4;                  // word 43: the array's address
constexpr size_t kGpsBlockMinimum = kGpsArrayOffset + sizeof(void*);  // 176 on the simulator
constexpr size_t kGpsWaypointSize = 64;                     // bytes of one waypoint record
constexpr size_t kGpsLatitudeOffset = 12;                   // int32: value / 40,007,000 x 360
constexpr size_t kGpsLongitudeOffset = 16;                  // int64: value x 360 / 2^64
constexpr size_t kGpsIdentOffset = 56;                      // text, up to the record's end
constexpr double kGpsLatitudeUnits = 40007000.0;            // one turn of latitude
