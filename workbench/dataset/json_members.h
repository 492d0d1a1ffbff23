/// The members of JSON records that a read asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/data_files.h"
#include "workbench/dataset/spelled_column.h"
#include "workbench/json/json_records.h"

namespace workbench {

/// One member of a record, or nothing.
struct JsonMember {
  Spelling spelling = Spelling::kMissing;
  std::string text;
  uint64_t line = 0;
};

/// Picks the wanted members of every record of a file and hands them over record by record, in the
/// order of the request. What is asked for twice is there twice.
class JsonMembers : public JsonVisitor {
 public:
  /// `variables`: of the records, then those of the file's path, whose values are in `file`.
  JsonMembers(const std::vector<SourceVariable>& variables, const CaseRequest& request,
              const DataFile& file);

  void beginRecord(uint64_t line) override;
  void member(const std::string& name, const JsonValue& value, uint64_t line) override;
  void endRecord() override;
  bool wantsNested(const std::string& name) const override { return wanted_.count(name) > 0; }

 protected:
  virtual void takeRecord(const std::vector<JsonMember>& members) = 0;
  /// On which the record begins.
  uint64_t line() const { return line_; }
  /// Names the file in messages.
  const std::string& label() const { return label_; }

 private:
  void take(JsonMember& into, const std::string& name, const JsonValue& value, uint64_t line) const;

  std::string label_;
  std::vector<JsonMember> members_;
  std::unordered_multimap<std::string, size_t> wanted_;
  uint64_t line_ = 0;
};

}  // namespace workbench
