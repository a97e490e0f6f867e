#include "normal_equations.h"

#include <cmath>
#include <cstddef>

namespace vantrel {

bool SolveNormalEquations(std::vector<double>& matrix, std::vector<double>& right) {
  const std::size_t n = right.size();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k <= i; ++k) {
      double fSum = matrix[i * n + k];
      for (std::size_t j = 0; j < k; ++j) fSum -= matrix[i * n + j] * matrix[k * n + j];
      if (i != k) {
        matrix[i * n + k] = fSum / matrix[k * n + k];
      } else if (fSum > 0.0) {
        matrix[i * n + i] = std::sqrt(fSum);
      } else {
        return false;
      }
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < i; ++j) right[i] -= matrix[i * n + j] * right[j];
    right[i] /= matrix[i * n + i];
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t j = i + 1; j < n; ++j) right[i] -= matrix[j * n + i] * right[j];
    right[i] /= matrix[i * n + i];
  }
  return true;
}

}  // namespace vantrel
