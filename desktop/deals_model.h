// The rows of the deals list: the merged deals that pass the search field and
// the fare filter, with the texts of each column.
#pragma once

#include <string>
#include <vector>

#include <QAbstractTableModel>

#include "tripkit/days.h"
#include "tripkit/destinations.h"
#include "tripkit/fares.h"

namespace roamwise::desktop {

// What the user narrowed the list by.
struct DealQuery {
    std::string text;  // the search field
    tripkit::FareFilter filter;

    bool isEmpty() const { return text.empty() && filter == tripkit::FareFilter{}; }
};

// The place of a deal in the catalog: by code, or by the code its fares use.
const tripkit::Destination* placeOf(const tripkit::Destinations& catalog, const std::string& code);

// The deals the query lets through, in their order.
std::vector<tripkit::Deal> matchingDeals(const std::vector<tripkit::Deal>& deals, const DealQuery& query,
                                         const tripkit::Destinations& catalog);

// The airlines the filters offer: those of the home airports' books (their
// Orlando options and their deals), by code.
std::vector<std::string> offeredAirlines(const std::vector<const tripkit::FareBook*>& books);

class DealsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { place, country, price, dates, nights, airline, stops, origin, age, columns };
    // The value a column sorts by (numbers for price, dates, nights, stops and age).
    static constexpr int sortRole = Qt::UserRole;
    // The deal's destination code.
    static constexpr int codeRole = Qt::UserRole + 1;

    explicit DealsModel(QObject* parent = nullptr);

    void setDeals(std::vector<tripkit::Deal> deals, const tripkit::Destinations* catalog, tripkit::Day today);
    const tripkit::Deal& deal(int row) const { return m_deals.at(static_cast<std::size_t>(row)); }
    int staleCount() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<tripkit::Deal> m_deals;
    const tripkit::Destinations* m_catalog = nullptr;
    tripkit::Day m_today;
};

}  // namespace roamwise::desktop
