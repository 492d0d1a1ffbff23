/// Tables of reference numbers, and how far a result is from one.
#pragma once

#include <string>
#include <vector>

/// The rows of a table of the reference folder, comments left out. Throws std::runtime_error when
/// the file is missing or a row has not `columns` cells, so that a test cannot pass on no data.
std::vector<std::vector<std::string>> referenceRows(const std::string& file, std::size_t columns);

/// The number that a cell stands for, nearest double.
double numberOf(const std::string& cell);

/// |got - want| / |want|. Below the least normal double, where doubles thin out, the distance is
/// taken in steps of the least positive double instead, a step counting as one part in 1e16.
double distance(double got, double want);
