// SPDX-License-Identifier: MIT
#include "platform/osa/ComponentRegistry.h"

#include "platform/osa/GenericComponent.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace quoddle {

namespace {

struct OpenInstance {
    OSType subType;
    std::shared_ptr<ScriptingComponent> component;
};

struct Registry {
    std::mutex mutex;
    std::vector<ComponentDescription> descriptions;
    std::unordered_map<ComponentInstance, OpenInstance> instances;
    ComponentInstance last = 0;
};

// Never destroyed, because other static objects may close components in their destructors.
Registry& registry() {
    static Registry& registry = *new Registry;
    return registry;
}

bool sameKind(const ComponentDescription& description, OSType type, OSType subType) {
    return description.type == type && description.subType == subType;
}

std::function<std::shared_ptr<ScriptingComponent>()> openerOf(OSType type, OSType subType) {
    if (type == kOSAComponentType && subType == kOSAGenericScriptingComponentSubtype)
        return [] { return std::make_shared<GenericComponent>(); };
    std::lock_guard lock(registry().mutex);
    const auto& all = registry().descriptions;
    auto found = std::find_if(all.begin(), all.end(), [&](const auto& each) { return sameKind(each, type, subType); });
    return found == all.end() ? nullptr : found->open;
}

} // namespace

void RegisterComponent(ComponentDescription description) {
    std::lock_guard lock(registry().mutex);
    auto& all = registry().descriptions;
    auto same =
        std::find_if(all.begin(), all.end(), [&](const auto& each) { return sameKind(each, description.type, description.subType); });
    if (same == all.end())
        all.push_back(std::move(description));
    else
        *same = std::move(description);
}

std::vector<ComponentDescription> RegisteredComponents() {
    std::lock_guard lock(registry().mutex);
    return registry().descriptions;
}

ComponentInstance OpenDefaultComponent(OSType componentType, OSType componentSubType) {
    auto open = openerOf(componentType, componentSubType);
    std::shared_ptr<ScriptingComponent> component = open ? open() : nullptr;
    if (!component)
        return 0;
    std::lock_guard lock(registry().mutex);
    ComponentInstance instance = ++registry().last;
    registry().instances.emplace(instance, OpenInstance{componentSubType, std::move(component)});
    return instance;
}

OSStatus CloseComponent(ComponentInstance instance) {
    // The component is destroyed after the lock has been released, because its destructor may close other components.
    std::unordered_map<ComponentInstance, OpenInstance>::node_type closed;
    std::lock_guard lock(registry().mutex);
    closed = registry().instances.extract(instance);
    return closed ? noErr : badComponentInstance;
}

std::int32_t CallComponentVersion(ComponentInstance instance) {
    auto component = ComponentForInstance(instance);
    return component ? component->version() : 0;
}

OSType ComponentSubType(ComponentInstance instance) {
    std::lock_guard lock(registry().mutex);
    auto found = registry().instances.find(instance);
    return found == registry().instances.end() ? 0 : found->second.subType;
}

std::shared_ptr<ScriptingComponent> ComponentForInstance(ComponentInstance instance) {
    std::lock_guard lock(registry().mutex);
    auto found = registry().instances.find(instance);
    return found == registry().instances.end() ? nullptr : found->second.component;
}

} // namespace quoddle
