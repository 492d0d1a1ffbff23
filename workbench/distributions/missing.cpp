#include <limits>

#include "host/distributions.h"

double MCMV::Missing() { return std::numeric_limits<double>::lowest(); }
