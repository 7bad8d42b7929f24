// airport_extras.h: what apt_additional_info.txt and the parking file add to
// an airport (right-hand circuits, the parking position). Still to come; the
// airport setter already calls them at the right moment.
#pragma once

#include <string_view>

// The parking position of the airport (every SetAirport mode but 2).
void LoadParkingPosition(std::string_view ident);
// RightPattern of InfoAirport's runways from apt_additional_info.txt.
void ReadRightPatterns(std::string_view ident);
// The destination's tower view (position from apt_additional_info.txt or the
// airport's own), set through FSUIPC once a flight.
void SetTowerView();
