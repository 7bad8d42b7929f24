// cdu_keys.cpp: lookups over the generated key table.
#include "cdu_keys.h"

#include <cctype>
#include <cstring>
#include <vector>

namespace orbsim {
namespace {
constexpr CduKey kKeys[] = {
#include "orbsim_cdu_keys.inc"
};

bool SameKeyName(const char* table_name, const std::string& asked) {
    size_t n = std::strlen(table_name);
    if (n != asked.size()) return false;
    for (size_t i = 0; i < n; ++i) {
        char a = static_cast<char>(std::toupper(static_cast<unsigned char>(asked[i])));
        if (a == ' ') a = '_';
        if (a != table_name[i]) return false;
    }
    return true;
}
}  // namespace

const CduKey* FindKeyByName(const std::string& gauge, const std::string& name) {
    for (const CduKey& key : kKeys)
        if (gauge == key.gauge && SameKeyName(key.name, name)) return &key;
    return nullptr;
}

const CduKey* FindKeyForCharacter(const std::string& gauge, char c) {
    char wanted = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (const CduKey& key : kKeys)
        if (gauge == key.gauge && key.character != 0 && key.character == wanted) return &key;
    return nullptr;
}

std::vector<const CduKey*> KeysOfGauge(const std::string& gauge) {
    std::vector<const CduKey*> keys;
    for (const CduKey& key : kKeys)
        if (gauge == key.gauge) keys.push_back(&key);
    return keys;
}

}  // namespace orbsim
