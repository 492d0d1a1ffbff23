// Any bytes as a dictionary, for columns of every form.
#include <fstream>

#include "tests/fuzz/target.h"
#include "workbench/dataset/dictionary.h"
#include "workbench/engine/temp_folder.h"
#include "workbench/values/data_error.h"

namespace {

void readColumns(const workbench::Dictionary& dictionary) {
  using workbench::ValueKind;
  const std::pair<const char*, ValueKind> columns[] = {
      {"a", ValueKind::kNumber}, {"b", ValueKind::kString}, {"c", ValueKind::kBoolean},
      {"d", ValueKind::kDate},   {"t", ValueKind::kTime},   {"dt", ValueKind::kDateTime}};
  for (const auto& [name, kind] : columns) {
    workbench::SourceVariable column;
    column.variable.name = name;
    column.variable.kind = kind;
    column.untyped = true;
    const workbench::ColumnType type = dictionary.type(column);
    const workbench::Variable variable = dictionary.variable(column.variable, type);
    fuzz::promise(variable.name == name, "a variable keeps its name", variable.name);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static const workbench::TempFolder folder;
  const std::string file = folder.path() + "/schema.json";
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  try {
    const workbench::Dictionary dictionary(file);
    dictionary.refuseUnknown({"a", "b", "c", "d", "t", "dt"});
    readColumns(dictionary);
  } catch (const workbench::DataError& error) {
    fuzz::promise(std::string(error.what()).find("schema.json") != std::string::npos,
                  "a refusal names the file", error.what());
  }
  return 0;
}
