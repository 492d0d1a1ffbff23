#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/listing/listing.h"
#include "workbench/render/wrap.h"
#include "workbench/text/display_width.h"
#include "workbench/text/utf8.h"
#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::kNumber:
      return "number";
    case ValueKind::kBoolean:
      return "boolean";
    case ValueKind::kDate:
      return "date";
    case ValueKind::kTime:
      return "time";
    case ValueKind::kDateTime:
      return "datetime";
    case ValueKind::kString:
      return "string";
  }
  return "";
}

Json numberOf(double value) {
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  if (std::trunc(value) == value && std::abs(value) <= kAllWhole)
    return static_cast<int64_t>(value);
  return value;
}

Json valueOf(const Variable& variable, const ListedValue& listed) {
  if (const auto* text = std::get_if<std::string>(&listed.value)) return validUtf8(*text);
  const double number = std::get<double>(listed.value);
  const bool isPlain = variable.kind == ValueKind::kNumber || variable.kind == ValueKind::kBoolean;
  return isPlain ? numberOf(number) : Json(valueText(variable, number));
}

const std::string* labelOf(const Variable& variable, const ListedValue& listed) {
  if (const auto* text = std::get_if<std::string>(&listed.value)) return variable.findLabel(*text);
  return variable.findLabel(std::get<double>(listed.value));
}

/// A label that is not there is null.
Json labelText(const std::string* label) {
  return label == nullptr || label->empty() ? Json() : Json(validUtf8(*label));
}

std::string shownText(const Variable& variable, const ListedValue& listed) {
  const auto* text = std::get_if<std::string>(&listed.value);
  std::string shown =
      text != nullptr ? "'" + *text + "'" : valueText(variable, std::get<double>(listed.value));
  if (const std::string* label = labelOf(variable, listed)) shown += " " + *label;
  return printable(shown + " (" + std::to_string(listed.count) + ")");
}

}  // namespace

/// One variable after the other: of a wide file they are too many for one document in memory.
void writeListingAsJson(const ActiveDataset& dataset, const std::vector<ListedVariable>& variables,
                        std::ostream& out) {
  out << R"({"schema":"proportions-variables/1","variables":[)";
  const char* separator = "";
  for (const ListedVariable& listed : variables) {
    const Variable& variable = dataset.declaration(listed.variable);
    Json values = Json::array();
    for (const ListedValue& value : listed.values) {
      values.push_back({{"value", valueOf(variable, value)},
                        {"label", labelText(labelOf(variable, value))},
                        {"count", value.count}});
    }
    const Json entry{{"name", validUtf8(variable.name)},
                     {"kind", nameOf(variable.kind)},
                     {"label", labelText(&variable.label)},
                     {"values", std::move(values)},
                     {"missing", listed.missing}};
    out << std::exchange(separator, ",") << entry.dump();
  }
  out << "]}\n";
}

void writeListingAsText(const ActiveDataset& dataset, const std::vector<ListedVariable>& variables,
                        size_t width, std::ostream& out) {
  constexpr size_t kIndent = 4;
  const auto writeIndented = [&](const std::string& text) {
    for (const std::string& line : wrapText(text, width - kIndent)) {
      out << std::string(kIndent, ' ') << line << '\n';
    }
  };
  for (const ListedVariable& listed : variables) {
    const Variable& variable = dataset.declaration(listed.variable);
    if (const std::string reason = dataset.unusableBecause(listed.variable); !reason.empty()) {
      out << printable(variable.name) << ": cannot be used\n";
      writeIndented(printable(reason));
      continue;
    }
    out << printable(variable.name) << ": " << nameOf(variable.kind);
    if (!variable.label.empty()) out << ", " << printable(variable.label);
    // What a proportion is made of.
    if (listed.values.size() == 2 && !listed.hasMore) out << "; two values";
    out << '\n';
    std::string values;
    for (const ListedValue& value : listed.values) {
      values += (values.empty() ? "" : ", ") + shownText(variable, value);
    }
    if (listed.hasMore) values += ", and more";
    if (listed.missing > 0) {
      values += (values.empty() ? "" : "; ") + std::string("missing (") +
                std::to_string(listed.missing) + ")";
    }
    if (values.empty()) values = "no values";
    writeIndented(values);
  }
}

}  // namespace workbench
