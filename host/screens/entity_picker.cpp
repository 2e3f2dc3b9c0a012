#include "host/screens/entity_picker.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "host/screens/dialog_buttons.h"
#include "host/screens/persian_digits.h"
#include "host/screens/search_condition.h"

namespace basalt::host {
namespace {

// The name holds the text or, when only digits are typed, the code begins with them.
std::string conditionFor(const QString& text) {
    const std::string byName = textCondition("Name", text);
    const QString digits = latinDigits(text.trimmed());
    const bool onlyDigits = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    return onlyDigits ? byName + " OR " + digitsCondition("Code", text.trimmed()) : byName;
}

}  // namespace

EntityPicker::EntityPicker(ScreenContext& context, TSoftwarePart part, const QString& searchText)
    : context_(context),
      part_(part),
      store_(context.host().session()),
      search_(new SearchEdit(QStringLiteral("Search_EDT"), this)),
      list_(new QTableView(this)),
      count_(new QLabel(this)) {
    setObjectName(QStringLiteral("EntityPicker_FRM"));
    setWindowTitle(
        QStringLiteral("انتخاب %1").arg(QString::fromStdString(context.host().permissions().partTitle(part))));
    setLayoutDirection(Qt::RightToLeft);
    resize(520, 560);

    search_->setPlaceholderText(QStringLiteral("جستجو در کد و عنوان"));
    search_->setAccessibleName(search_->placeholderText());
    search_->setText(searchText);
    list_->setObjectName(QStringLiteral("Entities_GRD"));
    list_->setAccessibleName(windowTitle());
    list_->setModel(&model_);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setAlternatingRowColors(true);
    list_->setShowGrid(false);
    list_->setTabKeyNavigation(false);
    list_->verticalHeader()->hide();
    list_->horizontalHeader()->setStretchLastSection(true);
    list_->horizontalHeader()->setHighlightSections(false);
    count_->setObjectName(QStringLiteral("Count_LBL"));
    count_->setProperty("kind", QStringLiteral("hint"));

    const DialogButtons buttons = dialogButtons(*this);
    buttons.accept->setDefault(false);  // Enter belongs to the search and to the list
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(search_);
    layout->addWidget(list_, 1);
    layout->addWidget(count_);
    layout->addLayout(buttons.row);

    QObject::connect(search_, &QLineEdit::textChanged, this, [this] { context_.guarded(this, [this] { search(); }); });
    model_.onPicked = [this] { showCount(); };
    search();
    showCount();
    search_->setFocus();
}

void EntityPicker::search() {
    model_.show(store_.list(part_, conditionFor(search_->text())));
    if (model_.rowCount() > 0) list_->setCurrentIndex(model_.index(0, 0));
}

void EntityPicker::showCount() {
    const auto count = model_.picked().size();
    count_->setText(count == 0 ? QStringLiteral("موردی انتخاب نشده است.")
                               : persianDigits(QStringLiteral("%1 مورد انتخاب شده است.").arg(count)));
}

std::string EntityPicker::codes() const {
    std::string codes;
    for (const std::int64_t code : model_.picked())
        codes += std::to_string(code) + ',';
    return codes;
}

void EntityPicker::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && focusWidget() == search_) {
        list_->setFocus();
        return;
    }
    if (enter && focusWidget() == list_) {
        accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

}  // namespace basalt::host
