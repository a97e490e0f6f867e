#include "fourier/block_transform.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "fourier/unit_root.h"

namespace carvello {
namespace {

using SSteps = STransformPlan::SSteps;

// How rows and columns are made, by the logarithm of the size. In large sizes, what a step reads or writes at once
// stands a large power of two apart, where the fastest cache has room for no more than 8 to 12 lines: where they can
// be, the columns' first step and the rows' last one are of radix 8.
struct SShape {
  SSteps rows;
  SSteps columns;

  std::size_t Size() const { return rows.Length() * columns.Length(); }
};
constexpr SShape kShapes[] = {
    {{8}, {8}},          // 64
    {{8}, {16}},         // 128
    {{16}, {16}},        // 256
    {{8}, {8, 8}},       // 512
    {{16}, {8, 8}},      // 1,024
    {{16}, {8, 16}},     // 2,048
    {{16}, {16, 16}},    // 4,096
    {{8, 16}, {8, 8}},   // 8,192
    {{8, 16}, {16, 8}},  // 16,384
};
// Rows of the long transforms above these.
constexpr std::size_t LongRows(std::size_t size) {
  return size <= 131'072 ? 8 : 16;
}

// Of one direction.
struct STurnTables {
  std::vector<STurn> rows;
  std::vector<STurn> columns;
  std::vector<SGroupTurns> between;
  std::vector<STurn> stretches;

  STransformPlan::STurns Turns() const { return {rows.data(), columns.data(), between.data(), stretches.data()}; }
};

// numerator / denominator of a full turn, in the direction of the sign.
STurn Turn(std::size_t numerator, std::size_t denominator, double sign) {
  const SUnitRoot root = UnitRoot(static_cast<std::int64_t>(numerator), static_cast<std::int64_t>(denominator));
  const auto im = static_cast<float>(sign * root.im);
  return {static_cast<float>(root.re), {-im, im}};
}

std::vector<STurn> TurnsBetweenSteps(const SSteps& steps, double sign) {
  std::vector<STurn> turns;
  for (std::size_t i = 0; i < steps.nSecond; ++i) {
    for (std::size_t k = 0; k < steps.nFirst; ++k) turns.push_back(Turn(i * k, steps.Length(), sign));
  }
  return turns;
}

// Sample i of the group is turned by that numerator of a full turn.
SGroupTurns GroupTurns(auto numeratorOf, std::size_t denominator, double sign) {
  SGroupTurns group;
  for (std::size_t i = 0; i < kTransformGroup; ++i) {
    const STurn turn = Turn(numeratorOf(i), denominator, sign);
    group.re[2 * i] = turn.re;
    group.re[2 * i + 1] = turn.re;
    group.im[2 * i] = turn.im[0];
    group.im[2 * i + 1] = turn.im[1];
  }
  return group;
}

// With one step a column.
std::vector<SGroupTurns> TurnsOfColumns(std::size_t rows, std::size_t columns, std::size_t size, double sign) {
  std::vector<SGroupTurns> turns;
  for (std::size_t n = 0; n < columns; n += kTransformGroup) {
    for (std::size_t k = 1; k < rows; ++k) {
      turns.push_back(GroupTurns([=](std::size_t i) { return (n + i) * k; }, size, sign));
    }
  }
  return turns;
}

std::vector<SGroupTurns> TurnsBetweenColumnsAndRows(const SShape& shape, double sign) {
  if (shape.rows.nSecond == 1) return TurnsOfColumns(shape.rows.nFirst, shape.columns.Length(), shape.Size(), sign);
  std::vector<SGroupTurns> turns;
  for (std::size_t n = 0; n < shape.columns.Length(); ++n) {
    for (std::size_t k = 0; k < shape.rows.Length(); k += kTransformGroup) {
      turns.push_back(GroupTurns([=](std::size_t i) { return n * (k + i); }, shape.Size(), sign));
    }
  }
  return turns;
}

std::vector<STurn> TurnsOfStretches(std::size_t rows, std::size_t size, double sign) {
  std::vector<STurn> turns;
  for (std::size_t n = 0; n < size / rows; n += kTransformStretch) {
    for (std::size_t k = 0; k < rows; ++k) turns.push_back(Turn(n * k, size, sign));
  }
  return turns;
}

STurnTables MakeTables(const SShape& shape, double sign) {
  return {TurnsBetweenSteps(shape.rows, sign),
          TurnsBetweenSteps(shape.columns, sign),
          TurnsBetweenColumnsAndRows(shape, sign),
          {}};
}

STurnTables MakeLongTables(std::size_t rows, std::size_t size, double sign) {
  return {{}, {}, TurnsOfColumns(rows, kTransformStretch, size, sign), TurnsOfStretches(rows, size, sign)};
}

struct SOwnedPlan {
  explicit SOwnedPlan(const SShape& shape)
      : forward(MakeTables(shape, -1.0)),
        inverse(MakeTables(shape, 1.0)),
        plan{shape.rows, shape.columns, nullptr, forward.Turns(), inverse.Turns()} {}
  SOwnedPlan(std::size_t rows, const STransformPlan& row)
      : forward(MakeLongTables(rows, rows * row.Size(), -1.0)),
        inverse(MakeLongTables(rows, rows * row.Size(), 1.0)),
        plan{{rows}, {row.Size()}, &row, forward.Turns(), inverse.Turns()} {}

  STurnTables forward;
  STurnTables inverse;
  STransformPlan plan;
};

// One for all transforms of a size, made for the first of them: hundreds may run in turn, and find it in the cache.
class CPlans {
 public:
  const STransformPlan& Of(std::size_t size) {
    const std::lock_guard lock(m_Lock);
    return Find(size);
  }

 private:
  // Under the lock.
  const STransformPlan& Find(std::size_t size) {
    std::unique_ptr<SOwnedPlan>& pPlan = m_pPlans[size];
    if (!pPlan) {
      const auto* const pShape = std::find_if(std::begin(kShapes), std::end(kShapes),
                                              [&](const SShape& shape) { return shape.Size() == size; });
      pPlan = pShape != std::end(kShapes) ? std::make_unique<SOwnedPlan>(*pShape)
                                          : std::make_unique<SOwnedPlan>(LongRows(size), Find(size / LongRows(size)));
    }
    return pPlan->plan;
  }

  std::mutex m_Lock;
  std::map<std::size_t, std::unique_ptr<SOwnedPlan>> m_pPlans;  // by size
};

const STransformPlan& PlanOf(std::size_t size) {
  static CPlans s_Plans;
  return s_Plans.Of(size);
}

}  // namespace

CBlockTransform::CBlockTransform(std::size_t size) : CBlockTransform(size, PickInstructionSet()) {}

CBlockTransform::CBlockTransform(std::size_t size, EInstructionSet set)
    : m_nSize(size), m_pPlan(&PlanOf(size)), m_pTransform(TransformKernels(set).Transform) {}

const STransformKernels& TransformKernels([[maybe_unused]] EInstructionSet set) {
#ifdef CARVELLO_X86_64
  if (set == EInstructionSet::Avx512) return kAvx512Transform;
  if (set == EInstructionSet::Avx2) return kAvx2Transform;
#endif
  return kPlainTransform;
}

}  // namespace carvello
