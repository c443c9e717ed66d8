// A run's history drawn as a self-contained SVG chronogram: a row per
// signal, bools as square waves, numbers and names as bus segments, nil and
// division by zero hatched, absent values blank, resets as vertical marks.
// Long runs are cut into pages of kSvgPageTicks ticks, one under another.
#pragma once

#include <cstdio>

#include "history/run_history.h"

/// The history window of a run drawn as SVG: older ticks are left out, and
/// the drawing says so.
constexpr size_t kSvgWindowTicks = 1000;
constexpr size_t kSvgPageTicks = 100;

/// The drawing's geometry, in pixels, for whoever reads it back.
struct SvgLayout {
  static constexpr int kLabelWidth = 150;
  static constexpr int kTickWidth = 24;
  static constexpr int kRowHeight = 28;
  /// From the top of a row: the high and low levels of a wave.
  static constexpr int kHigh = 5;
  static constexpr int kLow = 23;
  /// From the top of the drawing to the first page, and within a page
  /// from its top to its first row.
  static constexpr int kHeader = 64;
  static constexpr int kAxis = 22;
  static constexpr int kPageGap = 16;
};

void write_svg(FILE* out, const RunHistory& history);
