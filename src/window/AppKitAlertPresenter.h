// SPDX-License-Identifier: MIT
// Shows the runtime's alerts as alerts of the application framework.
#pragma once

#include "runtime/AppDelegateParts.h"

namespace quoddle {

class AppKitAlertPresenter final : public AlertPresenter {
public:
    /// The controller must be a BaseWindowController.
    void beginSheet(const RuntimeAlert& alert, WindowController& onWindowOf, std::function<void()> completion) override;
    void runModal(const RuntimeAlert& alert) override;
};

} // namespace quoddle
