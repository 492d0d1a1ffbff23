/// Cases in memory as codes: each different value of a column once, and for each row which one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/variable.h"

namespace workbench {

/// Texts one after the other in one block of bytes.
class TextList {
 public:
  void add(std::string_view text) {
    bytes_ += text;
    ends_.push_back(bytes_.size());
  }
  std::string_view operator[](size_t index) const {
    const size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(bytes_).substr(begin, ends_[index] - begin);
  }
  size_t size() const { return ends_.size(); }
  size_t memory() const { return bytes_.capacity() + ends_.capacity() * sizeof(size_t); }

 private:
  std::string bytes_;
  std::vector<size_t> ends_;
};

/// Codes of growing width: one byte each until one of them needs two, or four.
class CodeList {
 public:
  CodeList() = default;
  explicit CodeList(std::vector<uint8_t> codes) : one_(std::move(codes)) {}
  explicit CodeList(std::vector<uint16_t> codes) : two_(std::move(codes)), width_(2) {}
  explicit CodeList(std::vector<uint32_t> codes) : four_(std::move(codes)), width_(4) {}

  void append(const uint32_t* codes, size_t count);
  uint32_t operator[](size_t row) const {
    return width_ == 1 ? one_[row] : width_ == 2 ? two_[row] : four_[row];
  }
  size_t memory() const { return one_.capacity() + 2 * two_.capacity() + 4 * four_.capacity(); }
  /// Calls `visit` with the codes as a vector of uint8_t, uint16_t or uint32_t.
  template <typename Visit>
  void visit(Visit&& visit) const {
    if (width_ == 1) {
      visit(one_);
    } else if (width_ == 2) {
      visit(two_);
    } else {
      visit(four_);
    }
  }
  /// Brings the rows into another order: row i becomes what row order[i] was.
  void permute(const std::vector<uint32_t>& order);
  /// Replaces each code by another one: to[code].
  void recode(const std::vector<uint32_t>& to);

 private:
  void widen(int width);

  std::vector<uint8_t> one_;  // the codes are in the vector of their width
  std::vector<uint16_t> two_;
  std::vector<uint32_t> four_;
  int width_ = 1;
};

/// One column. Numbers are as cases carry them (kSystemMissing for missing ones, no NaN, one zero),
/// texts are without trailing spaces ("" is blank). Codes stand for different values, but not every
/// value of the list has to occur. A column of numbers with too many different values has no codes
/// but the numbers themselves, row by row.
struct CaseColumn {
  ValueKind kind = ValueKind::kNumber;
  bool coded = true;
  std::vector<double> numbers;  ///< the different values; those of all rows when not `coded`
  TextList texts;               ///< the different values of a string column
  CodeList codes;

  bool isString() const { return kind == ValueKind::kString; }
  size_t valueCount() const { return isString() ? texts.size() : numbers.size(); }
  double number(size_t row) const { return numbers[coded ? codes[row] : row]; }
  std::string_view text(size_t row) const { return texts[codes[row]]; }
  size_t memory() const;
  /// Bytes of the widest text, at least 1; 0 for numbers.
  int32_t width() const;
  /// As CodeList::permute.
  void permute(const std::vector<uint32_t>& order);
  /// Gives a column of numbers codes.
  void encode();
  /// Takes a column of numbers its codes.
  void decode(size_t rows);
};

/// The cases of a data set, as far as its columns were asked for: any number of counted
/// combinations, then single cases in file order.
struct CodedCases {
  std::vector<CaseColumn> columns;  ///< in the order in which they were asked for
  std::vector<double> counts;       ///< cases of each combination; every row beyond is one case
  /// Of each combination the sum of its raw weights that are not missing, when the source knows it
  /// and the weight in the last column is the rounded one; else empty.
  std::vector<double> weightSums;
  size_t rows = 0;
  int64_t cases = 0;  ///< in all; -1 when reading ended as soon as they did not fit
  /// False: they do not fit into the memory that was allowed. There are no rows then.
  bool complete = true;

  size_t memory() const;
};

}  // namespace workbench
