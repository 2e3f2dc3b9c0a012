#include "host/screens/column_chooser.h"

#include <QLabel>
#include <QVBoxLayout>

#include "host/screens/dialog_buttons.h"
#include "host/screens/disabled_reason.h"

namespace basalt::host {

ColumnChooser::ColumnChooser(const std::vector<ColumnChoice>& choices, QWidget* parent)
    : QDialog(parent), columns_(new ColumnList(choices, QStringLiteral("ستون‌ها"), this)) {
    setObjectName(QStringLiteral("ColumnChooser_FRM"));
    setWindowTitle(QStringLiteral("ستون‌ها"));
    setLayoutDirection(Qt::RightToLeft);
    resize(360, 420);

    auto* hint = new QLabel(
        QStringLiteral("ستون‌هایی را که می‌خواهید ببینید نشان بگذارید."),
        this);
    hint->setProperty("kind", QStringLiteral("hint"));
    hint->setWordWrap(true);
    const DialogButtons buttons = dialogButtons(*this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(hint);
    layout->addWidget(columns_, 1);
    layout->addLayout(buttons.row);

    columns_->onChange = [this, accept = buttons.accept] {
        enableUnless(*accept, columns_->anyVisible() ? QString() : noColumnReason());
    };
    columns_->onChange();
}

}  // namespace basalt::host
