// What a tour through a program's windows needs: input as from a mouse and a keyboard, waiting for what it
// brings about, and pictures of the screen.
//
// There are no pauses: each step waits for its effect, and fails when it does not come in time.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

// A wait that was in vain; the text says what for.
struct XLost {
  std::string fText;
};

class CTourist {
 public:
  // Pictures go into this folder, as bitmaps.
  explicit CTourist(std::wstring folder) : fFolder(std::move(folder)) {}

  // --- Waiting
  void WaitFor(const std::string& what, const std::function<bool()>& isSo) const;
  // Does something, and does it again each time that its effect keeps one waiting for more than a second.
  void Insist(const std::string& what, const std::function<bool()>& isSo,
              const std::function<void()>& action) const;
  // A window that is shown, of this class and with this title; an empty title stands for any.
  HWND WaitForWindow(const wchar_t* windowClass, const std::wstring& title) const;
  void WaitUntilGone(HWND window, const std::string& what) const;
  void WaitUntilInFront(HWND window) const;
  // At a position of the screen. Colours are 0x00RRGGBB.
  void WaitForColor(POINT point, unsigned color, const std::string& what) const;
  void WaitForOtherColor(POINT point, unsigned color, const std::string& what) const;
  void WaitForTitle(HWND window, const std::wstring& title) const;

  // --- Input
  void MoveTo(POINT point) const;
  // Rests the mouse there until something is so. A mouse in a hand is never quite still: after a while it
  // moves by a pixel and back.
  void HoverUntil(POINT point, const std::string& what, const std::function<bool()>& isSo) const;
  void Press(bool right = false) const;
  void Release(bool right = false) const;
  void Click(POINT point, bool right = false) const;
  void DoubleClick(POINT point) const;
  void Drag(POINT from, POINT to) const;
  void Wheel(int notches) const;
  // Virtual keys that are held while the last one is pressed.
  void Key(std::initializer_list<int> keys) const;
  void Hold(int key) const;
  void LetGo(int key) const;
  void Type(const char* text) const;

  // --- Looking
  // Saves what the screen shows, when it has come to rest, as "NN-name.bmp".
  void TakePicture(const char* name);
  // The same without waiting.
  void TakePictureAtOnce(const char* name);
  // All pixels of a part of the screen.
  static std::string Look(const RECT& part);
  static unsigned ColorAt(POINT point);

 private:
  const std::wstring fFolder;
  mutable POINT fPoint = {0, 0};  // where the mouse is meant to be
  int fPictures = 0;
};
