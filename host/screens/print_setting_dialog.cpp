#include "host/screens/print_setting_dialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ado/error.h"
#include "host/screens/dialog_buttons.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/persian_digits.h"
#include "host/screens/print_setting_memory.h"
#include "host/services/sql_access.h"

namespace basalt::host {
namespace {

constexpr int kTitleCharacters = 100;

struct PaperName {
    TPrintPaper paper;
    const char* title;
};
constexpr PaperName kPapers[]{
    {TPrintPaper::A4, "A4"}, {TPrintPaper::A5, "A5"}, {TPrintPaper::A3, "A3"}, {TPrintPaper::Letter, "Letter"}};

std::vector<ColumnChoice> choicesOf(const std::vector<TPrintColumn>& columns) {
    std::vector<ColumnChoice> choices;
    for (std::size_t i = 0; i < columns.size(); ++i)
        choices.push_back({static_cast<int>(i), QString::fromStdString(columns[i].Title), columns[i].Visible});
    return choices;
}

}  // namespace

PrintSettingDialog::PrintSettingDialog(const TPrintSetting& start, const QString& standardTitle, QWidget* parent)
    : QDialog(parent),
      start_(start),
      standardTitle_(standardTitle),
      title_(new QLineEdit(this)),
      titleLimit_(new QLabel(this)),
      paper_(new QComboBox(this)),
      portrait_(new QRadioButton(QStringLiteral("عمودی"), this)),
      landscape_(new QRadioButton(QStringLiteral("افقی"), this)),
      columns_(new ColumnList(choicesOf(start.Columns), QStringLiteral("ستون‌های چاپ"), this)) {
    setObjectName(QStringLiteral("PrintSetting_FRM"));
    setWindowTitle(QStringLiteral("تنظیمات چاپ"));
    setLayoutDirection(Qt::RightToLeft);
    resize(420, start.Columns.empty() ? 260 : 520);

    title_->setObjectName(QStringLiteral("PrintTitle_EDT"));
    title_->setMaxLength(kTitleCharacters);
    title_->setText(QString::fromStdString(start.Title));
    title_->setPlaceholderText(standardTitle);
    titleLimit_->setObjectName(QStringLiteral("PrintTitle_Limit"));
    titleLimit_->setProperty("kind", QStringLiteral("hint"));
    titleLimit_->setText(persianDigits(QStringLiteral("عنوان حداکثر %1 نویسه دارد.").arg(kTitleCharacters)));
    const auto showLimit = [this] { titleLimit_->setVisible(title_->text().size() >= kTitleCharacters); };
    showLimit();
    QObject::connect(title_, &QLineEdit::textChanged, this, showLimit);
    // A print always has a title; who takes it away gets the report's own.
    QObject::connect(title_, &QLineEdit::editingFinished, this, [this] {
        if (title_->text().trimmed().isEmpty()) title_->setText(standardTitle_);
    });
    paper_->setObjectName(QStringLiteral("Paper_CMB"));
    for (const PaperName& entry : kPapers) {
        paper_->addItem(QString::fromLatin1(entry.title), static_cast<int>(entry.paper));
        if (entry.paper == start.Paper) paper_->setCurrentIndex(paper_->count() - 1);
    }
    portrait_->setObjectName(QStringLiteral("Portrait_RDB"));
    landscape_->setObjectName(QStringLiteral("Landscape_RDB"));
    (start.Orientation == TPrintOrientation::Landscape ? landscape_ : portrait_)->setChecked(true);

    auto* orientation = new QHBoxLayout;
    orientation->addWidget(portrait_);
    orientation->addWidget(landscape_);
    orientation->addStretch(1);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("عنوان :"), title_);
    form->addRow(titleLimit_);
    form->addRow(QStringLiteral("کاغذ :"), paper_);
    form->addRow(QStringLiteral("جهت :"), orientation);
    // Without any column to choose, what the report always prints is all there is.
    const bool choosing = !start.Columns.empty();
    form->addRow(new QLabel(
        choosing ? QStringLiteral("ستون‌های چاپ :") : QStringLiteral("این گزارش ستونی برای انتخاب ندارد."),
        this));
    columns_->setVisible(choosing);
    const DialogButtons buttons = dialogButtons(*this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addLayout(form);
    layout->addWidget(columns_, 1);
    if (!choosing) layout->addStretch(1);
    layout->addLayout(buttons.row);
    columns_->onChange = [this, choosing, accept = buttons.accept] {
        enableUnless(*accept, !choosing || columns_->anyVisible() ? QString() : noColumnReason());
    };
    columns_->onChange();
}

TPrintSetting PrintSettingDialog::setting() const {
    TPrintSetting setting{
        .Title = (title_->text().trimmed().isEmpty() ? standardTitle_ : title_->text()).toStdString(),
        .Paper = static_cast<TPrintPaper>(paper_->currentData().toInt()),
        .Orientation = landscape_->isChecked() ? TPrintOrientation::Landscape : TPrintOrientation::Portrait};
    for (const ColumnChoice& choice : columns_->choices()) {
        setting.Columns.push_back(start_.Columns[static_cast<std::size_t>(choice.column)]);
        setting.Columns.back().Visible = choice.visible;
    }
    return setting;
}

bool askPrintSetting(ScreenContext& context, const TPrintSettingRequest& request, TPrintSetting& setting) {
    PrintSettingMemory memory(context.host(), request.ReportName);
    PrintSettingDialog dialog(memory.recall(request), QString::fromStdString(request.Title), request.Form);
    if (dialog.exec() != QDialog::Accepted) return false;
    TPrintSetting chosen = dialog.setting();
    try {
        const ShortWait wait(context.host().session());
        memory.keep(chosen);
    } catch (const DatabaseError&) {
        // It is printed all the same; the next time starts as this time did.
    }
    setting = std::move(chosen);
    return true;
}

}  // namespace basalt::host
