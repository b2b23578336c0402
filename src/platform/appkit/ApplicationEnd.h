// SPDX-License-Identifier: MIT
// How the toolkit's application object of a program with windows ends.
#pragma once

#include <memory>

#include <QGuiApplication>

namespace quoddle {

/// Destroys an application object, but not on Wayland. There its destructor waits for the threads that read the compositor's events, and
/// now and then one of them waits for the other, so that the process would stay for ever (Qt 6.4 and 6.8). The process ends a moment later.
struct ApplicationEnd {
    void operator()(QGuiApplication* application) const {
        if (QGuiApplication::platformName() != QLatin1StringView("wayland"))
            delete application;
    }
};

template<class Application>
using ApplicationPointer = std::unique_ptr<Application, ApplicationEnd>;

} // namespace quoddle
