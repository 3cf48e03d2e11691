#include "ui/window/ShortcutCardView.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/IconView.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/AppName.h"
#include "ui/parts/CombinationWords.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/Labels.h"
#include "ui/parts/Sheets.h"
#include "ui/parts/SystemColors.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr int cardMargin = 12; // from the card's sides, and between what it shows
constexpr int cardIconSide = 32;
constexpr int gapBetweenButtons = 4;
constexpr int leastNameWidth = 100;
constexpr int cardSignSide = 18;
constexpr int gapBeforeSign = 6;

/// Calls a copy: the callback may destroy the card, and itself with it.
void call(const ShortcutCardView::Callback& callback) {
    if (const auto copy = callback) {
        copy();
    }
}

} // namespace

ShortcutCardView::ShortcutCardView(QWidget* parent)
    : QWidget(parent), iconView_(new IconView(this)), appNameLabel_(new FittingLabel(this)),
      hotkeyBadge_(new HotkeyBadge(this)),
      editButton_(
          new SymbolButton(Symbol::pencil, SymbolTint::text, localized("編集", "Edit"), this)),
      deleteButton_(
          new SymbolButton(Symbol::trash, SymbolTint::red, localized("削除", "Delete"), this)) {
    setupUI();
}

ShortcutCardView::ShortcutCardView(const AppShortcut& shortcut, QWidget* parent)
    : ShortcutCardView(parent) {
    configure(shortcut);
}

void ShortcutCardView::setupUI() {
    setAccessibleRole(*this, QAccessible::Pane);
    setFixedHeight(grown(usualHeight));
    setFocusPolicy(Qt::StrongFocus);
    appNameLabel_->setFont(systemFont(14, QFont::Medium));
    onClick(*editButton_, [this] { editTapped(); });
    onClick(*deleteButton_, [this] { deleteTapped(); });
}

void ShortcutCardView::configure(const AppShortcut& shortcut) {
    const QString combination = QString::fromStdString(shortcut.displayString());
    appPath_ = shortcut.appPath;
    appName_ = shortcut.appName;
    renewApplication();
    hotkeyBadge_->setText(" " + combination + " ");
    iconView_->setIcon(iconForFile(shortcut.appPath));
    hotkeyBadge_->setAccessibleDescription(
        combinationInWords(shortcut.keyCode, shortcut.modifierFlags));
    tellOnBadge();
    setAccessibleName(appNameLabel_->text() + " " + combination);
    placeViews();
}

void ShortcutCardView::renewApplication() {
    knownName_ = showAppName(*appNameLabel_, appPath_, appName_);
    isStandingShown_ = appPath_.empty();
    describe();
    update();
}

void ShortcutCardView::tellOnBadge() {
    const auto words = hotkeyBadge_->accessibleDescription().toHtmlEscaped();
    hotkeyBadge_->setToolTip(notice_.isEmpty() ? words : words + "<br>" + notice_.toHtmlEscaped());
}

void ShortcutCardView::setNotice(const QString& notice) {
    if (notice == notice_) {
        return;
    }
    notice_ = notice;
    tellOnBadge();
    describe();
    if (noticeSign_ == nullptr && !notice.isEmpty()) {
        makeNoticeSign();
    }
    if (noticeSign_ != nullptr) {
        noticeSign_->setToolTip(notice);
        noticeSign_->setAccessibleName(notice);
        noticeSign_->setHidden(notice.isEmpty());
        placeViews();
    }
}

void ShortcutCardView::makeNoticeSign() {
    noticeSign_ = new IconView(this);
    setAccessibleRole(*noticeSign_, QAccessible::Graphic);
    noticeSign_->setIcon(symbolImage(Symbol::exclamationmarkTriangle));
}

void ShortcutCardView::markForAMoment() {
    constexpr std::chrono::milliseconds moment{1500};
    isMarked_ = true;
    update();
    QTimer::singleShot(moment, this, [this] {
        isMarked_ = false;
        update();
    });
}

void ShortcutCardView::keyPressEvent(QKeyEvent* event) {
    switch (event->isAutoRepeat() ? 0 : event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        editTapped();
        break;
    case Qt::Key_Delete:
        deleteTapped();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

// Once the card is seen, as the icon: most cards of a long list never are.
void ShortcutCardView::showStanding() {
    using platform::Standing;
    if (std::exchange(isStandingShown_, true)) {
        return;
    }
    const auto standing = platform::services().applicationBundles.standingOf(appPath_);
    iconView_->setDimmed(standing != Standing::fine);
    iconView_->setToolTip({});
    if (standing == Standing::gone) {
        iconView_->setToolTip(
            localized("このアプリはもうありません。", "This application is gone."));
    } else if (standing != Standing::fine) {
        iconView_->setToolTip(localized(
            "アプリケーションフォルダの外にあり、信頼されていないため起動されません。",
            "It lies outside of the applications folders and is not trusted, so it will not "
            "be opened."));
    }
    describe();
}

void ShortcutCardView::describe() {
    QStringList words{knownName_, iconView_->toolTip(), notice_};
    words.removeAll(QString());
    setAccessibleDescription(words.join(' '));
}

void ShortcutCardView::editTapped() {
    call(onEdit);
}

void ShortcutCardView::deleteTapped() {
    call(onDelete);
}

QSize ShortcutCardView::sizeHint() const {
    return {0, height()};
}

void ShortcutCardView::resizeEvent(QResizeEvent*) {
    placeViews();
}

void ShortcutCardView::placeViews() {
    const auto place = [this](QWidget& view, int left, QSize size) {
        view.setGeometry(left, (height() - size.height()) / 2, size.width(), size.height());
    };
    const int icon = grown(cardIconSide);
    const int sign = grown(cardSignSide);
    const int deleteLeft = width() - cardMargin - deleteButton_->width();
    const int editLeft = deleteLeft - gapBetweenButtons - editButton_->width();
    const int nameLeft = cardMargin + icon + cardMargin;
    const bool hasSign = noticeSign_ != nullptr && !noticeSign_->isHidden();
    const int forSign = hasSign ? gapBeforeSign + sign : 0;
    const int forTexts = editLeft - cardMargin - nameLeft - cardMargin - forSign;
    const QSize name = appNameLabel_->sizeHint();
    const QSize badge = hotkeyBadge_->sizeHint();
    const int nameWidth =
        std::max(grown(leastNameWidth), std::min(name.width(), forTexts - badge.width()));
    const int badgeWidth = std::max(0, std::min(badge.width(), forTexts - nameWidth));

    place(*iconView_, cardMargin, {icon, icon});
    place(*appNameLabel_, nameLeft, {nameWidth, name.height()});
    place(*hotkeyBadge_, nameLeft + nameWidth + cardMargin, {badgeWidth, badge.height()});
    if (hasSign) {
        place(*noticeSign_, nameLeft + nameWidth + cardMargin + badgeWidth + gapBeforeSign,
              {sign, sign});
    }
    place(*editButton_, editLeft, editButton_->size());
    place(*deleteButton_, deleteLeft, deleteButton_->size());
}

void ShortcutCardView::paintEvent(QPaintEvent*) {
    showStanding();
    constexpr qreal cornerRadius = 8;
    const qreal scale = devicePixelRatioF();
    const qreal border = std::max<qreal>(1, std::floor(scale)) / scale; // whole device pixels
    const bool isEmphasized = hasFocus() || isMarked_;
    const qreal width = isEmphasized ? 2 * border : border;
    const qreal inset = width / 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    painter.setPen(QPen(isEmphasized ? accentColor(palette()) : separatorColor(palette()), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            cornerRadius - inset, cornerRadius - inset);
}

} // namespace hollowfernpike
