// Measures the library beside plain GDI that does the same work, in one run, and prints a table.
#include <windows.h>

#include <process.h>
#include <psapi.h>

#include <cstdio>
#include <optional>
#include <vector>

#include "BenchStart.h"
#include "EventRows.h"
#include "LibraryWindow.h"
#include "Measure.h"
#include "PlainWindow.h"

namespace NSBench {

namespace {

// --- The pixels of a window

class CClientPixels {
 public:
  explicit CClientPixels(HWND hwnd) : fPixels(std::size_t{kClientWidth} * kClientHeight) {
    const HDC hdc = GetDC(hwnd);
    const HDC memory = CreateCompatibleDC(hdc);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = kClientWidth;
    info.bmiHeader.biHeight = -kClientHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, kClientWidth, kClientHeight, hdc, 0, 0, SRCCOPY);
    GdiFlush();
    for (std::size_t i = 0; i < fPixels.size(); ++i)
      fPixels[i] = static_cast<const std::uint32_t*>(bits)[i] & 0xFFFFFF;
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(hwnd, hdc);
  }
  friend bool operator==(const CClientPixels& a, const CClientPixels& b) { return a.fPixels == b.fPixels; }

 private:
  std::vector<std::uint32_t> fPixels;
};

// --- Memory

std::size_t PrivateBytes() {
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof(counters));
  return counters.PrivateUsage != 0 ? counters.PrivateUsage : counters.PagefileUsage;
}

// What views take, with an empty behaviour each; and the whole process, with what the system has in it.
void PrintMemory(IMorvane& morvane, const TOptions& options) {
  if (!options.Wants("memory")) return;
  IDocumentWindow& window = CreateLibraryWindow(morvane);
  IView& root = RootViewOf(window);
  std::vector<CViewOf<CEmptyView>> views(11000);
  std::size_t made = 0;
  const auto make = [&](std::size_t count) {
    while (count-- > 0)
      ThrowIfFailed(views[made++].Create(morvane, root, "View", ViewParams(kViewDrawDirect)));
    return PrivateBytes();
  };
  const std::size_t withFew = make(1000);
  const std::size_t withMany = make(10000);
  std::printf(
      "- Memory: %.1f MiB with a window of 1,000 views, %.1f MiB with 11,000; %.0f bytes for a view\n",
      static_cast<double>(withFew) / (1 << 20), static_cast<double>(withMany) / (1 << 20),
      static_cast<double>(withMany - withFew) / 10000);
  std::fflush(stdout);
  views.clear();
  window.IDocumentWindow_Release();
}

// --- Rows of frames

// The font that the application sets at the start of each drawing, while this exists; null for none.
class CSharedFont {
 public:
  explicit CSharedFont(HFONT font) { gFont = font; }
  ~CSharedFont() { gFont = nullptr; }
  static HFONT Get() { return gFont; }

 private:
  static inline HFONT gFont = nullptr;
};

using TFrame = std::function<void()>;

class CFrameRows {
 public:
  CFrameRows(IMorvane& morvane, const TOptions& options)
      : fMorvane(morvane), fOptions(options), fWindow(CreateLibraryWindow(morvane)) {}
  ~CFrameRows() { fWindow.IDocumentWindow_Release(); }

  void MeasureAll() {
    using enum TCellText;
    MeasureFullRepaint({"full", "All of 1,000 views repainted", "at least 0.87", kRate}, {kNone});
    MeasureFullRepaint({"full-text", "The same with four characters in each", "at least 0.75", kRate},
                       {kPortsFont});
    MeasureFullRepaint(
        {"text-shared-font", "The same in a font that is set once, at the start of the drawing",
         "at least 0.85", kRate},
        {.fLibrary = kPortsFont, .fPlain = kPortsFont, .fFontIsShared = true, .fPlainFontIsShared = true});
    MeasureFullRepaint(
        {"text-own-font", "The same in a font that each view selects and puts back", "at least 0.9", kRate},
        {.fLibrary = kOwnFont, .fPlain = kOwnFont});
    MeasureFullRepaint({"text-opened-font",
                        "The same; each view opens its port with it, and plain GDI selects it once for all",
                        "more than 0.36", kRate},
                       {.fLibrary = kOpenedFont, .fPlain = kPortsFont, .fPlainFontIsShared = true});
    MeasureFullRepaint({"nested", "1,000 views repainted, in stacks of ten", "at least 0.8", kRate},
                       {.fArrangement = TArrangement::kStacked, .fCells = StackedCells()});
    MeasureOneView({"one-100", "One view of 100 repainted", "at least 0.90", kRate}, TArrangement::kDirect,
                   100);
    MeasureOneView({"one", "One view of 1,000 repainted", "at least 0.90", kRate}, TArrangement::kDirect,
                   1000);
    MeasureOneView({"one-10000", "One view of 10,000 repainted", "at least 0.95", kRate},
                   TArrangement::kDirect, 10000);
    MeasureOneView({"one-buffered", "One view of 1,000 in a view with a bitmap repainted", "", kRate},
                   TArrangement::kBuffered, 1000);
    MeasureCorners({"corners", "Two views of 1,000 in opposite corners repainted", "", kRate});
    MeasureDragging({"drag", "A view of 60 by 40 pixels moved over 1,000 views", "at least 0.9", kRate});
    MeasureResizing({"resize", "The window grows, and 1,000 views are laid out anew", "at least 0.8", kRate});
    MeasureScrolling(
        {"scroll", "1,000 views scrolled by 8 pixels, with plain GDI doing the same", "", kRate},
        {"scroll-repaint", "1,000 views scrolled by 8 pixels, with the library repainting them all",
         "at least 5", kRate},
        TCellText::kNone);
    MeasureScrolling({"scroll-text", "The first of the two with four characters in each", "", kRate},
                     {"scroll-repaint-text", "The second of the two with four characters in each", "", kRate},
                     TCellText::kPortsFont);
  }

 private:
  static constexpr char kRate[] = "frames/s";

  // What the two sides of a full repaint draw.
  struct TFullRepaint {
    TCellText fLibrary = TCellText::kNone;
    TCellText fPlain = fLibrary;
    bool fFontIsShared = false;
    bool fPlainFontIsShared = false;
    TArrangement fArrangement = TArrangement::kDirect;
    TCells fCells = Cells(kCellsInClient);
  };

  // A side that draws `cells` cells in a frame; 0 for any number of them.
  TSample Side(CCellPainter& painter, std::uint64_t cells, TFrame frame) {
    return [this, &painter, cells, frame = std::move(frame)] {
      return FramesPerSecond(fOptions.fSampleSeconds, [&] {
        painter.TakeCount();
        frame();
        const std::uint64_t drawn = painter.TakeCount();
        Require(cells == 0 ? drawn > 0 : drawn == cells,
                std::to_string(drawn) + " cells in a frame, and not " + std::to_string(cells));
      });
    };
  }

  // The plain window is there only while it is measured, and then in front.
  TSample PlainSide(CPlainWindow& window, TSample sample) {
    return [&window, sample = std::move(sample)] {
      window.Show(true);
      const double result = sample();
      window.Show(false);
      return result;
    };
  }

  void RequireSamePixels(const CCellScene& scene, CPlainWindow& plain) {
    const CClientPixels library(scene.Hwnd());
    plain.Show(true);
    const bool same = library == CClientPixels(plain.Hwnd());
    plain.Show(false);
    Require(same, "the two windows do not look the same");
  }

  // Measures frames of a scene beside those of a plain window with the same cells.
  void MeasureFrames(const TRowTexts& texts, CCellPainter& painter, CCellScene& scene,
                     CCellPainter& plainPainter, CPlainWindow& plain, std::uint64_t cells,
                     std::uint64_t plainCells, TFrame frame, TFrame plainFrame) {
    RequireSamePixels(scene, plain);
    PrintRow(texts, Compare(fOptions, Side(painter, cells, std::move(frame)),
                            PlainSide(plain, Side(plainPainter, plainCells, std::move(plainFrame)))));
  }

  void MeasureFullRepaint(const TRowTexts& texts, const TFullRepaint& what) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(what.fLibrary);
    CCellPainter plainPainter(what.fPlain);
    const CSharedFont sharedFont(what.fFontIsShared ? painter.GetFont() : nullptr);
    CCellScene scene(fMorvane, fWindow, what.fArrangement, painter, what.fCells);
    CPlainWindow plain(plainPainter, what.fCells);
    if (what.fPlainFontIsShared) plain.SelectFont(plainPainter.GetFont());
    MeasureFrames(
        texts, painter, scene, plainPainter, plain, kCellsInClient, kCellsInClient, [&] { scene.PaintAll(); },
        [&] {
          plain.Paint({0, 0, kClientWidth, kClientHeight});
        });
    RequireSamePixels(scene, plain);
  }

  void MeasureOneView(const TRowTexts& texts, TArrangement arrangement, int cellCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(TCellText::kNone);
    CCellScene scene(fMorvane, fWindow, arrangement, painter, Cells(cellCount));
    CPlainWindow plain(painter, Cells(cellCount));
    MeasureFrames(
        texts, painter, scene, painter, plain, 1, 1, [&] { scene.PaintOne(); },
        [&] { plain.Paint(CellRect(kDirtyCell)); });
    RequireSamePixels(scene, plain);
  }

  // The box of what is dirty is the whole client area on both sides; plain GDI draws all that lies in it too.
  void MeasureCorners(const TRowTexts& texts) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(TCellText::kNone);
    CCellScene scene(fMorvane, fWindow, TArrangement::kDirect, painter, Cells(kCellsInClient));
    CPlainWindow plain(painter, Cells(kCellsInClient));
    MeasureFrames(
        texts, painter, scene, painter, plain, 0, 2, [&] { scene.PaintFirstAndLast(); },
        [&] {
          plain.Paint(CellRect(0));
          plain.Paint(CellRect(kCellsInClient - 1));
        });
  }

  void MeasureDragging(const TRowTexts& texts) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    TCells cells = Cells(kCellsInClient);
    cells.push_back({0, 0, 60, 40});
    CCellPainter painter(TCellText::kNone);
    CCellScene scene(fMorvane, fWindow, TArrangement::kDragged, painter, cells);
    CPlainWindow plain(painter, cells);
    CDrag drag, plainDrag;
    MeasureFrames(
        texts, painter, scene, painter, plain, 0, 0,
        [&] { drag.Step([&](int dx, int dy) { scene.MoveLastCell(dx, dy); }); },
        [&] { plainDrag.Step([&](int dx, int dy) { plain.MoveLastCell(dx, dy); }); });
  }

  // Five pixels to the right and none to five down, so that each box of what is dirty differs from the one
  // before; back to the start from the far side.
  class CDrag {
   public:
    void Step(const std::function<void(int, int)>& move) {
      int dx = 5;
      int dy = fStep++ % 6;
      if (fX + 65 > kClientWidth || fY + 45 > kClientHeight) {
        dx = -fX;
        dy = -fY;
      }
      fX += dx;
      fY += dy;
      move(dx, dy);
    }

   private:
    int fStep = 0;
    int fX = 0;
    int fY = 0;
  };

  void MeasureResizing(const TRowTexts& texts) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(TCellText::kNone);
    CCellScene scene(fMorvane, fWindow, TArrangement::kDirect, painter, Cells(kCellsInClient));
    CPlainWindow plain(painter, Cells(kCellsInClient));
    const auto grow = [](auto& window) {
      return [&window, step = 0]() mutable {
        window.Resize(kClientWidth + 2 * step, kClientHeight + 2 * step);
        step = (step + 1) % ((kLargestWidth - kClientWidth) / 2);
      };
    };
    MeasureFrames(texts, painter, scene, painter, plain, 0, 0, grow(scene), grow(plain));
    ResizeClient(HwndOf(fWindow), kClientWidth, kClientHeight);
  }

  void MeasureScrolling(const TRowTexts& againstPlain, const TRowTexts& againstRepaint, TCellText text) {
    const bool wantsPlain = fOptions.Wants(againstPlain.fName);
    const bool wantsRepaint = fOptions.Wants(againstRepaint.fName);
    if (!wantsPlain && !wantsRepaint) return;
    Progress(againstPlain.fName);
    CCellPainter painter(text);
    CCellScene scene(fMorvane, fWindow, TArrangement::kScrolled, painter, Cells(kCellsInClient));
    CPlainWindow plain(painter, Cells(kCellsInClient), kScrolledHeight);
    int libraryDistance = 8;
    const TSample scroll =
        Side(painter, kCellColumns, [&] { scene.Scroll(libraryDistance = -libraryDistance); });
    if (wantsPlain) {
      int plainDistance = 8;
      PrintRow(againstPlain,
               Compare(fOptions, scroll, PlainSide(plain, Side(painter, kCellColumns, [&] {
                                                     plain.Scroll(plainDistance = -plainDistance);
                                                   }))));
    }
    if (wantsRepaint)
      PrintRow(againstRepaint,
               Compare(fOptions, scroll, Side(painter, kCellsInClient, [&] { scene.PaintAll(); })));
  }

  IMorvane& fMorvane;
  const TOptions& fOptions;
  IDocumentWindow& fWindow;
};

class CBenchRun : public CDefaultApplication {
 public:
  CBenchRun(IMorvane& morvane, const TOptions& options) : CDefaultApplication(morvane), fOptions(options) {}

  TError IMorvaneRunBehavior_OnStartUp() override {
    const TError error = fMorvane.IMorvane_SetDebugSettings(TDebugSettings{});
    return error == kOK ? fMorvane.IMorvane_PostAppMessage(0, 0) : error;
  }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override {
    return Guarded([&] {
      CFrameRows(fMorvane, fOptions).MeasureAll();
      MeasureEvents(fMorvane, fOptions);
      MeasureWindows(fMorvane, fOptions);
      PrintMemory(fMorvane, fOptions);
      return TError{kOK};
    });
  }
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) override {
    if (CSharedFont::Get() == nullptr) return kOK;
    const COpenPort port(tools);
    SelectObject(port, CSharedFont::Get());
    SetBkMode(port, TRANSPARENT);
    return kOK;
  }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) override { return FillMenuBar(state); }
  TError IMorvaneRunBehavior_OnQuitEvent() override { return fMorvane.IMorvane_StartQuitting(); }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    Require(false, "the library reports the error " + std::to_string(error));
    return kOK;
  }

 private:
  const TOptions& fOptions;
};

// --- The machine

std::string ProcessorName() {
  char name[128] = "unknown";
  DWORD size = sizeof(name) - 1;
  RegGetValueA(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
               "ProcessorNameString", RRF_RT_REG_SZ, nullptr, name, &size);
  return name;
}

std::string SystemName() {
  using TGetVersion = const char*(CDECL*)();
  const FARPROC function = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
  if (function == nullptr) return "Windows";
  // By way of a pointer to anything, since the compiler minds the direct one.
  return std::string("Wine ") + reinterpret_cast<TGetVersion>(reinterpret_cast<void*>(function))();
}

void PrintMachine(const TOptions& options) {
  SYSTEM_INFO system;
  GetSystemInfo(&system);
  const HDC screen = GetDC(nullptr);
  std::printf("- Machine: %lu processors, %s\n", system.dwNumberOfProcessors, ProcessorName().c_str());
  std::printf("- System: %s, screen of %d by %d with %d bits\n", SystemName().c_str(),
              GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN), GetDeviceCaps(screen, BITSPIXEL));
  ReleaseDC(nullptr, screen);
#ifdef __VERSION__
  std::printf("- Compiler: %s, %d bits\n", __VERSION__, static_cast<int>(sizeof(void*) * 8));
#endif
  std::printf("- Samples: %d of each side, in turn; frames for %.0f ms each\n\n", options.fSamples,
              options.fSampleSeconds * 1000);
}

// The rows of the program beside this one, with the same options; its exit code.
int RunPortableRows(int argumentCount, char** arguments) {
  std::fflush(stdout);
  const std::string own = arguments[0];
  const std::string program = own.substr(0, own.find_last_of("\\/") + 1) + "BenchPortable.exe";
  std::vector<const char*> list = {"BenchPortable"};
  list.insert(list.end(), arguments + 1, arguments + argumentCount);
  list.push_back(nullptr);
  return static_cast<int>(_spawnv(_P_WAIT, program.c_str(), list.data()));
}

}  // namespace

}  // namespace NSBench

int main(int argumentCount, char** arguments) {
  using namespace NSBench;
  TOptions options;
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  PrintMachine(options);
  PrintTableHead();
  const int code = RunApplication<CBenchRun>(StartupParams(u"Morvane", u"Bench"), options);
  if (code != 0) return code;
  if (options.Wants("start")) MeasureStart(options);
  return RunPortableRows(argumentCount, arguments);
}
