/// The names of the members that JSON records have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/json/json_records.h"

namespace workbench {

/// Collects the names of all records, which every file with a record must have.
class JsonNames final : public JsonVisitor {
 public:
  /// Every 1,024 records `report` is told how many there were, in all files.
  explicit JsonNames(std::function<void(int64_t)> report) : report_(std::move(report)) {}

  void beginFile(const std::string& label);
  void endFile() const;
  void beginRecord(uint64_t) override {
    if (firstFile_.empty()) firstFile_ = file_;
    hasRecords_ = true;
    if (++records_ % 1024 == 0) report_(records_);
  }
  void member(const std::string& name, const JsonValue& value, uint64_t line) override;
  void endRecord() override {}
  bool wantsNested(const std::string&) const override { return false; }

  std::vector<SourceVariable> take() { return std::move(variables_); }

 private:
  size_t add(const std::string& name, uint64_t line);
  [[noreturn]] void refuse(const char* difference, const std::string& name) const;

  std::vector<SourceVariable> variables_;
  std::vector<bool> inFile_;  // by variable
  std::unordered_map<std::string, size_t> known_;
  std::unordered_map<std::string, size_t> folded_;
  std::string file_;
  std::string firstFile_;  // with a record
  bool hasRecords_ = false;
  std::function<void(int64_t)> report_;
  int64_t records_ = 0;
};

}  // namespace workbench
