// The lexer reads a file in blocks and copies runs of word characters at
// once: tokens cut by a block's end must come out as from text in memory.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/lexer.h"
#include "support/file_handle.h"
#include "tests/common/test_io.h"

namespace {

struct Token {
  int token;
  std::string text;
  int line;

  bool operator==(const Token&) const = default;
};

std::vector<Token> tokens_of(QvLexer& lexer) {
  std::vector<Token> tokens;
  TokenText value{"", 0};
  for (int token; (token = lexer.next_token(&value)) >= 0;) {
    tokens.push_back({token, std::string(value.view()), lexer.token_line()});
    value = {"", 0};
  }
  return tokens;
}

std::vector<Token> tokens_of_file(const std::string& source) {
  ProgramFile file(source);
  const FileHandle in(std::fopen(file.path(), "r"));
  QvLexer lexer(in.get());
  return tokens_of(lexer);
}

// Names of every length up to the limit, numbers, reals and comments,
// laid across several blocks so that each kind of token meets a block's
// end somewhere.
TEST(LexerBlocks, FileInBlocksReadsAsTextInMemory) {
  std::string source;
  std::vector<std::string> names;
  for (int i = 0; source.size() < 300000; ++i) {
    const std::string name = "n" + std::string(i % 255, static_cast<char>('a' + i % 26));
    names.push_back(name);
    source += name + " 12" + std::to_string(i) + " 3.5e" + std::to_string(i % 30) +
              (i % 7 ? " -- note\n" : " (* a\n comment *)\n");
  }
  QvLexer memory(source);
  const std::vector<Token> expected = tokens_of(memory);
  ASSERT_EQ(expected.size(), 3 * names.size());
  for (size_t i = 0; i < names.size(); ++i) ASSERT_EQ(expected[3 * i].text, names[i]);
  EXPECT_EQ(tokens_of_file(source), expected);
}

// 255 characters are the longest lexeme, wherever a block ends within it.
TEST(LexerBlocks, LongestLexemeAcrossABlockEnd) {
  constexpr size_t kBlock = 1 << 16;
  const std::string longest(255, 'q');
  for (size_t start : {kBlock - 300, kBlock - 200, kBlock - 1, kBlock}) {
    SCOPED_TRACE(start);
    const std::string before = "\n" + std::string(start - 1, ' ');
    const std::vector<Token> tokens = tokens_of_file(before + longest + " x");
    ASSERT_EQ(tokens.size(), 2u);
    EXPECT_EQ(tokens[0], (Token{tokens[0].token, longest, 2}));
    Ending ending;
    const std::string out =
        stdout_of([&] { ending = ending_of([&] { tokens_of_file(before + longest + "q"); }); });
    EXPECT_EQ(ending.status, 1);
    EXPECT_EQ(out, "qv2rb lex error : lexeme longer than 255 characters, line '2'\n");
  }
}

// The grammar may read the next token before it takes a name's text.
TEST(LexerBlocks, TextOfATokenOutlivesTheNextToken) {
  QvLexer lexer(std::string_view("first 22 third"));
  TokenText first{}, second{}, third{};
  lexer.next_token(&first);
  lexer.next_token(&second);
  EXPECT_STREQ(first.text, "first");
  EXPECT_EQ(first.length, 5);
  EXPECT_EQ(second.view(), "22");
  lexer.next_token(&third);
  EXPECT_EQ(second.view(), "22");
  EXPECT_EQ(third.view(), "third");
}

}  // namespace
