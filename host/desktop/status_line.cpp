#include "host/desktop/status_line.h"

#include <QHBoxLayout>

#include "host/desktop/line_icon.h"
#include "host/screens/elided_label.h"
#include "host/screens/theme.h"
#include "host/services/isolated_text.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

QLabel* addPart(QHBoxLayout& layout, LineIcon icon, const char* objectName, const QString& title,
                QLabel* label = new QLabel) {
    auto* picture = new QLabel;
    picture->setPixmap(linePixmap(icon, themeColors().muted, 16));
    layout.addWidget(picture);
    label->setObjectName(QString::fromLatin1(objectName));
    label->setAccessibleName(title);
    label->setToolTip(title);
    label->setTextFormat(Qt::PlainText);
    layout.addWidget(label);
    layout.addSpacing(18);
    return label;
}

// What it is stands in the tool tip, and the name whole, which may be cut in the line.
void showName(QLabel& label, const QString& title, const std::string& name) {
    label.setText(QString::fromStdString(name));
    label.setToolTip(plainToolTip(title + QStringLiteral(": ") + label.text()));
}

QString engineTitle(const std::string& engine) {
    if (engine == "embedded") return QStringLiteral("موتور داخلی");
    if (engine == "odbc") return QStringLiteral("SQL Server");
    return QString::fromStdString(engine);
}

}  // namespace

StatusLine::StatusLine(ReferenceHost& host, QWidget* parent) : QFrame(parent), host_(host) {
    setObjectName(QStringLiteral("Status_PNL"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 6, 20, 6);
    layout->setSpacing(6);
    // Names give way too, before the window has to.
    user_ = addPart(*layout, LineIcon::User, "StatusUser_LBL", QStringLiteral("کاربر"), new ElidedLabel);
    // A path that is longer than the room for it is shortened in its middle.
    auto* database = new ElidedLabel;
    database->setElideMode(Qt::ElideMiddle);
    database_ = addPart(*layout, LineIcon::Database, "StatusDatabase_LBL", QStringLiteral("پایگاه داده"), database);
    engine_ = addPart(*layout, LineIcon::Settings, "StatusEngine_LBL", QStringLiteral("موتور پایگاه داده"));
    layout->addStretch();
    workstation_ = addPart(*layout, LineIcon::Workstation, "StatusWorkstation_LBL", QStringLiteral("ایستگاه کاری"),
                           new ElidedLabel);
    refresh();
}

void StatusLine::refresh() {
    showName(*user_, QStringLiteral("کاربر"), host_.UserInfo().FullName);
    const std::string location = host_.session().location();
    database_->setText(QString::fromStdString(readFromLeft(location)));
    database_->setToolTip(plainToolTip(QString::fromStdString(location)));
    engine_->setText(engineTitle(host_.session().engine()));
    showName(*workstation_, QStringLiteral("ایستگاه کاری"), host_.workstationName());
}

}  // namespace basalt::host
