// Tokens of qv source text, read with one character of lookahead and no
// backtracking. The token numbers are those declared by the grammar.
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

/// Bytes of the value that travels with a token, terminating NUL included.
constexpr int kTokenValueSize = 256;

/// The lexeme of a token that carries its text, NUL-terminated, held by
/// the lexer until it has read two more tokens: the grammar takes a
/// token's text only in a rule of that token alone, which it reduces with
/// at most the next token read ahead.
struct TokenText {
  const char* text;
  int length;

  std::string_view view() const { return {text, static_cast<size_t>(length)}; }
};

class QvLexer {
 public:
  /// Starts on a file opened by the caller: line 1, first character read.
  explicit QvLexer(FILE* in);
  /// Starts on text in memory, which must outlive the lexer.
  explicit QvLexer(std::string_view text);
  QvLexer(const QvLexer&) = delete;
  QvLexer& operator=(const QvLexer&) = delete;

  /// The next token, -1 at end of input. `value` receives the lexeme of
  /// identifiers, literals and the keywords that carry their text.
  /// A lexical error ends the process.
  int next_token(TokenText* value);
  /// Newlines read so far, plus one.
  int line() const { return line_; }
  /// The line the last token started on: `line` may already have passed
  /// the newline after it, reading ahead.
  int token_line() const { return token_line_; }

 private:
  void advance();
  /// The next byte of the input, EOF at its end.
  int read();
  /// Reads the next block of a file; false at its end.
  bool refill();
  /// Appends the lookahead to the lexeme and advances.
  void take();
  /// Takes characters as long as they are of the classes (see lexer.cc).
  void take_run(unsigned classes);
  /// Advances past white space.
  void skip_spaces();
  /// The lexeme read, terminated, as the token's value.
  TokenText lexeme();
  int number(TokenText* value);
  int word(TokenText* value);
  /// After a first character of '=', '(', '-', '<', '>' or '*'; 0 when the
  /// pair was a comment and scanning must go on.
  int pair_or_comment(int first);
  [[noreturn]] void fail(const char* what);

  static constexpr size_t kBlockSize = 1 << 16;

  /// Null when the input is text in memory.
  FILE* in_ = nullptr;
  /// The block read from `in_`.
  std::unique_ptr<char[]> block_;
  /// What is left of the text in memory or of the block.
  const char* next_ = nullptr;
  const char* end_ = nullptr;
  int look_ = -1;
  int line_ = 1;
  int token_line_ = 1;
  /// Tokens take turns between the two, so the text of the token before
  /// stays as it was while the next is read.
  char lexemes_[2][kTokenValueSize];
  char* lexeme_ = lexemes_[0];
  int length_ = 0;
};

/// Keyword or operator text of a token number, or null.
const char* token_text(int token);

/// Starts the process-wide count of characters read, which the report of
/// a NUL character gives, again from zero: for a process that reads one
/// program after another as separate processes would (the fuzz targets,
/// the unit tests).
void reset_characters_read();

/// Writes the token stream of the file on standard output, one line per
/// token. Returns 1 when the file cannot be opened, 0 otherwise.
int QvLexTest(const char* path);
