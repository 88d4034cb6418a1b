// The client's umbrella header of Morvane, a user-interface toolkit for Windows desktop applications.
//
// How it hangs together, in the order in which an application meets it:
//
// clang-format off
//   Morvane_Create             gives the one root object, IMorvane.
//   IMorvane_Run               takes the application's run behaviour, IMorvaneRunBehavior, and runs it.
//   IMorvane_Create...Window   makes a window, with a behaviour from a factory of the application's.
//   IWindow_GetRootView        is where its views hang.
//   IMorvane_CreateView        makes a view under another one, with a behaviour, IViewBehavior.
//   IViewBehavior_Draw         draws, with IDrawTools.
//   IMorvane_InvalidateView    has it drawn again.
//   ..._Release                ends a view or a window, and its behaviour with it.
// clang-format on
//
// The application implements those interfaces whose names end in Behavior, Listener, Receiver, Factory,
// Callback or Capture, and IDebugOutput, IClipboardDataGetter and, for what it puts on the clipboard, IData.
// The library implements the others. MorvaneDefaults.h, which is not included here, has defaults for the
// larger ones.
//
// Nothing throws across this boundary: every operation gives a TError, as its result or as its last
// parameter.
#pragma once

#include "MorvaneClipboard.h"      // IMorvane's clipboard: formats and data
#include "MorvaneDebugOutput.h"    // what the library says about itself
#include "MorvaneDialogs.h"        // alert boxes and file dialogs
#include "MorvaneDrawing.h"        // what a view draws with
#include "MorvaneIcon.h"           // icons
#include "MorvaneKeyboard.h"       // keys and what they mean
#include "MorvaneMenu.h"           // menu bars
#include "MorvaneMonitors.h"       // monitors
#include "MorvaneMouse.h"          // mouse events, shapes, capture
#include "MorvaneRoot.h"           // IMorvane, the run behaviour, the exports
#include "MorvaneText.h"           // texts out of the library
#include "MorvaneTypes.h"          // error codes, geometry, characters
#include "MorvaneView.h"           // views
#include "MorvaneWindow.h"         // windows of every kind
#include "MorvaneWinExtensions.h"  // what exists on Windows only
