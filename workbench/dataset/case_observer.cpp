#include "workbench/dataset/case_observer.h"

#include <utility>

#include "workbench/dataset/active_dataset.h"

namespace workbench {
namespace {

class ObservedFeed final : public CaseFeed {
 public:
  ObservedFeed(std::unique_ptr<CaseFeed> feed, ActiveDataset& dataset, CaseObserver& observer)
      : feed_(std::move(feed)), dataset_(dataset), observer_(observer) {}

  const CaseChunk* NextChunk() override {
    const CaseChunk* chunk = feed_->NextChunk();
    if (chunk == nullptr) {
      if (!ended_ && !dataset_.failed()) observer_.endPass();
      ended_ = true;
    } else if (chunk->groupEnd) {
      observer_.endGroup();
    } else if (chunk->count > 0) {
      observer_.takeCases(static_cast<const CountedChunk&>(*chunk));
    }
    return chunk;
  }

 private:
  std::unique_ptr<CaseFeed> feed_;
  ActiveDataset& dataset_;
  CaseObserver& observer_;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<CaseFeed> observed(std::unique_ptr<CaseFeed> feed, ActiveDataset& dataset,
                                   CaseObserver& observer) {
  return std::make_unique<ObservedFeed>(std::move(feed), dataset, observer);
}

}  // namespace workbench
