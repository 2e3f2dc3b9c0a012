// The line at the bottom of the main window: who works, on which database, through which engine, at which workstation.
#pragma once

#include <QFrame>
#include <QLabel>

#include "host/services/reference_host.h"

namespace basalt::host {

class StatusLine final : public QFrame {
public:
    explicit StatusLine(ReferenceHost& host, QWidget* parent = nullptr);

    // Reads all of it anew.
    void refresh();

private:
    ReferenceHost& host_;
    QLabel* user_;
    QLabel* database_;
    QLabel* engine_;
    QLabel* workstation_;
};

}  // namespace basalt::host
