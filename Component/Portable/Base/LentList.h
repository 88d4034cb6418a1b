// Lists that are needed for a moment, and again with every event. Their memory is kept for the next time.
#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// Keeps the memory of several lists, since one may be in use while the next is needed.
template <class T>
class CListMemory : CNotCopied {
 public:
  // Empty.
  std::vector<T> Take() { return fCount > 0 ? std::move(fKept[--fCount]) : std::vector<T>(); }
  void GiveBack(std::vector<T>&& list) {
    // What is in the list may need another one while it ends.
    list.clear();
    if (fCount < fKept.size()) fKept[fCount++] = std::move(list);
  }

 private:
  std::array<std::vector<T>, 6> fKept;
  std::size_t fCount = 0;
};

// An empty list at first. The memory that it is taken from must outlive it.
template <class T>
class CLentList : CNotCopied {
 public:
  explicit CLentList(CListMemory<T>& memory) : fMemory(memory), fList(memory.Take()) {}
  ~CLentList() { fMemory.GiveBack(std::move(fList)); }

  std::vector<T>& operator*() { return fList; }
  std::vector<T>* operator->() { return &fList; }

 private:
  CListMemory<T>& fMemory;
  std::vector<T> fList;
};

}  // namespace NSMorvane
