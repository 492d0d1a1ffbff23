#include "workbench/render/csv_subject.h"

#include <string_view>
#include <vector>

#include "workbench/render/csv_fields.h"

namespace workbench {
namespace {

/// The texts of several values with bars between them; a bar within a value is doubled.
std::string barred(const std::vector<LabelValue>& values) {
  std::string result;
  for (const LabelValue& value : values) {
    if (&value != &values.front()) result += '|';
    for (const char c : value.shown) result.append(c == '|' ? 2 : 1, c);
  }
  return result;
}

std::string variableName(const LabelData& label, size_t position) {
  return position < label.variables.size() ? label.variables[position] : "";
}

}  // namespace

std::string csvCondition(const LabelData& label) {
  std::string text = std::string(relationOf(label.key)) + barred(label.values);
  if (label.twin > 1 && !label.values.empty()) text += " (" + std::to_string(label.twin) + ")";
  return text;
}

std::string_view csvNameOf(Design design) {
  switch (design) {
    case Design::kOneSample:
      return "one-sample";
    case Design::kPaired:
      return "paired";
    case Design::kIndependent:
      break;
  }
  return "independent";
}

void writeCsvSubject(const ResultSubject& subject, const std::string& grouping, Writer& out) {
  static const LabelData none;
  const LabelData& first = subject.variable == nullptr ? none : *subject.variable;
  const LabelData& second = subject.variable2 == nullptr ? none : *subject.variable2;
  // The label of an interval's or a test's pair names both of its variables.
  const std::string secondName =
      subject.variable2 == nullptr ? variableName(first, 1) : variableName(second, 0);
  out << ',' << csvText(variableName(first, 0)) << ',' << csvText(csvCondition(first)) << ','
      << csvText(secondName) << ',' << csvText(csvCondition(second)) << ','
      << (subject.measurement > 0 ? std::to_string(subject.measurement) : "") << ','
      << csvText(grouping) << ','
      << (subject.group == nullptr ? "" : csvText(csvCondition(*subject.group))) << ',';
  if (subject.method != nullptr) {
    out << subject.method->keyword;
  } else if (subject.methodLabel != nullptr) {
    out << csvText(subject.methodLabel->text);
  }
}

}  // namespace workbench
