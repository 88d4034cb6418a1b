// Every operation of the root object that this build does not have.
#include "Component/Win/Application/MorvaneImplWin.h"

namespace NSMorvane {

// --- What the run loop calls

// The system report is not built yet.
void CMorvaneImpl::LogSystemReport() {}

}  // namespace NSMorvane
