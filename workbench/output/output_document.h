/// The output document of a session: its procedures, and what the running one remembers.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/output/document.h"
#include "workbench/output/labels.h"
#include "workbench/output/split_names.h"

namespace workbench {

/// Host objects of the running procedure: handles into its tables. Made for a procedure, gone when
/// it ends.
class ProcedureHandles;

/// One split variable and its value in a split group.
struct SplitPlace {
  VarIndex variable;
  LabelPart value;
  LabelData dimension;  ///< the variable as a dimension of a shared table
  LabelData category;   ///< the value as a category of it
  std::string name;     ///< the value where it stands outside of that dimension
};

class OutputDocument {
 public:
  OutputDocument();
  ~OutputDocument();
  OutputDocument(const OutputDocument&) = delete;
  OutputDocument& operator=(const OutputDocument&) = delete;

  /// Opens a procedure for a command; everything issued until finishProcedure belongs to it.
  void beginProcedure(const std::string& title, const std::string& command);
  /// Ends it: settles its status and the texts of its labels. When the data could not be read to
  /// the end, its tables are dropped and the reason is added as an error. `dataset` may be null.
  void finishProcedure(const ActiveDataset* dataset);

  const std::vector<std::unique_ptr<DocumentProcedure>>& procedures() const { return procedures_; }
  bool isOpen() const { return handles_ != nullptr; }
  /// The running procedure and its handles. Both throw std::logic_error when none runs.
  DocumentProcedure& current();
  ProcedureHandles& handles();

  /// Adds to the running procedure; an error counts until the next clearErrors.
  void addMessage(DocumentMessage message);
  /// The same for a message on the split group that is remembered.
  void addGroupMessage(DocumentMessage message);
  void clearErrors() { errors_ = 0; }

  /// Remembers the split group that the data set is at, for the tables and messages that follow.
  void setSplit(const ActiveDataset& dataset);
  /// The group that is remembered, outermost variable first; empty without split variables.
  const std::vector<SplitPlace>& split() const { return split_; }
  /// The same as shown; variables that read alike are told apart.
  const ShownSplit& shownSplit() const { return shownSplit_; }
  /// True when each group has tables of its own.
  bool separateSplits() const { return separateSplits_; }

 private:
  /// A message on a group: when it is issued, not all groups that its name depends on are known.
  struct GroupMessage {
    size_t position = 0;  // among the messages
    std::vector<std::pair<VarIndex, SplitValue>> group;
  };

  void forget();
  void nameGroupsOfMessages();

  std::vector<std::unique_ptr<DocumentProcedure>> procedures_;
  std::unique_ptr<ProcedureHandles> handles_;  // null when no procedure runs
  int errors_ = 0;
  bool separateSplits_ = false;
  std::vector<SplitPlace> split_;
  std::vector<std::pair<VarIndex, SplitValue>> group_;  // the same
  ShownSplit shownSplit_;
  SplitNames splitNames_;  // of the running procedure
  std::vector<GroupMessage> groupMessages_;
};

}  // namespace workbench
