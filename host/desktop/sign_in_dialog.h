// Signing in: who, and the password.
//
//   SignInDialog dialog(host);
//   if (dialog.exec() == QDialog::Accepted) ...   // host.signedIn()
//
// A user who has no password yet chooses one here. Enter signs in, Escape leaves. A wrong password and a failing
// database are told inside the dialog; what was typed stays when the password was not what failed.
#pragma once

#include <QBoxLayout>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "host/services/reference_host.h"

namespace basalt::host {

class SignInDialog final : public QDialog {
public:
    // `notice` is shown above the inputs when it is not empty (a database that has just been made, for instance).
    // Errors of the database while the users are read pass to the caller.
    explicit SignInDialog(ReferenceHost& host, const QString& notice = {}, QWidget* parent = nullptr);

private:
    void buildHeader(QBoxLayout& layout);
    void buildInputs(QBoxLayout& layout, const QString& notice);
    void fillUsers();
    // What there is to be said and asked of the chosen user.
    void showUser();
    void showHint();
    void showKeyboard();
    void showError(const QString& text);
    void fitHeight();
    void rememberUser(const std::string& name);
    void signIn();
    // The sentence that is to be shown when the new password was not taken.
    [[nodiscard]] QString chooseFirstPassword(const std::string& name);
    [[nodiscard]] bool isFirstTime() const;

    ReferenceHost& host_;
    bool demo_;
    QComboBox* user_ = nullptr;
    QLineEdit* password_ = nullptr;
    QLabel* repeatTitle_ = nullptr;
    QLineEdit* repeat_ = nullptr;
    QLabel* keyboard_ = nullptr;
    QLabel* error_ = nullptr;
    QLabel* hint_ = nullptr;
    QPushButton* signIn_ = nullptr;
};

}  // namespace basalt::host
