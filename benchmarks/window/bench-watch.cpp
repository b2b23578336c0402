// SPDX-License-Identifier: MIT
// Looks at a program from outside, through the X server alone:  bench-watch [--stop] PROGRAM [ARGUMENT…]
//   painted MS    from exec to the moment when the program's first window has something drawn in it
//   stopped MS    with --stop: from Escape, pressed half a second later, to the moment when that window has gone
// One decision: the program that is measured takes no part in the measuring, so that any two programs are measured alike. The window counts
// as painted when its pixels have at least three colours (background, text and the edges of letters); a window that is only mapped has a
// single one. The program is killed in the end.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

using Time = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 5s;
constexpr auto kLookAgain = 300us;
constexpr int kSmallestWindow = 60; // toolkits have windows of a few pixels for selections
constexpr xcb_keycode_t kEscape = 9;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template<class T>
using Reply = std::unique_ptr<T, Free>;

pid_t program = 0;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "bench-watch: %s\n", what);
    if (program > 0)
        kill(program, SIGKILL);
    std::exit(EXIT_FAILURE);
}

double since(Time::time_point start) {
    return std::chrono::duration<double, std::milli>(Time::now() - start).count();
}

class Watch {
public:
    explicit Watch(char** command) : mConnection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(mConnection))
            fail("no display");
        mRoot = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data->root;
        mManager = windowManager();
        select(mRoot, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        roundTrip(); // from here on no event of the program can be missed
        mStart = Time::now();
        program = fork();
        if (program < 0)
            fail("cannot start a program");
        if (program == 0) {
            execvp(command[0], command);
            std::_Exit(127);
        }
    }
    ~Watch() {
        kill(program, SIGKILL);
        waitpid(program, nullptr, 0);
        xcb_disconnect(mConnection);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    double untilPainted() {
        waitFor([this] { return mWindow && isPainted(); });
        return since(mStart);
    }

    double untilStopped() {
        std::this_thread::sleep_for(500ms);
        const auto pressed = Time::now();
        sendKey(XCB_KEY_PRESS, XCB_EVENT_MASK_KEY_PRESS);
        sendKey(XCB_KEY_RELEASE, XCB_EVENT_MASK_KEY_RELEASE);
        waitFor([this] { return mGone; });
        return since(pressed);
    }

private:
    void select(xcb_window_t window, std::uint32_t events) {
        xcb_change_window_attributes(mConnection, window, XCB_CW_EVENT_MASK, &events);
        xcb_flush(mConnection);
    }

    void roundTrip() { Reply<void>(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr)); }

    /// The window by which the window manager says that it is running; 0 when there is none.
    xcb_window_t windowManager() const {
        constexpr char kName[] = "_NET_SUPPORTING_WM_CHECK";
        const Reply<xcb_intern_atom_reply_t> atom(
            xcb_intern_atom_reply(mConnection, xcb_intern_atom(mConnection, 0, sizeof kName - 1, kName), nullptr));
        const Reply<xcb_get_property_reply_t> found(xcb_get_property_reply(
            mConnection, xcb_get_property(mConnection, 0, mRoot, atom ? atom->atom : 0, XCB_ATOM_WINDOW, 0, 1), nullptr));
        const bool isThere = found && xcb_get_property_value_length(found.get()) == sizeof(xcb_window_t);
        return isThere ? *static_cast<const xcb_window_t*>(xcb_get_property_value(found.get())) : 0;
    }

    /// Whether the window belongs to the window manager, as the frames around windows do. The upper part of a window's number tells its
    /// client.
    bool isManagers(xcb_window_t window) const {
        const std::uint32_t client = ~xcb_get_setup(mConnection)->resource_id_mask;
        return mManager && (window & client) == (mManager & client);
    }

    template<class Condition>
    void waitFor(Condition condition) {
        const auto end = Time::now() + kPatience;
        for (;;) {
            while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(mConnection)})
                note(*event);
            if (condition())
                return;
            if (Time::now() > end)
                fail("waited in vain");
            std::this_thread::sleep_for(kLookAgain);
        }
    }

    void note(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7f) {
        case XCB_CREATE_NOTIFY: {
            const auto& created = reinterpret_cast<const xcb_create_notify_event_t&>(event);
            if (created.parent == mRoot && !isManagers(created.window))
                select(created.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (!mWindow && mapped.event != mRoot)
                mWindow = mapped.window;
            break;
        }
        case XCB_UNMAP_NOTIFY:
            mGone |= mWindow && reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window == mWindow;
            break;
        case XCB_DESTROY_NOTIFY:
            mGone |= mWindow && reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == mWindow;
            break;
        default:
            break;
        }
    }

    bool isPainted() {
        const Reply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(mConnection, xcb_get_geometry(mConnection, mWindow), nullptr));
        if (!size || size->width < kSmallestWindow || size->height < kSmallestWindow)
            return false;
        const auto asked = xcb_get_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mWindow, 0, 0, size->width, size->height, ~0u);
        const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(mConnection, asked, nullptr));
        return image && hasThreeColours(xcb_get_image_data(image.get()), xcb_get_image_data_length(image.get()) / 4);
    }

    static bool hasThreeColours(const std::uint8_t* bytes, int pixels) {
        std::array<std::uint32_t, 2> seen{};
        std::size_t count = 0;
        for (int i = 0; i < pixels; ++i) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, bytes + 4 * i, 4);
            if ((count > 0 && pixel == seen[0]) || (count > 1 && pixel == seen[1]))
                continue;
            if (count == seen.size())
                return true;
            seen[count++] = pixel;
        }
        return false;
    }

    void sendKey(std::uint8_t type, std::uint32_t mask) {
        xcb_key_press_event_t event{};
        event.response_type = type;
        event.detail = kEscape;
        event.root = mRoot;
        event.event = mWindow;
        event.same_screen = 1;
        xcb_send_event(mConnection, false, mWindow, mask, reinterpret_cast<const char*>(&event));
        xcb_flush(mConnection);
    }

    xcb_connection_t* mConnection;
    xcb_window_t mRoot = 0;
    xcb_window_t mManager = 0;
    xcb_window_t mWindow = 0; // the first window to be mapped
    bool mGone = false;
    Time::time_point mStart;
};

} // namespace

int main(int argc, char** argv) {
    const bool stop = argc > 1 && std::strcmp(argv[1], "--stop") == 0;
    char** command = argv + (stop ? 2 : 1);
    if (!*command) {
        std::fprintf(stderr, "usage: bench-watch [--stop] PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    Watch watch(command);
    std::printf("painted %.1f\n", watch.untilPainted());
    if (stop)
        std::printf("stopped %.1f\n", watch.untilStopped());
    return EXIT_SUCCESS;
}
