// cdu_keys.h: the CDU keys as a pilot names them, for `key` and `type`.
#pragma once

#include <string>
#include <vector>

namespace orbsim {

struct CduKey {
    const char* gauge;                  // "SMITHS_FMS"
    const char* name;                   // "LSK2L", "EXEC", "A"
    int x, y, w, h;                     // bezel pixels
    int character;                      // what it types; 0 for function keys
};

// The key of that name on the gauge (case-blind, a blank for "_"), or null.
const CduKey* FindKeyByName(const std::string& gauge, const std::string& name);
// The key that types the character on the gauge, or null.
const CduKey* FindKeyForCharacter(const std::string& gauge, char c);
// Every key of the gauge, in table order (none for a gauge without keys).
std::vector<const CduKey*> KeysOfGauge(const std::string& gauge);

}  // namespace orbsim
