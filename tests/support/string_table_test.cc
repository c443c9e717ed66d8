#include "support/string_table.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/common/test_io.h"

namespace {

// Two texts share a bucket exactly when inserting the second occupies no
// new bucket.
bool same_bucket(const char* a, const char* b) {
  StringHash h(SymbolTable::kBuckets);
  h.insert(a);
  h.insert(b);
  return h.occupied() == 1;
}

}  // namespace

TEST(StringHashTest, HashPacksLowNibbles) {
  EXPECT_TRUE(same_bucket("a1", "aA"));  // '1' and 'A' share the low nibble
  EXPECT_FALSE(same_bucket("a1", "a2"));
  // The eighth character starts a second word: 0x1234567 + 0x8 = 0x123456F.
  EXPECT_TRUE(same_bucket("12345678", "123456?"));
  EXPECT_FALSE(same_bucket("12345678", "1234567"));
  // 0x13B1 is 5041, so it lands with the empty text in bucket 0.
  EXPECT_TRUE(same_bucket("", "13;1"));
}

TEST(StringHashTest, CollisionStatistics) {
  StringHash h(SymbolTable::kBuckets);
  const int first = h.insert("a1");
  EXPECT_EQ(h.coll_max(), 0);
  h.insert("aA");
  EXPECT_EQ(h.coll_max(), 2);  // a miss after walking one entry
  h.insert("aQ");
  EXPECT_EQ(h.coll_max(), 2);
  h.insert("aa");
  EXPECT_EQ(h.coll_max(), 4);
  h.insert("aq");
  EXPECT_EQ(h.coll_max(), 4);
  EXPECT_EQ(h.insert("a1"), first);  // a hit changes nothing
  EXPECT_EQ(h.coll_max(), 4);
  EXPECT_EQ(h.find("a!"), 0);  // a miss after five entries
  EXPECT_EQ(h.coll_max(), 6);
  EXPECT_EQ(h.occupied(), 1);
  EXPECT_EQ(h.count(), 5);
  EXPECT_EQ(h.find("aa"), 4);
}

// What a chained table of 5041 buckets shows after many names: each
// bucket's chain is as long as the names hashed to it, and the statistic
// follows the longest chain a miss walked.
TEST(StringHashTest, StatisticsOfManyNamesFollowTheChainedTable) {
  StringHash h(SymbolTable::kBuckets);
  std::vector<int> lengths(SymbolTable::kBuckets, 0);
  int coll_max = 0;
  for (int i = 0; i < 60000; ++i) {
    const std::string name = "v" + std::to_string(i * 7919 % 100003);
    // The same nibble packing, worked out independently of the table.
    uint32_t word = 0, sum = 0;
    int k = 8;
    for (unsigned char c : name) {
      if (--k == 0) {
        k = 8;
        sum += word;
        word = c & 15u;
      } else {
        word = (word << 4) | (c & 15u);
      }
    }
    int& length = lengths[(word + sum) % SymbolTable::kBuckets];
    const int before = h.count();
    const int number = h.insert(name.c_str());
    if (number > before) {
      if (length > coll_max) coll_max = length + 1;
      ++length;
    }
    ASSERT_EQ(h.find(name.c_str()), number);
    ASSERT_STREQ(h.text(number), name.c_str());
  }
  int occupied = 0;
  for (int length : lengths) occupied += length > 0;
  EXPECT_EQ(h.occupied(), occupied);
  EXPECT_EQ(h.coll_max(), coll_max);
  EXPECT_EQ(h.count(), 60000);
}

TEST(SymbolTableTest, NumbersFollowFirstInterning) {
  SymbolTable t;
  EXPECT_EQ(t.intern("a"), 1);
  EXPECT_EQ(t.intern("b"), 2);
  EXPECT_EQ(t.intern("a"), 1);
  EXPECT_EQ(t.intern("c%d", 3), 3);
  EXPECT_EQ(t.count(), 3);
  EXPECT_STREQ(t.text(3), "c3");

  int n = 0;
  EXPECT_EQ(t.intern_new(&n, "x"), 0);
  EXPECT_EQ(n, 4);
  n = 0;
  EXPECT_EQ(t.intern_new(&n, "x"), 1);
  EXPECT_EQ(n, 4);

  EXPECT_EQ(t.find("never"), 0);
  EXPECT_EQ(t.find_check(&n, "never"), 0);
  EXPECT_EQ(t.count(), 4);
  EXPECT_EQ(t.find("c%d", 3), 3);
  EXPECT_EQ(t.find_check(&n, "b"), 1);
  EXPECT_EQ(n, 2);
  // 0 means no name, and numbers past the count were never given out.
  EXPECT_ENDS(t.text(0), 1, "SymbolTable::text : no string number 0");
  EXPECT_ENDS(t.text(5), 1, "SymbolTable::text : no string number 5");
}

TEST(SymbolTableTest, ManyAndLongTextsStayValid) {
  SymbolTable t;
  std::vector<const char*> texts;
  // 3000 names of about 24 bytes fill several text blocks and three chunks.
  for (int i = 0; i < 3000; ++i) texts.push_back(t.text(t.intern("name_number_%012d", i)));
  std::string huge(3 * StringHash::kBlockSize, 'q');
  int big = t.intern("%s", huge.c_str());
  int after = t.intern("after");
  for (int i = 0; i < 3000; ++i) {
    ASSERT_EQ(t.text(i + 1), texts[i]);
    ASSERT_EQ(std::string(texts[i]), "name_number_" + std::string(12 - std::to_string(i).size(), '0') +
                                         std::to_string(i));
  }
  EXPECT_EQ(t.text(big), huge);
  EXPECT_EQ(t.find("%s", huge.c_str()), big);
  EXPECT_STREQ(t.text(after), "after");
}

TEST(SymbolTableTest, PrintFormats) {
  SymbolTable t;
  EXPECT_EQ(stdout_of([&] { t.print(); }), "");
  t.intern("node");
  t.intern("x");
  EXPECT_EQ(stdout_of([&] {
              t.print();
              t.print_stats(stdout);
            }),
            "symbol[  1]= \"node\"\n"
            "symbol[  2]= \"x\"\n"
            "hash size  :  5041\n"
            "occupied   :     2\n"
            "coll max   :     0\n"
            "nb strings :     2\n");
}

// The index compares texts only where their hashes agree: among 200,000
// names a few pairs are expected to share all 32 bits of it, and every
// name must still find its own number, prefixes of one another included.
TEST(StringHashTest, NamesSharingAHashKeepTheirOwnNumbers) {
  StringHash h(SymbolTable::kBuckets);
  const int n = 200000;
  for (int i = 0; i < n; ++i) ASSERT_EQ(h.insert("w" + std::to_string(i)), i + 1);
  EXPECT_EQ(h.insert(std::string_view("w12345678", 3)), 13);  // "w12"
  for (int i = 0; i < n; ++i) {
    const std::string name = "w" + std::to_string(i);
    ASSERT_EQ(h.find(name), i + 1);
    ASSERT_EQ(h.find(name + "x"), 0);
  }
  EXPECT_EQ(h.find("w"), 0);
  EXPECT_EQ(h.count(), n);
}

// The reader interns what it reads as it is, unformatted: a '%' is text.
TEST(SymbolTableTest, InternTextTakesTheTextAsItIs) {
  SymbolTable t;
  EXPECT_EQ(t.intern_text("100%d"), 1);
  EXPECT_EQ(t.intern_text(std::string_view("abc", 2)), 2);
  EXPECT_STREQ(t.text(2), "ab");
  EXPECT_EQ(t.intern("%s", "100%d"), 1);
  EXPECT_EQ(t.find("ab"), 2);
}
