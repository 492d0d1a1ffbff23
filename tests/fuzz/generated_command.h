/// Commands put together from their parts, on the variables x, y, g (numbers) and s (texts).
#pragma once

#include <string>

#include "tests/fuzz/target.h"

namespace fuzz {

std::string commandFrom(Choices& choices);

}  // namespace fuzz
