#include "host/screens/get_base_impl.h"

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "ado/error.h"
#include "ado/transaction.h"
#include "host/screens/output_services.h"
#include "host/screens/record_content.h"
#include "host/screens/table_printer.h"
#include "host/screens/theme.h"
#include "host/screens/unsaved_changes.h"
#include "host/screens/window_size.h"

namespace basalt::host {
namespace {

// A flag that is up while a piece of work runs, however that ends.
class Raised {
public:
    explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
    ~Raised() { flag_ = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& flag_;
};

// Somebody may hold the record of whom only the workstation is known, or nothing at all.
MessageRequest openElsewhere(const CodeLockHolder& holder) {
    MessageRequest request;
    request.operation = "MsgOpenElsewhere";
    if (holder.userName.empty() && holder.workstationName.empty()) return request;
    if (holder.userName.empty()) {
        request.operation = "MsgOpenAtWorkstation";
        request.arguments = {holder.workstationName};
    } else if (holder.workstationName.empty()) {
        request.operation = "MsgOpenByUser";
        request.arguments = {holder.userName};
    } else {
        request.arguments = {holder.userName, holder.workstationName};
    }
    return request;
}

}  // namespace

GetBaseImpl::GetBaseImpl(ScreenContext& context, TBaseGet_FRM& editor)
    : context_(context),
      editor_(editor),
      option_(context, editor),
      frame_(new ScreenFrame(context, editor)),
      banner_(new QFrame),
      bannerText_(new QLabel(banner_)),
      formPanel_(nullptr),
      watch_([this] { SetIsSaved(false); }),
      dataSets_(context.host().DM().ADOConnection1) {
    auto* bannerPanel = frame_->addPanel("Banner_PNL", 0);
    formPanel_ = frame_->addPanel("Form_PNL", 1);
    banner_->setParent(bannerPanel);
    banner_->setObjectName(QStringLiteral("OpenElsewhere_BNR"));
    banner_->setProperty("kind", QStringLiteral("banner"));
    banner_->hide();
    bannerText_->setObjectName(QStringLiteral("OpenElsewhere_LBL"));
    bannerText_->setTextFormat(Qt::PlainText);
    bannerText_->setWordWrap(true);
    auto* layout = new QHBoxLayout(banner_);
    layout->setContentsMargins(10, 6, 10, 6);
    layout->addWidget(bannerText_);
    editor.setMinimumWidth(themePixels(460));
    frame_->onEnter = [this] {
        enterPressed();
        return true;
    };
}

GetBaseImpl::~GetBaseImpl() {
    // The widgets go with the editor, which goes after this.
    frame_->onEnter = {};
    for (SmartButton* button : frame_->buttons()) {
        button->OnClick = {};
        button->setSaveHandler({});
    }
}

TSmartButton_VRO* GetBaseImpl::AddButton(const std::string& objectName, const std::string& caption,
                                         TEditorButton role) {
    if (role == TEditorButton::Exit) frame_->addButtonGap();
    SmartButton* button = frame_->addButton(objectName, caption);
    if (role == TEditorButton::Save) {
        button->setLook(SmartButton::Look::Primary);
        button->OnClick = [this] { Save(TSaveKind::Save); };
    } else if (role == TEditorButton::Exit) {
        button->OnClick = [this] { editor_.reject(); };
    }
    return button;
}

void GetBaseImpl::SetSaveControl(TSmartButton_VRO* button, int saveMode) {
    auto* own = dynamic_cast<SmartButton*>(button);
    if (!own) throw UsageError("SetSaveControl: the button is not one that this base made");
    own->SetSaveMode(saveMode);
    own->setSaveHandler([this](TSaveKind kind) { Save(kind); });
}

void GetBaseImpl::FormCreate() {
    frame_->finishLayout();
    partTitle_ = QString::fromStdString(context_.host().permissions().partTitle(editor_.SoftwarePart()));
}

void GetBaseImpl::FormShow() {
    frame_->finishLayout();
    watch_.add(*formPanel_);
    lockCodeControl();
    showTitle();
    context_.guarded(&editor_, [this] { restoreWindowSize(editor_, option_.load()); });
}

void GetBaseImpl::SetTitle(const std::string& title) {
    ownTitle_ = true;
    frame_->setTitle(QString::fromStdString(title));
}

void GetBaseImpl::showTitle() {
    if (ownTitle_) return;
    const QString action = editor_.Mode() == fmNew ? QStringLiteral("جدید") : QStringLiteral("ویرایش");
    frame_->setTitle(partTitle_.isEmpty() ? action : QStringLiteral("%1 – %2").arg(partTitle_, action));
}

void GetBaseImpl::SetIsSaved(bool saved) {
    isSaved_ = saved;
}

void GetBaseImpl::OpenRecord() {
    watch_.add(*formPanel_);
    if (!openAsItIs(true)) editor_.CloseOnCreate();
}

bool GetBaseImpl::openAsItIs(bool first) {
    const bool isNew = editor_.IsNewRecordMode(editor_.Code()) || editor_.Mode() == fmNew;
    if (!may(isNew ? prInsert : prEdit)) return false;
    if (isNew) {
        openNew(first);
    } else {
        openExisting();
    }
    return true;
}

bool GetBaseImpl::openAnother() {
    const TFormMode mode = editor_.Mode();
    const Value code = editor_.Code();
    bool opened = false;
    context_.guarded(&editor_, [this, &opened] {
        // As an editor for a new record is made: in this mode and with no code yet.
        editor_.SetMode(fmNew);
        editor_.SetCode(std::int64_t{0});
        opened = openAsItIs(false);
    });
    if (opened) return true;
    editor_.SetMode(mode);
    editor_.SetCode(code);
    return false;
}

bool GetBaseImpl::may(TPermission permission) {
    ReferenceHost& host = context_.host();
    return host.HavePermission(host.UserInfo(), editor_.SoftwarePart(), permission, false, true, "");
}

void GetBaseImpl::openNew(bool first) {
    const InputWatch::Pause pause(watch_);
    editor_.SetMode(fmNew);
    // The previous code is let go only once the next one is held, so that it cannot be handed out twice here.
    lock_ = context_.host().codeLocks().holdNew(editor_.SoftwarePart(), [this] { return editor_.GetNewCode(); });
    editor_.SetCode(lock_.value());
    known_.forget();
    reopen_ = false;
    editor_.Init(first);
    SetIsSaved(true);
    showOthers();
}

void GetBaseImpl::openExisting() {
    lock_ = context_.host().codeLocks().hold(toText(editor_.Code()), editor_.SoftwarePart());
    prepareRecord();
    const TDataSet* record = dataSets_.record();
    if (record && record->IsEmpty()) editor_.CloseOnCreate();
    if (editor_.ClosedOnCreate()) {
        lock_.release();
        tellRecordGone();
        return;
    }
    rememberRecord();
    fillExisting();
    showOthers();
}

void GetBaseImpl::prepareRecord() {
    dataSets_.forgetOpened();
    editor_.PrepareQuery(editor_.Code());
    dataSets_.nameRecord();
}

void GetBaseImpl::rememberRecord() {
    known_.forget();
    if (TDataSet* record = dataSets_.record()) known_.take(*record);
}

void GetBaseImpl::prepareRecordAgain() {
    prepareRecord();
    TDataSet* record = dataSets_.record();
    // What was read anew hides from the data set what another user did in between.
    if (record && !known_.empty() && !known_.matches(*record))
        throw DatabaseError(ErrorCategory::Conflict, "01001", 0,
                            "The record was changed or deleted by another user since it was read");
    reopen_ = false;
}

void GetBaseImpl::fillExisting() {
    const InputWatch::Pause pause(watch_);
    editor_.BeforeFill(editor_.Code());
    editor_.OnFill(editor_.Code());
    editor_.AfterFill(editor_.Code());
    SetIsSaved(true);
}

void GetBaseImpl::tellRecordGone() {
    MessageRequest request;
    request.operation = "MsgRecordGone";
    context_.host().Messages().show(request);
}

void GetBaseImpl::lockCodeControl() {
    // The code is the record's identity and is held for this editor, a new one as well.
    if (!codeControl_) return;
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(codeControl_.data())) {
        spin->setReadOnly(true);
        spin->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    } else if (auto* line = qobject_cast<QLineEdit*>(codeControl_.data())) {
        line->setReadOnly(true);
    } else {
        codeControl_->setEnabled(false);
    }
    codeControl_->setFocusPolicy(Qt::ClickFocus);
}

void GetBaseImpl::showOthers() {
    const auto holders = context_.host().codeLocks().others(toText(editor_.Code()), editor_.SoftwarePart());
    banner_->parentWidget()->setVisible(!holders.empty());
    banner_->setVisible(!holders.empty());
    if (holders.empty()) return;
    bannerText_->setText(QString::fromStdString(context_.host().catalogue().render(openElsewhere(holders[0])).text));
}

int GetBaseImpl::ShowModal() {
    if (editor_.ClosedOnCreate()) return mrCancel;
    editor_.FormShow(&editor_);
    context_.rethrowUnshown();
    const int code = editor_.exec();
    context_.rethrowUnshown();
    // The code first: other users wait for it.
    lock_.release();
    QJsonObject layout;
    keepWindowSize(layout, editor_);
    option_.saveQuietly(layout);
    context_.rethrowUnshown();
    if (code == QDialog::Accepted || wroteOnce_) return mrOk;
    return code == QDialog::Rejected ? mrCancel : code;
}

bool GetBaseImpl::write() {
    if (saving_) return false;
    const Raised saving(saving_);
    bool written = false;
    context_.guarded(&editor_, [this, &written] {
        if (!editor_.IsValid()) return;
        if (reopen_) prepareRecordAgain();
        TADOConnection& connection = context_.host().DM().ADOConnection1;
        try {
            // The record and its entry in the user log stand or fall together.
            Transaction transaction(connection);
            editor_.BeforeSave();
            editor_.OnSave();
            editor_.AfterSave();
            transaction.commit();
        } catch (...) {
            afterFailedWrite();
            throw;
        }
        written = true;
        wroteOnce_ = true;
        rememberRecord();
        if (onWritten) onWritten();
        SetIsSaved(true);
    });
    return written;
}

void GetBaseImpl::afterFailedWrite() {
    // A record that did not reach the table is still being entered; the next attempt starts from the inputs again. One
    // that did reach it and was rolled back shows values that the table does not have. The check of a name may have
    // opened another data set since, so all of them count: a record read anew would hide what another user changed.
    const bool entering = dataSets_.entering();
    dataSets_.cancelEdits();
    reopen_ = editor_.Mode() != fmNew && !entering;
}

void GetBaseImpl::Save(TSaveKind kind) {
    if (!write()) return;
    switch (kind) {
        case TSaveKind::SaveAndClose:
            editor_.accept();
            return;
        case TSaveKind::SaveAndNew:
            if (!openAnother()) break;
            showTitle();
            return;
        case TSaveKind::SaveAndPrint:
        case TSaveKind::Save:
            break;
    }
    if (editor_.Mode() == fmNew) context_.guarded(&editor_, [this] { turnToExisting(); });
    if (kind == TSaveKind::SaveAndPrint) context_.guarded(&editor_, [this] { printRecord(); });
}

void GetBaseImpl::turnToExisting() {
    // Saving once more must change the record, not add another; also when it cannot be read just now.
    editor_.SetMode(fmEdit);
    known_.forget();
    reopen_ = true;
    showTitle();
    prepareRecordAgain();
    rememberRecord();
    fillExisting();
}

void GetBaseImpl::printRecord() {
    const RecordContent record(frame_->title(), *formPanel_);
    TableDocument document(record, QString::fromStdString(context_.host().NowDate("/")), context_.companyName());
    context_.output().preview(context_, &editor_, document, pageLayout());
}

bool GetBaseImpl::MayClose() {
    if (isSaved_) return true;
    bool may = false;
    context_.guarded(&editor_, [this, &may] {
        may = mayLeaveUnsaved(context_.host().Messages(), editor_, [this] { return write(); });
    });
    return may;
}

void GetBaseImpl::enterPressed() {
    // Enter leads from input to input, as on paper.
    QWidget* focused = editor_.focusWidget();
    if (!focused) return;
    for (QWidget* next = focused->nextInFocusChain(); next && next != focused; next = next->nextInFocusChain()) {
        if (next->isVisibleTo(&editor_) && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus) &&
            !next->focusProxy() && next->window() == &editor_) {
            next->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

}  // namespace basalt::host
