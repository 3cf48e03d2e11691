#pragma once

#include <vector>

namespace hollowfernpike::bench {

/// The quantile by the nearest rank: `part` of the values, from 0 to 1, are not above it. Throws
/// std::invalid_argument if there are no values.
double quantile(std::vector<double> values, double part);

double median(const std::vector<double>& values);

/// 95 of 100 values are not above it.
double percentile95(const std::vector<double>& values);

} // namespace hollowfernpike::bench
