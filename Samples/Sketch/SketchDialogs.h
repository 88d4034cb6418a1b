// Alerts, and the modal dialogs that are Sketch's own: the settings of a document, and About. File dialogs
// have a file of their own.
//
// Each is made by a function, which shows it and returns; what the user decides comes through a callback,
// after the dialog has gone.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <functional>
#include <string>

#include "SketchDocument.h"

namespace NSSketch {

// The frame for a dialog with the middle at a point of the screen, all of it on the monitor that has the
// point.
NSMorvane::TRect DialogFrame(const NSMorvane::TSize& size, const NSMorvane::TPoint& middle);

// Gives a dialog its title and size, and a middle in screen coordinates.
template <class TKind>
void PlaceDialog(TKind& window, const std::u16string& title, const NSMorvane::TSize& size,
                 const NSMorvane::TPoint& middle) {
  NSMorvane::TRect frame = {0, 0, 0, 0};
  NSMorvane::ThrowIfFailed(
      NSMorvane::WindowOf(window).IWindow_ClientRectToFrameRect({0, 0, size.fWidth, size.fHeight}, frame));
  NSMorvane::ThrowIfFailed(NSMorvane::ChangeState(window, [&](auto& state) {
    NSMorvane::CopyText(state.fTitle, title);
    state.fPlacement.fUserRect = DialogFrame({NSMorvane::WidthOf(frame), NSMorvane::HeightOf(frame)}, middle);
    state.fPlacement.fZoomState = NSMorvane::kWindowStateUser;
  }));
}

// In screen coordinates: the frame of a window, and the upper left corner of its client area.
NSMorvane::TRect FrameOnScreen(NSMorvane::IWindow& window);
NSMorvane::TPoint ClientCornerOnScreen(NSMorvane::IWindow& window);

// What a dialog is to be shown over: its owner, or null for one that blocks the whole application.
struct TDialogPlace {
  NSMorvane::IMorvane& fMorvane;
  NSMorvane::IModalOwner* fOwner;
};

// Tells the user something. Over an owner this returns at once. Without one it blocks the application and
// returns when the user has read it, so that several alerts come one after the other.
void ShowAlert(const TDialogPlace& place, NSMorvane::TAlertKind kind, const std::u16string& message,
               const std::u16string& details);

// For a command that pastes, when the clipboard has nothing for it.
void ShowNothingToPaste(const TDialogPlace& place);

struct TDocumentSettings {
  TSketchSize fCanvasSize;
  TSketchColor fBackground = 0;
  bool fShowGrid = true;
};

// `onDone` is called only if the user accepts.
void ShowSettings(const TDialogPlace& place, const TDocumentSettings& settings,
                  std::function<void(const TDocumentSettings&)> onDone);

void ShowAbout(const TDialogPlace& place);

}  // namespace NSSketch
