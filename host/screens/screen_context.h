// What all screens and controls of one host share, and the one place where errors of their handlers end.
//
//   context.guarded(this, [this] { OnClick(); });
#pragma once

#include <QWidget>
#include <exception>
#include <functional>
#include <utility>

#include "ado/listener_list.h"
#include "host/screens/output_file.h"
#include "host/services/reference_host.h"

namespace basalt::host {

class OutputServices;

class RequestListener {
public:
    virtual void requestRuns(bool runs) = 0;

protected:
    ~RequestListener() = default;
};

class ScreenContext {
public:
    ScreenContext(ReferenceHost& host, OutputServices& output) : host_(host), output_(&output) {}
    ScreenContext(const ScreenContext&) = delete;
    ScreenContext& operator=(const ScreenContext&) = delete;

    [[nodiscard]] ReferenceHost& host() const { return host_; }
    [[nodiscard]] OutputServices& output() const { return *output_; }
    void setOutput(OutputServices& output) { output_ = &output; }

    // Stands above what is printed; empty when the company has given none.
    [[nodiscard]] QString companyName() const {
        return QString::fromStdString(host_.SettingRecord().CompanyName).trimmed();
    }

    // Shows how far the writing of a file or a print is, and lets the user give it up.
    [[nodiscard]] const OutputProgress& writing() const { return writing_; }
    void setWriting(OutputProgress writing) { writing_ = std::move(writing); }

    // Whether a request to the database or the writing of a file is under way: what the windows do meanwhile must not
    // send another one.
    [[nodiscard]] bool requestRuns() const { return requestRuns_ && requestRuns_(); }
    void setRequestRuns(std::function<bool()> runs) { requestRuns_ = std::move(runs); }
    // For what the windows show then: told before they are first painted amid a request, and when it is over.
    [[nodiscard]] ListenerList<RequestListener>& requestListeners() { return requestListeners_; }

    // Runs a handler. An error is shown as a message over `origin`'s window and the screen lives on. When it cannot
    // even be shown, the window closes and the error waits for rethrowUnshown.
    void guarded(QWidget* origin, const std::function<void()>& handler);
    // Throws the error that could not be shown, once. To be called where a modal loop has ended.
    void rethrowUnshown();

private:
    ReferenceHost& host_;
    OutputServices* output_;
    OutputProgress writing_;
    std::function<bool()> requestRuns_;
    ListenerList<RequestListener> requestListeners_;
    std::exception_ptr unshown_;
};

}  // namespace basalt::host
