// procedures.cpp: the procedure tables and the seams of their loading, lists
// and legs, which come with the procedures' reader.
#include "navdata/procedures.h"

ProcedureTables g_procedures;
SelectedLegSet g_selected_legs;

// The tables live for the module's life inside a 32-bit process.
static_assert(sizeof(ProcedureTables) <= size_t{16} << 20, "the procedure tables must fit in 16 MB");

void LoadSids(std::string_view) {}
void LoadStars(std::string_view) {}
void LoadApproaches(std::string_view) {}
void ListSidRunways(std::string_view) {}
void ListSids(std::string_view, std::string_view) {}
void ListSidTransitions(std::string_view, std::string_view, int) {}
void ListStarRunways(std::string_view) {}
void ListStars(std::string_view, std::string_view) {}
void ListStarTransitions(std::string_view, std::string_view, int) {}
void ListApproaches(std::string_view) {}
void ListApproachTransitions(std::string_view) {}
void BuildSidLegs() {}
void BuildStarLegs() {}
void BuildApproachLegs() {}
int ApproachRowOf(std::string_view) { return 0; }
int ApproachTransitionRowOf(std::string_view, std::string_view) { return 0; }
