#include "host/screens/save_file_dialog.h"

#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <utility>

#include "host/screens/persian_digits.h"
#include "host/screens/splitter_edge.h"
#include "host/screens/theme.h"
#include "host/services/isolated_text.h"
#include "host/services/jalali_calendar.h"

namespace basalt::host {
namespace {

constexpr int kSideWidth = 150;
constexpr int kLongestName = 240;  // bytes; with its suffix 255 are taken

// Unseen in a name, and not to be typed by who looks for it. The joiners of Persian words are letters to them.
bool isDirectionMark(QChar character) {
    const char16_t code = character.unicode();
    return code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// No longer than a name may be, and without what hides a file at its beginning or is dropped by the system at its end.
QString withoutLooseEnds(QString name) {
    const auto isLoose = [](QChar end) { return QStringLiteral(" .-").contains(end); };
    while (!name.isEmpty() && isLoose(name.front()))
        name.remove(0, 1);
    while (name.toUtf8().size() > kLongestName)
        name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
    while (!name.isEmpty() && isLoose(name.back()))
        name.chop(1);
    return name;
}

// One of Windows' names for a device, which is meant whatever the suffix.
bool isDevice(const QString& name) {
    static const QRegularExpression device(
        QStringLiteral("^(con|prn|aux|nul|conin\\$|conout\\$|(com|lpt)[0-9¹²³]) *(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

enum Column { kName, kSize, kType, kDate };

QString sizeText(qint64 bytes) {
    constexpr qint64 kStep = 1024;
    if (bytes < kStep) return QStringLiteral("%1 بایت").arg(bytes);
    if (bytes < kStep * kStep) return QStringLiteral("%1 کیلوبایت").arg((bytes + kStep - 1) / kStep);
    return QStringLiteral("%1 مگابایت").arg((bytes + kStep * kStep - 1) / (kStep * kStep));
}

QString dateText(const QDateTime& moment) {
    if (!moment.isValid()) return {};
    const QDate day = moment.date();
    const JalaliDate date = toJalali(day.year(), day.month(), day.day());
    return QString::fromStdString(toText(date, "/")) + moment.time().toString(QStringLiteral("  HH:mm"));
}

// The model tells sizes and days in the platform's language and calendar.
class FileDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() != kSize && index.column() != kDate) return;
        const QFileInfo file(index.data(QFileSystemModel::FilePathRole).toString());
        QString text;
        if (index.column() == kDate) text = dateText(file.lastModified());
        if (index.column() == kSize && file.isFile()) text = sizeText(file.size());
        option->text = persianDigits(text);
    }
};

// The folder box with its path from the left, shortened in the middle: the toolkit draws it from the right, and loses
// its first slash and its end.
class FolderPainter final : public QObject {
public:
    FolderPainter(QFileDialog& dialog, QComboBox& box) : QObject(&box), dialog_(dialog), box_(box) {
        box.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != &box_ || event->type() != QEvent::Paint) return QObject::eventFilter(watched, event);
        QStyleOptionComboBox option;
        option.initFrom(&box_);
        option.subControls = QStyle::SC_All;
        QStylePainter painter(&box_);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        const QRect room =
            box_.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box_);
        const QString path = QDir::toNativeSeparators(dialog_.directory().absolutePath());
        const QString shown = box_.fontMetrics().elidedText(path, Qt::ElideMiddle, room.width());
        painter.setPen(box_.palette().color(QPalette::Text));
        painter.setLayoutDirection(Qt::LeftToRight);
        painter.drawText(room, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine,
                         QString::fromStdString(readFromLeft(shown.toStdString())));
        return true;
    }

private:
    QFileDialog& dialog_;
    QComboBox& box_;
};

}  // namespace

void dressFileDialog(QFileDialog& dialog) {
    // The platform's own dialog speaks the platform's language.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setViewMode(QFileDialog::Detail);
    dialog.setItemDelegate(new FileDelegate(&dialog));
    dialog.resize(themeWindowSize({860, 520}, dialog));
    // A path reads from the left: its first slash would stand behind it.
    if (auto* folder = dialog.findChild<QComboBox*>(QStringLiteral("lookInCombo"))) {
        folder->setLayoutDirection(Qt::LeftToRight);
        new FolderPainter(dialog, *folder);
    }
    if (auto* files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        for (const auto& [column, width] : {std::pair(kName, 280), {kSize, 110}, {kType, 90}, {kDate, 170}})
            files->header()->resizeSection(column, themePixels(width));
    }
    if (auto* parts = dialog.findChild<QSplitter*>()) {
        parts->setSizes({themePixels(kSideWidth), dialog.width() - themePixels(kSideWidth)});
        keepPartsInside(*parts);
    }
}

QString fileNameFor(const QString& title) {
    QString name;
    for (const QChar character : title) {
        if (QStringLiteral("/\\:|").contains(character)) {
            name += QLatin1Char('-');
        } else if (QStringLiteral("\"*?<>").contains(character) || character.category() == QChar::Other_Control) {
            name += QLatin1Char(' ');
        } else if (!isDirectionMark(character) && !(character == QLatin1Char('.') && name.endsWith(character))) {
            name += character;
        }
    }
    const QString usual = QStringLiteral("فهرست");
    name = withoutLooseEnds(name.simplified());
    // Behind a word it is a name like any other.
    if (isDevice(name)) name = withoutLooseEnds(usual + QLatin1Char(' ') + name);
    return name.isEmpty() ? usual : name;
}

SaveFileDialog::SaveFileDialog(QWidget* parent, const QString& title, const QString& suggestedName,
                               const QString& suffix)
    : QFileDialog(parent, title, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
    setObjectName(QStringLiteral("SaveFile_FRM"));
    setAcceptMode(QFileDialog::AcceptSave);
    setDefaultSuffix(suffix);
    setNameFilter(QStringLiteral("%1 (*.%2)").arg(suffix.toUpper(), suffix));
    dressFileDialog(*this);
    selectFile(fileNameFor(suggestedName) + QLatin1Char('.') + suffix);
}

}  // namespace basalt::host
