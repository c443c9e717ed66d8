// Interned names: every text is stored once and handled as its string
// number, dense from 1 in order of first interning; 0 means no name.
#pragma once

#include <cstdio>

#include "support/chunk_array.h"
#include "support/diagnostics.h"

/// A chained hash of texts packed into large blocks; texts never move.
class StringHash {
 public:
  struct Entry {
    const char* text;
    int number;
    Entry* next;
  };

  explicit StringHash(int size);
  StringHash(const StringHash&) = delete;
  StringHash& operator=(const StringHash&) = delete;
  ~StringHash();

  /// The entry of `text`, inserted when absent.
  Entry* insert(const char* text);
  /// The entry of `text` or null; never inserts.
  Entry* find(const char* text);

  int size() const { return size_; }
  int count() const { return count_; }
  int occupied() const { return occupied_; }
  int coll_max() const { return coll_max_; }

  static constexpr int kBlockSize = 16384;

 private:
  unsigned hash(const char* text) const;
  /// Walks one bucket; updates the collision statistic on a miss.
  Entry* search(unsigned bucket, const char* text);
  char* store(const char* text);

  Entry** buckets_;
  int size_;
  int count_ = 0;
  int occupied_ = 0;
  int coll_max_ = 0;
  /// Newest text block; its first word links to the previously filled one.
  char* blocks_ = nullptr;
  char* cursor_ = nullptr;
  int left_ = 0;
};

class SymbolTable {
 public:
  SymbolTable();
  SymbolTable(const SymbolTable&) = delete;
  SymbolTable& operator=(const SymbolTable&) = delete;

  /// Formats printf-style and returns the text's string number.
  int intern(const char* fmt, ...) KORVEL_PRINTF(2, 3);
  /// As `intern`, storing the number; returns 0 when new, 1 when present.
  int intern_new(int* number, const char* fmt, ...) KORVEL_PRINTF(3, 4);
  /// The string number of the formatted text, or 0; never inserts.
  int find(const char* fmt, ...) KORVEL_PRINTF(2, 3);
  /// 1 and the number when found, 0 otherwise.
  int find_check(int* number, const char* fmt, ...) KORVEL_PRINTF(3, 4);
  /// The text of a string number given out so far; any other number is a
  /// broken invariant that stops the process.
  const char* text(int number) const;
  int count() const { return count_; }

  /// One line per string, in number order, on standard output.
  void print();
  void print_stats(FILE* stream);

  static constexpr int kBuckets = 5041;
  static constexpr int kChunkSize = 1000;

 private:
  int add(const char* text, bool* was_new);

  int count_ = 0;
  StringHash hash_;
  /// Growing it on a read changes no text, so reads stay const.
  mutable ChunkArray<const char*> texts_;
};
