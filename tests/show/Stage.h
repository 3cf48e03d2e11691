#pragma once

#include "desktop/Combination.h"
#include "desktop/FrontWatch.h"
#include "desktop/Pager.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::show {

/// A combination, the application that it is bound to, and how both look to people.
struct Binding {
    std::string keys;
    test::Combination combination;
    std::string application;
    std::filesystem::path entry;
    std::string windowClass;
};

/// A private desktop, furnished so that it is pleasant to look at, on which the utility runs.
class Stage {
public:
    explicit Stage(std::vector<Binding> bindings);

    test::PrivateDesktop desktop;
    test::Pager pager{desktop.display()};
    test::KeyInjector keyboard{desktop.display()};
    test::FrontWatch front{desktop.display()};

    /// Starts the utility with the bindings as its shortcuts. It does not hold them yet.
    void startUtility();
    test::ChildProcess& utility() { return *utility_; }

    /// Whether other programs are refused all the combinations; whether they are refused none.
    bool combinationsAreHeld();
    bool combinationsAreFree();

private:
    void furnish() const;
    void writeShortcuts() const;
    test::KeyGrab grabOf(const Binding& binding);

    std::vector<Binding> bindings_;
    test::XClient prober_{desktop.display()};
    std::unique_ptr<test::ChildProcess> utility_;
};

} // namespace hollowfernpike::show
