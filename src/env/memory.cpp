// The pools: slabs from the system, blocks from slabs, cells of one size class from blocks.

#include "vorlane/env/memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace zyl::detail {

bool (*failAllocation)() = nullptr;

void* allocateGlobal(std::size_t size) {
  if (ZYL_UNLIKELY(failAllocation != nullptr) && failAllocation()) ZylRaiseMemory();
  // No object is larger, and memory tools end the process on such requests.
  if (size > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max())) ZylRaiseMemory();
  void* block = ::operator new(size, std::nothrow);
  if (block == nullptr) ZylRaiseMemory();
  return block;
}

void releaseGlobal(void* block) noexcept { ::operator delete(block); }

namespace {

// Pools below this take block by block.
constexpr std::size_t SlabsFrom = std::size_t{1} << 20;
constexpr std::size_t LargestSlab = std::size_t{1} << 26;

}  // namespace

// Window 1 has another place: nothing is found, null neither.
constinit const std::uintptr_t SlabSource::NoWindows[Windows] = {1};

SlabSource::~SlabSource() {
  while (_slabs != nullptr) {
    Slab* slab = _slabs;
    ZYL_UNPOISON(slab, slab->size);
    _slabs = slab->next;
    ::operator delete(slab, std::align_val_t(std::size_t{1} << WindowBits));
  }
}

void* SlabSource::cut(std::size_t bytes) noexcept {
  // From the top, as cells are handed out from the end of a block: what is made one after the other
  // lies in one descending run, which processors fetch ahead. The first cell, behind the link,
  // begins a cache line.
  _top -= bytes;
  _top -= (reinterpret_cast<std::uintptr_t>(_top) + sizeof(void*)) % CacheLine;
  if (_top < _backed) back();
  ZYL_UNPOISON(_top, bytes);
  _asked += bytes;
  return _top;
}

// Asks for many pages at once: a fault for each costs more than to state what goes on it. Where the
// system does not know the call, they come one by one as they are touched.
void SlabSource::back() noexcept {
  constexpr std::size_t Step = std::size_t{256} << 10;
  auto* slab = reinterpret_cast<char*>(_slabs);
  const auto offset = static_cast<std::size_t>(_backed - slab);
  _backed = offset > Step ? _backed - Step : slab;
#ifdef MADV_POPULATE_WRITE
  madvise(_backed, offset < Step ? offset : Step, MADV_POPULATE_WRITE);
#endif
}

void* SlabSource::takeSlow(std::size_t bytes) noexcept {
  if (_asked + bytes > SlabsFrom && addSlab()) return cut(bytes);
  _asked += bytes;
  return nullptr;
}

bool SlabSource::addSlab() noexcept {
  constexpr std::size_t Window = std::size_t{1} << WindowBits;
  // An eighth of what there is: few slabs, and never much more than is needed. What is not touched
  // yet costs no memory, only addresses.
  const std::size_t size =
      std::clamp((_asked / 8 + Window - 1) / Window * Window, Window, LargestSlab);
  if (ZYL_UNLIKELY(failAllocation != nullptr) && failAllocation()) return false;
  void* memory = ::operator new(size, std::align_val_t(Window), std::nothrow);
  if (memory == nullptr) return false;
  _slabs = new (memory) Slab{_slabs, size};
  _bottom = static_cast<char*>(memory) + sizeof(Slab);
  _top = static_cast<char*>(memory) + size;
  _backed = _top;
  auto* windows = const_cast<std::uintptr_t*>(_windows.load(std::memory_order_relaxed));
  if (windows == NoWindows) {
    // The first slab carries the table.
    std::memcpy(_bottom, NoWindows, sizeof(NoWindows));
    windows = reinterpret_cast<std::uintptr_t*>(_bottom);
    _windows.store(windows, std::memory_order_release);
    _bottom += sizeof(NoWindows);
  }
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(memory) >> WindowBits;
  for (std::uintptr_t i = 0; i < size >> WindowBits; ++i)
    __atomic_store_n(&windows[(first + i) % Windows], first + i, __ATOMIC_RELAXED);
  ZYL_POISON(_bottom, static_cast<std::size_t>(_top - _bottom));
  return true;
}

namespace {

constexpr long WordBytes = 8;
constexpr long BlockWords = 500;
// Cells above this get a block each.
constexpr long LargestSharedCell = BlockWords * WordBytes;

long wordsOf(long bytes) { return (bytes + WordBytes - 1) / WordBytes; }

long readLimit() {
  const char* text = std::getenv("ZYL_MEMORY_MANAGER_LIMIT");
  if (text == nullptr) return 4001;
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

}  // namespace
}  // namespace zyl::detail

using zyl::detail::allocateGlobal;
using zyl::detail::releaseGlobal;

void* ZylAllocationList::alloc(long size) {
  if (size < 0) ZylRaiseMemory();
  auto* cell = static_cast<Cell*>(allocateGlobal(sizeof(Cell) + static_cast<std::size_t>(size)));
  *cell = Cell{size, nullptr, _head, this};
  if (_head != nullptr) _head->prev = cell;
  _head = cell;
  _memory += _size >= 0 ? _size : size;
  return cell + 1;
}

void ZylAllocationList::free(Cell* cell) noexcept {
  if (cell->list != this) {
    // An object whose constructor raised comes back with the size of the base that knows its owner.
    cell->list->free(cell);
    return;
  }
  if (cell->next != nullptr) cell->next->prev = cell->prev;
  if (cell->prev != nullptr) {
    cell->prev->next = cell->next;
  } else {
    _head = cell->next;
  }
  _memory -= _size >= 0 ? _size : cell->size;
  releaseGlobal(cell);
}

void ZylAllocationList::free(void* block) noexcept { free(static_cast<Cell*>(block) - 1); }

bool ZylAllocationList::holds(const void* block) const noexcept {
  const Cell* cell = _head;
  while (cell != nullptr && cell + 1 != block) cell = cell->next;
  return cell != nullptr;
}

void ZylAllocationList::end() noexcept {
  while (_head != nullptr) {
    Cell* next = _head->next;
    releaseGlobal(_head);
    _head = next;
  }
  _memory = 0;
}

ZylFixedSizeAllocatorI::~ZylFixedSizeAllocatorI() {
  while (_blocks != nullptr) {
    ZYL_UNPOISON(_blocks, sizeof(void*));
    void* next = *static_cast<void**>(_blocks);
    releaseGlobal(_blocks);
    _blocks = next;
  }
  if (_list != nullptr) _list->end();
  delete _list;
}

void* ZylFixedSizeAllocatorI::allocSlow(ZylMemory* memory) {
  void* cell = allocateBlock(memory);
  if (_useIt == 0) _total += _size;
  _inUse += _size;
  return cell;
}

void ZylFixedSizeAllocatorI::freeToList(void* cell) noexcept {
  if (_mixed && !_list->holds(cell)) {
    adopt(cell);
  } else {
    _list->free(cell);
  }
  _inUse -= _size;
}

void ZylFixedSizeAllocatorI::adopt(void* cell) noexcept {
  void*& chain = _useIt != 0 ? _free : _kept;
  *static_cast<void**>(cell) = chain;
  chain = cell;
  ZYL_POISON(static_cast<char*>(cell), static_cast<std::size_t>(_size));
}

void* ZylFixedSizeAllocatorI::allocateBlock(ZylMemory* memory) {
  if (_useIt == 0) return _list->alloc(_size);

  using zyl::detail::wordsOf;
  const long words =
      _size > zyl::detail::LargestSharedCell ? wordsOf(_size) : zyl::detail::BlockWords;
  const long bytes = (words + 1) * zyl::detail::WordBytes;
  void** block = nullptr;
  if (memory != nullptr && words == zyl::detail::BlockWords) {
    block = static_cast<void**>(memory->_slabs.take(static_cast<std::size_t>(bytes)));
  }
  if (block == nullptr) {
    block = static_cast<void**>(allocateGlobal(static_cast<std::size_t>(bytes)));
    *block = _blocks;
    _blocks = block;
  }
  _total += bytes;

  void** cell = block + 1;
  if (_size > zyl::detail::LargestSharedCell) return cell;

  const long cellWords = wordsOf(_size);
  long rest = words;
  void** last = nullptr;
  while (rest > cellWords) {
    if (last != nullptr) {
      *last = _free;
      _free = last;
      ZYL_POISON(last, static_cast<std::size_t>(_size));
    }
    last = cell;
    cell += cellWords;
    rest -= cellWords;
  }
  // The tail never goes to this class itself, a deliberate effect of taking the class below.
  while (memory != nullptr && memory->getIndex(rest * zyl::detail::WordBytes) > 0) {
    ZylFixedSizeAllocatorI* smaller =
        memory->getClass(memory->getIndex(rest * zyl::detail::WordBytes) - 1);
    smaller->adopt(cell);
    cell += wordsOf(smaller->_size);
    rest -= wordsOf(smaller->_size);
  }
  return last;
}

void ZylFixedSizeAllocatorI::setUseIt(long useIt) {
  if (useIt == 0 && _list == nullptr) {
    if (ZYL_UNLIKELY(zyl::detail::failAllocation != nullptr) && zyl::detail::failAllocation()) {
      ZylRaiseMemory();
    }
    _list = new (std::nothrow) ZylAllocationList(_size);
    if (_list == nullptr) ZylRaiseMemory();
  }
  if ((useIt == 0) != (_useIt == 0)) std::swap(_free, _kept);
  if (useIt == 0 && _useIt != 0 && _inUse != 0) _mixed = true;
  _useIt = useIt;
}

ZylMemory::ZylMemory(long useIt)
    : _classes{}, _largeList(nullptr), _limit(zyl::detail::readLimit()), _classCount(0),
      _pooledSizes(static_cast<unsigned long>(std::max(_limit, 0L))) {
  try {
    _largeList = new (allocateGlobal(sizeof(ZylAllocationList))) ZylAllocationList();
    long size = 0;
    while (_classCount < 8 || (_limit >= 65 && _classCount < MaxClasses && size < _limit)) {
      size = _classCount < 8 ? (_classCount + 1) * 8 : size * 2;
      void* block = allocateGlobal(sizeof(ZylFixedSizeAllocatorI));
      _classes[_classCount++] = new (block) ZylFixedSizeAllocatorI(size);
    }
    setUseIt(useIt);
  } catch (const ZylMemoryException&) {
    for (long i = 0; i < _classCount; ++i) delete _classes[i];
    delete _largeList;
    throw;
  }
}

ZylMemory::~ZylMemory() {
  for (long i = 0; i < _classCount; ++i) delete _classes[i];
  _largeList->end();
  delete _largeList;
}

long ZylMemory::getIndex(long size) const {
  const long index = ClassOf(size);
  if (index >= _classCount) ZylRaiseMemory();
  return index;
}

void ZylMemory::setUseIt(long useIt) const {
  for (long i = 0; i < _classCount; ++i) _classes[i]->setUseIt(useIt);
}

long ZylMemory::getMemoryUsage() const noexcept {
  long sum = _largeList->getMemoryUsage();
  for (long i = 0; i < _classCount; ++i) sum += _classes[i]->getMemoryUsage();
  return sum;
}

long ZylMemory::getTotalMemoryUsage() const noexcept {
  long sum = _largeList->getMemoryUsage();
  for (long i = 0; i < _classCount; ++i) sum += _classes[i]->getTotalMemoryUsage();
  return sum;
}
