#include "workbench/dataset/typed_rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "workbench/dataset/value_text.h"

namespace workbench {
namespace {

constexpr double kDaySeconds = 86'400;
using Name = ColumnType::Name;

}  // namespace

ValueKind wantedKind(Name wanted, ValueKind native) {
  switch (wanted) {
    case Name::kDate:
      return ValueKind::kDate;
    case Name::kDateTime:
      return ValueKind::kDateTime;
    case Name::kBoolean:
      return ValueKind::kBoolean;
    case Name::kDetected:
    case Name::kTime:
      return native;
    default:
      return ValueKind::kNumber;
  }
}

bool isListedMissing(const ColumnType& type, double number) {
  return std::any_of(type.missingTexts.begin(), type.missingTexts.end(),
                     [&](const std::string& text) {
                       const FieldValue listed = interpretNumber(trimmed(text), '.');
                       return listed.kind == FieldKind::kNumber && listed.number == number;
                     });
}

std::string wrongType(const ColumnType& type, double& value) {
  const Name wanted = type.name;
  if (wanted == Name::kDetected || value == kSystemMissing) return {};
  if (wanted == Name::kInteger && std::isfinite(value) && value != std::trunc(value)) {
    return fmt::format("{} is not a whole number, though the dictionary gives the type integer.",
                       shortestNumber(value));
  }
  if (wanted == Name::kBoolean && value != 0.0 && value != 1.0) {
    if (isListedMissing(type, value)) {
      value = kSystemMissing;
      return {};
    }
    return fmt::format("{} is neither 0 nor 1, though the dictionary gives the type boolean.",
                       shortestNumber(value));
  }
  if (wanted == Name::kDate && std::fmod(value, kDaySeconds) != 0.0) {
    return "there is a time of day, though the dictionary gives the type date.";
  }
  return {};
}

std::vector<double> categoryNumbers(const std::vector<std::string>& categories,
                                    const ColumnType& type) {
  std::vector<double> numbers;
  for (const std::string& text : categories) {
    const auto found = std::find_if(type.codes.begin(), type.codes.end(),
                                    [&](const auto& entry) { return entry.first == text; });
    numbers.push_back(found == type.codes.end() ? kSystemMissing : found->second);
  }
  return numbers;
}

std::string numberAsText(std::string_view spelt, bool binary) {
  const FieldValue read = interpretNumber(spelt, '.');
  if (read.kind != FieldKind::kNumber) return std::string(spelt);
  if (std::isnan(read.number)) return {};
  const bool isPlain = spelt.find_first_not_of("+-.0123456789") == std::string_view::npos;
  if (binary || !isPlain) return shortestNumber(read.number);
  if (read.number == 0.0 && spelt.find_first_of("123456789") == std::string_view::npos) return "0";
  if (spelt.find('.') != std::string_view::npos) {
    spelt.remove_suffix(spelt.size() - 1 - spelt.find_last_not_of('0'));
    if (spelt.ends_with('.')) spelt.remove_suffix(1);
  }
  return std::string(spelt);
}

KeptText keptText(std::string_view text, const FieldRules& rules) {
  const std::string_view kept = trimmed(text);
  if (kept.size() > kWidestString) {
    return {{},
            fmt::format("the text takes {} bytes; a string holds up to {}.", kept.size(),
                        kWidestString)};
  }
  const std::vector<std::string>& missing = rules.missingTexts;
  const bool isMissing = std::find(missing.begin(), missing.end(), kept) != missing.end();
  return {isMissing ? std::string_view() : kept, {}};
}

}  // namespace workbench
