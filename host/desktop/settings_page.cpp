#include "host/desktop/settings_page.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "host/desktop/save_footer.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "host/screens/theme.h"
#include "host/screens/unsaved_changes.h"
#include "host/services/host_parts.h"
#include "host/services/unit_list.h"

namespace basalt::host {
namespace {

constexpr int kSmallestFont = 8;
constexpr int kLargestFont = 16;
constexpr int kWidthForTwoPanels = 780;

// A panel with a title and its inputs below each other.
QVBoxLayout* addPanel(QBoxLayout& layout, const QString& title) {
    auto* panel = new QFrame;
    panel->setProperty("kind", QStringLiteral("panel"));
    auto* content = new QVBoxLayout(panel);
    content->setContentsMargins(20, 16, 20, 18);
    content->setSpacing(12);
    auto* label = new QLabel(title);
    label->setProperty("kind", QStringLiteral("sectionTitle"));
    content->addWidget(label);
    layout.addWidget(panel);
    return content;
}

QString ledgerNumberingTitle() {
    const std::string_view title = SettingsStore::kLedgerNumberingTitle;
    return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
}

// An input below its title.
void addField(QBoxLayout& panel, const QString& title, QWidget* input) {
    auto* field = new QVBoxLayout;
    field->setSpacing(4);
    auto* label = new QLabel(title);
    label->setProperty("kind", QStringLiteral("field"));
    label->setBuddy(input);
    input->setAccessibleName(title);
    field->addWidget(label);
    field->addWidget(input);
    panel.addLayout(field);
}

// As wide as an input, and as high as its lines take there: a label whose height depends on its width would take it
// from the inputs above, because a scrolled page knows nothing of that.
class HintLabel final : public QLabel {
public:
    explicit HintLabel(const QString& text) : QLabel(text) {
        setProperty("kind", QStringLiteral("hint"));
        setWordWrap(true);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    [[nodiscard]] QSize sizeHint() const override {
        const int width = themePixels(kSettingInputWidth);
        return {width, heightForWidth(width)};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    // A panel that is wider makes it no lower: the height that it would have there is missing elsewhere.
    [[nodiscard]] bool hasHeightForWidth() const override { return false; }
};

// What a setting does, where its title does not say enough.
void addHint(QBoxLayout& panel, const QString& text, QWidget& input) {
    auto* hint = new HintLabel(text);
    input.setAccessibleDescription(text);
    panel.addWidget(hint);
}

void addOperationHint(QBoxLayout& panel, QWidget& input) {
    // clang-format off
    addHint(panel, QStringLiteral("بارکد عملیات ۱ تا ۳ برچسب کالا نیستند: برنامهٔ ثبت سندها با اسکن آن‌ها کاری را اجرا می‌کند. از این رو هیچ جزء کالایی بارکدی برابر یکی از آن‌ها نمی‌گیرد. خالی یعنی هیچ."), input);
    // clang-format on
}

}  // namespace

SettingsPage::SettingsPage(DesktopContext context, QWidget* parent) : ShellPage(parent), context_(context) {
    setObjectName(QStringLiteral("Settings_PNL"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(12);
    auto* title = new QLabel(QStringLiteral("تنظیمات"));
    title->setProperty("kind", QStringLiteral("pageTitle"));
    layout->addWidget(title);

    scroll_ = new QScrollArea;
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    auto* content = new QWidget;
    panels_ = new QHBoxLayout(content);
    panels_->setContentsMargins(0, 0, 0, 0);
    panels_->setSpacing(16);
    panels_->setAlignment(Qt::AlignTop | Qt::AlignRight);
    makeCompany(*panels_);
    makeWorkstation(*panels_);
    scroll_->setWidget(content);
    layout->addWidget(scroll_, 1);
    makeFooter(*layout);
}

void SettingsPage::makeCompany(QBoxLayout& layout) {
    auto* holder = new QVBoxLayout;
    layout.addLayout(holder);
    QVBoxLayout* panel = addPanel(*holder, QStringLiteral("تنظیمات شرکت"));
    holder->addStretch();
    // Names and numbers first, switches after them.
    for (const bool flags : {false, true}) {
        for (const SettingField& field : SettingsStore::fields()) {
            if ((field.kind == SettingKind::Flag) != flags) continue;
            auto* editor = new SettingEditor(field);
            editor->OnEdited = [this] { edited(); };
            editors_.push_back(editor);
            panel->addWidget(editor);
            if (field.name == "OperationBarcode3") addOperationHint(*panel, *editor);
        }
        if (!flags) addLedgerNumbering(*panel);
    }
}

void SettingsPage::addLedgerNumbering(QBoxLayout& panel) {
    ledgerNumbering_ = new QComboBox;
    ledgerNumbering_->setObjectName(QStringLiteral("LedgerNumbering_CMB"));
    ledgerNumbering_->addItem(QStringLiteral("در هر تاریخ از نو"), static_cast<int>(LedgerNumbering::EachDate));
    ledgerNumbering_->addItem(QStringLiteral("پیوسته در همهٔ تاریخ‌ها"),
                              static_cast<int>(LedgerNumbering::AllDates));
    ledgerNumbering_->setFixedWidth(themePixels(kSettingInputWidth));
    addField(panel, ledgerNumberingTitle(), ledgerNumbering_);
    // The formatter would cut the sentence to pieces.
    // clang-format off
    addHint(panel, QStringLiteral("کنترل موجودی منفی، سندی را که ویرایش می‌شود با این شماره در کاردکس می‌شناسد. همان را برگزینید که برنامهٔ ثبت سندها به کار می‌برد."), *ledgerNumbering_);
    // clang-format on
    QObject::connect(ledgerNumbering_, &QComboBox::activated, this, [this] { edited(); });
}

void SettingsPage::makeWorkstation(QBoxLayout& layout) {
    auto* holder = new QVBoxLayout;
    layout.addLayout(holder);
    QVBoxLayout* panel = addPanel(*holder, QStringLiteral("این ایستگاه کاری"));
    holder->addStretch();
    workstation_ = new QLineEdit;
    workstation_->setObjectName(QStringLiteral("WorkstationName_EDT"));
    workstation_->setMaxLength(kLongestWorkstationName);
    readFromRight(*workstation_);
    workstation_->setFixedWidth(themePixels(280));
    addField(*panel, QStringLiteral("نام ایستگاه"), workstation_);
    workstationProblem_ = new QLabel(QStringLiteral("نام ایستگاه نباید خالی باشد."));
    workstationProblem_->setObjectName(QStringLiteral("WorkstationName_Problem"));
    workstationProblem_->setProperty("kind", QStringLiteral("problem"));
    workstationProblem_->hide();
    panel->addWidget(workstationProblem_);
    auto* fontSize = new PersianSpinBox;
    fontSize->takeTooMuchAsMost();
    fontSize_ = fontSize;
    fontSize_->setObjectName(QStringLiteral("FontSize_EDT"));
    fontSize_->setRange(kSmallestFont, kLargestFont);
    fontSize_->setFixedWidth(themePixels(120));
    addField(*panel, persianDigits(QStringLiteral("اندازهٔ قلم (%1 تا %2)").arg(kSmallestFont).arg(kLargestFont)),
             fontSize_);
    persianDigits_ = new QCheckBox(QStringLiteral("نمایش عددها با رقم‌های فارسی"));
    persianDigits_->setObjectName(QStringLiteral("PersianDigits_CHK"));
    panel->addWidget(persianDigits_);
    addQueryTimeout(*panel);

    QObject::connect(workstation_, &QLineEdit::textEdited, this, [this] {
        workstationProblem_->setVisible(workstation_->text().trimmed().isEmpty());
        edited();
    });
    QObject::connect(fontSize_, &QSpinBox::valueChanged, this, [this] { edited(); });
    QObject::connect(persianDigits_, &QCheckBox::clicked, this, [this] { edited(); });
}

void SettingsPage::addQueryTimeout(QBoxLayout& panel) {
    auto* timeout = new PersianSpinBox;
    timeout->takeTooMuchAsMost();
    queryTimeout_ = timeout;
    queryTimeout_->setObjectName(QStringLiteral("QueryTimeout_EDT"));
    queryTimeout_->setRange(0, kLongestQuerySeconds);
    queryTimeout_->setFixedWidth(themePixels(120));
    addField(panel, persianDigits(QStringLiteral("مهلت هر دستور روی سرور (ثانیه، ۰ تا %1)").arg(kLongestQuerySeconds)),
             queryTimeout_);
    // clang-format off
    addHint(panel, QStringLiteral("دستوری که تا این زمان پاسخ نگیرد رها می‌شود؛ ۰ یعنی بی‌مهلت. تنها برای پایگاه داده‌ای است که روی سرور باشد، و از اجرای بعدی برنامه."), *queryTimeout_);
    // clang-format on
    QObject::connect(queryTimeout_, &QSpinBox::valueChanged, this, [this] { edited(); });
}

void SettingsPage::makeFooter(QBoxLayout& layout) {
    const SaveFooter footer = addSaveFooter(*this, layout, QStringLiteral("Settings"));
    save_ = footer.save;
    undo_ = footer.undo;
    state_ = footer.state;
    const auto run = [this] { context_.handlers.guarded(this, [this] { static_cast<void>(save()); }); };
    QObject::connect(save_, &QPushButton::clicked, this, run);
    QObject::connect(undo_, &QPushButton::clicked, this,
                     [this] { context_.handlers.guarded(this, [this] { load(); }); });
}

void SettingsPage::resizeEvent(QResizeEvent* event) {
    ShellPage::resizeEvent(event);
    const bool sideBySide = width() > themePixels(kWidthForTwoPanels) + 2 * layout()->contentsMargins().left();
    panels_->setDirection(sideBySide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void SettingsPage::enter() {
    load();
    // What is in front when the page opens is what is typed into.
    scroll_->verticalScrollBar()->setValue(0);
    editors_.front()->focusInput();
}

bool SettingsPage::mayLeave() {
    if (!unsaved_) return true;
    return mayLeaveUnsaved(
        context_.host.Messages(), *window(), [this] { return save(); }, [this] { load(); });
}

void SettingsPage::load() {
    context_.host.settings().reload();
    const TSettingRecord& record = context_.host.settings().record();
    for (SettingEditor* editor : editors_) {
        if (editor->field().name == "MetreMorabaUnit") editor->offer(unitList(context_.host.session()));
        editor->setValue(SettingsStore::text(record, editor->field()));
    }
    ledgerNumbering_->setCurrentIndex(
        ledgerNumbering_->findData(static_cast<int>(context_.host.settings().ledgerNumbering())));
    const WorkstationOptions& options = context_.host.optionFile().options();
    workstation_->setText(QString::fromStdString(context_.host.workstationName()));
    workstationProblem_->hide();
    fontSize_->setValue(options.fontSize);
    queryTimeout_->setValue(options.queryTimeoutSeconds);
    persianDigits_->setChecked(options.persianDigits);
    state_->clear();
    setUnsaved(false);
}

bool SettingsPage::save() {
    if (!context_.host.HavePermission(context_.host.UserInfo(), hpSettings, prEdit, false, true, "")) return false;
    SettingEditor* wrong = nullptr;
    for (SettingEditor* editor : editors_)
        if (!editor->check().empty() && !wrong) wrong = editor;
    if (wrong) {
        wrong->focusInput();
        return false;
    }
    if (workstation_->text().trimmed().isEmpty()) {
        workstationProblem_->show();
        workstation_->setFocus();
        return false;
    }
    if (!saveCompany()) return false;
    try {
        saveWorkstation();
    } catch (...) {
        // What the company has is stored, and shows elsewhere.
        if (OnSaved) OnSaved();
        throw;
    }
    setUnsaved(false);
    state_->setText(QStringLiteral("تنظیمات ذخیره شد."));
    if (OnSaved) OnSaved();
    return true;
}

bool SettingsPage::saveCompany() {
    TSettingRecord record = context_.host.settings().record();
    for (const SettingEditor* editor : editors_)
        SettingsStore::assign(record, editor->field().name, editor->value());
    const auto log = [this](const std::vector<std::string>& names) {
        std::string titles;
        for (const std::string& name : names) {
            const SettingField* field = SettingsStore::findField(name);
            titles +=
                (titles.empty() ? "" : "، ") + (field ? settingTitle(*field) : ledgerNumberingTitle()).toStdString();
        }
        context_.host.SetUserEvent(hpSettings, prEdit, titles, true, true);
    };
    try {
        const auto numbering = static_cast<LedgerNumbering>(ledgerNumbering_->currentData().toInt());
        context_.host.settings().store(record, numbering, log);
        return true;
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Conflict) throw;
    }
    context_.host.Messages().show({.operation = "MsgRecordChanged", .form = this});
    load();
    return false;
}

void SettingsPage::saveWorkstation() {
    context_.host.changeWorkstation([this](WorkstationOptions& options) {
        options.workstationName = workstation_->text().trimmed().toStdString();
        options.fontSize = fontSize_->value();
        options.queryTimeoutSeconds = queryTimeout_->value();
        options.persianDigits = persianDigits_->isChecked();
    });
    const WorkstationOptions& options = context_.host.optionFile().options();
    setThemeFontSize(options.fontSize);
    showPersianDigits(options.persianDigits);
}

void SettingsPage::edited() {
    state_->clear();
    setUnsaved(true);
}

void SettingsPage::setUnsaved(bool unsaved) {
    unsaved_ = unsaved;
    enableUnless(*save_, unsaved ? QString() : nothingChangedReason());
    enableUnless(*undo_, unsaved ? QString() : nothingChangedReason());
}

}  // namespace basalt::host
