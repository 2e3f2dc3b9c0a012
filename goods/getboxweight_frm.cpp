#include "goods/getboxweight_frm.h"

#include <QApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QValidator>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "ado/decimal.h"
#include "ado/error.h"
#include "package/messages.h"
#include "package/numbers.h"
#include "package/registry.h"
#include "package/screens/attached_screens.h"
#include "package/screens/place.h"
#include "package/services.h"

namespace basalt {

namespace {

constexpr int kWeightNotANumber = 10031;
constexpr int kCountNotANumber = 10010;
constexpr int kCountCharacters = 15;
constexpr int kWidth = 400;
constexpr int kHeight = 240;
constexpr const char* kHistory = "TGetBoxWeight_FRM.Weight_CMB";

constexpr char16_t kPersianZero = u'۰';
constexpr char16_t kPersianPoint = u'٫';

QString withDigitsFrom(char16_t zero, QString text) {
    for (QChar& c : text) {
        if (c.isDigit()) c = QChar(static_cast<char16_t>(zero + c.digitValue()));
    }
    return text;
}

// As the user reads it, and as it is compared, kept and taken for a number.
QString shown(const QString& text) {
    return withDigitsFrom(kPersianZero, text).replace(QLatin1Char('.'), QChar(kPersianPoint));
}
QString plain(const QString& text) {
    return withDigitsFrom(u'0', text).replace(QChar(kPersianPoint), QLatin1Char('.'));
}

// Of a number that is being typed either side of the point may be left out.
Extended numberOrZero(const QString& text) {
    QString whole = text.trimmed();
    if (whole.size() > 1) {
        if (whole.startsWith(QLatin1Char('.'))) whole.prepend(QLatin1Char('0'));
        if (whole.endsWith(QLatin1Char('.'))) whole.append(QLatin1Char('0'));
    }
    try {
        return StrToFloat_VRO(whole.toStdString());
    } catch (const DatabaseError&) {
        return 0;
    }
}

bool isWhole(const QString& text) {
    return !text.trimmed().isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.isDigit() || c.isSpace() || c == QLatin1Char('-') || c == QLatin1Char('+');
    });
}

// Of a weight above 0. One that is less than amounts show is more than nothing all the same.
QString weightText(double weight) {
    QString text = QString::fromStdString(FloatToStr_VRO(weight));
    if (text != QLatin1String("0")) return text;
    constexpr int kSignificant = 9;
    QString digits = QString::number(weight, 'f', kSignificant - 1 - static_cast<int>(std::floor(std::log10(weight))));
    while (digits.endsWith(QLatin1Char('0')))
        digits.chop(1);
    return digits;
}

// What a key types into the weight; nothing when the key types something else than a digit or a point.
std::optional<QString> typed(const QKeyEvent& key) {
    const QString text = key.text();
    if (text.size() != 1) return std::nullopt;
    if (text[0].isDigit()) return shown(text);
    if (text[0] == QLatin1Char('.') || text[0] == QChar(kPersianPoint)) return QString(QChar(kPersianPoint));
    return std::nullopt;
}

// Shows digits as Persian ones, however they came.
class DigitsShown : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& text, int& /*cursor*/) const override {
        text = shown(text);
        return Acceptable;
    }
};

// Refuses what no key may type, when it is dropped or pasted with the mouse.
class WeightsOnly final : public DigitsShown {
public:
    using DigitsShown::DigitsShown;
    State validate(QString& text, int& cursor) const override {
        const QString number = plain(text);
        const bool weight =
            number.count(QLatin1Char('.')) <= 1 &&
            std::all_of(number.begin(), number.end(), [](QChar c) { return c.isDigit() || c == QLatin1Char('.'); });
        return weight ? DigitsShown::validate(text, cursor) : Invalid;
    }
};

// Keys that enter a character, or paste several.
bool types(const QKeyEvent& key) {
    if (key.matches(QKeySequence::Paste)) return true;
    return !key.text().isEmpty() && key.text()[0].isPrint();
}

}  // namespace

TGetBoxWeight_FRM::TGetBoxWeight_FRM(double weight, int count)
    : TBaseDock_FRM(fmBrowse, Value{}, ""), firstWeight_(weight), firstCount_(count) {
    setObjectName("TGetBoxWeight_FRM");
    resize(kWidth, kHeight);
}

void TGetBoxWeight_FRM::CreateControls() {
    auto* group = new QGroupBox(QStringLiteral("مشخصات ظرف"), base().DetailPanel());
    group->setObjectName("Box_GRB");
    weight_ = new QComboBox(group);
    weight_->setObjectName("Weight_CMB");
    weight_->setEditable(true);
    weight_->setInsertPolicy(QComboBox::NoInsert);
    weight_->setCompleter(nullptr);
    weight_->lineEdit()->setAttribute(Qt::WA_InputMethodEnabled, false);
    weight_->lineEdit()->setContextMenuPolicy(Qt::NoContextMenu);
    weight_->setValidator(new WeightsOnly(weight_));
    weight_->installEventFilter(this);
    weight_->lineEdit()->installEventFilter(this);
    count_ = new QLineEdit(group);
    count_->setObjectName("Count_EDT");
    count_->setMaxLength(kCountCharacters);
    count_->setValidator(new DigitsShown(count_));
    count_->installEventFilter(this);

    // Numbers alone would stand on the left, far from what they are called.
    for (QLineEdit* input : {weight_->lineEdit(), count_})
        input->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);

    auto* form = new QFormLayout(group);
    const auto add = [form, group](const QString& text, QWidget* input) {
        auto* label = new QLabel(text, group);
        label->setBuddy(input);
        input->setAccessibleName(QString(text).remove(QLatin1Char('&')));
        form->addRow(label, input);
    };
    add(QStringLiteral("وزن هر &ظرف :"), weight_);
    add(QStringLiteral("&تعداد ظرف :"), count_);
    place(*base().DetailPanel(), *group);

    submit_ = base().AddButton("Submit_BTN", "تـأیـیـد F3", TListButton::Other);
    submit_->OnClick = [this] { Submit_BTNClick(); };
    base().AddButton("Cancel_BTN", "انصراف Esc", TListButton::Exit);
}

void TGetBoxWeight_FRM::FormCreate(QObject* sender) {
    TBaseDock_FRM::FormCreate(sender);
    base().SetTitle("وزن ظرف");
    for (const std::string& weight : StoredList(kHistory))
        weight_->addItem(shown(QString::fromStdString(weight)));
    weight_->setCurrentIndex(-1);
    weight_->setEditText(firstWeight_ > 0 ? shown(weightText(firstWeight_)) : QString());
    if (firstCount_ > 0) count_->setText(QString::number(firstCount_));
}

void TGetBoxWeight_FRM::FormShow(QObject* sender) {
    TBaseDock_FRM::FormShow(sender);
    base().SetShortCut();
    if (weight_->currentText().isEmpty()) {
        weight_->setFocus();
    } else {
        count_->setFocus();
    }
}

double TGetBoxWeight_FRM::Weight() const {
    // More digits than an amount holds are no weight, and far more of them no finite one.
    const auto isAmount = [](Extended number) { return Decimal::fromExtended(number, 0).has_value(); };
    const Extended number = numberOrZero(plain(weight_->currentText()));
    if (!isAmount(number)) return 0;
    const auto weight = static_cast<double>(number);
    return isAmount(weight) ? weight : 0;
}

int TGetBoxWeight_FRM::Count() const {
    if (!isWhole(count_->text())) return 0;
    const Extended number = numberOrZero(plain(count_->text()));
    const bool fits = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(number) : 0;
}

bool TGetBoxWeight_FRM::refuse(QWidget& input, bool valid, int message, const char* field) {
    if (valid) return false;
    ShowSmartMessage(TNotificationMessage{message}, {field, "مقدار غیرعددی"}, &input, this);
    input.setFocus();
    return true;
}

// A typed "0" is meant; anything else that comes to 0 is a mistake.
void TGetBoxWeight_FRM::Submit_BTNClick() {
    const bool weightValid = plain(weight_->currentText()) == QLatin1String("0") || Weight() != 0;
    if (refuse(*weight_, weightValid, kWeightNotANumber, "وزن هر ظرف")) return;
    const bool countValid = plain(count_->text()) == QLatin1String("0") || Count() != 0;
    if (refuse(*count_, countValid, kCountNotANumber, "تعداد ظرف")) return;
    keepWeight();
    accept();
}

void TGetBoxWeight_FRM::keepWeight() {
    const QString text = weight_->currentText();
    if (weight_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0) weight_->addItem(text);
    // As it is now: another dialog may have kept weights since this one was opened.
    std::vector<std::string> history = StoredList(kHistory);
    for (int item = 0; item < weight_->count(); ++item) {
        std::string weight = plain(weight_->itemText(item)).toStdString();
        if (std::find(history.begin(), history.end(), weight) == history.end()) history.push_back(std::move(weight));
    }
    StoreList(kHistory, history);
}

bool TGetBoxWeight_FRM::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return TBaseDock_FRM::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (watched == count_ && (key.key() == Qt::Key_Enter || key.key() == Qt::Key_Return)) {
        submit_->Click();
        return true;
    }
    if (watched != count_ && types(key)) {
        QLineEdit& edit = *weight_->lineEdit();
        const auto text = typed(key);
        // A point too many, unless it takes the place of the one that is there.
        const QChar point(kPersianPoint);
        const bool second =
            text && *text == point && edit.text().contains(point) && !edit.selectedText().contains(point);
        if (text && !second) {
            edit.insert(*text);
        } else {
            QApplication::beep();  // or a minus would seem to have been taken
        }
        return true;
    }
    return TBaseDock_FRM::eventFilter(watched, event);
}

bool Get_BoxesWeight(double& weight, int& count) {
    const auto dialog = CreateScreen<TGetBoxWeight_FRM>(weight, count);
    if (dialog->ShowModal() != mrOk) return false;
    weight = dialog->Weight();
    count = dialog->Count();
    return true;
}

void registerGoodsScreens(Registry& registry) {
    registry.add(
        EntryPoint{.name = "Get_BoxesWeight",
                   .subsystem = "goods",
                   .title = "وزن ظرف",
                   .summary = "Asks for the weight of one container and their count; tells whether it was confirmed.",
                   .part = spGoods,
                   // It asks for no right of its own: whoever may enter the document may weigh for it.
                   .permission = TPermission{},
                   .parameters = {inOut("Weight", "amount"), inOut("Count", "integer")},
                   .result = "flag",
                   .run = [](FunctionCall& call) {
                       auto weight = static_cast<double>(call.amount("Weight"));
                       int count = call.integer("Count");
                       const bool confirmed = Get_BoxesWeight(weight, count);
                       call.output("Weight", Datum(static_cast<Extended>(weight)));
                       call.output("Count", count);
                       call.result(confirmed);
                   }});
}

}  // namespace basalt
