#include "host/desktop/rights_page.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "host/desktop/centred_box.h"
#include "host/desktop/save_footer.h"
#include "host/screens/disabled_reason.h"
#include "host/screens/theme.h"
#include "host/screens/unsaved_changes.h"
#include "host/services/host_parts.h"

namespace basalt::host {
namespace {

constexpr int kUsersWidth = 180;
constexpr int kLeastColumn = 96;
constexpr int kRowHeight = 32;

QString listTitle(const UserListItem& user) {
    const QString name = QString::fromStdString(user.fullName);
    return user.enabled ? name : name + QStringLiteral(" (غیرفعال)");
}

QString noteOn(const UserListItem& user, bool mayEdit) {
    if (user.manager)
        return QStringLiteral(
            "مدیر همهٔ دسترسی‌ها را دارد و چیزی از او گرفته نمی‌شود.");
    if (!mayEdit)
        return QStringLiteral(
            "شما دسترسی‌ها را می‌بینید، اما اجازهٔ تغییر آن‌ها را ندارید.");
    return QStringLiteral(
        "با کلید فاصله یا کلیک روی هر خانه دسترسی را بدهید یا بگیرید. آنچه با گروه کاربر فرق دارد «ویژه» است.");
}

}  // namespace

RightsPage::RightsPage(DesktopContext context, QWidget* parent)
    : ShellPage(parent), context_(context), rights_(context.host) {
    setObjectName(QStringLiteral("Rights_PNL"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(12);
    auto* title = new QLabel(QString::fromStdString(context_.host.permissions().partTitle(hpUsers)));
    title->setProperty("kind", QStringLiteral("pageTitle"));
    layout->addWidget(title);
    note_ = new QLabel;
    note_->setTextFormat(Qt::PlainText);
    note_->setObjectName(QStringLiteral("RightsNote_LBL"));
    note_->setProperty("kind", QStringLiteral("hint"));
    note_->setWordWrap(true);
    layout->addWidget(note_);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(16);
    makeUsers(*columns);
    makeRights(*columns);
    layout->addLayout(columns, 1);
    makeFooter(*layout);
    model_.OnEdited = [this] { edited(); };
}

void RightsPage::makeUsers(QBoxLayout& layout) {
    list_ = new QListWidget;
    list_->setObjectName(QStringLiteral("Users_LST"));
    list_->setAccessibleName(QStringLiteral("کاربران"));
    list_->setFixedWidth(themePixels(kUsersWidth));
    list_->setTextElideMode(Qt::ElideRight);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout.addWidget(list_);
    // Behind the key or click, because choosing may ask and go back.
    QObject::connect(
        list_, &QListWidget::currentRowChanged, this, [this] { context_.handlers.guarded(this, [this] { choose(); }); },
        Qt::QueuedConnection);
}

void RightsPage::makeRights(QBoxLayout& layout) {
    table_ = new QTableView;
    table_->setObjectName(QStringLiteral("Rights_GRD"));
    table_->setModel(&model_);
    table_->setItemDelegate(new CentredBox(table_));
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setAlternatingRowColors(true);
    table_->setShowGrid(false);
    // Tab leads on to the buttons; the arrow keys go from box to box.
    table_->setTabKeyNavigation(false);
    // The parts stay in sight while the table scrolls.
    table_->verticalHeader()->setHighlightSections(false);
    table_->verticalHeader()->setSectionsClickable(false);
    table_->setCornerButtonEnabled(false);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setSectionsClickable(false);
    // Nothing is cut; where there is no room for all of it, the table scrolls.
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setMinimumSectionSize(themePixels(kLeastColumn));
    table_->horizontalHeader()->setStretchLastSection(true);
    layout.addWidget(table_, 1);
}

void RightsPage::makeFooter(QBoxLayout& layout) {
    const SaveFooter footer = addSaveFooter(*this, layout, QStringLiteral("Rights"));
    save_ = footer.save;
    undo_ = footer.undo;
    state_ = footer.state;
    QObject::connect(save_, &QPushButton::clicked, this,
                     [this] { context_.handlers.guarded(this, [this] { static_cast<void>(save()); }); });
    QObject::connect(undo_, &QPushButton::clicked, this, [this] {
        context_.handlers.guarded(this, [this] { reload(model_.sheet().user.code); });
        table_->setFocus();
    });
}

void RightsPage::enter() {
    mayEdit_ = context_.host.permissions().holds(context_.host.UserInfo().Code, hpUsers, prEdit);
    reload(model_.sheet().user.code);
    list_->setFocus();
}

bool RightsPage::mayLeave() {
    return settleChanges({});
}

bool RightsPage::settleChanges(const std::vector<std::string>& before) {
    if (model_.changes().empty()) return true;
    return mayLeaveUnsaved(
        context_.host.Messages(), *window(), [this] { return save(); }, [this] { show(RightsSheet(model_.sheet())); },
        before);
}

void RightsPage::reload(int userCode) {
    users_ = context_.host.users().list();
    int current = 0;
    {
        const QSignalBlocker quiet(list_);
        list_->clear();
        for (const UserListItem& user : users_) {
            if (user.code == userCode) current = list_->count();
            list_->addItem(listTitle(user));
        }
        list_->setCurrentRow(current);
    }
    if (users_.empty()) return;
    // He may have gone since the list was read.
    if (auto sheet = rights_.read(users_[static_cast<std::size_t>(current)].code)) show(std::move(*sheet));
}

void RightsPage::choose() {
    const int row = list_->currentRow();
    if (row < 0 || row >= static_cast<int>(users_.size())) return;
    const int chosen = users_[static_cast<std::size_t>(row)].code;
    if (chosen == model_.sheet().user.code) return;
    if (settleChanges({"رفتن به کاربر دیگر"})) {
        reload(chosen);
        return;
    }
    // Back to whom the table shows: another one than before, when that one has gone meanwhile.
    const QSignalBlocker quiet(list_);
    const int user = model_.sheet().user.code;
    const auto back = std::find_if(users_.begin(), users_.end(), [&](const auto& each) { return each.code == user; });
    list_->setCurrentRow(back == users_.end() ? -1 : static_cast<int>(back - users_.begin()));
}

void RightsPage::show(RightsSheet sheet) {
    const QModelIndex before = table_->currentIndex();
    const int row = std::max(before.row(), 0);
    const int column = std::max(before.column(), 0);
    note_->setText(noteOn(sheet.user, mayEdit_));
    // Boxes that nobody can tick look so.
    table_->setProperty("fixed", sheet.user.manager || !mayEdit_);
    // The style sheet looks at a property only when it is applied anew.
    table_->style()->unpolish(table_);
    table_->style()->polish(table_);
    table_->setAccessibleName(
        QStringLiteral("دسترسی‌های %1").arg(QString::fromStdString(sheet.user.fullName)));
    model_.show(std::move(sheet), mayEdit_, [this](const UserRight& right) {
        return rights_.keepsAccess(model_.sheet().user.code, right.part, right.permission);
    });
    table_->verticalHeader()->setDefaultSectionSize(themePixels(kRowHeight));
    table_->setCurrentIndex(model_.index(row, column));
    state_->clear();
    setUnsaved(false);
}

bool RightsPage::save() {
    if (!context_.host.HavePermission(context_.host.UserInfo(), hpUsers, prEdit, false, true, "")) return false;
    const UserListItem user = model_.sheet().user;
    const RightsOutcome outcome = rights_.write(model_.sheet(), model_.changes());
    if (outcome != RightsOutcome::Written) {
        const bool gone = outcome == RightsOutcome::Gone;
        context_.host.Messages().show({.operation = gone ? "MsgUserGone" : "MsgRecordChanged", .form = this});
        reload(user.code);
        return false;
    }
    // The disabled button would hand the focus on to wherever.
    if (save_->hasFocus()) table_->setFocus();
    reload(user.code);
    state_->setText(
        QStringLiteral("دسترسی‌های %1 ذخیره شد.").arg(QString::fromStdString(user.fullName)));
    return true;
}

void RightsPage::edited() {
    state_->clear();
    setUnsaved(!model_.changes().empty());
}

void RightsPage::setUnsaved(bool unsaved) {
    enableUnless(*save_, unsaved ? QString() : nothingChangedReason());
    enableUnless(*undo_, unsaved ? QString() : nothingChangedReason());
}

}  // namespace basalt::host
