// c17_map_pages.h: the navigation page and the map pages of the C-17
// multi-function display, on its 246 x 241 canvas.
//
//   0  NAV       full rose flown on the tuned receiver ("VOR-1", "LOC-1" or
//                "ILS-1"): course needle, deviation, glideslope on an ILS;
//                the receiver's course and DME, the active waypoint's
//                course and distance
//   3  MAP ARC   heading-up expanded arc, own-ship low on the screen
//   4  MAP CTR   heading-up map centred on the aircraft, full compass ring
//   5  MAP PLAN  north-up map round the plan's centre row, the whole plan
//   6  MAP       heading-up map with its range rings labelled and the range
//                written out (the page the map key's form goes through)
//
// Each map page clips its layers to a path of its own. The two working
// values of a screen are the map form's own settings: map_value_a is the
// MapColour index the navaids take (3, green, at start), map_value_b the
// traffic layer's display kind (9 at start). C17_MFCP's two symbol flags add
// what its own switches lack: the left one the intersections, the right one
// the traffic, each on top of the common switches of the family.
#pragma once

#include "display/display_state.h"
#include "display/display_surface.h"
#include "display/nd_map.h"

// [SECTION] Geometry (design pixels)
constexpr int kC17MapCentreX = 123;     // every page's centre column
constexpr int kC17RoseCentreY = 124;    // page 0: the rose
constexpr int kC17RoseRadius = 80;
constexpr int kC17ArcCentreY = 205;     // page 3: own-ship low, the arc above
constexpr int kC17ArcRadius = 165;
constexpr int kC17DiscCentreY = 126;    // pages 4 and 5: the centred disc
constexpr int kC17DiscRadius = 86;
constexpr int kC17RangeCentreY = 172;   // page 6: the outer ring's centre and radius
constexpr int kC17RangeRadius = 130;
constexpr int kC17MapTop = 30;          // the map pages' layers stay between these rows,
constexpr int kC17MapBottom = 212;      // clear of the corner texts
constexpr int kVerticalMarksStyleC17 = 8;

// [SECTION] Range gates of the object layers, nm
constexpr double kC17NavaidMaxRange = 160;
constexpr double kC17AirportMaxRange = 160;
constexpr double kC17FixMaxRange = 160;

// NAV1 flag bit: the receiver has a glideslope (the source reads "ILS-1").
constexpr int kC17GlideslopeFlag = 0x40;

// [SECTION] Rules the pages share with their tests
// Whether a page is one of the map pages (3 to 6).
bool C17PageHasMap(int page);
// The map view of a map page: centre, scale, heading (0 on page 5).
MapView C17MapView(const DisplaySurface& surface, int page);
// The receiver's name on page 0 from its kind and NAV1 flags.
const char* C17NavSourceText(bool is_vor, int nav_flags);
// The working values, read with a fallback for a value out of its set.
int C17NavaidColour(const C17Screen& screen);
int C17TrafficKind(const C17Screen& screen);
// The layers the C-17's switches and its panel's symbol flags turn on.
bool C17ShowsIntersections();
bool C17ShowsTraffic();
// The title of a page, as it stands in the bottom left corner.
const char* C17PageTitle(int page);

// [SECTION] Pages (the surface comes scaled to the design canvas and filled)
void DrawC17Navigation(const DisplaySurface& surface);
// Pages 3 to 6 from the working record's page.
void DrawC17Map(const DisplaySurface& surface, int page);
