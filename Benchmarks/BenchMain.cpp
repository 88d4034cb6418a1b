// Measures the library beside plain GDI that does the same work, in one run, and prints a table.
#include <windows.h>

#include <process.h>

#include <cstdio>
#include <cstring>
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

// --- Rows of frames

using TFrame = std::function<void()>;

class CFrameRows {
 public:
  CFrameRows(IMorvane& morvane, const TOptions& options)
      : fMorvane(morvane), fOptions(options), fWindow(CreateLibraryWindow(morvane)) {}
  ~CFrameRows() { fWindow.IDocumentWindow_Release(); }

  void MeasureAll() {
    MeasureFullRepaint({"full", "All of 1,000 views repainted", "at least 0.87", kRate}, false);
    MeasureFullRepaint({"full-text", "The same with four characters in each", "at least 0.75", kRate}, true);
    MeasureOneView({"one-100", "One view of 100 repainted", "at least 0.90", kRate}, TArrangement::kDirect,
                   100);
    MeasureOneView({"one", "One view of 1,000 repainted", "at least 0.90", kRate}, TArrangement::kDirect,
                   1000);
    MeasureOneView({"one-10000", "One view of 10,000 repainted", "at least 0.90", kRate},
                   TArrangement::kDirect, 10000);
    MeasureOneView({"one-buffered", "One view of 1,000 in a view with a bitmap repainted", "", kRate},
                   TArrangement::kBuffered, 1000);
    MeasureScrolling(
        {"scroll", "1,000 views scrolled by 8 pixels, with plain GDI doing the same", "", kRate},
        {"scroll-repaint", "1,000 views scrolled by 8 pixels, with the library repainting them all",
         "at least 5", kRate},
        false);
    MeasureScrolling({"scroll-text", "The first of the two with four characters in each", "", kRate},
                     {"scroll-repaint-text", "The second of the two with four characters in each", "", kRate},
                     true);
  }

 private:
  static constexpr char kRate[] = "frames/s";

  // A side that draws `cells` cells in a frame.
  TSample Side(CCellPainter& painter, std::uint64_t cells, TFrame frame) {
    return [this, &painter, cells, frame = std::move(frame)] {
      return FramesPerSecond(fOptions.fSampleSeconds, [&] {
        painter.TakeCount();
        frame();
        const std::uint64_t drawn = painter.TakeCount();
        Require(drawn == cells,
                std::to_string(drawn) + " cells in a frame, and not " + std::to_string(cells));
      });
    };
  }

  // The plain window is there only while it is measured, and then in front.
  TSample PlainSide(CPlainWindow& window, CCellPainter& painter, std::uint64_t cells, TFrame frame) {
    return [&window, sample = Side(painter, cells, std::move(frame))] {
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

  void MeasureFullRepaint(const TRowTexts& texts, bool withText) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(withText);
    CCellScene scene(fMorvane, fWindow, TArrangement::kDirect, painter, kCellsInClient);
    CPlainWindow plain(painter, kCellsInClient);
    RequireSamePixels(scene, plain);
    PrintRow(texts, Compare(fOptions, Side(painter, kCellsInClient, [&] { scene.PaintAll(); }),
                            PlainSide(plain, painter, kCellsInClient, [&] {
                              plain.Paint({0, 0, kClientWidth, kClientHeight});
                            })));
    RequireSamePixels(scene, plain);
  }

  void MeasureOneView(const TRowTexts& texts, TArrangement arrangement, int cellCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CCellPainter painter(false);
    CCellScene scene(fMorvane, fWindow, arrangement, painter, cellCount);
    CPlainWindow plain(painter, cellCount);
    RequireSamePixels(scene, plain);
    PrintRow(texts, Compare(fOptions, Side(painter, 1, [&] { scene.PaintOne(); }),
                            PlainSide(plain, painter, 1, [&] { plain.Paint(CellRect(kDirtyCell)); })));
    RequireSamePixels(scene, plain);
  }

  void MeasureScrolling(const TRowTexts& againstPlain, const TRowTexts& againstRepaint, bool withText) {
    const bool wantsPlain = fOptions.Wants(againstPlain.fName);
    const bool wantsRepaint = fOptions.Wants(againstRepaint.fName);
    if (!wantsPlain && !wantsRepaint) return;
    Progress(againstPlain.fName);
    CCellPainter painter(withText);
    CCellScene scene(fMorvane, fWindow, TArrangement::kScrolled, painter, kCellsInClient);
    CPlainWindow plain(painter, kCellsInClient, kScrolledHeight);
    int libraryDistance = 8;
    const TSample scroll =
        Side(painter, kCellColumns, [&] { scene.Scroll(libraryDistance = -libraryDistance); });
    if (wantsPlain) {
      int plainDistance = 8;
      PrintRow(againstPlain, Compare(fOptions, scroll, PlainSide(plain, painter, kCellColumns, [&] {
                                       plain.Scroll(plainDistance = -plainDistance);
                                     })));
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
      return TError{kOK};
    });
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
  const std::size_t prefix = std::strlen(kStartOption);
  if (argumentCount == 2 && std::strncmp(arguments[1], kStartOption, prefix) == 0)
    return RunAsStarted(arguments[1] + prefix);
  TOptions options;
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  PrintMachine(options);
  PrintTableHead();
  const int code = RunApplication<CBenchRun>(StartupParams(u"Morvane", u"Bench"), options);
  if (code != 0) return code;
  if (options.Wants("start")) MeasureStart(options);
  return RunPortableRows(argumentCount, arguments);
}
