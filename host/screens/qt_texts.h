// The words of Qt's own dialogs and menus in Persian: file dialog, editing menus, scroll bars, standard buttons.
#pragma once

#include <QCoreApplication>

namespace basalt::host {

// Translates them in the whole application. Calling it again does nothing.
void translateQtTexts(QCoreApplication& application);

}  // namespace basalt::host
