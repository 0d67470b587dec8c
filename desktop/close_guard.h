// Catches closing the last window by accident: closing it quits Roamwise, and
// watches are only checked while it runs. The window asks once more, unless
// the user said not to.
#pragma once

#include <QObject>
#include <QPointer>

class QMessageBox;
class QSettings;
class QWidget;

namespace roamwise::desktop {

class CloseGuard : public QObject {
    Q_OBJECT

public:
    static constexpr const char* dontAskKey = "window/dontAskBeforeClosing";

    CloseGuard(QWidget* window, QSettings& settings);

    // Whether the window may close now. When it may not, the question is
    // shown and the window is closed again if the user confirms.
    bool allowClose();
    // Quit and Close Window from the menu are deliberate: no question.
    void allowNextClose() { m_confirmed = true; }

private:
    QWidget* m_window;
    QSettings& m_settings;
    bool m_confirmed = false;
    QPointer<QMessageBox> m_question;
};

}  // namespace roamwise::desktop
