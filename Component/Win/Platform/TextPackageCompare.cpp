// The comparisons of the text package, which are made by the platform.
#include <windows.h>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSTextPackage {

namespace {

TTextOrder CompareWithFlags(const TString& a, const TString& b, DWORD flags) {
  const int result = ::CompareStringW(LOCALE_USER_DEFAULT, flags, reinterpret_cast<const wchar_t*>(a.data()),
                                      static_cast<int>(a.size()), reinterpret_cast<const wchar_t*>(b.data()),
                                      static_cast<int>(b.size()));
  switch (result) {
    case CSTR_LESS_THAN:
      return kTextLess;
    case CSTR_EQUAL:
      return kTextEqual;
    case CSTR_GREATER_THAN:
      return kTextGreater;
  }
  MORVANE_THROW(std::exception());
}

}  // namespace

TTextOrder CompareText(const TString& a, const TString& b) {
  return CompareWithFlags(a, b, NORM_IGNOREWIDTH);
}

TTextOrder CompareTextIgnoringCase(const TString& a, const TString& b) {
  return CompareWithFlags(a, b, NORM_IGNOREWIDTH | NORM_IGNORECASE | SORT_STRINGSORT);
}

}  // namespace NSTextPackage
