// The floors: the same data in the barest structure that could hold it.

#ifndef VORLANE_BENCH_FLOOR_H
#define VORLANE_BENCH_FLOOR_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace floors {

/// Hands out storage from chunks of the size that the pools use too, and never takes any back.
class Bump {
 public:
  ~Bump() { release(); }
  void* alloc(std::size_t size) {
    if (_left < size) refill();
    void* block = _next;
    _next += size;
    _left -= size;
    return block;
  }
  template <class T>
  T* make(const T& value) {
    return new (alloc(sizeof(T))) T(value);
  }
  void release() {
    for (void* chunk : _chunks) std::free(chunk);  // NOLINT
    _chunks.clear();
    _left = 0;
  }

 private:
  static constexpr std::size_t ChunkBytes = 4000;
  void refill() {
    _next = static_cast<char*>(std::malloc(ChunkBytes));  // NOLINT
    _left = ChunkBytes;
    _chunks.push_back(_next);
  }
  std::vector<void*> _chunks;
  char* _next = nullptr;
  std::size_t _left = 0;
};

struct Variable {
  double lower;
  double upper;
  struct Term* mark;
  std::int64_t id;
  std::int64_t type;
};

struct Term {
  Variable* variable;
  Term* next;
  double coef;
};

struct Row {
  Term* head;
  Term* tail;
  double lower;
  double upper;
};

/// Scattered indices below n, the same in each run.
class Scatter {
 public:
  explicit Scatter(std::uint64_t n) : _n(n) {}
  std::size_t next() {
    _state = _state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>((_state >> 33) % _n);
  }

 private:
  std::uint64_t _n;
  std::uint64_t _state = 42;
};

}  // namespace floors

#endif
