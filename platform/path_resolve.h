// path_resolve.h: turning the module's Windows paths into POSIX ones.
//
// The module builds paths as RootFolder + "\orb\navdata\navs.txt"; data
// suppliers ship files named "NAVS.TXT" or "Navs.txt". Windows finds them all;
// here every component is matched without regard to case, as Windows does.
#pragma once

#include <string>

namespace platform {

// Resolves an existing path; for a missing last component (a file about to
// be written) keeps the name as given under the resolved folder. Returns false
// when a folder on the way does not exist.
bool ResolvePath(const char* windows_path, std::string& posix_path, bool last_may_be_missing);

// Case-blind equality of two names, as Windows compares file and module names.
bool EqualNoCase(const char* a, const char* b);

// Case-blind match of a Windows wildcard pattern ("*.*", "*.RTE", "a?c").
bool WildcardMatch(const char* pattern, const char* name);

}  // namespace platform
