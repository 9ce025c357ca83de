#include "support/neighbourhood_reference.h"

#include <algorithm>
#include <cmath>
#include <vector>

double reference_median(std::vector<double>& values) {
    std::sort(values.begin(), values.end());
    const std::size_t m = values.size();
    if (m == 0) return 0.0;
    if (m % 2 == 1) return values[m / 2];
    return (values[m / 2 - 1] + values[m / 2]) / 2.0;
}

ReferenceNeighbourhood reference_neighbourhood(std::span<const double> values, std::size_t index,
                                               std::size_t window, std::vector<double>& scratch) {
    const std::size_t half = window / 2;
    const std::size_t first = index > half ? index - half : 0;
    const std::size_t last = std::min(values.size() - 1, index + half);
    std::vector<double>& list = scratch;
    list.clear();
    for (std::size_t j = first; j <= last; ++j) {
        if (j != index) list.push_back(values[j]);
    }
    ReferenceNeighbourhood out;
    out.median = reference_median(list);
    for (double& v : list)
        v = std::fabs(v - out.median);
    out.mad = reference_median(list);
    return out;
}
