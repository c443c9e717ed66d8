// Faults of the user's program found while normalising: a message naming
// the variable or clock, and status 1, never a hang or a crash.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loaded_net.h"

namespace {

struct ErrorCase {
  const char* what;
  const char* source;
  const char* message;
};

const ErrorCase kErrors[] = {
    {"output without an equation",
     "node n (a : int) returns (y, z : int);\nlet y = a; tel\n",
     " Error :\nNormNet::normalise : undefined variable 'z'\n"},
    {"two references in a cycle",
     "node n (a : int) returns (y : int);\nvar p, q : int;\nlet y = p; p = q; q = p; tel\n",
     " Error :\nNormNet::through_ref : variable 'p' is defined by a cycle of references to "
     "itself\n"},
    {"a reference to itself",
     "node n (a : int) returns (y : int);\nlet y = y; tel\n",
     "NormNet::through_ref : variable 'y' is defined by a cycle of references to itself\n"},
    {"a clock on itself",
     "node n ((c : bool) when c) returns ((y : bool) when c);\nlet y = c; tel\n",
     " Error :\nNormNet::activation : the chain of clocks of 'c' leads back to itself\n"},
    {"two clocks on each other",
     "node n ((c : bool) when d; (d : bool) when c) returns ((y : bool) when c);\n"
     "let y = c; tel\n",
     "NormNet::activation : the chain of clocks of 'c' leads back to itself\n"},
    {"a clock that was never declared",
     "node n (a : int) returns ((y : int) when k);\nlet y = a; tel\n",
     " Error :\nNormNet::activation : undeclared clock 'k'\n"},
};

TEST(NormErrorsTest, ReportedWithTheirNames) {
  for (const ErrorCase& c : kErrors) {
    LoadedNet loaded(c.source);
    EXPECT_EXIT(loaded.net->build(), testing::ExitedWithCode(1), testing::HasSubstr(c.message))
        << c.what;
  }
}

TEST(NormErrorsTest, UnknownModeIsRefused) {
  LoadedNet loaded("node n (a : int) returns (y : int);\nlet y = a + 1; tel\n");
  loaded.net->mode = 4;
  EXPECT_EXIT(loaded.net->build(), testing::ExitedWithCode(1),
              testing::HasSubstr(" Error :\nunknown option\n"));
}

TEST(NormErrorsTest, MisplacedReferenceIsAnInternalError) {
  LoadedNet loaded("node n (a : int) returns (y : int);\nlet y = a; tel\n");
  NormNet& net = *loaded.net;
  net.build();
  Exp* bad = net.new_leaf(QVREF_n, loaded.table.find("a"), net.int_type, net.true_name);
  EXPECT_EXIT(net.through_ref(bad), testing::ExitedWithCode(1),
              testing::HasSubstr("Sorry, Internal Error :\nfile 'net_norm':\n"
                                 "NormNet::through_ref (a) 'QVREF_n' must be OUTPUT or LOCAL\n"));
}

}  // namespace
