#include "host/output.h"
#include "workbench/output/handles.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/session/session.h"

using workbench::LabelPart;

void BpComposite::Impl::add(LabelPart part) {
  (inList ? parts.back().elements : parts).push_back(std::move(part));
}

BpComposite::BpComposite(const char* templateText)
    : BpLabel(Kind::kComposite), impl_(std::make_unique<Impl>()) {
  impl_->templateText = templateText;
}
BpComposite::BpComposite(BpComposite&& other) noexcept = default;
BpComposite& BpComposite::operator=(BpComposite&& other) noexcept = default;
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpVariable& variable) { impl_->add(LabelPart(variable)); }
void BpComposite::Add(const BpDataValue& value) { impl_->add(LabelPart(value)); }
void BpComposite::Add(const BpNumber& number) { impl_->add(LabelPart(number)); }

void BpComposite::Sublist() {
  impl_->parts.emplace_back(LabelPart::Kind::kList);
  impl_->inList = true;
}

void BpComposite::EndSublist() { impl_->inList = false; }

void BpComposite::SplitList() {
  if (!impl_->inList) return;
  // A list of its own takes the place of the open one, so that a failure changes nothing.
  LabelPart list = impl_->parts.back();
  list.isSplitList = true;
  for (const workbench::SplitPlace& place : workbench::currentSession().document->split()) {
    list.elements.emplace_back(BpVariable(place.variable, 2));
    list.elements.push_back(place.value);
  }
  impl_->parts.back() = std::move(list);
}

void BpComposite::Finish() { impl_->inList = false; }

BpCellText::BpCellText(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
BpCellText::~BpCellText() = default;

BpCellText* BpCellText::Replicate(const BpString& text) {
  workbench::ProcedureHandles& handles = workbench::currentSession().document->handles();
  // A text that was replicated before serves again: tables repeat a note in thousands of cells.
  if (BpCellText* known = handles.findCellText(text.text())) return known;
  const workbench::LabelData label = workbench::describe(text);
  auto impl = std::make_unique<Impl>();
  impl->key = text.text();
  impl->note = {label.key, label.text};
  return handles.addCellText(std::unique_ptr<BpCellText>(new BpCellText(std::move(impl))));
}
