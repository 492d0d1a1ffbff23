#include "tests/diagnostics/display_lines.h"

#include <sstream>

namespace diagnostics {
namespace {

const std::string kDisplay = "ACACommonDisplay.Display";
const std::string kPlain = "BP_ToFront";

/// What stands between the parentheses of a recorded call.
std::string argumentsOf(const recording::Entry& entry) {
  const size_t open = entry.text.find('(');
  return entry.text.substr(open + 1, entry.text.rfind(')') - open - 1);
}

/// A text without the quotes around it.
std::string unquoted(const std::string& text) { return text.substr(1, text.size() - 2); }

}  // namespace

const char* const kBanner = R"(
  ****************************************************\n
  * This text output is for debugging purposes only. *\n
  * This will not be part of the final release.      *\n
  ****************************************************
)";

std::vector<std::string> displayLines(const recording::Transcript& transcript) {
  std::vector<std::string> lines;
  for (const recording::Entry& entry : transcript.entries()) {
    if (entry.operation == kPlain) {
      lines.push_back(unquoted(argumentsOf(entry)));
    } else if (entry.operation.rfind(kDisplay, 0) == 0) {
      const std::string arguments = argumentsOf(entry);
      const size_t end = arguments.find('"', 1);
      lines.push_back(entry.operation.substr(kDisplay.size()) + " " + arguments.substr(1, end - 1) +
                      " = " + arguments.substr(end + 3));
    }
  }
  return lines;
}

std::vector<std::string> linesOf(const std::string& block) {
  std::vector<std::string> lines;
  std::istringstream stream(block);
  for (std::string line; std::getline(stream, line);) {
    const size_t start = line.find_first_not_of(' ');
    if (start != std::string::npos) lines.push_back(line.substr(start));
  }
  return lines;
}

}  // namespace diagnostics
