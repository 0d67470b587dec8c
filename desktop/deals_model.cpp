#include "desktop/deals_model.h"

#include <algorithm>
#include <set>

#include <QApplication>
#include <QBrush>
#include <QPalette>

#include "desktop/texts.h"
#include "tripkit/freshness.h"
#include "tripkit/text_search.h"

namespace roamwise::desktop {

using namespace tripkit;

const Destination* placeOf(const Destinations& catalog, const std::string& code) {
    if (const Destination* place = catalog.find(code)) return place;
    for (const Destination& place : catalog.list) {
        if (place.fareCode == code) return &place;
    }
    return nullptr;
}

std::vector<Deal> matchingDeals(const std::vector<Deal>& deals, const DealQuery& query,
                                const Destinations& catalog) {
    std::vector<Deal> out;
    for (const Deal& deal : deals) {
        if (!query.filter.allows(deal.airline, deal.stops)) continue;
        if (!query.text.empty()) {
            std::vector<std::optional<std::string>> fields = {deal.destination, deal.city, deal.country};
            if (const Destination* place = placeOf(catalog, deal.destination)) {
                for (auto& field : place->searchFields()) fields.push_back(std::move(field));
            }
            if (!TextSearch::matches(query.text, fields)) continue;
        }
        out.push_back(deal);
    }
    return out;
}

std::vector<std::string> offeredAirlines(const std::vector<const FareBook*>& books) {
    std::set<std::string> codes;
    for (const FareBook* book : books) {
        for (std::string& code : Fares::airlines(book)) codes.insert(std::move(code));
        for (const Deal& deal : book->deals) codes.insert(deal.airline);
    }
    return {codes.begin(), codes.end()};
}

DealsModel::DealsModel(QObject* parent) : QAbstractTableModel(parent) {}

void DealsModel::setDeals(std::vector<Deal> deals, const Destinations* catalog, Day today) {
    beginResetModel();
    m_deals = std::move(deals);
    m_catalog = catalog;
    m_today = today;
    endResetModel();
}

int DealsModel::staleCount() const {
    return static_cast<int>(
        std::count_if(m_deals.begin(), m_deals.end(), [&](const Deal& d) { return d.isStale(m_today); }));
}

int DealsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_deals.size());
}

int DealsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : Column::columns; }

QVariant DealsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const Deal& deal = m_deals[static_cast<std::size_t>(index.row())];
    // -1 for a one-way trip (a return before the departure is left out when
    // decoding). Not an optional: GCC 12 warns it may be read uninitialised.
    const std::int64_t nightCount = deal.returnDay ? *deal.returnDay - deal.depart : -1;
    const std::int64_t days = Freshness::age(deal.seen, m_today);

    if (role == codeRole) return Texts::of(deal.destination);
    if (role == Qt::ForegroundRole) {
        if (!deal.isStale(m_today)) return {};
        return QApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    }
    if (role == Qt::TextAlignmentRole) {
        switch (index.column()) {
            case price:
            case nights:
            case age: return QVariant(Qt::AlignRight | Qt::AlignVCenter);
            default: return {};
        }
    }
    if (role == Qt::ToolTipRole && deal.isStale(m_today)) {
        return QStringLiteral("Seen %1 days ago: the price may have changed.").arg(days);
    }
    if (role == sortRole) {
        switch (index.column()) {
            case price: return deal.price;
            case dates: return QVariant::fromValue<qlonglong>(deal.depart.count);
            case nights: return QVariant::fromValue<qlonglong>(nightCount);
            case stops: return deal.stops;
            case age: return QVariant::fromValue<qlonglong>(days);
            default: break;
        }
        role = Qt::DisplayRole;
    }
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
        case place: {
            const Destination* found = m_catalog ? placeOf(*m_catalog, deal.destination) : nullptr;
            return found ? Texts::of(found->name) : Texts::of(deal.city);
        }
        case country: return Texts::of(deal.country);
        case price: return Texts::money(deal.price);
        case dates: return Texts::dates(deal.depart, deal.returnDay, m_today);
        case nights: return nightCount >= 0 ? QString::number(nightCount) : QStringLiteral("one way");
        case airline: return Texts::of(Airline::display(deal.airline));
        case stops: return Texts::stops(deal.stops);
        case origin: return Texts::of(deal.origin.value_or(""));
        case age: return Texts::age(days);
        default: return {};
    }
}

QVariant DealsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
        case place: return QStringLiteral("Place");
        case country: return QStringLiteral("Country");
        case price: return QStringLiteral("Price");
        case dates: return QStringLiteral("Dates");
        case nights: return QStringLiteral("Nights");
        case airline: return QStringLiteral("Airline");
        case stops: return QStringLiteral("Stops");
        case origin: return QStringLiteral("From");
        case age: return QStringLiteral("Seen");
        default: return {};
    }
}

}  // namespace roamwise::desktop
