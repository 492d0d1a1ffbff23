#include "workbench/results/sentences.h"

#include <algorithm>
#include <initializer_list>
#include <unordered_map>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/results/number_text.h"
#include "workbench/results/result_rows.h"

namespace workbench {
namespace {

constexpr int kPercentShift = 2;
constexpr int kStatisticDecimals = 2;

/// Decimals in percent that leave each of some shares two significant digits.
int decimalsOf(std::initializer_list<double> shares, std::optional<int> digits) {
  if (digits) return *digits;
  int decimals = 3;
  for (const double share : shares) {
    if (isPlainNumber(share)) decimals = std::max(decimals, decimalsFor(share, 3, 6));
  }
  return decimals - kPercentShift;
}

std::string points(double share, int decimals) { return fixedText(share, decimals, kPercentShift); }

std::string percent(double share, int decimals) {
  return isPlainNumber(share) ? points(share, decimals) + '%' : "not available";
}

/// A share that was given, without decimals that it does not have.
std::string givenPercent(double share) {
  const std::string text = shortestNumber(share);
  const size_t point = text.find('.');
  const size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
  return points(share, decimals > 2 ? static_cast<int>(decimals) - 2 : 0) + '%';
}

/// How often something was observed.
struct Observed {
  double successes = 0;
  double trials = 0;
  double share = 0;
  std::string name;  ///< of what was observed, or of whom
};

std::string ofTrials(const Observed& observed) {
  return countText(observed.successes) + " of " + countText(observed.trials);
}

std::string withShare(const Observed& observed, int decimals) {
  return ofTrials(observed) + " (" + percent(observed.share, decimals) + ')';
}

Observed observedIn(const ResultRows& rows, size_t row, std::string name) {
  return {rows.value(row, Quantity::kSuccesses), rows.value(row, Quantity::kTrials),
          rows.value(row, Quantity::kProportion), std::move(name)};
}

std::string levelText(const ResultRows& rows) {
  return shortestNumber(rows.level().value_or(0)) + "% CI ";
}

std::string methodText(const ResultSubject& subject) {
  if (subject.method != nullptr) return std::string(subject.method->phrase);
  return subject.methodLabel == nullptr ? "" : subject.methodLabel->text;
}

/// The bounds with a unit after each; one that is not a number is said not to be.
std::string boundsText(const ResultRows& rows, size_t row, int decimals, const char* unit) {
  const double lower = rows.value(row, Quantity::kLower), upper = rows.value(row, Quantity::kUpper);
  if (!isPlainNumber(lower) || !isPlainNumber(upper)) return levelText(rows) + "not available";
  return levelText(rows) + points(lower, decimals) + unit + " to " + points(upper, decimals) + unit;
}

std::string significanceText(const ResultRows& rows, size_t row, const ResultSubject& subject) {
  std::string text = methodText(subject);
  const TableCell* z = rows.cell(row, Quantity::kZ);
  if (z != nullptr && isPlainNumber(z->value)) {
    text += ", Z = " + fixedText(z->value, kStatisticDecimals);
  }
  const double p = rows.value(row, Quantity::kTwoSidedP);
  if (!isPlainNumber(p)) return text + ", p not available";
  const std::string shown = probabilityText(p);
  text += shown[0] == '<' ? ", p < " + shown.substr(1) : ", p = " + shown;
  return text + " (two-sided)";
}

/// Writes the sentences of one procedure. What was observed in pairs and groups stands in their
/// statistics tables.
class Reporter {
 public:
  Reporter(const DocumentProcedure& procedure, std::optional<int> digits) : digits_(digits) {
    for (const auto& table : procedure.tables) {
      const auto kind = tableKindOf(table->title().key);
      if (kind && kind->kind == ResultKind::kStatistics) readStatistics(*table);
    }
    for (const auto& table : procedure.tables) {
      const auto kind = tableKindOf(table->title().key);
      if (kind && kind->kind != ResultKind::kStatistics) report(*table);
    }
  }

  std::vector<std::string> takeSentences() { return std::move(sentences_); }

 private:
  /// What an analysis is known by in all tables: its split group and its pair or variable.
  static std::string identityOf(const ResultRows& rows, size_t row, const ResultSubject& subject) {
    std::string identity = rows.splitIdentity(row) + '\0';
    if (rows.kind().design == Design::kPaired) {
      const LabelData* pair = subject.pair == nullptr ? subject.variable : subject.pair;
      return pair == nullptr ? identity : identity + shortestNumber(pair->number.value_or(0));
    }
    return subject.variable == nullptr ? identity : identity + subject.variable->identity;
  }

  void readStatistics(const Table& table) {
    const ResultRows rows(table, EmptyCategories::kReadable);
    for (size_t row = 0; row < rows.count(); ++row) {
      if (!rows.hasCells(row)) continue;
      const ResultSubject subject = rows.subject(row);
      std::string name;
      if (subject.group != nullptr) {
        name = rows.grouping()->text + ' ' + subject.group->text;
      } else {
        const LabelData* own = subject.measured();
        if (own != nullptr) name = own->text;
      }
      statistics_[identityOf(rows, row, subject)].push_back(observedIn(rows, row, std::move(name)));
    }
  }

  void report(const Table& table) {
    const ResultRows rows(table, EmptyCategories::kReadable);
    bool several = false;
    const LabelData* first = rows.count() == 0 ? nullptr : rows.subject(0).variable;
    for (size_t row = 1; row < rows.count() && !several; ++row) {
      several = rows.subject(row).variable != first;
    }
    for (size_t row = 0; row < rows.count(); ++row) {
      const ResultSubject subject = rows.subject(row);
      sentences_.push_back(groupText(rows, row) + sentence(rows, row, subject, several));
    }
  }

  /// The split group that a row is about, ready to be read on.
  static std::string groupText(const ResultRows& rows, size_t row) {
    std::string text;
    for (const auto& [name, value] : rows.table().split()) {
      if (!text.empty()) text += ", ";
      text.append(name).append(" = ").append(value);
    }
    for (size_t i = 0; i < rows.splitDimensions().size(); ++i) {
      const LabelData* value = rows.splitValue(row, i);
      if (value == nullptr) continue;
      const Dimension& dimension =
          rows.table().dimensions()[rows.table().displayOrder(0)[rows.splitDimensions()[i]]];
      text += (text.empty() ? "" : ", ") + dimension.label().text + " = " + value->text;
    }
    return text.empty() ? text : text + ": ";
  }

  std::string sentence(const ResultRows& rows, size_t row, const ResultSubject& subject,
                       bool several) const {
    const std::string name = subject.variable == nullptr ? "" : subject.variable->text;
    if (!rows.hasCells(row)) return name + ": no result";
    if (rows.kind().design == Design::kOneSample) {
      return (several ? name + ": " : "") + ofOneSample(rows, row, subject);
    }
    const auto found = statistics_.find(identityOf(rows, row, subject));
    if (found == statistics_.end() || found->second.size() != 2) {
      return name + ": " + ofDifference(rows, row, subject, decimalsFor(rows, row, {}, {}));
    }
    const Observed &one = found->second[0], &two = found->second[1];
    const int decimals = decimalsFor(rows, row, one, two);
    const bool paired = rows.kind().design == Design::kPaired;
    std::string text;
    if (paired) {
      text = one.name + ": " + withShare(one, decimals) + ", " + two.name + ": " +
             withShare(two, decimals);
    } else {
      text = name + ": " + withShare(one, decimals) + " with " + one.name + ", " +
             withShare(two, decimals) + " with " + two.name;
    }
    return text + "; " + ofDifference(rows, row, subject, decimals);
  }

  int decimalsFor(const ResultRows& rows, size_t row, const Observed& one,
                  const Observed& two) const {
    return decimalsOf({one.share, two.share, rows.value(row, Quantity::kDifference),
                       rows.value(row, Quantity::kLower), rows.value(row, Quantity::kUpper)},
                      digits_);
  }

  std::string ofOneSample(const ResultRows& rows, size_t row, const ResultSubject& subject) const {
    const Observed observed = observedIn(rows, row, "");
    if (rows.kind().kind == ResultKind::kIntervals) {
      const int decimals = decimalsOf(
          {observed.share, rows.value(row, Quantity::kLower), rows.value(row, Quantity::kUpper)},
          digits_);
      return ofTrials(observed) + " (" + percent(observed.share, decimals) + "; " +
             boundsText(rows, row, decimals, "%") + ", " + methodText(subject) + ')';
    }
    const int decimals = decimalsOf({observed.share}, digits_);
    return withShare(observed, decimals) + " compared with " +
           givenPercent(rows.testValue().value_or(0)) + ": " + significanceText(rows, row, subject);
  }

  static std::string ofDifference(const ResultRows& rows, size_t row, const ResultSubject& subject,
                                  int decimals) {
    const double difference = rows.value(row, Quantity::kDifference);
    const std::string text =
        isPlainNumber(difference)
            ? "difference " + points(difference, decimals) + " percentage points"
            : "difference not available";
    if (rows.kind().kind == ResultKind::kIntervals) {
      return text + " (" + boundsText(rows, row, decimals, "") + ", " + methodText(subject) + ')';
    }
    return text + ", " + significanceText(rows, row, subject);
  }

  std::optional<int> digits_;
  std::unordered_map<std::string, std::vector<Observed>> statistics_;
  std::vector<std::string> sentences_;
};

}  // namespace

std::vector<std::string> reportSentences(const DocumentProcedure& procedure,
                                         std::optional<int> digits) {
  return Reporter(procedure, digits).takeSentences();
}

}  // namespace workbench
