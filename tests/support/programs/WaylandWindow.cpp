// A small Wayland client for tests. It tells on standard output what happens to it, one flushed
// line per fact:
//
//   started PID              before it does anything
//   child PID                its helper process, with --fork-child
//   handed-over PID          the process that goes on, with --hand-over
//   window N                 a window was made, the Nth of this process
//   mapped N                 the compositor has got its picture
//   focus-in N TIME          it has the keys since TIME, in nanoseconds of the monotonic clock
//   focus-out N              it has them no longer
//   key-down KEYCODE STATE, key-up KEYCODE STATE
//
// KEYCODE is the number in the keyboard map, 8 more than the kernel's; STATE is a sum of modifiers
// as in X. A held key is told once, for it is clients who repeat keys on Wayland.
//
// It ends with status 0 when one of its windows is closed or the compositor goes away. With
// --single, closing takes its windows away and nothing else; a further copy makes the first one
// open them again and ends, as programs in a tray do.

#include "support/WaylandConnection.h"
#include "support/programs/Doorbell.h"
#include "support/programs/Probe.h"
#include "support/programs/ProbeOptions.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xdg-activation-v1-client-protocol.h>
#include <xdg-shell-client-protocol.h>

namespace hollowfernpike::test {

namespace {

constexpr std::uint32_t numberOffset = 8; // from the kernel's code of a key to that of the map
constexpr std::uint32_t realModifiers = 0xFF;

/// Pictures in memory that the compositor shares.
class Pictures {
public:
    explicit Pictures(WaylandConnection& connection)
        : memory_(connection.bind<wl_shm>(wl_shm_interface, 1)) {}
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;
    ~Pictures() { wl_shm_destroy(memory_); }

    /// A black one, the caller's to destroy.
    wl_buffer* make(std::int32_t width, std::int32_t height) const {
        const std::int32_t rowSize = 4 * width;
        const int file = ::memfd_create("picture", MFD_CLOEXEC);
        if (file < 0 || ::ftruncate(file, std::int64_t{rowSize} * height) != 0) {
            throw std::runtime_error("no memory for a picture");
        }
        auto* const pool = wl_shm_create_pool(memory_, file, rowSize * height);
        auto* const picture =
            wl_shm_pool_create_buffer(pool, 0, width, height, rowSize, WL_SHM_FORMAT_XRGB8888);
        wl_shm_pool_destroy(pool);
        ::close(file);
        return picture;
    }

private:
    wl_shm* memory_;
};

/// What windows are made of.
struct Workshop {
    wl_display* display = nullptr;
    wl_compositor* compositor = nullptr;
    xdg_wm_base* shell = nullptr;
    const Pictures* pictures = nullptr;
};

class WaylandWindow {
public:
    WaylandWindow(const Workshop& workshop, const ProbeOptions& options, int number)
        : display_(workshop.display), pictures_(*workshop.pictures), number_(number),
          width_(options.width), height_(options.height),
          surface_(wl_compositor_create_surface(workshop.compositor)),
          role_(xdg_wm_base_get_xdg_surface(workshop.shell, surface_)),
          toplevel_(xdg_surface_get_toplevel(role_)) {
        wl_surface_set_user_data(surface_, this);
        xdg_surface_add_listener(role_, surfaceListener(), this);
        xdg_toplevel_add_listener(toplevel_, toplevelListener(), this);
        xdg_toplevel_set_app_id(toplevel_, options.className.c_str());
        xdg_toplevel_set_title(toplevel_, options.title.c_str());
        if (options.isFullscreen) {
            xdg_toplevel_set_fullscreen(toplevel_, nullptr);
        }
        tell("window %d", number_);
    }
    WaylandWindow(const WaylandWindow&) = delete;
    WaylandWindow& operator=(const WaylandWindow&) = delete;
    ~WaylandWindow() {
        if (mapping_ != nullptr) {
            wl_callback_destroy(mapping_);
        }
        if (picture_ != nullptr) {
            wl_buffer_destroy(picture_);
        }
        xdg_toplevel_destroy(toplevel_);
        xdg_surface_destroy(role_);
        wl_surface_destroy(surface_);
    }

    static const WaylandWindow* of(wl_surface* surface) {
        return surface == nullptr ? nullptr
                                  : static_cast<WaylandWindow*>(wl_surface_get_user_data(surface));
    }

    int number() const { return number_; }
    bool isClosed() const { return isClosed_; }
    void belongTo(const WaylandWindow& parent) {
        xdg_toplevel_set_parent(toplevel_, parent.toplevel_);
    }

    /// Asks the compositor for a place; the picture follows when it has one.
    void show() { wl_surface_commit(surface_); }

    void activate(xdg_activation_v1* activation, const char* token) {
        xdg_activation_v1_activate(activation, token, surface_);
    }

private:
    static WaylandWindow& self(void* data) { return *static_cast<WaylandWindow*>(data); }

    void onPlace(std::uint32_t serial) {
        xdg_surface_ack_configure(role_, serial);
        auto* const former = std::exchange(picture_, pictures_.make(width_, height_));
        wl_surface_attach(surface_, picture_, 0, 0);
        wl_surface_commit(surface_);
        if (former != nullptr) {
            wl_buffer_destroy(former);
        }
        if (!isShown_) {
            isShown_ = true;
            askWhetherMapped();
        }
    }

    // The compositor answers in order, so it has taken the picture by then.
    void askWhetherMapped() {
        static constexpr wl_callback_listener listener{
            .done = [](void* data, wl_callback* answer, std::uint32_t /*time*/) {
                wl_callback_destroy(answer);
                self(data).mapping_ = nullptr;
                tell("mapped %d", self(data).number_);
            }};
        mapping_ = wl_display_sync(display_);
        wl_callback_add_listener(mapping_, &listener, this);
    }

    static const xdg_surface_listener* surfaceListener() {
        static constexpr xdg_surface_listener listener{
            .configure = [](void* data, xdg_surface* /*role*/, std::uint32_t serial) {
                self(data).onPlace(serial);
            }};
        return &listener;
    }
    static const xdg_toplevel_listener* toplevelListener() {
        static constexpr xdg_toplevel_listener listener{
            .configure =
                [](void* data, xdg_toplevel* /*toplevel*/, std::int32_t width, std::int32_t height,
                   wl_array* /*states*/) {
                    if (width > 0 && height > 0) { // otherwise it is for us to choose
                        self(data).width_ = width;
                        self(data).height_ = height;
                    }
                },
            .close = [](void* data, xdg_toplevel* /*toplevel*/) { self(data).isClosed_ = true; },
            .configure_bounds = nullptr,
            .wm_capabilities = nullptr};
        return &listener;
    }

    wl_display* display_;
    const Pictures& pictures_;
    int number_;
    std::int32_t width_;
    std::int32_t height_;
    wl_surface* surface_;
    xdg_surface* role_;
    xdg_toplevel* toplevel_;
    wl_callback* mapping_ = nullptr;
    wl_buffer* picture_ = nullptr;
    bool isShown_ = false;
    bool isClosed_ = false;
};

/// Tells what reaches the windows of the seat's keyboard, for as long as the seat has one.
class KeyboardDiary {
public:
    KeyboardDiary(WaylandConnection& connection, bool crashesOnKey)
        : seat_(connection.bind<wl_seat>(wl_seat_interface, 5)), crashesOnKey_(crashesOnKey) {
        wl_seat_add_listener(seat_, seatListener(), this);
    }
    KeyboardDiary(const KeyboardDiary&) = delete;
    KeyboardDiary& operator=(const KeyboardDiary&) = delete;
    ~KeyboardDiary() {
        takeKeyboard(false);
        wl_seat_destroy(seat_);
    }

private:
    static KeyboardDiary& self(void* data) { return *static_cast<KeyboardDiary*>(data); }

    void takeKeyboard(bool isThere) {
        if (isThere && keyboard_ == nullptr) {
            keyboard_ = wl_seat_get_keyboard(seat_);
            wl_keyboard_add_listener(keyboard_, keyboardListener(), this);
        } else if (!isThere && keyboard_ != nullptr) {
            wl_keyboard_release(std::exchange(keyboard_, nullptr));
        }
    }

    void onKey(std::uint32_t key, std::uint32_t state) {
        const bool isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
        tell(isDown ? "key-down %u %u" : "key-up %u %u", key + numberOffset, modifiers_);
        if (isDown && crashesOnKey_) {
            crash();
        }
    }

    // A window that this client has just taken away has no surface here any more.
    static void onEnter(wl_surface* surface) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        if (const auto* const window = WaylandWindow::of(surface)) {
            tell("focus-in %d %lld", window->number(),
                 static_cast<long long>(std::chrono::nanoseconds{now}.count()));
        }
    }
    static void onLeave(wl_surface* surface) {
        if (const auto* const window = WaylandWindow::of(surface)) {
            tell("focus-out %d", window->number());
        }
    }

    static const wl_seat_listener* seatListener() {
        static constexpr wl_seat_listener listener{
            .capabilities =
                [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
                    self(data).takeKeyboard((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
                },
            .name = [](void* /*data*/, wl_seat* /*seat*/, const char* /*name*/) {}};
        return &listener;
    }
    static const wl_keyboard_listener* keyboardListener() {
        static constexpr wl_keyboard_listener listener{
            .keymap = [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/,
                         std::int32_t file, std::uint32_t /*size*/) { ::close(file); },
            .enter = [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                        wl_surface* surface, wl_array* /*heldKeys*/) { onEnter(surface); },
            .leave = [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                        wl_surface* surface) { onLeave(surface); },
            .key = [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                      std::uint32_t /*time*/, std::uint32_t key,
                      std::uint32_t state) { self(data).onKey(key, state); },
            .modifiers =
                [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                   std::uint32_t held, std::uint32_t latched, std::uint32_t locked,
                   std::uint32_t /*group*/) {
                    self(data).modifiers_ = (held | latched | locked) & realModifiers;
                },
            .repeat_info = [](void* /*data*/, wl_keyboard* /*keyboard*/, std::int32_t /*rate*/,
                              std::int32_t /*delay*/) {}};
        return &listener;
    }

    wl_seat* seat_;
    bool crashesOnKey_;
    wl_keyboard* keyboard_ = nullptr;
    std::uint32_t modifiers_ = 0;
};

class WaylandClient {
public:
    /// The options and the doorbell outlive this.
    WaylandClient(const ProbeOptions& options, const Doorbell& doorbell)
        : options_(options), doorbell_(doorbell) {
        workshop_.display = connection_.get();
        workshop_.compositor = connection_.bind<wl_compositor>(wl_compositor_interface, 4);
        workshop_.shell = connection_.bind<xdg_wm_base>(xdg_wm_base_interface, 1);
        workshop_.pictures = &pictures_;
        static constexpr xdg_wm_base_listener listener{
            .ping = [](void* /*data*/, xdg_wm_base* shell, std::uint32_t serial) {
                xdg_wm_base_pong(shell, serial);
            }};
        xdg_wm_base_add_listener(workshop_.shell, &listener, nullptr);
    }
    WaylandClient(const WaylandClient&) = delete;
    WaylandClient& operator=(const WaylandClient&) = delete;
    ~WaylandClient() {
        windows_.clear();
        xdg_wm_base_destroy(workshop_.shell);
        wl_compositor_destroy(workshop_.compositor);
    }

    void openWindows() {
        for (int count = 0; count < options_.windows; ++count) {
            auto& window = *windows_.emplace_back(
                std::make_unique<WaylandWindow>(workshop_, options_, ++lastNumber_));
            if (options_.transient && count > 0) {
                window.belongTo(*windows_.front());
            }
            window.show();
            if (count == 0) {
                useLaunchToken(window);
            }
        }
    }

    void run() {
        while (waitForNews() && !isToEnd()) {
        }
    }

private:
    /// As toolkits do.
    void useLaunchToken(WaylandWindow& window) {
        const char* const token = std::getenv("XDG_ACTIVATION_TOKEN");
        if (token != nullptr && connection_.offers(xdg_activation_v1_interface.name)) {
            auto* const activation =
                connection_.bind<xdg_activation_v1>(xdg_activation_v1_interface, 1);
            window.activate(activation, token);
            xdg_activation_v1_destroy(activation);
            ::unsetenv("XDG_ACTIVATION_TOKEN");
        }
    }

    bool isToEnd() {
        const bool isClosed =
            std::ranges::any_of(windows_, [](const auto& window) { return window->isClosed(); });
        if (isClosed && options_.isSingle) {
            windows_.clear();
        }
        return isClosed && !options_.isSingle;
    }

    /// False if the compositor is gone.
    bool waitForNews() {
        auto* const display = connection_.get();
        while (wl_display_prepare_read(display) != 0) {
            wl_display_dispatch_pending(display);
        }
        wl_display_flush(display);
        std::array sources{pollfd{wl_display_get_fd(display), POLLIN, 0},
                           pollfd{doorbell_.descriptor(), POLLIN, 0}};
        ::poll(sources.data(), sources.size(), -1);
        if (sources[0].revents == 0) {
            wl_display_cancel_read(display);
        } else if (wl_display_read_events(display) != 0) {
            return false;
        }
        if (sources[1].revents != 0) {
            doorbell_.answer();
            openWindows();
        }
        return wl_display_dispatch_pending(display) >= 0;
    }

    const ProbeOptions& options_;
    const Doorbell& doorbell_;
    WaylandConnection connection_{std::string{}};
    Pictures pictures_{connection_};
    KeyboardDiary keyboard_{connection_, options_.crashesOnKey};
    Workshop workshop_;
    std::vector<std::unique_ptr<WaylandWindow>> windows_;
    int lastNumber_ = 0;
};

} // namespace

} // namespace hollowfernpike::test

int main(int count, char** arguments) {
    using namespace hollowfernpike::test;
    return runProbe(std::span{arguments, static_cast<std::size_t>(count)},
                    [](const ProbeOptions& options, const Doorbell& doorbell) {
                        std::this_thread::sleep_for(options.delay);
                        WaylandClient client(options, doorbell);
                        client.openWindows();
                        client.run();
                    });
}
