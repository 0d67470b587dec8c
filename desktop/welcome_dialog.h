// The first-run welcome: what Roamwise is, what it keeps, and the choice of
// the home airport. Dismissing it in any way counts as done.
#pragma once

#include <QDialog>

namespace roamwise::app {
class AppModel;
}

namespace roamwise::desktop {

class AirportPicker;

class WelcomeDialog : public QDialog {
    Q_OBJECT

public:
    explicit WelcomeDialog(app::AppModel& model, QWidget* parent = nullptr);

private:
    app::AppModel& m_model;
    AirportPicker* m_picker = nullptr;
};

}  // namespace roamwise::desktop
