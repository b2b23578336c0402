// SPDX-License-Identifier: MIT
#include "platform/clipboard/DataControlProtocol.h"

#include <cstring>
#include <iterator>

#include <wayland-client-protocol.h>

namespace quoddle {

namespace {

/// The message tables of the protocol. They point to one another, so they must not be copied.
struct Tables {
    const wl_interface* untyped[2] = {nullptr, nullptr};
    const wl_interface *sourceOnly[1], *offerOnly[1], *deviceAndSeat[2];
    wl_message managerRequests[3], deviceRequests[2], deviceEvents[4], sourceRequests[2], sourceEvents[2], offerRequests[2], offerEvents[1];
    DataControlProtocol protocol;

    Tables(bool isCurrent, const char* manager, const char* device, const char* source, const char* offer)
        : sourceOnly{&protocol.source}, offerOnly{&protocol.offer}, deviceAndSeat{&protocol.device, &wl_seat_interface},
          managerRequests{{"create_data_source", "n", sourceOnly}, {"get_data_device", "no", deviceAndSeat}, {"destroy", "", untyped}},
          deviceRequests{{"set_selection", "?o", sourceOnly}, {"destroy", "", untyped}}, deviceEvents{{"data_offer", "n", offerOnly},
                                                                                                      {"selection", "?o", offerOnly},
                                                                                                      {"finished", "", untyped},
                                                                                                      {"primary_selection", "?o",
                                                                                                       offerOnly}},
          sourceRequests{{"offer", "s", untyped}, {"destroy", "", untyped}},
          sourceEvents{{"send", "sh", untyped}, {"cancelled", "", untyped}}, offerRequests{{"receive", "sh", untyped},
                                                                                           {"destroy", "", untyped}},
          offerEvents{{"offer", "s", untyped}}, protocol{manager,
                                                         isCurrent,
                                                         interface(manager, managerRequests, 3, nullptr, 0),
                                                         interface(device, deviceRequests, 2, deviceEvents, 4),
                                                         interface(source, sourceRequests, 2, sourceEvents, 2),
                                                         interface(offer, offerRequests, 2, offerEvents, 1)} {}
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;

    static wl_interface interface(const char* name, const wl_message* requests, int requestCount, const wl_message* events,
                                  int eventCount) {
        return {name, DataControlProtocol::kVersion, requestCount, requests, eventCount, events};
    }
};

} // namespace

const DataControlProtocol* DataControlProtocol::named(const char* managerName) {
    static const Tables sTables[] = {
        {true, "ext_data_control_manager_v1", "ext_data_control_device_v1", "ext_data_control_source_v1", "ext_data_control_offer_v1"},
        {false, "zwlr_data_control_manager_v1", "zwlr_data_control_device_v1", "zwlr_data_control_source_v1", "zwlr_data_control_offer_v1"},
    };
    for (const Tables& tables : sTables)
        if (std::strcmp(tables.protocol.managerName, managerName) == 0)
            return &tables.protocol;
    return nullptr;
}

} // namespace quoddle
