// Refusals that no qv program can reach; those a program can reach are
// checked through korvel-run (tests/cli/cases/norm_errors).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loaded_net.h"

namespace {

TEST(NormErrorsTest, UnknownModeIsRefused) {
  LoadedNet loaded("node n (a : int) returns (y : int);\nlet y = a + 1; tel\n");
  loaded.net->mode = 4;
  EXPECT_ENDS(loaded.net->build(), 1,
              testing::HasSubstr(" Error :\nunknown option\n"));
}

TEST(NormErrorsTest, MisplacedReferenceIsAnInternalError) {
  LoadedNet loaded("node n (a : int) returns (y : int);\nlet y = a; tel\n");
  NormNet& net = *loaded.net;
  net.build();
  Exp* bad = net.new_leaf(QVREF_n, loaded.table.find("a"), net.int_type, net.true_name);
  EXPECT_ENDS(net.through_ref(bad), 1,
              testing::HasSubstr("Sorry, Internal Error :\nfile 'net_norm':\n"
                                 "NormNet::through_ref (a) 'QVREF_n' must be OUTPUT or LOCAL\n"));
}

}  // namespace
