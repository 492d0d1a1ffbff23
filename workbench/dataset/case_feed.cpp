#include "workbench/dataset/case_feed.h"

#include <algorithm>

namespace workbench {
namespace {

// Wide enough for the widest string that a variable may have.
constexpr size_t kBlankWords = 4096;

const double* missingWords() {
  static const std::vector<double> missing(kMostChunkCases, kSystemMissing);
  return missing.data();
}

const double* blankWords() {
  static const std::vector<double> blanks = [] {
    std::vector<double> words(kBlankWords);
    std::fill_n(reinterpret_cast<char*>(words.data()), kBlankWords * sizeof(double), ' ');
    return words;
  }();
  return blanks.data();
}

}  // namespace

ColumnViews::ColumnViews(int32_t variableCount)
    : views_(static_cast<size_t>(variableCount), ColumnView{missingWords(), 1}) {}

void ColumnViews::showMissing(const ActiveDataset& dataset, VarIndex variable) {
  const bool isString = dataset.declaration(variable).isString();
  (*this)[variable] = isString ? ColumnView{blankWords(), 0} : ColumnView{missingWords(), 1};
}

}  // namespace workbench
