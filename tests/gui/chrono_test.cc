// The live chronogram of a real korvel on a private X server: opened by the
// resource Korvel.chronogram, drawing the steps given through the input
// window; absent without it.
#include <unistd.h>

#include <chrono>
#include <memory>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/common/x_screen.h"
#include "tests/gui/child_process.h"

namespace {

constexpr int kTimeoutMs = 30000;

// The canvas of panel/chrono_window.cc: a label column, then 20 pixels per
// step; a row of 24 pixels per signal under a 16-pixel axis.
constexpr int kLabel = 110, kTick = 20, kAxis = 16, kRow = 24;

constexpr unsigned long kWhite = 0xffffff, kHigh = 0xbfe6bf, kBus = 0xdde6f6, kReset = 0x2050e0;
const std::set<unsigned long> kNil = {0xf6c8c8, 0xc00000};
const std::set<unsigned long> kDivZero = {0xfbe2a8, 0xb86000};

/// korvel on gui programs/chrono.qv, with the resources of `resources`.
class ChronoSession {
 public:
  explicit ChronoSession(const std::string& resources) {
    std::ofstream(path_) << resources;
    setenv("XENVIRONMENT", path_.c_str(), 1);
    korvel_ = std::make_unique<ChildProcess>(std::vector<std::string>{
        KORVEL_BINARY, "-v", std::string(KORVEL_GUI_PROGRAMS) + "/chrono.qv"});
    unsetenv("XENVIRONMENT");
  }
  ~ChronoSession() { unlink(path_.c_str()); }

  /// Waits for the three windows; their input items afterwards.
  bool open() {
    if (!screen.ok() || !korvel_->wait_for_output(") returns (", kTimeoutMs)) return false;
    main_ = screen.items(screen.wait_for_window("korvel", kTimeoutMs));
    inputs_ = screen.items(screen.wait_for_window("chrono-inputs", kTimeoutMs));
    return screen.wait_for_window("chrono-outputs", kTimeoutMs) && main_.size() == 2;
  }
  /// In the opening mode, STEP steps and pressing a bool steps with it
  /// true. The windows take the clicks in order; the drawing is checked by
  /// polling.
  void step(bool go) { screen.click(go ? inputs_.at(1) : inputs_.back()); }
  void reset() { screen.click(main_.at(0)); }
  int quit() {
    screen.click(main_.at(1));
    return korvel_->wait_end(kTimeoutMs);
  }

  XScreen screen;

 private:
  std::string path_ = "/tmp/korvel-chrono-" + std::to_string(getpid());
  std::unique_ptr<ChildProcess> korvel_;
  std::vector<Window> main_;
  std::vector<Window> inputs_;
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
  ChronoSession s("Korvel.chronogram: true\n");
  ASSERT_TRUE(s.open()) << "no X display, or korvel did not open";
  const Window shell = s.screen.wait_for_window("chrono-chrono", kTimeoutMs);
  ASSERT_TRUE(shell);
  const Window canvas = s.screen.items(shell).at(0);
  // d stays 0: q divides by zero at every step. go is false, true, then
  // false again after a reset, where p is nil once more.
  s.step(false);
  s.step(true);
  s.reset();
  s.step(false);
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
  ChronoSession s("");
  ASSERT_TRUE(s.open()) << "no X display, or korvel did not open";
  s.step(true);
  EXPECT_FALSE(s.screen.wait_for_window("chrono-chrono", 1000));
  EXPECT_EQ(s.quit(), 0);
}

}  // namespace
