// The version record of this build.
#include "own.h"

namespace {
const vnxLibraryVersion kVersion = {5, 2, 108, 398, {'t', '7', '\0', '\0'}, "vnxcvt7-5.2.dll", "5.2", "Jul 11 2007"};
}

VNX_API const vnxLibraryVersion* vnxcvGetLibVersion(void) noexcept { return &kVersion; }
