#pragma once

#include "platform/EventTap.h"
#include "ui/editor/EditorTest.h"
#include "ui/editor/KeyRecorderView.h"
#include "ui/parts/Labels.h"

#include <QPushButton>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

using namespace platform::event_flags;

inline constexpr std::uint16_t keyA = 0;
inline constexpr std::uint16_t keyB = 11;
inline constexpr std::uint16_t keyEscape = 53;

/// A recorder that is not in any window, and what it reports.
template <class Base>
class WithKeyRecorder : public Base {
protected:
    using Combination = std::pair<std::uint16_t, std::uint64_t>;

    WithKeyRecorder() {
        view_->onKeyRecorded = [this](std::uint16_t keyCode, std::uint64_t modifierFlags) {
            recorded_.emplace_back(keyCode, modifierFlags);
        };
    }

    void TearDown() override {
        if (view_) {
            view_->stopRecording();
        }
        Base::TearDown();
    }

    FakeEventTap& tap() { return *this->services_.eventTaps.tap(); }

    /// Presses a key on the keyboard and lets the recorder handle it.
    void strike(std::uint16_t keyCode, std::uint64_t flags) {
        tap().press(keyCode, flags);
        this->services_.mainQueue.runDue();
    }

    QString label() const { return find<FittingLabel>(*view_, "displayLabel").text(); }
    QPushButton& button() const { return find<QPushButton>(*view_, "recordButton"); }

    std::shared_ptr<KeyRecorderView> view_ = KeyRecorderView::make();
    std::vector<Combination> recorded_;
};

using KeyRecorderTest = WithKeyRecorder<EditorTest>;
using KeyRecorderInEachLanguage = WithKeyRecorder<EditorInEachLanguage>;

} // namespace hollowfernpike::test
