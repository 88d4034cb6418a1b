// Alerts, questions and file dialogs whose answer comes through a callback.
//
//   ThrowIfFailed(ShowOpenDialog(
//       morvane, {.fOwner = owner, .fTypes = kTypes},
//       fCallbacks.Bind([this](const std::u16string& path) { return Open(path); })));
//
// Over an owner, a function returns at once, and the answer comes later. Without one, the dialog blocks the
// application, and the function returns when the answer has been given. Callbacks come on the main thread.
// Each may be empty. What a callback throws is turned into a code by Guarded.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Common.h"
#include "Files.h"

namespace NSMorvane {

// --- Callbacks

// The callbacks of an object that may have gone when they come, as the document of a file dialog may. It is a
// member of that object. Once it has ended, a callback that Bind has made does nothing and gives kOK. `body`
// returns a TError or nothing.
class CCallbackScope {
 public:
  CCallbackScope() = default;
  CCallbackScope(const CCallbackScope&) = delete;
  CCallbackScope& operator=(const CCallbackScope&) = delete;

  template <class TBody>
  auto Bind(TBody body) const {
    return [isAlive = std::weak_ptr<const int>(fIsAlive), body](const auto&... arguments) {
      using TResult = decltype(body(arguments...));
      if (!isAlive.expired()) return body(arguments...);
      if constexpr (std::is_same_v<TResult, TError>) return TError{kOK};
    };
  }

 private:
  const std::shared_ptr<const int> fIsAlive = std::make_shared<const int>();
};

// What the library calls when a dialog has been answered. Nobody owns these objects but the list, until they
// have called back. That of an alert which closes without an answer, since its owner was released, stays
// until the program ends. For the functions below; on the main thread only.
class CDialogAnswer {
 public:
  virtual ~CDialogAnswer() = default;

  // Makes an answer and has `show` open the dialog, whose code it returns.
  template <class TAnswer, class TShow>
  static TError Await(std::unique_ptr<TAnswer> made, TShow show) {
    return Guarded([&] {
      TAnswer* const answer = made.get();
      TheList().push_back(std::move(made));
      const TError error = show(answer);
      if (error != kOK) static_cast<void>(Take(answer));
      return error;
    });
  }

 protected:
  CDialogAnswer() = default;
  CDialogAnswer(const CDialogAnswer&) = delete;
  CDialogAnswer& operator=(const CDialogAnswer&) = delete;

  // Out of the list. Empty if it is not there.
  static std::unique_ptr<CDialogAnswer> Take(const CDialogAnswer* answer) {
    const auto it = std::find_if(TheList().begin(), TheList().end(),
                                 [&](const auto& other) { return other.get() == answer; });
    if (it == TheList().end()) return nullptr;
    std::unique_ptr<CDialogAnswer> taken = std::move(*it);
    TheList().erase(it);
    return taken;
  }

 private:
  static std::vector<std::unique_ptr<CDialogAnswer>>& TheList() {
    static std::vector<std::unique_ptr<CDialogAnswer>> list;
    return list;
  }
};

// --- Alerts

using TOnResponse = std::function<TError(TAlertResponse)>;

class CAlertAnswer : public IAlertBoxListener, public CDialogAnswer {
 public:
  explicit CAlertAnswer(TOnResponse onResponse) : fOnResponse(std::move(onResponse)) {}

  TError IAlertBoxListener_OnResponse(TAlertResponse response) override {
    const TError error = Guarded([&] { return fOnResponse(response); });
    if (error == kOK) static_cast<void>(Take(this));
    return error;
  }

 private:
  const TOnResponse fOnResponse;
};

// Shows an alert. If the callback returns another code than kOK, the alert stays open.
inline TError ShowAlert(IMorvane& morvane, IModalOwner* owner, const TAlertSpec& spec,
                        TOnResponse onResponse = {}) {
  const TFlag waits = owner ? 0 : 1;
  if (!onResponse) return morvane.IMorvane_CreateAlertBox(owner, waits, spec, nullptr);
  return Guarded([&] {
    return CDialogAnswer::Await(
        std::make_unique<CAlertAnswer>(std::move(onResponse)),
        [&](CAlertAnswer* answer) { return morvane.IMorvane_CreateAlertBox(owner, waits, spec, answer); });
  });
}
// Tells the user something: an alert with one button. Texts are cut at kAlertTextChars characters.
inline TError ShowMessage(IMorvane& morvane, IModalOwner* owner, TAlertKind kind, std::u16string_view message,
                          std::u16string_view details = {}, std::u16string_view button = u"OK") {
  TAlertSpec spec = {};
  spec.fButtonLayout = kAlertOneButton;
  spec.fKind = kind;
  CopyText(spec.fMessage, message);
  CopyText(spec.fDetails, details);
  CopyText(spec.fButton1, button);
  return ShowAlert(morvane, owner, spec);
}

// What to do after the question whether to save. As with alerts, the question stays open if a callback
// returns another code than kOK.
struct TSaveChangesAnswers {
  std::function<TError()> fOnSave = {};
  std::function<TError()> fOnDiscard = {};
  std::function<TError()> fOnCancel = {};
};

class CSaveChangesAnswer : public ISaveChangesBehavior, public CDialogAnswer {
 public:
  explicit CSaveChangesAnswer(TSaveChangesAnswers answers) : fAnswers(std::move(answers)) {}

  TError ISaveChangesBehavior_OnSave() override { return Answer(fAnswers.fOnSave); }
  TError ISaveChangesBehavior_OnDiscard() override { return Answer(fAnswers.fOnDiscard); }
  TError ISaveChangesBehavior_OnCancel() override { return Answer(fAnswers.fOnCancel); }

 private:
  TError Answer(const std::function<TError()>& callback) {
    const TError error = Guarded([&] { return callback ? callback() : TError{kOK}; });
    if (error == kOK) static_cast<void>(Take(this));
    return error;
  }

  const TSaveChangesAnswers fAnswers;
};

// Asks whether to save the changes of the document `name` before it is closed.
inline TError AskToSaveChanges(IMorvane& morvane, IModalOwner* owner, const std::u16string& name,
                               TCloseReason reason, TSaveChangesAnswers answers) {
  return Guarded([&] {
    return CDialogAnswer::Await(
        std::make_unique<CSaveChangesAnswer>(std::move(answers)), [&](CSaveChangesAnswer* answer) {
          return morvane.IMorvane_CreateSaveChangesDialog(answer, owner, owner ? 0 : 1, name.c_str(), reason);
        });
  });
}

// --- File dialogs

struct TFileDialog {
  IModalOwner* fOwner = nullptr;
  std::span<const TFileType> fTypes = {};
  std::uint32_t fContext = 1;   // dialogs with the same number remember folder and place together
  std::u16string fPrompt = {};  // the title; that of the system if it is empty

  const TChar* Prompt() const { return fPrompt.empty() ? nullptr : fPrompt.c_str(); }
  TFlag Waits() const { return fOwner ? 0 : 1; }
};

using TOnCancel = std::function<TError()>;
using TOnFileOpened = std::function<TError(const std::u16string& path)>;
// `type` is the index of the file type in which the user wants the file.
using TOnFileSaved = std::function<TError(const std::u16string& path, std::size_t type)>;

// What the behaviours of all file dialogs have in common: one of the callbacks is called, once, and then the
// behaviour goes.
template <class TBehavior, class TOnChosen>
class CFileAnswer : public TBehavior, public CDialogAnswer {
 public:
  CFileAnswer(TOnChosen onChosen, TOnCancel onCancel)
      : fOnChosen(std::move(onChosen)), fOnCancel(std::move(onCancel)) {}

 protected:
  template <class... TArguments>
  TError Choose(const TArguments&... arguments) {
    const std::unique_ptr<CDialogAnswer> self = Take(this);
    return Guarded([&] { return fOnChosen ? fOnChosen(arguments...) : TError{kOK}; });
  }
  TError Cancel() {
    const std::unique_ptr<CDialogAnswer> self = Take(this);
    return Guarded([&] { return fOnCancel ? fOnCancel() : TError{kOK}; });
  }

 private:
  const TOnChosen fOnChosen;
  const TOnCancel fOnCancel;
};

class COpenAnswer : public CFileAnswer<IOpenDialogBehavior, TOnFileOpened> {
 public:
  using CFileAnswer::CFileAnswer;
  TError IOpenDialogBehavior_OnPerform(const char* const* urls, std::uint32_t) override {
    return Guarded([&] { return Choose(PathOfURL(urls[0])); });
  }
  TError IOpenDialogBehavior_OnCancel() override { return Cancel(); }
};

class CSaveAnswer : public CFileAnswer<ISaveAsDialogBehavior, TOnFileSaved> {
 public:
  CSaveAnswer(std::span<const TFileType> types, TOnFileSaved onChosen, TOnCancel onCancel)
      : CFileAnswer(std::move(onChosen), std::move(onCancel)) {
    for (const TFileType& type : types) fNames.push_back(TextOf(type.fName));
  }
  TError ISaveAsDialogBehavior_OnPerform(const char* url, const TFileType& chosen) override {
    return Guarded([&] {
      std::size_t type = 0;
      while (type + 1 < fNames.size() && fNames[type] != TextOf(chosen.fName)) ++type;
      return Choose(PathOfURL(url), type);
    });
  }
  TError ISaveAsDialogBehavior_OnCancel() override { return Cancel(); }

 private:
  std::vector<std::u16string> fNames;
};

class CFolderAnswer : public CFileAnswer<IDirectoryChooserBehavior, TOnFileOpened> {
 public:
  using CFileAnswer::CFileAnswer;
  TError IDirectoryChooserBehavior_OnPerform(const char* url) override {
    return Guarded([&] { return Choose(PathOfURL(url)); });
  }
  TError IDirectoryChooserBehavior_OnCancel() override { return Cancel(); }
};

// Asks for a file that exists.
inline TError ShowOpenDialog(IMorvane& morvane, const TFileDialog& dialog, TOnFileOpened onChosen,
                             TOnCancel onCancel = {}) {
  return Guarded([&] {
    return CDialogAnswer::Await(
        std::make_unique<COpenAnswer>(std::move(onChosen), std::move(onCancel)), [&](COpenAnswer* answer) {
          return morvane.IMorvane_CreateOpenDialog(
              answer, dialog.fContext, dialog.fOwner, dialog.Waits(), 0, dialog.fTypes.data(),
              static_cast<std::uint32_t>(dialog.fTypes.size()), dialog.Prompt(), nullptr);
        });
  });
}
// Asks where to save. `name` is what the user is offered: a name, or a path with its folder.
inline TError ShowSaveDialog(IMorvane& morvane, const TFileDialog& dialog, const std::u16string& name,
                             TOnFileSaved onChosen, TOnCancel onCancel = {}) {
  return Guarded([&] {
    return CDialogAnswer::Await(
        std::make_unique<CSaveAnswer>(dialog.fTypes, std::move(onChosen), std::move(onCancel)),
        [&](CSaveAnswer* answer) {
          return morvane.IMorvane_CreateSaveAsDialog(
              answer, dialog.fContext, dialog.fOwner, dialog.Waits(), name.c_str(), dialog.fTypes.data(),
              static_cast<std::uint32_t>(dialog.fTypes.size()), dialog.Prompt());
        });
  });
}
// Asks for a folder, whose path ends in a backslash. It blocks the application, whatever the owner.
inline TError ShowFolderChooser(IMorvane& morvane, const TFileDialog& dialog, TOnFileOpened onChosen,
                                TOnCancel onCancel = {}) {
  return Guarded([&] {
    return CDialogAnswer::Await(std::make_unique<CFolderAnswer>(std::move(onChosen), std::move(onCancel)),
                                [&](CFolderAnswer* answer) {
                                  return morvane.IMorvane_CreateDirectoryChooserDialog(
                                      answer, dialog.fContext, nullptr, 1, dialog.Prompt());
                                });
  });
}

}  // namespace NSMorvane
