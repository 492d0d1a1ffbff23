/// The texts of all files of a data set, cut into blocks of whole records.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/delimited/byte_input.h"
#include "workbench/delimited/part_head.h"
#include "workbench/delimited/record_index.h"
#include "workbench/delimited/structure.h"
#include "workbench/delimited/text_stream.h"

namespace workbench {

/// A file of the data set, opened.
struct OpenPart {
  std::string path;
  std::string label;
  std::unique_ptr<ByteInput> input;
  PartHead head;
  size_t columns = 0;  ///< fields of each record
};

/// Whole records of one file, and where their fields are.
class TextBlock {
 public:
  size_t number = 0;  ///< in the data set
  uint32_t part = 0;
  uint64_t firstLine = 1;  ///< on which the text begins
  /// What is wrong with what follows the last record, as a message.
  std::optional<std::string> problem;

  std::string_view text() const { return {bytes_.get(), size_}; }
  RecordIndex& index() { return index_; }
  const RecordIndex& index() const { return index_; }
  /// As it stands between delimiters.
  std::string_view field(size_t record, size_t column) const;
  uint64_t lineOf(size_t record) const { return firstLine + index_.lineOf(record); }

 private:
  friend class BlockReader;
  char* roomFor(size_t bytes);  ///< the text is lost

  std::unique_ptr<char[]> bytes_;
  size_t capacity_ = 0;
  size_t size_ = 0;
  TextSurvey survey_;
  bool indexed_ = false;
  RecordIndex index_;
};

/// Hands blocks out in their order to any number of threads.
class BlockReader {
 public:
  /// The parts outlive the reader.
  BlockReader(const std::vector<OpenPart>& parts, const std::string& encoding, char delimiter,
              size_t blockBytes, size_t longestRecord, const std::atomic<bool>* interrupted);

  /// False when there are no more. The block's index is there, its bytes are checked: what is wrong
  /// with them or with a record cuts the block short and is its `problem`. Throws Interrupted.
  bool next(TextBlock& block);

  /// Hands out no more blocks.
  void stop() { stopped_ = true; }

  /// Bytes of all inputs that were used.
  uint64_t position() const { return position_; }

 private:
  bool fetch(TextBlock& block);
  bool openNextPart();
  size_t fill(char* to, size_t most);
  bool cut(TextBlock& block, size_t size, bool final);
  void skipHeader(uint64_t bytes);
  void checkBytes(TextBlock& block) const;

  const std::vector<OpenPart>& parts_;
  const std::string& encoding_;
  char delimiter_;
  size_t blockBytes_;
  size_t longestRecord_;
  const std::atomic<bool>* interrupted_;

  std::mutex mutex_;
  std::atomic<bool> stopped_{false};
  std::atomic<uint64_t> position_{0};
  size_t nextPart_ = 0;
  size_t nextNumber_ = 0;
  std::unique_ptr<TextStream> stream_;
  uint64_t positionBefore_ = 0;  // of the parts that were read
  uint64_t nextLine_ = 1;
  std::string carry_;  // what follows the last record that was handed out
};

}  // namespace workbench
