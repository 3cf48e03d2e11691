#pragma once

#include <vector>

namespace hollowfernpike::bench {

/// The value below which this part of the values lies, from 0 to 1, by the nearest rank. Throws
/// std::invalid_argument if there are none.
double quantile(std::vector<double> values, double part);

double median(const std::vector<double>& values);

/// 95 of 100 values are not above it.
double percentile95(const std::vector<double>& values);

} // namespace hollowfernpike::bench
