// The Deals tab: the merged deals of the home airports with the search field
// and the fare filters, and the getaway finder over the price calendars.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QWidget>

#include "desktop/deals_model.h"
#include "tripkit/calendars.h"
#include "tripkit/getaways.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QStackedWidget;
class QTableView;
class QTableWidget;
class QToolButton;

namespace roamwise::app {
class AppModel;
}

namespace roamwise::desktop {

class DealsView : public QWidget {
    Q_OBJECT

public:
    explicit DealsView(app::AppModel& model, QWidget* parent = nullptr);

    // Puts the cursor in the search field (Edit > Find).
    void focusSearch();
    DealQuery query() const;

signals:
    // The user opened a place; `trip` is the fare they picked, when they did.
    void destinationRequested(const QString& code, std::optional<tripkit::RoundTrip> trip);

private:
    app::AppModel& m_model;
    DealsModel m_deals;
    QSortFilterProxyModel* m_sorted = nullptr;
    std::vector<tripkit::Getaway> m_getaways;

    QLabel* m_status = nullptr;
    QPushButton* m_retry = nullptr;
    QLineEdit* m_search = nullptr;
    QComboBox* m_airline = nullptr;
    QToolButton* m_avoid = nullptr;
    QCheckBox* m_nonstop = nullptr;
    QToolButton* m_showDeals = nullptr;
    QToolButton* m_showGetaways = nullptr;
    QStackedWidget* m_pages = nullptr;
    QTableView* m_table = nullptr;
    QLabel* m_empty = nullptr;
    QPushButton* m_clear = nullptr;
    QLabel* m_count = nullptr;
    QLabel* m_footnote = nullptr;
    QComboBox* m_timing = nullptr;
    QComboBox* m_length = nullptr;
    QTableWidget* m_getawayTable = nullptr;
    QWidget* m_getawayList = nullptr;
    QWidget* m_noCalendars = nullptr;

    QWidget* makeDealsPage();
    QWidget* makeGetawaysPage();
    void updateAirlines();
    void updateStatus();
    void updateDeals();
    void updateGetaways();
    void clearFilters();
    void openDeal(const QModelIndex& index);
    void openGetaway(int row);
    tripkit::TripTiming timing() const;
    tripkit::TripLength length() const;
};

}  // namespace roamwise::desktop
