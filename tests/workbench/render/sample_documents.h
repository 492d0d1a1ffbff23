/// Small documents that show what renderers have to deal with.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/workbench/output/output_fixture.h"
#include "workbench/render/render.h"

namespace workbench {

/// What a document is made from: variables, catalogue and split group are set as it goes.
class SampleBench {
 public:
  SampleBench();

  /// Adds a table's row with these cells; a column with a group is written "group|leaf".
  struct CellAt {
    const char* column;
    BpNumber number;
    const char* note = nullptr;
  };
  static void writeCells(BpDimension& columns, const std::vector<CellAt>& cells);

  std::string rendered(Format format, const RenderOptions& options = {}) const;

  NamedVariables data;
  Catalogue catalogue = Catalogue::english();
  OutputDocument document;

 private:
  Session session_;
  SessionScope scope_{session_};
};

struct SampleDocument {
  const char* name;
  void (*make)(SampleBench& bench);
};

/// Names a sample in the list of tests.
inline void PrintTo(const SampleDocument& sample, std::ostream* out) { *out << sample.name; }

/// All samples; each is rendered in every format and compared with a file of its name.
const std::vector<SampleDocument>& sampleDocuments();

}  // namespace workbench
