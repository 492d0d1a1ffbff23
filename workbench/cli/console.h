/// Standard error: the one place that writes there.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// Writes lines for the reader, each shown so that it is safe for a terminal. A status line gives
/// way to them.
void tell(std::string_view text);

/// The same with the program's name in front.
void complain(std::string_view text);

/// Shows a text of the program's own, without data in it, in place of the previous status line.
void showStatus(std::string_view text);

/// Removes the status line, if there is one.
void clearStatus();

/// As `complain`, for a program that ends at once: never waits, neither for a lock nor for a reader
/// of standard error who has stopped reading.
void complainLast(std::string_view text) noexcept;

}  // namespace workbench
