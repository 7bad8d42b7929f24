// decimal_number.h: the one number form orbnav reads, in data files and on
// its command line alike.
#pragma once

#include <string_view>

// A plain decimal number: an optional sign, digits with at most one point,
// at least one digit. Everything else that strtod would take (exponents, hex
// floats, inf, nan, blanks) is refused, since no data file holds it and
// taking it would turn a damaged column into a wrong value. The value must
// also be finite (a run of 400 digits is not).
bool ParseDecimal(std::string_view text, double& value);
