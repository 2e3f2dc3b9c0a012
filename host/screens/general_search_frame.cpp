#include "host/screens/general_search_frame.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <utility>

#include "ado/error.h"
#include "host/screens/search_condition.h"

namespace basalt::host {

GeneralSearchFrame::GeneralSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TGeneral_Search_Frame(parent),
      fields_(new QComboBox(this)),
      input_(new SearchEdit(objectName + QStringLiteral("_EDT"), this)),
      change_(context, *this) {
    setObjectName(objectName);
    fields_->setObjectName(objectName + QStringLiteral("_CMB"));
    fields_->setAccessibleName(QStringLiteral("جستجو در"));
    fields_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    input_->setPlaceholderText(QStringLiteral("جستجو"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fields_);
    layout->addWidget(input_, 1);
    QWidget::setTabOrder(fields_, input_);

    QObject::connect(input_, &QLineEdit::textChanged, this, [this] {
        if (!change_.isMuted() && narrowsOtherwise()) change_.typed();
    });
    QObject::connect(fields_, &QComboBox::currentIndexChanged, this, [this] {
        {
            const SearchChange::Muted muted(change_);
            adaptInput();
        }
        if (narrowsOtherwise()) change_.changed();
    });
}

// Another item while nothing is typed, or a blank, is no reason to run a statement again.
bool GeneralSearchFrame::narrowsOtherwise() {
    const std::string before = std::exchange(narrowing_, Filter());
    return narrowing_ != before;
}

void GeneralSearchFrame::init() {
    adaptInput();
    Clear();
}

void GeneralSearchFrame::adaptInput() {
    const int index = fields_->currentIndex();
    if (index < 0) return;
    const TSearchItem& item = items_[static_cast<std::size_t>(index)];
    input_->setDataType(item.DataType);
    input_->setAccessibleName(QStringLiteral("جستجو در %1").arg(QString::fromStdString(item.Title)));
}

std::string GeneralSearchFrame::Filter() const {
    const int index = fields_->currentIndex();
    if (index < 0) return {};
    const TSearchItem& item = items_[static_cast<std::size_t>(index)];
    switch (item.DataType) {
        case TSearchDataType::Digits:
            return digitsCondition(item.FieldName, input_->text());
        case TSearchDataType::Amount:
            return rangeCondition(item.FieldName, input_->text(), input_->text());
        case TSearchDataType::Text:
            break;
    }
    return textCondition(item.FieldName, input_->text());
}

QString GeneralSearchFrame::narrowing() const {
    if (Filter().empty()) return {};
    const QString title = QString::fromStdString(items_[static_cast<std::size_t>(fields_->currentIndex())].Title);
    return QStringLiteral("%1 «%2»").arg(title.trimmed(), input_->text().trimmed());
}

void GeneralSearchFrame::Clear() {
    const SearchChange::Muted muted(change_);
    input_->clear();
    narrowing_.clear();
}

void GeneralSearchFrame::FocusFirst() {
    input_->setFocus();
}

void GeneralSearchFrame::AddItem(const TSearchItem& item) {
    const SearchChange::Muted muted(change_);
    items_.push_back(item);
    fields_->addItem(QString::fromStdString(item.Title));
}

void GeneralSearchFrame::SetItemIndex(int index) {
    if (index < 0 || index >= fields_->count())
        throw UsageError("SetItemIndex of " + objectName().toStdString() + ": there is no search item " +
                         std::to_string(index));
    const SearchChange::Muted muted(change_);
    fields_->setCurrentIndex(index);
    narrowing_ = Filter();
}

void GeneralSearchFrame::keyPressEvent(QKeyEvent* event) {
    if (!input_->take(event)) event->ignore();
}

}  // namespace basalt::host
