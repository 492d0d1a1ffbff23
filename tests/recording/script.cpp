#include "tests/recording/script.h"

#include <algorithm>
#include <stdexcept>

namespace recording {
namespace {

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

VarIndex Script::addNumeric(const std::string& name, const std::string& label) {
  ScriptVariable variable;
  variable.name = name;
  variable.label = label;
  variables.push_back(variable);
  return static_cast<VarIndex>(variables.size() - 1);
}

VarIndex Script::addString(const std::string& name, int32_t width, const std::string& label) {
  const VarIndex index = addNumeric(name, label);
  variables.back().width = width;
  variables.back().formatType = 1;
  return index;
}

void Script::addCase(std::vector<Value> values, int times) {
  if (values.size() != variables.size()) throw std::logic_error("a case has one value a variable");
  for (size_t i = 0; i < values.size(); ++i) {
    const bool isText = std::holds_alternative<std::string>(values[i]);
    if (isText != (variables[i].width > 0)) {
      throw std::logic_error("value of the wrong kind for " + variables[i].name);
    }
  }
  rows.insert(rows.end(), static_cast<size_t>(times), {ScriptRow::Kind::kCase, std::move(values)});
}

VarIndex Script::find(std::string_view name) const {
  for (size_t i = 0; i < variables.size(); ++i) {
    if (variables[i].name == name) return static_cast<VarIndex>(i);
  }
  for (size_t i = 0; i < variables.size(); ++i) {
    if (sameName(variables[i].name, name)) return static_cast<VarIndex>(i);
  }
  return -1;
}

}  // namespace recording
