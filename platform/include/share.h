// share.h stand-in: the sharing modes of _fsopen, and _fsopen itself, which
// the platform layer implements with path resolution for `\`-separated names.
#pragma once
#include <cstdio>

#define _SH_DENYRW 0x10
#define _SH_DENYWR 0x20
#define _SH_DENYRD 0x30
#define _SH_DENYNO 0x40

extern "C" FILE* _fsopen(const char* filename, const char* mode, int shflag);
