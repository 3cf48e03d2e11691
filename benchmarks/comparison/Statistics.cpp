#include "comparison/Statistics.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace hollowfernpike::bench {

double quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        throw std::invalid_argument("no values");
    }
    const auto rank =
        static_cast<std::ptrdiff_t>(std::ceil(part * static_cast<double>(values.size())));
    const auto place = values.begin() + std::max<std::ptrdiff_t>(rank - 1, 0);
    std::ranges::nth_element(values, place);
    return *place;
}

double median(const std::vector<double>& values) {
    return quantile(values, 0.5);
}

double percentile95(const std::vector<double>& values) {
    return quantile(values, 0.95);
}

} // namespace hollowfernpike::bench
