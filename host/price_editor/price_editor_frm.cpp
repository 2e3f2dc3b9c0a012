#include "host/price_editor/price_editor_frm.h"

#include <QAbstractItemView>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>

#include "ado/error.h"
#include "host/screens/display_format.h"
#include "host/screens/get_base_impl.h"
#include "host/screens/number_room.h"
#include "host/screens/number_typing.h"
#include "host/screens/parts_area.h"
#include "host/screens/persian_digits.h"
#include "host/screens/record_content.h"
#include "host/screens/theme.h"
#include "host/screens/wrapped_text.h"
#include "host/services/isolated_text.h"
#include "package/screens/place.h"

namespace basalt::host {
namespace {

constexpr int kPrices = 10;
constexpr int kDiscounts = 4;
constexpr int kSaveAndClose = 2;
constexpr int kLongestAmount = 38;  // no more digits than a decimal has
constexpr int kMostPercent = 100;
constexpr int kUsualAmount = 12;  // digits
constexpr int kUsualPercent = 5;
constexpr int kInputFrame = 28;       // around the text of an input
constexpr int kTitleLines = 2;        // of a level's name
constexpr int kTitleCharacters = 27;  // in one of them; what is longer ends in three dots
constexpr int kRowSpacing = 4;
constexpr std::size_t kNamedFields = 4;  // in a message
constexpr int kDefaultCharacters = 8;    // that the choice of a default shows at least
constexpr int kSuffixGap = 4;

QString amountText(const std::optional<Decimal>& amount) {
    static const DisplayFormat format("#,#0.#########;-#,#0.#########;0");
    return amount ? screenNumber(format.text(*amount)) : QString();
}

// Nothing for an empty input. DatabaseError (Conversion) when the text is no number, or of more digits than any column.
std::optional<Decimal> amountOf(const QLineEdit& input) {
    if (input.text().trimmed().isEmpty()) return std::nullopt;
    const auto plain = plainAmount(input.text());
    const auto amount = plain ? Decimal::parse(plain->toStdString()) : std::nullopt;
    if (!amount)
        throw DatabaseError(ErrorCategory::Conversion, "22018", 0, input.text().toStdString() + " is not a number");
    return amount;
}

bool isDiscount(const std::string& field) {
    return field.starts_with("Discount_");
}

std::int64_t levelNumber(const std::optional<Decimal>& number) {
    return number.value_or(Decimal()).toInt64().value_or(0);
}

// A number that is no level's stands in the list, as a number, as long as it is the stored one.
void showLevel(QComboBox& levels, int most, std::int64_t number) {
    while (levels.count() > most + 1)
        levels.removeItem(most + 1);
    if (levels.findData(qlonglong{number}) < 0) levels.addItem(screenNumber(std::to_string(number)), qlonglong{number});
    levels.setCurrentIndex(levels.findData(qlonglong{number}));
}

int levelsOf(const std::string& field) {
    return field.find("Discount") == std::string::npos ? kPrices : kDiscounts;
}

int titleWidth(const QLabel& title) {
    const int most = title.fontMetrics().averageCharWidth() * kTitleCharacters;
    const QFontMetricsF metrics(title.font());
    const auto width = [&](int lines) { return static_cast<int>(widthForLines(title.text(), metrics, lines)) + 2; };
    return width(1) <= most ? width(1) : std::min(width(kTitleLines), most);
}

// Levels may have much the same long names, so each is read to its end where it can be. All of a group are as wide as
// the widest of them needs.
void fitTitles(const std::vector<QLabel*>& titles) {
    int width = 0;
    for (const QLabel* title : titles)
        width = std::max(width, titleWidth(*title));
    for (QLabel* title : titles) {
        const QFontMetrics metrics = title->fontMetrics();
        const bool oneLine = metrics.horizontalAdvance(title->text()) <= width;
        title->setFixedSize(width, metrics.lineSpacing() * (oneLine ? 1 : kTitleLines));
    }
}

// The list of a combo box is wide enough for its texts, whatever room the closed box has.
void widenList(QComboBox& levels) {
    QAbstractItemView* list = levels.view();
    list->setMinimumWidth(list->sizeHintForColumn(0) + kInputFrame);
}

// Levels that do not exist have one title between them: each gets its number, isolated from the words before it.
LevelTitles toldApart(LevelTitles titles) {
    std::map<std::pair<std::string, std::string>, int> bearers;
    const auto group = [](const std::string& name) { return name.substr(0, name.rfind('_')); };
    for (const auto& [name, title] : titles)
        ++bearers[{group(name), title}];
    for (auto& [name, title] : titles)
        if (bearers[{group(name), title}] > 1) title += " \u2068" + name.substr(name.rfind('_') + 1) + "\u2069";
    return titles;
}

// A part of a number would read as another number.
void giveRoom(QLineEdit& input, const QString& text) {
    const auto room = static_cast<int>(roomFor({text}, QFontMetricsF(input.font())));
    input.setMinimumWidth(std::max(input.minimumWidth(), room + kInputFrame));
}

}  // namespace

PriceEditor::PriceEditor(ReferenceHost& host, const Registry& registry, int goodCode)
    : TBaseGet_FRM(spGoods, Value{std::int64_t{goodCode}}, fmEdit), host_(host), matrix_(host, registry) {
    setObjectName("PriceEditor_FRM");
    resize(themeWindowSize({1280, 720}, *this));
}

int PriceEditor::goodCode() const {
    return static_cast<int>(toInt64(Code()));
}

void PriceEditor::addAmount(QGridLayout& layout, const std::string& field, const QString& title, int row, int column) {
    auto* input = new QLineEdit;
    input->setObjectName(QString::fromStdString(field + "_EDT"));
    input->setAccessibleName(title);
    input->setMaxLength(kLongestAmount);
    input->setAlignment(Qt::AlignHCenter);
    input->setLayoutDirection(Qt::LeftToRight);
    input->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    input->setPlaceholderText(QStringLiteral("—"));
    // What was typed looks like what is stored, once the user has gone on. What cannot be stored stays as it was typed;
    // saving tells.
    QObject::connect(input, &QLineEdit::editingFinished, input, [input, field] {
        try {
            const std::optional<Decimal> amount = amountOf(*input);
            if (amount && !PriceMatrix::isKept(field, *amount)) return;
            const QString shown = amountText(amount);
            if (shown != input->text()) input->setText(shown);
        } catch (const DatabaseError&) {
            return;
        }
    });
    // What is longer than usual makes itself room as it comes.
    giveRoom(*input, amountText(Decimal(powerOfTen(isDiscount(field) ? kUsualPercent : kUsualAmount) - 1, 0)));
    QObject::connect(input, &QLineEdit::textChanged, input, [input](const QString& text) { giveRoom(*input, text); });
    auto* cell = new QHBoxLayout;
    cell->setSpacing(kSuffixGap);
    cell->addWidget(input, 1);
    if (isDiscount(field)) cell->addWidget(new QLabel(QStringLiteral("٪")));
    layout.addLayout(cell, row, column);
    amounts_[field] = input;
    fields_.push_back(field);
}

QWidget* PriceEditor::makeGroup(const Group& group, QWidget* parent) {
    auto* box = new QGroupBox(group.title, parent);
    box->setObjectName(QString::fromLatin1(group.objectName));
    auto* layout = new QGridLayout(box);
    layout->setVerticalSpacing(kRowSpacing);
    layout->setColumnStretch(1, 1);
    layout->setColumnStretch(2, 1);
    const std::pair<const char*, QString> directions[] = {{"Sell", QStringLiteral("فروش")},
                                                          {"Buy", QStringLiteral("خرید")}};
    for (int column = 0; column < 2; ++column) {
        auto* title = new QLabel(group.columnTitle.arg(directions[column].second));
        title->setProperty("kind", QStringLiteral("hint"));
        title->setAlignment(Qt::AlignCenter);
        layout->addWidget(title, 0, column + 1);
    }
    for (int level = 1; level <= group.levels; ++level) {
        const std::string number = std::to_string(level);
        auto* title = new QLabel;
        title->setObjectName(QString::fromStdString(std::string(group.stem) + "_" + number + "_LBL"));
        title->setTextFormat(Qt::PlainText);
        title->setWordWrap(true);
        // On the side of its words also when it is a number.
        title->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
        layout->addWidget(title, level, 0);
        titles_[group.titleStem + number] = title;
        for (int column = 0; column < 2; ++column) {
            const std::string field = std::string(group.stem) + "_" + directions[column].first + "_" + number;
            addAmount(
                *layout, field,
                persianDigits(QStringLiteral("%1 %2").arg(group.columnTitle.arg(directions[column].second)).arg(level)),
                level, column + 1);
        }
    }
    layout->addWidget(new QLabel(QStringLiteral("پیش‌فرض")), group.levels + 1, 0);
    for (int column = 0; column < 2; ++column) {
        const std::string field = std::string("Default_") + group.stem + "_" + directions[column].first + "_Number";
        auto* levels = new QComboBox;
        levels->setObjectName(QString::fromStdString(field + "_CMB"));
        levels->setAccessibleName(
            QStringLiteral("پیش‌فرض %1").arg(group.columnTitle.arg(directions[column].second)));
        levels->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        levels->setMinimumContentsLength(kDefaultCharacters);
        levels->addItem(QStringLiteral("هیچ‌کدام"), qlonglong{0});
        for (int level = 1; level <= group.levels; ++level)
            levels->addItem({}, qlonglong{level});
        layout->addWidget(levels, group.levels + 1, column + 1);
        defaults_[field] = levels;
    }
    layout->setRowStretch(group.levels + 2, 1);
    return box;
}

void PriceEditor::CreateControls() {
    auto* inputs = new PartsArea(base().FormPanel());
    inputs->setObjectName(QStringLiteral("Inputs_SCB"));
    good_ = new QLabel(inputs);
    good_->setObjectName(QStringLiteral("Good_LBL"));
    good_->setProperty(kHeadingProperty, true);
    good_->setTextFormat(Qt::PlainText);
    good_->setWordWrap(true);
    inputs->addHead(good_);
    inputs->addPart(makeGroup({"Prices_GRB", QStringLiteral("قیمت‌ها"), QStringLiteral("قیمت %1"), "CostLevel",
                               "CostLevel_", kPrices},
                              inputs),
                    4);
    inputs->addPart(makeGroup({"Discounts_GRB", QStringLiteral("تخفیف‌ها (درصد)"),
                               QStringLiteral("تخفیف %1"), "Discount", "Discount_Sell_", kDiscounts},
                              inputs),
                    3);
    place(*base().FormPanel(), *inputs);
    // The host's own base makes the host's own buttons. A good is not added here, so there is no new one behind a save.
    save_ = &dynamic_cast<SmartButton&>(*base().AddButton("Save_BTN", "ذخیره F3", TEditorButton::Save));
    save_->leaveOut(TSaveKind::SaveAndNew);
    base().AddButton("Exit_BTN", "خروج Esc", TEditorButton::Exit);
}

void PriceEditor::SetComponents() {
    base().SetSaveControl(save_, kSaveAndClose);
    dynamic_cast<GetBaseImpl&>(base()).onWritten = [this] { showPrices(written_); };
    base().SetTitle("قیمت‌ها و تخفیف‌های کالا");
    const LevelTitles titles = toldApart(matrix_.titles());
    std::map<bool, std::vector<QLabel*>> groups;
    for (const auto& [name, label] : titles_) {
        // One line: a name of a host's may hold a break.
        label->setText(screenText(QString::fromStdString(titles.at(name))).simplified());
        groups[isDiscount(name)].push_back(label);
    }
    for (const auto& [discounts, labels] : groups)
        fitTitles(labels);
    // A number alone says little to who hears or prints it.
    for (const auto& [field, input] : amounts_)
        input->setAccessibleName(QStringLiteral("%1 (%2)").arg(input->accessibleName(), levelTitle(field)));
    for (const auto& [field, levels] : defaults_) {
        const char* stem = field.find("Discount") == std::string::npos ? "CostLevel_" : "Discount_Sell_";
        for (int level = 1; level < levels->count(); ++level)
            levels->setItemText(level, screenText(QString::fromStdString(titles.at(stem + std::to_string(level)))));
        widenList(*levels);
    }
}

void PriceEditor::Init(bool /*flag*/) {}

bool PriceEditor::IsNewRecordMode(const Value& /*code*/) {
    return false;
}

Value PriceEditor::GetNewCode() {
    throw UsageError("goods are not added here");
}

void PriceEditor::PrepareQuery(const Value& /*code*/) {
    const Value name = host_.ScalerQuery("GoodInf", "Name", "Code", std::to_string(goodCode()));
    if (isNull(name)) {
        CloseOnCreate();  // the base tells the user
        return;
    }
    goodName_ = toText(name);
}

void PriceEditor::OnFill(const Value& /*code*/) {
    const QString name = screenText(QString::fromStdString(goodName_));
    const QString text = persianDigits(QString::number(goodCode())) + QStringLiteral(" – ");
    // A name of Latin letters alone would turn the line around, which stands and reads from the right as its screen
    // does.
    good_->setText((text + name).isRightToLeft()
                       ? text + name
                       : QChar(0x200F) + text + QString::fromStdString(isolated(name.toStdString())));
    showPrices(matrix_.read(goodCode()));
}

void PriceEditor::showPrices(const GoodPrices& prices) {
    shown_ = prices;
    for (const auto& [field, value] : prices)
        showValue(field, value);
}

void PriceEditor::showValue(const std::string& field, const std::optional<Decimal>& value) {
    if (const auto amount = amounts_.find(field); amount != amounts_.end()) {
        amount->second->setText(amountText(value));
    } else if (const auto levels = defaults_.find(field); levels != defaults_.end()) {
        showLevel(*levels->second, levelsOf(field), levelNumber(value));
    }
}

GoodPrices PriceEditor::entered() const {
    GoodPrices prices = shown_;
    // An input that shows what was read keeps it to the last digit.
    for (const auto& [field, input] : amounts_)
        if (input->text() != amountText(shown_.at(field))) prices[field] = amountOf(*input);
    for (const auto& [field, levels] : defaults_)
        if (levels->currentData().toLongLong() != levelNumber(shown_.at(field)))
            prices[field] = Decimal(levels->currentData().toLongLong(), 0);
    return prices;
}

QString PriceEditor::levelTitle(const std::string& field) const {
    const std::string level = field.substr(field.rfind('_') + 1);
    return titles_.at((isDiscount(field) ? "Discount_Sell_" : "CostLevel_") + level)->text();
}

bool PriceEditor::accepts(const std::string& field, QLineEdit& input) {
    const auto refuse = [&](const char* operation, std::vector<std::string> words) {
        words.insert(words.begin(), input.accessibleName().toStdString());
        host_.Messages().show({.operation = operation, .arguments = std::move(words), .control = &input, .form = this});
        input.setFocus();
        input.selectAll();
        return false;
    };
    // What nobody has touched stays as it is, whatever it is.
    if (input.text() == amountText(shown_.at(field))) return true;
    std::optional<Decimal> amount;
    try {
        amount = amountOf(input);
    } catch (const DatabaseError&) {
        return refuse("MsgNotANumber", {input.text().toStdString()});
    }
    if (!amount) return true;
    const Decimal most = isDiscount(field) ? Decimal(kMostPercent, 0) : PriceMatrix::greatest();
    const Decimal least = isDiscount(field) ? Decimal() : Decimal(-most.coefficient(), most.scale());
    if (*amount < least || *amount > most)
        return refuse(isDiscount(field) ? "MsgPercentOutOfRange" : "MsgOutOfRange",
                      {amountText(least).toStdString(), amountText(most).toStdString()});
    if (!PriceMatrix::isKept(field, *amount)) return refuse("MsgTooManyDigits", {input.text().toStdString()});
    // "14.185" on a keyboard without "٬" is meant for fourteen thousand.
    const int decimals = host_.SettingRecord().CurrencyDecimals;
    if (!isDiscount(field) && *amount != amount->rescaled(decimals))
        return refuse(decimals == 0 ? "MsgFractionOfAmount" : "MsgTooManyDecimals",
                      {input.text().toStdString(), std::to_string(decimals)});
    return true;
}

bool PriceEditor::IsValid() {
    return std::all_of(fields_.begin(), fields_.end(),
                       [this](const std::string& field) { return accepts(field, *amounts_.at(field)); }) &&
           mayReplaceStored();
}

// Asked before the transaction begins: nobody's prices are held while a question stands on a screen. Who is quicker
// even than that is found when the prices are written, and told of at the next attempt.
bool PriceEditor::mayReplaceStored() {
    const GoodPrices prices = entered();
    if (prices == shown_) return true;
    if (isNull(host_.ScalerQuery("GoodInf", "Name", "Code", std::to_string(goodCode())))) {
        host_.Messages().show({.operation = "MsgGoodGone", .arguments = {goodName_}, .form = this});
        return false;
    }
    const GoodPrices stored = matrix_.read(goodCode());
    std::vector<std::string> others;
    for (const auto& [field, value] : prices) {
        if (value == shown_.at(field)) continue;
        // Somebody has entered the same: there is nothing left to write.
        if (stored.at(field) == value) shown_[field] = value;
        if (stored.at(field) != shown_.at(field)) others.push_back(field);
    }
    if (others.empty()) return true;
    const int answer = host_.Messages().show({.operation = "MsgPriceChanged",
                                              .arguments = {wordsFor(others)},
                                              .buttons = {TMessageButton::Yes, TMessageButton::No},
                                              .defaultButton = TMessageButton::Yes,
                                              .form = this});
    if (answer == mrYes) takeOver(stored, others);
    return false;
}

void PriceEditor::takeOver(const GoodPrices& stored, const std::vector<std::string>& fields) {
    const GoodPrices prices = entered();
    for (const auto& [field, value] : stored) {
        const bool mine = prices.at(field) != shown_.at(field);
        if (!mine || std::find(fields.begin(), fields.end(), field) != fields.end()) showValue(field, value);
    }
    shown_ = stored;
    SetIsSaved(entered() == shown_);
    inputOf(fields.front())->setFocus();
}

QWidget* PriceEditor::inputOf(const std::string& field) const {
    const auto amount = amounts_.find(field);
    return amount != amounts_.end() ? static_cast<QWidget*>(amount->second) : defaults_.at(field);
}

std::string PriceEditor::wordsFor(const std::vector<std::string>& fields) const {
    const std::size_t named = fields.size() > kNamedFields ? kNamedFields - 1 : fields.size();
    QStringList titles;
    for (std::size_t i = 0; i < named; ++i)
        titles += QStringLiteral("«%1»").arg(inputOf(fields[i])->accessibleName());
    QString words = titles.join(QStringLiteral("، "));
    if (named < fields.size())
        words += QStringLiteral(" و %1 مورد دیگر").arg(screenNumber(std::to_string(fields.size() - named)));
    return words.toStdString();
}

void PriceEditor::OnSave() {
    const GoodPrices prices = entered();
    // Who has only looked has done nothing that is worth a record.
    if (prices == shown_) return;
    matrix_.write(goodCode(), shown_, prices);
    host_.recordEvent(spGoods, prEdit, std::to_string(goodCode()), "قیمت‌های کالای «" + goodName_ + "»");
}

// In the transaction, so that these are the prices of this save and nobody's after it. Until it is committed the editor
// goes by those that it had: if that fails, the inputs still differ from the table, and are written the next time.
void PriceEditor::AfterSave() {
    written_ = matrix_.read(goodCode());
}

void PriceEditor::FormShow(QObject* sender) {
    TBaseGet_FRM::FormShow(sender);
    base().SetShortCut();
    amounts_.at("CostLevel_Sell_1")->setFocus();
}

}  // namespace basalt::host
