#include "workbench/results/shown_subject.h"

namespace workbench {

ShownSubject shownSubject(const ResultSubject& row) {
  ShownSubject shown;
  if (row.pair != nullptr) {
    shown.subject = *row.pair;
    if (const LabelData* member = row.measured()) shown.member = *member;
  } else if (row.variable != nullptr) {
    shown.subject = *row.variable;
  }
  if (row.group != nullptr) shown.member = *row.group;
  return shown;
}

void appendToKey(std::string& key, std::string_view part) {
  key += std::to_string(part.size());
  key += ':';
  key += part;
}

void appendToKey(std::string& key, const LabelData& subject) {
  appendToKey(key, subject.number ? std::to_string(*subject.number) : subject.identity);
}

void PairLabels::learn(const LabelData& subject) {
  if (!subject.number) return;
  LabelData& known = byNumber_.try_emplace(*subject.number, subject).first->second;
  if (subject.variables.size() > known.variables.size()) known = subject;
}

const LabelData& PairLabels::fullest(const LabelData& subject) const {
  return subject.number ? byNumber_.at(*subject.number) : subject;
}

}  // namespace workbench
