// Factories that make a behaviour of a given type, and windows with such a behaviour in one call.
#pragma once

#include <tuple>
#include <utility>

#include "Placement.h"

namespace NSMorvane {

// Makes a TBehavior for a factory. The constructor gets the new view or window, and then whatever else the
// factory was given:
//   CViewFactory<CGridView, CDocument&> factory(document);
// An exception from the constructor becomes an error code, as in Guarded.
template <class TBehavior, class TInterface, class... TArguments>
TBehavior* MakeBehavior(TInterface& object, TError& outError, const std::tuple<TArguments...>& arguments) {
  TBehavior* behavior = nullptr;
  outError = Guarded([&] {
    behavior = std::apply(
        [&](auto&&... argument) { return new TBehavior(object, static_cast<TArguments>(argument)...); },
        arguments);
    return TError{kOK};
  });
  return behavior;
}

// The same for a window, which is then placed for the first time.
template <class TBehavior, class TKind, class... TArguments>
TBehavior* MakeWindowBehavior(TKind& window, TError& outError, const std::tuple<TArguments...>& arguments,
                              IModalOwner* owner = nullptr) {
  typename TWindowTraits<TKind>::TState state;
  const bool isKnown = (window.*TWindowTraits<TKind>::kGetState)(state) == kOK;
  TBehavior* const behavior = MakeBehavior<TBehavior>(window, outError, arguments);
  if (behavior && isKnown) GiveFirstPlace<TBehavior>(window, ShownRect(state), owner);
  return behavior;
}

template <class TBehavior, class... TArguments>
class CViewFactory : public IViewBehaviorFactory {
 public:
  explicit CViewFactory(TArguments... arguments) : fArguments(static_cast<TArguments>(arguments)...) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& object, TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // The behaviour that was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CDocumentWindowFactory : public IDocumentWindowBehaviorFactory {
 public:
  explicit CDocumentWindowFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IDocumentWindowBehavior* IDocumentWindowBehaviorFactory_CreateBehavior(IDocumentWindow& object,
                                                                         TError& outError) override {
    fMade = MakeWindowBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // The behaviour that was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CModelessDialogFactory : public IModelessDialogBehaviorFactory {
 public:
  explicit CModelessDialogFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IModelessDialogBehavior* IModelessDialogBehaviorFactory_CreateBehavior(IModelessDialog& object,
                                                                         TError& outError) override {
    fMade = MakeWindowBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // The behaviour that was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CModalDialogFactory : public IModalDialogBehaviorFactory {
 public:
  explicit CModalDialogFactory(TArguments... arguments) : fArguments(static_cast<TArguments>(arguments)...) {}
  IModalDialogBehavior* IModalDialogBehaviorFactory_CreateBehavior(IModalDialog& object,
                                                                   TError& outError) override {
    fMade = MakeWindowBehavior<TBehavior>(object, outError, fArguments, fOwner);
    return fMade;
  }
  // The owner that IMorvane_CreateModalDialog gets; the dialog appears over it. Without this call it appears
  // over the active window.
  void SetOwner(IModalOwner* owner) { fOwner = owner; }
  // The behaviour that was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
  IModalOwner* fOwner = nullptr;
};

template <class TBehavior, class... TArguments>
class CFloatingWindowFactory : public IFloatingWindowBehaviorFactory {
 public:
  explicit CFloatingWindowFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IFloatingWindowBehavior* IFloatingWindowBehaviorFactory_CreateBehavior(IFloatingWindow& object,
                                                                         TError& outError) override {
    fMade = MakeWindowBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // The behaviour that was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

// --- Windows in one call
//
// These functions make and show a window whose behaviour is a TBehavior, made from the window and
// `arguments`. The window lives until it is released, usually by its behaviour.

// The window is listed in window menus.
template <class TBehavior, class... TArguments>
TError CreateDocumentWindow(IMorvane& morvane, TStyleFlags style, TArguments&&... arguments) {
  const CRootObjectScope scope(morvane);
  CDocumentWindowFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  TError error = kOK;
  morvane.IMorvane_CreateDocumentWindow(factory, style, 1, error);
  return error;
}
template <class TBehavior, class... TArguments>
TError CreateModelessDialog(IMorvane& morvane, TStyleFlags style, TArguments&&... arguments) {
  const CRootObjectScope scope(morvane);
  CModelessDialogFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  TError error = kOK;
  morvane.IMorvane_CreateModelessDialog(factory, style, 0, error);
  return error;
}
// Blocks `owner`, or the whole application if it is null, and returns at once.
template <class TBehavior, class... TArguments>
TError CreateModalDialog(IMorvane& morvane, IModalOwner* owner, TStyleFlags style,
                         TArguments&&... arguments) {
  const CRootObjectScope scope(morvane);
  CModalDialogFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  factory.SetOwner(owner);
  TError error = kOK;
  morvane.IMorvane_CreateModalDialog(factory, owner, 0, style, error);
  return error;
}
// Blocks the whole application, and returns when the dialog has gone.
template <class TBehavior, class... TArguments>
TError RunModalDialog(IMorvane& morvane, TStyleFlags style, TArguments&&... arguments) {
  const CRootObjectScope scope(morvane);
  CModalDialogFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  TError error = kOK;
  morvane.IMorvane_CreateModalDialog(factory, nullptr, 1, style, error);
  return error;
}
template <class TBehavior, class... TArguments>
TError CreateFloatingWindow(IMorvane& morvane, TStyleFlags style, TArguments&&... arguments) {
  const CRootObjectScope scope(morvane);
  CFloatingWindowFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  TError error = kOK;
  morvane.IMorvane_CreateFloatingWindow(factory, style, error);
  return error;
}

}  // namespace NSMorvane
