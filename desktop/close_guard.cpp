#include "desktop/close_guard.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QWidget>

namespace roamwise::desktop {

CloseGuard::CloseGuard(QWidget* window, QSettings& settings) : QObject(window), m_window(window), m_settings(settings) {}

bool CloseGuard::allowClose() {
    if (m_confirmed || m_settings.value(dontAskKey, false).toBool()) return true;
    if (m_question) {
        m_question->raise();
        return false;
    }
    auto* box = new QMessageBox(QMessageBox::Question, "Quit Roamwise?",
                                "Closing this window quits Roamwise.",
                                QMessageBox::NoButton, m_window);
    box->setObjectName("closeGuard");
    box->setInformativeText("Price alerts are checked only while Roamwise is open.");
    QPushButton* quit = box->addButton("Quit", QMessageBox::AcceptRole);
    quit->setObjectName("closeGuardQuit");
    QPushButton* stay = box->addButton("Keep Open", QMessageBox::RejectRole);
    stay->setObjectName("closeGuardCancel");
    box->setDefaultButton(stay);
    auto* dontAsk = new QCheckBox("Don’t ask again", box);
    dontAsk->setObjectName("closeGuardDontAsk");
    box->setCheckBox(dontAsk);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::buttonClicked, this, [this, quit, dontAsk](QAbstractButton* button) {
        if (button != quit) return;
        if (dontAsk->isChecked()) m_settings.setValue(dontAskKey, true);
        m_confirmed = true;
        m_window->close();
    });
    m_question = box;
    box->open();
    return false;
}

}  // namespace roamwise::desktop
