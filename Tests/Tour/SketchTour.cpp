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
class CTour {
 public:
  CTour(CTourist& tourist, std::wstring title) : fTourist(tourist), fTitle(std::move(title)) {}

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
  // A position of the document at 100 percent, on the screen.
  POINT At(LONG x, LONG y) const { return {fSheet.x + x, fSheet.y + y}; }

  void Arrive() {
    fWindow = fTourist.WaitForWindow(kDocumentClass, fTitle);
    fPalette = fTourist.WaitForWindow(kFloatingClass, L"Tools");
    fTourist.WaitUntilInFront(fWindow);
    RECT client = {};
    fTourist.WaitFor("the menu bar", [&] { return ::GetMenu(fWindow) != nullptr; });
    ::GetClientRect(fWindow, &client);
    POINT origin = {0, 0};
    ::ClientToScreen(fWindow, &origin);
    // The sheet of 760 by 560 is in the middle of what side panel and status line leave free.
    fCanvas = {origin.x, origin.y, origin.x + client.right - 208, origin.y + client.bottom - 26};
    fSheet = {(fCanvas.left + fCanvas.right - 760) / 2, (fCanvas.top + fCanvas.bottom - 560) / 2};
    fTourist.WaitForColor(At(377, 300), kBar, "a bar of the chart");
    const HCURSOR before = Cursor();
    fTourist.HoverUntil(At(377, 300), "the arrows over a shape", [&] { return Cursor() != before; });
    const HCURSOR arrows = Cursor();
    fTourist.HoverUntil({fCanvas.left + 20, fCanvas.bottom - 20}, "the arrow",
                        [&] { return Cursor() != arrows; });
    fArrow = Cursor();
    fTourist.TakePicture("document");
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
    fTourist.Click({button.x, button.y + 19});  // beside the buttons: tips appear in the active window
    fTourist.WaitUntilInFront(fPalette);
    fTourist.HoverUntil(button, "the tip", [] {
      HWND tip = nullptr;
      while ((tip = ::FindWindowExW(nullptr, tip, kTooltipClass, nullptr)) != nullptr)
        if (::IsWindowVisible(tip)) return true;
      return false;
    });
    fTourist.TakePicture("tooltip");
    fTourist.Click(button);
    fTourist.WaitUntilInFront(fWindow);
    fTourist.HoverUntil(At(500, 30), "the cross of the tool", [&] { return Cursor() != fArrow; });
  }

  void DrawRectangle() {
    fTourist.Drag(At(500, 30), At(590, 90));
    fTourist.WaitForColor(At(545, 60), kFill, "the new rectangle");
    fTourist.WaitForColor(At(586, 86), kAccent, "its handle");
    fTourist.TakePicture("rectangle");
    fTourist.WaitForTitle(fWindow, fTitle + L"*");
    fTourist.Key({VK_CONTROL, 'S'});
    fTourist.WaitForTitle(fWindow, fTitle);
  }

  void Properties() {
    fTourist.Key({VK_F4});
    const HWND dialog = fTourist.WaitForWindow(kModelessClass, L"Properties");
    fTourist.WaitUntilInFront(dialog);
    fTourist.Type("480\r");
    fTourist.WaitForColor(At(490, 75), kFill, "the rectangle at its new place");
    fTourist.Key({VK_MENU, 'C'});
    for (int i = 0; i < 6; ++i) fTourist.Key({VK_RIGHT});
    fTourist.WaitForColor(At(505, 30), kRed, "the outline in another color");
    fTourist.TakePicture("properties");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitUntilGone(dialog, "the properties");
    fTourist.WaitUntilInFront(fWindow);
  }

  void Nudge() {
    fTourist.Hold(VK_SHIFT);
    fTourist.Key({VK_DOWN});
    fTourist.WaitForColor(At(490, 97), kFill, "the rectangle, ten pixels further down");
    fTourist.LetGo(VK_SHIFT);
    for (int i = 0; i < 3; ++i) fTourist.Key({VK_LEFT});
    fTourist.WaitForColor(At(480, 90), kFill, "the rectangle after the arrow keys");
    fTourist.Key({VK_CONTROL, 'Z'});  // all of them
    fTourist.WaitForOtherColor(At(477, 95), kRed, "the arrow keys undone");
    fTourist.WaitForColor(At(480, 50), kRed, "the rectangle back where it was");
    fTourist.Key({VK_CONTROL, 'Y'});
    fTourist.WaitForColor(At(480, 90), kFill, "the arrow keys redone");
  }

  void PullHandle() {
    fTourist.HoverUntil(At(567, 130), "the arrow beside the shape", [&] { return Cursor() == fArrow; });
    fTourist.HoverUntil(At(567, 100), "the arrows of a handle", [&] { return Cursor() != fArrow; });
    fTourist.Drag(At(567, 100), At(580, 110));
    fTourist.WaitForColor(At(575, 104), kFill, "the larger rectangle");
    fTourist.TakePicture("handle");
  }

  // Without a selection the properties are those of new shapes.
  void StyleOfNewShapes() {
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitForOtherColor(At(576, 106), kAccent, "the handles to go");
    fTourist.Key({VK_F4});
    const HWND dialog = fTourist.WaitForWindow(kModelessClass, L"Properties");
    fTourist.WaitUntilInFront(dialog);
    fTourist.Key({VK_MENU, 'C'});
    for (int i = 0; i < 4; ++i) fTourist.Key({VK_RIGHT});
    POINT swatch = {84, 124};
    ::ClientToScreen(dialog, &swatch);
    fTourist.WaitForColor(swatch, 0xFFFFFF, "white");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitUntilGone(dialog, "the properties");
    fTourist.WaitUntilInFront(fWindow);
  }

  void DrawMore() {
    fTourist.Key({'E'});
    fTourist.Drag(At(600, 440), At(640, 480));
    fTourist.WaitForColor(At(620, 475), kFill, "the circle");
    fTourist.Key({'P'});
    for (const POINT point : {At(660, 480), At(675, 450), At(690, 480)}) fTourist.Click(point);
    fTourist.DoubleClick(At(705, 450));
    fTourist.WaitForColor(At(701, 446), kAccent, "a handle of the polyline");
    fTourist.Key({'T'});
    fTourist.Click(At(484, 60));
    fTourist.Type("Sketch");
    fTourist.TakePicture("typing");
    fTourist.Key({VK_RETURN});
    fTourist.WaitForColor(At(482, 58), kAccent, "the frame of the text");
    fTourist.TakePicture("shapes");
  }

  // Also looks at it while the button is down.
  void RubberBand() {
    fTourist.Key({VK_ESCAPE});
    const POINT from = At(590, 430);
    fTourist.MoveTo(from);
    fTourist.Press();
    fTourist.MoveTo(At(650, 470));
    fTourist.MoveTo(At(715, 490));
    fTourist.WaitForColor({from.x, from.y + 20}, kAccent, "the rubber band");
    fTourist.TakePicture("rubber-band");
    fTourist.Release();
    fTourist.WaitForOtherColor({from.x, from.y + 20}, kAccent, "the rubber band to go");
    // Both shapes at once, through the middle of the circle.
    fTourist.Drag(At(620, 460), At(600, 460));
    fTourist.WaitForColor(At(583, 460), kFill, "the circle, moved");
  }

  void Tabs() {
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitForOtherColor(At(580, 440), kAccent, "the selection to go");
    fTourist.Hold(VK_SHIFT);
    fTourist.Key({VK_TAB});  // the text, which is the last one
    fTourist.WaitForColor(At(482, 58), kAccent, "the text to be selected");
    fTourist.Key({VK_TAB});
    fTourist.Key({VK_TAB});
    fTourist.WaitForColor(At(576, 436), kAccent, "the circle to be selected");
    fTourist.LetGo(VK_SHIFT);
    fTourist.TakePicture("tab");
  }

  // The polyline beside the circle is added and removed, and the circle's first handle moved.
  void MarkAndPoints() {
    fTourist.Key({VK_CONTROL, VK_TAB});
    fTourist.WaitForColor(At(635, 465), kMark, "the mark around the polyline");
    fTourist.Key({VK_CONTROL, VK_SPACE});
    fTourist.WaitForColor(At(640, 465), kAccent, "both shapes to be selected");
    fTourist.TakePicture("mark");
    fTourist.Key({VK_CONTROL, VK_SPACE});
    fTourist.WaitForColor(At(576, 436), kAccent, "the circle alone to be selected");
    fTourist.Key({VK_F2});
    fTourist.WaitForColor(At(580, 440), kMark, "the first point");
    fTourist.Hold(VK_SHIFT);
    fTourist.Key({VK_LEFT});
    fTourist.WaitForColor(At(570, 440), kMark, "the first point, moved");
    fTourist.LetGo(VK_SHIFT);
    fTourist.Key({VK_TAB});
    fTourist.WaitForColor(At(595, 440), kMark, "the second point");
    fTourist.TakePicture("points");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitForOtherColor(At(595, 440), kMark, "the points to be left");
    fTourist.Key({VK_CONTROL, 'Z'});
    fTourist.WaitForColor(At(576, 436), kAccent, "the circle as it was");
  }

  // It has the keys when a shape is selected that it is not for.
  void DisabledCheckBox() {
    fTourist.Key({VK_F4});
    const HWND dialog = fTourist.WaitForWindow(kModelessClass, L"Properties");
    fTourist.WaitUntilInFront(dialog);
    fTourist.Key({VK_MENU, 'F'});
    fTourist.WaitForOtherColor(At(595, 465), kFill, "the circle to be empty");
    fTourist.Key({VK_MENU, 'F'});
    fTourist.WaitForColor(At(595, 465), kFill, "the circle to be filled again");
    fTourist.Key({VK_F4});
    fTourist.WaitUntilInFront(fWindow);
    for (int i = 0; i < 2; ++i) fTourist.Key({VK_TAB});
    fTourist.WaitForColor(At(482, 58), kAccent, "the text to be selected");
    fTourist.Key({VK_F4});
    fTourist.WaitUntilInFront(dialog);
    fTourist.Key({VK_SPACE});
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitUntilGone(dialog, "the properties");
    fTourist.WaitUntilInFront(fWindow);
  }

  void ContextMenu() {
    fTourist.Click(At(560, 100), true);
    const HWND menu = fTourist.WaitForWindow(kMenuClass, L"");
    fTourist.TakePicture("contextual-menu");
    fTourist.Key({'L'});  // Duplicate
    fTourist.WaitUntilGone(menu, "the menu");
    fTourist.WaitForColor(At(584, 105), kFill, "the copy");
    fTourist.Key({VK_CONTROL, 'Z'});
    fTourist.WaitForOtherColor(At(584, 105), kFill, "the copy undone");
  }

  void Menus() {
    fTourist.Key({VK_MENU, 'E'});
    const HWND menu = fTourist.WaitForWindow(kMenuClass, L"");
    fTourist.TakePicture("menu");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitUntilGone(menu, "the menu");
    fTourist.Key({VK_ESCAPE});
    fTourist.Key({VK_CONTROL, 'A'});
    fTourist.WaitForColor(At(482, 58), kAccent, "everything to be selected");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitForOtherColor(At(482, 58), kAccent, "nothing to be selected");
  }

  // Does something until the canvas looks different.
  void ChangeCanvas(const char* what, const std::function<void(int)>& action) const {
    const std::string before = CTourist::Look(fCanvas);
    int tries = 0;
    fTourist.Insist(
        what, [&] { return CTourist::Look(fCanvas) != before; }, [&] { action(tries++); });
  }

  // Zooms with Ctrl and the wheel. A display can take the key back before the wheel is seen, and does so
  // again and again on a busy machine: then it is done with the shortcut.
  void ZoomIn() const {
    ChangeCanvas("the zoom", [&](int tries) {
      if (tries < 2) {
        fTourist.Hold(VK_CONTROL);
        fTourist.Wheel(1);
      } else {
        fTourist.LetGo(VK_CONTROL);
        fTourist.Key({VK_CONTROL, VK_OEM_PLUS});
      }
    });
    fTourist.LetGo(VK_CONTROL);
  }

  // After scrolling, what was moved is the same as what is drawn anew.
  void ZoomAndScroll() {
    fTourist.HoverUntil(At(377, 300), "the arrows over a shape", [&] { return Cursor() != fArrow; });
    for (int i = 0; i < 3; ++i) ZoomIn();
    fTourist.TakePicture("zoom");
    ChangeCanvas("the wheel", [&](int) { fTourist.Wheel(-2); });
    fTourist.TakePicture("scroll");
    const std::string scrolled = CTourist::Look(fCanvas);
    fTourist.Key({VK_CONTROL, 'G'});
    fTourist.WaitFor("the grid to go", [&] { return CTourist::Look(fCanvas) != scrolled; });
    fTourist.Key({VK_CONTROL, 'G'});
    fTourist.WaitFor("what was scrolled to be what is drawn anew",
                     [&] { return CTourist::Look(fCanvas) == scrolled; });
    const POINT from = At(803, 440);
    fTourist.MoveTo(from);
    fTourist.Press();
    fTourist.MoveTo({from.x, fCanvas.bottom + 10});
    fTourist.WaitForColor({fCanvas.left + 200, fCanvas.bottom - 2}, kDesk, "the end of the sheet");
    fTourist.TakePicture("drag-beyond");
    fTourist.Key({VK_ESCAPE});
    fTourist.Release();
    fTourist.Key({VK_CONTROL, '9'});  // all of it, and so in the middle
    fTourist.Key({VK_CONTROL, '0'});
    fTourist.WaitForColor(At(377, 300), kBar, "the bar to be back");
    fTourist.WaitForColor(At(490, 75), kFill, "the rectangle to be back");
  }

  void Settings() {
    fTourist.Key({VK_CONTROL, VK_SHIFT, 'P'});
    const HWND dialog = fTourist.WaitForWindow(kModalClass, L"Document Settings");
    fTourist.WaitUntilInFront(dialog);
    fTourist.WaitFor("the document to be blocked", [&] { return !::IsWindowEnabled(fWindow); });
    fTourist.TakePicture("settings");
    fTourist.Type("780\r");
    fTourist.WaitUntilGone(dialog, "the settings");
    fTourist.WaitUntilInFront(fWindow);
    fSheet.x -= 10;
    fTourist.WaitForColor(At(377, 300), kBar, "the wider sheet");
  }

  void About() {
    fTourist.Key({VK_MENU, 'A'});
    const HWND menu = fTourist.WaitForWindow(kMenuClass, L"");
    fTourist.Key({'A'});
    fTourist.WaitUntilGone(menu, "the menu");
    const HWND dialog = fTourist.WaitForWindow(kModalClass, L"About Sketch");
    fTourist.WaitUntilInFront(dialog);
    fTourist.WaitFor("the application to be blocked", [&] { return !::IsWindowEnabled(fWindow); });
    fTourist.TakePicture("about");
    fTourist.Key({VK_RETURN});
    fTourist.WaitUntilGone(dialog, "the box");
    fTourist.WaitUntilInFront(fWindow);
  }

  // Given up, it leaves everything as it was; asked again, it asks again.
  void Quit() {
    for (const int last : {VK_ESCAPE, VK_RETURN}) {
      fTourist.Key({VK_MENU, 'A'});
      const HWND menu = fTourist.WaitForWindow(kMenuClass, L"");
      fTourist.Key({'X'});
      fTourist.WaitUntilGone(menu, "the menu");
      const HWND dialog = fTourist.WaitForWindow(kModalClass, L"Sketch");
      fTourist.WaitUntilInFront(dialog);
      if (last == VK_ESCAPE) fTourist.TakePicture("quit");
      fTourist.Key({last});
      fTourist.WaitUntilGone(dialog, "the question");
      if (last == VK_RETURN) break;
      fTourist.WaitUntilInFront(fWindow);
      fTourist.WaitFor("the palette to be back", [&] { return ::IsWindowVisible(fPalette) != 0; });
    }
    fTourist.WaitUntilGone(fWindow, "the window");
  }

  void Close() {
    fTourist.Key({VK_CONTROL, 'W'});
    const HWND dialog = fTourist.WaitForWindow(kModalClass, L"Sketch");
    fTourist.WaitUntilInFront(dialog);
    fTourist.TakePicture("unsaved-changes");
    fTourist.Key({VK_ESCAPE});
    fTourist.WaitUntilGone(dialog, "the question");
    fTourist.WaitUntilInFront(fWindow);
  }

  CTourist& fTourist;
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
  CTourist tourist(arguments[3]);
  DWORD code = 1;
  try {
    CTour(tourist, document.substr(document.find_last_of(L"\\/") + 1)).Go();
    tourist.WaitFor("the end of the program",
                    [&] { return ::WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; });
    ::GetExitCodeProcess(process.hProcess, &code);
    std::printf("The program ended with %lu\n", code);
  } catch (const XLost& lost) {
    std::printf("Waited in vain for %s\n", lost.fText.c_str());
    tourist.TakePictureAtOnce("lost");
    ::TerminateProcess(process.hProcess, 1);
  }
  return static_cast<int>(code);
}
