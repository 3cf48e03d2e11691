#pragma once

#include "show/Edition.h"
#include "show/Panel.h"

#include <QImage>

namespace hollowfernpike::show {

/// A private desktop in the looks of an edition, on which the utility runs and has its picture
/// taken. Throws std::runtime_error if something that is to be seen does not appear.
class Studio {
public:
    /// Pictures go to `folder`.
    Studio(const Edition& chosenEdition, std::filesystem::path folder);

    const Edition edition;
    test::Story story;
    test::WindowUser user;

    /// Adds a shortcut of one of the known applications to the list that the utility will read.
    void bind(const std::string& application, const test::Combination& combination);

    /// Starts the utility with these shortcuts, and waits until it listens to the keyboard.
    void start(const test::Environment& changes = {});

    /// The same without waiting, for when it will not be able to listen.
    void launch(const test::Environment& changes);

    /// Takes a picture of all that is on the desktop. It has to look differently from the last
    /// picture.
    void take(const std::string& name);

    /// The same without the panel above them.
    void takeBelowPanel(const std::string& name);

    /// A file to be imported or exported.
    std::filesystem::path file(const std::string& name) const {
        return story.desktop.home() / name;
    }

    /// The entry of a known application.
    std::filesystem::path entry(const std::string& application) const;

private:
    void take(const std::string& name, int top);

    std::filesystem::path folder_;
    test::Environment environment_;
    QImage last_;
};

} // namespace hollowfernpike::show
