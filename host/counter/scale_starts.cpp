#include "host/counter/scale_starts.h"

#include <QApplication>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {

ScaleStarts::ScaleStarts(ReferenceHost& host, QProgressBar& bar) : host_(host), inner_(host.programs()), bar_(bar) {
    host.setPrograms(*this);
}

ScaleStarts::~ScaleStarts() {
    host_.setPrograms(inner_);
}

StartResult ScaleStarts::start(const ProgramStart& program) {
    StartResult result = inner_.start(program);
    ++asked_;
    if (result.started) {
        ++sent_;
    } else if (!failure_) {
        failure_ = {program.file, result};
    }
    // While the goods are sent one by one, their keys are the rows of the shared query.
    TADOQuery& keys = host_.DM().SharedQuery;
    int all = asked_;
    if (keys.Active()) {
        all = std::max(keys.RecordCount(), asked_);
        goods_.insert(keys.FieldByName("GoodCode").AsInteger());
    }
    bar_.setRange(0, all);
    bar_.setValue(sent_);
    bar_.setFormat(persianDigits(QStringLiteral("%1 از %2").arg(sent_).arg(all)));
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return result;
}

}  // namespace basalt::host
