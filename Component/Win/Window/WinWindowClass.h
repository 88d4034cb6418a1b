// The kinds of windows, and the native window class of each.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

using NSTextPackage::TString;

enum TWindowKind : std::uint32_t {
  kWindowKindDocument = 0,
  kWindowKindModelessDialog = 1,
  kWindowKindModalDialog = 2,
  kWindowKindAlertBox = 3,
  kWindowKindFloating = 4
};

// The name of the native class of a kind. A number that is no kind is reported and has the empty name.
TString WindowClassName(TWindowKind kind);
// Whether the class shows the application icon.
bool WindowClassHasIcon(TWindowKind kind);

// One registered native class, from RegisterClassExW to UnregisterClassW.
class CWindowClass : CNotCopied {
 public:
  CWindowClass(const TString& name, WNDPROC procedure, HICON icon);
  ~CWindowClass();

  const TString& GetName() const { return fName; }

 private:
  friend class CWindowClassRef;

  TString fName;
  std::int32_t fRefCount;  // the number of CWindowClassRef objects
};

// A counted reference to the class of a name: the first one registers the class, the last one unregisters it.
// Procedure and icon are used by the first one only.
class CWindowClassRef : CNotCopied {
 public:
  CWindowClassRef(const TString& name, WNDPROC procedure, HICON icon);
  ~CWindowClassRef();

  const TString& GetName() const { return fWindowClass->GetName(); }
  // From here on the class stays registered: a native window that the system is destroying uses it longer
  // than the last reference.
  void StayRegistered() const { ++fWindowClass->fRefCount; }

 private:
  boost::shared_ptr<CWindowClass> fWindowClass;
};

// All live classes.
extern std::vector<boost::shared_ptr<CWindowClass>>& gWindowClasses;

}  // namespace NSMorvane
