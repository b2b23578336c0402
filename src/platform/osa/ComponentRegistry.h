// SPDX-License-Identifier: MIT
// Which scripting components there are, and which of them are open. Thread-safe; an instance that is closed while another thread is inside
// it lives until that thread has left.
#pragma once

#include "platform/osa/ScriptingComponent.h"

#include <functional>
#include <memory>

namespace quoddle {

constexpr OSType kOSAComponentType = "osa "_4cc;
constexpr OSType kOSAGenericScriptingComponentSubtype = "scpt"_4cc;
constexpr OSType kAppleScriptSubtype = "ascr"_4cc;

struct ComponentDescription {
    OSType type = kOSAComponentType;
    OSType subType = 0;
    std::string name;         ///< what a person calls it, UTF-8
    std::string manufacturer; ///< four characters or a name, UTF-8
    std::function<std::shared_ptr<ScriptingComponent>()> open;
};

/// Replaces a component of the same type and subtype; open instances are not touched.
void RegisterComponent(ComponentDescription description);
/// In the order of their registration, without the generic component, which is always there.
std::vector<ComponentDescription> RegisteredComponents();

/// 0 when there is no such component or it does not open.
ComponentInstance OpenDefaultComponent(OSType componentType, OSType componentSubType);
/// badComponentInstance for an instance that is not open.
OSStatus CloseComponent(ComponentInstance instance);
/// 0 for an instance that is not open.
std::int32_t CallComponentVersion(ComponentInstance instance);
/// The subtype an instance was opened with; 0 when it is not open.
OSType ComponentSubType(ComponentInstance instance);
/// Empty when it is not open.
std::shared_ptr<ScriptingComponent> ComponentForInstance(ComponentInstance instance);

} // namespace quoddle
