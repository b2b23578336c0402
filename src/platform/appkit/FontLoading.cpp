// SPDX-License-Identifier: MIT
#include "platform/appkit/FontLoading.h"

#include <fontconfig/fontconfig.h>

namespace quoddle {

/// The font library initialises itself once in a process, and callers on other threads wait for that.
FontLoading::FontLoading() : mThread([] { FcInit(); }) {}

FontLoading::~FontLoading() {
    mThread.join();
}

} // namespace quoddle
