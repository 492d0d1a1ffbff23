// How a level of a command becomes a value of a variable.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "workbench/dataset/value_list.h"
#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/parser/level_reading.h"
#include "workbench/parser/syntax_error.h"
#include "workbench/text/nearest.h"

namespace workbench {
namespace {

/// As a command has to write a text.
std::string quoted(std::string_view text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "''" : std::string(1, c);
  return result + '\'';
}

const char* formOf(const Variable& variable) {
  switch (variable.kind) {
    case ValueKind::kDate:
      return "a date, as in '2024-03-01'";
    case ValueKind::kTime:
      return "a time, as in '12:30'";
    case ValueKind::kDateTime:
      return "a date and time, as in '2024-03-01 12:30'";
    default:
      return "a number";
  }
}

std::optional<double> usable(std::optional<double> value) {
  if (!value || !std::isfinite(*value) || *value == kSystemMissing) return {};
  return *value == 0.0 ? 0.0 : *value;  // minus zero is zero
}

/// The code of an ordered category whose text in the data this is.
std::optional<double> codeOf(const Variable& variable, const std::string& text) {
  for (const auto& [code, own] : variable.categoryTexts) {
    if (own == text) return code;
  }
  return {};
}

/// Two values under one label: a reader cannot tell which is meant.
LevelReading ambiguous(const Variable& variable, const std::string& text, double first,
                       double second) {
  return {{},
          fmt::format("{} is the label of two values of {}: {} and {}. Write the value that is "
                      "meant.",
                      shortQuoted(text), shortQuoted(variable.name), valueText(variable, first),
                      valueText(variable, second)),
          {}};
}

LevelReading refusedText(const Variable& variable, const std::string& text) {
  std::vector<std::string> known;
  for (const auto& entry : variable.numberLabels) known.push_back(entry.second);
  for (const auto& entry : variable.categoryTexts) known.push_back(entry.second);
  const std::string guess = nearest(text, known);
  const std::string form = formOf(variable);
  return {{},
          fmt::format("{} is no value of {}, which takes {}{}.", shortQuoted(text),
                      shortQuoted(variable.name), form,
                      known.empty() ? "" : ", or a value label in quotes"),
          guess.empty() ? "" : quoted(guess)};
}

/// A number without quotes could mean the code of an ordered category as well as its text.
LevelReading readBare(const Variable& variable, const std::string& text) {
  const std::optional<double> number = usable(parseValue(variable, text));
  for (const auto& [code, own] : variable.categoryTexts) {
    const std::optional<double> spelt = parsePlainNumber(own);
    if (!spelt || *spelt == code) continue;
    return {{},
            fmt::format("{} holds ordered categories, some of which read as numbers. Quote the "
                        "category that is meant, as in {}.",
                        shortQuoted(variable.name), quoted(own)),
            {}};
  }
  return number ? LevelReading{SplitValue(*number), {}, {}} : refusedText(variable, text);
}

LevelReading readQuoted(const Variable& variable, const LabelIndex& labels,
                        const std::string& text) {
  const auto [begin, end] = labels.equalRange(text);
  if (begin != end) {
    const double first = begin->second;
    for (auto other = std::next(begin); other != end; ++other) {
      if (other->second != first) return ambiguous(variable, text, first, other->second);
    }
    return {SplitValue(first), {}, {}};
  }
  if (const auto code = codeOf(variable, text)) return {SplitValue(*code), {}, {}};
  // The code of an ordered category is nothing that a text may mean.
  if (!variable.categoryTexts.empty()) return refusedText(variable, text);
  const std::optional<double> value = usable(parseValue(variable, text));
  if (!value) return refusedText(variable, text);
  return {SplitValue(*value), {}, {}};
}

}  // namespace

LabelIndex::LabelIndex(const Variable& variable) {
  for (const auto& [value, label] : variable.numberLabels) {
    labels_.emplace(std::string(trimmed(label)), value);
  }
}

LevelReading readLevel(const Variable& variable, const LabelIndex& labels, std::string_view written,
                       LevelForm form) {
  const std::string text(trimmed(written));
  if (!variable.isString()) {
    return form == LevelForm::kBare ? readBare(variable, text) : readQuoted(variable, labels, text);
  }
  if (text.size() <= static_cast<size_t>(variable.width)) return {SplitValue(text), {}, {}};
  return {{},
          fmt::format("{} is longer than every value of {}.", shortQuoted(text),
                      shortQuoted(variable.name)),
          {}};
}

std::string writtenLevel(const Variable& variable, const SplitValue& value) {
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr) return quoted(std::get<std::string>(value));
  for (const auto& [code, text] : variable.categoryTexts) {
    if (code == *number) return quoted(text);
  }
  const bool plain = variable.kind == ValueKind::kNumber || variable.kind == ValueKind::kBoolean;
  return plain ? valueText(variable, *number) : quoted(valueText(variable, *number));
}

void addOccurringValues(ActiveDataset& dataset, VarIndex index, const std::string& text,
                        LevelReading& reading) {
  constexpr size_t kLookedAt = 1000;
  constexpr size_t kShown = 8;
  const ValueList occurring = occurringValues(dataset, index, kLookedAt);
  if (occurring.values.empty()) return;
  const Variable& variable = dataset.variable(index);
  std::vector<std::string> written;
  for (const SplitValue& value : occurring.values) {
    written.push_back(writtenLevel(variable, value));
  }
  const bool all = !occurring.more && written.size() <= kShown;
  reading.suggestion = nearest(variable.isString() ? quoted(text) : text, written);
  written.resize(std::min(written.size(), kShown));
  reading.problem += fmt::format(" {} {}{}.", all ? "Its values are" : "Among its values are",
                                 fmt::join(written, ", "), all ? "" : ", ...");
}

}  // namespace workbench
