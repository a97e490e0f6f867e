#include "ui/view_span.h"

#include <algorithm>

namespace carvello {

namespace {

constexpr double kRounding = 1e-9;

}  // namespace

SSpan SpanOf(double a, double b) {
  return {std::min(a, b), std::max(a, b)};
}

double Carried(double at, const SSpan& from, const SSpan& to) {
  if (from.Length() == 0.0) return to.dFrom;
  return to.dFrom + (at - from.dFrom) / from.Length() * to.Length();
}

CViewSpan::CViewSpan(const SSpan& whole, double least)
    : m_whole(whole), m_shown(whole), m_dLeast(std::min(least, whole.Length())) {}

bool CViewSpan::ShowAll() {
  return Show(m_whole);
}

bool CViewSpan::Show(const SSpan& span) {
  const double length = std::clamp(span.Length(), m_dLeast, m_whole.Length());
  return Set(span.Middle() - length / 2.0, length);
}

bool CViewSpan::Zoom(double factor, double at) {
  const double length = std::clamp(m_shown.Length() * factor, m_dLeast, m_whole.Length());
  if (length == m_shown.Length()) return false;
  const double part = std::clamp((at - m_shown.dFrom) / m_shown.Length(), 0.0, 1.0);
  return Set(m_shown.dFrom + part * (m_shown.Length() - length), length);
}

bool CViewSpan::Pan(double by) {
  return Set(m_shown.dFrom + by, m_shown.Length());
}

bool CViewSpan::Set(double from, double length) {
  SSpan shown = m_whole;  // exactly, where all is shown; so many zooms out as there were in lead there
  if (length < m_whole.Length() * (1.0 - kRounding)) {
    shown.dFrom = std::clamp(from, m_whole.dFrom, m_whole.dTo - length);
    shown.dTo = shown.dFrom + length;
  }
  if (shown == m_shown) return false;
  m_shown = shown;
  return true;
}

}  // namespace carvello
