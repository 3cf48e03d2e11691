#pragma once

#include <QPushButton>

namespace hollowfernpike {

class FittingLabel;
class IconView;
class KeyRecorderView;

/// The views of the shortcut editor, in the order in which Tab visits them, and their layout. The
/// window owns the views. Main thread only.
struct EditorViews {
    /// Makes the views in `window`, in the current language; the recorder becomes its child, too.
    EditorViews(QWidget& window, KeyRecorderView& recorder);

    /// Takes over the desktop's font.
    void adoptFont() const;

    /// Puts everything in its place in a window of this size.
    void layOut(const QSize& size) const;

    /// What people should know of the combination; no sign without words.
    void setNotice(const QString& notice) const;

    FittingLabel* step1Heading;
    QPushButton* selectButton;
    IconView* step1AppIconView;
    FittingLabel* step1AppNameLabel;
    QWidget* step2Container;
    FittingLabel* step2Heading;
    KeyRecorderView* keyRecorder;
    IconView* noticeSign;
    FittingLabel* noticeLabel;
    QPushButton* cancelButton;
    QPushButton* saveButton;

private:
    int layOutStep1(int width) const;
    void layOutStep2(int top, int width) const;
    void layOutButtons(const QSize& size) const;
    void layOutNotice(int width) const;
};

} // namespace hollowfernpike
