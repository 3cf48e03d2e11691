// A small X client for tests. It behaves towards the window manager and the start-up notification
// as a toolkit does, and tells on standard output what happens to it, one flushed line per fact:
//
//   started PID              before it does anything
//   child PID                its helper process, with --fork-child
//   handed-over PID          the process that goes on, with --hand-over
//   window ID                a window was made
//   mapped ID                it is on the screen
//   focus-in ID, focus-out ID
//   key-down KEYCODE STATE, key-up KEYCODE STATE
//
// It ends with status 0 when its window is closed or the display goes away. With --single, closing
// takes its windows away and nothing else; a further copy makes the first one open them again and
// ends, as programs in a tray do.

#include "support/programs/Doorbell.h"
#include "support/programs/Probe.h"
#include "support/programs/ProbeOptions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <span>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>

namespace hollowfernpike::test {

namespace {

class ProbeClient {
public:
    /// The doorbell outlives this.
    ProbeClient(ProbeOptions options, const Doorbell& doorbell)
        : options_(std::move(options)), doorbell_(doorbell),
          connection_(xcb_connect(nullptr, &screenNumber_)) {
        if (xcb_connection_has_error(connection_) != 0) {
            throw std::runtime_error("no display");
        }
        xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr);
        protocols_ = atom("WM_PROTOCOLS");
        deleteWindow_ = atom("WM_DELETE_WINDOW");
        if (const char* const identifier = std::getenv("DESKTOP_STARTUP_ID")) {
            beginLaunch(identifier);
        }
        ::unsetenv("DESKTOP_STARTUP_ID");
    }

    ProbeClient(const ProbeClient&) = delete;
    ProbeClient& operator=(const ProbeClient&) = delete;

    ~ProbeClient() {
        endLaunch();
        xcb_ewmh_connection_wipe(&ewmh_);
        xcb_disconnect(connection_);
    }

    void openWindows() {
        for (int index = 0; index < options_.windows; ++index) {
            openWindow(index);
        }
        xcb_flush(connection_);
    }

    // Flushing may read events, which the descriptor does not announce any more; so this looks for
    // one after flushing and before waiting.
    void run() {
        using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;
        while (!closed_ && xcb_connection_has_error(connection_) == 0) {
            xcb_flush(connection_);
            if (const Event event{xcb_poll_for_event(connection_), &std::free}) {
                handle(*event);
            } else {
                waitForNews();
            }
        }
    }

private:
    void waitForNews() {
        std::array sources{pollfd{xcb_get_file_descriptor(connection_), POLLIN, 0},
                           pollfd{doorbell_.descriptor(), POLLIN, 0}};
        if (::poll(sources.data(), sources.size(), -1) > 0 && sources[1].revents != 0) {
            beginLaunch(doorbell_.answer());
            openWindows();
        }
    }

    void beginLaunch(const std::string& identifier) {
        endLaunch();
        auto* display = sn_xcb_display_new(connection_, nullptr, nullptr);
        launch_ = sn_launchee_context_new(display, screenNumber_, identifier.c_str());
        sn_display_unref(display);
    }

    xcb_atom_t atom(const std::string& name) {
        auto* reply = xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
            nullptr);
        const xcb_atom_t result = reply != nullptr ? reply->atom : XCB_NONE;
        std::free(reply);
        return result;
    }

    void openWindow(int index) {
        const auto window = xcb_generate_id(connection_);
        const auto shift = static_cast<std::int16_t>(20 * (index % 20));
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                     XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        const auto* screen = ewmh_.screens[screenNumber_];
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root,
                          static_cast<std::int16_t>(options_.x + shift),
                          static_cast<std::int16_t>(options_.y + shift), options_.width,
                          options_.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                          XCB_CW_EVENT_MASK, &events);
        describe(window);
        identify(window);
        if (options_.transient && index > 0) {
            xcb_icccm_set_wm_transient_for(connection_, window, windows_.front());
        }
        if (launch_ != nullptr) {
            carryLaunch(window);
        }
        windows_.push_back(window);
        tell("window %u", window);
        xcb_map_window(connection_, window);
    }

    void carryLaunch(xcb_window_t window) {
        sn_launchee_context_setup_window(launch_, window);
        if (sn_launchee_context_get_id_has_timestamp(launch_) != 0) {
            noteUserTime(window,
                         static_cast<xcb_timestamp_t>(sn_launchee_context_get_timestamp(launch_)));
        }
    }

    void describe(xcb_window_t window) {
        setText(window, XCB_ATOM_WM_CLASS,
                options_.instanceName + '\0' + options_.className + '\0');
        setText(window, XCB_ATOM_WM_NAME, options_.title);
        xcb_ewmh_set_wm_name(&ewmh_, window, static_cast<std::uint32_t>(options_.title.size()),
                             options_.title.c_str());
        xcb_size_hints_t size{};
        xcb_icccm_size_hints_set_position(&size, 1, options_.x, options_.y);
        xcb_icccm_set_wm_normal_hints(connection_, window, &size);
        xcb_icccm_wm_hints_t hints{};
        xcb_icccm_wm_hints_set_input(&hints, 1);
        xcb_icccm_wm_hints_set_normal(&hints);
        xcb_icccm_set_wm_hints(connection_, window, &hints);
        std::array spoken{deleteWindow_, ewmh_._NET_WM_PING};
        xcb_icccm_set_wm_protocols(connection_, window, protocols_, spoken.size(), spoken.data());
        if (!options_.type.empty()) {
            xcb_atom_t type = typeAtom();
            xcb_ewmh_set_wm_window_type(&ewmh_, window, 1, &type);
        }
    }

    void identify(xcb_window_t window) {
        std::array<char, 256> machine{};
        ::gethostname(machine.data(), machine.size() - 1);
        setText(window, XCB_ATOM_WM_CLIENT_MACHINE,
                options_.machine.empty() ? machine.data() : options_.machine);
        if (options_.hasPid) {
            xcb_ewmh_set_wm_pid(&ewmh_, window,
                                options_.pid.value_or(static_cast<std::uint32_t>(::getpid())));
        }
        if (!options_.gtkApplicationId.empty()) {
            setText(window, atom("_GTK_APPLICATION_ID"), options_.gtkApplicationId,
                    ewmh_.UTF8_STRING);
        }
        if (!options_.desktopFile.empty()) {
            setText(window, atom("_KDE_NET_WM_DESKTOP_FILE"), options_.desktopFile,
                    ewmh_.UTF8_STRING);
        }
    }

    xcb_atom_t typeAtom() {
        std::string name = options_.type;
        std::ranges::transform(name, name.begin(), [](unsigned char letter) {
            return static_cast<char>(std::toupper(letter));
        });
        return atom("_NET_WM_WINDOW_TYPE_" + name);
    }

    void setText(xcb_window_t window, xcb_atom_t property, const std::string& text,
                 xcb_atom_t type = XCB_ATOM_STRING) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    }

    void noteUserTime(xcb_window_t window, xcb_timestamp_t time) {
        xcb_ewmh_set_wm_user_time(&ewmh_, window, time);
    }

    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7F) {
        case XCB_MAP_NOTIFY:
            return onMapped(reinterpret_cast<const xcb_map_notify_event_t&>(event));
        case XCB_FOCUS_IN:
            return onFocus("focus-in %u", reinterpret_cast<const xcb_focus_in_event_t&>(event));
        case XCB_FOCUS_OUT:
            return onFocus("focus-out %u", reinterpret_cast<const xcb_focus_in_event_t&>(event));
        case XCB_KEY_PRESS:
            return onKeyDown(reinterpret_cast<const xcb_key_press_event_t&>(event));
        case XCB_KEY_RELEASE: {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
            return tell("key-up %u %u", key.detail, key.state);
        }
        case XCB_CLIENT_MESSAGE:
            return onMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        default:
            return;
        }
    }

    void onMapped(const xcb_map_notify_event_t& event) {
        tell("mapped %u", event.window);
        if (launch_ != nullptr) {
            sn_launchee_context_complete(launch_);
            endLaunch();
        }
    }

    void endLaunch() {
        if (launch_ != nullptr) {
            sn_launchee_context_unref(launch_);
            launch_ = nullptr;
        }
    }

    static void onFocus(const char* format, const xcb_focus_in_event_t& event) {
        const bool byGrab =
            event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB;
        if (!byGrab && event.detail != XCB_NOTIFY_DETAIL_POINTER) {
            tell(format, event.event);
        }
    }

    void onKeyDown(const xcb_key_press_event_t& event) {
        tell("key-down %u %u", event.detail, event.state);
        if (options_.crashesOnKey) {
            crash();
        }
        noteUserTime(event.event, event.time);
    }

    void onMessage(const xcb_client_message_event_t& event) {
        if (event.type != protocols_) {
            return;
        }
        if (event.data.data32[0] == deleteWindow_ && options_.isSingle) {
            for (const auto window : std::exchange(windows_, {})) {
                xcb_destroy_window(connection_, window);
            }
        } else if (event.data.data32[0] == deleteWindow_) {
            closed_ = true;
        } else if (event.data.data32[0] == ewmh_._NET_WM_PING) {
            auto answer = event;
            answer.window = ewmh_.screens[screenNumber_]->root;
            xcb_send_event(connection_, 0, answer.window,
                           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                           reinterpret_cast<const char*>(&answer));
        }
    }

    ProbeOptions options_;
    const Doorbell& doorbell_;
    int screenNumber_ = 0;
    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
    xcb_atom_t protocols_ = XCB_NONE;
    xcb_atom_t deleteWindow_ = XCB_NONE;
    SnLauncheeContext* launch_ = nullptr;
    std::vector<xcb_window_t> windows_;
    bool closed_ = false;
};

} // namespace

} // namespace hollowfernpike::test

int main(int count, char** arguments) {
    using namespace hollowfernpike::test;
    return runProbe(std::span{arguments, static_cast<std::size_t>(count)},
                    [](const ProbeOptions& options, const Doorbell& doorbell) {
                        ProbeClient client(options, doorbell);
                        std::this_thread::sleep_for(options.delay);
                        client.openWindows();
                        client.run();
                    });
}
