// An editor of price levels that records its hooks. It edits the table CostLevel as a store would.
#pragma once

#include <QFormLayout>
#include <QLineEdit>
#include <functional>
#include <string>
#include <vector>

#include "ado/query.h"
#include "package/numbers.h"
#include "package/screens/base_get_frm.h"
#include "package/services.h"

namespace basalt::host {

class RecordingEditor final : public TBaseGet_FRM {
public:
    RecordingEditor(std::vector<std::string>& calls, int openedCode, TFormMode mode, bool saysNew = false)
        : TBaseGet_FRM(spPriceLevels, Value{std::int64_t{openedCode}}, mode), saysNew_(saysNew), calls_(calls) {
        setObjectName("RecordingEditor_FRM");
    }

    void CreateControls() override {
        calls_.push_back("CreateControls");
        auto* form = new QFormLayout(base().FormPanel());
        code = new QLineEdit;
        code->setObjectName("Code_EDT");
        name = new QLineEdit;
        name->setObjectName("Name_EDT");
        name->setAccessibleName("عنوان :");
        comment = new QLineEdit;
        comment->setObjectName("Comment_EDT");
        form->addRow("کد :", code);
        form->addRow("عنوان :", name);
        form->addRow("توضیحات :", comment);
        save = base().AddButton("Save_BTN", "ذخيره F3", TEditorButton::Save);
        base().AddButton("Exit_BTN", "خروج Esc", TEditorButton::Exit);
    }
    void SetComponents() override {
        calls_.push_back("SetComponents");
        base().SetCodeControl(code);
        base().SetSaveControl(save, saveMode);
    }
    void SetSetting() override { calls_.push_back("SetSetting"); }
    void Init(bool) override {
        calls_.push_back("Init");
        code->setText(QString::fromStdString(toText(Code())));
        name->clear();
        comment->clear();
        SetIsSaved(true);
        name->setFocus();
    }
    bool IsNewRecordMode(const Value& asked) override {
        calls_.push_back("IsNewRecordMode " + toText(asked));
        return saysNew_;
    }
    Value GetNewCode() override {
        calls_.push_back("GetNewCode");
        TADOQuery next(DM().ADOConnection1, "Next_QUR");
        next.SQL =
            "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 1 "
            "UNION ALL Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1";
        next.Open();
        return next.Fields(0).AsInt64();
    }
    void PrepareQuery(const Value& asked) override {
        calls_.push_back("PrepareQuery " + toText(asked));
        record.Close();
        record.SQL = "SELECT * FROM CostLevel Where Code = " + toText(asked) + " AND CostType = 1";
        record.Open();
    }
    void BeforeFill(const Value&) override { calls_.push_back("BeforeFill"); }
    void OnFill(const Value&) override {
        calls_.push_back("OnFill");
        code->setText(QString::fromStdString(record.FieldByName("Code").AsString()));
        name->setText(QString::fromStdString(record.FieldByName("Name").AsString()));
        comment->setText(QString::fromStdString(record.FieldByName("Comment").AsString()));
    }
    void AfterFill(const Value&) override { calls_.push_back("AfterFill"); }
    bool IsValid() override {
        calls_.push_back("IsValid");
        // A check asks the database, so the data set that was opened last is not the record's.
        check.Close();
        check.SQL = "select Name from CostLevel where Name = " + QuotedStr(name->text().toStdString());
        check.Open();
        return valid;
    }
    void BeforeSave() override { calls_.push_back("BeforeSave"); }
    void OnSave() override {
        calls_.push_back("OnSave");
        if (Mode() == fmNew) {
            if (!record.Active()) {
                record.SQL = "SELECT * FROM CostLevel Where Code = 0 AND CostType = 1";
                record.Open();
            }
            record.Append();
        } else {
            record.Edit();
        }
        record.FieldByName("Code") = toInt64(Code());
        record.FieldByName("Name") = name->text().toStdString();
        record.FieldByName("Comment") = comment->text().toStdString();
        record.FieldByName("CostType") = 1;
        record.Post();
        SetUserEvent(SoftwarePart(), Mode() == fmNew ? prInsert : prEdit, toText(Code()), false, true);
        if (afterPost) afterPost();
    }
    void AfterSave() override { calls_.push_back("AfterSave"); }
    void FormShow(QObject* sender) override {
        calls_.push_back("FormShow");
        TBaseGet_FRM::FormShow(sender);
        base().SetShortCut();
    }

    static inline int saveMode = 0;
    bool valid = true;
    std::function<void()> afterPost;
    TADOQuery record{DM().ADOConnection1, "Record_QUR"};
    TADOQuery check{DM().ADOConnection1, "Check_QUR"};
    QLineEdit* code = nullptr;
    QLineEdit* name = nullptr;
    QLineEdit* comment = nullptr;
    TSmartButton_VRO* save = nullptr;

private:
    bool saysNew_;
    std::vector<std::string>& calls_;
};

}  // namespace basalt::host
