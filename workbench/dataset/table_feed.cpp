#include <algorithm>
#include <utility>

#include "workbench/dataset/case_table.h"

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

class TableFeed final : public CaseFeed {
 public:
  TableFeed(std::shared_ptr<const CaseTable> table, ColumnViews views,
            std::shared_ptr<SplitCursor> cursor, int64_t chunkSize, FeedObserver* observer,
            int64_t cases)
      : table_(std::move(table)),
        views_(std::move(views)),
        cursor_(std::move(cursor)),
        chunkSize_(std::min(chunkSize, kMostChunkCases)),
        observer_(observer),
        cases_(cases) {
    chunk_.columns = views_.data();
  }

  const CaseChunk* NextChunk() override {
    if (done_ || (observer_ != nullptr && !observer_->mayContinue())) return finish(false);
    const auto& groups = table_->groups();
    const bool split = !groups.empty();
    const int64_t end = !split                   ? table_->caseCount()
                        : group_ < groups.size() ? groups[group_].end
                                                 : row_;
    if (row_ < end) return cases(std::min(end, row_ + chunkSize_));
    if (split && group_ < groups.size()) return marker();
    return finish(true);
  }

 private:
  const CaseChunk* cases(int64_t end) {
    showCases(*table_, row_, end, views_, chunk_);
    if (!table_->groups().empty()) cursor_->values = &table_->groups()[group_].values;
    row_ = end;
    return &chunk_;
  }

  const CaseChunk* marker() {
    ++group_;
    chunk_.count = 0;
    chunk_.groupEnd = true;
    return &chunk_;
  }

  const CaseChunk* finish(bool complete) {
    if (complete && observer_ != nullptr) observer_->passComplete(cases_);
    done_ = true;
    return nullptr;
  }

  std::shared_ptr<const CaseTable> table_;
  ColumnViews views_;
  std::shared_ptr<SplitCursor> cursor_;
  int64_t chunkSize_;
  FeedObserver* observer_;
  int64_t cases_;
  CaseChunk chunk_;
  int64_t row_ = 0;
  size_t group_ = 0;
  bool done_ = false;
};

}  // namespace

ColumnViews::ColumnViews(int32_t variableCount)
    : views_(static_cast<size_t>(variableCount), ColumnView{missingWords(), 1}) {}

void ColumnViews::showMissing(const ActiveDataset& dataset, VarIndex variable) {
  const bool isString = dataset.declaration(variable).isString();
  (*this)[variable] = isString ? ColumnView{blankWords(), 0} : ColumnView{missingWords(), 1};
}

void showCases(const CaseTable& table, int64_t begin, int64_t end, ColumnViews& views,
               CaseChunk& chunk) {
  for (size_t i = 0; i < table.columnCount(); ++i) {
    ColumnView view = table.view(i);
    view.words += begin * view.stride;
    views[table.variableOf(i)] = view;
  }
  chunk.weights = table.weights() == nullptr ? nullptr : table.weights() + begin;
  chunk.count = end - begin;
  chunk.groupEnd = false;
}

std::unique_ptr<CaseFeed> makeTableFeed(std::shared_ptr<const CaseTable> table, ColumnViews views,
                                        std::shared_ptr<SplitCursor> cursor, int64_t chunkSize,
                                        FeedObserver* observer, int64_t cases) {
  return std::make_unique<TableFeed>(std::move(table), std::move(views), std::move(cursor),
                                     chunkSize, observer, cases);
}

}  // namespace workbench
