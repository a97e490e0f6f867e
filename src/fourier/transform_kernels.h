// The loops of the block transform, in one set for each instruction set. All sets give the same bits.
#pragma once

#include <cstddef>

#include "fourier/complex_sample.h"
#include "fourier/instruction_set.h"

namespace carvello {

// Samples come in groups of as many as a cache line holds.
inline constexpr std::size_t kTransformGroup = 8;

// A root of one as the loops take it: a sample times the real part, and the sample with I and Q exchanged times the
// signed imaginary parts, together make their product.
struct STurn {
  float re;
  float im[2];  // negated, and as it is
};

// The same for each sample of a group.
struct alignas(64) SGroupTurns {
  float re[2 * kTransformGroup];  // each twice in a row
  float im[2 * kTransformGroup];  // each negated, and as it is
};

// Columns of a long transform that share a turn of where they begin. What is left to each of them is the same in all
// stretches, so that the tables stay short.
inline constexpr std::size_t kTransformStretch = 128;

// A transform of size rows x columns: first the columns' transforms of `rows` samples, then those of what became of the
// rows, of `columns` samples. Each is one step of radix 8 or 16, or two with turns between them.
//
// A long one has few rows, each a whole transform of another plan: one step makes the columns' transforms, the rows'
// ones follow, and what comes out of them is stored transposed.
struct STransformPlan {
  // Radices of the steps; 1 where there is only one.
  struct SSteps {
    std::size_t nFirst = 0;
    std::size_t nSecond = 1;

    std::size_t Length() const { return nFirst * nSecond; }
  };
  // What makes a transform forward or inverse: all angles are negative, or positive.
  struct STurns {
    // Between two steps, for the second step's input i and the first one's output k in turn (k fastest), by i k /
    // length of a full turn.
    const STurn* pRows = nullptr;
    const STurn* pColumns = nullptr;
    // Between the columns and the rows, for column n and its output k, by n k / size. With one step a column: a group
    // of columns after the other, for each k but 0 its columns. With two: a column after the other, groups of its
    // outputs. Of a long transform, as with one step a column, but only for the columns of one stretch.
    const SGroupTurns* pBetween = nullptr;
    // Of a long transform, for each stretch its outputs k, by n k / size for the column n that it begins with.
    const STurn* pStretches = nullptr;
  };
  SSteps rows;
  SSteps columns;
  const STransformPlan* pRow = nullptr;  // of a long transform only, which has one step a column
  STurns forward;
  STurns inverse;

  std::size_t Size() const { return rows.Length() * columns.Length(); }
};

struct STransformKernels {
  const char* pszName;
  // Forward, or inverse. `work` holds as many samples as the transform.
  void (*Transform)(const STransformPlan& plan, bool inverse, const SComplex* in, SComplex* out, SComplex* work);
};

extern const STransformKernels kPlainTransform;
extern const STransformKernels kAvx2Transform;    // needs AVX2
extern const STransformKernels kAvx512Transform;  // needs AVX-512 F, BW and DQ

const STransformKernels& TransformKernels(EInstructionSet set);

}  // namespace carvello
