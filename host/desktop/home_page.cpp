#include "host/desktop/home_page.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "host/desktop/date_text.h"
#include "host/desktop/navigation_panel.h"
#include "host/screens/elided_label.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "host/services/host_parts.h"

namespace basalt::host {
namespace {

constexpr int kFewestInRow = 2;
constexpr int kMostInRow = 5;
constexpr int kTileWidth = 250;
constexpr int kTileGap = 12;
constexpr int kMargin = 28;
constexpr int kLeastRecent = 150;
constexpr int kRecentEntries = 12;

QLabel* makeLabel(const QString& text, const char* kind) {
    auto* label = new QLabel(text);
    label->setProperty("kind", QString::fromLatin1(kind));
    return label;
}

}  // namespace

HomePage::HomePage(DesktopContext context, QWidget* parent) : ShellPage(parent), context_(context) {
    setObjectName(QStringLiteral("Home_PNL"));
    // With a large font and a small screen there is more than fits.
    scroll_ = new QScrollArea;
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll_);
    auto* content = new QWidget;
    scroll_->setWidget(content);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(kMargin, 24, kMargin, 24);
    layout->setSpacing(6);
    greeting_ = new ElidedLabel;
    greeting_->setProperty("kind", QStringLiteral("pageTitle"));
    greeting_->setTextFormat(Qt::PlainText);
    greeting_->setObjectName(QStringLiteral("Greeting_LBL"));
    layout->addWidget(greeting_);
    date_ = makeLabel({}, "hint");
    layout->addWidget(date_);
    layout->addSpacing(14);
    tiles_ = new QVBoxLayout;
    tiles_->setSpacing(kTileGap);
    layout->addLayout(tiles_);
    layout->addSpacing(20);
    layout->addWidget(makeLabel(QStringLiteral("آخرین رویدادها"), "sectionTitle"));
    layout->addSpacing(4);
    layout->addWidget(makeRecent(), 1);
}

QWidget* HomePage::makeRecent() {
    recent_ = new QTableWidget(0, 5);
    recent_->setObjectName(QStringLiteral("Recent_GRD"));
    recent_->setAccessibleName(QStringLiteral("آخرین رویدادها"));
    recent_->setHorizontalHeaderLabels({QStringLiteral("تاریخ"), QStringLiteral("ساعت"), QStringLiteral("کاربر"),
                                        QStringLiteral("کد یا نام"), QStringLiteral("شرح")});
    recent_->horizontalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    recent_->horizontalHeader()->setSectionResizeMode(4, QHeaderView::Stretch);
    for (const int column : {0, 1, 2, 3})
        recent_->horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    recent_->horizontalHeader()->setHighlightSections(false);
    recent_->verticalHeader()->hide();
    recent_->verticalHeader()->setDefaultSectionSize(themePixels(36));
    recent_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    recent_->setSelectionMode(QAbstractItemView::NoSelection);
    recent_->setFocusPolicy(Qt::NoFocus);
    recent_->setShowGrid(false);
    recent_->setMinimumHeight(themePixels(kLeastRecent));
    recent_->setTabKeyNavigation(false);
    return recent_;
}

void HomePage::addTile(Group group, const HomeTile& tile, const std::function<void()>& onClick) {
    auto* button = new QPushButton;
    button->setObjectName(tile.objectName);
    button->setProperty("kind", QStringLiteral("tile"));
    button->setAccessibleName(tile.title);
    button->setProperty("locked", tile.locked);
    button->setAccessibleDescription(tile.locked ? lockedHint() : tile.hint);
    button->setToolTip(tile.locked ? lockedHint() : tile.hint);
    // Every column is as wide as the others, whatever is written in it.
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* content = new QHBoxLayout(button);
    content->setContentsMargins(18, 10, 18, 10);
    content->setSpacing(14);
    auto* picture = new QLabel;
    picture->setPixmap(linePixmap(tile.locked ? LineIcon::Lock : tile.icon,
                                  tile.locked ? themeColors().muted : themeColors().accent, 30));
    content->addWidget(picture);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addStretch();
    QLabel* title = makeLabel(tile.title, "tileTitle");
    QLabel* hint = makeLabel(tile.hint, "tileHint");
    texts->addWidget(title);
    texts->addWidget(hint);
    texts->addStretch();
    content->addLayout(texts, 1);
    // The labels are part of the button: a click on them is a click on it.
    for (QLabel* label : {picture, title, hint})
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    QObject::connect(button, &QPushButton::clicked, this, onClick);
    button->installEventFilter(this);
    placed_.push_back({button, group});
    columns_ = 0;
    placeTiles();
}

void HomePage::placeTiles() {
    const int room = width() - 2 * kMargin + kTileGap;
    const int columns = std::clamp(room / (themePixels(kTileWidth) + kTileGap), kFewestInRow, kMostInRow);
    if (columns == columns_) return;
    columns_ = columns;
    while (QLayoutItem* row = tiles_->takeAt(0))
        delete row;
    for (auto first = placed_.begin(); first != placed_.end();) {
        const auto isOther = [first](const PlacedTile& tile) { return tile.group != first->group; };
        const auto end = std::find_if(first, placed_.end(), isOther);
        const auto count = static_cast<int>(end - first);
        // As many in each row of a group: a full one would leave a tile alone in the next. Each row is filled.
        const int rows = (count + columns - 1) / columns;
        const int inRow = (count + rows - 1) / rows;
        QHBoxLayout* row = nullptr;
        for (int i = 0; i < count; ++i) {
            if (i % inRow == 0) {
                row = new QHBoxLayout;
                row->setSpacing(kTileGap);
                tiles_->addLayout(row);
            }
            row->addWidget(first[i].button, 1);
        }
        first = end;
    }
}

QPushButton* HomePage::tileBeside(const QPushButton* from, int key) const {
    const QPoint here = from->geometry().center();
    QPushButton* nearest = nullptr;
    // Nearer is the one in the next row; in the same row the one with less between.
    const auto distance = [&](const QPushButton* tile) {
        const QPoint way = tile->geometry().center() - here;
        return std::pair(std::abs(way.y()), std::abs(way.x()));
    };
    for (const PlacedTile& tile : placed_) {
        const QPoint way = tile.button->geometry().center() - here;
        const bool thatWay = key == Qt::Key_Left    ? way.y() == 0 && way.x() < 0
                             : key == Qt::Key_Right ? way.y() == 0 && way.x() > 0
                             : key == Qt::Key_Up    ? way.y() < 0
                                                    : way.y() > 0;
        if (thatWay && (!nearest || distance(tile.button) < distance(nearest))) nearest = tile.button;
    }
    return nearest;
}

bool HomePage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) scroll_->ensureWidgetVisible(qobject_cast<QWidget*>(watched));
    if (event->type() != QEvent::KeyPress) return ShellPage::eventFilter(watched, event);
    auto* tile = static_cast<QPushButton*>(watched);
    const int key = static_cast<QKeyEvent*>(event)->key();
    switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (QPushButton* next = tileBeside(tile, key)) next->setFocus(Qt::TabFocusReason);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            tile->click();
            return true;
        default:
            return ShellPage::eventFilter(watched, event);
    }
}

void HomePage::resizeEvent(QResizeEvent* event) {
    ShellPage::resizeEvent(event);
    placeTiles();
    // A name as long as a sentence leaves the sentence beside it its room.
    recent_->horizontalHeader()->setMaximumSectionSize(std::max(themePixels(kLeastRecent), width() / 2));
}

void HomePage::enter() {
    refresh();
    if (!placed_.empty()) placed_.front().button->setFocus();
}

void HomePage::refresh() {
    greeting_->setText(QStringLiteral("سلام، %1").arg(QString::fromStdString(context_.host.UserInfo().FullName)));
    date_->setText(QStringLiteral("امروز %1").arg(longDate(context_.host.clock().now())));
    // What others did is for those who may open the log.
    const int user = context_.host.UserInfo().Code;
    const bool all = context_.host.permissions().holds(user, hpUserLog, prOpen);
    const std::vector<UserLogEntry> entries =
        context_.host.userLog().latest(kRecentEntries, all ? std::nullopt : std::optional(user));
    recent_->setRowCount(static_cast<int>(entries.size()));
    int row = 0;
    for (const UserLogEntry& entry : entries) {
        const std::string& what =
            entry.description.empty() ? entry.permissionTitle + " «" + entry.partTitle + "»" : entry.description;
        const std::array<std::string, 5> texts{entry.date, entry.time, entry.userName, entry.text, what};
        for (std::size_t column = 0; column < texts.size(); ++column)
            recent_->setItem(row, static_cast<int>(column),
                             new QTableWidgetItem(screenText(QString::fromStdString(texts.at(column)))));
        ++row;
    }
}

}  // namespace basalt::host
