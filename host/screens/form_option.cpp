#include "host/screens/form_option.h"

#include <QJsonDocument>

#include "ado/error.h"

namespace basalt::host {

void FormOption::SetSoftwarePart(TComponentSoftwarePart part) {
    key_ = FormOptionStore::key(part);
}

std::string FormOption::key() const {
    // A list and its editor have one part between them, and each its own layout.
    const std::string screen = screen_.objectName().toStdString();
    return key_.empty() ? screen : key_ + "/" + screen;
}

QJsonObject FormOption::load() {
    ReferenceHost& host = context_.host();
    if (!host.signedIn() || key().empty()) return {};
    kept_ = host.formOptions().load(host.UserInfo().Code, key()).value_or("");
    return QJsonDocument::fromJson(QByteArray::fromStdString(kept_)).object();
}

void FormOption::saveQuietly(const QJsonObject& layout) {
    ReferenceHost& host = context_.host();
    const std::string text = QJsonDocument(layout).toJson(QJsonDocument::Compact).toStdString();
    if (!host.signedIn() || key().empty() || text == kept_) return;
    try {
        host.formOptions().saveSoon(host.UserInfo().Code, key(), text);
        kept_ = text;
    } catch (const DatabaseError&) {
        // The next time the screen opens as it did this time.
    }
}

}  // namespace basalt::host
