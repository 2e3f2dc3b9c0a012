#include "host/desktop/database_problem_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "host/desktop/line_icon.h"
#include "host/desktop/shell_style.h"
#include "host/screens/marked_statement.h"
#include "host/screens/theme.h"
#include "host/services/isolated_text.h"

namespace basalt::host {
namespace {

constexpr int kTextWidth = 504;

}  // namespace

DatabaseProblemDialog::DatabaseProblemDialog(const DatabaseProblem& problem, const QString& detail,
                                             const QString& location, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("DatabaseProblem_FRM"));
    setWindowTitle(QStringLiteral("بازالت"));
    setStyleSheet(shellStyleSheet());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 24);
    layout->setSpacing(10);
    // As high as what shows, the details too once they do.
    layout->setSizeConstraint(QLayout::SetFixedSize);
    addTexts(*layout, problem, location);
    addDetail(*layout, detail);
    layout->addSpacing(8);
    QWidget* buttons = addButtons(*layout);
    // Long texts wrap at the width that the buttons take.
    const int width = std::max(themePixels(kTextWidth), buttons->sizeHint().width());
    buttons->setMinimumWidth(width);
    for (QLabel* text : wrapped_)
        text->setFixedWidth(width);
}

void DatabaseProblemDialog::addTexts(QVBoxLayout& layout, const DatabaseProblem& problem, const QString& location) {
    auto* heading = new QHBoxLayout;
    heading->setSpacing(14);
    auto* picture = new QLabel;
    picture->setPixmap(linePixmap(LineIcon::Warning, themeColors().danger, 34));
    heading->addWidget(picture);
    auto* title = new QLabel(QString::fromStdString(problem.title));
    title->setObjectName(QStringLiteral("ProblemTitle_LBL"));
    title->setProperty("kind", QStringLiteral("title"));
    title->setWordWrap(true);
    heading->addWidget(title, 1);
    layout.addLayout(heading);
    auto* advice = new QLabel(QString::fromStdString(problem.advice));
    advice->setObjectName(QStringLiteral("ProblemAdvice_LBL"));
    advice->setWordWrap(true);
    wrapped_.push_back(advice);
    layout.addWidget(advice);
    auto* where = new QLabel(QString::fromStdString(readFromLeft(location.toStdString())));
    where->setProperty("kind", QStringLiteral("hint"));
    where->setWordWrap(true);
    wrapped_.push_back(where);
    where->setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
    where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout.addWidget(where);
}

void DatabaseProblemDialog::addDetail(QVBoxLayout& layout, const QString& detail) {
    auto* toggle = new QToolButton;
    toggle->setObjectName(QStringLiteral("Detail_BTN"));
    toggle->setText(QStringLiteral("جزئیات فنی"));
    toggle->setCheckable(true);
    layout.addWidget(toggle, 0, Qt::AlignRight | Qt::AlignAbsolute);
    auto* text = new QPlainTextEdit;
    showMarked(*text, detail);
    text->setObjectName(QStringLiteral("Detail_EDT"));
    text->setProperty("kind", QStringLiteral("detail"));
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setFixedHeight(themePixels(110));
    text->hide();
    layout.addWidget(text);
    connect(toggle, &QToolButton::toggled, text, &QWidget::setVisible);
}

QWidget* DatabaseProblemDialog::addButtons(QVBoxLayout& layout) {
    auto* buttons = new QWidget;
    layout.addWidget(buttons);
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    const auto add = [&](const char* objectName, const char* title, Choice choice) {
        auto* button = new QPushButton(QString::fromUtf8(title));
        button->setObjectName(QString::fromLatin1(objectName));
        connect(button, &QPushButton::clicked, this, [this, choice] {
            choice_ = choice;
            accept();
        });
        row->addWidget(button);
        // The style sheet's font and margins count in its width.
        button->ensurePolished();
        return button;
    };
    QPushButton* retry = add("Retry_BTN", "تلاش دوباره", Choice::Retry);
    add("ChooseFile_BTN", "پروندهٔ دیگر…", Choice::ChooseFile);
    add("CreateDemo_BTN", "ساخت پایگاه نمایشی…", Choice::CreateDemo);
    row->addStretch();
    add("Exit_BTN", "خروج", Choice::Exit);
    retry->setDefault(true);
    retry->setFocus();
    return buttons;
}

}  // namespace basalt::host
