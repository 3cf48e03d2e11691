#pragma once

#include "platform/EventTap.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class QPushButton;

namespace hollowfernpike {

class FittingLabel;

/// Records one key combination: a bordered line with a label and a button. A click on it records,
/// as the label says; once it records, only the button, Escape or a key ends that. While it records
/// it listens to the whole keyboard and swallows nothing, so that every key press also reaches our
/// key window. It stops, and takes no press that is on its way, as soon as its window is hidden or
/// loses the keyboard focus: what is typed then is for others. Main thread only.
///
/// While it records it keeps itself alive. Call `setParent(nullptr)`
/// before its parent is destroyed, which would delete it.
class KeyRecorderView final : public QWidget, public std::enable_shared_from_this<KeyRecorderView> {
public:
    static std::shared_ptr<KeyRecorderView> make();

    /// The combination that was recorded last, or handed in; absent before there is one.
    std::optional<std::uint16_t> capturedKeyCode() const { return capturedKeyCode_; }
    std::optional<std::uint64_t> capturedModifierFlags() const { return capturedModifierFlags_; }

    /// Called with every combination that is recorded. The owner's to set.
    std::function<void(std::uint16_t keyCode, std::uint64_t modifierFlags)> onKeyRecorded;

    bool isRecording() const { return isRecording_; }

    /// The tap that records, null while there is none.
    platform::EventTap* eventTap() const { return eventTap_.get(); }

    void toggleRecording();

    /// Does nothing unless it records.
    void stopRecording();

    /// The same, and presses that the tap has reported but nobody has handled are dropped.
    void abandonRecording();

    /// Handles a key press: Escape ends the recording; for a key without modifiers the label asks
    /// for some; any other is recorded. `flags` is the event's whole flag word.
    void handleCapturedKey(std::uint16_t keyCode, std::uint64_t flags);

    /// Takes over the desktop's font.
    void adoptFont();

    /// Shows and keeps a combination that exists already, flags unmasked.
    void setShortcut(std::uint16_t keyCode, std::uint64_t modifierFlags);

private:
    friend const platform::KeyEvent* keyRecorderEventTapCallback(platform::EventTap* proxy,
                                                                 platform::EventType type,
                                                                 const platform::KeyEvent* event,
                                                                 void* userInfo);

    KeyRecorderView();

    void setupUI();
    void layOut();
    void startRecording();
    void bringToFront();
    bool installEventTap();
    void removeEventTap();

    /// Handles what the tap reports: later, in the order in which it came, and not if another
    /// recording has begun or this one was abandoned by then.
    void inThisRecording(std::function<void()> handle);
    void returnToAccessory();
    void showRecording(bool isRecording);
    void setLabel(const QString& text, const QString& inWords = QString());

    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    std::optional<std::uint16_t> capturedKeyCode_;
    std::optional<std::uint64_t> capturedModifierFlags_;
    bool isRecording_ = false;
    unsigned recordings_ = 0; ///< begun or abandoned; a press belongs to the one that it came in
    std::unique_ptr<platform::EventTap> eventTap_;
    std::unique_ptr<platform::RunLoopSource> runLoopSource_;
    FittingLabel* displayLabel_ = nullptr;
    QPushButton* recordButton_ = nullptr;
    std::shared_ptr<KeyRecorderView> heldByTap_; ///< ourselves, while a tap calls us back
};

/// What the recorder's tap calls; `userInfo` is the view. Returns `event`.
const platform::KeyEvent* keyRecorderEventTapCallback(platform::EventTap* proxy,
                                                      platform::EventType type,
                                                      const platform::KeyEvent* event,
                                                      void* userInfo);

} // namespace hollowfernpike
