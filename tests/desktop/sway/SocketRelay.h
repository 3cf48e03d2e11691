#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace hollowfernpike::test {

/// Stands between programs and a server's socket, and fails at will.
class SocketRelay {
public:
    /// Listens at `path` and connects everybody with the server at `server`.
    SocketRelay(std::string path, std::string server);
    SocketRelay(const SocketRelay&) = delete;
    SocketRelay& operator=(const SocketRelay&) = delete;
    ~SocketRelay();

    /// Ends all connections; new ones can be made.
    void breakConnections();

    /// Ends all connections, and nobody can connect any more.
    void vanish();

    /// Listens again.
    void comeBack();

    /// From now on nothing passes, although connections stay and can be made.
    void fallSilent() { isSilent_ = true; }

private:
    struct Pair {
        int client = -1;
        int server = -1;
    };

    void listen();
    void run();
    void accept();
    bool pass(int from, int to) const;
    void closeAll();

    std::string path_;
    std::string server_;
    std::mutex mutex_; ///< of the descriptors
    int listening_ = -1;
    std::vector<Pair> pairs_;
    std::atomic<bool> isSilent_ = false;
    std::atomic<bool> isStopping_ = false;
    std::thread thread_;
};

} // namespace hollowfernpike::test
