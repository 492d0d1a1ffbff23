/// Files and folders that must be gone when the program ends, however it ends.
///
/// Making one and noting it, and removing or keeping it and forgetting it, are one step each: a
/// signal finds all that is there, and nothing else.
#pragma once

#include <functional>
#include <string>

namespace workbench {

/// Makes a folder of its own, readable by its owner only, whose path begins with `stem`. Throws
/// std::system_error.
std::string makeTemporaryFolder(const std::string& stem);

/// Makes a file of its own, readable by its owner only, whose path begins with `stem`.
struct TemporaryDescriptor {
  std::string path;
  int descriptor;  ///< open for reading and writing; the caller closes it
};
/// Throws std::system_error.
TemporaryDescriptor makeTemporaryFile(const std::string& stem);

/// Removes a file or folder that was made here, with all that it holds. A path that is not there
/// (any more) changes nothing.
void removeTemporary(const std::string& path) noexcept;

/// Renames a temporary file to one that stays. 0, or what went wrong (errno); then it is temporary
/// still.
int keepTemporary(const std::string& path, const std::string& as);

/// Calls `step` so that removeTemporariesAndExit waits until it is done.
void runToItsEnd(const std::function<void()>& step);

/// Removes all that is there, tells so by `farewell`, and ends the program at once. Other threads
/// may be doing anything but wait for the caller.
[[noreturn]] void removeTemporariesAndExit(int status, const std::function<void()>& farewell);

}  // namespace workbench
