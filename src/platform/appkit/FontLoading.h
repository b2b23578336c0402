// SPDX-License-Identifier: MIT
// Reads the system's fonts ahead on a thread of its own. The font library reads its configuration and the list of all fonts when the first
// text is measured: that is a third of all that a program does until its first window is painted. A FontLoading made before the application
// object moves that to another core, while libraries are loaded and the display is asked.
#pragma once

#include <thread>

namespace quoddle {

class FontLoading {
public:
    FontLoading();
    /// Waits until the fonts have been read.
    ~FontLoading();
    FontLoading(const FontLoading&) = delete;
    FontLoading& operator=(const FontLoading&) = delete;

private:
    std::thread mThread;
};

} // namespace quoddle
