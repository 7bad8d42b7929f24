// procedures.h: the terminal procedures of an airport (SIDs, STARs,
// approaches), read when an airport detail slot is filled. Their loading is
// still to come; the detail loader already calls them at the right moment.
#pragma once

#include <string_view>

// Read the airport's section into the origin slot (SIDs) or the destination
// slot (STARs, approaches).
void LoadSids(std::string_view ident);
void LoadStars(std::string_view ident);
void LoadApproaches(std::string_view ident);

// The row of the destination slot's approach names that holds `approach`,
// and of the chosen approach's transitions that holds `transition`; 0 none.
int ApproachRowOf(std::string_view approach);
int ApproachTransitionRowOf(std::string_view approach, std::string_view transition);
