#include "host/desktop/function_list.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "host/desktop/subsystem_look.h"
#include "host/screens/persian_inputs.h"

namespace basalt::host {

FunctionList::FunctionList(const Registry& registry, QWidget* parent) : QWidget(parent) {
    for (const FunctionEntry& function : registry.functions())
        callables_.push_back({.function = &function});
    for (const EntryPoint& entry : registry.entryPoints())
        callables_.push_back({.entry = &entry});

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    search_ = new QLineEdit;
    search_->setObjectName(QStringLiteral("FunctionSearch_EDT"));
    search_->setPlaceholderText(QStringLiteral("جستجوی تابع…"));
    search_->setAccessibleName(QStringLiteral("جستجوی تابع"));
    search_->setClearButtonEnabled(true);
    readFromRight(*search_);
    search_->installEventFilter(this);
    layout->addWidget(search_);
    list_ = new QListWidget;
    list_->setObjectName(QStringLiteral("Function_LST"));
    list_->setAccessibleName(QStringLiteral("تابع‌ها"));
    // Names of functions are Latin and read from the left.
    list_->setLayoutDirection(Qt::LeftToRight);
    list_->setTextElideMode(Qt::ElideRight);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->installEventFilter(this);
    for (const Callable& callable : callables_) {
        auto* item = new QListWidgetItem(title(callable), list_);
        item->setToolTip(QString::fromStdString(callable.summary()));
    }
    layout->addWidget(list_, 1);
    none_ = new QLabel(QStringLiteral("تابعی با این نام یا شرح پیدا نشد."));
    none_->setObjectName(QStringLiteral("NoFunction_LBL"));
    none_->setProperty("kind", QStringLiteral("hint"));
    none_->setWordWrap(true);
    none_->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    none_->hide();
    layout->addWidget(none_, 1);
    QObject::connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { narrow(text); });
    QObject::connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (OnChosen) OnChosen(row < 0 ? Callable{} : callables_.at(static_cast<std::size_t>(row)));
    });
    QObject::connect(list_, &QListWidget::itemDoubleClicked, this, [this] { accept(); });
}

QString FunctionList::title(const Callable& callable) const {
    QString text = QString::fromStdString(callable.name());
    const auto named = std::count_if(callables_.begin(), callables_.end(),
                                     [&](const Callable& other) { return other.name() == callable.name(); });
    if (named == 1) return text;
    // Overloads are told apart by their parameters.
    QStringList parameters;
    for (const FunctionParameter& parameter : callable.parameters())
        parameters << QString::fromStdString(parameter.name);
    return text + QStringLiteral(" (%1)").arg(parameters.join(QStringLiteral(", ")));
}

void FunctionList::focusSearch() {
    search_->setFocus();
    search_->selectAll();
    if (list_->currentRow() < 0) narrow(search_->text());
}

void FunctionList::narrow(const QString& text) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    int first = -1;
    for (int row = 0; row < list_->count(); ++row) {
        const Callable& callable = callables_.at(static_cast<std::size_t>(row));
        const QString content = list_->item(row)->text() +
                                QString::fromStdString(' ' + callable.summary() + ' ' + callable.subsystem() + ' ') +
                                subsystemTitle(callable.subsystem());
        const bool fits = std::all_of(words.begin(), words.end(),
                                      [&](const QString& word) { return content.contains(word, Qt::CaseInsensitive); });
        list_->item(row)->setHidden(!fits);
        if (fits && first < 0) first = row;
    }
    list_->setVisible(first >= 0);
    none_->setVisible(first < 0);
    if (first < 0) list_->setCurrentRow(-1);
    const int current = list_->currentRow();
    if (first >= 0 && (current < 0 || list_->item(current)->isHidden())) list_->setCurrentRow(first);
}

void FunctionList::accept() {
    const QListWidgetItem* item = list_->currentItem();
    if (item && !item->isHidden() && OnAccepted) OnAccepted();
}

bool FunctionList::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            accept();
            return true;
        }
        if (watched == search_ && key == Qt::Key_Down) {
            list_->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace basalt::host
