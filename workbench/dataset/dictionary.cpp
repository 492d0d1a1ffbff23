#include "workbench/dataset/dictionary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/text/nearest.h"
#include "workbench/values/data_error.h"

namespace workbench {

using Json = nlohmann::json;

struct DictionaryField {
  struct Category {
    Json value;
    std::string label;
    bool labelled = false;
    std::string place;
  };
  std::string place;
  std::string title;
  std::string typeName;  // empty: as detected
  std::optional<ColumnForm> form;
  std::vector<Category> categories;
  std::vector<std::string> missing;  // as written, without ""
  std::vector<std::string> missingTexts;
};

namespace {

[[noreturn]] void refuse(const std::string& file, const std::string& place,
                         const std::string& what) {
  throw DataError(fmt::format("{}: {}: {}.", file, place.empty() ? "/" : place, what));
}

struct TypeName {
  const char* name;
  ColumnForm form;
};
constexpr TypeName kTypes[] = {
    {"string", ColumnForm::kString},   {"number", ColumnForm::kNumber},
    {"integer", ColumnForm::kNumber},  {"year", ColumnForm::kNumber},
    {"boolean", ColumnForm::kBoolean}, {"date", ColumnForm::kDate},
    {"time", ColumnForm::kTime},       {"datetime", ColumnForm::kDateTime}};

/// Walks the document, knowing where it is.
class Reader {
 public:
  explicit Reader(const std::string& file) : file_(file) {}

  Json load() const {
    std::ifstream stream(file_, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) {
      throw DataError(
          fmt::format("{}: the dictionary cannot be read ({}).", file_, std::strerror(errno)));
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

  std::vector<std::string> missingValues(const Json& holder, const std::string& place) const {
    std::vector<std::string> values;
    const std::string at = place + "/missingValues";
    size_t index = 0;
    for (const Json& entry : list(holder.at("missingValues"), at)) {
      const std::string here = fmt::format("{}/{}", at, index++);
      if (entry.is_object() && !entry.contains("value")) refuse(file_, here, "a value is expected");
      std::string value = plain(entry.is_object() ? entry.at("value") : entry, here);
      if (!value.empty()) values.push_back(std::move(value));
    }
    return values;
  }

  std::unique_ptr<DictionaryField> field(const Json& entry, const std::string& place) const {
    auto field = std::make_unique<DictionaryField>();
    field->place = place;
    if (entry.contains("title")) field->title = text(entry.at("title"), place + "/title");
    if (entry.contains("type")) readType(entry.at("type"), place + "/type", *field);
    if (entry.contains("categories")) readCategories(entry.at("categories"), *field);
    return field;
  }

 private:
  void readType(const Json& value, const std::string& place, DictionaryField& field) const {
    const std::string name = text(value, place);
    if (name == "any") return;
    std::vector<std::string> known;
    for (const TypeName& type : kTypes) {
      known.emplace_back(type.name);
      if (name != type.name) continue;
      field.typeName = name;
      field.form = type.form;
      return;
    }
    const std::string guess = nearest(name, known);
    refuse(file_, place,
           fmt::format("the type '{}' is not known{}; types are {}", name,
                       guess.empty() ? "" : " (did you mean '" + guess + "'?)",
                       fmt::join(known, ", ")));
  }

  void readCategories(const Json& value, DictionaryField& field) const {
    const std::string at = field.place + "/categories";
    size_t index = 0;
    for (const Json& entry : list(value, at)) {
      DictionaryField::Category category;
      category.place = fmt::format("{}/{}", at, index++);
      if (entry.is_object()) {
        if (!entry.contains("value")) refuse(file_, category.place, "a value is expected");
        category.value = entry.at("value");
        if (entry.contains("label")) {
          category.label = text(entry.at("label"), category.place + "/label");
          category.labelled = true;
        }
        category.place += "/value";
      } else {
        category.value = entry;
      }
      plain(category.value, category.place);
      field.categories.push_back(std::move(category));
    }
  }

  std::string file_;
};

bool isOnlyText(const std::string& text) {
  bool zoned = false;
  return !isNumberText(text) && !isBooleanText(text) && !isTimeText(text) &&
         !isDateTimeText(text, zoned);
}

}  // namespace

Dictionary::Dictionary() = default;
Dictionary::~Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;

Dictionary::Dictionary(const std::string& file) : file_(file) {
  const Reader reader(file);
  const Json document = reader.load();
  if (!document.is_object()) refuse(file, "", "a Table Schema (an object with fields) is expected");
  if (!document.contains("fields")) refuse(file, "", "there are no fields");
  std::vector<std::string> missingForAll;
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
    std::copy_if(field->missing.begin(), field->missing.end(),
                 std::back_inserter(field->missingTexts), isOnlyText);
    if (!fields_.emplace(name, std::move(field)).second) {
      refuse(file, place + "/name", fmt::format("the field '{}' is listed twice", name));
    }
  }
}

const DictionaryField* Dictionary::find(const std::string& name) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? nullptr : found->second.get();
}

const std::vector<std::string>& Dictionary::missingTexts(const std::string& name) const {
  static const std::vector<std::string> none;
  const DictionaryField* field = find(name);
  return field == nullptr ? none : field->missingTexts;
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

bool Dictionary::wholeOnly(const std::string& name) const {
  const DictionaryField* field = find(name);
  return field != nullptr && (field->typeName == "integer" || field->typeName == "year");
}

ColumnReading Dictionary::reading(const SourceColumn& column) const {
  ColumnReading reading = column.reading;
  const DictionaryField* field = find(column.name);
  if (field == nullptr || !field->form) return reading;
  const ColumnForm detected = reading.form;
  const ColumnForm wanted = *field->form;
  reading = ColumnReading{wanted, true, {}};
  const auto isTemporal = [](ColumnForm form) {
    return form == ColumnForm::kDate || form == ColumnForm::kTime || form == ColumnForm::kDateTime;
  };
  const bool impossible =
      detected == ColumnForm::kUnusable ||
      (!column.isText && wanted != ColumnForm::kString &&
       (isTemporal(wanted) != isTemporal(detected) ||
        (isTemporal(wanted) && (wanted == ColumnForm::kTime) != (detected == ColumnForm::kTime))));
  if (impossible) {
    refuse(file_, field->place + "/type",
           fmt::format("the values of '{}' are of another type than '{}'", column.name,
                       field->typeName));
  }
  if (!column.isText || wanted == ColumnForm::kString) return reading;
  // Numbers that stand for missing dates are texts to the reader.
  std::copy_if(field->missing.begin(), field->missing.end(), std::back_inserter(reading.missing),
               [&](const std::string& text) {
                 return isOnlyText(text) || (wanted != ColumnForm::kNumber && isNumberText(text));
               });
  return reading;
}

Variable Dictionary::variable(Variable variable) const {
  if (variable.kind == ValueKind::kBoolean) variable.numberLabels = {{0, "false"}, {1, "true"}};
  const DictionaryField* field = find(variable.name);
  if (field == nullptr) return variable;
  variable.label = field->title;
  const Variable plain = variable;  // categories' texts are read without their own labels
  bool ownLabels = false;
  const Reader reader(file_);
  std::set<std::string> texts;
  std::set<double> numbers;
  const auto refuseRepeated = [&](bool isNew, const auto& value, const std::string& place) {
    if (!isNew) refuse(file_, place, fmt::format("'{}' has a label twice; leave one out", value));
  };
  for (const DictionaryField::Category& category : field->categories) {
    const std::string text = reader.plain(category.value, category.place);
    if (variable.isString()) {
      if (!category.labelled) continue;
      const std::string value(trimmed(text));
      refuseRepeated(texts.insert(value).second, value, category.place);
      variable.stringLabels.emplace_back(value, category.label);
      continue;
    }
    const std::optional<double> value = parseValue(plain, text);
    if (!value) {
      refuse(file_, category.place,
             fmt::format("'{}' is no value of '{}', which is not a string variable", text,
                         variable.name));
    }
    if (!category.labelled) continue;
    if (!ownLabels) variable.numberLabels.clear();
    ownLabels = true;
    refuseRepeated(numbers.insert(*value).second, *value, category.place);
    variable.numberLabels.emplace_back(*value, category.label);
  }
  for (const std::string& text : field->missing) {
    if (variable.isString()) {
      variable.missingStrings.emplace_back(trimmed(text));
    } else if (const std::optional<double> value = parseValue(plain, text)) {
      variable.missingNumbers.push_back(*value);
    }
    // Any other text is no number: the cases that carry it are system-missing.
  }
  return variable;
}

}  // namespace workbench
