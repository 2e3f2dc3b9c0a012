#include "host/desktop/setting_editor.h"

#include <QVBoxLayout>
#include <array>

#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

QString objectNameOf(const SettingField& field, const char* ending) {
    return QString::fromUtf8(field.name.data(), static_cast<qsizetype>(field.name.size())) + QLatin1String(ending);
}

// What the numbers of the policy on negative stock mean, from 0.
constexpr std::array<const char*, 3> kNegativeTypes{"جلوگیری شود", "هشدار داده شود", "مجاز است"};

}  // namespace

QString settingTitle(const SettingField& field) {
    const QString title = QString::fromUtf8(field.title.data(), static_cast<qsizetype>(field.title.size()));
    // Chosen from a list, it is no code to the reader.
    if (field.name == "MetreMorabaUnit") return QStringLiteral("واحد متر مربع");
    return title.section(QStringLiteral(" ("), 0, 0);
}

SettingEditor::SettingEditor(const SettingField& field, QWidget* parent) : QWidget(parent), field_(field) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    QLabel* title = nullptr;
    if (field_.kind != SettingKind::Flag) {
        title = new QLabel(settingTitle(field_));
        title->setProperty("kind", QStringLiteral("field"));
        layout->addWidget(title);
    }
    QWidget* input = makeInput();
    input->setAccessibleName(settingTitle(field_));
    if (title) title->setBuddy(input);
    // A switch is as wide as its words: a click beside them does nothing.
    if (!box_) input->setFixedWidth(themePixels(kSettingInputWidth));
    layout->addWidget(input, 0, Qt::AlignLeft);
    problem_ = new QLabel;
    problem_->setObjectName(objectNameOf(field_, "_Problem"));
    problem_->setProperty("kind", QStringLiteral("problem"));
    problem_->hide();
    layout->addWidget(problem_);
}

QWidget* SettingEditor::makeInput() {
    if (field_.kind == SettingKind::Flag) {
        box_ = new QCheckBox(settingTitle(field_));
        box_->setObjectName(objectNameOf(field_, "_CHK"));
        QObject::connect(box_, &QCheckBox::clicked, this, [this] { edited(); });
        return box_;
    }
    if (field_.name == "NegativeType") {
        choice_ = makeChoice();
        for (const char* title : kNegativeTypes)
            choice_->addItem(QString::fromUtf8(title), choice_->count());
        return choice_;
    }
    if (field_.name == "MetreMorabaUnit") return choice_ = makeChoice();
    edit_ = new QLineEdit;
    edit_->setObjectName(objectNameOf(field_, "_EDT"));
    readFromRight(*edit_);
    if (field_.name == "CompanyName")
        edit_->setPlaceholderText(
            QStringLiteral("خالی: نام برنامه، «بازالت»، به جای آن می‌آید"));
    if (field_.kind == SettingKind::Integer) {
        edit_->setPlaceholderText(persianDigits(QStringLiteral("%1 تا %2").arg(field_.lowest).arg(field_.highest)));
        edit_->setInputMethodHints(Qt::ImhDigitsOnly);
    }
    QObject::connect(edit_, &QLineEdit::textEdited, this, [this] { edited(); });
    return edit_;
}

QComboBox* SettingEditor::makeChoice() {
    auto* choice = new QComboBox;
    choice->setObjectName(objectNameOf(field_, "_CMB"));
    QObject::connect(choice, &QComboBox::activated, this, [this] { edited(); });
    return choice;
}

void SettingEditor::offer(const std::vector<Unit>& units) {
    choice_->clear();
    choice_->addItem(QStringLiteral("هیچ‌کدام"), 0);
    for (const Unit& unit : units)
        choice_->addItem(screenText(QString::fromStdString(unit.name)), unit.code);
}

void SettingEditor::setValue(const std::string& value) {
    const QString text = QString::fromStdString(value);
    if (box_) box_->setChecked(text == QLatin1String("1"));
    if (choice_) {
        // What is not offered is nothing that can be chosen: it shows as no choice, which cannot be stored.
        choice_->setCurrentIndex(choice_->findData(text.toInt()));
        choice_->setPlaceholderText(screenText(QStringLiteral("کد %1 در جدول نیست").arg(text)));
    }
    if (edit_) edit_->setText(field_.kind == SettingKind::Integer ? persianDigits(text) : text);
    problem_->hide();
}

std::string SettingEditor::value() const {
    if (box_) return box_->isChecked() ? "1" : "0";
    if (choice_) return choice_->currentData().isValid() ? std::to_string(choice_->currentData().toInt()) : "";
    if (field_.kind == SettingKind::Integer) return latinDigits(edit_->text().trimmed()).toStdString();
    return edit_->text().toStdString();
}

std::string SettingEditor::check() {
    std::string problem = choice_ && choice_->currentIndex() < 0
                              ? "آنچه ثبت شده است دیگر در جدول نیست؛ یکی از فهرست را برگزینید."
                              : SettingsStore::problem(field_, value());
    problem_->setText(screenText(QString::fromStdString(problem)));
    problem_->setVisible(!problem.empty());
    return problem;
}

void SettingEditor::focusInput() {
    for (QWidget* input : {static_cast<QWidget*>(edit_), static_cast<QWidget*>(choice_), static_cast<QWidget*>(box_)})
        if (input) input->setFocus();
    if (edit_) edit_->selectAll();
}

void SettingEditor::edited() {
    check();
    if (OnEdited) OnEdited();
}

}  // namespace basalt::host
