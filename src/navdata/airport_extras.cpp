// airport_extras.cpp: parking and circuit data are still to come; without
// them no runway has a right-hand circuit and no parking position is known.
#include "navdata/airport_extras.h"

void LoadParkingPosition(std::string_view) {}
void ReadRightPatterns(std::string_view) {}

void SetTowerView() {}
