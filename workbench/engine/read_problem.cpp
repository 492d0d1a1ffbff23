#include "workbench/engine/read_problem.h"

#include <fmt/format.h>

#include <string_view>

namespace workbench {
namespace {

/// The first line of an engine message, without the kind of error before the colon.
std::string essence(const std::string& engineText) {
  std::string line = engineText.substr(0, engineText.find('\n'));
  const size_t colon = line.find("Error: ");
  if (colon != std::string::npos && colon < 40) line.erase(0, colon + 7);
  return line;
}

bool isA(const std::string& engineText, std::string_view kind) {
  return engineText.compare(0, kind.size(), kind) == 0;
}

}  // namespace

// Only the kind of error at the beginning is looked at: the rest may hold values of the data.
std::string readProblem(const std::string& engineText, const std::string& label) {
  const std::string said = essence(engineText);
  if (isA(engineText, "Out of Memory Error")) {
    return fmt::format(
        "{}: the data do not fit into memory and working folder; set TMPDIR to a folder with more "
        "room ({}).",
        label, said);
  }
  if (isA(engineText, "Permission Error")) {
    return fmt::format("{}: the query may read nothing but the data that were named ({}).", label,
                       said);
  }
  if (isA(engineText, "IO Error")) {
    return fmt::format("{}: cannot be read; it may be gone, damaged or cut off ({}).", label, said);
  }
  return fmt::format("{}: {}", label, said);
}

}  // namespace workbench
