#pragma once

#include "comparison/Builds.h"
#include "comparison/Race.h"
#include "comparison/Shortcuts.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// A program that acts on the combination: how to configure and to start it.
struct Contestant {
    std::string name;
    Role role{};
    std::filesystem::path file; ///< for `configuration`, read at the start
    std::string configuration;
    std::vector<std::string> arguments;
};

Contestant ours(const Build& build, const test::PrivateDesktop& desktop,
                const InstalledApplication& application);

/// Peers that run `command` through their shell; `name` stands for peer and command in the table.
Contestant sxhkd(const test::PrivateDesktop& desktop, const std::string& name,
                 const std::string& command);
Contestant xbindkeys(const test::PrivateDesktop& desktop, const std::string& name,
                     const std::string& command);

/// A contestant at work, from the moment when it holds the combination to its orderly end.
class RunningContestant {
public:
    /// Throws std::runtime_error if it does not get the combination. The desktop must outlive it.
    RunningContestant(const test::PrivateDesktop& desktop, const Contestant& contestant);
    RunningContestant(const RunningContestant&) = delete;
    RunningContestant& operator=(const RunningContestant&) = delete;

    /// Ends it and waits until the combination is free.
    ~RunningContestant();

    pid_t pid() const { return process_->pid(); }

private:
    bool holdsCombination();

    test::XClient prober_;
    test::KeyGrab grab_;
    std::unique_ptr<test::ChildProcess> process_;
};

/// The builds and their peers as they race for that application on that desktop, which must outlive
/// them.
std::vector<Racer> racersOn(const test::PrivateDesktop& desktop, const Builds& builds,
                            const InstalledApplication& application,
                            const std::vector<Contestant>& peers);

} // namespace hollowfernpike::bench
