// Runs the module against the script of a .case file and compares the transcript with the .expected
// file beside it. With --write it writes that file instead, for review; tests never do.
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/recording/host.h"
#include "tests/recording/output_document.h"
#include "tests/recording/script_text.h"
#include "tests/transcripts/repeated_labels.h"

extern "C" void PROPORTI();

namespace {

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string transcriptOf(const recording::TextTest& test) {
  recording::Host host(test.script);
  std::string ending;
  try {
    PROPORTI();
  } catch (const std::bad_alloc&) {
    ending = "PROPORTI throws bad_alloc\n";
  } catch (const std::runtime_error& error) {
    ending = std::string("PROPORTI throws runtime_error: ") + error.what() + '\n';
  }
  std::string text = host.transcript().text(test.show, test.hide) + ending;
  for (const std::string& name : recording::alive()) text += "still alive: " + name + '\n';
  const int missed = static_cast<int>(test.script.faults.size()) - host.faultsInjected();
  if (missed > 0) text += "faults that never came up: " + std::to_string(missed) + '\n';
  if (test.dumpTables) text += recording::tablesText();
  return withRepeatedLabelsNamed(text);
}

/// Prints the longest common subsequence of lines with what is missing (-) and what is new (+).
void printDifference(const std::vector<std::string>& expected,
                     const std::vector<std::string>& actual) {
  const size_t rows = expected.size();
  const size_t columns = actual.size();
  std::vector<std::vector<size_t>> common(rows + 1, std::vector<size_t>(columns + 1));
  for (size_t i = rows; i-- > 0;) {
    for (size_t j = columns; j-- > 0;) {
      common[i][j] = expected[i] == actual[j] ? common[i + 1][j + 1] + 1
                                              : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  size_t i = 0;
  size_t j = 0;
  while (i < rows || j < columns) {
    if (i < rows && j < columns && expected[i] == actual[j]) {
      std::cout << "  " << expected[i++] << '\n';
      ++j;
    } else if (j == columns || (i < rows && common[i + 1][j] >= common[i][j + 1])) {
      std::cout << "- " << expected[i++] << '\n';
    } else {
      std::cout << "+ " << actual[j++] << '\n';
    }
  }
}

int run(const std::string& casePath, const std::string& expectedPath, bool write) {
  const recording::TextTest test = recording::readTest(contentsOf(casePath));
  const std::string actual = transcriptOf(test);
  if (write) {
    std::ofstream(expectedPath, std::ios::binary) << actual;
    return 0;
  }
  const std::string expected = contentsOf(expectedPath);
  if (expected.empty()) throw std::runtime_error(expectedPath + " is empty and shows nothing");
  if (actual == expected) return 0;
  std::cout << test.title << "\n  expected (-) and actual (+):\n";
  printDifference(linesOf(expected), linesOf(actual));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const bool write = argc == 4 && std::string_view(argv[3]) == "--write";
  if (argc != 3 && !write) {
    std::cerr << "usage: transcript_runner CASE EXPECTED [--write]\n";
    return 2;
  }
  try {
    return run(argv[1], argv[2], write);
  } catch (const std::exception& problem) {
    std::cerr << argv[1] << ": " << problem.what() << '\n';
    return 2;
  }
}
