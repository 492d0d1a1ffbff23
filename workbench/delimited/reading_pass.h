/// One reading of all files by all cores.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

#include "workbench/counting/combination_table.h"
#include "workbench/delimited/block_reader.h"
#include "workbench/delimited/column_coder.h"
#include "workbench/delimited/delimited_data.h"

namespace workbench {

/// The records of one block: codes of the thread that read it, as narrow as they can be, or
/// numbers.
struct CasePiece {
  using Column = std::variant<std::vector<uint8_t>, std::vector<uint16_t>, std::vector<uint32_t>,
                              std::vector<double>>;
  size_t block = 0;
  size_t records = 0;
  std::vector<Column> columns;
};

/// What one thread has read.
struct ReadShare {
  std::vector<ColumnCoder> columns;
  CombinationTable counted;
  std::vector<CasePiece> pieces;  // by block
  int64_t cases = 0;

  explicit ReadShare(const std::vector<ColumnPlan>& plans);
};

struct PassOptions {
  Counting counting = Counting::kAuto;
  size_t memoryLimit = 0;
  unsigned threads = 1;
  uint64_t bytes = 0;  ///< of all inputs; 0 when unknown
  std::function<void(double percent, int64_t cases)> progress;
};

class ReadingPass {
 public:
  ReadingPass(BlockReader& reader, const std::vector<ColumnPlan>& plans, PassOptions options);

  /// Throws the DataError of the first place in the files where something is wrong, and
  /// Interrupted.
  void run();

  std::vector<ReadShare>& shares() { return shares_; }
  /// False: there is no more but the kinds.
  bool complete() const { return !overLimit_; }

 private:
  class Worker;

  void work(size_t share);
  void fail(size_t block, std::exception_ptr error);
  void report();

  BlockReader& reader_;
  const std::vector<ColumnPlan>& plans_;
  PassOptions options_;
  std::vector<ReadShare> shares_;
  std::atomic<size_t> memory_{0};
  std::atomic<bool> overLimit_{false};
  std::atomic<int64_t> cases_{0};
  std::mutex reporting_;
  std::mutex failing_;
  size_t failedBlock_ = 0;
  std::exception_ptr failure_;
};

}  // namespace workbench
