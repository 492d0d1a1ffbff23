/// Files of delimited text (CSV, TSV) as coded columns: the hot path of most runs.
///
/// Nothing is interpreted but the columns that are asked for, and every different text of a column
/// only once, so that a column's kind comes from all its values at no cost. What a text is, and
/// what a column is, `workbench/values/field.h` says.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/values/field.h"

namespace workbench {

/// One of the files of a data set.
struct DelimitedPart {
  std::string path;   ///< "-" is standard input
  std::string label;  ///< names it in messages
  /// Texts of the columns that come from its path, as many as DelimitedOptions::constants.
  std::vector<std::string> constants;
};

struct DelimitedOptions {
  std::vector<DelimitedPart> parts;    ///< at least one; the cases come in this order
  std::vector<std::string> constants;  ///< names of the columns that come from paths
  char delimiter = 0;                  ///< 0: found from the first part
  FieldRules rules;
  std::string encoding;  ///< a name that ICU knows; empty: UTF-8
  /// Set from outside to make all reading throw Interrupted; may be null.
  const std::atomic<bool>* interrupted = nullptr;
  unsigned threads = 0;                  ///< 0: as many as the machine has cores
  size_t blockBytes = size_t{1} << 18U;  ///< read at a time
  /// Bytes of a record, its quotes included: without a limit a quote that is never closed would
  /// take all the memory there is.
  size_t longestRecord = size_t{128} << 20U;
};

/// A column that is wanted.
struct DelimitedColumn {
  size_t column = 0;  ///< position in names()
  DeclaredType type = DeclaredType::kNone;
  std::vector<std::string> missingTexts;  ///< of the dictionary
};

/// When equal cases are counted instead of held one by one.
enum class Counting : uint8_t {
  kAuto,  ///< while there are few different ones
  kAlways,
  kNever
};

struct DelimitedRequest {
  std::vector<DelimitedColumn> columns;
  Counting counting = Counting::kAuto;
  size_t memoryLimit = size_t{512} << 20U;  ///< bytes of cases and of their different texts
  /// Told now and then, from any thread, one at a time: percent of the bytes (negative when
  /// unknown), cases so far.
  std::function<void(double percent, int64_t cases)> progress;
};

/// Where a value stands for the first time.
struct DelimitedPlace {
  uint32_t part = 0;
  uint64_t line = 0;  ///< on which its record begins, from 1; 0 for a column that comes from a path
};

/// A column as read. Codes count from 0, which is the missing value (a blank text in a column of
/// texts) whether it occurs or not; 1, 2, ... are the different values in ascending order: numbers
/// by size, texts by their bytes.
struct CodedColumn {
  FieldKind kind = FieldKind::kNumber;
  bool declared = false;               ///< a dictionary's type made it what it is
  std::vector<double> numbers;         ///< by code, NaN first; empty for texts
  std::vector<std::string> texts;      ///< by code, without trailing spaces; empty for the others
  std::vector<FieldKind> kinds;        ///< of texts by code: what each is by itself
  std::vector<DelimitedPlace> places;  ///< by code

  /// The entries: in that one of the four which is not empty when there are entries. `wide` holds
  /// the numbers themselves (NaN when missing), where different values are too many for codes;
  /// `numbers` and `places` are empty then.
  std::vector<uint8_t> codes1;
  std::vector<uint16_t> codes2;
  std::vector<uint32_t> codes4;
  std::vector<double> wide;

  bool isWide() const { return !wide.empty(); }
  uint32_t code(size_t entry) const {
    return !codes1.empty() ? codes1[entry] : !codes2.empty() ? codes2[entry] : codes4[entry];
  }
};

/// What was read. The first `repeats.size()` entries are combinations of values, each with a number
/// of cases that have it; every other entry is a case of its own, in file order.
struct DelimitedCases {
  std::vector<CodedColumn> columns;  ///< as requested
  std::vector<int64_t> repeats;
  size_t entries = 0;
  int64_t cases = 0;  ///< in all
  /// False: the memory limit was passed. There are no entries then, and `columns` tell their kinds
  /// only; the cases can be had by forEachBlock.
  bool complete = true;
};

/// A run of cases, valid during the call that gets it.
struct DelimitedBlock {
  size_t cases = 0;
  /// By column as requested; `numbers` of all kinds but texts (NaN when missing), `texts` of those
  /// (without trailing spaces, empty when missing) with what each is by itself.
  struct Column {
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
    std::vector<FieldKind> kinds;
  };
  std::vector<Column> columns;
  std::function<DelimitedPlace(size_t record)> placeOf;
};

/// A set of files with the same columns. Standard input and pipes are kept in a temporary file, so
/// that they can be read more than once.
///
/// All that is wrong with the data is a DataError that says file, line, column, value, reason and
/// remedy; Interrupted when the flag was set.
class DelimitedData {
 public:
  /// Reads the heads.
  explicit DelimitedData(DelimitedOptions options);
  ~DelimitedData();
  DelimitedData(const DelimitedData&) = delete;
  DelimitedData& operator=(const DelimitedData&) = delete;

  /// Of the columns of the first part, then of the constants. An empty one is a column that cannot
  /// be named.
  const std::vector<std::string>& names() const;
  char delimiter() const;
  /// Of all parts; negative when unknown (compressed, a pipe that was not read yet).
  int64_t bytes() const;

  /// Reads all cases. The same request on the same data gives the same columns, whatever the number
  /// of threads; only how many of the cases were counted may differ.
  DelimitedCases read(const DelimitedRequest& request);

  /// Hands over all cases in file order, block by block, on the thread of the caller; `cases` is
  /// what read() gave for the same request.
  void forEachBlock(const DelimitedRequest& request, const DelimitedCases& cases,
                    const std::function<void(const DelimitedBlock&)>& take);

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace workbench
