// SPDX-License-Identifier: MIT
#include "platform/appkit/FontLoading.h"

#include <fontconfig/fontconfig.h>

namespace quoddle {

/// The library does this once in a process; who asks while it goes on waits for it.
FontLoading::FontLoading() : mThread([] { FcInit(); }) {}

FontLoading::~FontLoading() {
    mThread.join();
}

} // namespace quoddle
