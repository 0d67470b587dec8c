#include "desktop/welcome_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/app_model.h"
#include "desktop/airport_picker.h"
#include "desktop/texts.h"

namespace roamwise::desktop {

WelcomeDialog::WelcomeDialog(app::AppModel& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("welcomeDialog");
    setWindowTitle("Welcome to Roamwise");
    resize(520, 560);
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel("Welcome to Roamwise", this);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    big.setBold(true);
    title->setFont(big);
    layout->addWidget(title);
    auto* intro = new QLabel(
        "Roamwise shows the cheapest round trips found in recent searches from your home airport, tells you "
        "when a price you watch drops, and helps you plan and pack. Which airport do you fly from? You can add "
        "two more later in Settings.",
        this);
    intro->setWordWrap(true);
    layout->addWidget(intro);
    m_picker = new AirportPicker(m_model.airports(), "welcomePicker", this);
    m_picker->select(m_model.homeAirports().front());
    layout->addWidget(m_picker, 1);
    auto* privacy = new QLabel(Texts::privacy, this);
    privacy->setWordWrap(true);
    layout->addWidget(privacy);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* start = buttons->addButton("Get started", QDialogButtonBox::AcceptRole);
    start->setObjectName("welcomeStart");
    start->setDefault(true);
    layout->addWidget(buttons);
    connect(m_picker, &AirportPicker::selectionChanged, this,
            [this, start] { start->setEnabled(!m_picker->selectedCode().empty()); });
    connect(m_picker, &AirportPicker::chosen, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        const std::string code = m_picker->selectedCode();
        if (!code.empty()) m_model.setHomeAirports({code});
    });
    connect(this, &QDialog::finished, this, [this] { m_model.setOnboarded(true); });
}

}  // namespace roamwise::desktop
