// The host's part of record editors.
#pragma once

#include <QFrame>
#include <QPointer>
#include <functional>
#include <memory>

#include "host/screens/editor_data_sets.h"
#include "host/screens/form_option.h"
#include "host/screens/input_watch.h"
#include "host/screens/record_memory.h"
#include "host/screens/screen_frame.h"
#include "package/screens/base_get_frm.h"

namespace basalt::host {

class GetBaseImpl final : public GetBase {
public:
    GetBaseImpl(ScreenContext& context, TBaseGet_FRM& editor);
    ~GetBaseImpl() override;

    [[nodiscard]] QWidget* FormPanel() override { return formPanel_; }
    TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption, TEditorButton role) override;
    void SetCodeControl(QWidget* control) override { codeControl_ = control; }
    void SetSaveControl(TSmartButton_VRO* button, int saveMode) override;
    void FormCreate() override;
    void FormShow() override;
    void SetShortCut() override { frame_->activateShortCuts(); }
    void SetTitle(const std::string& title) override;
    void SetIsSaved(bool saved) override;
    [[nodiscard]] bool IsSaved() const override { return isSaved_; }
    [[nodiscard]] TFormOption& FormOption() override { return option_; }
    void OpenRecord() override;
    int ShowModal() override;
    void Save(TSaveKind kind) override;
    [[nodiscard]] bool MayClose() override;

    // Told once the record is written for good. AfterSave comes before that, in the record's transaction, and all that
    // it reads may still be undone: what an editor believes of the table it changes here. It must not fail.
    std::function<void()> onWritten;

private:
    // False when the user may not; the host has said so.
    [[nodiscard]] bool may(TPermission permission);
    // False when the user may not; he has been told.
    bool openAsItIs(bool first);
    // False when there is no new record, for whatever reason; the one that was saved is the editor's still.
    bool openAnother();
    void openNew(bool first);
    void openExisting();
    void prepareRecord();
    void prepareRecordAgain();
    void rememberRecord();
    // From now on the record that was new is one to change.
    void turnToExisting();
    void fillExisting();
    void tellRecordGone();
    void lockCodeControl();
    void showOthers();
    void showTitle();
    // True when the record has been written.
    [[nodiscard]] bool write();
    void afterFailedWrite();
    void printRecord();
    void enterPressed();

    ScreenContext& context_;
    TBaseGet_FRM& editor_;
    basalt::host::FormOption option_;
    ScreenFrame* frame_;
    QFrame* banner_;
    QLabel* bannerText_;
    QWidget* formPanel_;
    InputWatch watch_;
    EditorDataSets dataSets_;
    RecordMemory known_;  // the record as it was read or saved last
    CodeLock lock_;
    QPointer<QWidget> codeControl_;
    QString partTitle_;
    bool ownTitle_ = false;  // the editor has set one itself
    bool isSaved_ = true;
    bool wroteOnce_ = false;
    bool saving_ = false;
    bool reopen_ = false;  // the record must be read again before it can be written
};

}  // namespace basalt::host
