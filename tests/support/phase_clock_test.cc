#include "support/phase_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Each boundary ends the phase before it; the watcher sees the beginnings
// and a final end, and the times add up in the order the phases ran.
TEST(PhaseClockTest, BoundariesEndPhasesInOrder) {
  clear_phases();
  std::vector<std::string> seen;
  watch_phases([&seen](const char* name) { seen.push_back(name ? name : "(end)"); });
  begin_phase("parse");
  begin_phase("normalise");
  end_phase();
  end_phase();
  begin_phase("parse");
  end_phase();
  watch_phases({});
  begin_phase("unwatched");

  EXPECT_EQ(seen, (std::vector<std::string>{"parse", "normalise", "(end)", "parse", "(end)"}));
  std::vector<std::string> names;
  for (const PhaseTime& t : phase_times()) {
    names.push_back(t.name);
    EXPECT_GE(t.seconds, 0.0);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"parse", "normalise", "parse"}));
  clear_phases();
  end_phase();
  EXPECT_TRUE(phase_times().empty());
}
