// Random input: what a hasty user, or several, might do to the windows of an application.
#pragma once

#include <windows.h>

#include <array>
#include <random>
#include <vector>

namespace NSSoak {

// Sends input to the visible windows of the thread it lives on, from a fixed seed. What has been sent is
// handled by the thread's loop later.
class CInputEvents {
 public:
  // `elsewhere` is a window of another thread, for the user to go away to.
  CInputEvents(unsigned seed, HWND elsewhere)
      : fRandom(seed),
        fElsewhere(elsewhere),
        fScreen{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)} {}

  // A few events. Does nothing if there is no window.
  void SendSome();
  // Lets go of what is held down, and ends a menu and the moving of a window, if one is on.
  void LetGo();
  // From any thread: releases the buttons of the mouse. The loop of a pressed caption button of the system
  // takes nothing else.
  static void EndWait();
  // A key with modifier keys, pressed and released, for the window in front.
  void SendKey(WORD key, const std::vector<WORD>& modifiers = {});
  std::size_t Random(std::size_t limit) { return fRandom() % limit; }
  // Each movement, press, release, turn of the wheel and message is one.
  long long Count() const { return fCount; }
  // Writes the last events, the last of all at the end. Allocates nothing.
  void PrintLast() const;

 private:
  struct TNote {
    const char* fWhat;
    HWND fHwnd;
    int fA;
    int fB;
  };

  void SendOne();
  void SendMouse(const char* what, DWORD flags, DWORD data = 0);
  void MoveTo(POINT point);
  void MoveSomewhere();
  void MoveALittle();
  void Click(DWORD down, DWORD up, int times);
  void Press();
  void Release();
  void PressKey(WORD key, bool down);
  void SendSomeKey();
  void SendMenuCommand();
  void Resize();
  void ChangeWindow();
  void Note(const char* what, HWND hwnd, int a, int b);
  void Post(const char* what, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  std::mt19937 fRandom;
  HWND fElsewhere;
  SIZE fScreen;                // asking for it each time would cost more than all the rest
  POINT fPoint = {};           // where the mouse is
  std::vector<HWND> fWindows;  // during SendSome
  HWND fTarget = nullptr;
  DWORD fHeldButton = 0;  // what releases it
  WORD fHeldKey = 0;
  long long fCount = 0;
  std::array<TNote, 30> fLast = {};
};

// The visible windows of this thread, menus among them; tooltips are not.
std::vector<HWND> VisibleWindows();

}  // namespace NSSoak
