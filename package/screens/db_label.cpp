#include "package/screens/db_label.h"

#include "ado/query.h"

namespace basalt {

TDBText::TDBText(QWidget* parent) : QLabel(parent) {
    // The database's text is text, whatever it looks like.
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

TDBText::~TDBText() {
    SetDataSource(nullptr);
}

void TDBText::SetDataSource(TDataSource* source) {
    if (source_ != nullptr) source_->removeListener(*this);
    source_ = source;
    if (source_ != nullptr) source_->addListener(*this);
    refresh();
}

void TDBText::sourceGone() {
    source_ = nullptr;
    refresh();
}

void TDBText::SetFieldName(const std::string& field) {
    field_ = field;
    refresh();
}

void TDBText::refresh() {
    TDataSet* rows = source_ != nullptr ? source_->DataSet() : nullptr;
    const TField* field = rows != nullptr && rows->Active() && !rows->IsEmpty() ? rows->FindField(field_) : nullptr;
    setText(field != nullptr ? QString::fromStdString(field->AsString()) : QString());
}

}  // namespace basalt
