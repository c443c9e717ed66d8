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

char* new_block(size_t size, char* link) {
  char* block = new char[size];
  set_link(block, link);
  return block;
}

}  // namespace

StringHash::StringHash(int size)
    : chain_lengths_(size, 0),
      index_(64, 0),
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
unsigned StringHash::bucket(const char* text) const {
  uint32_t word = 0, sum = 0;
  int k = 8;
  for (const unsigned char* c = reinterpret_cast<const unsigned char*>(text); *c; ++c) {
    uint32_t nibble = *c & 15u;
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

uint32_t& StringHash::slot_of(std::string_view text, size_t hash) {
  const size_t mask = index_.size() - 1;
  for (size_t at = hash & mask;; at = (at + 1) & mask) {
    uint32_t& slot = index_[at];
    if (slot == 0) return slot;
    // Compared without measuring the stored text first.
    const char* stored = this->text(static_cast<int>(slot));
    if (strncmp(stored, text.data(), text.size()) == 0 && stored[text.size()] == '\0') return slot;
  }
}

// A miss walks the whole chain of its bucket.
void StringHash::count_miss(unsigned bucket) {
  const int walked = chain_lengths_[bucket];
  if (walked > coll_max_) coll_max_ = walked + 1;
}

char* StringHash::store(const char* text) {
  size_t need = strlen(text) + 1;
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
  memcpy(copy, text, need);
  return copy;
}

void StringHash::grow_index() {
  std::vector<uint32_t> old(index_.size() * 2, 0);
  old.swap(index_);
  for (uint32_t number : old) {
    if (number == 0) continue;
    std::string_view text = this->text(static_cast<int>(number));
    slot_of(text, std::hash<std::string_view>{}(text)) = number;
  }
}

int StringHash::insert(const char* text) {
  const std::string_view key(text);
  uint32_t* slot = &slot_of(key, std::hash<std::string_view>{}(key));
  if (*slot != 0) return static_cast<int>(*slot);
  const unsigned b = bucket(text);
  if (chain_lengths_[b] == 0) ++occupied_;
  count_miss(b);
  ++chain_lengths_[b];
  *texts_.chunk_at(count_) = store(text);
  *slot = static_cast<uint32_t>(++count_);
  if (2 * static_cast<size_t>(count_) > index_.size()) grow_index();
  return count_;
}

int StringHash::find(const char* text) {
  const std::string_view key(text);
  const uint32_t number = slot_of(key, std::hash<std::string_view>{}(key));
  if (number == 0) count_miss(bucket(text));
  return static_cast<int>(number);
}

SymbolTable::SymbolTable() : hash_(kBuckets) {}

int SymbolTable::intern(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  return hash_.insert(text.c_str());
}

int SymbolTable::intern_new(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  const int before = hash_.count();
  *number = hash_.insert(text.c_str());
  return *number > before ? 0 : 1;
}

int SymbolTable::find(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  return hash_.find(text.c_str());
}

int SymbolTable::find_check(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  const int found = hash_.find(text.c_str());
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
