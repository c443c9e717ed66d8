#include "support/string_table.h"

#include <cstdarg>
#include <cstdint>
#include <cstring>
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
    : buckets_(new Entry*[size]()), size_(size), blocks_(new_block(kBlockSize, nullptr)) {
  cursor_ = blocks_ + kLink;
  left_ = kBlockRoom;
}

StringHash::~StringHash() {
  for (int i = 0; i < size_; ++i) {
    for (Entry* e = buckets_[i]; e;) {
      Entry* after = e->next;
      delete e;
      e = after;
    }
  }
  delete[] buckets_;
  while (blocks_) {
    char* older = link_of(blocks_);
    delete[] blocks_;
    blocks_ = older;
  }
}

// The low nibbles of the characters are packed as hex digits into words
// (seven in the first word, eight in each later one) and the words summed.
unsigned StringHash::hash(const char* text) const {
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
  return (word + sum) % static_cast<uint32_t>(size_);
}

StringHash::Entry* StringHash::search(unsigned bucket, const char* text) {
  int walked = 0;
  for (Entry* e = buckets_[bucket]; e; e = e->next, ++walked)
    if (strcmp(e->text, text) == 0) return e;
  if (walked > coll_max_) coll_max_ = walked + 1;
  return nullptr;
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

StringHash::Entry* StringHash::insert(const char* text) {
  unsigned bucket = hash(text);
  if (!buckets_[bucket]) ++occupied_;
  if (Entry* found = search(bucket, text)) return found;
  Entry* e = new Entry{store(text), ++count_, buckets_[bucket]};
  buckets_[bucket] = e;
  return e;
}

StringHash::Entry* StringHash::find(const char* text) { return search(hash(text), text); }

SymbolTable::SymbolTable() : hash_(kBuckets), texts_(kChunkSize, false) {}

int SymbolTable::add(const char* text, bool* was_new) {
  StringHash::Entry* e = hash_.insert(text);
  *was_new = e->number > count_;
  if (*was_new) {
    count_ = e->number;
    *texts_.chunk_at(count_ - 1) = e->text;
  }
  return e->number;
}

int SymbolTable::intern(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  bool was_new;
  return add(text.c_str(), &was_new);
}

int SymbolTable::intern_new(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  bool was_new;
  *number = add(text.c_str(), &was_new);
  return was_new ? 0 : 1;
}

int SymbolTable::find(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  StringHash::Entry* e = hash_.find(text.c_str());
  return e ? e->number : 0;
}

int SymbolTable::find_check(int* number, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  StringHash::Entry* e = hash_.find(text.c_str());
  if (!e) return 0;
  *number = e->number;
  return 1;
}

const char* SymbolTable::text(int number) const {
  if (number < 1 || number > count_)
    internal_error("file 'string_table':\nSymbolTable::text : no string number %d\n", number);
  return *texts_.chunk_at(number - 1);
}

void SymbolTable::print() {
  for (int n = 1; n <= count_; ++n) printf("symbol[%3d]= \"%s\"\n", n, text(n));
}

void SymbolTable::print_stats(FILE* stream) {
  fprintf(stream, "hash size  : %5d\n", hash_.size());
  fprintf(stream, "occupied   : %5d\n", hash_.occupied());
  fprintf(stream, "coll max   : %5d\n", hash_.coll_max());
  fprintf(stream, "nb strings : %5d\n", hash_.count());
}
