// Factories that make a behaviour of a given type.
#pragma once

#include <tuple>

#include "Common.h"

namespace NSMorvane {

// A factory that makes a TBehavior with the new view or window as its first argument and whatever else it was
// given:
//   CViewFactory<CGridView, CDocument&> factory(document);
// What the behaviour's constructor throws becomes an error code, as in Guarded.
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

template <class TBehavior, class... TArguments>
class CViewFactory : public IViewBehaviorFactory {
 public:
  explicit CViewFactory(TArguments... arguments) : fArguments(static_cast<TArguments>(arguments)...) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& object, TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
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
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
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
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
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
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CFloatingWindowFactory : public IFloatingWindowBehaviorFactory {
 public:
  explicit CFloatingWindowFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IFloatingWindowBehavior* IFloatingWindowBehaviorFactory_CreateBehavior(IFloatingWindow& object,
                                                                         TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

}  // namespace NSMorvane
