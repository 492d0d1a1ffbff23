#include "workbench/dataset/pass_progress.h"

#include <utility>

namespace workbench {
namespace {

/// Groups may be small, and so are their chunks then: not each of them is told of.
constexpr int64_t kToldEvery = 65'536;

class ToldFeed final : public CaseFeed {
 public:
  ToldFeed(std::unique_ptr<CaseFeed> feed, Phase phase, int64_t rows,
           const ProgressCallback& progress)
      : feed_(std::move(feed)), phase_(phase), rows_(rows), progress_(progress) {}

  const CaseChunk* NextChunk() override {
    if (delivered_ >= next_) tell();
    const CaseChunk* chunk = feed_->NextChunk();
    if (chunk != nullptr) delivered_ += chunk->count;
    return chunk;
  }

 private:
  void tell() {
    const double percent =
        rows_ > 0 ? 100.0 * static_cast<double>(delivered_) / static_cast<double>(rows_) : -1.0;
    progress_(phase_, percent, delivered_);
    next_ = delivered_ + kToldEvery;
  }

  std::unique_ptr<CaseFeed> feed_;
  Phase phase_;
  int64_t rows_;
  const ProgressCallback& progress_;
  int64_t delivered_ = 0;
  int64_t next_ = 0;
};

}  // namespace

std::unique_ptr<CaseFeed> withProgress(std::unique_ptr<CaseFeed> feed, Phase phase, int64_t rows,
                                       const ProgressCallback& progress) {
  if (feed == nullptr || !progress) return feed;
  return std::make_unique<ToldFeed>(std::move(feed), phase, rows, progress);
}

}  // namespace workbench
