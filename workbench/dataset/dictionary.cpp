#include "workbench/dataset/dictionary.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "workbench/dataset/dictionary_document.h"
#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/data_error.h"
#include "workbench/values/extended_missing.h"
#include "workbench/values/field.h"

namespace workbench {
namespace {

using Entry = DictionaryField::Entry;

bool isTemporal(ValueKind kind) {
  return kind == ValueKind::kDate || kind == ValueKind::kTime || kind == ValueKind::kDateTime;
}

/// Whether values of a kind that the source itself gives can be of a type at all.
bool canBe(ValueKind kind, ColumnType::Name type) {
  using Name = ColumnType::Name;
  switch (type) {
    case Name::kDetected:
    case Name::kString:
      return true;
    case Name::kNumber:
    case Name::kInteger:
    case Name::kBoolean:
      return kind == ValueKind::kNumber || kind == ValueKind::kBoolean;
    case Name::kTime:
      return kind == ValueKind::kTime;
    case Name::kDate:
    case Name::kDateTime:
      return isTemporal(kind) && kind != ValueKind::kTime;
  }
  return false;
}

/// Gives a value a label in place of the one that it may have.
template <typename Labels, typename Value>
void setLabel(Labels& labels, const Value& value, const std::string& label) {
  for (auto& [labelled, old] : labels) {
    if (labelled != value) continue;
    old = label;
    return;
  }
  labels.emplace_back(value, label);
}

bool contains(const std::vector<Entry>& entries, std::string_view text) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const Entry& each) { return trimmed(each.text) == text; });
}

/// Categories that are user-missing get 0, -1, ..., all others 1, 2, ...
std::vector<std::pair<std::string, double>> codesOf(const std::vector<std::string>& categories,
                                                    const std::vector<Entry>& missing) {
  std::vector<std::pair<std::string, double>> codes;
  double code = 1.0;
  for (const std::string& text : categories) {
    if (!contains(missing, text)) codes.emplace_back(text, code++);
  }
  code = 0.0;
  std::set<std::string_view> known;
  for (const Entry& each : missing) {
    const std::string_view text = trimmed(each.text);
    if (known.insert(text).second) codes.emplace_back(std::string(text), code--);
  }
  return codes;
}

/// A category that is listed twice would have two numbers.
void refuseRepeated(const std::string& file, const std::vector<Entry>& ordered) {
  std::set<std::string_view> texts;
  for (const Entry& each : ordered) {
    if (texts.insert(trimmed(each.text)).second) continue;
    refuseDictionary(
        file, each.place,
        fmt::format("the ordered category '{}' is listed twice; leave one out", each.text));
  }
}

/// Texts have an order of their own in a field of type string alone.
void refuseUntypedOrder(const std::string& file, const DictionaryField& field) {
  const bool texts = std::any_of(field.categories.begin(), field.categories.end(),
                                 [](const Entry& each) { return !parsePlainNumber(each.text); });
  if (!texts) return;
  refuseDictionary(file, field.place + "/categoriesOrdered",
                   "ordered categories that are texts need \"type\": \"string\"");
}

}  // namespace

Dictionary::Dictionary() = default;
Dictionary::~Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;

Dictionary::Dictionary(const std::string& file, char decimal)
    : file_(file), decimal_(decimal), fields_(readDictionary(file)) {
  for (const auto& [name, field] : fields_) folded_.emplace(foldCase(name), field.get());
}

const DictionaryField* Dictionary::find(const std::string& name) const {
  if (const auto found = fields_.find(name); found != fields_.end()) return found->second.get();
  const auto alike = folded_.find(foldCase(name));
  return alike == folded_.end() ? nullptr : alike->second;
}

void Dictionary::refuseUnknown(const std::vector<std::string>& names) const {
  std::set<const DictionaryField*> known;
  for (const std::string& name : names) known.insert(find(name));
  for (const auto& [name, field] : fields_) {
    if (known.count(field.get()) > 0) continue;
    const std::string guess = nearest(name, names);
    refuseDictionary(file_, field->place + "/name",
                     fmt::format("the data have no variable '{}'{}", name,
                                 guess.empty() ? "" : " (did you mean '" + guess + "'?)"));
  }
}

ColumnType Dictionary::type(const SourceVariable& column) const {
  ColumnType type;
  const DictionaryField* field = find(column.variable.name);
  const bool enumeration = !column.categories.empty();
  if (field == nullptr) {
    if (enumeration) type.codes = codesOf(column.categories, {});
    return type;
  }
  type.name = field->type;
  for (const Entry& each : field->missing) type.missingTexts.push_back(each.text);
  const bool asText = field->type == ColumnType::Name::kString;
  if (field->ordered && (asText || (enumeration && field->typeName.empty()))) {
    std::vector<std::string> texts;
    for (const Entry& each : field->categories) texts.emplace_back(trimmed(each.text));
    if (texts.empty()) {
      refuseDictionary(file_, field->place + "/categoriesOrdered",
                       "ordered categories need categories");
    }
    refuseRepeated(file_, field->categories);
    type.codes = codesOf(texts, field->missing);
  } else if (enumeration && !asText) {
    type.codes = codesOf(column.categories, field->missing);
  } else if (field->ordered && field->typeName.empty()) {
    refuseUntypedOrder(file_, *field);
  }
  type.asCount = column.countable && (type.name == ColumnType::Name::kNumber ||
                                      type.name == ColumnType::Name::kInteger);
  const bool impossible = !column.unusable.empty() ||
                          (column.kindKnown && !column.untyped && type.codes.empty() &&
                           !type.asCount && !canBe(column.variable.kind, type.name)) ||
                          (enumeration && !asText && !field->typeName.empty());
  if (impossible && !field->typeName.empty()) {
    refuseDictionary(file_, field->place + "/type",
                     fmt::format("the values of '{}' are of another type than '{}'",
                                 column.variable.name, field->typeName));
  }
  return type;
}

Variable Dictionary::titled(Variable variable) const {
  const DictionaryField* field = find(variable.name);
  if (field != nullptr && !field->title.empty()) variable.label = field->title;
  return variable;
}

Variable Dictionary::variable(Variable variable, const ColumnType& type) const {
  if (variable.kind == ValueKind::kBoolean && variable.numberLabels.empty()) {
    variable.numberLabels = {{0, "false"}, {1, "true"}};
  }
  if (type.asCount || !type.codes.empty()) {
    // What the source calls its values is said of other numbers than these.
    std::erase_if(variable.numberLabels, [&](const auto& each) {
      return !type.codes.empty() || !isExtendedMissing(each.first);
    });
  }
  for (const auto& [text, code] : type.codes) {
    variable.categoryTexts.emplace_back(code, text);
    variable.numberLabels.emplace_back(code, text);
    if (code <= 0.0) variable.missingNumbers.push_back(code);
  }
  const DictionaryField* field = find(variable.name);
  if (field == nullptr) return variable;
  variable = titled(std::move(variable));
  if (!type.codes.empty()) {
    for (auto& [code, label] : variable.numberLabels) {
      const std::string value = label;  // a label may be the text of another category
      for (const auto* entries : {&field->categories, &field->missing}) {
        for (const Entry& each : *entries) {
          if (each.labelled && trimmed(each.text) == value) label = each.label;
        }
      }
    }
    return variable;
  }
  // A label among the categories comes before one among the missing values.
  addMissing(*field, addCategories(*field, variable), variable);
  return variable;
}

/// A value as the data spell it, or as values are written everywhere else.
std::optional<double> Dictionary::valueOf(const Variable& variable, const std::string& text) const {
  if (variable.kind == ValueKind::kNumber) {
    const FieldValue value = interpretNumber(text, decimal_);
    if (value.kind == FieldKind::kNumber) {
      return value.flaw == NumberFlaw::kNone ? std::optional(value.number) : std::nullopt;
    }
  }
  return parseValue(variable, text);
}

Dictionary::Labelled Dictionary::addCategories(const DictionaryField& field,
                                               Variable& variable) const {
  const Variable plain = variable;  // categories' texts are read without their own labels
  if (variable.kind == ValueKind::kBoolean &&
      std::any_of(field.categories.begin(), field.categories.end(),
                  [](const Entry& each) { return each.labelled; })) {
    // Those of the dictionary stand alone, not beside "false" and "true".
    std::erase_if(variable.numberLabels, [](const auto& each) {
      return each.second == (each.first == 0.0 ? "false" : "true");
    });
  }
  Labelled labelled;
  auto& [numbers, texts] = labelled;
  const auto refuseRepeated = [&](bool isNew, const auto& value, const std::string& place) {
    if (!isNew)
      refuseDictionary(file_, place, fmt::format("'{}' has a label twice; leave one out", value));
  };
  for (const Entry& each : field.categories) {
    if (variable.isString()) {
      if (!each.labelled) continue;
      const std::string value(trimmed(each.text));
      refuseRepeated(texts.insert(value).second, value, each.place);
      setLabel(variable.stringLabels, value, each.label);
      continue;
    }
    const std::optional<double> value = valueOf(plain, each.text);
    if (!value) {
      refuseDictionary(file_, each.place,
                       fmt::format("'{}' is no value of '{}', which is not a string variable",
                                   each.text, variable.name));
    }
    if (!each.labelled) continue;
    refuseRepeated(numbers.insert(*value).second, *value, each.place);
    setLabel(variable.numberLabels, *value, each.label);
  }
  return labelled;
}

void Dictionary::addMissing(const DictionaryField& field, const Labelled& labelled,
                            Variable& variable) const {
  Variable plain;  // without labels, which are not values here
  plain.kind = variable.kind;
  plain.extendedMissing = variable.extendedMissing;
  if (plain.kind == ValueKind::kBoolean) plain.numberLabels = {{0, "false"}, {1, "true"}};
  for (const Entry& each : field.missing) {
    if (variable.isString()) {
      const std::string value(trimmed(each.text));
      variable.missingStrings.push_back(value);
      if (each.labelled && labelled.texts.count(value) == 0) {
        setLabel(variable.stringLabels, value, each.label);
      }
    } else if (const std::optional<double> value = valueOf(plain, each.text)) {
      variable.missingNumbers.push_back(*value);
      if (each.labelled && labelled.numbers.count(*value) == 0) {
        setLabel(variable.numberLabels, *value, each.label);
      }
    }
    // Any other text is not a number: the cases that carry it are system-missing.
  }
}

}  // namespace workbench
