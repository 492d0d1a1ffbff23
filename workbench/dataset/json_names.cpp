#include "workbench/dataset/json_names.h"

#include <fmt/format.h>

#include <algorithm>

#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr const char* kNested =
    "holds lists or objects (line {}); take the part that is wanted with --query";

}  // namespace

void JsonNames::beginFile(const std::string& label) {
  file_ = label;
  hasRecords_ = false;
  inFile_.assign(variables_.size(), false);
}

void JsonNames::endFile() const {
  const auto lacking = std::find(inFile_.begin(), inFile_.end(), false);
  if (!hasRecords_ || lacking == inFile_.end()) return;
  refuse("lacks the key {} of",
         variables_[static_cast<size_t>(lacking - inFile_.begin())].variable.name);
}

void JsonNames::refuse(const char* difference, const std::string& name) const {
  throw DataError(
      fmt::format("{} {} {}. Give all files the same keys (null where there is no "
                  "value), or name fewer files.",
                  file_, fmt::format(fmt::runtime(difference), excerpt(name)), firstFile_));
}

size_t JsonNames::add(const std::string& name, uint64_t line) {
  if (file_ != firstFile_) refuse("has the key {}, which is not in", name);
  inFile_.push_back(true);
  SourceVariable& variable = variables_.emplace_back(untypedVariable(name));
  const auto [other, isNew] = folded_.emplace(foldCase(name), variables_.size() - 1);
  if (!isNew) {
    SourceVariable& first = variables_[other->second];
    variable.unusable = fmt::format(
        "the keys {} and {} (line {}) differ in the case of their letters alone; rename one",
        excerpt(first.variable.name), excerpt(name), line);
    first.unusable = variable.unusable;
  }
  return variables_.size() - 1;
}

void JsonNames::member(const std::string& name, const JsonValue& value, uint64_t line) {
  if (name.empty()) return;  // it cannot be named by a command either
  const auto [at, isNew] = known_.emplace(name, 0);
  if (isNew) at->second = add(name, line);
  inFile_[at->second] = true;
  SourceVariable& variable = variables_[at->second];
  if (value.type == JsonValue::Type::kNested && variable.unusable.empty()) {
    variable.unusable = name + " " + fmt::format(kNested, line);
  }
}

}  // namespace workbench
