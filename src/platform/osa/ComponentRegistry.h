// SPDX-License-Identifier: MIT
// The registered scripting components and their open instances. Thread-safe; an instance that is closed while another thread is inside it
// lives until that thread has left.
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
    std::string name;         ///< shown to users; UTF-8
    std::string manufacturer; ///< four characters or a name, UTF-8
    std::function<std::shared_ptr<ScriptingComponent>()> open;
};

/// Replaces a component of the same type and subtype; open instances stay as they are.
void RegisterComponent(ComponentDescription description);
/// The components in the order of their registration, without the generic component, which is always there.
std::vector<ComponentDescription> RegisteredComponents();

/// 0 when there is no such component or it cannot be opened.
ComponentInstance OpenDefaultComponent(OSType componentType, OSType componentSubType);
/// badComponentInstance for an instance that is not open.
OSStatus CloseComponent(ComponentInstance instance);
/// 0 for an instance that is not open.
std::int32_t CallComponentVersion(ComponentInstance instance);
/// The subtype with which an instance was opened; 0 for an instance that is not open.
OSType ComponentSubType(ComponentInstance instance);
/// Null for an instance that is not open.
std::shared_ptr<ScriptingComponent> ComponentForInstance(ComponentInstance instance);

} // namespace quoddle
