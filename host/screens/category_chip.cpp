#include "host/screens/category_chip.h"

#include <QKeyEvent>

#include "host/screens/theme.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {
// Three long names still leave room to type.
constexpr int kWidestName = 130;
}  // namespace

CategoryChip::CategoryChip(const QString& objectName, QWidget* parent) : QToolButton(parent) {
    setObjectName(objectName);
    setProperty("kind", QStringLiteral("chip"));
    setFocusPolicy(Qt::TabFocus);
    hide();
    connect(this, &QToolButton::clicked, this, [this] {
        if (OnTake) OnTake();
    });
}

void CategoryChip::setCategory(const QString& name, bool last) {
    QString cut = fontMetrics().elidedText(name, Qt::ElideRight, themePixels(kWidestName));
    // An ampersand in a name is no key.
    setText(cut.replace(QLatin1Char('&'), QLatin1String("&&")) + QStringLiteral(" ×"));
    const QString taken =
        (last ? QStringLiteral("برداشتن «%1»") : QStringLiteral("برداشتن «%1» و آنچه زیر آن است")).arg(name);
    setToolTip(plainToolTip(taken));
    setAccessibleName(taken);
    setVisible(true);
}

void CategoryChip::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            click();
            break;
        default:
            QToolButton::keyPressEvent(event);
    }
}

}  // namespace basalt::host
