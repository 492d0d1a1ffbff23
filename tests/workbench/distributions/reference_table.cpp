#include "reference_table.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

std::vector<std::vector<std::string>> referenceRows(const std::string& file, std::size_t columns) {
  std::ifstream in(std::string(DISTRIBUTION_TABLES) + "/" + file);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
    if (cells.size() != columns)
      throw std::runtime_error("unexpected row in " + file + ": " + line);
    rows.push_back(std::move(cells));
  }
  if (rows.empty()) throw std::runtime_error("no rows in " + file);
  return rows;
}

double numberOf(const std::string& cell) { return std::strtod(cell.c_str(), nullptr); }

double distance(double got, double want) {
  if (got == want) return 0;
  const double gap = std::fabs(got - want);
  if (std::fabs(want) >= std::numeric_limits<double>::min()) return gap / std::fabs(want);
  return gap / std::numeric_limits<double>::denorm_min() * 1e-16;
}
