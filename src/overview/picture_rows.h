// What all ways to a picture share: the transforms that its rows are made of, in one line, and the pixels that become
// of their powers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "overview/recording_picture.h"
#include "spectrum/picture_plan.h"

namespace carvello {

// All transforms of a picture, row after row. The plan must outlive this.
class CTransformLine {
 public:
  explicit CTransformLine(const CPicturePlan& plan);

  std::int64_t Count() const { return m_begins.back(); }
  std::int64_t RowOf(std::int64_t transform) const;
  bool IsLastOfRow(std::int64_t transform, std::int64_t row) const {
    return transform + 1 == m_begins[static_cast<std::size_t>(row) + 1];
  }
  std::int64_t FirstFrame(std::int64_t transform, std::int64_t row) const {
    return m_plan.TransformFirst(row, transform - m_begins[static_cast<std::size_t>(row)]);
  }
  std::int64_t FirstFrame(std::int64_t transform) const { return FirstFrame(transform, RowOf(transform)); }

 private:
  const CPicturePlan& m_plan;
  std::vector<std::int64_t> m_begins;  // of the rows, and the end
};

// Takes the powers of rows, in their order, and makes pixels of them. Plan and picture must outlive this.
class CPictureRows {
 public:
  CPictureRows(const CPicturePlan& plan, EPictureLevels levels, SLevelPicture& picture);

  // Sums of powers, or the largest ones, of so many transforms of the row.
  void Add(const std::vector<float>& powers, std::int64_t transforms);
  // All transforms of the row have been added.
  void Finish(std::int64_t row);

 private:
  void PlaceLines();
  std::int64_t LineColumn(std::size_t bin, std::int64_t own) const;
  double LinePower(std::size_t bin) const;
  bool IsPeak(std::size_t bin) const;
  double PlaceIn(std::size_t bin) const;

  const CPicturePlan& m_plan;
  EPictureLevels m_levels;
  SLevelPicture& m_picture;
  std::vector<double> m_row;
  std::vector<double> m_lines;  // powers by columns
  std::int64_t m_nTransforms = 0;
};

}  // namespace carvello
