#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace zrkbench {

/// Repeated measurements of one value.
class Samples {
  public:
    void add(double value) { m_values.insert(std::ranges::upper_bound(m_values, value), value); }

    /// The value that no more than this part of all lie above or at; 0.5 is the median. 0 without samples.
    [[nodiscard]] double quantile(double part) const {
        if (m_values.empty())
            return 0.0;
        const double rank = std::ceil(part * static_cast<double>(m_values.size()));
        return m_values[static_cast<std::size_t>(std::max(rank, 1.0)) - 1];
    }
    [[nodiscard]] double median() const { return quantile(0.5); }
    [[nodiscard]] double worst() const { return quantile(1.0); }

  private:
    std::vector<double> m_values; ///< in ascending order
};

} // namespace zrkbench
