// A search field over the home-airport catalog and the airports that match.
#pragma once

#include <string>

#include <QWidget>

#include "tripkit/places.h"

class QLineEdit;
class QListWidget;

namespace roamwise::desktop {

class AirportPicker : public QWidget {
    Q_OBJECT

public:
    // `name` prefixes the objectNames of the field and the list
    // ("homePicker" -> "homePickerSearch", "homePickerList").
    AirportPicker(const tripkit::Airports& airports, const QString& name, QWidget* parent = nullptr);

    // The highlighted airport's code; empty when none is.
    std::string selectedCode() const;
    void select(const std::string& code);

signals:
    void selectionChanged();
    // Double click or Enter on an airport.
    void chosen(const QString& code);

private:
    const tripkit::Airports& m_airports;
    QLineEdit* m_search = nullptr;
    QListWidget* m_list = nullptr;

    void update();
};

}  // namespace roamwise::desktop
