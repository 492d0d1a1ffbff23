/// Test cases in text files: a line "=== name", the input, a line "---", what is expected. Lines
/// that begin with "##" stand for the file's own remarks before the first case.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace parser_tests {

struct TextCase {
  std::string name;
  std::string input;     ///< without the line break at its end
  std::string expected;  ///< likewise
};

/// How a failed test shows its case.
inline void PrintTo(const TextCase& textCase, std::ostream* out) { *out << textCase.name; }

/// The cases of a file in the folder of cases. Throws std::runtime_error when it cannot be read or
/// has another form.
std::vector<TextCase> readCases(const std::string& fileName);

}  // namespace parser_tests
