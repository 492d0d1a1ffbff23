#include "workbench/dataset/coded_cases.h"

#include <algorithm>

#include "workbench/dataset/value_coder.h"

namespace workbench {
namespace {

int widthFor(uint32_t code) { return code < 0x100 ? 1 : code < 0x10000 ? 2 : 4; }

template <typename Code>
void appendTo(std::vector<Code>& list, const uint32_t* codes, size_t count) {
  const size_t old = list.size();
  list.resize(old + count);
  for (size_t i = 0; i < count; ++i) list[old + i] = static_cast<Code>(codes[i]);
}

template <typename Value>
void reorder(std::vector<Value>& values, const std::vector<uint32_t>& order) {
  std::vector<Value> moved(order.size());
  for (size_t i = 0; i < order.size(); ++i) moved[i] = values[order[i]];
  values = std::move(moved);
}

}  // namespace

void CodeList::append(const uint32_t* codes, size_t count) {
  if (count == 0) return;
  const int needed = widthFor(*std::max_element(codes, codes + count));
  if (needed > width_) widen(needed);
  if (width_ == 1) return appendTo(one_, codes, count);
  if (width_ == 2) return appendTo(two_, codes, count);
  appendTo(four_, codes, count);
}

void CodeList::widen(int width) {
  if (width == 2) {
    two_.assign(one_.begin(), one_.end());
  } else if (width_ == 1) {
    four_.assign(one_.begin(), one_.end());
  } else {
    four_.assign(two_.begin(), two_.end());
    two_ = {};
  }
  one_ = {};
  width_ = width;
}

void CodeList::permute(const std::vector<uint32_t>& order) {
  if (width_ == 1) return reorder(one_, order);
  if (width_ == 2) return reorder(two_, order);
  reorder(four_, order);
}

void CodeList::recode(const std::vector<uint32_t>& to) {
  constexpr size_t kBlock = 4096;
  CodeList recoded;
  std::vector<uint32_t> block;
  visit([&](const auto& codes) {
    for (size_t begin = 0; begin < codes.size(); begin += kBlock) {
      block.clear();
      for (size_t i = begin; i < std::min(begin + kBlock, codes.size()); ++i) {
        block.push_back(to[codes[i]]);
      }
      recoded.append(block.data(), block.size());
    }
  });
  *this = std::move(recoded);
}

size_t CaseColumn::memory() const {
  return numbers.capacity() * sizeof(double) + texts.memory() + codes.memory();
}

int32_t CaseColumn::width() const {
  if (!isString()) return 0;
  size_t widest = 1;
  for (size_t i = 0; i < texts.size(); ++i) widest = std::max(widest, texts[i].size());
  return static_cast<int32_t>(widest);
}

void CaseColumn::permute(const std::vector<uint32_t>& order) {
  if (coded) {
    codes.permute(order);
  } else {
    reorder(numbers, order);
  }
}

void CaseColumn::encode() {
  if (coded) return;
  NumberCoder coder;
  std::vector<double> values;
  std::vector<uint32_t> found(numbers.size());
  for (size_t row = 0; row < numbers.size(); ++row) found[row] = coder.code(numbers[row], values);
  codes.append(found.data(), found.size());
  numbers = std::move(values);
  coded = true;
}

void CaseColumn::decode(size_t rows) {
  if (!coded) return;
  std::vector<double> decoded(rows);
  codes.visit([&](const auto& list) {
    for (size_t row = 0; row < rows; ++row) decoded[row] = numbers[list[row]];
  });
  numbers = std::move(decoded);
  codes = CodeList();
  coded = false;
}

size_t CodedCases::memory() const {
  size_t total = (counts.capacity() + weightSums.capacity()) * sizeof(double);
  for (const CaseColumn& column : columns) total += column.memory();
  return total;
}

}  // namespace workbench
