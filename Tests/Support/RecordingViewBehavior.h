// A view's behaviour that writes down what it is told. Several of them share one log.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Interface/MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

using Log = std::vector<std::string>;

// Lines look like "name Offset 3 -1". GetHitRects and GetNativeFocusTarget come too often to be of interest.
class RecordingViewBehavior : public CDefaultViewBehavior {
 public:
  RecordingViewBehavior(std::string name, std::shared_ptr<Log> log)
      : fName(std::move(name)), fLog(std::move(log)) {}
  // For a log that outlives the behaviour.
  RecordingViewBehavior(std::string name, Log& log)
      : RecordingViewBehavior(std::move(name), std::shared_ptr<Log>(std::shared_ptr<Log>(), &log)) {}
  ~RecordingViewBehavior() override {
    Write("Deleted");
    if (fOnDeleted) fOnDeleted();
  }

  // What was set below, as it was in the beginning.
  void Reset() {
    fHitRects.clear();
    fError = kOK;
    fOnCall = nullptr;
    fOnDraw = nullptr;
    fOnDeleted = nullptr;
  }

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    Write("Draw");
    if (fOnDraw) fOnDraw(tools);
    return Called();
  }
  TError IViewBehavior_PostProcessDraw(IDrawTools&) override { return Called("PostProcessDraw"); }
  TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) override {
    return Called("Offset " + std::to_string(dx) + " " + std::to_string(dy));
  }
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag enabled) override {
    return Called("Enabled " + std::to_string(enabled));
  }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    return Called("Focus " + std::to_string(gained));
  }
  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    if (!fHitRects.empty())
      out.IRectsGetter_AddRects(fHitRects.data(), static_cast<std::uint32_t>(fHitRects.size()));
    return Called();
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = nullptr;
    return Called();
  }

  std::vector<TRect> fHitRects;
  TError fError = kOK;                       // what every call returns
  std::function<void()> fOnCall;             // in every call, after the line was written; may end the view
  std::function<void(IDrawTools&)> fOnDraw;  // in Draw
  std::function<void()> fOnDeleted;

 private:
  void Write(const std::string& what) { fLog->push_back(fName + " " + what); }
  TError Called() {
    const TError error = fError;
    // A copy: the object may be gone behind the call.
    if (const std::function<void()> onCall = fOnCall) onCall();
    return error;
  }
  TError Called(const std::string& what) {
    Write(what);
    return Called();
  }

  std::string fName;
  std::shared_ptr<Log> fLog;
};

}  // namespace NSMorvaneTest
