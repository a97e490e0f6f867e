// Least squares by the normal equations.
#pragma once

#include <vector>

namespace vantrel {

// Solves matrix * x = right for a symmetric positive definite matrix of right.size() rows, of which the lower half is
// read, by Cholesky's factors, in place: `right` becomes x. False where double precision finds the matrix not to be
// positive definite. By operations only that IEEE 754 rounds in one way.
bool SolveNormalEquations(std::vector<double>& matrix, std::vector<double>& right);

}  // namespace vantrel
