// SPDX-License-Identifier: MIT
// Requests without a bus: which ones are taken and which are refused. Requests from other processes are in the end-to-end tests.
#include "platform/appkit/DesktopApplication.h"

#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Arrival = DesktopApplication::Arrival;

TEST(DesktopApplicationTest, WithoutABusThereIsNothingToWaitFor) {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS"), runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    DesktopApplication desktop(u"applet-com.example.a"_s);
    desktop.connectToBus();
    EXPECT_EQ(desktop.waitForRequest(1h), Arrival::nothing);
    address.isEmpty() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS") : qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    runtime.isEmpty() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", runtime);
}

TEST(DesktopApplicationTest, RequestsWaitInOrderAndNotWithoutBound) {
    DesktopApplication desktop(u"applet-com.example.a"_s);
    desktop.Open({u"file:///a/../b%20c"_s, u"file:///d"_s}, {});
    desktop.Open({u"file:///e"_s, u"http://example.com/f"_s}, {});
    desktop.ActivateAction(u"other"_s, {}, {});
    desktop.ActivateAction(u"quit"_s, {}, {});
    for (int i = 0; i < 1000; ++i)
        desktop.Activate({});
    EXPECT_EQ(desktop.waitForRequest(0ms), Arrival::request);
    EXPECT_EQ(desktop.takeRequest()->files, (QStringList{u"/b c"_s, u"/d"_s}));
    EXPECT_EQ(desktop.takeRequest()->kind, DesktopApplication::Kind::quit);
    int activations = 0;
    while (const auto request = desktop.takeRequest())
        activations += request->kind == DesktopApplication::Kind::activate;
    EXPECT_EQ(activations, 62);
}

} // namespace quoddle
