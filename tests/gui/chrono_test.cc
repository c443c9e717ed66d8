// The live chronogram of a real korvel on a private X server: opened by the
// resource Korvel.chronogram, drawing the steps given through the input
// window; absent without it.
#include <unistd.h>

#include <chrono>
#include <set>
#include <string>

#include "tests/gui/korvel_session.h"

namespace {

// The canvas of panel/chrono_window.cc: a label column, then 20 pixels per
// step; a row of 24 pixels per signal under a 16-pixel axis.
constexpr int kLabel = 110, kTick = 20, kAxis = 16, kRow = 24;

constexpr unsigned long kWhite = 0xffffff, kHigh = 0xbfe6bf, kBus = 0xdde6f6, kReset = 0x2050e0;
const std::set<unsigned long> kNil = {0xf6c8c8, 0xc00000};
const std::set<unsigned long> kDivZero = {0xfbe2a8, 0xb86000};

/// korvel on gui programs/chrono.qv, with `resources` for its own; in the
/// opening mode STEP steps, and pressing go steps with it true. The windows
/// take the clicks in order; the drawing is checked by polling.
struct ChronoSession {
  explicit ChronoSession(const std::string& text) : resources(text) {}
  const ProgramFile resources;
  const ScopedEnv env{"XENVIRONMENT", resources.path()};
  KorvelSession korvel{program_path("chrono")};
};

/// The colours inside step `tick` of row `row`, between its levels.
std::set<unsigned long> cell(XScreen& screen, Window canvas, int row, int tick) {
  std::set<unsigned long> colours;
  for (int x = 6; x < 15; ++x) {
    for (int y = 8; y < 17; ++y) {
      colours.insert(screen.colour_at(canvas, kLabel + tick * kTick + x, kAxis + row * kRow + y));
    }
  }
  return colours;
}

/// Polls until the drawing shows `wanted`, since it follows the steps
/// asynchronously.
bool shows(XScreen& screen, Window canvas, int row, int tick, const std::set<unsigned long>& wanted) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kTimeoutMs);
  do {
    if (cell(screen, canvas, row, tick) == wanted) return true;
    usleep(20000);
  } while (std::chrono::steady_clock::now() < deadline);
  for (unsigned long c : cell(screen, canvas, row, tick)) ADD_FAILURE() << std::hex << "seen " << c;
  return false;
}

enum { kGo, kD, kQ, kP };

TEST(ChronoWindow, DrawsTheStepsGivenInTheWindows) {
  ChronoSession chrono("Korvel.chronogram: true\n");
  KorvelSession& s = chrono.korvel;
  ASSERT_NO_FATAL_FAILURE(s.open());
  const Window shell = s.screen.wait_for_window("chrono-chrono", kTimeoutMs);
  ASSERT_TRUE(shell);
  const Window canvas = s.screen.items(shell).at(0);
  // d stays 0: q divides by zero at every step. go is false, true, then
  // false again after a reset, where p is nil once more.
  s.step();
  s.press(0);
  s.reset();
  s.step();
  // Read back from the screen, the window must be on top.
  s.screen.point_at(canvas);
  EXPECT_TRUE(shows(s.screen, canvas, kP, 2, kNil));
  EXPECT_TRUE(shows(s.screen, canvas, kGo, 0, {kWhite}));
  EXPECT_TRUE(shows(s.screen, canvas, kGo, 1, {kHigh}));
  EXPECT_TRUE(shows(s.screen, canvas, kGo, 2, {kWhite}));
  EXPECT_TRUE(shows(s.screen, canvas, kP, 0, kNil));
  EXPECT_TRUE(shows(s.screen, canvas, kP, 1, {kWhite}));
  for (int tick = 0; tick < 3; ++tick) EXPECT_TRUE(shows(s.screen, canvas, kQ, tick, kDivZero));
  EXPECT_TRUE(shows(s.screen, canvas, kGo, 3, {kWhite}));
  // A bus segment for d, and the reset mark before the third step.
  EXPECT_EQ(s.screen.colour_at(canvas, kLabel + 16, kAxis + kD * kRow + 8), kBus);
  EXPECT_EQ(s.screen.colour_at(canvas, kLabel + 2 * kTick, kAxis + kGo * kRow + 10), kReset);
  EXPECT_NE(s.screen.colour_at(canvas, kLabel + kTick, kAxis + kGo * kRow + 10), kReset);
  EXPECT_EQ(s.quit(), 0);
}

TEST(ChronoWindow, StaysClosedWithoutItsResource) {
  ChronoSession chrono("");
  KorvelSession& s = chrono.korvel;
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.press(0);
  EXPECT_FALSE(s.screen.wait_for_window("chrono-chrono", 1000));
  EXPECT_EQ(s.quit(), 0);
}

}  // namespace
