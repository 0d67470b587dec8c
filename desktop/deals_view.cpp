#include "desktop/deals_view.h"

#include <set>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStackedWidget>
#include <QTableView>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/app_model.h"
#include "desktop/texts.h"
#include "tripkit/freshness.h"
#include "tripkit/holidays.h"
#include "tripkit/text_search.h"

namespace roamwise::desktop {

using namespace tripkit;
using app::AppModel;
using app::Load;

namespace {

constexpr const char* kSearchPlaceholder = "City, state, airport or code";
constexpr const char* kGetawaysTitle = "Cheapest trips that fit";
constexpr const char* kGetawaysExplanation =
    "Each place’s cheapest round trip found in recent searches that fits. Long weekends count the "
    "federal holiday’s days off; trips can leave up to two days before and return up to two days after.";
constexpr const char* kNoCalendarsTitle = "Getaways need price calendars";
constexpr const char* kNoCalendarsText =
    "Day-by-day fares arrive with the nightly update for the busiest U.S. airports. Pull to refresh.";

QLabel* wrapped(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

// A calendar without the fares the filter leaves out, so that each place's
// getaway is its cheapest allowed trip rather than none.
FareCalendar allowedOnly(const FareCalendar& calendar, const FareFilter& filter) {
    FareCalendar out = calendar;
    for (auto& [code, row] : out.byDestination) {
        std::erase_if(row, [&](const CalendarFare& fare) {
            return !filter.allows(out.airlines.at(fare.airline), fare.stops);
        });
    }
    std::erase_if(out.byDestination, [](const auto& entry) { return entry.second.empty(); });
    return out;
}

// Opens the selected deal on Enter as well as on a double click.
class DealsTable : public QTableView {
public:
    using QTableView::QTableView;
    std::function<void(const QModelIndex&)> activated;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid()) {
            activated(currentIndex());
            return;
        }
        QTableView::keyPressEvent(event);
    }
};

}  // namespace

DealsView::DealsView(AppModel& model, QWidget* parent) : QWidget(parent), m_model(model) {
    setObjectName("dealsView");
    auto* layout = new QVBoxLayout(this);

    auto* statusRow = new QHBoxLayout;
    m_status = wrapped({}, this);
    m_status->setObjectName("feedStatus");
    m_status->setStyleSheet("QLabel { background: palette(alternate-base); padding: 6px; border-radius: 4px; }");
    m_retry = new QPushButton("Refresh", this);
    m_retry->setObjectName("feedRetry");
    connect(m_retry, &QPushButton::clicked, &m_model, &AppModel::refresh);
    statusRow->addWidget(m_status, 1);
    statusRow->addWidget(m_retry);
    layout->addLayout(statusRow);

    auto* filters = new QHBoxLayout;
    m_search = new QLineEdit(this);
    m_search->setObjectName("dealSearch");
    m_search->setPlaceholderText(kSearchPlaceholder);
    m_search->setClearButtonEnabled(true);
    m_airline = new QComboBox(this);
    m_airline->setObjectName("airlineFilter");
    m_airline->setToolTip("Only this airline");
    m_avoid = new QToolButton(this);
    m_avoid->setObjectName("avoidAirlines");
    m_avoid->setText("Avoid airlines");
    m_avoid->setPopupMode(QToolButton::InstantPopup);
    m_avoid->setMenu(new QMenu(m_avoid));
    m_nonstop = new QCheckBox("Nonstop only", this);
    m_nonstop->setObjectName("nonstopOnly");
    m_showDeals = new QToolButton(this);
    m_showDeals->setObjectName("showDeals");
    m_showDeals->setText("Deals");
    m_showGetaways = new QToolButton(this);
    m_showGetaways->setObjectName("showGetaways");
    m_showGetaways->setText("Getaways");
    auto* pageChoice = new QButtonGroup(this);
    for (QToolButton* button : {m_showDeals, m_showGetaways}) {
        button->setCheckable(true);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        pageChoice->addButton(button);
    }
    m_showDeals->setChecked(true);
    filters->addWidget(m_search, 1);
    filters->addWidget(m_airline);
    filters->addWidget(m_avoid);
    filters->addWidget(m_nonstop);
    filters->addSpacing(12);
    filters->addWidget(m_showDeals);
    filters->addWidget(m_showGetaways);
    layout->addLayout(filters);

    m_pages = new QStackedWidget(this);
    m_pages->addWidget(makeDealsPage());
    m_pages->addWidget(makeGetawaysPage());
    layout->addWidget(m_pages, 1);

    connect(m_search, &QLineEdit::textChanged, this, [this] { updateDeals(); updateGetaways(); });
    connect(m_airline, &QComboBox::currentIndexChanged, this, [this] { updateDeals(); updateGetaways(); });
    connect(m_nonstop, &QCheckBox::toggled, this, [this] { updateDeals(); updateGetaways(); });
    connect(m_showDeals, &QToolButton::toggled, this, [this](bool on) { m_pages->setCurrentIndex(on ? 0 : 1); });

    connect(&m_model, &AppModel::fareBooksChanged, this, &DealsView::updateAirlines);
    connect(&m_model, &AppModel::dealsChanged, this, &DealsView::updateDeals);
    connect(&m_model, &AppModel::calendarChanged, this, &DealsView::updateGetaways);
    connect(&m_model, &AppModel::faresLoadChanged, this, &DealsView::updateStatus);
    connect(&m_model, &AppModel::faresLoadChanged, this, &DealsView::updateDeals);
    connect(&m_model, &AppModel::refreshingChanged, this, [this] { m_retry->setEnabled(!m_model.refreshing()); });

    updateAirlines();
    updateStatus();
    updateDeals();
    updateGetaways();
}

QWidget* DealsView::makeDealsPage() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* table = new DealsTable(page);
    table->activated = [this](const QModelIndex& index) { openDeal(index); };
    m_table = table;
    m_table->setObjectName("dealsTable");
    m_sorted = new QSortFilterProxyModel(this);
    m_sorted->setSourceModel(&m_deals);
    m_sorted->setSortRole(DealsModel::sortRole);
    m_table->setModel(m_sorted);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(DealsModel::price, Qt::AscendingOrder);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(DealsModel::place, QHeaderView::Stretch);
    connect(m_table, &QTableView::doubleClicked, this, &DealsView::openDeal);
    layout->addWidget(m_table, 1);

    auto* emptyRow = new QHBoxLayout;
    m_empty = wrapped({}, page);
    m_empty->setObjectName("dealsEmpty");
    m_clear = new QPushButton("Clear filters", page);
    m_clear->setObjectName("clearFilters");
    connect(m_clear, &QPushButton::clicked, this, &DealsView::clearFilters);
    emptyRow->addWidget(m_empty, 1);
    emptyRow->addWidget(m_clear);
    layout->addLayout(emptyRow);

    auto* footRow = new QHBoxLayout;
    m_footnote = wrapped(QStringLiteral("Per person, round trip, from recent searches; fares older than %1 days "
                                        "are greyed. Double-click a place for its calendar and price check.")
                             .arg(Freshness::freshDays),
                         page);
    m_footnote->setObjectName("dealsFootnote");
    m_count = new QLabel(page);
    m_count->setObjectName("dealsCount");
    footRow->addWidget(m_footnote, 1);
    footRow->addWidget(m_count);
    layout->addLayout(footRow);
    return page;
}

QWidget* DealsView::makeGetawaysPage() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* choices = new QHBoxLayout;
    m_timing = new QComboBox(page);
    m_timing->setObjectName("getawayTiming");
    m_timing->addItem("Any dates");
    m_timing->addItem("Weekends");
    m_timing->addItem("Any federal holiday’s long weekend");
    for (FederalHoliday holiday : allFederalHolidays()) {
        m_timing->addItem(QStringLiteral("Long weekend: %1").arg(Texts::of(std::string(displayName(holiday)))));
    }
    m_length = new QComboBox(page);
    m_length->setObjectName("getawayLength");
    for (TripLength length : {TripLength::any, TripLength::short_, TripLength::week, TripLength::long_}) {
        const auto range = nightsRange(length);
        if (!range) {
            m_length->addItem("Any length");
            continue;
        }
        const char* name = length == TripLength::short_ ? "Short" : length == TripLength::week ? "About a week" : "Long";
        m_length->addItem(QStringLiteral("%1 (%2–%3 nights)").arg(name).arg(range->first).arg(range->second));
    }
    choices->addWidget(new QLabel("When:", page));
    choices->addWidget(m_timing);
    choices->addWidget(new QLabel("How long:", page));
    choices->addWidget(m_length);
    choices->addStretch(1);
    layout->addLayout(choices);
    connect(m_timing, &QComboBox::currentIndexChanged, this, &DealsView::updateGetaways);
    connect(m_length, &QComboBox::currentIndexChanged, this, &DealsView::updateGetaways);

    m_getawayList = new QWidget(page);
    auto* list = new QVBoxLayout(m_getawayList);
    list->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(kGetawaysTitle, m_getawayList);
    title->setObjectName("getawaysTitle");
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    list->addWidget(title);
    list->addWidget(wrapped(kGetawaysExplanation, m_getawayList));
    m_getawayTable = new QTableWidget(0, 6, m_getawayList);
    m_getawayTable->setObjectName("getawaysTable");
    m_getawayTable->setHorizontalHeaderLabels({"Place", "Price", "Dates", "Nights", "Long weekend", "From"});
    m_getawayTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_getawayTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_getawayTable->verticalHeader()->hide();
    m_getawayTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_getawayTable->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    connect(m_getawayTable, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { openGetaway(row); });
    list->addWidget(m_getawayTable, 1);
    layout->addWidget(m_getawayList, 1);

    m_noCalendars = new QWidget(page);
    m_noCalendars->setObjectName("getawaysEmpty");
    auto* none = new QVBoxLayout(m_noCalendars);
    auto* noneTitle = new QLabel(kNoCalendarsTitle, m_noCalendars);
    noneTitle->setFont(bold);
    none->addStretch(1);
    none->addWidget(noneTitle, 0, Qt::AlignHCenter);
    auto* noneText = wrapped(kNoCalendarsText, m_noCalendars);
    noneText->setAlignment(Qt::AlignHCenter);
    none->addWidget(noneText);
    none->addStretch(2);
    layout->addWidget(m_noCalendars, 1);
    return page;
}

void DealsView::focusSearch() {
    m_showDeals->setChecked(true);
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

DealQuery DealsView::query() const {
    DealQuery q;
    q.text = m_search->text().trimmed().toStdString();
    const QString airline = m_airline->currentData().toString();
    if (!airline.isEmpty()) q.filter.onlyAirlines.insert(airline.toStdString());
    for (QAction* action : m_avoid->menu()->actions()) {
        if (action->isChecked()) q.filter.avoidAirlines.insert(action->data().toString().toStdString());
    }
    q.filter.nonstopOnly = m_nonstop->isChecked();
    return q;
}

void DealsView::updateAirlines() {
    std::vector<const FareBook*> books;
    for (const auto& [code, book] : m_model.fareBooks()) books.push_back(&book);
    const std::vector<std::string> codes = offeredAirlines(books);

    const QString chosen = m_airline->currentData().toString();
    QSet<QString> avoided;
    for (QAction* action : m_avoid->menu()->actions()) {
        if (action->isChecked()) avoided.insert(action->data().toString());
    }
    {
        const QSignalBlocker block(m_airline);
        m_airline->clear();
        m_airline->addItem("Any airline", QString());
        for (const std::string& code : codes) {
            m_airline->addItem(Texts::of(Airline::display(code)), Texts::of(code));
        }
        const int index = m_airline->findData(chosen);
        m_airline->setCurrentIndex(index < 0 ? 0 : index);
    }
    m_avoid->menu()->clear();
    for (const std::string& code : codes) {
        QAction* action = m_avoid->menu()->addAction(Texts::of(Airline::display(code)));
        action->setCheckable(true);
        action->setData(Texts::of(code));
        action->setObjectName(QStringLiteral("avoid-%1").arg(Texts::of(code)));
        action->setChecked(avoided.contains(Texts::of(code)));
        connect(action, &QAction::toggled, this, [this] { updateDeals(); updateGetaways(); });
    }
    updateDeals();
}

void DealsView::updateStatus() {
    const Load load = m_model.faresLoad();
    std::optional<std::string> message = m_model.faresMessage();
    if (load == Load::loading && m_model.deals().empty()) message = "Loading today’s fares…";
    m_status->setVisible(message.has_value());
    m_retry->setVisible(message.has_value() && load != Load::loading);
    if (message) m_status->setText(Texts::of(*message));
}

void DealsView::updateDeals() {
    const DealQuery q = query();
    const std::vector<Deal>& all = m_model.deals();
    std::vector<Deal> shown = matchingDeals(all, q, m_model.destinations());
    const int count = static_cast<int>(shown.size());
    m_deals.setDeals(std::move(shown), &m_model.destinations(), m_model.today());
    m_count->setText(count == 1 ? QStringLiteral("1 deal") : QStringLiteral("%1 deals").arg(count));

    QString reason;
    bool filtersToBlame = false;
    if (count == 0) {
        const auto empty = FeedStatus::emptyReason(m_model.feedStatus(), static_cast<int>(all.size()));
        if (!all.empty()) {
            reason = "No deals match your search and filters.";
            filtersToBlame = true;
        } else if (m_model.faresLoad() == Load::loading) {
            reason = "Loading today’s fares…";
        } else if (empty && empty->kind == FeedStatus::Empty::Kind::offlineTooOld) {
            reason = QStringLiteral("Offline, and the fares saved %1 are too old to show.")
                         .arg(Texts::of(empty->day.text()));
        } else if (empty) {
            reason = QStringLiteral("The latest nightly update has no fares seen in the last %1 days.")
                         .arg(Freshness::usableDays);
        } else if (auto message = m_model.faresMessage()) {
            reason = Texts::of(*message);
        }
    }
    m_empty->setText(reason);
    m_empty->setVisible(count == 0);
    m_clear->setVisible(filtersToBlame);
    m_table->setVisible(count > 0);
}

TripTiming DealsView::timing() const {
    const int i = m_timing->currentIndex();
    if (i <= 0) return TripTiming::anytime();
    if (i == 1) return TripTiming::weekends();
    if (i == 2) return TripTiming::anyHoliday();
    return TripTiming::forHoliday(allFederalHolidays().at(static_cast<std::size_t>(i - 3)));
}

TripLength DealsView::length() const {
    switch (m_length->currentIndex()) {
        case 1: return TripLength::short_;
        case 2: return TripLength::week;
        case 3: return TripLength::long_;
        default: return TripLength::any;
    }
}

void DealsView::updateGetaways() {
    const FareCalendar& calendar = m_model.calendar();
    const bool none = calendar.isEmpty();
    m_noCalendars->setVisible(none);
    m_getawayList->setVisible(!none);
    m_getaways.clear();
    m_getawayTable->setRowCount(0);
    if (none) return;

    const DealQuery q = query();
    std::optional<std::set<std::string>> to;
    if (!q.text.empty()) {
        to.emplace();
        for (const auto& [code, row] : calendar.byDestination) {
            std::vector<std::optional<std::string>> fields = {code};
            if (const Destination* place = placeOf(m_model.destinations(), code)) {
                for (auto& field : place->searchFields()) fields.push_back(std::move(field));
            }
            if (TextSearch::matches(q.text, fields)) to->insert(code);
        }
    }
    const Day today = m_model.today();
    m_getaways = q.filter == FareFilter{}
                     ? Getaways::find(calendar, timing(), length(), to, std::nullopt, today)
                     : Getaways::find(allowedOnly(calendar, q.filter), timing(), length(), to, std::nullopt, today);

    m_getawayTable->setColumnHidden(4, !timing().isHoliday());
    m_getawayTable->setRowCount(static_cast<int>(m_getaways.size()));
    for (int row = 0; row < static_cast<int>(m_getaways.size()); ++row) {
        const Getaway& g = m_getaways[static_cast<std::size_t>(row)];
        const Destination* place = placeOf(m_model.destinations(), g.trip.destination);
        const auto nights = g.trip.nights();
        const QStringList cells = {
            place ? Texts::of(place->name) : Texts::of(g.trip.destination),
            Texts::money(g.trip.price),
            Texts::dates(g.trip.depart, g.trip.returnDay, today),
            nights ? QString::number(*nights) : QStringLiteral("one way"),
            g.window ? Texts::of(std::string(displayName(g.window->holiday))) : QString(),
            Texts::of(g.trip.origin)};
        for (int column = 0; column < cells.size(); ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            if (g.trip.isStale(today)) item->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
            m_getawayTable->setItem(row, column, item);
        }
    }
}

void DealsView::clearFilters() {
    const QSignalBlocker a(m_search), b(m_airline), c(m_nonstop);
    m_search->clear();
    m_airline->setCurrentIndex(0);
    m_nonstop->setChecked(false);
    for (QAction* action : m_avoid->menu()->actions()) {
        const QSignalBlocker d(action);
        action->setChecked(false);
    }
    updateDeals();
    updateGetaways();
}

void DealsView::openDeal(const QModelIndex& index) {
    if (!index.isValid()) return;
    const Deal& deal = m_deals.deal(m_sorted->mapToSource(index).row());
    RoundTrip trip{deal.origin.value_or(m_model.homeAirports().front()), deal.destination, deal.depart,
                   deal.returnDay, deal.price, deal.airline, deal.stops, deal.seen, deal.link};
    emit destinationRequested(Texts::of(deal.destination), trip);
}

void DealsView::openGetaway(int row) {
    if (row < 0 || row >= static_cast<int>(m_getaways.size())) return;
    const RoundTrip& trip = m_getaways[static_cast<std::size_t>(row)].trip;
    emit destinationRequested(Texts::of(trip.destination), trip);
}

}  // namespace roamwise::desktop
