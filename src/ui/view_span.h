// CViewSpan: the part of a whole that a view shows along one axis, and how zooming and panning change it.
#pragma once

namespace carvello {

// What a change of a view goes for.
enum class EAxes { Frequency, Time, Both };

struct SSpan {
  double dFrom = 0.0;
  double dTo = 0.0;

  double Length() const { return dTo - dFrom; }
  double Middle() const { return (dFrom + dTo) / 2.0; }
  bool Holds(double at) const { return at >= dFrom && at <= dTo; }
  bool Meets(const SSpan& other) const { return dFrom < other.dTo && other.dFrom < dTo; }
  bool operator==(const SSpan&) const = default;
};

// From the lesser of the two to the greater.
SSpan SpanOf(double a, double b);

// Where `at` of one span lies in another one, the two laid over each other.
double Carried(double at, const SSpan& from, const SSpan& to);

class CViewSpan {
 public:
  CViewSpan() = default;
  // Shows all. Nothing shorter than `least` is shown, unless the whole is.
  CViewSpan(const SSpan& whole, double least);

  const SSpan& Whole() const { return m_whole; }
  const SSpan& Shown() const { return m_shown; }
  bool ShowsAll() const { return m_shown == m_whole; }

  // Each of them is held within the whole, and tells whether anything has changed.
  bool ShowAll();
  bool Show(const SSpan& span);
  // The length times `factor`; what is at `at` stays at its place in the view as far as the whole allows.
  bool Zoom(double factor, double at);
  bool Pan(double by);

 private:
  bool Set(double from, double length);

  SSpan m_whole;
  SSpan m_shown;
  double m_dLeast = 0.0;
};

}  // namespace carvello
