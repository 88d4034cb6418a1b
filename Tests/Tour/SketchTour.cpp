// A tour through the sample Sketch, with real input: SketchTour SKETCH.EXE DOCUMENT FOLDER-FOR-PICTURES
//
// Opens the document, a copy of Daylight.sketch, as developers of Sketch do, with its debug menu. Works on it
// with mouse and keyboard, takes a picture at each station, and quits the program, which saves it on the way.
// The exit code is 0 if everything came as it should.
#include <algorithm>
#include <map>
#include <sstream>

#include "Tourist.h"

namespace {

// What is done, step by step, and the picture that is taken then. Places are those of the document at 100
// percent. "is" waits for a colour, "not" for its end, "cursor" for the pointer of the system.
struct TStation {
  const char* fSteps;
  const char* fPicture;
};
constexpr TStation kStations[] = {
    {"arrive", "document"},
    {"palette", "tooltip"},
    {"tool; cursor 500 30 other; drag 500 30 590 90; is 545 60 fill; is 586 86 accent", "rectangle"},
    {"title *; key Ctrl+S; title; key F4; dialog Properties; type 480; key Enter; is 490 75 fill;"
     "key Alt+C; key Right 6; is 505 30 red",
     "properties"},
    {"key Esc; closed; hold Shift; key Down; is 490 97 fill; let-go Shift; key Left 3; is 480 90 fill;"
     "key Ctrl+Z; not 477 95 red; is 480 50 red; key Ctrl+Y; is 480 90 fill;"  // all of them at once
     "cursor 567 130 arrow; cursor 567 100 other; drag 567 100 580 110; is 575 104 fill",
     "handle"},
    // Without a selection the properties are those of new shapes.
    {"key Esc; not 576 106 accent; key F4; dialog Properties; key Alt+C; key Right 4;"
     "dialog-is 84 124 white; key Esc; closed; key E; drag 600 440 640 480; is 620 475 fill;"
     "key P; click 660 480; click 675 450; click 690 480; click 705 450; click 705 450; is 701 446 accent;"
     "key T; click 484 60; type Sketch; hold Shift; key Enter; let-go Shift; type tour",
     "typing"},
    {"key Enter; is 482 58 accent", "shapes"},
    {"key Esc; move 590 430; press; move 650 470; move 715 490; is 590 450 accent", "rubber-band"},
    // Both shapes at once, through the middle of the circle.
    {"release; not 590 450 accent; drag 620 460 600 460; is 583 460 fill; key Esc; not 580 440 accent;"
     "hold Shift; key Tab; is 482 58 accent; key Tab 2; is 576 436 accent; let-go Shift",
     "tab"},
    // The polyline beside the circle is added and removed, and the circle's first point moved.
    {"key Ctrl+Tab; is 635 465 mark; key Ctrl+Space; is 640 465 accent", "mark"},
    {"key Ctrl+Space; is 576 436 accent; key F2; is 580 440 mark; hold Shift; key Left; is 570 440 mark;"
     "let-go Shift; key Tab; is 595 440 mark",
     "points"},
    // The check box has the keys when a shape is selected that it is not for.
    {"key Esc; not 595 440 mark; key Ctrl+Z; is 576 436 accent; key F4; dialog Properties;"
     "key Alt+F; not 595 465 fill; key Alt+F; is 595 465 fill; key F4; front; key Tab 2; is 482 58 accent;"
     "key F4; dialog Properties; key Space; key Esc; closed; right-click 570 100; menu",
     "contextual-menu"},
    {"key L; gone; is 584 105 fill; key Ctrl+Z; not 584 105 fill; key Alt+E; menu", "menu"},
    {"key Esc; gone; key Esc; key Alt+D; menu", "debug-menu"},
    {"key M; gone; inspect 300 200", "inspector"},
    {"key Alt+D; menu; key M; gone; plain; key Ctrl+Alt+Shift+W; dialog Window List", "window-list"},
    {"key Alt+F4; closed; key Ctrl+A; is 482 58 accent; key Esc; not 482 58 accent;"
     "cursor 377 300 other; zoom; zoom; zoom",
     "zoom"},
    {"scroll -2", "scroll"},
    {"redraw; beyond 803 440", "drag-beyond"},
    {"key Esc; release; key Ctrl+9; key Ctrl+0; is 377 300 bar; is 490 75 fill;"
     "key Ctrl+Shift+P; dialog Document Settings; blocked",
     "settings"},
    {"type 780; key Enter; closed; sheet -10; is 377 300 bar; key Alt+A; menu; key A; dialog About Sketch;"
     "blocked",
     "about"},
    {"key Enter; closed; key Ctrl+A; key Ctrl+C; copied; key Ctrl+Shift+N; dialog Untitled*",
     "new-from-clipboard"},
    {"key Ctrl+W; dialog Sketch; key Alt+D; gone; front; key Esc; elsewhere Hello; key Ctrl+V; title *;"
     "is 28 28 accent",
     "pasted-text"},
    // Two colours, side by side, which can be moved, taken back and pulled larger like any shape.
    {"key Ctrl+Z; not 28 28 accent; bitmap red white; key Ctrl+V; is 40 60 red; is 100 60 white;"
     "key Right; is 70 60 red; key Ctrl+Z; is 70 60 white; drag 110 90 140 120; is 80 110 red; is 90 110 "
     "white",
     "pasted-picture"},
    {"key Ctrl+Z 2; not 40 60 red; key Ctrl+O; dialog Open; blocked", "open"},
    {"key Esc; closed; key Ctrl+Shift+S; dialog Save As; blocked; name Daylight.png", "save-as"},
    {"key Enter; closed; file Daylight.png; key Ctrl+O; dialog Open; name Daylight.png; key Enter; gone;"
     "dialog Sketch; blocked",
     "cannot-open"},
    {"key Enter; closed; key Ctrl+S; title; key Ctrl+N; dialog Untitled 2; key Alt+F; menu", "recent-files"},
    // From the menu, a file that is open comes to the front, and one that has been closed is opened again.
    {"key 1; closed; key Ctrl+W; dialog Untitled 2; key Alt+F; menu; key 1; gone; reopened;"
     "key Ctrl+A; key Right; key Left; title *; key Ctrl+W; dialog Sketch; blocked",
     "unsaved-changes"},
    // Given up, quitting leaves everything as it was; asked again, it asks again.
    {"key Esc; closed; key Alt+A; menu; key X; dialog Sketch", "quit"},
    {"key Esc; closed; palette-back; key Alt+A; menu; key X; dialog Sketch; key Enter; gone; end", nullptr}};

const std::map<std::string, unsigned> kColors = {{"fill", 0x7FB2F0},    // of new shapes
                                                 {"accent", 0x2F6FDE},  // handles, frames
                                                 {"bar", 0xF4D35E},     // of the document's chart, in June
                                                 {"mark", 0xE8590C},    // what keys are about
                                                 {"desk", 0xE3E6EA},   {"red", 0xC0392B},
                                                 {"white", 0xFFFFFF}};

const std::map<std::string, int> kKeys = {{"Ctrl", VK_CONTROL}, {"Shift", VK_SHIFT}, {"Alt", VK_MENU},
                                          {"Enter", VK_RETURN}, {"Esc", VK_ESCAPE},  {"Tab", VK_TAB},
                                          {"Space", VK_SPACE},  {"Left", VK_LEFT},   {"Right", VK_RIGHT},
                                          {"Down", VK_DOWN},    {"F2", VK_F2},       {"F4", VK_F4}};

// The program under way, and where things are in its window.
class CTour : public CTourist {
 public:
  CTour(std::wstring folder, std::wstring title) : CTourist(std::move(folder)), fTitle(std::move(title)) {}

  void Go() {
    for (const TStation& station : kStations) {
      std::istringstream steps(station.fSteps);
      while (std::getline(steps >> std::ws, fStep, ';')) {
        std::istringstream words(fStep);
        std::string verb;
        words >> verb;
        Do(verb, words);
      }
      if (station.fPicture) TakePicture(station.fPicture);
    }
  }

 private:
  using Words = std::istream&;

  void Do(const std::string& verb, Words words) {
    if (verb == "arrive") return Arrive();
    if (verb == "palette") return HoverOverPalette();
    if (verb == "tool") return Click(fTool), WaitUntilInFront(fWindow);
    if (verb == "zoom") return ZoomIn();
    if (verb == "inspect") return HoverUntil(Place(words), [this] { return IsHatched() && IsTipShown(); });
    if (verb == "plain") return WaitFor([this] { return !IsHatched(); });
    if (verb == "scroll") return ScrollBy(Number(words, 0));
    if (verb == "redraw") return Redraw();
    if (verb == "beyond") return DragBeyond(Place(words));
    if (verb == "sheet") return void(fSheet.x += Number(words, 0));

    if (verb == "key") return PressKeys(words);
    if (verb == "hold") return Hold(KeyOf(Word(words)));
    if (verb == "let-go") return SendKey(KeyOf(Word(words)), true);
    if (verb == "type") return Type(Word(words));
    if (verb == "name") return EnterName(Word(words));
    if (verb == "move") return MoveTo(Place(words));
    if (verb == "press") return Press();
    if (verb == "release") return Release();
    if (verb == "click") return Click(Place(words));
    if (verb == "right-click") return Click(Place(words), true);
    if (verb == "drag") {
      const POINT from = Place(words);
      return Drag(from, Place(words));
    }

    if (verb == "is" || verb == "not") return WaitForColor(words, fSheet, verb == "is");
    if (verb == "dialog-is") return WaitForColor(words, OriginOf(fDialog), true);
    if (verb == "cursor") {
      const POINT place = Place(words);
      return HoverUntilCursor(place, Word(words) == "arrow");
    }
    if (verb == "title") return WaitForTitle(fTitle + (Word(words) == "*" ? L"*" : L""));
    if (verb == "menu") return void(fDialog = WaitForWindow(L"#32768", nullptr));
    if (verb == "dialog") return WaitForDialog(words);
    if (verb == "gone") return WaitFor([this] { return !::IsWindowVisible(fDialog); });
    if (verb == "front") return WaitUntilInFront(fWindow);
    if (verb == "closed") return Do("gone", words), Do("front", words);
    if (verb == "blocked") return WaitFor([this] { return !::IsWindowEnabled(fWindow); });
    if (verb == "palette-back") return WaitFor([this] { return ::IsWindowVisible(fPalette) != 0; });
    if (verb == "copied") return WaitFor(IsPictureOnClipboard);
    if (verb == "elsewhere") return PutOnClipboard(CF_TEXT, Word(words) + '\0');
    if (verb == "bitmap") return PutOnClipboard(CF_DIB, Bitmap(words));
    if (verb == "file") return WaitForFile(Word(words));
    if (verb == "reopened") return Reopen();
    if (verb == "end") return WaitFor([this] { return !::IsWindow(fWindow); });
    throw XLost{"a verb: " + verb};
  }

  // --- Words
  static std::string Word(Words words) {
    std::string word;
    words >> word;
    return word;
  }
  static int Number(Words words, int otherwise) {
    int number = 0;
    return words >> number ? number : otherwise;
  }
  POINT Place(Words words) const {
    const LONG x = Number(words, 0);
    return {fSheet.x + x, fSheet.y + Number(words, 0)};
  }
  static int KeyOf(const std::string& name) { return name.size() == 1 ? name[0] : kKeys.at(name); }
  void PressKeys(Words words) const {
    std::istringstream names(Word(words));
    std::vector<int> keys;
    for (std::string name; std::getline(names, name, '+');) keys.push_back(KeyOf(name));
    for (int count = Number(words, 1); count > 0; --count) Key(keys);
  }
  void WaitForColor(Words words, const POINT& origin, bool wanted) const {
    const LONG x = origin.x + Number(words, 0);
    const LONG y = origin.y + Number(words, 0);
    const unsigned color = kColors.at(Word(words));
    WaitFor([=] { return (ColorAt({x, y}) == color) == wanted; });
  }
  void WaitForFile(const std::string& name) const {
    WaitFor([&] { return std::filesystem::exists(Folder() / name); });
  }
  // Into a file dialog, which can be in front before it takes keys.
  void EnterName(const std::string& name) const {
    constexpr int kNameComboBox = 1148;
    const HWND box = ::GetDlgItem(fDialog, kNameComboBox);
    Insist(
        [&] {
          wchar_t text[256] = {};
          ::SendMessageW(box, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
          return std::wstring(text) == std::wstring(name.begin(), name.end());
        },
        [&] {
          Key({VK_MENU, 'N'});  // to the name, all of which is selected then
          Type(name);
        });
  }
  // What another program finds: a text and a bitmap.
  static bool IsPictureOnClipboard() {
    if (!::IsClipboardFormatAvailable(CF_UNICODETEXT) || !::OpenClipboard(nullptr)) return false;
    const auto* const header = static_cast<const BITMAPINFOHEADER*>(::GlobalLock(::GetClipboardData(CF_DIB)));
    const bool isPicture = header && header->biWidth > 700 && header->biHeight > 500;
    ::CloseClipboard();
    return isPicture;
  }
  // What another program copies.
  void PutOnClipboard(UINT format, const std::string& bytes) const {
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    bytes.copy(static_cast<char*>(::GlobalLock(block)), bytes.size());
    ::GlobalUnlock(block);
    WaitFor([] { return ::OpenClipboard(nullptr) != FALSE; });
    ::EmptyClipboard();
    ::SetClipboardData(format, block);
    ::CloseClipboard();
  }
  // Of 80 by 60 pixels: one colour in the left half and another one in the right half.
  static std::string Bitmap(Words words) {
    const BITMAPINFOHEADER info = {sizeof(info), 80, 60, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::string bytes(reinterpret_cast<const char*>(&info), sizeof(info));
    const unsigned left = kColors.at(Word(words));
    const unsigned right = kColors.at(Word(words));
    for (int i = 0; i < 80 * 60; ++i)
      bytes.append(reinterpret_cast<const char*>(i % 80 < 40 ? &left : &right), sizeof(left));
    return bytes;
  }
  void WaitForTitle(const std::wstring& title) const {
    WaitFor([&] {
      wchar_t now[256] = {};
      ::GetWindowTextW(fWindow, now, 256);
      return now == title;
    });
  }
  void WaitForDialog(Words words) {
    std::string title;
    std::getline(words >> std::ws, title);
    fDialog = WaitForWindow(nullptr, std::wstring(title.begin(), title.end()).c_str());
    WaitUntilInFront(fDialog);
  }

  // --- Places
  static POINT OriginOf(HWND window) {
    POINT origin = {0, 0};
    ::ClientToScreen(window, &origin);
    return origin;
  }
  void Reopen() {
    fWindow = WaitForWindow(nullptr, fTitle.c_str());
    WaitUntilInFront(fWindow);
  }
  void Arrive() {
    fWindow = WaitForWindow(nullptr, fTitle.c_str());
    fPalette = WaitForWindow(nullptr, L"Tools");
    WaitUntilInFront(fWindow);
    WaitFor([this] { return ::GetMenu(fWindow) != nullptr; }, "a menu bar");
    RECT client = {};
    ::GetClientRect(fWindow, &client);
    const POINT origin = OriginOf(fWindow);
    // The sheet of 760 by 560 is in the middle of what side panel and status line leave free.
    fCanvas = {origin.x, origin.y, origin.x + client.right - 208, origin.y + client.bottom - 26};
    fSheet = {(fCanvas.left + fCanvas.right - 760) / 2, (fCanvas.top + fCanvas.bottom - 560) / 2};
    const POINT bar = {fSheet.x + 377, fSheet.y + 300};
    WaitFor([=] { return ColorAt(bar) == kColors.at("bar"); }, "a bar of the chart");
    fArrow = Cursor();
    HoverUntilCursor(bar, false);  // the arrows over a shape
    const HCURSOR arrows = Cursor();
    HoverUntil({fCanvas.left + 20, fCanvas.bottom - 20}, [&] { return Cursor() != arrows; });
    fArrow = Cursor();
  }
  // The third button.
  void HoverOverPalette() {
    RECT client = {};
    ::GetClientRect(fPalette, &client);
    const POINT origin = OriginOf(fPalette);
    fTool = {origin.x + client.right / 2, origin.y + 3 + 2 * 39 + 18};
    Click({fTool.x, fTool.y + 19});  // beside the buttons: tips appear in the active window
    WaitUntilInFront(fPalette);
    HoverUntil(fTool, IsTipShown);
  }
  static bool IsTipShown() {
    HWND tip = nullptr;
    do tip = ::FindWindowExW(nullptr, tip, L"tooltips_class32", nullptr);
    while (tip && !::IsWindowVisible(tip));
    return tip != nullptr;
  }
  // Whether the library marks a view of the canvas.
  bool IsHatched() const {
    constexpr std::uint32_t kFallingLines = 0x7FBF7F;
    return std::ranges::count(Look(fCanvas), kFallingLines) > 1000;
  }

  // --- The pointer and the canvas
  static HCURSOR Cursor() {
    CURSORINFO info = {};
    info.cbSize = sizeof(info);
    ::GetCursorInfo(&info);
    return info.hCursor;
  }
  void HoverUntilCursor(const POINT& place, bool isArrow) const {
    HoverUntil(place, [=, this] { return (Cursor() == fArrow) == isArrow; });
  }
  // Does something until the canvas looks different.
  void ChangeCanvas(const std::function<void()>& action) const {
    const auto before = Look(fCanvas);
    Insist([&] { return Look(fCanvas) != before; }, action);
  }
  // Zooms with Ctrl and the wheel. A display can take the key back before the wheel is seen, and does so
  // again and again on a busy machine: then it is done with the shortcut.
  void ZoomIn() const {
    ChangeCanvas([this, tries = 0]() mutable {
      if (tries++ < 2) {
        Hold(VK_CONTROL);
        Wheel(1);
      } else {
        SendKey(VK_CONTROL, true);
        Key({VK_CONTROL, VK_OEM_PLUS});
      }
    });
    SendKey(VK_CONTROL, true);
  }
  void ScrollBy(int notches) const {
    ChangeCanvas([=, this] { Wheel(notches); });
  }
  // After scrolling, what was moved is the same as what is drawn anew.
  void Redraw() const {
    const auto scrolled = Look(fCanvas);
    Key({VK_CONTROL, 'G'});
    WaitFor([&] { return Look(fCanvas) != scrolled; });
    Key({VK_CONTROL, 'G'});
    WaitFor([&] { return Look(fCanvas) == scrolled; });
  }
  // Drags until the end of the sheet is in sight.
  void DragBeyond(const POINT& from) const {
    MoveTo(from);
    Press();
    MoveTo({from.x, fCanvas.bottom + 10});
    WaitFor([this] { return ColorAt({fCanvas.left + 200, fCanvas.bottom - 2}) == kColors.at("desk"); });
  }

  const std::wstring fTitle;
  HWND fWindow = nullptr;
  HWND fPalette = nullptr;
  HWND fDialog = nullptr;  // or a menu
  HCURSOR fArrow = nullptr;
  RECT fCanvas = {};
  POINT fSheet = {};
  POINT fTool = {};
};

}  // namespace

int wmain(int argumentCount, wchar_t** arguments) {
  if (argumentCount != 4) return 2;
  const std::filesystem::path document = arguments[2];
  std::wstring command = L"\"" + std::wstring(arguments[1]) + L"\" /debug \"" + document.wstring() + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
    std::printf("%ls cannot be started\n", arguments[1]);
    return 2;
  }
  CTour tour(arguments[3], document.filename().wstring());
  DWORD code = 1;
  try {
    tour.Go();
    tour.WaitFor([&] { return ::WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; });
    ::GetExitCodeProcess(process.hProcess, &code);
    std::printf("The program ended with %lu\n", code);
  } catch (const XLost& lost) {
    std::printf("Waited in vain: %s\n", lost.fStep.c_str());
    tour.TakePictureAtOnce("lost");
    ::TerminateProcess(process.hProcess, 1);
  }
  return static_cast<int>(code);
}
