/// The objects that a procedure holds references to, and what they stand for in the document.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/output.h"
#include "workbench/output/document.h"

namespace workbench {
struct TableHandles;
class ProcedureHandles;
}  // namespace workbench

struct BpCategory::Impl {
  workbench::TableHandles* table;
  workbench::Dimension* dimension;
  int32_t node;
  BpCategory handle{this};
};

struct BpGroup::Impl {
  workbench::TableHandles* table;
  workbench::Dimension* dimension;
  int32_t node;
  BpDimension handle{this};  // a group is seen through the base part
};

struct BpPivotTable::Impl {
  workbench::TableHandles* table;
  BpPivotTable handle{this};
};

struct BpHeading::Impl {
  workbench::ProcedureHandles* procedure;
  BpHeading handle{this};
};

struct BpCellText::Impl {
  std::string key;
  std::string text;
};

namespace workbench {

/// Handles of one table. A deque never moves its elements, so references stay good.
struct TableHandles {
  explicit TableHandles(Table& model) : table(model) { pivot.table = this; }

  BpCategory& category(Dimension& dimension, int32_t node);
  BpGroup::Impl& group(Dimension& dimension, int32_t node);

  Table& table;
  BpPivotTable::Impl pivot{nullptr};

 private:
  struct Node {
    const Dimension* dimension;
    int32_t node;
    bool operator==(const Node&) const = default;
  };
  struct NodeHash {
    size_t operator()(const Node& n) const {
      return std::hash<const void*>()(n.dimension) * 31 + static_cast<size_t>(n.node);
    }
  };
  std::deque<BpCategory::Impl> categories_;
  std::deque<BpGroup::Impl> groups_;
  std::unordered_map<Node, BpCategory::Impl*, NodeHash> categoryOf_;
  std::unordered_map<Node, BpGroup::Impl*, NodeHash> groupOf_;
};

class ProcedureHandles {
 public:
  /// The table of that identity, or null.
  TableHandles* find(const std::string& identity) const;
  TableHandles& add(const std::string& identity, Table& table);
  BpCellText* addCellText(std::unique_ptr<BpCellText> text);
  BpHeading& heading() { return heading_.handle; }

 private:
  BpHeading::Impl heading_{this};
  std::deque<TableHandles> tables_;
  std::unordered_map<std::string, TableHandles*> tableOf_;
  std::vector<std::unique_ptr<BpCellText>> cellTexts_;
};

}  // namespace workbench
