#include "workbench/dataset/json_members.h"

#include <fmt/format.h>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

Spelling spellingOf(JsonValue::Type type) {
  switch (type) {
    case JsonValue::Type::kBoolean:
      return Spelling::kBoolean;
    case JsonValue::Type::kNumber:
      return Spelling::kNumber;
    case JsonValue::Type::kString:
    case JsonValue::Type::kNested:  // asked for by queries only, which take its JSON
      return Spelling::kString;
    case JsonValue::Type::kNull:
      break;
  }
  return Spelling::kMissing;
}

}  // namespace

JsonMembers::JsonMembers(const std::vector<SourceVariable>& variables, const CaseRequest& request,
                         const DataFile& file)
    : label_(file.label), members_(request.columns.size()) {
  const size_t ofRecords = variables.size() - file.pathValues.size();
  for (size_t i = 0; i < request.columns.size(); ++i) {
    const size_t column = request.columns[i].column;
    if (column < ofRecords) {
      wanted_.emplace(variables[column].variable.name, i);
    } else {
      members_[i] = {Spelling::kField, file.pathValues[column - ofRecords], 0};
    }
  }
}

void JsonMembers::beginRecord(uint64_t line) {
  for (const auto& [name, position] : wanted_) {
    members_[position].spelling = Spelling::kMissing;
    members_[position].line = 0;
  }
  line_ = line;
}

void JsonMembers::member(const std::string& name, const JsonValue& value, uint64_t line) {
  const auto [begin, end] = wanted_.equal_range(name);
  for (auto found = begin; found != end; ++found) take(members_[found->second], name, value, line);
}

void JsonMembers::take(JsonMember& into, const std::string& name, const JsonValue& value,
                       uint64_t line) const {
  if (into.line != 0) {
    throw DataError(fmt::format("{}, line {}: the record has the key {} twice; remove one.", label_,
                                line, excerpt(name)));
  }
  into.spelling = spellingOf(value.type);
  into.text = into.spelling == Spelling::kMissing ? std::string_view() : value.text;
  into.line = line;
}

void JsonMembers::endRecord() {
  for (JsonMember& each : members_) {
    if (each.line == 0) each.line = line_;
  }
  takeRecord(members_);
}

}  // namespace workbench
