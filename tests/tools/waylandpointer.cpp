// SPDX-License-Identifier: MIT
// A mouse for tests on a Wayland desktop that takes pointers from programs (wlr-virtual-pointer-unstable-v1). It stays as long as the
// program runs and does what the lines on standard input say:
//     move X Y WIDTH HEIGHT    to a place on a screen of the size, in pixels
//     press, release           the left button
// Each line is answered by "done" when the desktop has seen it.
#include <array>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>

#include <time.h>
#include <wayland-client.h>

namespace {

constexpr std::uint32_t kLeftButton = 0x110; // BTN_LEFT

// The requests of the two interfaces up to the last one that is used; they are numbered by their order.
extern const wl_interface kManager, kPointer;
const std::array<const wl_interface*, 5> kUntyped{};
const std::array<const wl_interface*, 2> kSeatAndPointer{&wl_seat_interface, &kPointer};
auto typesOf(const auto& types) {
    return const_cast<const wl_interface**>(types.data()); // the library's type lacks a const
}
const std::array<wl_message, 1> kManagerRequests{{{"create_virtual_pointer", "?on", typesOf(kSeatAndPointer)}}};
const std::array<wl_message, 5> kPointerRequests{{{"motion", "uff", typesOf(kUntyped)},
                                                  {"motion_absolute", "uuuuu", typesOf(kUntyped)},
                                                  {"button", "uuu", typesOf(kUntyped)},
                                                  {"axis", "uuf", typesOf(kUntyped)},
                                                  {"frame", "", typesOf(kUntyped)}}};
enum ManagerRequest : std::uint32_t { kCreate };
enum PointerRequest : std::uint32_t { kMoveTo = 1, kButton = 2, kFrame = 4 };
const wl_interface kManager{"zwlr_virtual_pointer_manager_v1", 1, kManagerRequests.size(), kManagerRequests.data(), 0, nullptr};
const wl_interface kPointer{"zwlr_virtual_pointer_v1", 1, kPointerRequests.size(), kPointerRequests.data(), 0, nullptr};

std::uint32_t milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

void found(void* manager, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
    if (std::strcmp(interface, kManager.name) == 0)
        *static_cast<wl_proxy**>(manager) = static_cast<wl_proxy*>(wl_registry_bind(registry, name, &kManager, 1));
}

void gone(void*, wl_registry*, std::uint32_t) {}

} // namespace

int main() {
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return 1;
    wl_proxy* manager = nullptr;
    const wl_registry_listener listener{&found, &gone};
    wl_registry_add_listener(wl_display_get_registry(display), &listener, &manager);
    wl_display_roundtrip(display);
    if (!manager)
        return 1;
    wl_proxy* pointer = wl_proxy_marshal_flags(manager, kCreate, &kPointer, 1, 0, nullptr, nullptr);
    for (std::string word; std::cin >> word;) {
        if (word == "move") {
            std::uint32_t x = 0, y = 0, width = 0, height = 0;
            std::cin >> x >> y >> width >> height;
            wl_proxy_marshal_flags(pointer, kMoveTo, nullptr, 1, 0, milliseconds(), x, y, width, height);
        } else if (word == "press" || word == "release") {
            wl_proxy_marshal_flags(pointer, kButton, nullptr, 1, 0, milliseconds(), kLeftButton, word == "press" ? 1U : 0U);
        } else {
            return 2;
        }
        wl_proxy_marshal_flags(pointer, kFrame, nullptr, 1, 0);
        if (wl_display_roundtrip(display) < 0)
            return 1;
        std::cout << "done" << std::endl;
    }
    wl_display_disconnect(display); // takes the pointer away
}
