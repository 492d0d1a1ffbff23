// Procedures, tables and cells: recorded, found or made, kept as a document.
#include <algorithm>
#include <memory>

#include "host/output.h"
#include "tests/recording/host.h"
#include "tests/recording/output_document.h"

using recording::Call;
using recording::DimensionState;
using recording::Host;
using recording::Kind;
using recording::Life;
using recording::Node;
using recording::Raw;
using recording::TableState;

// The handles are thin: each stands next to the part of the document that it speaks for.
struct BpCategory::Impl : Node {
  explicit Impl(std::string text) : Node(Kind::kCategory, std::move(text)) {}
  BpCategory handle{this};
};

struct BpGroup::Impl {
  explicit Impl(Node& partOfDocument) : node(&partOfDocument) {}
  Node* node;
};

struct BpPivotTable::Impl : TableState {
  using TableState::TableState;
  BpPivotTable handle{this};
};

struct BpHeading::Impl {
  recording::OutputState& output = recording::currentOutput();
  BpHeading handle{this};
};

struct BpProcedure::Impl {
  Life self{Kind::kProcedure};
  BpHeading::Impl heading;
};

namespace {

struct GroupNode : Node {
  explicit GroupNode(std::string text) : Node(Kind::kGroup, std::move(text)) {}
  BpGroup::Impl impl{*this};
  BpGroup handle{&impl};
};

struct DimensionNode : DimensionState {
  using DimensionState::DimensionState;
  BpGroup::Impl impl{*this};
  BpDimension handle{&impl};
};

/// The child of that class and label, made when there is none.
template <class Child>
Child& findOrMake(Node& parent, const std::string& label) {
  for (const auto& child : parent.children) {
    auto* found = dynamic_cast<Child*>(child.get());
    if (found != nullptr && found->label == label) return *found;
  }
  auto made = std::make_unique<Child>(label);
  made->table = parent.table;
  made->dimension = parent.dimension;
  made->parent = &parent;
  Child& child = *made;
  parent.children.push_back(std::move(made));
  return child;
}

std::string describeSplit() {
  std::string text;
  for (const recording::Value& value : Host::current().rememberedSplit) {
    text += text.empty() ? "split " : ", ";
    text += std::visit([](const auto& held) { return recording::shown(held); }, value);
  }
  return text;
}

BpPivotTable::Impl* findTable(const recording::OutputState& output, const std::string& title,
                              const std::string& split) {
  for (const auto& table : output.tables) {
    if (table->title == title && table->split == split) {
      return static_cast<BpPivotTable::Impl*>(table.get());
    }
  }
  return nullptr;
}

}  // namespace

BpProcedure::BpProcedure(const char* title, int code) : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new", title, code).done();
}

BpProcedure::~BpProcedure() = default;

void BpProcedure::SplitChange() {
  Call call(impl_->self, "SplitChange");
  Host& host = Host::current();
  host.rememberedSplit = host.liveSplit;
  call.givesText(describeSplit());
}

BpHeading& BpProcedure::Heading() {
  Call(impl_->self, "Heading").done();
  return impl_->heading.handle;
}

BpFormatSpec BpProcedure::Count() const {
  Call(impl_->self, "Count").done();
  return {BpFormatSpec::Kind::kCount};
}

BpFormatSpec BpProcedure::GeneralStat() const {
  Call(impl_->self, "GeneralStat").done();
  return {BpFormatSpec::Kind::kGeneralStat};
}

BpFormatSpec BpProcedure::SigDigit(double number) const {
  Call(impl_->self, "SigDigit", number).done();
  return {BpFormatSpec::Kind::kSigDigit};
}

BpPivotTable& BpHeading::PivotTable(const BpString& title, const char* lookupName, int code) {
  Call call("BpHeading.PivotTable", Call::May::kThrow, Raw{recording::describe(title)}, lookupName,
            code);
  const bool separate = Host::current().script().separateSplitLayout;
  const std::string split = describeSplit();
  const std::string ownSplit = separate ? split : std::string();
  BpPivotTable::Impl* table = findTable(impl_->output, lookupName, ownSplit);
  if (table == nullptr) {
    auto made = std::make_unique<BpPivotTable::Impl>(lookupName, ownSplit);
    table = made.get();
    impl_->output.tables.push_back(std::move(made));
  }
  if (!separate) table->splitRow = split;
  call.givesText(table->life.name());
  return table->handle;
}

BpDimension& BpPivotTable::Dimension(const BpLabel& label, int code) {
  const std::string text = recording::describe(label);
  Call call(impl_->life, "Dimension", Raw{text}, code);
  DimensionNode* dimension = nullptr;
  for (const auto& known : impl_->dimensions) {
    if (known->label == text) dimension = static_cast<DimensionNode*>(known.get());
  }
  if (dimension == nullptr) {
    auto made = std::make_unique<DimensionNode>(text);
    made->table = impl_;
    made->dimension = impl_->dimensions.size();
    dimension = made.get();
    impl_->dimensions.push_back(std::move(made));
  }
  call.givesText(dimension->life.name());
  return dimension->handle;
}

void BpDimension::Position(int axis, int level, int first, int second) {
  Call(impl_->node->life, "Position", axis, level, first, second).done();
  std::string position;
  for (const int number : {axis, level, first, second}) {
    if (!position.empty()) position += ' ';
    position += std::to_string(number);
  }
  static_cast<DimensionState*>(impl_->node)->position = position;
}

BpGroup& BpGroup::Group(const BpLabel& label, int first, int second) {
  const std::string text = recording::describe(label);
  Call call(impl_->node->life, "Group", Raw{text}, first, second);
  auto& group = findOrMake<GroupNode>(*impl_->node, text);
  call.givesText(group.life.name());
  return group.handle;
}

BpCategory& BpGroup::Category(const BpLabel& label) {
  const std::string text = recording::describe(label);
  Call call(impl_->node->life, "Category", Raw{text});
  auto& category = findOrMake<BpCategory::Impl>(*impl_->node, text);
  category.table->dimensions[category.dimension]->current = &category;
  call.givesText(category.life.name());
  return category.handle;
}

void BpCategory::Cell(const BpNumber& number) {
  const std::string text = recording::describe(number);
  const std::string place = impl_->table->place(*impl_);
  Call(impl_->life, "Cell", Raw{text}).givesText("at " + place);
  const auto [cell, isNew] = impl_->table->cells.try_emplace(place);
  if (isNew) impl_->table->order.push_back(place);
  cell->second.number = number.value;
  cell->second.format = recording::shown(number.format);
}

void BpCategory::CellNote(const BpCellNote& note) {
  const Life& text = note.text->impl().self;
  const std::string place = impl_->table->place(*impl_);
  Call(impl_->life, "CellNote", text, Raw{note.text->impl().text}, note.first, note.second)
      .givesText("at " + place);
  auto& notes = impl_->table->cells[place].notes;
  if (std::find(notes.begin(), notes.end(), note.text->impl().text) == notes.end()) {
    notes.push_back(note.text->impl().text);
  }
}

void BpCategory::Note(const BpLabel& label) {
  const std::string text = recording::describe(label);
  Call(impl_->life, "Note", Raw{text}).done();
  auto& footnotes = impl_->footnotes;
  if (std::find(footnotes.begin(), footnotes.end(), text) == footnotes.end()) {
    footnotes.push_back(text);
  }
}

void BpError(const BpLabel& text, int code, int level) {
  Call("BpError", Call::May::kThrow, Raw{recording::describe(text)}, code, level).done();
}

void AddNotes(int section, const BpString& label, const BpString& value) {
  Call("AddNotes", Call::May::kThrow, section, Raw{recording::describe(label)},
       Raw{recording::describe(value)})
      .done();
}
