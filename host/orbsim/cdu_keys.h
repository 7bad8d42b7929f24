// cdu_keys.h: the CDU keys as a pilot names them, for `key` and `type`.
#pragma once

#include <string>

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

}  // namespace orbsim
