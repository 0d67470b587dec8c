// One place, opened from a deal or a getaway: its advisory, the price check
// with the nightly chart, the cheapest trip of each month with the best
// months starred, the day-by-day grid, the price watch, booking links, entry
// basics and the packing checklist.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QDialog>

#include "tripkit/alerts.h"
#include "tripkit/calendars.h"
#include "tripkit/destinations.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QDoubleSpinBox;
class QFrame;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTableWidget;
class QVBoxLayout;

class QChartView;

namespace roamwise::app {
class AppModel;
}

namespace roamwise::desktop {

class DestinationView : public QDialog {
    Q_OBJECT

public:
    // `code` is a destination code or the code its fares use; `trip` the fare
    // the user picked in a list, when there was one.
    DestinationView(app::AppModel& model, const std::string& code, std::optional<tripkit::RoundTrip> trip,
                    QWidget* parent = nullptr);

    const std::string& fareCode() const { return m_code; }

private:
    app::AppModel& m_model;
    std::string m_code;  // the code of the place's fares
    std::optional<tripkit::Destination> m_place;
    std::optional<tripkit::RoundTrip> m_trip;
    std::vector<tripkit::YearMonth> m_gridMonths;

    QLabel* m_verdict = nullptr;
    QLabel* m_verdictDetail = nullptr;
    QChartView* m_chart = nullptr;
    QTableWidget* m_months = nullptr;
    QComboBox* m_gridMonth = nullptr;
    QTableWidget* m_grid = nullptr;
    QLabel* m_picked = nullptr;
    QFrame* m_nudge = nullptr;
    QPushButton* m_watch = nullptr;
    QFrame* m_watchForm = nullptr;
    QRadioButton* m_anyDrop = nullptr;
    QRadioButton* m_underPrice = nullptr;
    QDoubleSpinBox* m_target = nullptr;
    QCheckBox* m_window = nullptr;
    QDateEdit* m_leave = nullptr;
    QDateEdit* m_back = nullptr;
    QLabel* m_watching = nullptr;
    QPushButton* m_unwatch = nullptr;
    QVBoxLayout* m_links = nullptr;
    QListWidget* m_checklist = nullptr;
    QPushButton* m_startList = nullptr;

    std::string placeName() const;
    QWidget* makeHeader(QWidget* parent);
    QWidget* makePriceCheck(QWidget* parent);
    QWidget* makeMonths(QWidget* parent);
    QWidget* makeDayGrid(QWidget* parent);
    QWidget* makeWatch(QWidget* parent);
    QWidget* makeLinks(QWidget* parent);
    QWidget* makeEntry(QWidget* parent);

    void updatePriceCheck();
    void updateMonths();
    void updateGridMonths();
    void updateGrid();
    void updateWatch();
    void updateLinks();
    void updateChecklist();
    void pick(const tripkit::RoundTrip& trip);
    void showWatchForm();
    void saveWatch();
    const tripkit::Watch* currentWatch() const;
};

}  // namespace roamwise::desktop
