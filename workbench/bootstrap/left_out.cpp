#include "workbench/bootstrap/left_out.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "host/constants.h"

namespace workbench {

LeftOutCases::LeftOutCases(const SampledCases& cases)
    : cases_(cases),
      rows_(cases.groups.size()),
      sampleOfRow_(cases.groups.size()),
      known_(cases.groups.size()) {}

size_t LeftOutCases::sampleOf(size_t group, size_t row) {
  const auto [found, isNew] = sampleOfRow_[group].emplace(row, rows_[group].size() + 1);
  if (isNew) rows_[group].push_back(row);
  return found->second;
}

const std::vector<LeftOutKind>& LeftOutCases::kinds(size_t groupNumber,
                                                    const std::vector<size_t>& positions) {
  const auto [known, isNew] = known_[groupNumber].try_emplace(positions);
  if (!isNew) return known->second;
  const CaseGroup& group = cases_.groups[groupNumber];
  std::unordered_map<std::string, size_t> kindOf;
  std::string values;
  for (size_t row = 0; row < group.rows; ++row) {
    if (IsSystemMissing(group.weights[row])) continue;
    values.clear();
    for (const size_t position : positions) {
      const auto words = static_cast<size_t>(cases_.words[position]);
      values.append(reinterpret_cast<const char*>(group.columns[position].data() + row * words),
                    words * sizeof(double));
    }
    const double cases = group.weights[row] * static_cast<double>(group.counts[row]);
    const auto [kind, isNewKind] = kindOf.emplace(values, known->second.size());
    if (isNewKind) {
      known->second.push_back({sampleOf(groupNumber, row), cases});
    } else {
      known->second[kind->second].cases += cases;
    }
  }
  return known->second;
}

double LeftOutCases::work() const {
  double rows = 0;
  for (size_t group = 0; group < rows_.size(); ++group) {
    rows +=
        static_cast<double>(rows_[group].size()) * static_cast<double>(cases_.groups[group].rows);
  }
  return rows;
}

size_t LeftOutCases::samples() const {
  size_t most = 0;
  for (const std::vector<size_t>& group : rows_) most = std::max(most, group.size());
  return most;
}

Samples LeftOutCases::samples(const MarginalCases& marginal, size_t first, size_t last) const {
  Samples samples(rows_.size());
  for (size_t group = 0; group < rows_.size(); ++group) {
    const SampleWeights all = weightsOf(cases_.groups[group], cases_.groups[group].counts);
    const size_t end = std::min(last, rows_[group].size() + 1);
    for (size_t from = first; from < end; from += MarginalCases::kLanes) {
      std::vector<SampleWeights> without(std::min(MarginalCases::kLanes, end - from), all);
      for (size_t i = 0; i < without.size(); ++i) without[i][rows_[group][from + i - 1]] -= 1.0;
      marginal.weights(group, std::move(without), samples[group]);
    }
  }
  return samples;
}

}  // namespace workbench
