#include "workbench/advice/advice.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/parser/level_reading.h"
#include "workbench/text/nearest.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr size_t kMostShownValues = 10;
constexpr double kRoundingWorthSaying = 0.01;

const char* ruleName(ValueRule rule) {
  switch (rule) {
    case ValueRule::kFirst:
      return "FIRST";
    case ValueRule::kMidpoint:
      return "MIDPOINT";
    case ValueRule::kCutpoint:
      return "CUTPOINT";
    case ValueRule::kLevel:
      return "LEVEL";
    default:
      return "LAST";
  }
}

/// A value with its label, when it has one: 1 (yes).
std::string shownWithLabel(const Variable& variable, const SplitValue& value) {
  const auto* number = std::get_if<double>(&value);
  const std::string* label = number != nullptr ? variable.findLabel(*number)
                                               : variable.findLabel(std::get<std::string>(value));
  const std::string written = writtenLevel(variable, value);
  return label == nullptr ? written : fmt::format("{} ({})", written, *label);
}

std::string shownValues(const Variable& variable, const std::vector<SplitValue>& values) {
  std::string text;
  for (size_t i = 0; i < std::min(values.size(), kMostShownValues); ++i) {
    text += (i == 0 ? "" : ", ") + shownWithLabel(variable, values[i]);
  }
  return values.size() > kMostShownValues ? text + ", ..." : text;
}

/// "Its valid values are ..." as a sentence.
std::string whatOccurs(const Variable& variable, const ColumnAnswers& answers) {
  if (answers.values.empty()) return "It has no valid value.";
  if (answers.moreValues) {
    return fmt::format("It has more than {} valid values, among them {}.", kMostListedValues,
                       shownValues(variable, answers.values));
  }
  if (answers.values.size() == 1) {
    return fmt::format("Its only valid value is {}.", shownValues(variable, answers.values));
  }
  return fmt::format("Its valid values are {}.", shownValues(variable, answers.values));
}

bool isDeclaredMissing(const Variable& variable, const SplitValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return isUserMissing(variable, *number);
  const auto& missing = variable.missingStrings;
  return std::find(missing.begin(), missing.end(), std::get<std::string>(value)) != missing.end();
}

/// The occurring value that a text was probably meant to be; or nothing.
std::optional<SplitValue> nearestOccurring(const SplitValue& level, const ColumnAnswers& answers) {
  const auto* text = std::get_if<std::string>(&level);
  if (text == nullptr) return {};
  std::vector<std::string> known;
  for (const SplitValue& value : answers.values) known.push_back(std::get<std::string>(value));
  const std::string guess = nearest(*text, known);
  if (guess.empty()) return {};
  return SplitValue(guess);
}

class Adviser {
 public:
  Adviser(const CommandFacts& facts, const ActiveDataset& dataset, const CaseTally& cases)
      : facts_(facts), dataset_(dataset), cases_(cases) {}

  std::vector<Advice> all() {
    const std::vector<VarIndex> variables = facts_.variables();
    for (size_t i = 0; i < variables.size(); ++i) {
      const Variable& variable = dataset_.declaration(variables[i]);
      const ColumnAnswers answers = cases_.answers(i);
      if (variables[i] == facts_.grouping) {
        adviseOnGroups(variable, answers);
      } else {
        adviseOnSuccess(variable, answers);
      }
      adviseOnTexts(variable, answers);
      if (answers.missingLike.empty()) adviseOnOddText(variables[i]);
    }
    adviseOnLevel();
    adviseOnWeights();
    return std::move(advice_);
  }

 private:
  void add(const char* code, const std::string& variable, std::string text) {
    advice_.push_back({code, variable, std::move(text)});
  }

  void adviseOnSuccess(const Variable& variable, const ColumnAnswers& answers) {
    switch (facts_.success.rule) {
      case ValueRule::kFirst:
      case ValueRule::kLast:
      case ValueRule::kMidpoint:
        adviseOnConstant(variable, answers);
        adviseOnGroupsSuccess(variable, answers);
        break;
      case ValueRule::kLevel:
        adviseOnLevels(variable, answers);
        break;
      case ValueRule::kCutpoint:
        break;
    }
  }

  void adviseOnConstant(const Variable& variable, const ColumnAnswers& answers) {
    if (!answers.oneValue) return;
    const std::string value = shownWithLabel(variable, answers.some);
    add("constant-variable", variable.name,
        fmt::format("Every valid value of {} is {}, so {} made that the success. To count another "
                    "value, name it: /SUCCESS VALUE=LEVEL({}).",
                    variable.name, value, ruleName(facts_.success.rule),
                    writtenLevel(variable, otherValue(variable, answers.some))));
  }

  /// A value to name in an example: one with a label that is not the one that occurs, else 1 for 0
  /// and 0 for all others.
  static SplitValue otherValue(const Variable& variable, const SplitValue& value) {
    if (const auto* number = std::get_if<double>(&value)) {
      for (const auto& [labelled, label] : variable.numberLabels) {
        if (labelled != *number && !isUserMissing(variable, labelled)) return labelled;
      }
      return *number == 0.0 ? 1.0 : 0.0;
    }
    for (const auto& [labelled, label] : variable.stringLabels) {
      if (labelled != std::get<std::string>(value)) return labelled;
    }
    return std::string("...");
  }

  void adviseOnGroupsSuccess(const Variable& variable, const ColumnAnswers& answers) {
    const GroupsByValue& groups = answers.byGroup;
    if (groups.values.size() < 2) return;
    std::string text = fmt::format(
        "{} takes the success of {} from the values in each split group, and they are "
        "not the same: ",
        ruleName(facts_.success.rule), variable.name);
    for (size_t i = 0; i < groups.values.size(); ++i) {
      const GroupsOfValue& entry = groups.values[i];
      text += fmt::format("{}{} in {}{}", i == 0 ? "" : "; ", shownWithLabel(variable, entry.value),
                          groupCount(entry.groups), i == 0 ? "" : groupsOf(entry));
    }
    if (groups.otherGroups > 0) {
      text += fmt::format("; other values in {}", groupCount(groups.otherGroups));
    }
    const bool last = facts_.success.rule == ValueRule::kLast;
    text += fmt::format(". To count one value everywhere, name it: /SUCCESS VALUE=LEVEL({}).",
                        writtenLevel(variable, last ? groups.highest : groups.lowest));
    add("success-differs", variable.name, std::move(text));
  }

  static std::string groupCount(int64_t groups) {
    return fmt::format("{} {}", groups, groups == 1 ? "group" : "groups");
  }

  /// The first few groups of a value, in brackets.
  std::string groupsOf(const GroupsOfValue& entry) const {
    std::string text;
    for (const size_t group : entry.first) {
      text += (text.empty() ? " (" : "; ") + cases_.groupText(group);
    }
    return text + (static_cast<size_t>(entry.groups) > entry.first.size() ? "; ...)" : ")");
  }

  void adviseOnLevels(const Variable& variable, const ColumnAnswers& answers) {
    const std::vector<SplitValue> levels = levelValues(facts_.success, variable);
    std::vector<SplitValue> absent;
    for (size_t i = 0; i < levels.size(); ++i) {
      if (!answers.found[i]) absent.push_back(levels[i]);
    }
    if (absent.empty()) return;
    std::string text =
        fmt::format("No case has {} as a valid value of {}, so that counts no success. {}",
                    shownValues(variable, absent), variable.name, whatOccurs(variable, answers));
    const bool declared = std::any_of(absent.begin(), absent.end(), [&](const SplitValue& value) {
      return isDeclaredMissing(variable, value);
    });
    if (declared && !facts_.includesUserMissing) {
      text += " A value that is declared missing counts only with /MISSING USERMISSING=INCLUDE.";
    } else if (const auto meant = nearestOccurring(absent.front(), answers)) {
      text +=
          fmt::format(" Did you mean /SUCCESS VALUE=LEVEL({})?", writtenLevel(variable, *meant));
    } else if (!answers.values.empty()) {
      text += fmt::format(" Name the values that are a success, as in /SUCCESS VALUE=LEVEL({}).",
                          writtenLevel(variable, answers.values.back()));
    }
    add("absent-level", variable.name, std::move(text));
  }

  void adviseOnGroups(const Variable& variable, const ColumnAnswers& answers) {
    if (facts_.groups.rule != ValueRule::kLevel) return;
    const bool byDefault = facts_.groups.values.empty();
    const std::vector<SplitValue> levels =
        byDefault ? std::vector<SplitValue>{1.0, 2.0} : levelValues(facts_.groups, variable);
    std::vector<SplitValue> absent;
    for (size_t i = 0; i < levels.size(); ++i) {
      if (!answers.found[i]) absent.push_back(levels[i]);
    }
    const size_t found = levels.size() - absent.size();
    const bool leavesOut = byDefault && (answers.moreValues || answers.values.size() > found);
    if (absent.empty() && !leavesOut) return;
    std::string text;
    if (byDefault)
      text = "Without SELECT the groups are the values 1 and 2 of the grouping variable. ";
    if (!absent.empty()) {
      text += fmt::format("No case has {} as a valid value of {}. ", shownValues(variable, absent),
                          variable.name);
    }
    if (leavesOut) {
      text += fmt::format("Cases with other values of {} are left out. ", variable.name);
    }
    text += whatOccurs(variable, answers);
    if (answers.values.size() > 1) {
      text += fmt::format(" Name the two groups, as in SELECT=LEVEL({} {}).",
                          writtenLevel(variable, answers.values[0]),
                          writtenLevel(variable, answers.values[1]));
    }
    add("absent-groups", variable.name, std::move(text));
  }

  void adviseOnTexts(const Variable& variable, const ColumnAnswers& answers) {
    if (answers.missingLike.empty()) return;
    std::string texts;
    for (const std::string& text : answers.missingLike) {
      texts += (texts.empty() ? "" : ", ") + writtenLevel(variable, text);
    }
    std::string option;
    for (const std::string& text : answers.missingLike) {
      option += (option.empty() ? "" : ",") + text;
    }
    add("missing-text", variable.name,
        fmt::format("{} holds the {} {}, which counts as a value like any other. If it stands for "
                    "a missing value, say so: --na '{}', or missingValues in the dictionary.",
                    variable.name, answers.missingLike.size() == 1 ? "text" : "texts", texts,
                    option));
  }

  void adviseOnOddText(VarIndex index) {
    const OddText* odd = dataset_.oddText(index);
    if (odd == nullptr) return;
    const Variable& variable = dataset_.declaration(index);
    add("mixed-type", variable.name,
        fmt::format(
            "{} is read as text because of a few values; the first is {} ({}), which is not "
            "a {} as the others are. Correct it, or declare it missing: --na, or "
            "missingValues in the dictionary.",
            variable.name, writtenLevel(variable, excerpt(odd->text)), odd->place,
            nameOf(odd->usual)));
  }

  void adviseOnLevel() {
    if (!(facts_.level > 0.0 && facts_.level < 1.0)) return;
    add("level-below-one", "",
        fmt::format("CILEVEL is in percent: {0} asks for intervals that cover in {0} of 100 cases. "
                    "For {1} % write /CRITERIA CILEVEL={1}.",
                    shortestNumber(facts_.level), fmt::format("{:.10g}", facts_.level * 100.0)));
  }

  void adviseOnWeights() {
    const double raw = cases_.positiveWeight();
    const double rounded = cases_.positiveRoundedWeight();
    if (!(std::fabs(rounded - raw) > kRoundingWorthSaying * raw)) return;
    const std::string& name = dataset_.declaration(dataset_.weightVariable()).name;
    add("weights-rounded", name,
        fmt::format(
            "The weights are taken as frequencies and rounded to whole cases, which changes "
            "their sum from {:.10g} to {:.10g} ({:+.1f} %). Sampling weights are not "
            "frequencies: neither the proportions nor the intervals hold for them.",
            raw, rounded, (rounded - raw) / raw * 100.0));
  }

  const CommandFacts& facts_;
  const ActiveDataset& dataset_;
  const CaseTally& cases_;
  std::vector<Advice> advice_;
};

}  // namespace

std::vector<Advice> adviceOn(const CommandFacts& facts, const ActiveDataset& dataset,
                             const CaseTally& cases) {
  return Adviser(facts, dataset, cases).all();
}

}  // namespace workbench
