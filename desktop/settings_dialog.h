// Settings: home airports (up to three, in order), the Safe & Fun level,
// notifications, the passport reminder, sample data and the data host.
// Every change applies at once, as desktop settings do.
#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace roamwise::app {
class AppModel;
}

namespace roamwise::desktop {

class AirportPicker;

class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    explicit SettingsDialog(app::AppModel& model, QWidget* parent = nullptr);

private:
    app::AppModel& m_model;
    QListWidget* m_homes = nullptr;
    AirportPicker* m_picker = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_down = nullptr;
    QPushButton* m_remove = nullptr;
    QLabel* m_homesNote = nullptr;
    QRadioButton* m_level1 = nullptr;
    QRadioButton* m_level2 = nullptr;
    QCheckBox* m_notifications = nullptr;
    QSpinBox* m_passportWeeks = nullptr;
    QCheckBox* m_sample = nullptr;
    QLabel* m_dataHost = nullptr;
    QLabel* m_feedDetail = nullptr;

    void updateHomes();
    void updateButtons();
    void updateFeed();
    void applyHomes(std::vector<std::string> codes);
    std::vector<std::string> homes() const;
};

}  // namespace roamwise::desktop
