// A tour through the sample Sketch, with real input: SketchTour SKETCH.EXE DOCUMENT FOLDER-FOR-PICTURES
//
// Opens the document, a copy of Daylight.sketch, works on it with mouse and keyboard, takes a picture at each
// station, and quits the program, which saves it on the way. The exit code is 0 if everything came as it
// should.
#include <cstdio>

#include "Tourist.h"

namespace {

constexpr wchar_t kDocumentClass[] = L"SkerryDocumentWindow";
constexpr wchar_t kModelessClass[] = L"SkerryModelessDialog";
constexpr wchar_t kModalClass[] = L"SkerryModalDialog";
constexpr wchar_t kFloatingClass[] = L"SkerryFloatingWindow";
constexpr wchar_t kMenuClass[] = L"#32768";
constexpr wchar_t kTooltipClass[] = L"tooltips_class32";

constexpr unsigned kFill = 0x7FB2F0;    // of new shapes
constexpr unsigned kAccent = 0x2F6FDE;  // handles, frames
constexpr unsigned kBar = 0xF4D35E;     // of the document's chart, in June
constexpr unsigned kMark = 0xE8590C;    // what keys are about
constexpr unsigned kDesk = 0xE3E6EA;
constexpr unsigned kRed = 0xC0392B;  // a swatch

// The program under way, and where things are in its window.
class CTour : public CTourist {
 public:
  CTour(std::wstring folder, std::wstring title) : CTourist(std::move(folder)), fTitle(std::move(title)) {}

  void Go() {
    Arrive();
    Palette();
    DrawRectangle();
    Properties();
    Nudge();
    PullHandle();
    StyleOfNewShapes();
    DrawMore();
    RubberBand();
    Tabs();
    MarkAndPoints();
    DisabledCheckBox();
    ContextMenu();
    Menus();
    ZoomAndScroll();
    Settings();
    About();
    Close();
    Quit();
  }

 private:
  // A dialog or a menu that keys open, and one that they close.
  HWND OpenBy(std::initializer_list<int> keys, const wchar_t* windowClass, const wchar_t* title = L"") {
    Key(keys);
    const HWND window = WaitForWindow(windowClass, title);
    if (windowClass != kMenuClass) WaitUntilInFront(window);
    return window;
  }
  void CloseBy(std::initializer_list<int> keys, HWND window, const char* what) {
    Key(keys);
    WaitUntilGone(window, what);
    WaitUntilInFront(fWindow);
  }
  // A position of the document at 100 percent, on the screen.
  POINT At(LONG x, LONG y) const { return {fSheet.x + x, fSheet.y + y}; }

  void Arrive() {
    fWindow = WaitForWindow(kDocumentClass, fTitle);
    fPalette = WaitForWindow(kFloatingClass, L"Tools");
    WaitUntilInFront(fWindow);
    RECT client = {};
    WaitFor("the menu bar", [&] { return ::GetMenu(fWindow) != nullptr; });
    ::GetClientRect(fWindow, &client);
    POINT origin = {0, 0};
    ::ClientToScreen(fWindow, &origin);
    // The sheet of 760 by 560 is in the middle of what side panel and status line leave free.
    fCanvas = {origin.x, origin.y, origin.x + client.right - 208, origin.y + client.bottom - 26};
    fSheet = {(fCanvas.left + fCanvas.right - 760) / 2, (fCanvas.top + fCanvas.bottom - 560) / 2};
    WaitForColor(At(377, 300), kBar, "a bar of the chart");
    const HCURSOR before = Cursor();
    HoverUntil(At(377, 300), "the arrows over a shape", [&] { return Cursor() != before; });
    const HCURSOR arrows = Cursor();
    HoverUntil({fCanvas.left + 20, fCanvas.bottom - 20}, "the arrow", [&] { return Cursor() != arrows; });
    fArrow = Cursor();
    TakePicture("document");
  }

  static HCURSOR Cursor() {
    CURSORINFO info = {};
    info.cbSize = sizeof(info);
    ::GetCursorInfo(&info);
    return info.hCursor;
  }
  void Palette() {
    RECT palette = {};
    ::GetClientRect(fPalette, &palette);
    POINT button = {palette.right / 2, 3 + 2 * 39 + 18};  // the third one
    ::ClientToScreen(fPalette, &button);
    Click({button.x, button.y + 19});  // beside the buttons: tips appear in the active window
    WaitUntilInFront(fPalette);
    HoverUntil(button, "the tip", [] {
      HWND tip = nullptr;
      while ((tip = ::FindWindowExW(nullptr, tip, kTooltipClass, nullptr)) != nullptr)
        if (::IsWindowVisible(tip)) return true;
      return false;
    });
    TakePicture("tooltip");
    Click(button);
    WaitUntilInFront(fWindow);
    HoverUntil(At(500, 30), "the cross of the tool", [&] { return Cursor() != fArrow; });
  }

  void DrawRectangle() {
    Drag(At(500, 30), At(590, 90));
    WaitForColor(At(545, 60), kFill, "the new rectangle");
    WaitForColor(At(586, 86), kAccent, "its handle");
    TakePicture("rectangle");
    WaitForTitle(fWindow, fTitle + L"*");
    Key({VK_CONTROL, 'S'});
    WaitForTitle(fWindow, fTitle);
  }

  void Properties() {
    const HWND dialog = OpenBy({VK_F4}, kModelessClass, L"Properties");
    Type("480\r");
    WaitForColor(At(490, 75), kFill, "the rectangle at its new place");
    Key({VK_MENU, 'C'});
    for (int i = 0; i < 6; ++i) Key({VK_RIGHT});
    WaitForColor(At(505, 30), kRed, "the outline in another color");
    TakePicture("properties");
    CloseBy({VK_ESCAPE}, dialog, "the properties");
  }

  void Nudge() {
    Hold(VK_SHIFT);
    Key({VK_DOWN});
    WaitForColor(At(490, 97), kFill, "the rectangle, ten pixels further down");
    LetGo(VK_SHIFT);
    for (int i = 0; i < 3; ++i) Key({VK_LEFT});
    WaitForColor(At(480, 90), kFill, "the rectangle after the arrow keys");
    Key({VK_CONTROL, 'Z'});  // all of them
    WaitForOtherColor(At(477, 95), kRed, "the arrow keys undone");
    WaitForColor(At(480, 50), kRed, "the rectangle back where it was");
    Key({VK_CONTROL, 'Y'});
    WaitForColor(At(480, 90), kFill, "the arrow keys redone");
  }

  void PullHandle() {
    HoverUntil(At(567, 130), "the arrow beside the shape", [&] { return Cursor() == fArrow; });
    HoverUntil(At(567, 100), "the arrows of a handle", [&] { return Cursor() != fArrow; });
    Drag(At(567, 100), At(580, 110));
    WaitForColor(At(575, 104), kFill, "the larger rectangle");
    TakePicture("handle");
  }

  // Without a selection the properties are those of new shapes.
  void StyleOfNewShapes() {
    Key({VK_ESCAPE});
    WaitForOtherColor(At(576, 106), kAccent, "the handles to go");
    const HWND dialog = OpenBy({VK_F4}, kModelessClass, L"Properties");
    Key({VK_MENU, 'C'});
    for (int i = 0; i < 4; ++i) Key({VK_RIGHT});
    POINT swatch = {84, 124};
    ::ClientToScreen(dialog, &swatch);
    WaitForColor(swatch, 0xFFFFFF, "white");
    CloseBy({VK_ESCAPE}, dialog, "the properties");
  }

  void DrawMore() {
    Key({'E'});
    Drag(At(600, 440), At(640, 480));
    WaitForColor(At(620, 475), kFill, "the circle");
    Key({'P'});
    for (const POINT point : {At(660, 480), At(675, 450), At(690, 480)}) Click(point);
    DoubleClick(At(705, 450));
    WaitForColor(At(701, 446), kAccent, "a handle of the polyline");
    Key({'T'});
    Click(At(484, 60));
    Type("Sketch");
    TakePicture("typing");
    Key({VK_RETURN});
    WaitForColor(At(482, 58), kAccent, "the frame of the text");
    TakePicture("shapes");
  }

  // Also looks at it while the button is down.
  void RubberBand() {
    Key({VK_ESCAPE});
    const POINT from = At(590, 430);
    MoveTo(from);
    Press();
    MoveTo(At(650, 470));
    MoveTo(At(715, 490));
    WaitForColor({from.x, from.y + 20}, kAccent, "the rubber band");
    TakePicture("rubber-band");
    Release();
    WaitForOtherColor({from.x, from.y + 20}, kAccent, "the rubber band to go");
    // Both shapes at once, through the middle of the circle.
    Drag(At(620, 460), At(600, 460));
    WaitForColor(At(583, 460), kFill, "the circle, moved");
  }

  void Tabs() {
    Key({VK_ESCAPE});
    WaitForOtherColor(At(580, 440), kAccent, "the selection to go");
    Hold(VK_SHIFT);
    Key({VK_TAB});  // the text, which is the last one
    WaitForColor(At(482, 58), kAccent, "the text to be selected");
    Key({VK_TAB});
    Key({VK_TAB});
    WaitForColor(At(576, 436), kAccent, "the circle to be selected");
    LetGo(VK_SHIFT);
    TakePicture("tab");
  }

  // The polyline beside the circle is added and removed, and the circle's first handle moved.
  void MarkAndPoints() {
    Key({VK_CONTROL, VK_TAB});
    WaitForColor(At(635, 465), kMark, "the mark around the polyline");
    Key({VK_CONTROL, VK_SPACE});
    WaitForColor(At(640, 465), kAccent, "both shapes to be selected");
    TakePicture("mark");
    Key({VK_CONTROL, VK_SPACE});
    WaitForColor(At(576, 436), kAccent, "the circle alone to be selected");
    Key({VK_F2});
    WaitForColor(At(580, 440), kMark, "the first point");
    Hold(VK_SHIFT);
    Key({VK_LEFT});
    WaitForColor(At(570, 440), kMark, "the first point, moved");
    LetGo(VK_SHIFT);
    Key({VK_TAB});
    WaitForColor(At(595, 440), kMark, "the second point");
    TakePicture("points");
    Key({VK_ESCAPE});
    WaitForOtherColor(At(595, 440), kMark, "the points to be left");
    Key({VK_CONTROL, 'Z'});
    WaitForColor(At(576, 436), kAccent, "the circle as it was");
  }

  // It has the keys when a shape is selected that it is not for.
  void DisabledCheckBox() {
    const HWND dialog = OpenBy({VK_F4}, kModelessClass, L"Properties");
    Key({VK_MENU, 'F'});
    WaitForOtherColor(At(595, 465), kFill, "the circle to be empty");
    Key({VK_MENU, 'F'});
    WaitForColor(At(595, 465), kFill, "the circle to be filled again");
    Key({VK_F4});
    WaitUntilInFront(fWindow);
    for (int i = 0; i < 2; ++i) Key({VK_TAB});
    WaitForColor(At(482, 58), kAccent, "the text to be selected");
    Key({VK_F4});
    WaitUntilInFront(dialog);
    Key({VK_SPACE});
    CloseBy({VK_ESCAPE}, dialog, "the properties");
  }

  void ContextMenu() {
    Click(At(560, 100), true);
    const HWND menu = WaitForWindow(kMenuClass, L"");
    TakePicture("contextual-menu");
    Key({'L'});  // Duplicate
    WaitUntilGone(menu, "the menu");
    WaitForColor(At(584, 105), kFill, "the copy");
    Key({VK_CONTROL, 'Z'});
    WaitForOtherColor(At(584, 105), kFill, "the copy undone");
  }

  void Menus() {
    const HWND menu = OpenBy({VK_MENU, 'E'}, kMenuClass);
    TakePicture("menu");
    Key({VK_ESCAPE});
    WaitUntilGone(menu, "the menu");
    Key({VK_ESCAPE});
    Key({VK_CONTROL, 'A'});
    WaitForColor(At(482, 58), kAccent, "everything to be selected");
    Key({VK_ESCAPE});
    WaitForOtherColor(At(482, 58), kAccent, "nothing to be selected");
  }

  // Does something until the canvas looks different.
  void ChangeCanvas(const char* what, const std::function<void(int)>& action) const {
    const std::string before = CTourist::Look(fCanvas);
    int tries = 0;
    Insist(
        what, [&] { return CTourist::Look(fCanvas) != before; }, [&] { action(tries++); });
  }

  // Zooms with Ctrl and the wheel. A display can take the key back before the wheel is seen, and does so
  // again and again on a busy machine: then it is done with the shortcut.
  void ZoomIn() const {
    ChangeCanvas("the zoom", [&](int tries) {
      if (tries < 2) {
        Hold(VK_CONTROL);
        Wheel(1);
      } else {
        LetGo(VK_CONTROL);
        Key({VK_CONTROL, VK_OEM_PLUS});
      }
    });
    LetGo(VK_CONTROL);
  }

  // After scrolling, what was moved is the same as what is drawn anew.
  void ZoomAndScroll() {
    HoverUntil(At(377, 300), "the arrows over a shape", [&] { return Cursor() != fArrow; });
    for (int i = 0; i < 3; ++i) ZoomIn();
    TakePicture("zoom");
    ChangeCanvas("the wheel", [&](int) { Wheel(-2); });
    TakePicture("scroll");
    const std::string scrolled = CTourist::Look(fCanvas);
    Key({VK_CONTROL, 'G'});
    WaitFor("the grid to go", [&] { return CTourist::Look(fCanvas) != scrolled; });
    Key({VK_CONTROL, 'G'});
    WaitFor("what was scrolled to be what is drawn anew",
            [&] { return CTourist::Look(fCanvas) == scrolled; });
    const POINT from = At(803, 440);
    MoveTo(from);
    Press();
    MoveTo({from.x, fCanvas.bottom + 10});
    WaitForColor({fCanvas.left + 200, fCanvas.bottom - 2}, kDesk, "the end of the sheet");
    TakePicture("drag-beyond");
    Key({VK_ESCAPE});
    Release();
    Key({VK_CONTROL, '9'});  // all of it, and so in the middle
    Key({VK_CONTROL, '0'});
    WaitForColor(At(377, 300), kBar, "the bar to be back");
    WaitForColor(At(490, 75), kFill, "the rectangle to be back");
  }

  void Settings() {
    const HWND dialog = OpenBy({VK_CONTROL, VK_SHIFT, 'P'}, kModalClass, L"Document Settings");
    WaitFor("the document to be blocked", [&] { return !::IsWindowEnabled(fWindow); });
    TakePicture("settings");
    Type("780\r");
    WaitUntilGone(dialog, "the settings");
    WaitUntilInFront(fWindow);
    fSheet.x -= 10;
    WaitForColor(At(377, 300), kBar, "the wider sheet");
  }

  void About() {
    OpenBy({VK_MENU, 'A'}, kMenuClass);
    const HWND dialog = OpenBy({'A'}, kModalClass, L"About Sketch");
    WaitFor("the application to be blocked", [&] { return !::IsWindowEnabled(fWindow); });
    TakePicture("about");
    CloseBy({VK_RETURN}, dialog, "the box");
  }

  // Given up, it leaves everything as it was; asked again, it asks again.
  void Quit() {
    for (const int last : {VK_ESCAPE, VK_RETURN}) {
      OpenBy({VK_MENU, 'A'}, kMenuClass);
      const HWND dialog = OpenBy({'X'}, kModalClass, L"Sketch");
      if (last == VK_ESCAPE) TakePicture("quit");
      Key({last});
      WaitUntilGone(dialog, "the question");
      if (last == VK_RETURN) break;
      WaitUntilInFront(fWindow);
      WaitFor("the palette to be back", [&] { return ::IsWindowVisible(fPalette) != 0; });
    }
    WaitUntilGone(fWindow, "the window");
  }

  void Close() {
    const HWND dialog = OpenBy({VK_CONTROL, 'W'}, kModalClass, L"Sketch");
    TakePicture("unsaved-changes");
    CloseBy({VK_ESCAPE}, dialog, "the question");
  }

  const std::wstring fTitle;
  HWND fWindow = nullptr;
  HWND fPalette = nullptr;
  HCURSOR fArrow = nullptr;
  RECT fCanvas = {};
  POINT fSheet = {};
};

}  // namespace

int wmain(int argumentCount, wchar_t** arguments) {
  if (argumentCount != 4) return 2;
  const std::wstring document = arguments[2];
  std::wstring command = L"\"" + std::wstring(arguments[1]) + L"\" \"" + document + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
    std::printf("%ls cannot be started\n", arguments[1]);
    return 2;
  }
  CTour tour(arguments[3], document.substr(document.find_last_of(L"\\/") + 1));
  DWORD code = 1;
  try {
    tour.Go();
    tour.WaitFor("the end of the program",
                 [&] { return ::WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; });
    ::GetExitCodeProcess(process.hProcess, &code);
    std::printf("The program ended with %lu\n", code);
  } catch (const XLost& lost) {
    std::printf("Waited in vain for %s\n", lost.fText.c_str());
    tour.TakePictureAtOnce("lost");
    ::TerminateProcess(process.hProcess, 1);
  }
  return static_cast<int>(code);
}
