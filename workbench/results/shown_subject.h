/// What a result is about, beyond the life of the table that it was read from.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/output/document.h"
#include "workbench/results/result_rows.h"

namespace workbench {

struct ShownSubject {
  LabelData subject;                ///< the variable, or the pair
  std::optional<LabelData> member;  ///< the group, or the measurement of a pair
};

ShownSubject shownSubject(const ResultSubject& row);

/// Adds a part so that different lists of parts make different keys.
void appendToKey(std::string& key, std::string_view part);
/// Adds what a subject is known by in all tables of a procedure: a pair by its number.
void appendToKey(std::string& key, const LabelData& subject);

/// The labels of pairs: the tables of intervals name more of the variables than those of
/// statistics.
class PairLabels {
 public:
  /// Notes a subject's label; one that is not a pair is passed over.
  void learn(const LabelData& subject);
  /// The label of the pair that names the most variables; of anything else the subject's own.
  const LabelData& fullest(const LabelData& subject) const;

 private:
  std::map<double, LabelData> byNumber_;
};

}  // namespace workbench
