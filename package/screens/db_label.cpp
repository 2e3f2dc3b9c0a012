#include "package/screens/db_label.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>

#include "ado/query.h"
#include "package/screens/tool_tip.h"

namespace basalt {

namespace {

// Enough for a remark, and the list above does not jump when the row changes.
constexpr int kLines = 3;
constexpr int kNarrowest = 80;
constexpr int kUsualWidth = 320;

}  // namespace

TDBText::TDBText(QWidget* parent) : QLabel(parent) {
    // The database's text is text, whatever it looks like.
    setTextFormat(Qt::PlainText);
    // In a window without the room for all lines there are fewer: the list above needs it more.
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
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
    showToolTip();
}

QSize TDBText::sizeHint() const {
    return {kUsualWidth, heightOf(kLines)};
}

QSize TDBText::minimumSizeHint() const {
    return {kNarrowest, heightOf(1)};
}

int TDBText::heightOf(int lines) const {
    const QMargins margins = contentsMargins();
    return lines * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
}

QStringList TDBText::shownLines(bool& cut) const {
    QString whole = text();
    whole.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace('\n', QChar::LineSeparator);
    QTextLayout layout(whole, font());
    QTextOption option;
    option.setTextDirection(layoutDirection());
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    const int most = std::clamp(contentsRect().height() / fontMetrics().lineSpacing(), 1, kLines);
    cut = false;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(contentsRect().width());
        if (lines.size() + 1 == most) {
            // Whatever is left stands on the last line as far as it goes.
            QString rest = whole.mid(line.textStart());
            rest.replace(QChar::LineSeparator, ' ');
            lines += fontMetrics().elidedText(rest, Qt::ElideRight, contentsRect().width());
            cut = lines.back() != rest;
            break;
        }
        lines += whole.mid(line.textStart(), line.textLength()).remove(QChar::LineSeparator).trimmed();
    }
    layout.endLayout();
    return lines;
}

void TDBText::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.setLayoutDirection(layoutDirection());
    bool cut = false;
    QRect line = contentsRect();
    line.setHeight(fontMetrics().lineSpacing());
    const int alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading) | Qt::AlignAbsolute |
                          Qt::AlignVCenter | Qt::TextSingleLine;
    for (const QString& words : shownLines(cut)) {
        painter.drawText(line, alignment, words);
        line.translate(0, line.height());
    }
}

void TDBText::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    showToolTip();
}

void TDBText::showToolTip() {
    bool cut = false;
    static_cast<void>(shownLines(cut));
    setToolTip(cut ? plainToolTip(text()) : QString());
}

}  // namespace basalt
