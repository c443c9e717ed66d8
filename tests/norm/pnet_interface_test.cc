#include "reader/pnet_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loaded_net.h"

namespace {

std::vector<int> positions(IndexList* list) {
  std::vector<int> values;
  for (; list; list = list->next) values.push_back(list->value);
  return values;
}

TEST(PNetInterfaceTest, CollectsTheInterface) {
  ProgramFile file(
      "node n (a, b : int; c : bool) returns (y, z : int; (w : int) when c);\n"
      "var copy, sum : int; (slow : int) when c;\n"
      "let\n"
      "  y = a + b; z = b + a; w = slow; copy = a; sum = y + 1; slow = a when c;\n"
      "  assert a > 0; assert a > 0; assert c;\n"
      "tel\n");
  SymbolTable table;
  PNetInterface program(file.path(), &table);
  NormNet& net = *program.net;

  ASSERT_EQ(program.n_inputs, 3);
  EXPECT_EQ(program.input_nodes[2], net.ident_info(table.find("c"))->ref);
  EXPECT_EQ(program.input_names[1], table.find("b"));

  ASSERT_EQ(program.n_outputs, 3);
  EXPECT_EQ(program.output_nodes[0], program.output_nodes[1]);
  std::unique_ptr<PNetInterface::Record> shared = program.record(program.output_nodes[0]);
  ASSERT_NE(shared, nullptr);
  EXPECT_EQ(positions(shared->output_positions), (std::vector<int>{2, 1}));
  EXPECT_EQ(program.output_names[2], table.find("w"));
  EXPECT_EQ(program.output_nodes[2]->op, IF_n);

  // Both equal assertions share one node, which keeps the later number.
  ASSERT_EQ(program.n_asserts, 3);
  EXPECT_EQ(program.assert_nodes[0], program.assert_nodes[1]);
  EXPECT_EQ(program.record(program.assert_nodes[0])->assert_no, 2);
  EXPECT_EQ(program.record(program.assert_nodes[2])->assert_no, 3);

  // copy and slow are plain copies of an input once unheld; sum is kept
  // and names its anonymous node.
  ASSERT_EQ(program.n_locals, 1);
  EXPECT_EQ(program.local_names[0], table.find("sum"));
  EXPECT_EQ(program.local_nodes[0]->ident, table.find("sum"));
  EXPECT_EQ(positions(program.record(program.local_nodes[0])->local_positions),
            (std::vector<int>{1}));
  EXPECT_EQ(program.record(program.input_nodes[0]), nullptr);
}

// The programs check that the file opens before loading it, so only a
// direct load reaches this message; a syntax error is in
// tests/cli/cases/norm_errors.
TEST(PNetInterfaceTest, UnreadableFileEndsWithStatusOne) {
  SymbolTable table;
  EXPECT_ENDS(PNetInterface("/nonexistent/x.qv", &table), 1,
              testing::HasSubstr("QvParse : Can't open file '/nonexistent/x.qv'\n"
                                 "syntax errors...\n"));
}

}  // namespace
