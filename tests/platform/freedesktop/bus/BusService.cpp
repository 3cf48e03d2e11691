#include "platform/freedesktop/bus/BusService.h"

#include "platform/freedesktop/entries/GlibPointers.h"
#include "support/BusConnection.h"

#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>

#include <gio/gio.h>

namespace hollowfernpike::test {

namespace {

using namespace freedesktop;

constexpr auto interfaces = R"xml(
<node>
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" direction="in"/></method>
  </interface>
  <interface name="org.freedesktop.systemd1.Manager">
    <method name="StartTransientUnit">
      <arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="a(sv)" direction="in"/><arg type="a(sa(sv))" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
  </interface>
</node>)xml";

using VariantPointer = std::unique_ptr<GVariant, Releaser<&g_variant_unref>>;
using MainContextPointer = std::unique_ptr<GMainContext, Releaser<&g_main_context_unref>>;
using NodePointer = std::unique_ptr<GDBusNodeInfo, Releaser<&g_dbus_node_info_unref>>;

} // namespace

class BusService::Thread {
public:
    Thread(const std::string& address, const std::string& name)
        : context_(g_main_context_new()), loop_(g_main_loop_new(context_.get(), FALSE)),
          node_(g_dbus_node_info_new_for_xml(interfaces, nullptr)),
          connection_(connectToBus(address)) {
        std::promise<bool> ready;
        thread_ = std::thread([&, this] {
            g_main_context_push_thread_default(context_.get());
            const bool isThere = appear(name);
            ready.set_value(isThere);
            if (isThere) {
                g_main_loop_run(loop_.get());
            }
            connection_.reset();
            g_main_context_pop_thread_default(context_.get());
        });
        if (!ready.get_future().get()) {
            thread_.join();
            throw std::runtime_error("no service on the bus: " + name);
        }
    }

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    ~Thread() {
        g_main_loop_quit(loop_.get());
        thread_.join();
    }

    std::vector<std::string> calls() const {
        const std::scoped_lock lock(mutex_);
        return calls_;
    }

private:
    bool appear(const std::string& name) {
        publish("/org/example/Active", "org.freedesktop.Application");
        publish("/org/example/Refusing", "org.freedesktop.Application");
        publish("/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager");
        const VariantPointer reply(g_dbus_connection_call_sync(
            connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name.c_str(), 0U), nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        return reply != nullptr;
    }

    void publish(const char* object, const char* interface) {
        static constexpr GDBusInterfaceVTable table{&Thread::onCall, nullptr, nullptr, {}};
        g_dbus_connection_register_object(connection_.get(), object,
                                          g_dbus_node_info_lookup_interface(node_.get(), interface),
                                          &table, this, nullptr, nullptr);
    }

    static void onCall(GDBusConnection*, const gchar*, const gchar* object, const gchar* interface,
                       const gchar* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                       gpointer self) {
        auto& thread = *static_cast<Thread*>(self);
        {
            const TextPointer text(g_variant_print(arguments, FALSE));
            const std::scoped_lock lock(thread.mutex_);
            thread.calls_.push_back(std::string{object} + ' ' + interface + '.' + method + ' ' +
                                    text.get());
        }
        if (std::string_view(object).ends_with("Refusing")) {
            g_dbus_method_invocation_return_dbus_error(invocation, "org.example.No", "no");
        } else if (std::string_view(method) == "StartTransientUnit") {
            g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", "/job/1"));
        } else {
            g_dbus_method_invocation_return_value(invocation, nullptr);
        }
    }

    MainContextPointer context_;
    std::unique_ptr<GMainLoop, Releaser<&g_main_loop_unref>> loop_;
    NodePointer node_;
    BusConnection connection_;
    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
    std::thread thread_;
};

BusService::BusService(const std::string& busAddress, const std::string& name)
    : thread_(std::make_unique<Thread>(busAddress, name)) {}

BusService::~BusService() = default;

std::vector<std::string> BusService::calls() const {
    return thread_->calls();
}

} // namespace hollowfernpike::test
