#include "reader/lexer.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "reader/qv_parser.h"
#include "support/diagnostics.h"
#include "support/file_handle.h"

namespace {

struct Keyword {
  std::string_view text;
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

constexpr size_t kLongestKeyword = [] {
  size_t longest = 0;
  for (const Keyword& k : kKeywords) longest = std::max(longest, k.text.size());
  return longest;
}();

// Character classes as the C locale has them, which is the only one the
// programs run in; a table spares a library call per character.
enum CharClass : unsigned char {
  kSpace = 1,
  kDigit = 2,
  kLower = 4,
  kUpper = 8,
  kUnderscore = 16,
  /// A token of its own.
  kSingle = 32,
  /// A token alone, the first of a pair or the start of a comment.
  kPairStart = 64,
};

constexpr std::array<unsigned char, 256> make_classes() {
  std::array<unsigned char, 256> classes{};
  for (unsigned char c : {' ', '\t', '\n', '\v', '\f', '\r'}) classes[c] = kSpace;
  for (int c = '0'; c <= '9'; ++c) classes[c] = kDigit;
  for (int c = 'a'; c <= 'z'; ++c) classes[c] = kLower;
  for (int c = 'A'; c <= 'Z'; ++c) classes[c] = kUpper;
  classes['_'] = kUnderscore;
  for (unsigned char c : std::string_view(".;):,/%+#")) classes[c] = kSingle;
  for (unsigned char c : std::string_view("=(-<>*")) classes[c] = kPairStart;
  return classes;
}

constexpr std::array<unsigned char, 256> kClasses = make_classes();

// EOF is in no class.
bool in_class(int c, unsigned classes) {
  return c >= 0 && (kClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

bool is_digit(int c) { return in_class(c, kDigit); }

constexpr unsigned kWord = kDigit | kLower | kUpper | kUnderscore;

// Keywords are short and all in small letters; the names of a generated
// program mostly have digits, and skip the search.
bool may_be_keyword(std::string_view word) {
  if (word.size() > kLongestKeyword) return false;
  for (char c : word) {
    if (!in_class(static_cast<unsigned char>(c), kLower)) return false;
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

}  // namespace

QvLexer::QvLexer(FILE* in) : in_(in), block_(new char[kBlockSize]) {
  advance();
}

QvLexer::QvLexer(std::string_view text) : next_(text.data()), end_(text.data() + text.size()) {
  advance();
}

bool QvLexer::refill() {
  if (!in_) return false;
  // One thread reads the file, in blocks: a call per byte, even unlocked,
  // is a good part of the reading of a large program.
  const size_t got = std::fread(block_.get(), 1, kBlockSize, in_);
  next_ = block_.get();
  end_ = next_ + got;
  return got > 0;
}

int QvLexer::read() {
  if (next_ == end_ && !refill()) return EOF;
  // As fgetc gives it: a byte above 127 is no negative char, nor EOF.
  return static_cast<unsigned char>(*next_++);
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
  advance();
}

void QvLexer::skip_spaces() {
  while (in_class(look_, kSpace)) {
    // As take_run: the rest of the run within the block at once, counting
    // its newlines.
    const char* run = next_;
    for (; run != end_ && in_class(static_cast<unsigned char>(*run), kSpace); ++run) {
      if (*run == '\n') ++line_;
    }
    chars_read += run - next_;
    next_ = run;
    advance();
  }
}

void QvLexer::take_run(unsigned classes) {
  while (in_class(look_, classes)) {
    // The rest of the run as far as the block goes, copied at once; its
    // characters are neither NUL nor newline, so reading them one by one
    // would only have counted them.
    const char* run = next_;
    while (run != end_ && in_class(static_cast<unsigned char>(*run), classes)) ++run;
    const int more = static_cast<int>(run - next_);
    if (length_ + 1 + more > kTokenValueSize - 1) {
      take();  // fails where the lexeme grows too long
      continue;
    }
    lexeme_[length_++] = static_cast<char>(look_);
    std::memcpy(lexeme_ + length_, next_, more);
    length_ += more;
    chars_read += more;
    next_ = run;
    advance();
  }
}

TokenText QvLexer::lexeme() {
  lexeme_[length_] = '\0';
  return {lexeme_, length_};
}

void QvLexer::fail(const char* what) {
  std::printf("qv2rb lex error : %s, line '%d'\n", what, line_);
  end_process(1);
}

int QvLexer::number(TokenText* value) {
  bool real = false;
  take_run(kDigit);
  if (look_ == '.') {
    real = true;
    take();
    take_run(kDigit);
  }
  if (look_ == 'e' || look_ == 'E') {
    real = true;
    take();
    if (look_ == '+' || look_ == '-') take();
    if (!is_digit(look_)) fail("bad real syntax");
    take_run(kDigit);
  }
  *value = lexeme();
  return real ? XRConst : XIConst;
}

int QvLexer::word(TokenText* value) {
  take_run(kWord);
  const TokenText text = lexeme();
  if (may_be_keyword(text.view())) {
    for (const Keyword& k : kKeywords) {
      if (k.text[0] == text.text[0] && text.view() == k.text) {
        if (k.copies_text) *value = text;
        return k.token;
      }
    }
  }
  *value = text;
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

int QvLexer::next_token(TokenText* value) {
  for (;;) {
    skip_spaces();
    if (look_ == EOF) return -1;
    token_line_ = line_;
    lexeme_ = lexemes_[lexeme_ == lexemes_[0] ? 1 : 0];
    length_ = 0;
    if (is_digit(look_)) return number(value);
    if (in_class(look_, kLower | kUpper | kUnderscore)) return word(value);
    int c = look_;
    if (in_class(c, kSingle)) {
      advance();
      return c;
    }
    if (in_class(c, kPairStart)) {
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
    if (k.token == token) return k.text.data();
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
  TokenText value{};
  for (int token; (token = lexer.next_token(&value)) >= 0;) {
    if (token < 256) {
      std::printf("%c\n", token);
    } else if (token == XRConst) {
      std::printf("%s (*XRConst*)\n", value.text);
    } else if (token == XIConst) {
      std::printf("%s (*XIConst*)\n", value.text);
    } else if (token == XIdf) {
      std::printf("%s (*XIdf*)\n", value.text);
    } else if (const char* text = token_text(token)) {
      std::printf("%s\n", text);
    } else {
      std::printf("unknmown lexeme '%d'\n", token);
      end_process(1);
    }
  }
  return 0;
}
