#include "workbench/delimited/reading_pass.h"

#include <algorithm>
#include <limits>
#include <thread>
#include <utility>

#include "workbench/counting/worth_counting.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kFieldsTogether = 4096;

template <class Code>
std::vector<Code> narrowed(const std::vector<uint32_t>& codes, size_t count) {
  return {codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(count)};
}

size_t bytesOf(const CasePiece& piece) {
  size_t bytes = sizeof piece;
  for (const CasePiece::Column& column : piece.columns) {
    bytes +=
        sizeof column +
        std::visit([](const auto& values) { return values.capacity() * sizeof(values.front()); },
                   column);
  }
  return bytes;
}

}  // namespace

ReadShare::ReadShare(const std::vector<ColumnPlan>& plans) : counted(plans.size()) {
  for (size_t i = 0; i < plans.size(); ++i) columns.emplace_back(plans[i], i);
}

/// A thread at work on its share.
class ReadingPass::Worker {
 public:
  Worker(ReadingPass& pass, ReadShare& share)
      : pass_(pass),
        share_(share),
        counting_(pass.options_.counting != Counting::kNever),
        codes_(share.columns.size()),
        numbers_(share.columns.size()) {}

  void take(const TextBlock& block) {
    share_.cases += static_cast<int64_t>(block.index().records());
    if (pass_.overLimit_) return takeKinds(block);
    if (share_.columns.empty()) return;
    for (ColumnCoder& column : share_.columns) column.chooseForm();
    readColumns(block);
    if (counting_) counting_ = mayCount();
    if (counting_) {
      count(block.index().records());
    } else {
      keep(block);
    }
    account();
  }

 private:
  void readColumns(const TextBlock& block) {
    const size_t records = block.index().records();
    for (size_t i = 0; i < share_.columns.size(); ++i) {
      if (share_.columns[i].isWide()) {
        numbers_[i].resize(records);
        share_.columns[i].readNumbers(block, numbers_[i].data());
      } else {
        codes_[i].resize(std::max(codes_[i].size(), records));
      }
    }
    readCodes(block);
  }

  /// All columns of some records, then of the next ones: so few that they stay in the processor's
  /// cache.
  void readCodes(const TextBlock& block) {
    const size_t records = block.index().records();
    const size_t together = std::max<size_t>(16, kFieldsTogether / block.index().columns());
    for (size_t first = 0; first < records; first += together) {
      const size_t last = std::min(records, first + together);
      for (size_t i = 0; i < share_.columns.size(); ++i) {
        if (share_.columns[i].isWide()) continue;
        share_.columns[i].readCodes(block, first, last, codes_[i].data());
      }
    }
  }

  bool mayCount() const {
    return std::none_of(share_.columns.begin(), share_.columns.end(),
                        [](const ColumnCoder& column) { return column.isWide(); });
  }

  void count(size_t records) {
    std::vector<size_t> different;
    for (const ColumnCoder& column : share_.columns) different.push_back(column.fields().size());
    share_.counted.fit(different);
    combinations_.assign(records * share_.counted.words(), 0);
    for (size_t column = 0; column < codes_.size(); ++column) {
      share_.counted.pack(column, codes_[column].data(), records, combinations_.data());
    }
    share_.counted.addAll(combinations_.data(), records);
    counting_ = pass_.options_.counting == Counting::kAlways ||
                worthCounting_.stillPays(share_.counted, records);
  }

  void keep(const TextBlock& block) {
    CasePiece piece;
    piece.block = block.number;
    piece.records = block.index().records();
    if (piece.records == 0) return;
    for (size_t i = 0; i < share_.columns.size(); ++i) {
      const size_t different = share_.columns[i].fields().size();
      if (share_.columns[i].isWide()) {
        piece.columns.emplace_back(numbers_[i]);
      } else if (different <= size_t{1} << 8U) {
        piece.columns.emplace_back(narrowed<uint8_t>(codes_[i], piece.records));
      } else if (different <= size_t{1} << 16U) {
        piece.columns.emplace_back(narrowed<uint16_t>(codes_[i], piece.records));
      } else {
        piece.columns.emplace_back(narrowed<uint32_t>(codes_[i], piece.records));
      }
    }
    pieceBytes_ += bytesOf(piece);
    share_.pieces.push_back(std::move(piece));
  }

  /// Tells the others how much memory this share takes.
  void account() {
    // When all cases are read, one column after the other is there twice.
    const size_t twice = pieceBytes_ / share_.columns.size();
    size_t bytes = pieceBytes_ + twice + share_.counted.memory();
    for (const ColumnCoder& column : share_.columns) bytes += column.memory();
    const size_t all = pass_.memory_ += bytes - accounted_;
    accounted_ = bytes;
    if (all > pass_.options_.memoryLimit) pass_.overLimit_ = true;
  }

  void takeKinds(const TextBlock& block) {
    if (!std::exchange(dropped_, true)) {
      share_.pieces = {};
      share_.counted = CombinationTable(share_.columns.size());
    }
    for (ColumnCoder& column : share_.columns) column.readKinds(block);
  }

  ReadingPass& pass_;
  ReadShare& share_;
  bool counting_;
  WorthCounting worthCounting_;
  bool dropped_ = false;
  std::vector<std::vector<uint32_t>> codes_;  // of the block, by column
  std::vector<std::vector<double>> numbers_;
  std::vector<uint64_t> combinations_;  // likewise, packed
  size_t pieceBytes_ = 0;
  size_t accounted_ = 0;
};

ReadingPass::ReadingPass(BlockReader& reader, const std::vector<ColumnPlan>& plans,
                         PassOptions options)
    : reader_(reader), plans_(plans), options_(std::move(options)) {
  for (unsigned i = 0; i < std::max(1U, options_.threads); ++i) shares_.emplace_back(plans_);
}

void ReadingPass::run() {
  std::vector<std::thread> others;
  for (size_t share = 1; share < shares_.size(); ++share) {
    others.emplace_back([this, share] { work(share); });
  }
  work(0);
  for (std::thread& other : others) other.join();
  if (failure_) std::rethrow_exception(failure_);
}

void ReadingPass::work(size_t share) {
  Worker worker(*this, shares_[share]);
  TextBlock block;
  size_t number = std::numeric_limits<size_t>::max();  // of no block: after all others
  try {
    while (reader_.next(block)) {
      number = block.number;
      worker.take(block);
      cases_ += static_cast<int64_t>(block.index().records());
      if (block.problem) throw DataError(*block.problem);
      report();
      number = std::numeric_limits<size_t>::max();
    }
  } catch (...) {
    fail(number, std::current_exception());
  }
}

void ReadingPass::fail(size_t block, std::exception_ptr error) {
  reader_.stop();
  const std::lock_guard lock(failing_);
  if (!failure_ || block < failedBlock_) {
    failure_ = std::move(error);
    failedBlock_ = block;
  }
}

void ReadingPass::report() {
  if (!options_.progress) return;
  const std::unique_lock lock(reporting_, std::try_to_lock);
  if (!lock) return;
  const double percent = options_.bytes == 0 ? -1.0
                                             : 100.0 * static_cast<double>(reader_.position()) /
                                                   static_cast<double>(options_.bytes);
  options_.progress(std::min(percent, 100.0), cases_);
}

}  // namespace workbench
