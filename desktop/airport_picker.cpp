#include "desktop/airport_picker.h"

#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "desktop/texts.h"
#include "tripkit/text_search.h"

namespace roamwise::desktop {

AirportPicker::AirportPicker(const tripkit::Airports& airports, const QString& name, QWidget* parent)
    : QWidget(parent), m_airports(airports) {
    setObjectName(name);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_search = new QLineEdit(this);
    m_search->setObjectName(name + "Search");
    m_search->setPlaceholderText("City, state, airport or code");
    m_search->setClearButtonEnabled(true);
    m_list = new QListWidget(this);
    m_list->setObjectName(name + "List");
    layout->addWidget(m_search);
    layout->addWidget(m_list, 1);
    connect(m_search, &QLineEdit::textChanged, this, &AirportPicker::update);
    connect(m_search, &QLineEdit::returnPressed, this, [this] {
        if (m_list->count() == 0) return;
        if (!m_list->currentItem()) m_list->setCurrentRow(0);
        emit chosen(m_list->currentItem()->data(Qt::UserRole).toString());
    });
    connect(m_list, &QListWidget::currentRowChanged, this, &AirportPicker::selectionChanged);
    connect(m_list, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { emit chosen(item->data(Qt::UserRole).toString()); });
    update();
}

std::string AirportPicker::selectedCode() const {
    const QListWidgetItem* item = m_list->currentItem();
    return item ? item->data(Qt::UserRole).toString().toStdString() : std::string();
}

void AirportPicker::select(const std::string& code) {
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->data(Qt::UserRole).toString().toStdString() == code) {
            m_list->setCurrentRow(row);
            m_list->scrollToItem(m_list->item(row));
            return;
        }
    }
}

void AirportPicker::update() {
    const std::string query = m_search->text().toStdString();
    const std::string kept = selectedCode();
    m_list->clear();
    for (const tripkit::Airport& airport : m_airports.list) {
        if (!tripkit::TextSearch::matches(query, airport.searchFields())) continue;
        auto* item = new QListWidgetItem(Texts::of(airport.label() + " · " + airport.name), m_list);
        item->setData(Qt::UserRole, Texts::of(airport.code));
    }
    if (!kept.empty()) select(kept);
    // With the search narrowed to a few, the first is the likely choice.
    if (!m_list->currentItem() && !query.empty() && m_list->count() > 0) m_list->setCurrentRow(0);
    emit selectionChanged();
}

}  // namespace roamwise::desktop
