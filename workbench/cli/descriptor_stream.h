/// Writing to open descriptors.
#pragma once

#include <functional>
#include <ostream>

namespace workbench {

/// Lets `write` write to a descriptor. 0, or what went wrong first (errno); nothing is written
/// after that.
int writeTo(int descriptor, const std::function<void(std::ostream&)>& write);

/// Makes sure that standard input, output and error are open descriptors, though unusable ones, so
/// that no file that is opened later gets what is meant for them.
void holdStandardDescriptors();

}  // namespace workbench
