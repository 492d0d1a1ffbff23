// Any bytes as a dictionary, for columns of every form.
#include <fstream>

#include "tests/fuzz/target.h"
#include "workbench/dataset/dictionary.h"
#include "workbench/engine/temp_folder.h"
#include "workbench/values/data_error.h"

namespace {

void readColumns(const workbench::Dictionary& dictionary) {
  using workbench::ColumnForm;
  const std::pair<const char*, ColumnForm> columns[] = {
      {"a", ColumnForm::kNumber}, {"b", ColumnForm::kString}, {"c", ColumnForm::kBoolean},
      {"d", ColumnForm::kDate},   {"t", ColumnForm::kTime},   {"dt", ColumnForm::kDateTime}};
  for (const auto& [name, form] : columns) {
    workbench::SourceColumn column;
    column.name = name;
    column.isText = true;
    column.reading.form = form;
    dictionary.missingTexts(name);
    column.reading = dictionary.reading(column);
    workbench::Variable detected;
    detected.name = name;
    const workbench::Variable variable = dictionary.variable(detected);
    fuzz::promise(variable.name == name, "a variable keeps its name", variable.name);
    dictionary.wholeOnly(name);
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
