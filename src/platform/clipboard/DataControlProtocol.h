// SPDX-License-Identifier: MIT
// The messages of the data-control protocol of Wayland: the one way to the clipboard for a program without a window. Compositors know it
// under two names with the same messages, of which the newer is tried first.
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
    bool isCurrent; ///< not its predecessor
    wl_interface manager, device, source, offer;

    /// Null for any other name. For the whole process.
    static const DataControlProtocol* named(const char* managerName);
};

/// Listeners, in the order of the events.
struct DataControlDeviceListener {
    void (*dataOffer)(void* self, wl_proxy* device, wl_proxy* offer);
    void (*selection)(void* self, wl_proxy* device, wl_proxy* offer); ///< null: nothing is copied
    void (*finished)(void* self, wl_proxy* device);
    void (*primarySelection)(void* self, wl_proxy* device, wl_proxy* offer);
};
struct DataControlSourceListener {
    void (*send)(void* self, wl_proxy* source, const char* type, std::int32_t descriptor); ///< the descriptor is the listener's
    void (*cancelled)(void* self, wl_proxy* source);
};
struct DataControlOfferListener {
    void (*offer)(void* self, wl_proxy* offer, const char* type);
};

} // namespace quoddle
