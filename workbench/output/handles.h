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
struct DimensionHandles;
struct TableHandles;
class ProcedureHandles;
}  // namespace workbench

struct BpCategory::Impl {
  workbench::DimensionHandles& dimension;
  int32_t node;
  BpCategory handle{this};
};

struct BpGroup::Impl {
  workbench::DimensionHandles& dimension;
  int32_t node;
  BpDimension handle{this};  // a group is seen through the base part
};

struct BpPivotTable::Impl {
  workbench::TableHandles& table;
  BpPivotTable handle{this};
};

struct BpHeading::Impl {
  workbench::ProcedureHandles& procedure;
  BpHeading handle{this};
};

struct BpCellText::Impl {
  std::string key;
  workbench::CellNoteText note;
};

namespace workbench {

/// Both faces of a node; which of them is used depends on what the node is.
struct NodeHandles {
  NodeHandles(DimensionHandles& dimension, int32_t node)
      : category{dimension, node}, group{dimension, node} {}
  NodeHandles(const NodeHandles&) = delete;
  NodeHandles& operator=(const NodeHandles&) = delete;

  BpCategory::Impl category;
  BpGroup::Impl group;
};

/// Handles of one dimension, one per node of its tree.
struct DimensionHandles {
  DimensionHandles(Table& itsTable, size_t itsPosition) : table(itsTable), position(itsPosition) {}

  Dimension& model() const { return table.dimension(position); }
  NodeHandles& node(int32_t index);
  /// The node of that label below another, made when it is not there yet.
  int32_t nodeBelow(int32_t parent, const BpLabel& label, bool leaf);

  Table& table;
  size_t position;

 private:
  int32_t findRecent(int32_t parent, const BpLabel& label, bool leaf);
  void rememberRecent(int32_t node);

  std::deque<NodeHandles> nodes_;  // a deque never moves its elements: references stay good
  std::vector<int32_t> recent_;    // nodes of plain texts
  size_t nextRecent_ = 0;
};

/// Handles of one table.
struct TableHandles {
  explicit TableHandles(Table& model) : table(model), pivot{*this} {}
  TableHandles(const TableHandles&) = delete;
  TableHandles& operator=(const TableHandles&) = delete;

  DimensionHandles& dimension(size_t position);

  Table& table;
  BpPivotTable::Impl pivot;

 private:
  std::deque<DimensionHandles> dimensions_;
};

/// Handles of one procedure.
class ProcedureHandles {
 public:
  ProcedureHandles() : heading_{*this} {}
  ProcedureHandles(const ProcedureHandles&) = delete;
  ProcedureHandles& operator=(const ProcedureHandles&) = delete;

  /// The table of that identity, or null.
  TableHandles* find(const std::string& identity) const;
  TableHandles& add(const std::string& identity, Table& table);
  /// The text of that key, or null.
  BpCellText* findCellText(const std::string& key) const;
  BpCellText* addCellText(std::unique_ptr<BpCellText> text);
  BpHeading& heading() { return heading_.handle; }

 private:
  BpHeading::Impl heading_;
  std::deque<TableHandles> tables_;
  std::unordered_map<std::string, TableHandles*> tableOf_;
  std::vector<std::unique_ptr<BpCellText>> cellTexts_;
};

}  // namespace workbench
