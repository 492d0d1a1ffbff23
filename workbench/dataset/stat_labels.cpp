#include "workbench/dataset/stat_labels.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "workbench/values/data_error.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

/// Of all variables together; a label counts with what holds it.
constexpr size_t kMostBytes = size_t{96} << 20;
constexpr size_t kBytesOfAnEntry = 80;

/// Labels that are found by their value.
template <typename Value>
class Known {
 public:
  using Labels = std::vector<std::pair<Value, std::string>>;

  explicit Known(Labels& labels) : labels_(labels) {
    for (size_t i = 0; i < labels_.size(); ++i) places_.emplace(labels_[i].first, i);
  }
  /// False when the value has another label.
  bool add(const Value& value, const std::string& label) {
    const auto [place, isNew] = places_.emplace(value, labels_.size());
    if (!isNew) return labels_[place->second].second == label;
    labels_.emplace_back(value, label);
    return true;
  }

 private:
  Labels& labels_;
  std::unordered_map<Value, size_t> places_;
};

/// The value as the variable has it; nothing for a label of what is not a value.
std::optional<double> valueOf(const StatColumn& column, double number) {
  if (isExtendedMissing(number)) return number;
  std::string_view ignored;
  const std::optional<double> value = momentOf(column.unit, number, ignored);
  return value ? std::optional(normalNumber(*value)) : std::nullopt;
}

}  // namespace

void StatLabels::account(const StatSource& source, size_t bytes) {
  bytes_ += bytes + kBytesOfAnEntry;
  if (bytes_ <= kMostBytes) return;
  throw DataError(
      fmt::format("{}: the value labels of all columns take more memory than they may. Export the "
                  "columns that are wanted, or the file without labels.",
                  source.label));
}

bool StatLabels::add(const StatSource& source, const StatHead& head, const StatColumn& column,
                     Variable& variable) {
  const auto set = head.labels.find(column.labelSet);
  if (column.labelSet.empty() || set == head.labels.end()) return true;
  Known<double> numbers(variable.numberLabels);
  Known<std::string> texts(variable.stringLabels);
  for (const StatValueLabel& each : set->second) {
    if (each.label.empty() || each.isText != column.isText) continue;
    account(source, each.label.size() + each.text.size());
    if (each.isText) {
      if (!texts.add(std::string(trimmed(each.text)), each.label)) return false;
    } else if (const std::optional<double> value = valueOf(column, each.number)) {
      if (!numbers.add(*value, each.label)) return false;
    }
  }
  return true;
}

}  // namespace workbench
