#include "desktop/settings_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/app_model.h"
#include "desktop/airport_picker.h"
#include "desktop/texts.h"

namespace roamwise::desktop {

using app::AppModel;

namespace {

constexpr const char* kLevel1Text =
    "Abroad, only places where the U.S. State Department says to exercise normal precautions (Level 1).";
constexpr const char* kLevel2Text =
    "Abroad, places at Level 1 (normal precautions) or Level 2 (increased caution).";
constexpr int kMaxPassportWeeks = 52;

QLabel* note(const QString& text, QWidget* parent, const char* name = nullptr) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    if (name) label->setObjectName(name);
    return label;
}

}  // namespace

SettingsDialog::SettingsDialog(AppModel& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("settingsDialog");
    setWindowTitle("Roamwise Settings");
    resize(640, 720);
    auto* layout = new QVBoxLayout(this);

    auto* homes = new QGroupBox("Home airports", this);
    auto* homesLayout = new QHBoxLayout(homes);
    auto* left = new QVBoxLayout;
    m_homes = new QListWidget(homes);
    m_homes->setObjectName("homeAirportsList");
    m_homes->setMaximumHeight(90);
    left->addWidget(m_homes);
    auto* order = new QHBoxLayout;
    m_up = new QPushButton("Move up", homes);
    m_up->setObjectName("homeUp");
    m_down = new QPushButton("Move down", homes);
    m_down->setObjectName("homeDown");
    m_remove = new QPushButton("Remove", homes);
    m_remove->setObjectName("homeRemove");
    order->addWidget(m_up);
    order->addWidget(m_down);
    order->addWidget(m_remove);
    left->addLayout(order);
    m_homesNote = note(QStringLiteral("Up to %1 airports. The first is your main one: the theme-park planners fly "
                                      "from it, and its fares win ties.")
                           .arg(AppModel::maxHomeAirports),
                       homes);
    left->addWidget(m_homesNote);
    left->addStretch(1);
    auto* right = new QVBoxLayout;
    m_picker = new AirportPicker(m_model.airports(), "homePicker", homes);
    right->addWidget(m_picker, 1);
    m_add = new QPushButton("Add airport", homes);
    m_add->setObjectName("homeAdd");
    right->addWidget(m_add);
    homesLayout->addLayout(left, 1);
    homesLayout->addLayout(right, 1);
    layout->addWidget(homes, 1);

    auto* safety = new QGroupBox("Safe && Fun", this);
    auto* safetyLayout = new QVBoxLayout(safety);
    m_level1 = new QRadioButton(kLevel1Text, safety);
    m_level1->setObjectName("level1");
    m_level2 = new QRadioButton(kLevel2Text, safety);
    m_level2->setObjectName("level2");
    safetyLayout->addWidget(m_level1);
    safetyLayout->addWidget(m_level2);
    layout->addWidget(safety);

    auto* alerts = new QGroupBox("Notifications", this);
    auto* alertsLayout = new QFormLayout(alerts);
    m_notifications = new QCheckBox("Notify me when a watched price drops", alerts);
    m_notifications->setObjectName("notificationsAllowed");
    alertsLayout->addRow(m_notifications);
    m_passportWeeks = new QSpinBox(alerts);
    m_passportWeeks->setObjectName("passportWeeks");
    m_passportWeeks->setRange(1, kMaxPassportWeeks);
    m_passportWeeks->setSuffix(" weeks before the trip");
    alertsLayout->addRow("Remind me to check my passport", m_passportWeeks);
    alertsLayout->addRow(note("Processing times change through the year; the State Department’s page has today’s. "
                              "Choose how far ahead to be reminded.",
                              alerts));
    layout->addWidget(alerts);

    auto* data = new QGroupBox("Data", this);
    auto* dataLayout = new QFormLayout(data);
    m_sample = new QCheckBox("Show sample data for today", data);
    m_sample->setObjectName("sampleData");
    dataLayout->addRow(m_sample);
    dataLayout->addRow(note("Sample fares are made up. They are also shown while no live fares can be had.", data));
    m_dataHost = note({}, data, "dataHost");
    m_dataHost->setTextInteractionFlags(Qt::TextSelectableByMouse);
    dataLayout->addRow("Data host in use:", m_dataHost);
    m_feedDetail = note({}, data, "feedDetail");
    dataLayout->addRow(m_feedDetail);
    layout->addWidget(data);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("settingsClose");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    // Current values first, then the connections, so that showing them changes nothing.
    (m_model.maxLevel() == 1 ? m_level1 : m_level2)->setChecked(true);
    m_notifications->setChecked(m_model.notificationsAllowed());
    m_passportWeeks->setValue(m_model.passportWeeks());
    m_sample->setChecked(m_model.sampleMode());
    updateHomes();
    updateFeed();

    connect(m_level1, &QRadioButton::toggled, this, [this](bool on) { m_model.setMaxLevel(on ? 1 : 2); });
    connect(m_notifications, &QCheckBox::toggled, &m_model, &AppModel::setNotificationsAllowed);
    connect(m_passportWeeks, &QSpinBox::valueChanged, &m_model, &AppModel::setPassportWeeks);
    connect(m_sample, &QCheckBox::toggled, &m_model, &AppModel::setSampleMode);
    connect(&m_model, &AppModel::sampleModeChanged, this, [this] {
        const QSignalBlocker block(m_sample);
        m_sample->setChecked(m_model.sampleMode());
    });
    connect(&m_model, &AppModel::homeAirportsChanged, this, &SettingsDialog::updateHomes);
    connect(&m_model, &AppModel::faresLoadChanged, this, &SettingsDialog::updateFeed);
    connect(&m_model, &AppModel::refreshFinished, this, &SettingsDialog::updateFeed);
    connect(m_homes, &QListWidget::currentRowChanged, this, &SettingsDialog::updateButtons);
    connect(m_picker, &AirportPicker::selectionChanged, this, &SettingsDialog::updateButtons);

    auto add = [this](const std::string& code) {
        std::vector<std::string> codes = m_model.homeAirports();
        if (code.empty() || codes.size() >= AppModel::maxHomeAirports) return;
        if (std::find(codes.begin(), codes.end(), code) != codes.end()) return;
        codes.push_back(code);
        applyHomes(codes);
    };
    connect(m_add, &QPushButton::clicked, this, [this, add] { add(m_picker->selectedCode()); });
    connect(m_picker, &AirportPicker::chosen, this, [add](const QString& code) { add(code.toStdString()); });
    auto move = [this](int by) {
        const int row = m_homes->currentRow();
        std::vector<std::string> codes = m_model.homeAirports();
        const int to = row + by;
        if (row < 0 || to < 0 || to >= static_cast<int>(codes.size())) return;
        std::swap(codes[static_cast<std::size_t>(row)], codes[static_cast<std::size_t>(to)]);
        applyHomes(codes);
        m_homes->setCurrentRow(to);
    };
    connect(m_up, &QPushButton::clicked, this, [move] { move(-1); });
    connect(m_down, &QPushButton::clicked, this, [move] { move(1); });
    connect(m_remove, &QPushButton::clicked, this, [this] {
        const int row = m_homes->currentRow();
        std::vector<std::string> codes = m_model.homeAirports();
        if (row < 0 || codes.size() <= 1) return;
        codes.erase(codes.begin() + row);
        applyHomes(codes);
    });
}

std::vector<std::string> SettingsDialog::homes() const { return m_model.homeAirports(); }

void SettingsDialog::applyHomes(std::vector<std::string> codes) { m_model.setHomeAirports(codes); }

void SettingsDialog::updateHomes() {
    const int row = m_homes->currentRow();
    m_homes->clear();
    int i = 0;
    for (const std::string& code : m_model.homeAirports()) {
        const tripkit::Airport* airport = m_model.airports().find(code);
        QString text = airport ? Texts::of(airport->label()) : Texts::of(code);
        if (i++ == 0) text += " · main";
        auto* item = new QListWidgetItem(text, m_homes);
        item->setData(Qt::UserRole, Texts::of(code));
    }
    m_homes->setCurrentRow(std::min(row, m_homes->count() - 1));
    updateButtons();
}

void SettingsDialog::updateButtons() {
    const int row = m_homes->currentRow();
    const int count = m_homes->count();
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row < count - 1);
    m_remove->setEnabled(row >= 0 && count > 1);
    const std::string picked = m_picker->selectedCode();
    const auto& current = m_model.homeAirports();
    m_add->setEnabled(!picked.empty() && count < AppModel::maxHomeAirports &&
                      std::find(current.begin(), current.end(), picked) == current.end());
}

void SettingsDialog::updateFeed() {
    m_dataHost->setText(Texts::of(m_model.dataHost()));
    const auto detail = m_model.faresDetail();
    m_feedDetail->setText(detail ? Texts::of(*detail) : QString());
    m_feedDetail->setVisible(detail.has_value());
}

}  // namespace roamwise::desktop
