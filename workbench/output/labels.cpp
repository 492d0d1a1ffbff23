#include "workbench/output/labels.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "workbench/catalogue/catalogue.h"
#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/output/template.h"
#include "workbench/session/session.h"
#include "workbench/text/utf8.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

constexpr int kByLabel = 2;

/// Begins the identity of a plain text.
constexpr char kTextIdentity = 'S';

const Variable& declaration(VarIndex variable) {
  return currentSession().dataset->declaration(variable);
}

template <typename Value>
void appendBytes(std::string& identity, Value value) {
  char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  identity.append(bytes, sizeof value);
}

void appendText(std::string& identity, std::string_view text) {
  appendBytes(identity, text.size());  // the length keeps neighbours apart
  identity += text;
}

void appendIdentity(std::string& identity, const LabelPart& part) {
  appendBytes(identity, part.kind);
  switch (part.kind) {
    case LabelPart::Kind::kList:
      appendBytes(identity, part.elements.size());
      for (const LabelPart& element : part.elements) appendIdentity(identity, element);
      return;
    case LabelPart::Kind::kStringValue:
      appendText(identity, part.text);
      break;
    case LabelPart::Kind::kNumberValue:
    case LabelPart::Kind::kNumber:
      appendBytes(identity, part.number == 0.0 ? 0.0 : part.number);  // there is one zero only
      break;
    case LabelPart::Kind::kVariable:
      break;
  }
  appendBytes(identity, part.variable);
  appendBytes(identity, part.code);
}

bool showsMissing(const LabelPart& part) {
  switch (part.kind) {
    case LabelPart::Kind::kNumberValue:
      return part.number == kSystemMissing;
    case LabelPart::Kind::kStringValue:
      return part.text.empty();
    case LabelPart::Kind::kList:
      for (const LabelPart& element : part.elements) {
        if (showsMissing(element)) return true;
      }
      return false;
    default:
      return false;
  }
}

std::string numberValueText(const LabelPart& part) {
  const Variable& variable = declaration(part.variable);
  return part.code == kByLabel ? shownValue(variable, part.number)
                               : valueText(variable, part.number);
}

std::string stringValueText(const LabelPart& part) {
  if (part.code != kByLabel) return part.text;
  return shownValue(declaration(part.variable), std::string_view(part.text));
}

std::string listText(const LabelPart& part) {
  std::string text;
  for (const LabelPart& element : part.elements) {
    if (!text.empty()) text += ", ";
    text += textOf(element);
  }
  return text;
}

/// A numeric value as machines read it: dates and times in ISO form, missing values that have a
/// name by it, all else as numbers.
std::variant<double, std::string> exactNumberValue(const Variable& variable, double value) {
  const ValueKind kind = variable.kind;
  const bool isPlain = kind == ValueKind::kNumber || kind == ValueKind::kBoolean;
  const bool isNamed = variable.extendedMissing && isExtendedMissing(value);
  if ((isPlain && !isNamed) || value == kSystemMissing) return value;
  std::string text = valueText(variable, value);
  if (kind == ValueKind::kDateTime) std::replace(text.begin(), text.end(), ' ', 'T');
  return text;
}

LabelValue labelValue(const LabelPart& part) {
  if (part.kind == LabelPart::Kind::kStringValue) return {textOf(part), validUtf8(part.text)};
  return {textOf(part), exactNumberValue(declaration(part.variable), part.number)};
}

/// Adds what a part shows to what is known of the label.
void addFacts(const LabelPart& part, LabelData& data) {
  switch (part.kind) {
    case LabelPart::Kind::kVariable:
      data.variables.push_back(validUtf8(declaration(part.variable).name));
      break;
    case LabelPart::Kind::kNumberValue:
    case LabelPart::Kind::kStringValue:
      data.values.push_back(labelValue(part));
      break;
    case LabelPart::Kind::kNumber:
      if (!data.number) data.number = part.number;
      break;
    case LabelPart::Kind::kList:
      data.isValueList = true;
      for (const LabelPart& element : part.elements) addFacts(element, data);
      break;
  }
  data.showsMissing = data.showsMissing || showsMissing(part);
}

/// The variable that tells a label from others that read alike: the first that it names or, when
/// it names none ("= control"), that of its value.
std::string ownerOf(const BpComposite::Impl& impl, const LabelData& data) {
  if (!data.variables.empty()) return data.variables.front();
  for (const LabelPart& part : impl.parts) {
    if (part.variable >= 0) return validUtf8(declaration(part.variable).name);
  }
  return "";
}

LabelData describeComposite(const BpComposite::Impl& impl) {
  LabelData data;
  data.key = validUtf8(impl.templateText);
  std::vector<TemplateItem> items(impl.parts.size());
  for (size_t i = 0; i < items.size(); ++i) {
    const LabelPart& part = impl.parts[i];
    items[i].text = textOf(part);
    items[i].isList = part.kind == LabelPart::Kind::kList;
    for (const LabelPart& element : part.elements) items[i].elements.push_back(textOf(element));
    addFacts(part, data);
  }
  data.text = fillTemplate(catalogueText(data.key), items);
  data.owner = ownerOf(impl, data);
  return data;
}

LabelData describeVariable(const BpVariable& variable) {
  const Variable& entry = declaration(variable.index());
  LabelData data;
  data.key = validUtf8(entry.name);
  data.text = validUtf8(entry.shownName());
  data.owner = data.key;
  data.variables = {data.key};
  return data;
}

LabelData describeKey(const std::string& key) {
  LabelData data;
  data.key = validUtf8(key);
  data.text = validUtf8(catalogueText(key));
  return data;
}

const BpComposite::Impl& composite(const BpLabel& label) {
  return static_cast<const BpComposite&>(label).impl();
}

}  // namespace

LabelPart::LabelPart(const BpVariable& entry)
    : kind(Kind::kVariable), variable(entry.index()), code(entry.showCode()) {}

LabelPart::LabelPart(const BpDataValue& value)
    : kind(value.isString() ? Kind::kStringValue : Kind::kNumberValue),
      variable(value.variable()),
      code(value.preference()),
      number(value.number()),
      text(trimmed(value.text())) {}

LabelPart::LabelPart(const BpNumber& entry) : kind(Kind::kNumber), number(entry.value) {}

std::string catalogueText(const std::string& key) {
  const Catalogue* catalogue = currentSession().catalogue;
  return catalogue == nullptr ? key : catalogue->text(key);
}

std::string textOf(const LabelPart& part) {
  switch (part.kind) {
    case LabelPart::Kind::kVariable:
      return validUtf8(declaration(part.variable).shownName());
    case LabelPart::Kind::kNumberValue:
      return validUtf8(numberValueText(part));
    case LabelPart::Kind::kStringValue:
      return validUtf8(stringValueText(part));
    case LabelPart::Kind::kNumber:
      return shortestNumber(part.number);
    case LabelPart::Kind::kList:
      break;
  }
  return listText(part);
}

const std::vector<LabelPart>& partsOf(const BpLabel& label) {
  static const std::vector<LabelPart> none;
  return label.kind() == BpLabel::Kind::kComposite ? composite(label).parts : none;
}

std::string identityOf(const BpLabel& label) {
  std::string identity;
  switch (label.kind()) {
    case BpLabel::Kind::kString:
      identity = kTextIdentity;
      identity += static_cast<const BpString&>(label).text();
      break;
    case BpLabel::Kind::kVariable:
      identity = 'V';
      appendIdentity(identity, LabelPart(static_cast<const BpVariable&>(label)));
      break;
    case BpLabel::Kind::kComposite:
      identity = 'C';
      appendText(identity, composite(label).templateText);
      for (const LabelPart& part : composite(label).parts) appendIdentity(identity, part);
      break;
  }
  return identity;
}

bool hasIdentity(const BpLabel& label, std::string_view identity) {
  if (label.kind() != BpLabel::Kind::kString) return identityOf(label) == identity;
  return !identity.empty() && identity.front() == kTextIdentity &&
         identity.substr(1) == static_cast<const BpString&>(label).text();
}

LabelData describe(const BpLabel& label) { return describe(label, identityOf(label)); }

LabelData describe(const BpLabel& label, std::string identity) {
  LabelData data;
  switch (label.kind()) {
    case BpLabel::Kind::kString:
      data = describeKey(static_cast<const BpString&>(label).text());
      break;
    case BpLabel::Kind::kVariable:
      data = describeVariable(static_cast<const BpVariable&>(label));
      break;
    case BpLabel::Kind::kComposite:
      data = describeComposite(composite(label));
      break;
  }
  data.identity = std::move(identity);
  return data;
}

LabelData describeSplitValue(VarIndex variable, const SplitValue& value) {
  const bool isNumber = std::holds_alternative<double>(value);
  const LabelPart part(isNumber ? BpDataValue(variable, std::get<double>(value), kByLabel)
                                : BpDataValue(variable, std::get<std::string>(value), kByLabel));
  LabelData data;
  data.identity = 'D';
  appendIdentity(data.identity, part);
  data.text = textOf(part);
  data.key = isNumber ? valueText(declaration(variable), part.number) : validUtf8(part.text);
  data.owner = validUtf8(declaration(variable).name);
  data.values = {labelValue(part)};
  data.showsMissing = showsMissing(part);
  return data;
}

}  // namespace workbench
