#include "ui/window/BindingsPrompt.h"

#include "app/Language.h"
#include "ui/parts/Sheets.h"

#include <QClipboard>
#include <QDialog>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace hollowfernpike {

namespace {

constexpr QSize sizeForLines(840, 320); // most fit

QLabel* addText(QVBoxLayout& layout) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout.addWidget(label);
    return label;
}

} // namespace

BindingsPrompt::BindingsPrompt(std::function<void()> onCopied) : onCopied_(std::move(onCopied)) {}

BindingsPrompt::~BindingsPrompt() = default;

void BindingsPrompt::show(const platform::ManualBindings& bindings) {
    if (window_ == nullptr) {
        build();
    }
    const auto* const message =
        localized("ショートカットキーをデスクトップに設定してください",
                  "Shortcuts have to be bound in the settings of your desktop");
    const auto explanation =
        QString::fromStdString(localized(bindings.reason.japanese(), bindings.reason.english()));
    window_->setAccessibleName(message);
    window_->setAccessibleDescription(explanation);
    message_->setText(message);
    explanation_->setText(explanation);
    QStringList texts;
    for (const auto& line : bindings.lines) {
        texts << QString::fromStdString(line);
    }
    lines_->setPlainText(texts.join('\n'));
    lines_->setAccessibleName(localized("設定に書く行", "Lines for the settings"));
    copyButton_->setText(localized("行をコピー", "Copy Lines"));
    window_->show();
}

bool BindingsPrompt::isOpen() const {
    return window_ != nullptr && window_->isVisible();
}

void BindingsPrompt::close() {
    window_.reset();
}

void BindingsPrompt::build() {
    window_ = std::make_unique<QDialog>();
    window_->setWindowTitle("Hollowfernpike");
    window_->resize(sizeForLines);
    auto* layout = new QVBoxLayout(window_.get());
    message_ = addText(*layout);
    auto bold = message_->font();
    bold.setBold(true);
    message_->setFont(bold);
    explanation_ = addText(*layout);
    lines_ = new QPlainTextEdit;
    lines_->setReadOnly(true);
    lines_->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines_->setTabChangesFocus(true);
    lines_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    layout->addWidget(lines_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    copyButton_ = new QPushButton;
    copyButton_->setAutoDefault(false);
    buttons->addWidget(copyButton_);
    auto* ok = new QPushButton("OK"); // as in all alerts
    ok->setDefault(true);
    ok->setFocus();
    buttons->addWidget(ok);
    layout->addLayout(buttons);
    onClick(*copyButton_, [this] { copy(); });
    QObject::connect(ok, &QPushButton::clicked, window_.get(), &QDialog::accept);
}

void BindingsPrompt::copy() {
    QGuiApplication::clipboard()->setText(lines_->toPlainText() + '\n');
    onCopied_();
}

} // namespace hollowfernpike
