#include "module/model/bin_info_elem.h"

#include <cmath>
#include <iterator>
#include <numeric>

namespace proportions {
namespace {

/// A search from first to last is as quick up to here.
constexpr size_t kShortList = 16;

}  // namespace

void BinInfoElem::sortValues() {
  numberOrder_.clear();
  textOrder_.clear();
  if (numericValues.size() > kShortList) {
    std::copy_if(numericValues.begin(), numericValues.end(), std::back_inserter(numberOrder_),
                 [](double value) { return !std::isnan(value); });
    std::sort(numberOrder_.begin(), numberOrder_.end());
  }
  if (stringValues.size() > kShortList) {
    textOrder_.resize(stringValues.size());
    std::iota(textOrder_.begin(), textOrder_.end(), 0);
    std::sort(textOrder_.begin(), textOrder_.end(),
              [this](uint32_t a, uint32_t b) { return stringValues[a] < stringValues[b]; });
  }
}

bool BinInfoElem::findNumber(double value) const {
  const auto found = std::lower_bound(numberOrder_.begin(), numberOrder_.end(), value);
  return found != numberOrder_.end() && *found == value;
}

bool BinInfoElem::findText(const std::string& value) const {
  const auto found = std::lower_bound(
      textOrder_.begin(), textOrder_.end(), value,
      [this](uint32_t position, const std::string& text) { return stringValues[position] < text; });
  return found != textOrder_.end() && stringValues[*found] == value;
}

}  // namespace proportions
