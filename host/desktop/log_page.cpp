#include "host/desktop/log_page.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "host/screens/persian_digits.h"
#include "host/screens/search_change.h"
#include "host/screens/smart_grid.h"
#include "host/screens/theme.h"
#include "host/services/host_parts.h"

namespace basalt::host {
namespace {

// More than anyone reads; an older entry is found by searching.
constexpr int kMostEntries = 5000;

}  // namespace

LogPage::LogPage(DesktopContext context, QWidget* parent)
    : ShellPage(parent), context_(context), query_(context.host.connection(), "Log_QUR"), source_(&query_) {
    setObjectName(QStringLiteral("Log_PNL"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(12);
    auto* heading = new QHBoxLayout;
    auto* title = new QLabel(QString::fromStdString(context_.host.permissions().partTitle(hpUserLog)));
    title->setProperty("kind", QStringLiteral("pageTitle"));
    heading->addWidget(title);
    heading->addStretch();
    count_ = new QLabel;
    count_->setObjectName(QStringLiteral("LogCount_LBL"));
    count_->setProperty("kind", QStringLiteral("hint"));
    heading->addWidget(count_);
    layout->addLayout(heading);
    makeSearch(*layout);
    makeGrid(*layout);
}

void LogPage::makeSearch(QBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    search_ = context_.screens.createGeneralSearch("LogSearch_FRM", this);
    search_->AddItem({"UserName", "کاربر", TSearchDataType::Text});
    search_->AddItem({"Text", "کد یا نام", TSearchDataType::Text});
    search_->AddItem({"Description", "شرح", TSearchDataType::Text});
    search_->AddItem({"WorkstationName", "ایستگاه کاری", TSearchDataType::Text});
    search_->init();
    search_->SetItemIndex(0);
    row->addWidget(search_, 1);
    auto* refreshButton = new QPushButton(QStringLiteral("تازه‌سازی \u2066F5\u2069"));
    refreshButton->setObjectName(QStringLiteral("Refresh_BTN"));
    row->addWidget(refreshButton);
    layout.addLayout(row);
    filter_ = new LogFilter;
    filter_->init();
    layout.addWidget(filter_, 0, Qt::AlignLeft);

    const auto run = [this] { context_.handlers.guarded(this, [this] { refresh(); }); };
    search_->OnChange = run;
    filter_->OnChange = run;
    QObject::connect(refreshButton, &QPushButton::clicked, this, run);
    auto* key = new QShortcut(QKeySequence(Qt::Key_F5), this);
    key->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, this, run);
}

void LogPage::makeGrid(QBoxLayout& layout) {
    grid_ = context_.screens.createGrid("Log_GRD", this);
    const auto add = [this](const char* field, const char* title, int width) {
        TGridColumn column;
        column.FieldName = field;
        column.Title = QString::fromUtf8(title);
        column.Width = themePixels(width);
        grid_->AddColumn(column);
    };
    // Names take the room of the longest, so that all columns are seen at once where they are short.
    add("LogDate", "تاریخ", 104);
    add("LogTime", "ساعت", 84);
    add("UserName", "کاربر", 0);
    add("PartTitle", "بخش", 0);
    add("PermissionTitle", "کار", 80);
    add("Text", "کد یا نام", 0);
    add("Description", "شرح", 0);
    add("WorkstationName", "ایستگاه کاری", 0);
    grid_->SetDataSource(&source_);
    layout.addWidget(grid_);
    // Of these very screens' making.
    auto& grid = dynamic_cast<SmartGrid&>(*grid_);
    const QString title = QString::fromStdString(context_.host.permissions().partTitle(hpUserLog));
    grid.setDescription([title] { return title; }, {});
    grid.setNarrowing([this] { return narrowing_; });
}

void LogPage::fillParts() {
    // The parts of the registry and the host's own, in the order of their first appearance.
    std::vector<TSoftwarePart> parts;
    for (const EntryPoint& entry : context_.registry.entryPoints())
        if (std::find(parts.begin(), parts.end(), entry.part) == parts.end()) parts.push_back(entry.part);
    for (const TSoftwarePart part : {hpSales, hpUsers, hpSettings})
        parts.push_back(part);
    for (const TSoftwarePart part : parts)
        filter_->addPart(part, QString::fromStdString(context_.host.permissions().partTitle(part)));
    partsKnown_ = true;
}

void LogPage::enter() {
    if (!partsKnown_) fillParts();
    refresh();
    search_->FocusFirst();
}

void LogPage::refresh() {
    query_.Close();
    query_.SQL = UserLog::listStatement({search_->Filter(), filter_->Filter()}, kMostEntries);
    query_.Open();
    narrowing_ = narrowingLine({dynamic_cast<SearchFrameLink&>(*search_).narrowing(), filter_->narrowing()});
    count_->setText(persianDigits(QStringLiteral("%1 رویداد").arg(query_.RecordCount())));
}

}  // namespace basalt::host
