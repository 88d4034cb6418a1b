#include "Component/Win/Window/WinWindowClass.h"

#include <algorithm>
#include <boost/make_shared.hpp>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

// Process-wide, since the system registers window classes for the process. Never destroyed: a class that a
// window still uses at the end of the process would report a failed assertion.
std::vector<boost::shared_ptr<CWindowClass>>& gWindowClasses =
    *new std::vector<boost::shared_ptr<CWindowClass>>();

TString WindowClassName(TWindowKind kind) {
  switch (kind) {
    case kWindowKindDocument:
      return u"SkerryDocumentWindow";
    case kWindowKindModelessDialog:
      return u"SkerryModelessDialog";
    case kWindowKindModalDialog:
      return u"SkerryModalDialog";
    case kWindowKindAlertBox:
      return u"SkerryAlertBox";
    case kWindowKindFloating:
      return u"SkerryFloatingWindow";
  }
  MORVANE_UNREACHED();
  return TString();
}

bool WindowClassHasIcon(TWindowKind kind) {
  switch (kind) {
    case kWindowKindDocument:
    case kWindowKindModelessDialog:
    case kWindowKindModalDialog:
    case kWindowKindFloating:
      return true;
    case kWindowKindAlertBox:
      return false;
  }
  MORVANE_UNREACHED();
  return false;
}

// --- CWindowClass

CWindowClass::CWindowClass(const TString& name, WNDPROC procedure, HICON icon) : fName(name), fRefCount(0) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = icon;  // the system finds the small one in the same resource
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = WinText(fName);
  if (!RegisterClassExW(&windowClass)) MORVANE_CHECK_LAST_ERROR();
  fRefCount = 1;
}

CWindowClass::~CWindowClass() {
  MORVANE_ASSERT(0==fRefCount);
  const BOOL ucResult = UnregisterClassW(WinText(fName), GetModuleHandleW(nullptr));
  MORVANE_ASSERT(ucResult);
}

// --- CWindowClassRef

CWindowClassRef::CWindowClassRef(const TString& name, WNDPROC procedure, HICON icon) {
  for (const auto& windowClass : gWindowClasses) {
    if (windowClass->fName != name) continue;
    ++windowClass->fRefCount;
    fWindowClass = windowClass;
    return;
  }
  gWindowClasses.reserve(gWindowClasses.size() + 1);
  fWindowClass = boost::make_shared<CWindowClass>(name, procedure, icon);
  gWindowClasses.push_back(fWindowClass);
}

CWindowClassRef::~CWindowClassRef() {
  if (--fWindowClass->fRefCount > 0) return;
  const auto it = std::find(gWindowClasses.begin(), gWindowClasses.end(), fWindowClass);
  if (it != gWindowClasses.end()) gWindowClasses.erase(it);
}

}  // namespace NSMorvane
