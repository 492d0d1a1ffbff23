/// Where the results go. A file appears whole or not at all.
#pragma once

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace workbench {

/// The output cannot be written: what, where and why.
struct OutputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Throws OutputError unless a file of that name could be made: before any work is done for it.
void checkWritable(const std::string& path);

/// Writes the file under another name in the same folder and renames it when it is complete. Throws
/// OutputError, and then nothing is left behind.
void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write);

/// Writes to standard output. A reader who has closed the pipe ends the writing without an error;
/// anything else that goes wrong throws OutputError.
void writeStandardOutput(const std::function<void(std::ostream&)>& write);

}  // namespace workbench
