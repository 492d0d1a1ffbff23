/// The output document of a session: its procedures, and what the running one remembers.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/output/document.h"

namespace workbench {

class Catalogue;

/// Host objects of the running procedure: handles into its tables. Made for a procedure, gone with
/// the next one.
class ProcedureHandles;

class OutputDocument {
 public:
  OutputDocument();
  ~OutputDocument();
  OutputDocument(const OutputDocument&) = delete;
  OutputDocument& operator=(const OutputDocument&) = delete;

  /// Opens a procedure for a command; everything issued until finishProcedure belongs to it.
  void beginProcedure(const std::string& title, const std::string& command);
  /// Ends it: settles its status and the texts of its labels. When the data could not be read to
  /// the end, its tables are dropped and the reason is added as an error.
  void finishProcedure(ActiveDataset* dataset);
  /// Takes the running procedure back, as if it had never begun.
  void discardProcedure();

  const std::vector<std::unique_ptr<DocumentProcedure>>& procedures() const { return procedures_; }
  bool isOpen() const { return open_; }
  DocumentProcedure& current();
  ProcedureHandles& handles() { return *handles_; }

  void addMessage(DocumentMessage message);
  void clearErrors() { errors_ = 0; }

  /// The split group that tables and messages belong to from now on.
  void setSplit(ActiveDataset& dataset);
  const ShownSplit& shownSplit() const { return shownSplit_; }
  const std::vector<LabelData>& splitLabels() const { return splitLabels_; }
  const std::vector<LabelData>& splitVariables() const { return splitVariables_; }
  bool separateSplits() const { return separateSplits_; }

 private:
  std::vector<std::unique_ptr<DocumentProcedure>> procedures_;
  std::unique_ptr<ProcedureHandles> handles_;
  bool open_ = false;
  int errors_ = 0;
  bool separateSplits_ = false;
  ShownSplit shownSplit_;
  std::vector<LabelData> splitLabels_;     ///< the current values, as categories
  std::vector<LabelData> splitVariables_;  ///< the split variables, as dimensions
};

/// Makes labels of one parent that read alike, and dimensions of one table that do, tell themselves
/// apart: by the variable's name in brackets, then by a number.
void disambiguate(Table& table);

}  // namespace workbench
