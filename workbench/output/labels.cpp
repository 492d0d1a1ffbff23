#include "workbench/output/labels.h"

#include <cstring>
#include <string_view>

#include "workbench/catalogue/catalogue.h"
#include "workbench/dataset/value_text.h"
#include "workbench/output/output_document.h"
#include "workbench/session/session.h"

namespace workbench {
namespace {

constexpr int kByLabel = 2;

std::string bitsOf(double value) {
  if (value == 0.0) value = 0.0;  // minus zero is zero
  std::string bits(sizeof value, '\0');
  std::memcpy(bits.data(), &value, sizeof value);
  return bits;
}

/// A part of an identity: its length keeps neighbouring parts apart.
std::string part(std::string_view text) {
  return std::to_string(text.size()) + ':' + std::string(text);
}

/// Reads a number of up to three digits at `at`; 0 when there is none.
size_t readIndex(std::string_view text, size_t& at) {
  size_t value = 0;
  const size_t start = at;
  while (at < text.size() && at - start < 3 && text[at] >= '0' && text[at] <= '9') {
    value = value * 10 + static_cast<size_t>(text[at++] - '0');
  }
  return value;
}

/// One element of a run: %1 (in the first form) and ^1 (in the others) name its parts.
std::string fillElement(std::string_view form, char marker, const std::vector<LabelData>& parts) {
  std::string result;
  for (size_t at = 0; at < form.size();) {
    if (form[at] == marker) {
      size_t next = at + 1;
      const size_t index = readIndex(form, next);
      if (index >= 1 && index <= parts.size()) {
        result += parts[index - 1].text;
        at = next;
        continue;
      }
    }
    result += form[at++];
  }
  return result;
}

/// The run that starts at text[at] == '['; false when what stands there is none.
bool fillRun(std::string_view text, size_t& at, const std::vector<LabelItem>& items,
             std::string& result) {
  const size_t firstEnd = text.find(':', at);
  if (firstEnd == std::string_view::npos) return false;
  const size_t restEnd = text.find(":]", firstEnd + 1);
  if (restEnd == std::string_view::npos) return false;
  size_t next = restEnd + 2;
  const size_t index = readIndex(text, next);
  if (index < 1 || index > items.size() || !items[index - 1].isList) return false;
  const std::string_view first = text.substr(at + 1, firstEnd - at - 1);
  const std::string_view rest = text.substr(firstEnd + 1, restEnd - firstEnd - 1);
  const auto& elements = items[index - 1].elements;
  for (size_t i = 0; i < elements.size(); ++i) {
    result += i == 0 ? fillElement(first, '%', elements[i]) : fillElement(rest, '^', elements[i]);
  }
  at = next;
  return true;
}

LabelData composite(const BpComposite::Impl& impl) {
  LabelData data;
  data.key = impl.templateText;
  data.identity = 'C' + part(impl.templateText);
  for (const LabelItem& item : impl.items) {
    if (data.variable.empty()) data.variable = item.data.variable;
    data.showsMissing |= item.data.showsMissing;
    data.identity += part(item.data.identity);
  }
  data.text = fillTemplate(catalogueText(impl.templateText), impl.items);
  return data;
}

}  // namespace

std::string catalogueText(const std::string& key) {
  const Catalogue* catalogue = currentSession().catalogue;
  return catalogue == nullptr ? key : catalogue->text(key);
}

std::string fillTemplate(const std::string& text, const std::vector<LabelItem>& items) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    if (text[at] == '[' && fillRun(text, at, items, result)) continue;
    if (text[at] == '^') {
      size_t next = at + 1;
      const size_t index = readIndex(text, next);
      if (index >= 1 && index <= items.size()) {
        result += items[index - 1].data.text;
        at = next;
        continue;
      }
    }
    result += text[at++];
  }
  return result;
}

std::string fillTemplate(const std::string& text, const std::vector<std::string>& arguments) {
  std::vector<LabelItem> items(arguments.size());
  for (size_t i = 0; i < arguments.size(); ++i) items[i].data.text = arguments[i];
  return fillTemplate(text, items);
}

LabelData describeKey(const std::string& key) {
  LabelData data;
  data.identity = 'S' + key;
  data.key = key;
  data.text = catalogueText(key);
  return data;
}

LabelData describe(const BpVariable& variable) {
  const Variable& entry = currentSession().dataset->declaration(variable.index());
  LabelData data;
  data.identity =
      'V' + std::to_string(variable.index()) + ',' + std::to_string(variable.showCode());
  data.key = entry.name;
  data.text = entry.shownName();
  data.variable = entry.name;
  return data;
}

LabelData describe(const BpDataValue& value) {
  const Variable& entry = currentSession().dataset->declaration(value.variable());
  LabelData data;
  data.identity = 'D' + std::to_string(value.variable()) + ',' +
                  std::to_string(value.preference()) + ',' +
                  (value.isString() ? 's' + value.text() : 'n' + bitsOf(value.number()));
  const bool byLabel = value.preference() == kByLabel;
  if (value.isString()) {
    data.text = byLabel ? shownValue(entry, std::string_view(value.text())) : value.text();
  } else {
    data.text = byLabel ? shownValue(entry, value.number()) : valueText(entry, value.number());
    data.showsMissing = value.number() == kSystemMissing;
  }
  data.key = data.text;
  return data;
}

LabelData describe(const BpNumber& number) {
  LabelData data;
  data.identity = 'N' + bitsOf(number.value);
  data.text = shortestNumber(number.value);
  data.key = data.text;
  return data;
}

LabelData describe(const BpLabel& label) {
  switch (label.kind()) {
    case BpLabel::Kind::kString:
      return describeKey(static_cast<const BpString&>(label).text());
    case BpLabel::Kind::kVariable:
      return describe(static_cast<const BpVariable&>(label));
    case BpLabel::Kind::kComposite:
      break;
  }
  return composite(static_cast<const BpComposite&>(label).impl());
}

const std::vector<LabelItem>& itemsOf(const BpLabel& label) {
  static const std::vector<LabelItem> none;
  if (label.kind() != BpLabel::Kind::kComposite) return none;
  return static_cast<const BpComposite&>(label).impl().items;
}

}  // namespace workbench

using workbench::LabelData;
using workbench::LabelItem;

/// Outside a list an item of its own; inside one a further element with a single part.
void BpComposite::Impl::add(LabelData item) {
  if (!inList) {
    items.emplace_back().data = std::move(item);
    return;
  }
  LabelItem& list = items.back();
  list.data.identity += workbench::part(item.identity);
  list.data.showsMissing |= item.showsMissing;
  list.data.text += (list.elements.empty() ? "" : ", ") + item.text;
  list.elements.push_back({std::move(item)});
}

BpComposite::BpComposite(const char* templateText)
    : BpLabel(Kind::kComposite), impl_(std::make_unique<Impl>()) {
  impl_->templateText = templateText;
}
BpComposite::BpComposite(BpComposite&& other) noexcept = default;
BpComposite& BpComposite::operator=(BpComposite&& other) noexcept = default;
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpVariable& variable) { impl_->add(workbench::describe(variable)); }
void BpComposite::Add(const BpDataValue& value) { impl_->add(workbench::describe(value)); }
void BpComposite::Add(const BpNumber& number) { impl_->add(workbench::describe(number)); }

void BpComposite::Sublist() {
  LabelItem& item = impl_->items.emplace_back();
  item.isList = true;
  impl_->inList = true;
}

void BpComposite::EndSublist() { impl_->inList = false; }

void BpComposite::SplitList() {
  if (!impl_->inList) return;
  const workbench::OutputDocument& document = *workbench::currentSession().document;
  LabelItem& list = impl_->items.back();
  list.isSplitList = true;
  for (size_t i = 0; i < document.splitLabels().size(); ++i) {
    const LabelData& variable = document.splitVariables()[i];
    const LabelData& value = document.splitLabels()[i];
    list.data.identity += workbench::part(variable.identity) + workbench::part(value.identity);
    list.data.text += (i == 0 ? "" : ", ") + variable.text + " = " + value.text;
    list.elements.push_back({variable, value});
  }
}

void BpComposite::Finish() { impl_->inList = false; }
