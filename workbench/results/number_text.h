/// Numbers as a reader sees them.
#pragma once

#include <string>

namespace workbench {

/// With that many decimals, shifted by `shift` places (2: in percent). Rounded as the decimal form
/// suggests, halves away from zero: 0.0625 reads 0.063, and 0.2845 reads 0.285 although the double
/// lies below it. Never "-0". The value has to be finite.
std::string fixedText(double value, int decimals, int shift = 0);

/// With an exponent, for numbers that decimals cannot show; that many digits after the point.
std::string exponentText(double value, int decimals);

/// A count: a whole number without decimals.
std::string countText(double value);

/// A p value: three decimals, or `decimals` when these are more; "<0.001" when it is below what
/// they can show, 0 too.
std::string probabilityText(double value, int decimals = 3);

/// Decimals that leave a number two significant digits: at least `fewest`, at most `most`.
int decimalsFor(double value, int fewest, int most);

/// True for what is a number at all: neither system-missing, NaN nor infinite.
bool isPlainNumber(double value);

}  // namespace workbench
