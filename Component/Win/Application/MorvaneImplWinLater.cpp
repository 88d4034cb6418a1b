// Every operation of the root object that this build does not have. Those that a client can call give
// kUnsupported.
#include "Component/Win/Application/MorvaneImplWin.h"

namespace NSMorvane {

namespace {

[[noreturn]] void ThrowUnsupported() { MORVANE_THROW(XUnsupportedInterface()); }

}  // namespace

// --- What the run loop calls

// The system report is not built yet.
void CMorvaneImpl::LogSystemReport() {}

// File dialogs are not built yet: nobody sends these messages.
void CMorvaneImpl::OnFileDialogMessage(UINT, LPARAM) { ThrowUnsupported(); }

// --- File dialogs

void CMorvaneImpl::CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior*, std::uint32_t, IModalOwner*, bool,
                                                   const TString&, const std::vector<TFileType>&,
                                                   const TString&) {
  ThrowUnsupported();
}

void CMorvaneImpl::CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior*, std::uint32_t, IModalOwner*, bool,
                                                 bool, const std::vector<TFileType>&, const TString&,
                                                 IOpenDialogCustomizeBehavior*) {
  ThrowUnsupported();
}

void CMorvaneImpl::CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior*, std::uint32_t,
                                                             IModalOwner*, bool, const TString&) {
  ThrowUnsupported();
}

}  // namespace NSMorvane
