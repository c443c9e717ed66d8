#include "support/diagnostics.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/common/test_io.h"

// Both headers with a message are in every refusal of the process cases;
// an empty message still ends its line.
TEST(DiagnosticsTest, FatalReportWithAnEmptyMessage) {
  EXPECT_EXIT(error("%s", ""), testing::ExitedWithCode(1), "^  Error :\n\n$");
}

TEST(DiagnosticsTest, WarningGoesOn) {
  EXPECT_EQ(stderr_of([] { warning("careful %s", "now"); }), "  Warning :\ncareful now\n");
}

TEST(DiagnosticsTest, CountedErrorsStopTogether) {
  EXPECT_EQ(error_stop(), 0);
  EXPECT_EQ(stderr_of([] {
              EXPECT_EQ(count_error("e%d\n", 1), 3);
              count_error("e2\n");
              count_error("e3\n");
            }),
            "e1\ne2\ne3\n");
  EXPECT_EQ(error_count(), 3);
  EXPECT_EXIT(error_stop(), testing::ExitedWithCode(1), "\\*\\*\\* 3 Errors stop\n$");
}

TEST(DiagnosticsTest, VerboseLevelsAndControls) {
  set_verbose_level(0);
  EXPECT_EQ(stderr_of([] { EXPECT_EQ(verbose("quiet"), 0); }), "");

  set_verbose_level(1);
  EXPECT_EQ(stderr_of([] {
              verbose("\rabc%d", 1);
              verbose_at(2, "too deep");
              verbose_at(1, "ok");
              set_show_controls();
              verbose("\rabc");
              verbose("\bdef");
              verbose("ghi");
              set_show_controls(false);
            }),
            "\rabc1ok \n^Rabc\n^Bdefghi");
  set_verbose_level(0);
}

TEST(DiagnosticsTest, SpinnerIsSilentOffATerminal) {
  set_verbose_level(1);
  EXPECT_EQ(stderr_of([] {
              for (int i = 0; i < 500; ++i) spin(2);
            }),
            "");
  set_verbose_level(0);
}

TEST(DiagnosticsTest, SpinnerCyclesItsGlyphs) {
  set_verbose_level(1);
  const auto spins = [](int n) {
    return stderr_of([n] {
      for (int i = 0; i < n; ++i) spin_step(100, true);
    });
  };
  EXPECT_EQ(spins(99), "");
  EXPECT_EQ(spins(1), "|\b");
  EXPECT_EQ(spins(100), "");
  EXPECT_EQ(spins(1 + 3 * 101), "/\b-\b\\\b|\b");
  set_verbose_level(0);
}

TEST(DiagnosticsTest, TraceOnlyWithAStream) {
  set_trace_stream(nullptr);
  std::string err;
  EXPECT_EQ(stdout_of([&] { err = stderr_of([] { trace_printf("#step %d\n", 1); }); }), "");
  EXPECT_EQ(err, "");

  FILE* f = tmpfile();
  ASSERT_NE(f, nullptr);
  set_trace_stream(f);
  EXPECT_EQ(trace_printf("#step %d\n", 2), 0);
  set_trace_stream(nullptr);
  EXPECT_EQ(file_text(f), "#step 2\n");
  fclose(f);
}
