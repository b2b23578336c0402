// SPDX-License-Identifier: MIT
// The messages of Wayland's data-control protocol, the only access to the clipboard for a program without a window. Compositors have it
// under two names with the same messages; the newer name is tried first.
#pragma once

#include <cstdint>

#include <wayland-client-core.h>

namespace quoddle {

struct DataControlProtocol {
    enum ManagerRequest : std::uint32_t { createSource, getDevice };
    enum DeviceRequest : std::uint32_t { setSelection };
    enum SourceRequest : std::uint32_t { offerType, destroySource };
    enum OfferRequest : std::uint32_t { receiveData, destroyOffer };
    static constexpr std::uint32_t kVersion = 1;

    const char* managerName;
    bool isCurrent; ///< false for the older name of the protocol
    wl_interface manager, device, source, offer;

    /// Null for any other name. Valid for the lifetime of the process.
    static const DataControlProtocol* named(const char* managerName);
};

/// Listeners, with their functions in the order of the protocol's events.
struct DataControlDeviceListener {
    void (*dataOffer)(void* self, wl_proxy* device, wl_proxy* offer);
    void (*selection)(void* self, wl_proxy* device, wl_proxy* offer); ///< null when the clipboard is empty
    void (*finished)(void* self, wl_proxy* device);
    void (*primarySelection)(void* self, wl_proxy* device, wl_proxy* offer);
};
struct DataControlSourceListener {
    void (*send)(void* self, wl_proxy* source, const char* type, std::int32_t descriptor); ///< the listener owns the descriptor
    void (*cancelled)(void* self, wl_proxy* source);
};
struct DataControlOfferListener {
    void (*offer)(void* self, wl_proxy* offer, const char* type);
};

} // namespace quoddle
