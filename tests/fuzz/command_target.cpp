// Any text as commands, on data of every kind.
#include <vector>

#include "tests/fuzz/target.h"
#include "tests/fuzz/workbench_run.h"

namespace {

workbench::Variable named(const char* name, const char* label = "") {
  workbench::Variable variable;
  variable.name = name;
  variable.label = label;
  return variable;
}

void fill(workbench::MemoryDataset& data) {
  workbench::Variable coded = named("b", "Label of b");
  coded.missingNumbers = {9};
  data.addNumbers("a", {1, 0, 1, 0, 1, 0});
  data.addNumbers(coded, {1, 9, 2, 1, 9, 2});
  data.addNumbers("c", {0, 0, 0, kSystemMissing, 1, 1});
  data.addNumbers("g", {1, 2, 1, 2, 1, 2});
  data.addStrings("s", {"yes", "no", "", "yes", "no", "yes"});
  data.addStrings("two words", {"a long value", "b", "a long value", "b", "b", ""});
  const VarIndex weight = data.addNumbers("w", {1, 2, 0.4, 1.5, 1, 3});
  data.setWeight(weight);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  if (size > 2000) return 0;
  workbench::MemoryDataset data;
  fill(data);
  fuzz::renderCommands(data, std::string(reinterpret_cast<const char*>(bytes), size),
                       workbench::Format::kJson);
  return 0;
}
