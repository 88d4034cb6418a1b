// The three functions that the shared library exports.
#include <windows.h>

#include <cstring>

#include "Component/Portable/MorvaneImplUtils.h"

namespace NSMorvane {
class IMorvane;
}

extern "C" void* Morvane_New(std::size_t size) { return ::operator new(size); }

extern "C" void Morvane_Delete(void* block) { ::operator delete(block); }

extern "C" NSMorvane::IMorvane* Morvane_Create(const char*, NSMorvane::TError* outError) {
  *outError = NSMorvane::kUnsupported;
  return nullptr;
}
