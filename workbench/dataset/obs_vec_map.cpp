// ObsVecMap: keys are runs of words that compare byte for byte.
#include <cstring>
#include <deque>
#include <memory>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/data_source.h"

struct ObsVecMap::Impl {
  Impl(int32_t words, bool copies) : keyWords(words), copyKeys(copies) {}

  std::string_view bytesOf(const double* key) const {
    return {reinterpret_cast<const char*>(key), static_cast<size_t>(keyWords) * sizeof(double)};
  }

  int32_t keyWords;
  bool copyKeys;
  std::deque<std::vector<double>> keys;  // only those that the map keeps itself
  std::unordered_map<std::string_view, std::unique_ptr<double>> cells;
};

std::vector<int32_t> ObsVecMap::MakeKeySpec(ProcedureDataSource& source,
                                            const std::vector<VarIndex>& variables) {
  std::vector<int32_t> widths;
  for (const VarIndex index : variables) {
    const int32_t width = source.GetVariable(index).GetType();
    widths.push_back(ObsLength(width));
  }
  return widths;
}

ObsVecMap::ObsVecMap(const std::vector<int32_t>& widths, bool copyKeys)
    : impl_(std::make_unique<Impl>(std::accumulate(widths.begin(), widths.end(), 0), copyKeys)) {}

ObsVecMap::~ObsVecMap() = default;

int32_t ObsVecMap::CellSize() const { return impl_->keyWords + 1; }

double* ObsVecMap::Contains(const double* key) {
  const auto found = impl_->cells.find(impl_->bytesOf(key));
  return found == impl_->cells.end() ? nullptr : found->second.get();
}

double* ObsVecMap::Insert(const double* key) {
  const double* kept = key;
  if (impl_->copyKeys) {
    kept = impl_->keys.emplace_back(key, key + impl_->keyWords).data();
  }
  auto& cell = impl_->cells[impl_->bytesOf(kept)];
  if (cell == nullptr) cell = std::make_unique<double>(0.0);
  return cell.get();
}
