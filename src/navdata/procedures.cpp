// procedures.cpp: terminal procedure loading is still to come; a slot keeps
// its runways and has no procedures until then.
#include "navdata/procedures.h"

void LoadSids(std::string_view) {}
void LoadStars(std::string_view) {}
void LoadApproaches(std::string_view) {}
int ApproachRowOf(std::string_view) { return 0; }
int ApproachTransitionRowOf(std::string_view, std::string_view) { return 0; }
