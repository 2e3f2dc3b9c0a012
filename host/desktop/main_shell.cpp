#include "host/desktop/main_shell.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "host/counter/counter_page.h"
#include "host/counter/layout_page.h"
#include "host/desktop/console_page.h"
#include "host/desktop/date_text.h"
#include "host/desktop/entry_points.h"
#include "host/desktop/log_page.h"
#include "host/desktop/rights_page.h"
#include "host/desktop/settings_page.h"
#include "host/desktop/shell_style.h"
#include "host/desktop/subsystem_look.h"
#include "host/price_editor/price_editor.h"
#include "host/screens/elided_label.h"
#include "host/screens/theme.h"
#include "host/services/host_parts.h"

namespace basalt::host {
namespace {
constexpr QSize kUsualSize(1200, 780);
constexpr QSize kLeastSize(900, 600);
}  // namespace

MainShell::MainShell(DesktopContext context, QWidget* parent) : QWidget(parent), context_(context) {
    setObjectName(QStringLiteral("MainShell_FRM"));
    setWindowTitle(QStringLiteral("بازالت"));
    setStyleSheet(shellStyleSheet());
    setAttribute(Qt::WA_StyledBackground);
    setMinimumSize(QSize(kLeastSize).boundedTo(themeWindowSize(kLeastSize, *this)));
    resize(themeWindowSize(kUsualSize, *this).expandedTo(minimumSize()));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    auto* middle = new QHBoxLayout;
    middle->setSpacing(0);
    navigation_ = new NavigationPanel;
    middle->addWidget(navigation_);
    pages_ = new QStackedWidget;
    pages_->setObjectName(QStringLiteral("Pages_PNL"));
    middle->addWidget(pages_, 1);
    layout->addLayout(middle, 1);
    status_ = new StatusLine(context_.host);
    layout->addWidget(status_);

    home_ = new HomePage(context_);
    addPage({.objectName = QStringLiteral("Home"),
             .title = QStringLiteral("خانه"),
             .part = {},
             .hint = {},
             .icon = LineIcon::Home,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+0"))},
            home_);
    addEntries();
    addPriceEditor();
    addTools();
    // Each entry is made together with its tile or page, and would have that as its neighbour.
    navigation_->followInTabOrder(signOut_);
}

// The host's own screen: the module brings the functions and leaves it to its host to edit a good's prices.
void MainShell::addPriceEditor() {
    const EntryPoint prices = priceEditorEntry(context_.handlers, context_.registry);
    const auto action = [this, prices] {
        context_.handlers.guarded(this, [&prices] {
            FunctionState state;
            FunctionCall call(state, {{"GoodCode", 0}});
            prices.run(call);
        });
        screenClosed();
    };
    const QString name = QString::fromStdString(prices.name);
    // Ctrl+P prints the list of a page in front.
    const QKeySequence key(QStringLiteral("Ctrl+Shift+P"));
    const bool locked = !mayOpen(context_, prices);
    navigation_->addItem({.objectName = name + QStringLiteral("_BTN"),
                          .title = entryTitle(prices),
                          .icon = LineIcon::Pencil,
                          .shortCut = key,
                          .locked = locked},
                         action);
    home_->addTile(HomePage::Group::Screens,
                   {.objectName = name + QStringLiteral("_TILE"),
                    .title = entryTitle(prices),
                    .hint = entryHint(prices),
                    .icon = LineIcon::Pencil,
                    .locked = locked},
                   action);
    bind(key, action);
}

void MainShell::addTools() {
    navigation_->addStretch();
    navigation_->addHeading(QStringLiteral("ابزارها"));
    addPage({.objectName = QStringLiteral("Counter"),
             .title = QStringLiteral("پیشخوان فروش"),
             .part = spGoods,
             .hint = QStringLiteral("اسکن بارکد ترازو در فاکتور"),
             .icon = LineIcon::Selection,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+B"))},
            new CounterPage(context_));
    addPage({.objectName = QStringLiteral("Layouts"),
             .title = QStringLiteral("الگوهای بارکد"),
             .part = spGoods,
             .hint = QStringLiteral("جای کالا، وزن و مبلغ در بارکد"),
             .icon = LineIcon::Window,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+Shift+B"))},
            new LayoutPage(context_));
    addPage({.objectName = QStringLiteral("Log"),
             .title = partTitle(hpUserLog),
             .part = hpUserLog,
             .hint = QStringLiteral("چه کسی، چه کاری، چه زمانی"),
             .icon = LineIcon::Log,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+L"))},
            new LogPage(context_));
    addPage({.objectName = QStringLiteral("Console"),
             .title = partTitle(hpConsole),
             .part = hpConsole,
             .hint = QStringLiteral("اجرای توابع و دیدن دستورها"),
             .icon = LineIcon::Console,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+K"))},
            new ConsolePage(context_));
    addPage({.objectName = QStringLiteral("Rights"),
             .title = partTitle(hpUsers),
             .part = hpUsers,
             .hint = QStringLiteral("هر کاربر چه می‌بیند و چه می‌تواند بکند"),
             .icon = LineIcon::User,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+Shift+U"))},
            new RightsPage(context_));
    auto* settings = new SettingsPage(context_);
    settings->OnSaved = [this] {
        // The size of the font may be another one now.
        setStyleSheet(shellStyleSheet());
        status_->refresh();
        showCompany();
    };
    addPage({.objectName = QStringLiteral("Settings"),
             .title = partTitle(hpSettings),
             .part = hpSettings,
             .hint = QStringLiteral("شرکت و این ایستگاه کاری"),
             .icon = LineIcon::Settings,
             .shortCut = QKeySequence(QStringLiteral("Ctrl+,"))},
            settings);
}

QString MainShell::partTitle(TSoftwarePart part) {
    return QString::fromStdString(context_.host.permissions().partTitle(part));
}

QWidget* MainShell::makeHeader() {
    auto* header = new QFrame;
    header->setObjectName(QStringLiteral("Header_PNL"));
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(24, 12, 24, 12);
    layout->setSpacing(12);
    company_ = new ElidedLabel;
    company_->setTextFormat(Qt::PlainText);
    company_->setObjectName(QStringLiteral("Company_LBL"));
    company_->setProperty("kind", QStringLiteral("brand"));
    showCompany();
    // What stands beside it keeps its width: the name takes what is left.
    company_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(company_, 1);
    auto* date = new QLabel(longDate(context_.host.clock().now()));
    date->setObjectName(QStringLiteral("Date_LBL"));
    date->setProperty("kind", QStringLiteral("hint"));
    layout->addWidget(date);
    layout->addSpacing(12);
    signOut_ = new QPushButton(lineIcon(LineIcon::SignOut, themeColors().muted), QStringLiteral("تغییر کاربر"));
    signOut_->setObjectName(QStringLiteral("SignOut_BTN"));
    signOut_->setToolTip(QStringLiteral("خروج از حساب و ورود با کاربری دیگر"));
    layout->addWidget(signOut_);
    QObject::connect(signOut_, &QPushButton::clicked, this, [this] { signOut(); });
    return header;
}

void MainShell::showCompany() {
    const std::string& name = context_.host.SettingRecord().CompanyName;
    company_->setText(QString::fromStdString(name.empty() ? "بازالت" : name));
}

void MainShell::addEntries() {
    std::string subsystem;
    int number = 0;
    for (const EntryPoint* entry : menuEntries(context_.registry)) {
        if (entry->subsystem != subsystem) {
            subsystem = entry->subsystem;
            navigation_->addHeading(subsystemTitle(subsystem));
        }
        ++number;
        const QKeySequence key = number <= 9 ? QKeySequence(QStringLiteral("Ctrl+%1").arg(number)) : QKeySequence();
        const QString name = QString::fromStdString(entry->name);
        const auto action = [this, entry] { open(*entry); };
        const bool locked = !mayOpen(context_, *entry);
        navigation_->addItem({.objectName = name + QStringLiteral("_BTN"),
                              .title = entryTitle(*entry),
                              .icon = partIcon(entry->part),
                              .shortCut = key,
                              .locked = locked},
                             action);
        home_->addTile(HomePage::Group::Screens,
                       {.objectName = name + QStringLiteral("_TILE"),
                        .title = entryTitle(*entry),
                        .hint = entryHint(*entry),
                        .icon = partIcon(entry->part),
                        .locked = locked},
                       action);
        bind(key, action);
    }
}

void MainShell::addPage(const PageItem& item, ShellPage* page) {
    pages_->addWidget(page);
    const auto action = [this, page] { goTo(page); };
    const bool locked =
        item.part && !context_.host.permissions().holds(context_.host.UserInfo().Code, *item.part, prOpen);
    QAbstractButton* button = navigation_->addItem({.objectName = item.objectName + QStringLiteral("_BTN"),
                                                    .title = item.title,
                                                    .icon = item.icon,
                                                    .shortCut = item.shortCut,
                                                    .locked = locked},
                                                   action);
    known_.push_back({page, button, item.part});
    if (page != home_) {
        home_->addTile(HomePage::Group::Tools,
                       {item.objectName + QStringLiteral("_TILE"), item.title, item.hint, item.icon, locked}, action);
    }
    bind(item.shortCut, action);
}

void MainShell::bind(const QKeySequence& key, const std::function<void()>& action) {
    if (key.isEmpty()) return;
    QObject::connect(new QShortcut(key, this), &QShortcut::activated, this, action);
}

void MainShell::goTo(const ShellPage* page) {
    context_.handlers.guarded(this, [this, page] {
        const auto wanted =
            std::find_if(known_.begin(), known_.end(), [page](const KnownPage& known) { return known.page == page; });
        const TUserInfo& user = context_.host.UserInfo();
        if (wanted->part && !context_.host.HavePermission(user, *wanted->part, prOpen, true, true, "")) return;
        auto* current = static_cast<ShellPage*>(pages_->currentWidget());
        if (current == page && page != home_) {
            // Entering it anew would read what is stored over what has been typed.
            resume(*current);
            return;
        }
        if (current != page && !mayLeave(*current)) return;
        pages_->setCurrentWidget(wanted->page);
        navigation_->setCurrent(wanted->button);
        wanted->page->enter();
    });
}

bool MainShell::mayLeave(ShellPage& page) {
    if (page.mayLeave()) return true;
    resume(page);
    return false;
}

void MainShell::resume(ShellPage& page) {
    if (QWidget* last = page.focusWidget()) last->setFocus();
}

void MainShell::open(const EntryPoint& entry) {
    openEntry(context_, entry, this);
    screenClosed();
}

// What was done there shows in the page in front.
void MainShell::screenClosed() {
    if (pages_->currentWidget() == home_) context_.handlers.guarded(this, [this] { home_->refresh(); });
}

void MainShell::signOut() {
    end_ = End::SignOut;
    if (!close()) end_ = End::Quit;
}

void MainShell::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous()) goTo(home_);
}

void MainShell::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || event->modifiers() != Qt::NoModifier || pages_->currentWidget() == home_) {
        QWidget::keyPressEvent(event);
        return;
    }
    goTo(home_);
}

void MainShell::closeEvent(QCloseEvent* event) {
    bool mayClose = false;
    context_.handlers.guarded(this, [&] { mayClose = mayLeave(*static_cast<ShellPage*>(pages_->currentWidget())); });
    if (!mayClose) {
        event->ignore();
        return;
    }
    event->accept();
    if (!closed_ && OnClosed) {
        closed_ = true;
        OnClosed(end_);
    }
}

}  // namespace basalt::host
