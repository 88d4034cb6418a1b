// What the other helpers use: failures, the root object, texts, rectangles, receivers, owning pointers.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../Morvane.h"

namespace NSMorvane {

// --- Failures
//
// No exception may cross the boundary to the library. Inside the client, exceptions may be used all the same.

// Carries an error code out of the client's own functions.
struct XFailed {
  TError fError;
};

inline void ThrowIfFailed(TError error) {
  if (error != kOK) throw XFailed{error};
}

// Calls `body`, which returns a TError, and turns an exception into one: the code of an XFailed,
// kOutOfMemoryError, or kOtherError for anything else.
//   TError IViewBehavior_Draw(IDrawTools& tools) override {
//     return Guarded([&] { ...; return kOK; });
//   }
template <class TBody>
TError Guarded(TBody&& body) {
  try {
    return body();
  } catch (const XFailed& failed) {
    return failed.fError;
  } catch (const std::bad_alloc&) {
    return kOutOfMemoryError;
  } catch (...) {
    return kOtherError;
  }
}

// --- The root object

// The root object of the program, for helpers that do not get it as an argument: the factories that place new
// windows. It is set while RunApplication runs, while a CDefaultApplication exists, and while a
// CRootObjectScope exists; otherwise it is null.
inline IMorvane*& RootObject() {
  static IMorvane* root = nullptr;
  return root;
}
class CRootObjectScope {
 public:
  explicit CRootObjectScope(IMorvane& morvane) : fBefore(std::exchange(RootObject(), &morvane)) {}
  ~CRootObjectScope() { RootObject() = fBefore; }
  CRootObjectScope(const CRootObjectScope&) = delete;
  CRootObjectScope& operator=(const CRootObjectScope&) = delete;

 private:
  IMorvane* const fBefore;
};

// --- Texts

// Copies a text into a fixed array of a record, cut to fit, always terminated:
//   CopyText(params.fProductName, u"Sketch");
template <std::size_t kSize>
void CopyText(TChar (&destination)[kSize], std::u16string_view text) {
  destination[text.copy(destination, kSize - 1)] = 0;
}

// The text in a fixed array of a record.
template <std::size_t kSize>
std::u16string TextOf(const TChar (&text)[kSize]) {
  std::size_t length = 0;
  while (length < kSize && text[length] != 0) ++length;
  return std::u16string(text, length);
}

// ASCII to UTF-16, for numbers and the like. Other bytes become '?'.
inline std::u16string AsciiText(std::string_view ascii) {
  std::u16string text;
  for (unsigned char c : ascii) text += c < 128 ? static_cast<TChar>(c) : u'?';
  return text;
}

// --- Rectangles

inline std::int32_t WidthOf(const TRect& rect) { return rect.fRight - rect.fLeft; }
inline std::int32_t HeightOf(const TRect& rect) { return rect.fBottom - rect.fTop; }

// --- Receivers

class CTextReceiver : public ITextReceiver {
 public:
  TError ITextReceiver_ReceiveText(const TChar* text) override {
    return Guarded([&] {
      fTexts.emplace_back(text);
      return TError{kOK};
    });
  }
  // The first text, or an empty one.
  std::u16string Text() const { return fTexts.empty() ? std::u16string() : fTexts.front(); }

  std::vector<std::u16string> fTexts;
};

class CVectorViewReceiver : public IViewListReceiver {
 public:
  TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) override {
    return Guarded([&] {
      fViews.assign(views, views + count);
      return TError{kOK};
    });
  }
  std::vector<IView*> fViews;
};

class CVectorWindowReceiver : public IWindowListReceiver {
 public:
  TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) override {
    return Guarded([&] {
      fWindows.assign(windows, windows + count);
      return TError{kOK};
    });
  }
  std::vector<IWindow*> fWindows;
};

// --- Owning pointers

inline void ReleaseInterface(IView* view) { view->IView_Release(); }
inline void ReleaseInterface(IDocumentWindow* window) { window->IDocumentWindow_Release(); }
inline void ReleaseInterface(IModelessDialog* dialog) { dialog->IModelessDialog_Release(); }
inline void ReleaseInterface(IModalDialog* dialog) { dialog->IModalDialog_Release(); }
inline void ReleaseInterface(IFloatingWindow* window) { window->IFloatingWindow_Release(); }

struct CReleaser {
  template <class TInterface>
  void operator()(TInterface* object) const {
    ReleaseInterface(object);
  }
};

// A view or a window that ends with its owner:
//   CReleasePtr<IView> view(morvane.IMorvane_CreateView(...));
// Views must end before their window: declare the window first.
template <class TInterface>
using CReleasePtr = std::unique_ptr<TInterface, CReleaser>;

}  // namespace NSMorvane
