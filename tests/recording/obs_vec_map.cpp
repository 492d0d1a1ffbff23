// The map from keys to numbers, kept as a plain ordered map of byte strings.
#include <map>
#include <numeric>
#include <string>

#include "host/data_source.h"
#include "tests/recording/host.h"

using recording::Call;

struct ObsVecMap::Impl {
  explicit Impl(int32_t words) : keyWords(words) {}
  std::string bytes(const double* key) const {
    return {reinterpret_cast<const char*>(key), static_cast<size_t>(keyWords) * sizeof(double)};
  }

  recording::Life self{recording::Kind::kObsVecMap};
  int32_t keyWords;
  std::map<std::string, double> cells;
};

std::vector<int32_t> ObsVecMap::MakeKeySpec(ProcedureDataSource& source,
                                            const std::vector<VarIndex>& variables) {
  Call call("ObsVecMap.MakeKeySpec", Call::May::kThrow, variables);
  std::vector<int32_t> widths;
  {
    const recording::Quiet quiet;
    for (const VarIndex index : variables) {
      widths.push_back(ObsLength(source.GetVariable(index).GetType()));
    }
  }
  return call.gives(widths);
}

ObsVecMap::ObsVecMap(const std::vector<int32_t>& widths, bool copyKeys)
    : impl_(std::make_unique<Impl>(std::accumulate(widths.begin(), widths.end(), 0))) {
  Call(impl_->self, "new", widths, copyKeys).done();
}

ObsVecMap::~ObsVecMap() = default;

int32_t ObsVecMap::CellSize() const {
  return Call(impl_->self, "CellSize").gives(impl_->keyWords + 1);
}

double* ObsVecMap::Contains(const double* key) {
  Call call(impl_->self, "Contains");
  const auto found = impl_->cells.find(impl_->bytes(key));
  if (found == impl_->cells.end()) {
    call.givesText("null");
    return nullptr;
  }
  call.gives(found->second);
  return &found->second;
}

double* ObsVecMap::Insert(const double* key) {
  Call call(impl_->self, "Insert");
  const auto [place, isNew] = impl_->cells.try_emplace(impl_->bytes(key), 0.0);
  call.givesText(isNew ? "new cell" : "old cell");
  return &place->second;
}
