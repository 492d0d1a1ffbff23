#include "workbench/engine/read_problem.h"

#include <fmt/format.h>

#include <string_view>

namespace workbench {
namespace {

bool has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

/// What stands between two marks; empty when they are not there.
std::string between(const std::string& text, std::string_view before, std::string_view after) {
  const size_t begin = text.find(before);
  if (begin == std::string::npos) return {};
  const size_t from = begin + before.size();
  const size_t end = text.find(after, from);
  return end == std::string::npos ? std::string() : text.substr(from, end - from);
}

std::string placeOf(const std::string& text, const std::string& label) {
  const std::string line = between(text, "CSV Error on Line: ", "\n");
  return line.empty() ? label : fmt::format("{}, line {}", label, line);
}

ReadProblem conversionProblem(const std::string& text, const std::string& place) {
  ReadProblem problem;
  problem.conversion = true;
  problem.column = between(text, "converting column \"", "\". ");
  problem.value = between(text, "onvert string \"", "\" to ");
  if (problem.value.empty()) problem.value = between(text, "onvert string '", "' to ");
  problem.text = problem.column.empty()
                     ? fmt::format("{}: {}", place, essence(text))
                     : fmt::format("{}: the value '{}' of {} is not of the type of the others.",
                                   place, problem.value, problem.column);
  return problem;
}

std::string raggedText(const std::string& text, const std::string& place) {
  const std::string expected = between(text, "Expected Number of Columns: ", " Found: ");
  const std::string found = between(text, " Found: ", "\n");
  return fmt::format(
      "{}: {} value{} where the header has {}. Give every line as many values as the "
      "header has names; a value that holds the separator stands in double quotes.",
      place, found, found == "1" ? "" : "s", expected);
}

}  // namespace

std::string essence(const std::string& engineText) {
  std::string line = engineText.substr(0, engineText.find('\n'));
  const size_t colon = line.find("Error: ");
  if (colon != std::string::npos && colon < 40) line.erase(0, colon + 7);
  return line;
}

ReadProblem readProblem(const std::string& engineText, const std::string& label) {
  const std::string place = placeOf(engineText, label);
  ReadProblem problem;
  if (has(engineText, "Expected Number of Columns: ")) {
    problem.text = raggedText(engineText, place);
  } else if (has(engineText, "nvalid unicode") || has(engineText, "not utf-8 encoded")) {
    problem.text = fmt::format(
        "{}: the text is not UTF-8; convert it, for example with iconv -f "
        "LATIN1 -t UTF-8.",
        place);
  } else if (has(engineText, "unterminated quote")) {
    problem.text = fmt::format("{}: a double quote is opened and never closed.", place);
  } else if (has(engineText, "Conversion Error") || has(engineText, "onvert string")) {
    problem = conversionProblem(engineText, place);
  } else if (has(engineText, "Maximum line size")) {
    problem.text = fmt::format("{}: the line is too long to be a row of a table.", place);
  } else if (has(engineText, "Out of Memory")) {
    problem.text = fmt::format(
        "{}: the data do not fit into memory and working folder; set TMPDIR "
        "to a folder with more room ({}).",
        label, essence(engineText));
  } else if (has(engineText, "No files found") || has(engineText, "Cannot open file") ||
             has(engineText, "/**/")) {  // the engine takes what is not there for a folder
    problem.text =
        fmt::format("{}: cannot be opened any more; it was there when the run began.", label);
  } else if (has(engineText, "disabled by configuration") ||
             has(engineText, "configuration has been locked")) {
    problem.text = fmt::format("{}: the query may read nothing but the data that were named ({}).",
                               label, essence(engineText));
  } else if (place != label) {
    problem.text = fmt::format("{}: the line cannot be read as a row of the table.", place);
  } else {
    problem.text = fmt::format("{}: {}", label, essence(engineText));
  }
  return problem;
}

}  // namespace workbench
