#include "workbench/dataset/dictionary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/nearest.h"
#include "workbench/values/data_error.h"
#include "workbench/values/field.h"

namespace workbench {

using Json = nlohmann::json;

struct DictionaryField {
  /// A category or a missing value.
  struct Entry {
    std::string text;
    std::string label;
    bool labelled = false;
    std::string place;
  };
  std::string place;
  std::string title;
  std::string typeName;  // empty: as detected
  ColumnType::Name type = ColumnType::Name::kDetected;
  std::vector<Entry> categories;
  bool ordered = false;
  std::vector<Entry> missing;  // without ""
};

namespace {

using Entry = DictionaryField::Entry;

constexpr std::streamoff kLargestFile = std::streamoff{64} << 20;

[[noreturn]] void refuse(const std::string& file, const std::string& place,
                         const std::string& what) {
  throw DataError(fmt::format("{}: {}: {}.", file, place.empty() ? "/" : place, what));
}

struct TypeName {
  const char* name;
  ColumnType::Name type;
};
constexpr TypeName kTypes[] = {
    {"string", ColumnType::Name::kString},   {"number", ColumnType::Name::kNumber},
    {"integer", ColumnType::Name::kInteger}, {"year", ColumnType::Name::kInteger},
    {"boolean", ColumnType::Name::kBoolean}, {"date", ColumnType::Name::kDate},
    {"time", ColumnType::Name::kTime},       {"datetime", ColumnType::Name::kDateTime}};

/// Properties of a field that change how its values read, with the only value each may have here
/// (as JSON; empty: none).
struct Unsupported {
  const char* property;
  const char* allowed;
};
constexpr Unsupported kUnsupported[] = {{"format", R"("default")"}, {"decimalChar", R"(".")"},
                                        {"groupChar", R"("")"},     {"bareNumber", "true"},
                                        {"trueValues", ""},         {"falseValues", ""},
                                        {"delimiter", ""},          {"itemType", ""}};

/// Walks the document, knowing where it is.
class Reader {
 public:
  explicit Reader(const std::string& file) : file_(file) {}

  Json load() const {
    std::error_code ignored;
    if (std::filesystem::is_directory(file_, ignored)) {
      throw DataError(fmt::format("{}: the dictionary is a folder; name a file.", file_));
    }
    std::ifstream stream(file_, std::ios::binary);
    std::string bytes(static_cast<size_t>(kLargestFile) + 1, '\0');
    errno = 0;
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(stream.gcount()));
    if (!stream.is_open() || stream.bad()) {
      throw DataError(fmt::format("{}: the dictionary cannot be read ({}).", file_,
                                  errno == 0 ? "reading failed" : std::strerror(errno)));
    }
    if (bytes.size() > static_cast<size_t>(kLargestFile)) {
      throw DataError(fmt::format("{}: the dictionary is larger than 64 MiB.", file_));
    }
    try {
      return Json::parse(bytes);
    } catch (const Json::parse_error& error) {
      const size_t at = std::min(error.byte == 0 ? 0 : error.byte - 1, bytes.size());
      const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(at);
      throw DataError(fmt::format("{}, line {}: this is not JSON.", file_,
                                  1 + std::count(bytes.begin(), end, '\n')));
    } catch (const Json::out_of_range&) {
      throw DataError(
          fmt::format("{}: a number is too large; numbers end at about 1.8e308.", file_));
    }
  }

  std::string text(const Json& value, const std::string& place) const {
    if (!value.is_string()) refuse(file_, place, "a text is expected");
    return value.get<std::string>();
  }

  /// A number, text or truth value as text.
  std::string plain(const Json& value, const std::string& place) const {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
    if (value.is_number()) return shortestNumber(value.get<double>());
    refuse(file_, place, "a number or a text is expected");
  }

  const Json& list(const Json& value, const std::string& place) const {
    if (!value.is_array()) refuse(file_, place, "a list is expected");
    return value;
  }

  /// A value, or an object of value and label.
  Entry entry(const Json& value, const std::string& place) const {
    Entry entry;
    entry.place = place;
    if (!value.is_object()) {
      entry.text = plain(value, place);
      return entry;
    }
    if (!value.contains("value")) refuse(file_, place, "a value is expected");
    entry.place += "/value";
    entry.text = plain(value.at("value"), entry.place);
    if (value.contains("label")) {
      entry.label = text(value.at("label"), place + "/label");
      entry.labelled = true;
    }
    return entry;
  }

  std::vector<Entry> entries(const Json& holder, const char* property,
                             const std::string& place) const {
    std::vector<Entry> entries;
    const std::string at = place + "/" + property;
    for (const Json& each : list(holder.at(property), at)) {
      entries.push_back(entry(each, fmt::format("{}/{}", at, entries.size())));
    }
    return entries;
  }

  std::vector<Entry> missingValues(const Json& holder, const std::string& place) const {
    std::vector<Entry> values = entries(holder, "missingValues", place);
    values.erase(std::remove_if(values.begin(), values.end(),
                                [](const Entry& each) { return trimmed(each.text).empty(); }),
                 values.end());
    return values;
  }

  std::unique_ptr<DictionaryField> field(const Json& entry, const std::string& place) const {
    auto field = std::make_unique<DictionaryField>();
    field->place = place;
    refuseUnsupported(entry, place);
    if (entry.contains("title")) field->title = text(entry.at("title"), place + "/title");
    if (entry.contains("type")) readType(entry.at("type"), place + "/type", *field);
    if (entry.contains("categories")) field->categories = entries(entry, "categories", place);
    if (entry.contains("categoriesOrdered")) {
      const Json& ordered = entry.at("categoriesOrdered");
      const std::string at = place + "/categoriesOrdered";
      if (!ordered.is_boolean()) refuse(file_, at, "true or false is expected");
      field->ordered = ordered.get<bool>();
    }
    return field;
  }

 private:
  void refuseUnsupported(const Json& entry, const std::string& place) const {
    for (const Unsupported& each : kUnsupported) {
      if (!entry.contains(each.property)) continue;
      if (*each.allowed != '\0' && entry.at(each.property) == Json::parse(each.allowed)) continue;
      refuse(file_, fmt::format("{}/{}", place, each.property),
             fmt::format("{} is not supported; leave it out, and write the values as numbers with "
                         "a point, dates as 2026-01-31 and times as 12:30:00",
                         each.property));
    }
  }

  void readType(const Json& value, const std::string& place, DictionaryField& field) const {
    const std::string name = text(value, place);
    if (name == "any") return;
    std::vector<std::string> known;
    for (const TypeName& type : kTypes) {
      known.emplace_back(type.name);
      if (name != type.name) continue;
      field.typeName = name;
      field.type = type.type;
      return;
    }
    const std::string guess = nearest(name, known);
    refuse(file_, place,
           fmt::format("the type '{}' is not known{}; types are {}", name,
                       guess.empty() ? "" : " (did you mean '" + guess + "'?)",
                       fmt::join(known, ", ")));
  }

  std::string file_;
};

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
  for (const Entry& each : missing) codes.emplace_back(std::string(trimmed(each.text)), code--);
  return codes;
}

}  // namespace

Dictionary::Dictionary() = default;
Dictionary::~Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;

Dictionary::Dictionary(const std::string& file, char decimal) : file_(file), decimal_(decimal) {
  const Reader reader(file);
  const Json document = reader.load();
  if (!document.is_object()) refuse(file, "", "a Table Schema (an object with fields) is expected");
  if (!document.contains("fields")) refuse(file, "", "there are no fields");
  std::vector<Entry> missingForAll;
  if (document.contains("missingValues")) missingForAll = reader.missingValues(document, "");
  size_t index = 0;
  for (const Json& entry : reader.list(document.at("fields"), "/fields")) {
    const std::string place = fmt::format("/fields/{}", index++);
    if (!entry.is_object()) refuse(file, place, "an object is expected");
    if (!entry.contains("name")) refuse(file, place, "the field has no name");
    const std::string name = reader.text(entry.at("name"), place + "/name");
    auto field = reader.field(entry, place);
    field->missing =
        entry.contains("missingValues") ? reader.missingValues(entry, place) : missingForAll;
    if (!fields_.emplace(name, std::move(field)).second) {
      refuse(file, place + "/name", fmt::format("the field '{}' is listed twice", name));
    }
  }
}

const DictionaryField* Dictionary::find(const std::string& name) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? nullptr : found->second.get();
}

void Dictionary::refuseUnknown(const std::vector<std::string>& names) const {
  for (const auto& [name, field] : fields_) {
    if (std::find(names.begin(), names.end(), name) != names.end()) continue;
    const std::string guess = nearest(name, names);
    refuse(file_, field->place + "/name",
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
      refuse(file_, field->place + "/categoriesOrdered", "ordered categories need categories");
    }
    type.codes = codesOf(texts, field->missing);
  } else if (enumeration && !asText) {
    type.codes = codesOf(column.categories, field->missing);
  }
  const bool impossible = !column.unusable.empty() ||
                          (column.kindKnown && !column.untyped && type.codes.empty() &&
                           !canBe(column.variable.kind, type.name)) ||
                          (enumeration && !asText && !field->typeName.empty());
  if (impossible && !field->typeName.empty()) {
    refuse(file_, field->place + "/type",
           fmt::format("the values of '{}' are of another type than '{}'", column.variable.name,
                       field->typeName));
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
  addCategories(*field, variable);
  addMissing(*field, variable);
  return variable;
}

/// A value as the data spell it, or as values are written everywhere else.
std::optional<double> Dictionary::valueOf(const Variable& variable, const std::string& text) const {
  if (decimal_ != '.' && variable.kind == ValueKind::kNumber) {
    const FieldValue value = interpretNumber(text, decimal_);
    if (value.kind == FieldKind::kNumber && value.flaw == NumberFlaw::kNone) return value.number;
  }
  return parseValue(variable, text);
}

void Dictionary::addCategories(const DictionaryField& field, Variable& variable) const {
  const Variable plain = variable;  // categories' texts are read without their own labels
  bool ownLabels = false;
  std::set<std::string> texts;
  std::set<double> numbers;
  const auto refuseRepeated = [&](bool isNew, const auto& value, const std::string& place) {
    if (!isNew) refuse(file_, place, fmt::format("'{}' has a label twice; leave one out", value));
  };
  for (const Entry& each : field.categories) {
    if (variable.isString()) {
      if (!each.labelled) continue;
      const std::string value(trimmed(each.text));
      refuseRepeated(texts.insert(value).second, value, each.place);
      variable.stringLabels.emplace_back(value, each.label);
      continue;
    }
    const std::optional<double> value = valueOf(plain, each.text);
    if (!value) {
      refuse(file_, each.place,
             fmt::format("'{}' is no value of '{}', which is not a string variable", each.text,
                         variable.name));
    }
    if (!each.labelled) continue;
    if (!ownLabels) variable.numberLabels.clear();
    ownLabels = true;
    refuseRepeated(numbers.insert(*value).second, *value, each.place);
    variable.numberLabels.emplace_back(*value, each.label);
  }
}

void Dictionary::addMissing(const DictionaryField& field, Variable& variable) const {
  Variable plain;  // without labels, which are no values here
  plain.kind = variable.kind;
  if (plain.kind == ValueKind::kBoolean) plain.numberLabels = {{0, "false"}, {1, "true"}};
  for (const Entry& each : field.missing) {
    if (variable.isString()) {
      variable.missingStrings.emplace_back(trimmed(each.text));
      if (each.labelled && variable.findLabel(trimmed(each.text)) == nullptr) {
        variable.stringLabels.emplace_back(trimmed(each.text), each.label);
      }
    } else if (const std::optional<double> value = valueOf(plain, each.text)) {
      variable.missingNumbers.push_back(*value);
      if (each.labelled && variable.findLabel(*value) == nullptr) {
        variable.numberLabels.emplace_back(*value, each.label);
      }
    }
    // Any other text is no number: the cases that carry it are system-missing.
  }
}

}  // namespace workbench
