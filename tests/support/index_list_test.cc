#include "support/index_list.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/common/test_io.h"

namespace {

IndexList* make(std::vector<int> values) { return new IndexList(values.data(), int(values.size())); }

std::vector<int> values_of(IndexList* list) {
  std::vector<int> out;
  IndexListIter it(list);
  for (int v; (v = it.next()) != 0;) out.push_back(v);
  return out;
}

}  // namespace

TEST(IndexListTest, BuildAppendAndWalk) {
  IndexList* list = nullptr;
  IndexList::append(&list, 4);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->last_node, list);
  IndexList::append(&list, 7);
  EXPECT_EQ(values_of(list), (std::vector<int>{4, 7}));

  IndexListIter it(list);
  EXPECT_EQ(it.next(), 4);
  EXPECT_EQ(it.next(), 7);
  EXPECT_EQ(it.next(), 0);
  EXPECT_EQ(it.next(), 0);
  it.rewind();
  EXPECT_EQ(it.next(), 4);
  delete list;
}

TEST(IndexListTest, JoinsFollowLazyTails) {
  IndexList* a = make({1, 2});
  IndexList* b = make({3});
  IndexList* c = make({4, 5, 6});
  IndexList* d = make({7});
  IndexList* c_tail = IndexList::last(c);
  IndexList* d_tail = d;
  EXPECT_EQ(IndexList::join(nullptr, a), a);
  EXPECT_EQ(IndexList::join(a, b), a);
  IndexList::concat(b, c);  // a's cached tail now lags behind
  EXPECT_EQ(a->last_node, b);
  IndexList::concat(c, d);
  IndexList::concat(a, nullptr);
  EXPECT_EQ(IndexList::last(a), d_tail);
  EXPECT_EQ(a->last_node, d_tail);
  EXPECT_EQ(c_tail->last_node, d_tail);
  EXPECT_EQ(values_of(a), (std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(IndexList::length(a), 7);
  delete a;
}

TEST(IndexListTest, LengthNthEqual) {
  IndexList* a = make({1, 2, 3});
  IndexList* b = make({1, 2});
  IndexList* c = make({1, 2});
  int v = -1;
  EXPECT_EQ(IndexList::nth(a, 2, &v), 0);
  EXPECT_EQ(v, 3);
  EXPECT_EQ(IndexList::nth(a, 3, &v), 1);
  EXPECT_EQ(IndexList::nth(nullptr, 0, &v), 1);
  EXPECT_EQ(v, 3);
  EXPECT_EQ(IndexList::length(nullptr), 0);
  EXPECT_FALSE(IndexList::equal(b, a));
  EXPECT_FALSE(IndexList::equal(a, b));
  EXPECT_TRUE(IndexList::equal(b, c));
  EXPECT_TRUE(IndexList::equal(nullptr, nullptr));
  EXPECT_FALSE(IndexList::equal(b, nullptr));
  delete a;
  delete b;
  delete c;
}

TEST(IndexListTest, PrintsTenValuesALine) {
  std::vector<int> values;
  for (int i = 1; i <= 25; ++i) values.push_back(i);
  IndexList* list = make(values);
  IndexList* one = make({9});
  EXPECT_EQ(stdout_of([&] {
              IndexList::print(list);
              IndexList::print(one);
            }),
            "{ 1, 2, 3, 4, 5, 6, 7, 8, 9, 10,\n"
            "11, 12, 13, 14, 15, 16, 17, 18, 19, 20,\n"
            "21, 22, 23, 24, 25 }\n"
            "{ 9 }\n");
  delete list;
  delete one;
}

TEST(IndexListTest, MillionNodesBuildJoinAndFree) {
  std::vector<int> values(500000, 1);
  IndexList* a = make(values);
  for (int i = 0; i < 500000; ++i) IndexList::append(&a, 2);
  EXPECT_EQ(IndexList::length(a), 1000000);
  delete a;
}
