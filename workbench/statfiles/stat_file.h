/// Files of statistics packages: what they say of their columns, and their cases.
///
/// Everything that is wrong with a file, whatever it does to the library that takes it apart, is a
/// DataError here.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/statfiles/display_format.h"
#include "workbench/statfiles/library_reader.h"
#include "workbench/statfiles/text_decoder.h"

namespace workbench {

class MessageStream;

/// A file that is to be read, and how its texts are to be understood.
struct StatSource {
  StatFormat format = StatFormat::kDta;
  std::string path;
  std::string label;                               ///< names it in messages
  std::string encoding;                            ///< empty: the one that the file names
  const std::atomic<bool>* interrupted = nullptr;  ///< outlives the reading; may be null
};

/// A value with a label: a number (a missing one by extendedMissing) or a text.
struct StatValueLabel {
  bool isText = false;
  double number = 0.0;
  std::string text;
  std::string label;
};
using StatLabelSets = std::map<std::string, std::vector<StatValueLabel>>;

struct StatColumn {
  std::string name;
  std::string label;
  StatUnit unit = StatUnit::kNumber;
  std::string labelSet;  ///< the name of its value labels, whether there are such or not
  bool isText = false;
};

struct StatHead {
  std::string encoding;
  int64_t cases = -1;  ///< negative when the file does not say
  std::vector<StatColumn> columns;
  StatLabelSets labels;
};

/// What stands before and after the cases. Of a catalogue there are no columns. Throws DataError
/// and Interrupted.
StatHead readStatHead(const StatSource& source);

/// Reads cases in file order, block by block. Throws DataError and Interrupted.
class StatCaseReader {
 public:
  /// `columns` are positions in the head, each once. The source and the head outlive the reader.
  StatCaseReader(const StatSource& source, const StatHead& head,
                 const std::vector<size_t>& columns);
  /// The same from messages that somebody sends.
  StatCaseReader(const StatSource& source, const StatHead& head, std::vector<size_t> columns,
                 std::unique_ptr<MessageStream> messages);
  ~StatCaseReader();

  /// False after the last block.
  bool next();
  size_t cases() const { return cases_; }
  /// How many cases came in the blocks before this one.
  uint64_t casesBefore() const { return before_; }
  /// Bytes of the file that were read so far.
  uint64_t position() const { return position_; }

  /// Of the block, by place in `columns`: NaN when system-missing, else as the file counts them or
  /// by extendedMissing. Valid until the next block.
  const std::vector<double>& numbers(size_t place) const { return values_[place].numbers; }
  const std::vector<std::string_view>& texts(size_t place) const { return values_[place].texts; }

 private:
  struct Values {
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
    std::string decoded;
  };
  void takeBlock(std::string_view message);
  void takeNumbers(std::string_view bytes, size_t place);
  void takeTexts(std::string_view lengths, std::string_view bytes, size_t place);

  const StatSource& source_;
  const StatHead& head_;
  std::vector<size_t> columns_;
  TextDecoder decoder_;
  std::unique_ptr<MessageStream> messages_;
  std::vector<Values> values_;
  size_t cases_ = 0;
  uint64_t before_ = 0;
  uint64_t position_ = 0;
};

}  // namespace workbench
