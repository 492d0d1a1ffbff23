#include "tests/recording/output_document.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace recording {
namespace {

std::string shortened(double number) {
  if (number == kSystemMissing || std::isnan(number)) return shown(number);
  char text[40];
  std::snprintf(text, sizeof text, "%.12g", number);
  return text;
}

void listCategories(const Node& node, int depth, std::string& text) {
  for (const auto& child : node.children) {
    text += std::string(static_cast<size_t>(depth) * 2, ' ') + child->label;
    for (const std::string& footnote : child->footnotes) text += " {" + footnote + "}";
    text += '\n';
    listCategories(*child, depth + 1, text);
  }
}

}  // namespace

std::string Node::path() const {
  if (parent == nullptr) return "";
  const std::string above = parent->path();
  return above.empty() ? label : above + " / " + label;
}

std::string TableState::place(const Node& category) const {
  std::string text = splitRow;
  for (size_t i = 0; i < dimensions.size(); ++i) {
    const Node* at = i == category.dimension ? &category : dimensions[i]->current;
    if (at == nullptr)
      throw std::logic_error("a cell without a category in " + dimensions[i]->label);
    if (!text.empty()) text += " | ";
    text += at->path();
  }
  return text;
}

OutputState& currentOutput() {
  Host& host = Host::current();
  if (host.output == nullptr) host.output = std::make_shared<OutputState>();
  return *static_cast<OutputState*>(host.output.get());
}

std::string tablesText() {
  std::string text;
  for (const auto& table : currentOutput().tables) {
    text += "table " + table->title + (table->split.empty() ? "" : " for " + table->split) + '\n';
    for (const auto& dimension : table->dimensions) {
      text += "  " + dimension->label + " at " + dimension->position + '\n';
      listCategories(*dimension, 2, text);
    }
    for (const std::string& place : table->order) {
      const CellState& cell = table->cells.at(place);
      text += "  " + place + ": " + shortened(cell.number) + " " + cell.format;
      for (const std::string& note : cell.notes) text += " {" + note + "}";
      text += '\n';
    }
  }
  return text;
}

}  // namespace recording
