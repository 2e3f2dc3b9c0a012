#include "costlevel/costlevel_get_frm.h"

#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <algorithm>
#include <limits>

#include "costlevel/costlevel_kind.h"
#include "package/messages.h"
#include "package/screens/exact_text.h"
#include "package/screens/place.h"
#include "package/services.h"

namespace basalt {

namespace {

constexpr int kCodeCharacters = 15;

// Save and close: a level is renamed and done with.
constexpr int kSaveMode = 2;

// Blanks and joiners alone are no name: the database takes them for the empty text, and a list shows nothing.
bool showsNothing(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c.isSpace() || c.category() == QChar::Other_Format; });
}

void addField(QFormLayout& form, const QString& title, QWidget& input, const char* objectName) {
    input.setObjectName(objectName);
    auto* label = new QLabel(title);
    label->setBuddy(&input);
    input.setAccessibleName(title);
    form.addRow(label, &input);
}

}  // namespace

TCostLevel_Get_FRM::TCostLevel_Get_FRM(TSoftwarePart part, Value code, TFormMode mode, Value param, bool flag1,
                                       bool flag2)
    : TBaseGet_FRM(part, std::move(code), mode, std::move(param), flag1, flag2) {
    setObjectName("TCostLevel_Get_FRM");
}

void TCostLevel_Get_FRM::CreateControls() {
    auto* inputs = new QWidget(base().FormPanel());
    auto* form = new QFormLayout(inputs);
    form->setContentsMargins(0, 0, 0, 0);

    codeEdit_ = new QSpinBox(inputs);
    codeEdit_->setRange(0, std::numeric_limits<int>::max());
    // Codes read as every other number on the screen, in the digits that the host has set for all of them.
    codeEdit_->setLocale(QLocale());
    codeEdit_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
    codeEdit_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    codeEdit_->findChild<QLineEdit*>()->setMaxLength(kCodeCharacters);
    addField(*form, QStringLiteral("کد :"), *codeEdit_, "Code_EDT");

    nameEdit_ = new QLineEdit(inputs);
    addField(*form, QStringLiteral("عنوان :"), *nameEdit_, "Name_EDT");
    commentEdit_ = new QLineEdit(inputs);
    addField(*form, QStringLiteral("توضیحات :"), *commentEdit_, "Comment_EDT");

    auto* units = new QFrame(inputs);
    units->setObjectName("UNITS_PNL");
    auto* unitsForm = new QFormLayout(units);
    typeBox_ = new QComboBox(units);
    typeBox_->addItems({QStringLiteral("خرید"), QStringLiteral("فروش"), QStringLiteral("خرید و فروش")});
    addField(*unitsForm, QStringLiteral("نوع :"), *typeBox_, "Type_CMB");
    form->addRow(units);
    units->hide();

    place(*base().FormPanel(), *inputs);

    // The save button's caption is spelt with Arabic yeh.
    save_ = base().AddButton("Save_BTN", "ذخيره F3", TEditorButton::Save);
    base().AddButton("Exit_BTN", "خروج Esc", TEditorButton::Exit);
}

void TCostLevel_Get_FRM::SetComponents() {
    levels_ = std::make_unique<TCostLevel_DM>();
    base().SetCodeControl(codeEdit_);
    base().SetSaveControl(save_, kSaveMode);
}

int TCostLevel_Get_FRM::code() const {
    return static_cast<int>(toInt64(Code()));
}

std::string TCostLevel_Get_FRM::name() const {
    return nameEdit_->text().toStdString();
}

std::string TCostLevel_Get_FRM::codeText() const {
    return std::to_string(codeEdit_->value());
}

void TCostLevel_Get_FRM::showCode(int code) {
    codeEdit_->setValue(code);
}

bool TCostLevel_Get_FRM::IsNewRecordMode(const Value& /*code*/) {
    return false;
}

Value TCostLevel_Get_FRM::GetNewCode() {
    return std::int64_t{levels_->CostLevel_GetNewCode(SoftwarePart(), costTypeOf(SoftwarePart()))};
}

void TCostLevel_Get_FRM::Init(bool /*flag*/) {
    showCode(code());
    nameEdit_->clear();
    commentEdit_->clear();
    mapper_.Name.clear();
    mapper_.Code = 0;
    typeBox_->setCurrentIndex(0);
    SetIsSaved(true);
    nameEdit_->setFocus();
}

void TCostLevel_Get_FRM::PrepareQuery(const Value& code) {
    levels_->CostLevel_GetByID(static_cast<int>(toInt64(code)), costTypeOf(SoftwarePart()));
}

void TCostLevel_Get_FRM::OnFill(const Value& code) {
    levels_->CostLevel_GetByID(static_cast<int>(toInt64(code)), costTypeOf(SoftwarePart()), mapper_);
    showCode(mapper_.Code);
    nameEdit_->setText(exactText(mapper_.Name));
    commentEdit_->setText(exactText(mapper_.Comment));
    typeBox_->setCurrentIndex(mapper_.CostType);
    nameEdit_->setFocus();
    SetIsSaved(true);
}

bool TCostLevel_Get_FRM::IsValid() {
    if (codeEdit_->text().isEmpty()) {
        MsgRequiredField("کد", codeEdit_, this);
        codeEdit_->setFocus();
        return false;
    }
    if (showsNothing(nameEdit_->text())) {
        MsgRequiredField("نام", nameEdit_, this);
        nameEdit_->setFocus();
        return false;
    }
    const TSoftwarePart part = SoftwarePart();
    if (part == spPriceLevels && levels_->CostLevel_ExistName(code(), ctPriceLevel, name()) > 0) {
        MsgRepeatedField("نام", "سطح قیمتی", nameEdit_, this);
        nameEdit_->setFocus();
        return false;
    }
    if (part == spDiscountLevels && levels_->CostLevel_ExistName(code(), ctDiscountLevel, name()) > 0) {
        MsgRepeatedField("نام", "سطح تخفیف", nameEdit_, this);
        nameEdit_->setFocus();
        return false;
    }
    return true;
}

void TCostLevel_Get_FRM::OnSave() {
    mapper_.Code = code();
    mapper_.Name = name();
    mapper_.Comment = commentEdit_->text().toStdString();
    mapper_.CostType = costTypeOf(SoftwarePart());
    const bool isNew = Mode() == fmNew;
    levels_->CostLevel_InsUpd(mapper_, !isNew);
    SetUserEvent(SoftwarePart(), isNew ? prInsert : prEdit, codeText(), false, true);
}

void TCostLevel_Get_FRM::FormShow(QObject* sender) {
    FormOption().SetSoftwarePart(SoftwarePart() == spPriceLevels ? csPriceLevels : csDiscountLevels);
    TBaseGet_FRM::FormShow(sender);
    base().SetShortCut();
    SetSetting();
}

}  // namespace basalt
