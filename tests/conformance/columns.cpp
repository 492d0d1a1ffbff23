#include "tests/conformance/host_under_test.h"

namespace conformance {

Column numbers(const std::string& name, std::vector<double> values) {
  Column column;
  column.name = name;
  column.numbers = std::move(values);
  return column;
}

Column strings(const std::string& name, int32_t width, std::vector<std::string> values) {
  Column column;
  column.name = name;
  column.width = width;
  column.strings = std::move(values);
  return column;
}

}  // namespace conformance
