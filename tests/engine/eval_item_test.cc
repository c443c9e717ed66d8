// What the base item does for an operation its class does not supply.
#include "engine/eval_item.h"

#include <gtest/gtest.h>

#include "tests/common/test_io.h"

namespace {

TEST(BaseItemFatalTest, MissingOperationsAreFatal) {
  EvalItem* room[3] = {};
  EvalItem base(3, VK_INT, room);
  EXPECT_EQ(base.operands[2], nullptr);
  EXPECT_ENDS(base.compute(1), 1, "EvalItem::compute is only virtual");
  EXPECT_ENDS(base.compute_next(1), 1, "compute_next only virtual");
  EXPECT_ENDS(base.rewrite(), 1, "EvalItem::rewrite only virtual");
  EXPECT_ENDS(base.is_bottom(), 1, "EvalItem::is_bottom only virtual");
  int name = 0;
  EXPECT_NE(stderr_of([&] { name = base.extern_type_name(); }).find("called on non extern type"),
            std::string::npos);
  EXPECT_EQ(name, -1);
  base.extern_type = 12;
  EXPECT_EQ(base.extern_type_name(), 12);
}

}  // namespace
