/// Resampled and imputed data: every resample takes its reference values from its base group.
#pragma once

#include <vector>

namespace proportions {

struct PRPAlgorithm;

/// Finds each resample's base group (the first group with sample number 0 and the same user split
/// values; without user split variables the first group of all) and copies the base group's
/// extremes and midpoints. False, with an error, when a resample has no base group. A list without
/// a pooling variable passes untouched.
bool checkResamples(std::vector<PRPAlgorithm*> groups);

}  // namespace proportions
