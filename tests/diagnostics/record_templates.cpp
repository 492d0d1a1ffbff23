#include "tests/diagnostics/record_templates.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "tests/diagnostics/display_lines.h"

namespace diagnostics {
namespace {

Lines::iterator onlyLine(Lines& dump, const std::string& sought,
                         const std::function<bool(const std::string&)>& fits) {
  const auto found = std::find_if(dump.begin(), dump.end(), fits);
  if (found == dump.end() || std::find_if(found + 1, dump.end(), fits) != dump.end()) {
    throw std::invalid_argument("the dump does not have exactly one line \"" + sought + "\"");
  }
  return found;
}

/// "I OBS length = " of "I OBS length = 1".
std::string labelOf(const std::string& line) {
  const size_t end = line.find(" = ");
  if (end == std::string::npos) throw std::invalid_argument("no label in \"" + line + "\"");
  return line.substr(0, end + 3);
}

}  // namespace

Lines freshElement() {
  return linesOf(R"(
    BinInfoElem display start
    S Binomial Option = "Last Category"
    B Categorical Variable = true
    DV Numeric Values = []
    SV String Values = []
    I OBS length = 1
    BinInfoElem display end
  )");
}

Lines freshSpecification(const Lines& success) {
  return inserted(linesOf(R"(
    PRPValidSpecs display start
    Variable valid specifications are not defined
    S Model Type = "One Sample"
    IV Vector of Test Variable indices = []
    Test Variable Vector Info Elements display start
    Test Variable Vector Info Elements display end
    IV Second Vector of Test Variable indices = []
    Second Variable Vector Info Elements display start
    Second Variable Vector Info Elements display end
    D Test Value = 0.5
    B Flag for Ordered Pair option = false
    I Group Variable Index = -1
    Group Info Element not defined
    B Scope Analysis = true
    B User Missing Included = false
    Success Info Element display start
    Success Info Element display end
    B Ignore Case indicator = false
    B Print Upper Case indicator = true
    B Print Category Order = true
    D Confidence Interval Level as percent = 95
    BV Test Type Option flags = []
    BV CI Type Option flags = []
    PRPValidSpecs display end
  )"),
                  "Success Info Element display start", success);
}

Lines freshAnalysis() {
  return linesOf(R"(
    PRPAlgorithm display start
    B Initial data pass indicator = true
    Weight variable is not defined
    B Split file indicator = false
    B Splits as Rows indicator = false
    B Good Data indicator = true
    B Complete Data indicator = true
    I Number of all cases = 0
    I Number of valid cases = 0
    I Number of invalid cases = 0
    D Weighted number of all cases = 0
    D Weighted number of valid cases = 0
    D Weighted number of invalid cases = 0
    D Alpha level = 0.050000000000000044
    D IDF Normal value of adjusted confidence level = 0
    B Need aggregation flag = false
    B Need success aggregation flag = false
    B Need select aggregation flag = false
    B Bootstrapping flag = false
    B Multiple Imputation flag = false
    I Pooling Variable Index = -1
    I Pooling Sample Index = 0
    User Split Indices are not defined
    PRPAlgorithm display end
  )");
}

Lines freshCategories() {
  return linesOf(R"(
    VarCatInfo display start
    DV Numeric Categorical Values = []
    IV Category Counts = []
    I Total Category Count = 0
    DV Weighted Category Counts = []
    D Weighted Total Category Count = 0
    B Has valid value flag = false
    D Minimum numeric value = missing
    D Maximum numeric value = missing
    D Middle point = missing
    S Minimum string value = ""
    S Maximum string value = ""
    VarCatInfo display end
  )");
}

Lines freshOneSampleRecord() {
  return linesOf(R"(
    PropZOneSamp display start
    I Local variable index = -1
    D Number of successes = 0
    D Number of failures = 0
    D Number of trials = 0
    D Population proportion = missing
    D Estimated difference = missing
    D _aseDiff0 = missing
    D _aseDiff1 = missing
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZOneSamp display end
  )");
}

Lines freshPairedRecord() {
  return linesOf(R"(
    PropZPairSamp display start
    I Variable pair index = -1
    I First local variable index = -1
    I Second local variable index = -1
    D _n11 = 0
    D _n10 = 0
    D _n01 = 0
    D _n00 = 0
    D _n1p = 0
    D _np1 = 0
    D _n0p = 0
    D _np0 = 0
    D Number of observations = 0
    D _p11 = missing
    D _p10 = missing
    D _p01 = missing
    D _p00 = missing
    D Proportion for the first measurement = missing
    D Proportion for the second measurement = missing
    D Estimated difference = missing
    D Asymtotic standard error for the first proportion = missing
    D Asymtotic standard error for the second proportion = missing
    D _aseDiff0 = missing
    D _aseDiff1 = missing
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZPairSamp display end
  )");
}

Lines freshIndependentRecord() {
  return linesOf(R"(
    PropZIndSamp display start
    I Local variable index = -1
    D Number of successes for group 1 = 0
    D Number of failures for group 1 = 0
    D Number of trials for group 1 = 0
    D Number of successes for group 2 = 0
    D Number of failures for group 2 = 0
    D Number of trials for group 2 = 0
    D Number of observations = 0
    D Population proportion for group 1 = missing
    D Population proportion for group 2 = missing
    D Estimated difference = missing
    D Asymtotic standard error for the first proportion = missing
    D Asymtotic standard error for the second proportion = missing
    D _aseDiff0 = missing
    D _aseDiff1 = missing
    B Good Data indicator = true
    B Complete Data indicator = true
    PropZIndSamp display end
  )");
}

Lines with(Lines dump, const std::string& block) {
  for (const std::string& line : linesOf(block)) {
    const std::string label = labelOf(line);
    *onlyLine(dump, label, [&](const std::string& old) { return old.starts_with(label); }) = line;
  }
  return dump;
}

Lines replaced(Lines dump, const std::string& line, const Lines& others) {
  dump = inserted(std::move(dump), line, others);
  dump.erase(std::find(dump.begin(), dump.end(), line));
  return dump;
}

Lines inserted(Lines dump, const std::string& line, const Lines& more) {
  const auto place =
      onlyLine(dump, line, [&](const std::string& candidate) { return candidate == line; });
  dump.insert(place + 1, more.begin(), more.end());
  return dump;
}

Lines withGroupElement(const Lines& specification, const Lines& element) {
  return replaced(specification, "Group Info Element not defined",
                  joined(joined({"Group Info Element display start"}, element),
                         {"Group Info Element display end"}));
}

Lines withRecords(Lines analysis, const Lines& records) {
  analysis.insert(analysis.end() - 1, records.begin(), records.end());
  return analysis;
}

Lines joined(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace diagnostics
