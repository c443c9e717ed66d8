#include "support/string_table.h"

#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>

#include "support/vformat.h"

namespace {

// Every text block starts with one link word to the previously filled block.
constexpr size_t kLink = sizeof(char*);
constexpr size_t kBlockRoom = StringHash::kBlockSize - kLink;

char* link_of(const char* block) {
  char* link;
  memcpy(&link, block, kLink);
  return link;
}

void set_link(char* block, char* link) { memcpy(block, &link, kLink); }

// Names are a few characters long and their hashes already agree: a plain
// loop beats a call to memcmp. The stored text ends with a NUL where an
// equal text ends.
bool same_text(const char* stored, std::string_view text) {
  for (const char c : text) {
    if (*stored++ != c) return false;
  }
  return *stored == '\0';
}

char* new_block(size_t size, char* link) {
  char* block = new char[size];
  set_link(block, link);
  return block;
}

}  // namespace

StringHash::StringHash(int size)
    : chain_lengths_(size, 0),
      index_(64, Slot{0, 0}),
      texts_(kChunkSize, false),
      blocks_(new_block(kBlockSize, nullptr)) {
  cursor_ = blocks_ + kLink;
  left_ = kBlockRoom;
}

StringHash::~StringHash() {
  while (blocks_) {
    char* older = link_of(blocks_);
    delete[] blocks_;
    blocks_ = older;
  }
}

// The low nibbles of the characters are packed as hex digits into words
// (seven in the first word, eight in each later one) and the words summed.
unsigned StringHash::bucket(std::string_view text) const {
  uint32_t word = 0, sum = 0;
  int k = 8;
  for (const char c : text) {
    uint32_t nibble = static_cast<unsigned char>(c) & 15u;
    if (--k == 0) {
      k = 8;
      sum += word;
      word = nibble;
    } else {
      word = (word << 4) | nibble;
    }
  }
  return (word + sum) % static_cast<uint32_t>(size());
}

uint32_t StringHash::hash_of(std::string_view text) {
  return static_cast<uint32_t>(std::hash<std::string_view>{}(text));
}

StringHash::Slot& StringHash::slot_of(std::string_view text, uint32_t hash) {
  const size_t mask = index_.size() - 1;
  for (size_t at = hash & mask;; at = (at + 1) & mask) {
    Slot& slot = index_[at];
    if (slot.number == 0) return slot;
    if (slot.hash != hash) continue;
    if (same_text(this->text(static_cast<int>(slot.number)), text)) return slot;
  }
}

// A miss walks the whole chain of its bucket.
void StringHash::count_miss(unsigned bucket) {
  const int walked = chain_lengths_[bucket];
  if (walked > coll_max_) coll_max_ = walked + 1;
}

char* StringHash::store(std::string_view text) {
  const size_t need = text.size() + 1;
  char* copy;
  if (need > kBlockRoom) {
    // A text that no block could hold gets a block of its own, linked behind
    // the newest one so that block keeps filling.
    char* own = new_block(kLink + need, link_of(blocks_));
    set_link(blocks_, own);
    copy = own + kLink;
  } else {
    if (need > static_cast<size_t>(left_)) {
      blocks_ = new_block(kBlockSize, blocks_);
      cursor_ = blocks_ + kLink;
      left_ = kBlockRoom;
    }
    copy = cursor_;
    cursor_ += need;
    left_ -= need;
  }
  memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

void StringHash::grow_index() {
  std::vector<Slot> old(index_.size() * 2, Slot{0, 0});
  old.swap(index_);
  const size_t mask = index_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.number == 0) continue;
    size_t at = slot.hash & mask;
    while (index_[at].number != 0) at = (at + 1) & mask;
    index_[at] = slot;
  }
}

int StringHash::insert(std::string_view text) {
  const uint32_t hash = hash_of(text);
  Slot* slot = &slot_of(text, hash);
  if (slot->number != 0) return static_cast<int>(slot->number);
  const unsigned b = bucket(text);
  if (chain_lengths_[b] == 0) ++occupied_;
  count_miss(b);
  ++chain_lengths_[b];
  *texts_.chunk_at(count_) = store(text);
  *slot = Slot{static_cast<uint32_t>(++count_), hash};
  if (2 * static_cast<size_t>(count_) > index_.size()) grow_index();
  return count_;
}

int StringHash::find(std::string_view text) {
  const uint32_t number = slot_of(text, hash_of(text)).number;
  if (number == 0) count_miss(bucket(text));
  return static_cast<int>(number);
}

SymbolTable::SymbolTable() : hash_(kBuckets) {}

int SymbolTable::intern(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  return hash_.insert(text);
}

int SymbolTable::intern_new(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  const int before = hash_.count();
  *number = hash_.insert(text);
  return *number > before ? 0 : 1;
}

int SymbolTable::find(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  return hash_.find(text);
}

int SymbolTable::find_check(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  const int found = hash_.find(text);
  if (found == 0) return 0;
  *number = found;
  return 1;
}

const char* SymbolTable::text(int number) const {
  if (number < 1 || number > count())
    internal_error("file 'string_table':\nSymbolTable::text : no string number %d\n", number);
  return hash_.text(number);
}

void SymbolTable::print() {
  for (int n = 1; n <= count(); ++n) printf("symbol[%3d]= \"%s\"\n", n, text(n));
}

void SymbolTable::print_stats(FILE* stream) {
  fprintf(stream, "hash size  : %5d\n", hash_.size());
  fprintf(stream, "occupied   : %5d\n", hash_.occupied());
  fprintf(stream, "coll max   : %5d\n", hash_.coll_max());
  fprintf(stream, "nb strings : %5d\n", hash_.count());
}
