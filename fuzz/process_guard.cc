#include "fuzz/process_guard.h"

#include <link.h>
#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <vector>

extern "C" {
[[noreturn]] void __real_exit(int status);
FILE* __real_fopen(const char* path, const char* mode);
FILE* __real_tmpfile();
int __real_fclose(FILE* stream);
}

namespace {

// The glibc declaration of exit says it never throws, so the compiler
// leaves no unwinding path through its callers: the guard leaves a run
// with longjmp instead, skipping destructors exactly as a real exit does.
// What the process would have left to the system, its heap and its open
// files, is then released here; a run that returns is released the same
// way, since the core frees little by design.
//
// Process-wide containers of the core (the engine's work stacks) keep
// their storage from one run to the next: a run's block still referenced
// from static storage, directly or through other such blocks, is kept, and
// checked again after every later run, since a stray copy of its address
// (a comparison the fuzzer recorded) may be all that held it.

// Every block of the global operator new carries this header and sits in
// one circular list, newest first; the blocks of the current run are the
// ones in front of its mark. Headers are poisoned, so that a read just
// before a block is still reported; only the functions marked below touch
// them.
#define GUARD_ONLY __attribute__((no_sanitize("address", "undefined")))

struct alignas(16) Block {
  Block* prev;
  Block* next;
  std::size_t size;
};

Block all_blocks = {&all_blocks, &all_blocks, 0};
Block run_mark;
// Blocks of earlier runs that static storage still referenced.
Block kept_blocks = {&kept_blocks, &kept_blocks, 0};
// libFuzzer's helper threads may allocate too.
std::mutex blocks_lock;

GUARD_ONLY void link_front(Block* b, Block* list = &all_blocks) {
  b->prev = list;
  b->next = list->next;
  list->next->prev = b;
  list->next = b;
}

GUARD_ONLY void unlink(Block* b) {
  b->prev->next = b->next;
  b->next->prev = b->prev;
}

GUARD_ONLY std::uintptr_t payload(const Block* b) { return reinterpret_cast<std::uintptr_t>(b + 1); }

GUARD_ONLY void* allocate(std::size_t size) noexcept {
  auto* b = static_cast<Block*>(std::malloc(sizeof(Block) + size));
  if (!b) return nullptr;
  b->size = size;
  {
    std::lock_guard<std::mutex> hold(blocks_lock);
    link_front(b);
  }
  ASAN_POISON_MEMORY_REGION(b, sizeof(Block));
  return b + 1;
}

GUARD_ONLY void release(void* p) noexcept {
  if (!p) return;
  Block* b = static_cast<Block*>(p) - 1;
  {
    std::lock_guard<std::mutex> hold(blocks_lock);
    unlink(b);
  }
  ASAN_UNPOISON_MEMORY_REGION(b, sizeof(Block));
  std::free(b);
}

void* allocate_or_throw(std::size_t size) {
  void* p = allocate(size);
  if (!p) throw std::bad_alloc();
  return p;
}

// Over-aligned blocks are not used by the core: they are served untracked.
void* allocate_aligned(std::size_t size, std::align_val_t align) noexcept {
  const auto a = static_cast<std::size_t>(align);
  return std::aligned_alloc(a, (size + a - 1) / a * a);
}

// The guard's own bookkeeping must not allocate through operator new,
// which would make it part of the run.
template <typename T>
struct MallocAllocator {
  using value_type = T;
  MallocAllocator() = default;
  template <typename U>
  MallocAllocator(const MallocAllocator<U>&) {}
  T* allocate(std::size_t n) {
    if (void* p = std::malloc(n * sizeof(T))) return static_cast<T*>(p);
    throw std::bad_alloc();
  }
  void deallocate(T* p, std::size_t) { std::free(p); }
  bool operator==(const MallocAllocator&) const { return true; }
};

template <typename T>
using MallocVector = std::vector<T, MallocAllocator<T>>;

// The run's blocks by address; `kept` marks those reachable from static
// storage.
struct RunBlocks {
  MallocVector<Block*> blocks;
  MallocVector<char> kept;
  MallocVector<Block*> to_scan;

  // The block whose payload holds `word`, counting one past its end as a
  // vector's end pointer does, or -1.
  GUARD_ONLY long find(std::uintptr_t word) const {
    auto it = std::upper_bound(blocks.begin(), blocks.end(), word,
                               [](std::uintptr_t w, const Block* b) { return w < payload(b); });
    if (it == blocks.begin()) return -1;
    --it;
    if (word > payload(*it) + (*it)->size) return -1;
    return it - blocks.begin();
  }

  // Static storage has the sanitizers' red zones between its objects.
  GUARD_ONLY void scan(std::uintptr_t from, std::uintptr_t to) {
    if (blocks.empty()) return;
    const std::uintptr_t low = payload(blocks.front());
    const std::uintptr_t high = payload(blocks.back()) + blocks.back()->size;
    for (std::uintptr_t at = (from + 7) & ~std::uintptr_t{7}; at + 8 <= to; at += 8) {
      const std::uintptr_t word = *reinterpret_cast<const std::uintptr_t*>(at);
      if (word < low || word > high) continue;
      const long i = find(word);
      if (i < 0 || kept[i]) continue;
      kept[i] = 1;
      to_scan.push_back(blocks[i]);
    }
  }
};

// The guard's own list heads point into the run: they are no roots.
void scan_segment(RunBlocks& run, std::uintptr_t from, std::uintptr_t to) {
  struct Hole {
    std::uintptr_t at;
    std::size_t size;
  };
  Hole holes[] = {{reinterpret_cast<std::uintptr_t>(&all_blocks), sizeof all_blocks},
                  {reinterpret_cast<std::uintptr_t>(&run_mark), sizeof run_mark},
                  {reinterpret_cast<std::uintptr_t>(&kept_blocks), sizeof kept_blocks}};
  std::sort(std::begin(holes), std::end(holes),
            [](const Hole& a, const Hole& b) { return a.at < b.at; });
  std::uintptr_t at = from;
  for (const Hole& h : holes) {
    if (h.at >= at && h.at + h.size <= to) {
      run.scan(at, h.at);
      at = h.at + h.size;
    }
  }
  run.scan(at, to);
}

int scan_object(dl_phdr_info* info, size_t, void* data) {
  auto& run = *static_cast<RunBlocks*>(data);
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& ph = info->dlpi_phdr[i];
    if (ph.p_type != PT_LOAD || !(ph.p_flags & PF_W)) continue;
    const std::uintptr_t start = info->dlpi_addr + ph.p_vaddr;
    scan_segment(run, start, start + ph.p_memsz);
  }
  return 0;
}

// Frees the blocks of the run and the kept ones, but those reachable from
// static storage, which are kept.
GUARD_ONLY void free_run_blocks() {
  RunBlocks run;
  {
    std::lock_guard<std::mutex> hold(blocks_lock);
    for (Block* b = all_blocks.next; b != &run_mark; b = b->next) run.blocks.push_back(b);
    for (Block* b = kept_blocks.next; b != &kept_blocks; b = b->next) run.blocks.push_back(b);
    // Every candidate leaves its list; the kept ones are relinked below.
    all_blocks.next = run_mark.next;
    run_mark.next->prev = &all_blocks;
    kept_blocks.next = kept_blocks.prev = &kept_blocks;
  }
  std::sort(run.blocks.begin(), run.blocks.end());
  run.kept.assign(run.blocks.size(), 0);
  dl_iterate_phdr(scan_object, &run);
  while (!run.to_scan.empty()) {
    const Block* b = run.to_scan.back();
    run.to_scan.pop_back();
    run.scan(payload(b), payload(b) + b->size);
  }
  std::lock_guard<std::mutex> hold(blocks_lock);
  for (std::size_t i = 0; i < run.blocks.size(); ++i) {
    if (run.kept[i]) {
      link_front(run.blocks[i], &kept_blocks);
    } else {
      ASAN_UNPOISON_MEMORY_REGION(run.blocks[i], sizeof(Block));
      std::free(run.blocks[i]);
    }
  }
}

// The files the run opened and has not closed.
std::array<FILE*, 64> run_files;
std::size_t n_run_files = 0;

bool in_run = false;
std::jmp_buf run_exit;
int exit_status = 0;

void close_run_files() {
  while (n_run_files > 0) __real_fclose(run_files[--n_run_files]);
}

// A run holding more files than that keeps the rest open.
FILE* track(FILE* f) {
  if (f && in_run && n_run_files < run_files.size()) run_files[n_run_files++] = f;
  return f;
}

}  // namespace

extern "C" {

void __wrap_exit(int status) {
  if (!in_run) __real_exit(status);
  exit_status = status;
  std::longjmp(run_exit, 1);
}

FILE* __wrap_fopen(const char* path, const char* mode) { return track(__real_fopen(path, mode)); }

FILE* __wrap_tmpfile() { return track(__real_tmpfile()); }

int __wrap_fclose(FILE* stream) {
  for (std::size_t i = 0; i < n_run_files; ++i) {
    if (run_files[i] == stream) run_files[i] = run_files[--n_run_files];
  }
  return __real_fclose(stream);
}

}  // extern "C"

namespace fuzz {

int run_guarded(void (*body)(void* arg), void* arg) {
  {
    std::lock_guard<std::mutex> hold(blocks_lock);
    link_front(&run_mark);
  }
  in_run = true;
  int status = -1;
  // Only statics are written before the jump, so no local needs volatile.
  if (setjmp(run_exit) == 0) {
    body(arg);
  } else {
    status = exit_status;
  }
  in_run = false;
  close_run_files();
  free_run_blocks();
  return status;
}

}  // namespace fuzz

void* operator new(std::size_t size) { return allocate_or_throw(size); }
void* operator new[](std::size_t size) { return allocate_or_throw(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* p) noexcept { release(p); }
void operator delete[](void* p) noexcept { release(p); }
void operator delete(void* p, std::size_t) noexcept { release(p); }
void operator delete[](void* p, std::size_t) noexcept { release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { release(p); }

void* operator new(std::size_t size, std::align_val_t align) {
  void* p = allocate_aligned(size, align);
  if (!p) throw std::bad_alloc();
  return p;
}
void* operator new[](std::size_t size, std::align_val_t align) { return operator new(size, align); }
void* operator new(std::size_t size, std::align_val_t align, const std::nothrow_t&) noexcept {
  return allocate_aligned(size, align);
}
void* operator new[](std::size_t size, std::align_val_t align, const std::nothrow_t&) noexcept {
  return allocate_aligned(size, align);
}
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept { std::free(p); }
