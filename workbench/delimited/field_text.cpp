#include "workbench/delimited/field_text.h"

namespace workbench {
namespace {

constexpr std::string_view kBlanks = " \t";

}  // namespace

std::string_view fieldText(std::string_view field, std::string& buffer) {
  const size_t first = field.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  field = field.substr(first, field.find_last_not_of(kBlanks) - first + 1);
  if (field.front() != '"') return field;
  field = field.substr(1, field.size() - 2);
  if (field.find('"') == std::string_view::npos) return field;
  buffer.clear();
  for (size_t i = 0; i < field.size(); ++i) {
    buffer += field[i];
    if (field[i] == '"') ++i;
  }
  return buffer;
}

}  // namespace workbench
