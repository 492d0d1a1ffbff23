#include "workbench/bootstrap/marginal_cases.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/constants.h"

namespace workbench {
namespace {

/// Adding cases up in more sets than that takes as long as reading them.
constexpr size_t kMostSets = 32;
/// Places that are kept, four bytes each.
constexpr size_t kMostPlaces = size_t{25} << 20;
/// Rows have to become fewer by this factor to be worth the adding.
constexpr size_t kWorthwhile = 4;
/// Sums of whole numbers up to here are exact in whatever order they are added.
constexpr double kExact = 9007199254740992.0;

/// Whether a case whose other variables are missing counts for nothing but its own results, and no
/// sum of weights is rounded.
bool mayBeAddedUp(const SampledCases& cases, ActiveDataset& dataset, const CommandFacts& facts) {
  const std::vector<VarIndex>& split = dataset.splitVariables();
  for (const VarIndex variable : facts.variables()) {
    if (std::find(split.begin(), split.end(), variable) != split.end()) return false;
    // A blank text is a value like others then.
    if (facts.includesUserMissing && dataset.variable(variable).isString()) return false;
  }
  for (const CaseGroup& group : cases.groups) {
    double most = 0;
    double drawn = 0;
    for (size_t row = 0; row < group.rows; ++row) {
      most = std::max(most, group.weights[row]);
      drawn += static_cast<double>(group.counts[row]);
    }
    if (!(most * drawn < kExact)) return false;
  }
  return true;
}

/// The number of each row's value of a variable, in the order in which they are met.
std::vector<uint32_t> codesOf(const CaseGroup& group, size_t position, int32_t words) {
  const size_t width = static_cast<size_t>(words);
  std::unordered_map<std::string_view, uint32_t> known;
  std::vector<uint32_t> codes;
  for (size_t row = 0; row < group.rows; ++row) {
    const std::string_view value(
        reinterpret_cast<const char*>(group.columns[position].data() + row * width),
        width * sizeof(double));
    codes.push_back(known.emplace(value, static_cast<uint32_t>(known.size())).first->second);
  }
  return codes;
}

/// The rows that stand for the cases of one group.
struct Margins {
  struct Row {
    size_t like;                       ///< the first case that it stands for
    const std::vector<size_t>* shows;  ///< the set of variables
  };
  std::vector<Row> rows;
  std::vector<uint32_t> places;
};

class MarginFinder {
 public:
  MarginFinder(const SampledCases& cases, const CaseGroup& group) : cases_(cases), group_(group) {}

  /// Nothing when there are more than `most` rows.
  std::optional<Margins> find(const DependenceSets& sets, size_t most) {
    Margins margins;
    margins.places.resize(group_.rows * sets.size());
    size_t number = 0;
    for (const std::vector<size_t>& positions : sets) {
      const std::vector<uint32_t> codes = combined(positions);
      const auto first = static_cast<uint32_t>(margins.rows.size());
      for (size_t row = 0; row < group_.rows; ++row) {
        const uint32_t place = first + codes[row];
        if (place == margins.rows.size()) margins.rows.push_back({row, &positions});
        margins.places[row * sets.size() + number] = place;
      }
      if (margins.rows.size() > most) return std::nullopt;
      ++number;
    }
    return margins;
  }

 private:
  /// Numbers the combinations of the variables' values in the order in which they are met.
  std::vector<uint32_t> combined(const std::vector<size_t>& positions) {
    std::vector<uint32_t> codes(group_.rows, 0);
    std::unordered_map<uint64_t, uint32_t> known;
    for (const size_t position : positions) {
      const std::vector<uint32_t>& next = codesAt(position);
      known.clear();
      for (size_t row = 0; row < group_.rows; ++row) {
        const uint64_t key = uint64_t{codes[row]} << 32U | next[row];
        codes[row] = known.emplace(key, static_cast<uint32_t>(known.size())).first->second;
      }
    }
    return codes;
  }

  const std::vector<uint32_t>& codesAt(size_t position) {
    const auto [codes, isNew] = codes_.try_emplace(position);
    if (isNew) codes->second = codesOf(group_, position, cases_.words[position]);
    return codes->second;
  }

  const SampledCases& cases_;
  const CaseGroup& group_;
  std::unordered_map<size_t, std::vector<uint32_t>> codes_;  // by position
};

/// What a variable that is not shown has in its place.
double missingWord(bool isText) {
  constexpr char kBlanks[] = "        ";
  double word = kSystemMissing;
  if (isText) std::copy_n(kBlanks, sizeof word, reinterpret_cast<char*>(&word));
  return word;
}

/// The group with the rows of its margins; split variables keep their one value.
CaseGroup groupOfRows(const SampledCases& cases, const CaseGroup& group, const Margins& margins,
                      ActiveDataset& dataset) {
  const std::vector<VarIndex>& split = dataset.splitVariables();
  CaseGroup reduced;
  reduced.split = group.split;
  reduced.rows = margins.rows.size();
  for (size_t i = 0; i < cases.variables.size(); ++i) {
    const VarIndex variable = cases.variables[i];
    const bool isSplit = std::find(split.begin(), split.end(), variable) != split.end();
    const double missing = missingWord(dataset.variable(variable).isString());
    const auto words = static_cast<size_t>(cases.words[i]);
    std::vector<double>& column = reduced.columns.emplace_back(reduced.rows * words, missing);
    for (size_t row = 0; row < reduced.rows; ++row) {
      const auto& [like, shows] = margins.rows[row];
      if (!isSplit && !std::binary_search(shows->begin(), shows->end(), i)) continue;
      std::copy_n(group.columns[i].data() + like * words, words, column.data() + row * words);
    }
  }
  reduced.counts.assign(reduced.rows, 1);
  return reduced;
}

}  // namespace

MarginalCases::MarginalCases(const SampledCases& cases, const std::vector<DependenceSets>& sets,
                             ActiveDataset& dataset, const CommandFacts& facts)
    : all_(cases) {
  size_t places = 0;
  for (size_t i = 0; i < sets.size(); ++i) {
    if (sets[i].size() > kMostSets) return;
    places += sets[i].size() * cases.groups[i].rows;
  }
  if (places > kMostPlaces || !mayBeAddedUp(cases, dataset, facts)) return;
  SampledCases reduced{cases.variables, cases.words, {}};
  size_t most = cases.rows() / kWorthwhile;
  for (size_t i = 0; i < sets.size(); ++i) {
    const CaseGroup& group = cases.groups[i];
    auto margins = MarginFinder(cases, group).find(sets[i], most);
    if (!margins) return;
    most -= margins->rows.size();
    reduced.groups.push_back(groupOfRows(cases, group, *margins, dataset));
    groups_.push_back({sets[i].size(), std::move(margins->places)});
  }
  marginal_ = std::move(reduced);
  for (size_t i = 0; i < sets.size(); ++i) {
    std::vector<SampleWeights> asTheyAre;
    weights(i, {weightsOf(cases.groups[i], cases.groups[i].counts)}, asTheyAre);
    marginal_->groups[i].weights = std::move(asTheyAre.front());
  }
}

void MarginalCases::weights(size_t group, std::vector<SampleWeights> all,
                            std::vector<SampleWeights>& samples) const {
  if (!marginal_) {
    std::move(all.begin(), all.end(), std::back_inserter(samples));
    return;
  }
  for (size_t first = 0; first < all.size(); first += kLanes) {
    const size_t count = std::min(kLanes, all.size() - first);
    const std::vector<Lanes> sums = addUp(group, all.data() + first, count);
    for (size_t i = 0; i < count; ++i) {
      SampleWeights& sample = samples.emplace_back();
      for (const Lanes& sum : sums) sample.push_back(sum[i]);
    }
  }
}

/// Samples side by side, because neighbouring rows often share their places, and each sum would
/// wait for the one before.
std::vector<MarginalCases::Lanes> MarginalCases::addUp(size_t group, const SampleWeights* samples,
                                                       size_t count) const {
  std::vector<Lanes> sums(marginal_->groups[group].rows, Lanes{});
  const uint32_t* place = groups_[group].places.data();
  Lanes weights{};
  for (size_t row = 0; row < samples->size(); ++row) {
    for (size_t i = 0; i < count; ++i) weights[i] = samples[i][row];
    for (const uint32_t* const end = place + groups_[group].sets; place != end; ++place) {
      Lanes& sum = sums[*place];
      for (size_t i = 0; i < kLanes; ++i) sum[i] += weights[i];
    }
  }
  return sums;
}

}  // namespace workbench
