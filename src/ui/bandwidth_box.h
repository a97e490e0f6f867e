// CBandwidthBox: a bandwidth that is chosen from those offered, or typed. What is typed is completed by what is
// offered, and written as the offered ones are when the field is left or Enter is pressed.
#pragma once

#include <QComboBox>
#include <cstdint>

namespace carvello {

class CBandwidthBox : public QComboBox {
  Q_OBJECT

 public:
  explicit CBandwidthBox(QWidget* parent = nullptr);

  // Hz; 0 when nothing is chosen or what was typed is none, or is 0.
  std::uint32_t Bandwidth() const;
  // Also one that is not offered; 0 for none.
  void SetBandwidth(std::uint32_t bandwidth);
  // Whether there is a text that is no bandwidth.
  bool IsUnreadable() const;
  // Whether a bandwidth was typed, be it 0, that is none of those offered.
  bool IsTyped() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool ShowsChoice() const;
  void Settle();
  // The offered one next to what was typed.
  int Neighbour(bool wider) const;
};

}  // namespace carvello
