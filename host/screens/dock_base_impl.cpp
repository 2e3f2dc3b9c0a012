#include "host/screens/dock_base_impl.h"

#include <QToolButton>
#include <algorithm>

#include "ado/error.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "host/screens/window_size.h"
#include "package/screens/base_get_frm.h"

namespace basalt::host {
namespace {

std::function<void()> handlerOf(TBaseDock_FRM& screen, TListButton role) {
    switch (role) {
        case TListButton::New:
            return [&screen] { screen.New_BTNClick(); };
        case TListButton::Edit:
            return [&screen] { screen.Edit_BTNClick(); };
        case TListButton::Delete:
            return [&screen] { screen.Delete_BTNClick(); };
        case TListButton::Select:
            return [&screen] { screen.Select_BTNClick(); };
        case TListButton::Exit:
            return [&screen] { screen.Exit_BTNClick(); };
        case TListButton::Print:
        case TListButton::Other:
            break;
    }
    return {};
}

// What stands beside a part of a window, up to its edges.
int widthAround(const QWidget& part) {
    int around = 0;
    for (const QWidget* outer = part.parentWidget(); outer;
         outer = outer->isWindow() ? nullptr : outer->parentWidget()) {
        if (!outer->layout()) continue;
        const QMargins margins = outer->layout()->contentsMargins();
        around += margins.left() + margins.right();
    }
    return around;
}

bool actsOnRow(TListButton role) {
    return role != TListButton::New && role != TListButton::Exit && role != TListButton::Other;
}

}  // namespace

DockBaseImpl::DockBaseImpl(ScreenContext& context, TBaseDock_FRM& screen)
    : context_(context),
      screen_(screen),
      option_(context, screen),
      frame_(new ScreenFrame(context, screen)),
      searchPanel_(frame_->addPanel("Search_PNL", 0)),
      // Without a factor it grows all the same, as lists do, and in a low window what is below it gives way too.
      listPanel_(frame_->addPanel("List_PNL", 0)),
      summaryPanel_(frame_->addPanel("Summary_PNL", 0)),
      detailPanel_(frame_->addPanel("Detail_PNL", 0)) {
    screen.resize(themeWindowSize({760, 560}, screen));
    frame_->onEnter = [this] { return enterPressed(); };
    context_.requestListeners().add(*this);
}

DockBaseImpl::~DockBaseImpl() {
    context_.requestListeners().remove(*this);
    // The widgets go with the screen, which goes after this.
    frame_->onEnter = {};
    delete summary_.data();
    if (grid_) {
        grid_->onRowsChanged = {};
        grid_->setMenuHead({});
        grid_->setDescription({}, {});
        grid_->setGate({});
        grid_->setPart({});
        grid_->setNarrowing({});
    }
}

TSmartButton_VRO* DockBaseImpl::AddButton(const std::string& objectName, const std::string& caption, TListButton role) {
    if (role == TListButton::Exit) frame_->addButtonGap();
    SmartButton* button = frame_->addButton(objectName, caption);
    button->OnClick = handlerOf(screen_, role);
    if (role == TListButton::Print)
        button->OnClick = [this] {
            if (grid_) grid_->print();
        };
    if (actsOnRow(role)) button->setGate([this] { return rowIsFound(); });
    if (role == TListButton::Delete) button->setLook(SmartButton::Look::Danger);
    if (role == (screen_.Mode() == fmSelect ? TListButton::Select : TListButton::Edit))
        button->setLook(SmartButton::Look::Primary);
    // There is nobody to select for.
    if (role == TListButton::Select && screen_.Mode() != fmSelect) button->hide();
    buttons_.push_back({button, role});
    return button;
}

void DockBaseImpl::SetGrid(TSmartDBGrid_VRO* grid) {
    grid_ = dynamic_cast<SmartGrid*>(grid);
    if (!grid_) throw UsageError("SetGrid: the grid is not one that these screen services made");
    summary_ = new SelectionSummary(*grid_, summaryPanel_);
    grid_->onRowsChanged = [this] { EnableButtons(); };
    grid_->setGate([this] { return rowsAreFound(); });
    grid_->setDescription([this] { return frame_->title(); }, [this] { return headerLines(); });
    grid_->setRefresh([this] { readAnew(); });
    addGridTools();
}

void DockBaseImpl::SetSearchManager(TVaroSearchManager* manager) {
    searches_ = dynamic_cast<SearchManager*>(manager);
    if (!searches_) return;
    if (grid_) {
        grid_->setPart([this] { return searches_->tabTitle(); });
        grid_->setNarrowing([this] { return searches_->narrowing(); });
    }
    searches_->onSearched = [this] { noteSearch(); };
}

// What can be done with the whole list stands beside the title, so that it is found without the context menu.
void DockBaseImpl::addGridTools() {
    auto* tool = new QToolButton(&screen_);
    tool->setObjectName(QStringLiteral("ListTools_BTN"));
    tool->setText(QStringLiteral("چاپ و خروجی ▾"));
    tool->setToolTip(
        QStringLiteral("به‌روزآوری، ستون‌ها، مرتب‌سازی، چاپ و خروجی"));
    tool->setAccessibleName(tool->toolTip());
    tool->setFocusPolicy(Qt::StrongFocus);
    tool->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(tool);
    menu->setObjectName(QStringLiteral("ListTools_Menu"));
    menu->addActions(grid_->gridActions());
    tool->setMenu(menu);
    frame_->addTool(tool);
}

void DockBaseImpl::FormCreate() {
    frame_->finishLayout();
    EnableButtons();
}

void DockBaseImpl::FormShow() {
    frame_->finishLayout();
    restoreLayout();
    EnableButtons();
    if (firstSearch_) firstSearch_->FocusFirst();
}

void DockBaseImpl::EnableButtons() {
    const bool hasRow = grid_ && grid_->CurrentRow() >= 0;
    const QString reason = hasRow                                   ? QString()
                           : grid_ && grid_->model().rowCount() > 0 ? nothingChosenReason()
                           : isUnread()                             ? unreadListReason()
                                                                    : emptyListReason();
    for (const Button& entry : buttons_) {
        if (!actsOnRow(entry.role)) continue;
        // No row need be chosen for a print, so that one reads what is unread.
        enableUnless(*entry.button, entry.role == TListButton::Print && isUnread() ? QString() : reason);
    }
}

void DockBaseImpl::SetTitle(const std::string& title) {
    frame_->setTitle(QString::fromStdString(title));
}

void DockBaseImpl::SetPopMenu() {
    if (!grid_) return;
    grid_->setMenuHead([this](QMenu& menu) {
        for (SmartButton* button : frame_->buttons()) {
            if (!button->isVisibleTo(&screen_)) continue;
            QAction* action = menu.addAction(button->title() + QLatin1Char('\t') + button->shortCut().toString(),
                                             button, [button] { button->Click(); });
            action->setObjectName(button->objectName() + QStringLiteral("_ACT"));
            action->setEnabled(button->isEnabled());
        }
    });
}

bool DockBaseImpl::rowsAreFound() {
    if (searches_ && !searches_->finishTyping()) return false;
    const bool behind = searches_ && searches_->isBehind();
    if (!behind && !isUnread()) return true;
    bool found = false;
    context_.guarded(&screen_, [this, behind, &found] {
        if (behind) {
            searches_->ExecuteFilter_DataSet();
        } else {
            screen_.RefreshList();
        }
        found = true;
    });
    return found;
}

void DockBaseImpl::readAnew() {
    if (searches_ && (searches_->isWaiting() || searches_->isBehind())) {
        static_cast<void>(rowsAreFound());
    } else {
        screen_.RefreshList();
    }
}

bool DockBaseImpl::isUnread() const {
    return grid_ && grid_->model().isUnread();
}

void DockBaseImpl::requestRuns(bool runs) {
    if (summary_) summary_->setAdvising(!runs);
}

// When everything is back where it was after a failure: a tab that is left again asks for the rows that are there.
void DockBaseImpl::noteSearch() {
    if (!summary_) return;
    QMetaObject::invokeMethod(
        summary_.data(),
        [this] {
            if (searches_->isBehind()) {
                summary_->setNote(
                    QStringLiteral("فهرست هنوز جستجوی پیشین را نشان می‌دهد"),
                    QStringLiteral(
                        "برای جستجوی نوشته‌شده \u2066Enter\u2069 یا \u2066Ctrl+R\u2069 را بزنید"));
            } else {
                summary_->setNote({}, {});
            }
        },
        Qt::QueuedConnection);
}

bool DockBaseImpl::rowIsFound() {
    const QWidget* focused = screen_.focusWidget();
    return (grid_ && focused && grid_->isAncestorOf(focused) && !isUnread()) || rowsAreFound();
}

bool DockBaseImpl::enterPressed() {
    QWidget* focused = screen_.focusWidget();
    if (!grid_ || !focused) return false;
    if (!grid_->isAncestorOf(focused) || isUnread()) {
        // From the search on to what it found.
        if (rowsAreFound()) grid_->setFocus();
        return true;
    }
    for (const Button& entry : buttons_)
        if (entry.role == TListButton::Edit && isUsable(entry.button)) {
            entry.button->Click();
            return true;
        }
    return false;
}

std::vector<QString> DockBaseImpl::headerLines() const {
    std::vector<std::string> texts = screen_.GetMasterReport_Description();
    // The count of the texts before it tells the reader of a paper nothing.
    if (!texts.empty() && texts.back() == std::to_string(texts.size() - 1)) texts.pop_back();
    TDataSet* rows = grid_ ? grid_->model().dataSet() : nullptr;
    const TField* code = rows && !rows->IsEmpty() ? rows->FindField("Code") : nullptr;
    const std::vector<std::string> detail = screen_.GetDetailReport_Description(code ? code->AsValue() : Value());
    texts.insert(texts.end(), detail.begin(), detail.end());
    std::vector<QString> lines;
    lines.reserve(texts.size());
    for (const std::string& text : texts)
        lines.push_back(QString::fromStdString(text));
    return lines;
}

void DockBaseImpl::restoreLayout() {
    context_.guarded(&screen_, [this] {
        const QJsonObject layout = option_.load();
        if (grid_ && layout.contains(QStringLiteral("grid")))
            grid_->arrange(layout.value(QStringLiteral("grid")).toObject());
        if (grid_ && !hasWindowSize(layout)) widenWindow(screen_, widthAround(*grid_) + grid_->columnsWidth());
        restoreWindowSize(screen_, layout);
    });
}

void DockBaseImpl::keepLayout() {
    context_.guarded(&screen_, [this] {
        QJsonObject layout;
        keepWindowSize(layout, screen_);
        if (grid_) layout.insert(QStringLiteral("grid"), grid_->arrangement());
        option_.saveQuietly(layout);
    });
}

int DockBaseImpl::ShowModal() {
    screen_.Open();
    screen_.InitSearch(screen_.CustomText());
    if (screen_.Mode() == fmSelect) screen_.InitSelect();
    screen_.FormShow(&screen_);
    context_.rethrowUnshown();
    const int code = screen_.exec();
    context_.rethrowUnshown();
    keepLayout();
    context_.rethrowUnshown();
    if (code == QDialog::Accepted) return mrOk;
    return code == QDialog::Rejected ? mrCancel : code;
}

bool DockBaseImpl::ShowEditor(std::unique_ptr<TBaseGet_FRM> editor) {
    if (editor->ClosedOnCreate()) return false;
    editor->ShowModal();
    return true;
}

}  // namespace basalt::host
