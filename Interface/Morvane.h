// The client's umbrella header of Morvane, a user-interface toolkit for Windows desktop applications.
//
// The main parts, in the order in which an application meets them:
//
// clang-format off
//   Morvane_Create             gives the one root object, IMorvane.
//   IMorvane_Run               takes the application's run behaviour, IMorvaneRunBehavior, and runs it.
//   IMorvane_Create...Window   makes a window; a factory of the application makes its behaviour.
//   IWindow_GetRootView        gives the root of the window's view tree.
//   IMorvane_CreateView        makes a view under another view, with a behaviour, IViewBehavior.
//   IViewBehavior_Draw         draws, with IDrawTools.
//   IMorvane_InvalidateView    requests that it is drawn again.
//   ..._Release                ends a view or a window, and its behaviour with it.
// clang-format on
//
// The application implements the interfaces whose names end in Behavior, Listener, Receiver, Factory,
// Callback or Capture. It also implements IDebugOutput, IClipboardDataGetter, and IData for what it puts on
// the clipboard. The library implements the others. MorvaneDefaults.h, which is not included here, has
// default implementations of the larger interfaces of the application.
//
// Application and library must have the same C++ ABI, since the interfaces are classes with virtual
// destructors: GCC and clang for mingw on both sides, or MSVC and clang-cl. Otherwise the program does not
// link: Morvane_Create has another name with each ABI. Everything else, such as settings, version or heap,
// may differ.
//
// No exception may cross this boundary: an operation that can fail gives a TError, as its result or as its
// last parameter.
#pragma once

#include "MorvaneClipboard.h"      // IMorvane's clipboard: formats and data
#include "MorvaneDebugOutput.h"    // debug output
#include "MorvaneDialogs.h"        // alert boxes and file dialogs
#include "MorvaneDrawing.h"        // what a view draws with
#include "MorvaneIcon.h"           // icons
#include "MorvaneKeyboard.h"       // keys and what they mean
#include "MorvaneMenu.h"           // menu bars
#include "MorvaneMonitors.h"       // monitors
#include "MorvaneMouse.h"          // mouse events, shapes, capture
#include "MorvaneRoot.h"           // IMorvane, the run behaviour, the exports
#include "MorvaneText.h"           // texts that the library returns
#include "MorvaneTypes.h"          // error codes, geometry, characters
#include "MorvaneView.h"           // views
#include "MorvaneWindow.h"         // windows of every kind
#include "MorvaneWinExtensions.h"  // what exists on Windows only
