// Labels, recorded by their structure.
#include <memory>
#include <stdexcept>
#include <utility>

#include "host/output.h"
#include "tests/recording/host.h"
#include "tests/recording/output_document.h"

using recording::Call;
using recording::Host;
using recording::Life;
using recording::Raw;
using recording::shown;

struct BpComposite::Impl {
  void add(const std::string& item) {
    if (finished) throw std::logic_error("an item after Finish");
    if (!items.empty() && !item.empty()) items += ' ';
    items += item;
  }

  Life self{recording::Kind::kComposite};
  std::string templateText;
  std::string items;
  bool inSublist = false;
  bool finished = false;
};

namespace recording {

std::string shown(const BpFormatSpec& format) {
  switch (format.kind) {
    case BpFormatSpec::Kind::kCount:
      return "Count";
    case BpFormatSpec::Kind::kGeneralStat:
      return "GeneralStat";
    case BpFormatSpec::Kind::kSigDigit:
      return "SigDigit";
  }
  return "no format";
}

std::string describe(const BpNumber& number) {
  return shown(number.value) + " " + shown(number.format);
}

std::string describe(const BpLabel& label) {
  if (label.kind() == BpLabel::Kind::kString) {
    const auto& text = static_cast<const BpString&>(label);
    return shown(text.text()) + (text.flag() == 1 ? "" : " flag " + std::to_string(text.flag()));
  }
  if (label.kind() == BpLabel::Kind::kVariable) {
    const auto& variable = static_cast<const BpVariable&>(label);
    return "[var " + std::to_string(variable.index()) + " show " +
           std::to_string(variable.showCode()) + "]";
  }
  const BpComposite::Impl& composite = static_cast<const BpComposite&>(label).impl();
  return std::string(composite.finished ? "composite " : "unfinished composite ") +
         shown(composite.templateText) + (composite.items.empty() ? "" : " ") + composite.items;
}

std::string describe(const BpDataValue& value) {
  return "[value var " + std::to_string(value.variable()) + " " +
         (value.isString() ? shown(value.text()) : shown(value.number())) + " pref " +
         std::to_string(value.preference()) + "]";
}

namespace {

std::string describeSplit() {
  std::string text;
  const Host& host = Host::current();
  for (size_t i = 0; i < host.rememberedSplit.size(); ++i) {
    const Value& value = host.rememberedSplit[i];
    if (i > 0) text += ' ';
    text += "[split var " + std::to_string(host.script().split[i]) + " " +
            std::visit([](const auto& held) { return shown(held); }, value) + "]";
  }
  return text;
}

}  // namespace
}  // namespace recording

BpComposite::BpComposite(const char* templateText)
    : BpLabel(Kind::kComposite), impl_(std::make_unique<Impl>()) {
  impl_->templateText = templateText;
  Call(impl_->self, "new", templateText).done();
}

BpComposite::BpComposite(BpComposite&& other) noexcept = default;
BpComposite& BpComposite::operator=(BpComposite&& other) noexcept = default;
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpVariable& variable) {
  Call(impl_->self, "Add", Raw{recording::describe(variable)}).done();
  impl_->add(recording::describe(variable));
}

void BpComposite::Add(const BpDataValue& value) {
  Call(impl_->self, "Add", Raw{recording::describe(value)}).done();
  impl_->add(recording::describe(value));
}

void BpComposite::Add(const BpNumber& number) {
  Call(impl_->self, "Add", Raw{recording::describe(number)}).done();
  impl_->add("[number " + recording::describe(number) + "]");
}

void BpComposite::Sublist() {
  Call(impl_->self, "Sublist").done();
  if (impl_->inSublist) throw std::logic_error("a sublist inside a sublist");
  impl_->add("[list");
  impl_->inSublist = true;
}

void BpComposite::EndSublist() {
  Call(impl_->self, "EndSublist").done();
  if (!impl_->inSublist) throw std::logic_error("the end of no sublist");
  impl_->items += ']';
  impl_->inSublist = false;
}

void BpComposite::SplitList() {
  Call(impl_->self, "SplitList").done();
  if (!impl_->inSublist) throw std::logic_error("a split list outside a sublist");
  impl_->add(recording::describeSplit());
}

void BpComposite::Finish() {
  Call(impl_->self, "Finish").done();
  if (impl_->inSublist) throw std::logic_error("a label ends inside a sublist");
  impl_->finished = true;
}

BpCellText::BpCellText(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
BpCellText::~BpCellText() = default;

BpCellText* BpCellText::Replicate(const BpString& text) {
  Call call("BpCellText.Replicate", Call::May::kThrow, Raw{recording::describe(text)});
  auto impl = std::make_unique<Impl>();
  impl->text = recording::describe(text);
  std::unique_ptr<BpCellText> made(new BpCellText(std::move(impl)));
  call.givesText(made->impl().self.name());
  auto& kept = recording::currentOutput().cellTexts;
  kept.push_back(std::move(made));
  return kept.back().get();
}
