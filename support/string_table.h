// Interned names: every text is stored once and handled as its string
// number, dense from 1 in order of first interning; 0 means no name.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

#include "support/chunk_array.h"
#include "support/diagnostics.h"

/// Texts packed into large blocks (they never move), numbered in order of
/// first insertion and found again through an open-addressing index.
///
/// The statistics are those of a chained hash of `size` buckets: a text's
/// bucket is fixed by its hash, a chain only grows, and a miss walks the
/// whole chain, so counting the entries of each bucket is enough to know
/// them. The chains themselves are never kept: with a million names they
/// would be hundreds of entries long.
class StringHash {
 public:
  explicit StringHash(int size);
  StringHash(const StringHash&) = delete;
  StringHash& operator=(const StringHash&) = delete;
  ~StringHash();

  /// The number of `text`, given the next number when absent.
  int insert(std::string_view text);
  /// The number of `text`, or 0; never inserts.
  int find(std::string_view text);
  /// The text of a number from 1 to count().
  const char* text(int number) const { return *texts_.chunk_at(number - 1); }

  int size() const { return static_cast<int>(chain_lengths_.size()); }
  int count() const { return count_; }
  int occupied() const { return occupied_; }
  int coll_max() const { return coll_max_; }

  static constexpr int kBlockSize = 16384;
  static constexpr int kChunkSize = 1000;

 private:
  /// A number and the hash of its text: a probe compares texts only
  /// when the hashes agree, and growing the index reads no text.
  struct Slot {
    uint32_t number;
    uint32_t hash;
  };

  static uint32_t hash_of(std::string_view text);
  /// The bucket of the chained table the statistics describe.
  unsigned bucket(std::string_view text) const;
  /// The slot of the index holding `text`'s number, or the empty slot
  /// where it would go.
  Slot& slot_of(std::string_view text, uint32_t hash);
  /// Records a miss in `text`'s bucket, as walking its chain would.
  void count_miss(unsigned bucket);
  char* store(std::string_view text);
  void grow_index();

  std::vector<int> chain_lengths_;
  int count_ = 0;
  int occupied_ = 0;
  int coll_max_ = 0;
  /// Number 0 for an empty slot; a power of two, at most half full.
  std::vector<Slot> index_;
  /// Slot n-1 holds the text of number n. Growing it on a read changes no
  /// text, so reads stay const.
  mutable ChunkArray<const char*> texts_;
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
  /// The string number of `text` as it is, with nothing to format: what
  /// the reader calls for every name it reads.
  int intern_text(std::string_view text) { return hash_.insert(text); }
  /// As `intern`, storing the number; returns 0 when new, 1 when present.
  int intern_new(int* number, const char* fmt, ...) KORVEL_PRINTF(3, 4);
  /// The string number of the formatted text, or 0; never inserts.
  int find(const char* fmt, ...) KORVEL_PRINTF(2, 3);
  /// 1 and the number when found, 0 otherwise.
  int find_check(int* number, const char* fmt, ...) KORVEL_PRINTF(3, 4);
  /// The text of a string number given out so far; any other number is a
  /// broken invariant that stops the process.
  const char* text(int number) const;
  int count() const { return hash_.count(); }

  /// One line per string, in number order, on standard output.
  void print();
  void print_stats(FILE* stream);

  static constexpr int kBuckets = 5041;

 private:
  StringHash hash_;
};
