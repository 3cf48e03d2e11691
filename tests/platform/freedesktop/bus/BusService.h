#pragma once

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Services on a session bus that write down how they are called: an application that opens over
/// the bus ("org.example.Active", "org.example.Refusing", which answers with an error) and the
/// user's service manager ("org.freedesktop.systemd1"). Lives in a thread of its own.
class BusService {
public:
    /// Ready and on the bus with `name` on return.
    BusService(const std::string& busAddress, const std::string& name);
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;
    ~BusService();

    /// "object interface.method arguments", arguments in GVariant's text form, in order.
    std::vector<std::string> calls() const;

private:
    class Thread;
    std::unique_ptr<Thread> thread_;
};

} // namespace hollowfernpike::test
