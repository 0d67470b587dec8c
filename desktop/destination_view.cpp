#include "desktop/destination_view.h"

#include <algorithm>
#include <map>

#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeAxis>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineSeries>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QTableWidget>
#include <QValueAxis>
#include <QVBoxLayout>

#include "app/app_model.h"
#include "desktop/deals_model.h"
#include "desktop/texts.h"
#include "tripkit/advisories.h"
#include "tripkit/alerts.h"
#include "tripkit/checklist.h"
#include "tripkit/climate.h"
#include "tripkit/freshness.h"
#include "tripkit/price_history.h"

namespace roamwise::desktop {

using namespace tripkit;
using app::AppModel;

namespace {

constexpr const char* kPriceFootnote =
    "Compared with the cheapest round trip found each night from your airports. Past prices don’t predict "
    "future ones.";
constexpr const char* kWatchAction = "Watch this price";
constexpr const char* kWatching = "Watching this price";
constexpr int kGridColumns = 7;
constexpr int kGridRows = 6;
constexpr const char* kStaleDot = "•";

QLabel* wrapped(const QString& text, QWidget* parent, const char* name = nullptr) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    if (name) label->setObjectName(name);
    return label;
}

QGroupBox* section(const QString& title, QWidget* parent) {
    auto* box = new QGroupBox(title, parent);
    return box;
}

QDate toQDate(Day day) {
    const CivilDate c = day.civil();
    return QDate(static_cast<int>(c.year), c.month, c.day);
}

Day fromQDate(const QDate& date) { return Day::fromCivil(date.year(), date.month(), date.day()); }

QString verdictText(PriceCheck::Verdict verdict) {
    switch (verdict) {
        case PriceCheck::Verdict::high: return "Higher than most prices seen in the last";
        case PriceCheck::Verdict::typical: return "About the usual price seen in the last";
        case PriceCheck::Verdict::low: return "Lower than most prices seen in the last";
    }
    return {};
}

}  // namespace

DestinationView::DestinationView(AppModel& model, const std::string& code, std::optional<RoundTrip> trip,
                                 QWidget* parent)
    : QDialog(parent), m_model(model), m_code(code), m_trip(std::move(trip)) {
    setObjectName("destinationView");
    setAttribute(Qt::WA_DeleteOnClose);
    if (const Destination* place = placeOf(m_model.destinations(), code)) {
        m_place = *place;
        m_code = place->fareCode;
    }
    const Day today = m_model.today();
    if (!m_trip) m_trip = m_model.calendar().cheapest(m_code, std::nullopt, today, false);
    setWindowTitle(QStringLiteral("%1 — Roamwise").arg(Texts::of(placeName())));
    resize(760, 860);

    auto* outer = new QVBoxLayout(this);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* content = new QWidget(scroll);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(makeHeader(content));
    layout->addWidget(makeWatch(content));
    layout->addWidget(makePriceCheck(content));
    layout->addWidget(makeMonths(content));
    layout->addWidget(makeDayGrid(content));
    layout->addWidget(makeLinks(content));
    layout->addWidget(makeEntry(content));
    layout->addStretch(1);
    scroll->setWidget(content);
    outer->addWidget(scroll, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("destinationClose");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    outer->addWidget(buttons);

    connect(&m_model, &AppModel::calendarChanged, this, [this] {
        updateMonths();
        updateGridMonths();
    });
    connect(&m_model, &AppModel::historyChanged, this, &DestinationView::updatePriceCheck);
    connect(&m_model, &AppModel::watchesChanged, this, &DestinationView::updateWatch);
    connect(&m_model, &AppModel::packingChanged, this, &DestinationView::updateChecklist);

    updatePriceCheck();
    updateMonths();
    updateGridMonths();
    updateWatch();
    updateLinks();
    updateChecklist();

    // The nudge counts this opening; it is offered once per place and run.
    const bool offer = m_model.recordView(m_place ? m_place->code : m_code);
    m_nudge->setVisible(offer && !currentWatch());
}

std::string DestinationView::placeName() const { return m_place ? m_place->name : m_code; }

QWidget* DestinationView::makeHeader(QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(Texts::of(placeName()), box);
    title->setObjectName("destinationTitle");
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    layout->addWidget(title);
    if (m_place) {
        const bool regionSaysIt = m_place->region.empty() || m_place->region == m_place->country;
        QString where = Texts::of(regionSaysIt ? m_place->country : m_place->region + ", " + m_place->country);
        layout->addWidget(wrapped(where + QStringLiteral(" · %1").arg(Texts::of(m_place->code)), box));
        if (!m_place->blurb.empty()) layout->addWidget(wrapped(Texts::of(m_place->blurb), box));
    }
    QString advisory;
    if (m_place && m_place->domestic) {
        advisory = "In the United States: no travel advisory applies.";
    } else if (const Advisory* found = m_place ? Advisories::of(*m_place, m_model.advisories()) : nullptr) {
        advisory = QStringLiteral("Level %1: %2").arg(found->level).arg(Texts::of(std::string(Advisories::levelText(found->level))));
        if (!found->updated.empty()) advisory += QStringLiteral(" (updated %1)").arg(Texts::of(found->updated));
    } else {
        advisory = "No State Department advisory level is at hand for this place yet.";
    }
    auto* label = wrapped(advisory, box, "advisoryLabel");
    label->setStyleSheet("QLabel { background: palette(alternate-base); padding: 4px; border-radius: 4px; }");
    layout->addWidget(label);
    return box;
}

QWidget* DestinationView::makeWatch(QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);

    m_nudge = new QFrame(box);
    m_nudge->setObjectName("watchNudge");
    m_nudge->setFrameShape(QFrame::StyledPanel);
    auto* nudge = new QVBoxLayout(m_nudge);
    auto* nudgeTitle = new QLabel("Watch this price?", m_nudge);
    QFont bold = nudgeTitle->font();
    bold.setBold(true);
    nudgeTitle->setFont(bold);
    nudge->addWidget(nudgeTitle);
    nudge->addWidget(wrapped(QStringLiteral("You’ve looked at %1 before. Roamwise can tell you when the fare drops.")
                                 .arg(Texts::of(placeName())),
                             m_nudge));
    auto* nudgeButtons = new QHBoxLayout;
    auto* nudgeWatch = new QPushButton(kWatchAction, m_nudge);
    nudgeWatch->setObjectName("nudgeWatch");
    auto* notNow = new QPushButton("Not now", m_nudge);
    notNow->setObjectName("nudgeDismiss");
    nudgeButtons->addStretch(1);
    nudgeButtons->addWidget(notNow);
    nudgeButtons->addWidget(nudgeWatch);
    nudge->addLayout(nudgeButtons);
    connect(nudgeWatch, &QPushButton::clicked, this, [this] {
        m_nudge->hide();
        showWatchForm();
    });
    connect(notNow, &QPushButton::clicked, m_nudge, &QWidget::hide);
    m_nudge->hide();
    layout->addWidget(m_nudge);

    auto* row = new QHBoxLayout;
    m_watch = new QPushButton(kWatchAction, box);
    m_watch->setObjectName("watchButton");
    connect(m_watch, &QPushButton::clicked, this, &DestinationView::showWatchForm);
    m_watching = new QLabel(kWatching, box);
    m_watching->setObjectName("watchingLabel");
    m_unwatch = new QPushButton("Stop watching", box);
    m_unwatch->setObjectName("watchRemove");
    connect(m_unwatch, &QPushButton::clicked, this, [this] {
        if (const Watch* watch = currentWatch()) m_model.removeWatch(watch->id);
    });
    row->addWidget(m_watch);
    row->addWidget(m_watching);
    row->addWidget(m_unwatch);
    row->addStretch(1);
    layout->addLayout(row);

    m_watchForm = new QFrame(box);
    m_watchForm->setObjectName("watchForm");
    m_watchForm->setFrameShape(QFrame::StyledPanel);
    auto* form = new QFormLayout(m_watchForm);
    m_anyDrop = new QRadioButton("Alert on any drop", m_watchForm);
    m_anyDrop->setObjectName("watchAnyDrop");
    m_underPrice = new QRadioButton("Under your price", m_watchForm);
    m_underPrice->setObjectName("watchUnderPrice");
    m_anyDrop->setChecked(true);
    m_target = new QDoubleSpinBox(m_watchForm);
    m_target->setObjectName("watchTarget");
    m_target->setPrefix("$");
    m_target->setDecimals(0);
    m_target->setRange(1, 20000);
    m_target->setEnabled(false);
    connect(m_underPrice, &QRadioButton::toggled, m_target, &QWidget::setEnabled);
    auto* targetRow = new QHBoxLayout;
    targetRow->addWidget(m_anyDrop);
    targetRow->addWidget(m_underPrice);
    targetRow->addWidget(m_target);
    targetRow->addStretch(1);
    form->addRow("Alert:", targetRow);
    form->addRow(wrapped(QStringLiteral("Per person, round trip. “Any drop” means $%1 or more.")
                             .arg(static_cast<int>(Alerts::minDrop)),
                         m_watchForm));
    m_window = new QCheckBox("Only certain dates", m_watchForm);
    m_window->setObjectName("watchWindow");
    m_leave = new QDateEdit(m_watchForm);
    m_leave->setObjectName("watchLeave");
    m_back = new QDateEdit(m_watchForm);
    m_back->setObjectName("watchBack");
    for (QDateEdit* edit : {m_leave, m_back}) {
        edit->setCalendarPopup(true);
        edit->setEnabled(false);
        connect(m_window, &QCheckBox::toggled, edit, &QWidget::setEnabled);
    }
    auto* windowRow = new QHBoxLayout;
    windowRow->addWidget(m_window);
    windowRow->addWidget(new QLabel("Leaving and back:", m_watchForm));
    windowRow->addWidget(m_leave);
    windowRow->addWidget(m_back);
    windowRow->addStretch(1);
    form->addRow("Dates:", windowRow);
    form->addRow(wrapped(QStringLiteral("Alerts only use fares seen in the last %1 days, so they don’t announce a "
                                        "price that’s likely gone. Alerts are checked on this computer against "
                                        "the nightly fare files; your watches never leave it.")
                             .arg(Freshness::freshDays),
                         m_watchForm));
    auto* formButtons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, m_watchForm);
    formButtons->button(QDialogButtonBox::Save)->setObjectName("watchSave");
    formButtons->button(QDialogButtonBox::Save)->setText(kWatchAction);
    formButtons->button(QDialogButtonBox::Cancel)->setObjectName("watchCancel");
    connect(formButtons, &QDialogButtonBox::accepted, this, &DestinationView::saveWatch);
    connect(formButtons, &QDialogButtonBox::rejected, m_watchForm, &QWidget::hide);
    form->addRow(formButtons);
    m_watchForm->hide();
    layout->addWidget(m_watchForm);
    return box;
}

QWidget* DestinationView::makePriceCheck(QWidget* parent) {
    auto* box = section("Price check", parent);
    auto* layout = new QVBoxLayout(box);
    m_verdict = wrapped({}, box, "priceVerdict");
    QFont bold = m_verdict->font();
    bold.setBold(true);
    m_verdict->setFont(bold);
    layout->addWidget(m_verdict);
    m_verdictDetail = wrapped({}, box, "priceDetail");
    layout->addWidget(m_verdictDetail);
    m_chart = new QChartView(box);
    m_chart->setObjectName("priceChart");
    m_chart->setMinimumHeight(220);
    m_chart->setRenderHint(QPainter::Antialiasing);
    layout->addWidget(m_chart);
    layout->addWidget(wrapped(kPriceFootnote, box, "priceFootnote"));
    return box;
}

void DestinationView::updatePriceCheck() {
    const Day today = m_model.today();
    const std::vector<NightPrice> nights = m_model.history().nights(m_code, today);
    std::optional<PriceCheck> check;
    if (m_trip) check = PriceCheck::judge(m_trip->price, nights, today);
    if (check) {
        m_verdict->setText(QStringLiteral("%1: %2 %3 days").arg(Texts::money(check->price), verdictText(check->verdict)).arg(check->days));
        QString detail = QStringLiteral("Usually %1; a quarter of nights were under %2 and a quarter over %3.")
                             .arg(Texts::money(check->typical), Texts::money(check->low), Texts::money(check->high));
        if (check->lowestInDays) detail += QStringLiteral(" The lowest price in %1 days.").arg(*check->lowestInDays);
        m_verdictDetail->setText(detail);
    } else {
        m_verdict->setText(QStringLiteral("Building (verdicts after %1 nights)").arg(PriceCheck::minNights));
        m_verdictDetail->setText(nights.empty() ? QStringLiteral("No nightly prices for this place yet.")
                                                : QStringLiteral("%1 nights so far.").arg(nights.size()));
    }

    auto* chart = new QChart;
    chart->setTitle(QStringLiteral("Cheapest price each night for the last %1 days").arg(FareHistory::windowDays));
    chart->legend()->hide();
    auto* series = new QLineSeries(chart);
    double low = 0, high = 0;
    for (const NightPrice& night : nights) {
        series->append(static_cast<double>(QDateTime(toQDate(night.day), QTime(12, 0)).toMSecsSinceEpoch()), night.price);
        low = low == 0 ? night.price : std::min(low, night.price);
        high = std::max(high, night.price);
    }
    chart->addSeries(series);
    auto* x = new QDateTimeAxis(chart);
    x->setFormat("d MMM");
    x->setRange(QDateTime(toQDate(today - FareHistory::windowDays + 1), QTime(0, 0)), QDateTime(toQDate(today), QTime(23, 59)));
    auto* y = new QValueAxis(chart);
    y->setLabelFormat("$%.0f");
    y->setRange(std::max(0.0, low * 0.9), high > 0 ? high * 1.1 : 100);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);
    QChart* old = m_chart->chart();
    m_chart->setChart(chart);
    delete old;
}

QWidget* DestinationView::makeMonths(QWidget* parent) {
    auto* box = section("Cheapest round trip each month", parent);
    auto* layout = new QVBoxLayout(box);
    m_months = new QTableWidget(0, 4, box);
    m_months->setObjectName("monthsTable");
    m_months->setHorizontalHeaderLabels({"Month", "Best time", "Cheapest", "Dates"});
    m_months->verticalHeader()->hide();
    m_months->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_months->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_months->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_months->horizontalHeader()->setStretchLastSection(true);
    // Every month at once: the stars are only useful side by side.
    m_months->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout->addWidget(m_months);
    auto* note = wrapped({}, box, "bestTimeNote");
    layout->addWidget(note);
    auto* credit = wrapped({}, box, "climateCredit");
    layout->addWidget(credit);
    return box;
}

void DestinationView::updateMonths() {
    const Day today = m_model.today();
    const auto months = m_model.calendar().months(m_code, today);
    const Climate& climate = m_model.climate();
    const Climate::Place* weather = m_place ? climate.find(m_place->code) : nullptr;
    std::vector<BestTime::Pick> picks;
    if (m_place) picks = BestTime::picks(*m_place, weather, months);
    std::map<int, std::size_t> rank;  // month -> position among the picks
    for (std::size_t i = 0; i < picks.size(); ++i) rank[picks[i].index] = i;

    m_months->setRowCount(static_cast<int>(months.size()));
    int row = 0;
    for (const auto& [month, trip] : months) {
        const auto found = rank.find(month.month);
        const bool starred = found != rank.end() && BestTime::isStarred(found->second);
        const QStringList cells = {Texts::monthName(month), starred ? QStringLiteral("★") : QString(),
                                   Texts::money(trip.price), Texts::dates(trip.depart, trip.returnDay, today)};
        for (int column = 0; column < cells.size(); ++column) m_months->setItem(row, column, new QTableWidgetItem(cells[column]));
        ++row;
    }
    int height = m_months->horizontalHeader()->sizeHint().height() + 2 * m_months->frameWidth();
    for (int r = 0; r < m_months->rowCount(); ++r) height += m_months->rowHeight(r);
    m_months->setFixedHeight(height);
    auto* note = findChild<QLabel*>("bestTimeNote");
    auto* credit = findChild<QLabel*>("climateCredit");
    if (weather) {
        note->setText(QStringLiteral("★ %1").arg(BestTime::balancedNote));
        credit->setText(QStringLiteral("%1, %2 normals at %3.")
                            .arg(Texts::of(climate.source.credit()), Texts::of(climate.periodOf(*weather)),
                                 Texts::of(weather->stationLabel())));
    } else {
        note->setText(QStringLiteral("★ %1").arg(BestTime::cheapestNote));
        credit->setText(QStringLiteral("No long weather record near %1%2").arg(Texts::of(placeName()), Climate::noRecordText));
    }
}

QWidget* DestinationView::makeDayGrid(QWidget* parent) {
    auto* box = section(QStringLiteral("Day-by-day prices for %1").arg(Texts::of(placeName())), parent);
    auto* layout = new QVBoxLayout(box);
    auto* top = new QHBoxLayout;
    m_gridMonth = new QComboBox(box);
    m_gridMonth->setObjectName("gridMonth");
    top->addWidget(m_gridMonth);
    top->addStretch(1);
    layout->addLayout(top);
    m_grid = new QTableWidget(kGridRows, kGridColumns, box);
    m_grid->setObjectName("dayGrid");
    m_grid->setHorizontalHeaderLabels({"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"});
    m_grid->verticalHeader()->hide();
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_grid->verticalHeader()->setDefaultSectionSize(44);
    m_grid->setMinimumHeight(44 * kGridRows + m_grid->horizontalHeader()->sizeHint().height() + 4);
    layout->addWidget(m_grid);
    m_picked = wrapped({}, box, "pickedTrip");
    layout->addWidget(m_picked);
    layout->addWidget(wrapped(QStringLiteral("Each day shows the cheapest round trip found leaving then, per person. "
                                             "Tap one to pick it. A dot marks a fare seen over %1 days ago; blank "
                                             "days had no fare in recent searches.")
                                  .arg(Freshness::freshDays),
                              box, "gridLegend"));
    connect(m_gridMonth, &QComboBox::currentIndexChanged, this, &DestinationView::updateGrid);
    connect(m_grid, &QTableWidget::cellClicked, this, [this](int row, int column) {
        QTableWidgetItem* item = m_grid->item(row, column);
        if (!item || !item->data(Qt::UserRole).isValid()) return;
        if (auto trip = m_model.calendar().trip(m_code, Day{item->data(Qt::UserRole).toLongLong()})) pick(*trip);
    });
    return box;
}

void DestinationView::updateGridMonths() {
    const Day today = m_model.today();
    m_gridMonths.clear();
    for (const RoundTrip& trip : m_model.calendar().trips(m_code, today)) {
        const YearMonth month = YearMonth::of(trip.depart);
        if (m_gridMonths.empty() || m_gridMonths.back() != month) m_gridMonths.push_back(month);
    }
    const QSignalBlocker block(m_gridMonth);
    m_gridMonth->clear();
    int current = 0;
    for (std::size_t i = 0; i < m_gridMonths.size(); ++i) {
        m_gridMonth->addItem(Texts::monthName(m_gridMonths[i]));
        if (m_trip && YearMonth::of(m_trip->depart) == m_gridMonths[i]) current = static_cast<int>(i);
    }
    m_gridMonth->setCurrentIndex(current);
    updateGrid();
    if (m_trip) pick(*m_trip);
}

void DestinationView::updateGrid() {
    m_grid->clearContents();
    const int i = m_gridMonth->currentIndex();
    if (i < 0 || i >= static_cast<int>(m_gridMonths.size())) return;
    const YearMonth month = m_gridMonths[static_cast<std::size_t>(i)];
    const Day today = m_model.today();
    std::map<Day, RoundTrip> byDay;
    for (RoundTrip& trip : m_model.calendar().trips(m_code, today)) {
        if (YearMonth::of(trip.depart) == month) byDay.emplace(trip.depart, std::move(trip));
    }
    const int offset = month.firstDay().weekday() - 1;
    for (Day day : month.days()) {
        const int cell = offset + day.dayOfMonth() - 1;
        auto* item = new QTableWidgetItem;
        item->setTextAlignment(Qt::AlignCenter);
        const auto found = byDay.find(day);
        if (found == byDay.end()) {
            item->setText(QString::number(day.dayOfMonth()));
            item->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
            item->setFlags(Qt::ItemIsEnabled);
        } else {
            const bool stale = found->second.isStale(today);
            item->setText(QStringLiteral("%1%2\n%3").arg(day.dayOfMonth()).arg(stale ? QStringLiteral(" ") + kStaleDot : QString(),
                                                                               Texts::money(found->second.price)));
            item->setData(Qt::UserRole, QVariant::fromValue<qlonglong>(day.count));
            item->setToolTip(QStringLiteral("%1, %2, %3").arg(Texts::dates(found->second.depart, found->second.returnDay, today),
                                                              Texts::of(Airline::display(found->second.airline)),
                                                              Texts::stops(found->second.stops)));
        }
        m_grid->setItem(cell / kGridColumns, cell % kGridColumns, item);
    }
}

void DestinationView::pick(const RoundTrip& trip) {
    m_trip = trip;
    const Day today = m_model.today();
    const auto nights = trip.nights();
    m_picked->setText(QStringLiteral("Picked: %1, %2%3, %4 from %5, %6.")
                          .arg(Texts::money(trip.price), Texts::dates(trip.depart, trip.returnDay, today),
                               nights ? QStringLiteral(" (%1 nights)").arg(*nights) : QString(),
                               Texts::of(Airline::display(trip.airline)), Texts::of(trip.origin), Texts::stops(trip.stops).toLower()));
    updatePriceCheck();
    updateLinks();
}

void DestinationView::showWatchForm() {
    const Day today = m_model.today();
    const Day leave = m_trip ? m_trip->depart : today;
    const Day back = m_trip && m_trip->returnDay ? *m_trip->returnDay : leave + 7;
    m_leave->setDate(toQDate(leave));
    m_back->setDate(toQDate(back));
    m_target->setValue(m_trip ? std::max(1.0, std::floor(m_trip->price * 0.9)) : 100);
    m_watchForm->show();
}

const Watch* DestinationView::currentWatch() const {
    const std::string code = m_place ? m_place->code : m_code;
    for (const Watch& watch : m_model.watches()) {
        const auto* route = std::get_if<Watch::Route>(&watch.kind);
        if (route && (route->code == code || route->code == m_code)) return &watch;
    }
    return nullptr;
}

void DestinationView::saveWatch() {
    Watch watch;
    QRandomGenerator* random = QRandomGenerator::global();
    watch.id = Watch::makeID(random->generate64(), random->generate64());
    std::optional<DayRange> window;
    if (m_window->isChecked()) window = DayRange(fromQDate(m_leave->date()), fromQDate(m_back->date()));
    watch.kind = Watch::Route{m_code, placeName(), window};
    if (m_underPrice->isChecked()) watch.target = m_target->value();
    watch.created = m_model.today();
    m_watchForm->hide();
    m_nudge->hide();
    m_model.addWatch(watch);
}

void DestinationView::updateWatch() {
    const Watch* watch = currentWatch();
    m_watch->setVisible(!watch);
    m_watching->setVisible(watch != nullptr);
    m_unwatch->setVisible(watch != nullptr);
    if (!watch) return;
    QString text = kWatching;
    if (watch->target) text += QStringLiteral(": under %1").arg(Texts::money(*watch->target));
    else text += ": any drop";
    if (const auto* route = std::get_if<Watch::Route>(&watch->kind); route && route->window) {
        text += QStringLiteral(", leaving and back %1").arg(Texts::dates(route->window->first, route->window->last, m_model.today()));
    }
    if (watch->hasPassed(m_model.today())) text += " (These dates have passed)";
    m_watching->setText(text);
}

QWidget* DestinationView::makeLinks(QWidget* parent) {
    auto* box = section("Book", parent);
    auto* layout = new QVBoxLayout(box);
    m_links = new QVBoxLayout;
    layout->addLayout(m_links);
    layout->addWidget(wrapped(Texts::partnerDisclosure, box, "partnerDisclosure"));
    return box;
}

void DestinationView::updateLinks() {
    while (QLayoutItem* item = m_links->takeAt(0)) {
        if (QLayout* row = item->layout()) {
            while (QLayoutItem* inner = row->takeAt(0)) {
                delete inner->widget();
                delete inner;
            }
        }
        delete item->widget();
        delete item;
    }
    auto* row = new QHBoxLayout;
    m_links->addLayout(row);
    const PartnerConfig& partners = m_model.partners();
    auto add = [&](const char* name, const QString& title, std::optional<std::string> url) {
        if (!url) return;
        auto* button = new QPushButton(title);
        button->setObjectName(name);
        button->setToolTip(Texts::of(*url));
        connect(button, &QPushButton::clicked, this, [this, link = *url] { m_model.openLink(link); });
        row->addWidget(button);
    };
    if (m_trip) {
        Deal deal;
        deal.destination = m_trip->destination;
        deal.city = placeName();
        deal.price = m_trip->price;
        deal.depart = m_trip->depart;
        deal.returnDay = m_trip->returnDay;
        deal.airline = m_trip->airline;
        deal.stops = m_trip->stops;
        deal.link = m_trip->link;
        deal.origin = m_trip->origin;
        add("linkFlights", "Search flights", partners.flightSearch(deal));
        const Day back = m_trip->returnDay.value_or(m_trip->depart + 1);
        add("linkHotels", "Hotels", partners.hotelLink(placeName(), m_trip->depart, back, {Links::Room{1, {}}}));
        add("linkCars", "Cars", partners.carLink(m_code, m_trip->depart, back));
    }
    add("linkTours", QStringLiteral("Things to do in %1").arg(Texts::of(placeName())), partners.toursLink(placeName()));
    row->addStretch(1);
}

QWidget* DestinationView::makeEntry(QWidget* parent) {
    auto* box = section("Entry basics and checklist", parent);
    auto* layout = new QVBoxLayout(box);
    if (!m_place) {
        layout->addWidget(wrapped("This place is not in the catalog, so there are no entry notes for it.", box));
        return box;
    }
    const EntryBasics basics = EntryBasics::of(*m_place);
    layout->addWidget(wrapped(basics.summary(), box));
    layout->addWidget(wrapped(Texts::of(basics.text()), box, "entryBasics"));
    if (auto note = basics.note()) layout->addWidget(wrapped(Texts::of(*note), box));
    auto* links = new QHBoxLayout;
    int i = 0;
    for (const EntryBasics::Link& link : basics.links()) {
        auto* button = new QPushButton(Texts::of(link.title), box);
        button->setObjectName(QStringLiteral("entryLink%1").arg(i++));
        connect(button, &QPushButton::clicked, this, [this, url = link.url] { m_model.openLink(url); });
        links->addWidget(button);
    }
    links->addStretch(1);
    layout->addLayout(links);

    m_checklist = new QListWidget(box);
    m_checklist->setObjectName("checklist");
    m_checklist->setMinimumHeight(120);
    layout->addWidget(m_checklist);
    connect(m_checklist, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        m_model.setPacked(item->data(Qt::UserRole).toString().toStdString(), item->checkState() == Qt::Checked);
    });
    auto* buttons = new QHBoxLayout;
    m_startList = new QPushButton(box);
    m_startList->setObjectName("checklistStart");
    connect(m_startList, &QPushButton::clicked, this, [this] { m_model.setPacking(Packing::newList(*m_place)); });
    auto* remove = new QPushButton("Delete", box);
    remove->setObjectName("checklistDelete");
    connect(remove, &QPushButton::clicked, this, [this] {
        QListWidgetItem* item = m_checklist->currentItem();
        if (!item) return;
        std::vector<PackingItem> items = m_model.packing();
        const std::string id = item->data(Qt::UserRole).toString().toStdString();
        std::erase_if(items, [&](const PackingItem& p) { return p.id == id; });
        m_model.setPacking(items);
    });
    buttons->addWidget(m_startList);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    layout->addWidget(wrapped(Packing::keptNote, box));
    return box;
}

void DestinationView::updateChecklist() {
    if (!m_checklist) return;
    const QSignalBlocker block(m_checklist);
    m_checklist->clear();
    for (const PackingItem& item : m_model.packing()) {
        auto* row = new QListWidgetItem(Texts::of(item.title), m_checklist);
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        row->setCheckState(item.packed ? Qt::Checked : Qt::Unchecked);
        row->setData(Qt::UserRole, Texts::of(item.id));
    }
    m_checklist->setVisible(!m_model.packing().empty());
    m_startList->setText(m_model.packing().empty() ? QStringLiteral("Make a packing list for %1").arg(Texts::of(placeName()))
                                                    : QString(Packing::startOver));
}

}  // namespace roamwise::desktop
