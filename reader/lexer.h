// Tokens of qv source text, read with one character of lookahead and no
// backtracking. The token numbers are those declared by the grammar.
#pragma once

#include <cstdio>
#include <string_view>

/// Bytes of the value that travels with a token, terminating NUL included.
constexpr int kTokenValueSize = 256;

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
  int next_token(char* value);
  /// Newlines read so far, plus one.
  int line() const { return line_; }
  /// The line the last token started on: `line` may already have passed
  /// the newline after it, reading ahead.
  int token_line() const { return token_line_; }

 private:
  void advance();
  /// The next byte of the input, EOF at its end.
  int read();
  /// Appends the lookahead to the lexeme and advances.
  void take();
  int number(char* value);
  int word(char* value);
  /// After a first character of '=', '(', '-', '<', '>' or '*'; 0 when the
  /// pair was a comment and scanning must go on.
  int pair_or_comment(int first);
  [[noreturn]] void fail(const char* what);

  /// Null when the input is `text_`.
  FILE* in_ = nullptr;
  /// What is left of an input in memory.
  std::string_view text_;
  int look_ = -1;
  int line_ = 1;
  int token_line_ = 1;
  char lexeme_[kTokenValueSize];
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
