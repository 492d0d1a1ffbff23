#include "reference_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "host/constants.h"

namespace {

std::vector<std::string> cut(const std::string& line) {
  std::vector<std::string> fields(1);
  for (const char c : line) {
    if (c == ',') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

}  // namespace

const std::string& ReferenceRow::text(const std::string& column) const {
  const auto found = std::find(names_->begin(), names_->end(), column);
  if (found == names_->end()) throw std::out_of_range("no column " + column);
  return fields_.at(static_cast<size_t>(found - names_->begin()));
}

double ReferenceRow::number(const std::string& column) const {
  const std::string& value = text(column);
  if (value == "missing") return kSystemMissing;
  if (value == "nan") return NAN;
  char* end = nullptr;
  const double number = std::strtod(value.c_str(), &end);
  if (value.empty() || *end != '\0') throw std::invalid_argument(column + ": " + value);
  return number;
}

ReferenceFile::ReferenceFile(const std::string& name) {
  std::ifstream in(std::string(REFERENCE_FOLDER "/") + name);
  if (!in) throw std::runtime_error("no reference file " + name);
  std::string line, header;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.compare(0, 2, "# ") == 0) {
      header = line.substr(2);
    } else if (!line.empty() && line[0] != '#') {
      if (names_.empty()) names_ = cut(header);
      rows_.emplace_back(&names_, cut(line), number);
    }
  }
  if (rows_.empty()) throw std::runtime_error("no rows in " + name);
}

void expectClose(double got, const ReferenceRow& row, const std::string& column, double nothing) {
  const double want = row.number(column);
  const std::string where = "line " + std::to_string(row.line()) + ", " + column;
  if (std::isnan(want) || want == kSystemMissing) {
    EXPECT_TRUE(std::isnan(want) ? std::isnan(got) : got == want) << where << ": " << got;
    return;
  }
  EXPECT_LE(std::fabs(got - want), std::max(nothing, 1e-12 * std::fabs(want)))
      << where << ": got " << got << ", want " << want;
}
