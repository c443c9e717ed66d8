#include "support/diagnostics.h"

#include <gtest/gtest.h>

#include <string>

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

TEST(DiagnosticsTest, FatalReportsHaveTheirHeaders) {
  EXPECT_EXIT(error("%s", ""), testing::ExitedWithCode(1), "^  Error :\n\n$");
  EXPECT_EXIT(error("bad %d", 7), testing::ExitedWithCode(1), "^  Error :\nbad 7\n$");
  EXPECT_EXIT(internal_error("file 'net':\nx"), testing::ExitedWithCode(1),
              "^Sorry, Internal Error :\nfile 'net':\nx\n$");
}

TEST(DiagnosticsTest, WarningGoesOn) {
  CaptureStderr();
  warning("careful %s", "now");
  EXPECT_EQ(GetCapturedStderr(), "  Warning :\ncareful now\n");
}

TEST(DiagnosticsTest, CountedErrorsStopTogether) {
  EXPECT_EQ(error_stop(), 0);
  CaptureStderr();
  EXPECT_EQ(count_error("e%d\n", 1), 3);
  count_error("e2\n");
  count_error("e3\n");
  EXPECT_EQ(GetCapturedStderr(), "e1\ne2\ne3\n");
  EXPECT_EQ(error_count(), 3);
  EXPECT_EXIT(error_stop(), testing::ExitedWithCode(1), "\\*\\*\\* 3 Errors stop\n$");
}

TEST(DiagnosticsTest, VerboseLevelsAndControls) {
  set_verbose_level(0);
  CaptureStderr();
  EXPECT_EQ(verbose("quiet"), 0);
  EXPECT_EQ(GetCapturedStderr(), "");

  set_verbose_level(1);
  CaptureStderr();
  verbose("\rabc%d", 1);
  verbose_at(2, "too deep");
  verbose_at(1, "ok");
  set_show_controls();
  verbose("\rabc");
  verbose("\bdef");
  verbose("ghi");
  set_show_controls(false);
  set_verbose_level(0);
  EXPECT_EQ(GetCapturedStderr(), "\rabc1ok \n^Rabc\n^Bdefghi");
}

TEST(DiagnosticsTest, SpinnerIsSilentOffATerminal) {
  set_verbose_level(1);
  CaptureStderr();
  for (int i = 0; i < 500; ++i) spin(2);
  EXPECT_EQ(GetCapturedStderr(), "");
  set_verbose_level(0);
}

TEST(DiagnosticsTest, SpinnerCyclesItsGlyphs) {
  set_verbose_level(1);
  CaptureStderr();
  for (int i = 0; i < 99; ++i) spin_step(100, true);
  std::string before_first = GetCapturedStderr();
  CaptureStderr();
  spin_step(100, true);
  std::string first = GetCapturedStderr();
  CaptureStderr();
  for (int i = 0; i < 100; ++i) spin_step(100, true);
  std::string gap = GetCapturedStderr();
  CaptureStderr();
  for (int i = 0; i < 1 + 3 * 101; ++i) spin_step(100, true);
  std::string rest = GetCapturedStderr();
  set_verbose_level(0);
  EXPECT_EQ(before_first, "");
  EXPECT_EQ(first, "|\b");
  EXPECT_EQ(gap, "");
  EXPECT_EQ(rest, "/\b-\b\\\b|\b");
}

TEST(DiagnosticsTest, TraceOnlyWithAStream) {
  set_trace_stream(nullptr);
  CaptureStdout();
  CaptureStderr();
  trace_printf("#step %d\n", 1);
  EXPECT_EQ(GetCapturedStderr(), "");
  EXPECT_EQ(GetCapturedStdout(), "");

  FILE* f = tmpfile();
  ASSERT_NE(f, nullptr);
  set_trace_stream(f);
  EXPECT_EQ(trace_printf("#step %d\n", 2), 0);
  set_trace_stream(nullptr);
  rewind(f);
  char line[32] = {};
  ASSERT_NE(fgets(line, sizeof line, f), nullptr);
  EXPECT_STREQ(line, "#step 2\n");
  fclose(f);
}
