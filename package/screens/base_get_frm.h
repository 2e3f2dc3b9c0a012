// The base of record editors.
//
// An editor derives from TBaseGet_FRM and fills in hooks; the host's part of the base (GetBase) owns the window, the
// keyboard, unsaved changes, code locks and the save variants, and drives the hooks in this order:
//
//   CreateEditor<T>(part, code, mode, param, flag1, flag2):
//                 CreateControls, SetComponents, SetSetting, then IsNewRecordMode(code) and
//                 for a new record       GetNewCode, Init
//                 for an existing one    PrepareQuery, BeforeFill, OnFill, AfterFill
//   ShowModal():  FormShow, then the user works
//   saving:       IsValid; when it answers true BeforeSave, OnSave, AfterSave, then the base marks the editor saved;
//                 after save and new the base opens a new record again
//
// A record is new when the mode is fmNew or IsNewRecordMode answers true. Before the base opens it, it asks whether the
// user may add (a new one) or change records of the editor's part; when not, the editor closes itself on creation, and
// save and new only saves. The base holds the record's code in CodeLock_TBL from opening to closing. An error in OnSave
// is shown by the base and what was written is rolled back; the editor stays open with what was typed. A record that
// another user has changed or deleted since it was read is a DatabaseError of category Conflict on every attempt.
#pragma once

#include <QDialog>
#include <memory>
#include <string>

#include "ado/value.h"
#include "package/screens/base_dock_frm.h"
#include "package/screens/controls.h"
#include "package/types.h"

namespace basalt {

enum class TEditorButton { Save, Exit, Other };

// The host's part of an editor.
class GetBase {
public:
    virtual ~GetBase() = default;

    [[nodiscard]] virtual QWidget* FormPanel() = 0;  // the screen lays out its inputs here
    virtual TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption,
                                        TEditorButton role) = 0;
    virtual void SetCodeControl(QWidget* control) = 0;  // shows the code; locked while a record is edited
    virtual void SetSaveControl(TSmartButton_VRO* button, int saveMode) = 0;

    virtual void FormCreate() = 0;
    virtual void FormShow() = 0;
    virtual void SetShortCut() = 0;
    virtual void SetTitle(const std::string& title) = 0;
    // True marks the content as saved, so that closing asks nothing. Any input by the user marks it unsaved.
    virtual void SetIsSaved(bool saved) = 0;
    [[nodiscard]] virtual bool IsSaved() const = 0;
    [[nodiscard]] virtual TFormOption& FormOption() = 0;

    virtual void OpenRecord() = 0;  // the opening part of the order above
    virtual int ShowModal() = 0;
    virtual void Save(TSaveKind kind) = 0;
    // Asks about unsaved changes when there are any; true when the editor may close.
    [[nodiscard]] virtual bool MayClose() = 0;
};

class TBaseGet_FRM : public QDialog {
public:
    TBaseGet_FRM(TSoftwarePart part, Value code, TFormMode mode, Value param = {}, bool flag1 = false,
                 bool flag2 = false);
    ~TBaseGet_FRM() override;

    [[nodiscard]] TSoftwarePart SoftwarePart() const { return part_; }
    [[nodiscard]] TFormMode Mode() const { return mode_; }
    void SetMode(TFormMode mode) { mode_ = mode; }
    // The record's code; for a new record the code that GetNewCode gave.
    [[nodiscard]] const Value& Code() const { return code_; }
    void SetCode(Value code) { code_ = std::move(code); }
    [[nodiscard]] const Value& Param() const { return param_; }
    [[nodiscard]] bool Flag1() const { return flag1_; }
    [[nodiscard]] bool Flag2() const { return flag2_; }
    // Set when the editor closed itself while it was created (the record is gone, for instance); it must not be shown.
    [[nodiscard]] bool ClosedOnCreate() const { return closedOnCreate_; }
    void CloseOnCreate() { closedOnCreate_ = true; }

    [[nodiscard]] TFormOption& FormOption() { return base().FormOption(); }
    void SetIsSaved(bool saved) { base().SetIsSaved(saved); }
    int ShowModal() { return base().ShowModal(); }
    [[nodiscard]] GetBase& base() const { return *base_; }
    // Variants of the save button.
    void BaseSave_Click() { base().Save(TSaveKind::Save); }
    void BaseSaveANDNew_Click() { base().Save(TSaveKind::SaveAndNew); }
    void BaseSaveANDClose_Click() { base().Save(TSaveKind::SaveAndClose); }
    void BaseSaveANDPrint_Click() { base().Save(TSaveKind::SaveAndPrint); }

    // Hooks.
    virtual void CreateControls() = 0;
    virtual void SetComponents() = 0;
    virtual void SetSetting() {}
    virtual void Init(bool flag) = 0;
    [[nodiscard]] virtual bool IsNewRecordMode(const Value& code) = 0;
    [[nodiscard]] virtual Value GetNewCode() = 0;
    virtual void PrepareQuery(const Value& code) = 0;
    virtual void BeforeFill(const Value& /*code*/) {}
    virtual void OnFill(const Value& code) = 0;
    virtual void AfterFill(const Value& /*code*/) {}
    [[nodiscard]] virtual bool IsValid() = 0;
    virtual void BeforeSave() {}
    virtual void OnSave() = 0;
    virtual void AfterSave() {}
    virtual void FormShow(QObject* sender);

    void reject() override;  // Escape and the window's close: asks about unsaved changes first

private:
    TSoftwarePart part_;
    Value code_;
    TFormMode mode_;
    Value param_;
    bool flag1_;
    bool flag2_;
    bool closedOnCreate_ = false;
    std::unique_ptr<GetBase> base_;
};

// Makes an editor and runs the creating and opening parts of its order.
template <class Editor, class... Arguments>
[[nodiscard]] std::unique_ptr<Editor> CreateEditor(Arguments&&... arguments) {
    auto editor = std::make_unique<Editor>(std::forward<Arguments>(arguments)...);
    editor->CreateControls();
    editor->base().FormCreate();
    editor->SetComponents();
    editor->SetSetting();
    editor->base().OpenRecord();
    return editor;
}

}  // namespace basalt
