#include <algorithm>
#include <utility>

#include "tests/memory/plain_table.h"

namespace workbench {
namespace {

class PlainFeed final : public CaseFeed {
 public:
  PlainFeed(std::shared_ptr<const PlainTable> table, ColumnViews views,
            std::shared_ptr<SplitCursor> cursor, int64_t chunkSize, FeedObserver& observer,
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
    if (done_ || !observer_.mayContinue()) return finish(false);
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
    for (size_t i = 0; i < table_->columnCount(); ++i) {
      ColumnView view = table_->view(i);
      view.words += row_ * view.stride;
      views_[table_->variableOf(i)] = view;
    }
    chunk_.weights = table_->weights() == nullptr ? nullptr : table_->weights() + row_;
    chunk_.count = end - row_;
    chunk_.groupEnd = false;
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
    if (complete) observer_.passComplete(cases_);
    done_ = true;
    return nullptr;
  }

  std::shared_ptr<const PlainTable> table_;
  ColumnViews views_;
  std::shared_ptr<SplitCursor> cursor_;
  int64_t chunkSize_;
  FeedObserver& observer_;
  int64_t cases_;
  CountedChunk chunk_;
  int64_t row_ = 0;
  size_t group_ = 0;
  bool done_ = false;
};

}  // namespace

std::unique_ptr<CaseFeed> makePlainFeed(std::shared_ptr<const PlainTable> table, ColumnViews views,
                                        std::shared_ptr<SplitCursor> cursor, int64_t chunkSize,
                                        FeedObserver& observer, int64_t cases) {
  return std::make_unique<PlainFeed>(std::move(table), std::move(views), std::move(cursor),
                                     chunkSize, observer, cases);
}

}  // namespace workbench
