#include "tests/workbench/parser/case_file.h"

#include <fstream>
#include <stdexcept>

namespace parser_tests {

std::vector<TextCase> readCases(const std::string& fileName) {
  std::ifstream file(std::string(PARSER_CASES) + '/' + fileName);
  if (!file) throw std::runtime_error("cannot read the cases in " + fileName);
  std::vector<TextCase> cases;
  bool inInput = false;
  for (std::string line; std::getline(file, line);) {
    if (line.compare(0, 4, "=== ") == 0) {
      if (inInput) throw std::runtime_error(cases.back().name + " has no expectation");
      cases.push_back({line.substr(4), "", ""});
      inInput = true;
    } else if (cases.empty()) {
      if (line.compare(0, 2, "##") != 0) throw std::runtime_error("not a remark: " + line);
    } else if (line == "---" && inInput) {
      inInput = false;
    } else {
      std::string& part = inInput ? cases.back().input : cases.back().expected;
      part += (part.empty() ? "" : "\n") + line;
    }
  }
  if (cases.empty() || inInput) throw std::runtime_error(fileName + " ends too early");
  return cases;
}

}  // namespace parser_tests
