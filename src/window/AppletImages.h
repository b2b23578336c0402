// SPDX-License-Identifier: MIT
// The images that an applet's script may name: in its bundle, among the system's own, and in the desktop's icon theme.
// Main thread only.
#pragma once

#include "runtime/AppDelegateParts.h"

namespace quoddle {

class AppletImages final : public ImageSource {
public:
    QImage imageNamed(const QString& name) override;
    QImage imageFile(const QString& path) override;
    QImage imageWithData(const std::string& data) override;
};

} // namespace quoddle
