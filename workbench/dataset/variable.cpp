#include "workbench/dataset/variable.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "workbench/text/collation.h"

namespace workbench {
namespace {

template <typename Value, typename Labels>
const std::string* labelOf(const Labels& labels, const Value& value) {
  for (const auto& [labelled, label] : labels) {
    if (labelled == value) return &label;
  }
  return nullptr;
}

}  // namespace

const std::string* Variable::findLabel(double value) const { return labelOf(numberLabels, value); }

const std::string* Variable::findLabel(std::string_view value) const {
  return labelOf(stringLabels, trimmed(value));
}

bool isUserMissing(const Variable& variable, double value) {
  const auto& missing = variable.missingNumbers;
  if (std::find(missing.begin(), missing.end(), value) != missing.end()) return true;
  return value >= variable.missingLow && value <= variable.missingHigh;
}

double normalWeight(const Variable& weight, double value) {
  if (std::isnan(value) || isUserMissing(weight, value)) return kSystemMissing;
  return normalNumber(value);
}

double roundedWeight(double raw) {
  return raw == kSystemMissing || !(raw >= 0.5) ? kSystemMissing : std::floor(raw + 0.5);
}

std::string_view trimmed(std::string_view text) {
  size_t length = text.size();
  while (length > 0 && text[length - 1] == ' ') --length;
  return text.substr(0, length);
}

void writeObservation(std::string_view text, int32_t words, double* out) {
  const size_t room = static_cast<size_t>(words) * sizeof(double);
  const size_t length = std::min(text.size(), room);
  char* bytes = reinterpret_cast<char*>(out);
  if (length > 0) std::memcpy(bytes, text.data(), length);
  std::memset(bytes + length, ' ', room - length);
}

int compareSplitValues(const SplitValue& a, const SplitValue& b) {
  if (const auto* left = std::get_if<std::string>(&a)) {
    return compareStrings(*left, std::get<std::string>(b));
  }
  const double left = std::get<double>(a);
  const double right = std::get<double>(b);
  // The system-missing value is the lowest finite number, yet minus infinity comes after it.
  const int missing = int{right == kSystemMissing} - int{left == kSystemMissing};
  if (missing != 0) return missing;
  return int{left > right} - int{left < right};
}

}  // namespace workbench
