#include "host/screens/message_box.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "host/screens/escape_rest.h"
#include "host/screens/marked_statement.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kMarkSize = 40;
constexpr int kTextWidth = 400;

struct ButtonKind {
    TMessageButton button;
    int result;
    const char* objectName;
};
constexpr ButtonKind kButtons[]{
    {TMessageButton::Ok, mrOk, "Ok_BTN"},
    {TMessageButton::Cancel, mrCancel, "Cancel_BTN"},
    {TMessageButton::Yes, mrYes, "Yes_BTN"},
    {TMessageButton::No, mrNo, "No_BTN"},
};

const ButtonKind& kindOf(TMessageButton button) {
    return *std::find_if(std::begin(kButtons), std::end(kButtons),
                         [&](const ButtonKind& kind) { return kind.button == button; });
}

// A disc with the sign of the mood.
QPixmap moodMark(MessageBoxContent::Mood mood, qreal ratio) {
    using Mood = MessageBoxContent::Mood;
    const ThemeColors& colors = themeColors();
    const QColor ink = mood == Mood::Error ? colors.danger : mood == Mood::Warning ? colors.warning : colors.accent;
    const QColor ground = mood == Mood::Error     ? colors.dangerSoft
                          : mood == Mood::Warning ? colors.warningSoft
                                                  : colors.accentSoft;
    const QString sign = mood == Mood::Question ? QStringLiteral("؟")
                         : mood == Mood::Note   ? QStringLiteral("i")
                                                : QStringLiteral("!");
    QPixmap mark(QSize(kMarkSize, kMarkSize) * ratio);
    mark.setDevicePixelRatio(ratio);
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawEllipse(0, 0, kMarkSize, kMarkSize);
    painter.setPen(ink);
    painter.setFont(themeFont(16, QFont::Bold));
    painter.drawText(QRect(0, 0, kMarkSize, kMarkSize), Qt::AlignCenter, sign);
    return mark;
}

// A text that would take more than that height, the names of hundreds of goods for one, is scrolled within it, so that
// the buttons stay on the screen.
QWidget* withinHeight(QLabel* text, int most, QWidget* parent) {
    text->ensurePolished();
    if (text->heightForWidth(text->width()) <= most) return text;
    auto* scroll = new QScrollArea(parent);
    scroll->setObjectName(QStringLiteral("MessageText_SCR"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The height that it needs at its width, which is not the one that a label would like best.
    text->setFixedHeight(text->heightForWidth(text->width()));
    scroll->setWidget(text);
    text->setAutoFillBackground(false);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setFixedSize(text->width() + scroll->verticalScrollBar()->sizeHint().width(), most);
    scroll->setAccessibleName(text->text());
    return scroll;
}

}  // namespace

MessageBox::MessageBox(const MessageBoxContent& content, const MessageCatalogue& catalogue, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("MessageBox"));
    setWindowTitle(content.title);
    setLayoutDirection(Qt::RightToLeft);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(16);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(heading(content));
    if (!content.detail.isEmpty()) layout->addWidget(detailPart(content.detail));
    layout->addWidget(buttonRow(content, catalogue));
    installEventFilter(this);
}

QWidget* MessageBox::heading(const MessageBoxContent& content) {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    auto* mark = new QLabel(row);
    mark->setPixmap(moodMark(content.mood, devicePixelRatioF()));
    layout->addWidget(mark, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(6);
    if (!content.title.isEmpty()) {
        auto* title = new QLabel(screenText(content.title), row);
        title->setObjectName(QStringLiteral("MessageTitle_LBL"));
        title->setTextFormat(Qt::PlainText);
        title->setFont(themeFont(themeSize(11.5), QFont::Bold));
        texts->addWidget(title);
    }
    auto* text = new QLabel(screenText(content.text), row);
    text->setObjectName(QStringLiteral("MessageText_LBL"));
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setFixedWidth(themePixels(kTextWidth));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Half of the screen leaves room for the title, the details and the buttons, at the largest font too.
    texts->addWidget(withinHeight(text, themeScreenRoom(*this).height() / 2, row));
    texts->addStretch(1);
    layout->addLayout(texts, 1);
    return row;
}

QWidget* MessageBox::detailPart(const QString& detail) {
    auto* part = new QWidget(this);
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* toggle = new QToolButton(part);
    toggle->setObjectName(QStringLiteral("Detail_BTN"));
    toggle->setText(QStringLiteral("جزئیات فنی"));
    toggle->setCheckable(true);
    toggle->setFocusPolicy(Qt::StrongFocus);
    auto* text = new QPlainTextEdit(part);
    showMarked(*text, detail);
    text->setObjectName(QStringLiteral("MessageDetail_EDT"));
    text->setProperty("kind", QStringLiteral("detail"));
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setFixedHeight(110);
    text->hide();
    QObject::connect(toggle, &QToolButton::toggled, text, &QWidget::setVisible);
    layout->addWidget(toggle, 0, Qt::AlignLeading);
    layout->addWidget(text);
    return part;
}

QWidget* MessageBox::buttonRow(const MessageBoxContent& content, const MessageCatalogue& catalogue) {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    const auto has = [&](TMessageButton button) {
        return std::find(content.buttons.begin(), content.buttons.end(), button) != content.buttons.end();
    };
    refusal_ = has(TMessageButton::Cancel) ? mrCancel
               : has(TMessageButton::No)   ? mrNo
                                           : kindOf(content.buttons.front()).result;
    for (const TMessageButton kind : content.buttons) {
        const ButtonKind& entry = kindOf(kind);
        auto* button = new QPushButton(QString::fromStdString(catalogue.buttonText(kind)), row);
        button->setObjectName(QString::fromLatin1(entry.objectName));
        QObject::connect(button, &QPushButton::clicked, this, [this, result = entry.result] {
            answer_ = result;
            QDialog::accept();
        });
        const bool isDefault = kind == content.defaultButton || content.buttons.size() == 1;
        button->installEventFilter(this);
        button->setAutoDefault(true);
        button->setDefault(isDefault);
        if (isDefault) button->setFocus();
        layout->addWidget(button);
    }
    return row;
}

// On the buttons as well: the one with the focus would take Enter before the box sees it.
bool MessageBox::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && guard_.endsScan(static_cast<const QKeyEvent&>(*event))) {
        QApplication::beep();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
    const quint64 pressed = event->timestamp();
    QDialog::keyPressEvent(event);
    if (event->key() == Qt::Key_Escape && !isVisible()) EscapeRest::ofApplication().begin(pressed);
}

int MessageBox::ask() {
    QDialog::exec();
    return answer_;
}

void MessageBox::reject() {
    answer_ = refusal_;
    QDialog::reject();
}

}  // namespace basalt::host
