#pragma once

#include <cstdint>

#include <QObject>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The toolkit asks to be told of every modifier key that is pressed or let go anywhere, and so
/// would wake the process up whenever somebody types a capital letter. It needs them only while a
/// window of ours has the keys. Without one this keeps it to the news of locks and layouts, which
/// it has to know when a window opens. Main thread only.
class ToolkitModifiers {
public:
    /// `toolkit`, its connection, outlives this.
    explicit ToolkitModifiers(xcb_connection_t* toolkit);

private:
    void select(std::uint16_t parts) const;

    xcb_connection_t* toolkit_;
    QObject context_;
};

} // namespace hollowfernpike::x11
