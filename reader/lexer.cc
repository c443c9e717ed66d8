#include "reader/lexer.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "reader/qv_parser.h"
#include "support/diagnostics.h"
#include "support/file_handle.h"

namespace {

struct Keyword {
  const char* text;
  int token;
  /// The parser needs the text of type names and Boolean constants.
  bool copies_text;
};

// Searched from the top; the order is part of the language's definition.
constexpr Keyword kKeywords[] = {
    {"and", XAnd, false},         {"assert", XAssert, false},
    {"bool", XBool, true},        {"const", XConst, false},
    {"current", XCurrent, false}, {"div", XDiv, false},
    {"else", XElse, false},       {"function", XFunction, false},
    {"false", XFalse, true},      {"if", XIf, false},
    {"int", XInt, true},          {"let", XLet, false},
    {"mod", XMod, false},         {"node", XNode, false},
    {"not", XNot, false},         {"or", XOr, false},
    {"nor", XNor, false},         {"pre", XPre, false},
    {"real", XReal, true},        {"returns", XReturns, false},
    {"tel", XTel, false},         {"type", XType, false},
    {"then", XThen, false},       {"true", XTrue, true},
    {"var", XVar, false},         {"when", XWhen, false},
    {"xor", XXor, false},
};

constexpr size_t longest_keyword() {
  size_t longest = 0;
  for (const Keyword& k : kKeywords) longest = std::max(longest, std::string_view(k.text).size());
  return longest;
}

// Keywords are short and all in small letters; the names of a generated
// program mostly have digits, and skip the search.
bool may_be_keyword(const char* word, size_t length) {
  if (length > longest_keyword()) return false;
  for (size_t i = 0; i < length; ++i) {
    if (!std::islower(static_cast<unsigned char>(word[i]))) return false;
  }
  return true;
}

struct Pair {
  const char* text;
  int token;
};

const Pair kPairs[] = {
    {"->", XArrow}, {">=", XGe}, {"=>", XImpl}, {"<=", XLe}, {"<>", XNe}, {"**", XPower},
};

// Counted over every file the process reads, for the NUL report.
long chars_read = 0;

bool is_word_char(int c) {
  return std::isalnum(c) || c == '_';
}

// strchr alone would also find the terminating NUL of the set.
bool is_one_of(int c, const char* set) {
  return c != '\0' && std::strchr(set, c);
}

}  // namespace

QvLexer::QvLexer(FILE* in) : in_(in) {
  advance();
}

QvLexer::QvLexer(std::string_view text) : text_(text) {
  advance();
}

int QvLexer::read() {
  // One thread reads the file: the lock fgetc takes per byte is a third
  // of the reading of a large program.
  if (in_) return getc_unlocked(in_);
  if (text_.empty()) return EOF;
  // As fgetc gives it: a byte above 127 is no negative char, nor EOF.
  const unsigned char c = text_.front();
  text_.remove_prefix(1);
  return c;
}

void QvLexer::advance() {
  look_ = read();
  ++chars_read;
  if (look_ == '\0') std::printf("ICI (car %ld)\n", chars_read);
  if (look_ == '\n') ++line_;
}

void QvLexer::take() {
  if (length_ == kTokenValueSize - 1) fail("lexeme longer than 255 characters");
  lexeme_[length_++] = static_cast<char>(look_);
  lexeme_[length_] = '\0';
  advance();
}

void QvLexer::fail(const char* what) {
  std::printf("qv2rb lex error : %s, line '%d'\n", what, line_);
  end_process(1);
}

int QvLexer::number(char* value) {
  bool real = false;
  while (std::isdigit(look_)) take();
  if (look_ == '.') {
    real = true;
    take();
    while (std::isdigit(look_)) take();
  }
  if (look_ == 'e' || look_ == 'E') {
    real = true;
    take();
    if (look_ == '+' || look_ == '-') take();
    if (!std::isdigit(look_)) fail("bad real syntax");
    while (std::isdigit(look_)) take();
  }
  std::strcpy(value, lexeme_);
  return real ? XRConst : XIConst;
}

int QvLexer::word(char* value) {
  while (is_word_char(look_)) take();
  if (!may_be_keyword(lexeme_, length_)) {
    std::strcpy(value, lexeme_);
    return XIdf;
  }
  for (const Keyword& k : kKeywords) {
    if (std::strcmp(k.text, lexeme_) == 0) {
      if (k.copies_text) std::strcpy(value, lexeme_);
      return k.token;
    }
  }
  std::strcpy(value, lexeme_);
  return XIdf;
}

int QvLexer::pair_or_comment(int first) {
  if (first == '(' && look_ == '*') {
    // The opening star may also close the comment: "(*)" is complete.
    int previous;
    do {
      previous = look_;
      advance();
    } while (look_ != EOF && !(previous == '*' && look_ == ')'));
    if (look_ != EOF) advance();
    return 0;
  }
  if (first == '-' && look_ == '-') {
    while (look_ != '\n' && look_ != EOF) advance();
    if (look_ != EOF) advance();
    return 0;
  }
  for (const Pair& p : kPairs) {
    if (p.text[0] == first && p.text[1] == look_) {
      advance();
      return p.token;
    }
  }
  return first;
}

int QvLexer::next_token(char* value) {
  for (;;) {
    while (look_ != EOF && std::isspace(look_)) advance();
    if (look_ == EOF) return -1;
    token_line_ = line_;
    length_ = 0;
    lexeme_[0] = '\0';
    if (std::isdigit(look_)) return number(value);
    if (std::isalpha(look_) || look_ == '_') return word(value);
    int c = look_;
    if (is_one_of(c, ".;):,/%+#")) {
      advance();
      return c;
    }
    if (is_one_of(c, "=(-<>*")) {
      advance();
      if (int token = pair_or_comment(c)) return token;
      continue;
    }
    std::printf("qv2rb lex error : unknown char '%d' (%c), line '%d'\n", c, c, line_);
    end_process(1);
  }
}

void reset_characters_read() {
  chars_read = 0;
}

const char* token_text(int token) {
  for (const Keyword& k : kKeywords)
    if (k.token == token) return k.text;
  for (const Pair& p : kPairs)
    if (p.token == token) return p.text;
  return nullptr;
}

int QvLexTest(const char* path) {
  const FileHandle in(std::fopen(path, "r"));
  if (!in) {
    std::fprintf(stderr, "QvLexTest : Can't open file '%s'\n", path);
    return 1;
  }
  QvLexer lexer(in.get());
  char value[kTokenValueSize];
  for (int token; (token = lexer.next_token(value)) >= 0;) {
    if (token < 256) {
      std::printf("%c\n", token);
    } else if (token == XRConst) {
      std::printf("%s (*XRConst*)\n", value);
    } else if (token == XIConst) {
      std::printf("%s (*XIConst*)\n", value);
    } else if (token == XIdf) {
      std::printf("%s (*XIdf*)\n", value);
    } else if (const char* text = token_text(token)) {
      std::printf("%s\n", text);
    } else {
      std::printf("unknmown lexeme '%d'\n", token);
      end_process(1);
    }
  }
  return 0;
}
