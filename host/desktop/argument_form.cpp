#include "host/desktop/argument_form.h"

#include <QLabel>
#include <QScrollBar>
#include <algorithm>

#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kTextHeight = 76;
constexpr int kLeastHeight = 80;  // two inputs, and the rest is scrolled

QString typeTitle(const std::string& type) {
    if (type == "integer") return QStringLiteral("عدد صحیح");
    if (type == "byte") return QStringLiteral("عدد صحیح، ۰ تا ۲۵۵");
    if (type == "amount") return QStringLiteral("مبلغ یا مقدار");
    if (type == "text") return QStringLiteral("متن");
    if (type == "record") return QStringLiteral("رکورد، به شکل {\"Code\": 3, \"Name\": \"…\"}");
    if (type == "list") return QStringLiteral("فهرست، به شکل [1, 2]");
    if (type == "event")
        return QStringLiteral("رویداد؛ تنها از درون برنامه داده می‌شود");
    return QString::fromStdString(type);
}

}  // namespace

ArgumentForm::ArgumentForm(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    // As high as its inputs where there is room, and no higher.
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    auto* content = new QWidget;
    layout_ = new QFormLayout(content);
    setObjectName(QStringLiteral("Arguments_PNL"));
    // Parameters bear Latin names: the form reads from the left.
    setLayoutDirection(Qt::LeftToRight);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setVerticalSpacing(8);
    layout_->setHorizontalSpacing(14);
    layout_->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    layout_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    setWidget(content);
    // It lies on a panel.
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

QSize ArgumentForm::sizeHint() const {
    return layout_->sizeHint();
}

QSize ArgumentForm::minimumSizeHint() const {
    return {layout_->minimumSize().width() + verticalScrollBar()->sizeHint().width(),
            std::min(layout_->sizeHint().height(), themePixels(kLeastHeight))};
}

QWidget* ArgumentForm::makeEditor(Input& input) {
    const std::string& type = input.parameter.type;
    if (type == "flag") return input.box = new QCheckBox;
    if (type == "record" || type == "list") {
        input.text = new QPlainTextEdit;
        input.text->setFixedHeight(themePixels(kTextHeight));
        input.text->setPlaceholderText(typeTitle(type));
        input.text->setTabChangesFocus(true);
        return input.text;
    }
    input.edit = new QLineEdit;
    input.edit->setPlaceholderText(typeTitle(type));
    // As the form does; a hint would otherwise stand on the other side of the caret.
    input.edit->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    return input.edit;
}

void ArgumentForm::setParameters(const std::vector<FunctionParameter>& parameters) {
    inputs_.clear();
    while (layout_->rowCount() > 0)
        layout_->removeRow(0);
    for (const FunctionParameter& parameter : parameters) {
        if (!parameter.input) continue;
        Input input{.parameter = parameter};
        const QString name = QString::fromStdString(parameter.name);
        QWidget* editor = makeEditor(input);
        editor->setObjectName(name + (input.box ? QStringLiteral("_CHK") : QStringLiteral("_EDT")));
        editor->setAccessibleName(name);
        editor->setAccessibleDescription(typeTitle(parameter.type));
        auto* label = new QLabel(name);
        label->setProperty("kind", QStringLiteral("field"));
        label->setBuddy(editor);
        layout_->addRow(label, editor);
        // At once, so that the first one can take the focus.
        label->show();
        editor->show();
        inputs_.push_back(input);
    }
    if (inputs_.empty()) {
        auto* none = new QLabel(QStringLiteral("این تابع ورودی ندارد."));
        none->setProperty("kind", QStringLiteral("hint"));
        none->setLayoutDirection(Qt::RightToLeft);
        layout_->addRow(none);
    }
    updateGeometry();
}

CallArguments ArgumentForm::arguments() const {
    CallArguments given;
    for (const Input& input : inputs_) {
        const auto give = [&](Datum value) { given.named.emplace_back(input.parameter.name, std::move(value)); };
        if (input.box) {
            give(Datum(input.box->isChecked()));
        } else if (input.text) {
            const QString text = input.text->toPlainText().trimmed();
            if (!text.isEmpty()) give(Datum(text.toStdString()));
        } else if (input.parameter.type == "text") {
            give(Datum(input.edit->text().toStdString()));
        } else {
            const QString text = latinDigits(input.edit->text().trimmed());
            if (!text.isEmpty()) give(Datum(text.toStdString()));
        }
    }
    return given;
}

QWidget* ArgumentForm::editorOf(const Input& input) {
    if (input.edit) return input.edit;
    if (input.box) return input.box;
    return input.text;
}

bool ArgumentForm::focusFirst() {
    if (inputs_.empty()) return false;
    editorOf(inputs_.front())->setFocus();
    return true;
}

QWidget* ArgumentForm::followInTabOrder(QWidget* before) {
    for (const Input& input : inputs_) {
        QWidget::setTabOrder(before, editorOf(input));
        before = editorOf(input);
    }
    return before;
}

}  // namespace basalt::host
