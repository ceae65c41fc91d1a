#include "tools/loglens/logwindow.h"

#include "logging/logmessage.h"

#include <QAction>
#include <QDateTime>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSaveFile>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>

namespace
{
constexpr int typeCount = 5;
/** The table is brought up to date so often; that looks live and is cheap. */
constexpr int showIntervalMs = 100;
} // namespace

LogWindow::LogWindow(LogReceiver* receiver) : m_receiver(receiver)
{
    setWindowTitle(tr("Velkor LogLens"));
    resize(1100, 640);
    setupToolBar();
    setupTable();
    m_status = new QLabel(this);
    statusBar()->addWidget(m_status);
    m_showTimer.setInterval(showIntervalMs);
    m_showTimer.setSingleShot(true);
    connect(&m_showTimer, &QTimer::timeout, this, &LogWindow::showArrived);
    connect(receiver, &LogReceiver::received, this, &LogWindow::onReceived);
    connect(receiver, &LogReceiver::launchersChanged, this, &LogWindow::updateStatus);
    updateStatus();
}

void LogWindow::setupToolBar()
{
    auto* bar = addToolBar(tr("Tools"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    const QString titles[typeCount] = {tr("Debug"), tr("Warning"), tr("Error"), tr("Fatal"), tr("Info")};
    for (const int type : {0, 4, 1, 2, 3}) { // from harmless to grave
        auto* level = bar->addAction(titles[type], this, &LogWindow::applyFilter);
        level->setCheckable(true);
        level->setChecked(true);
        level->setData(type);
        level->setToolTip(tr("Show records of the level \"%1\"").arg(loggingGetTypeStringFromType(type)));
        m_levels << level;
    }
    bar->addSeparator();
    m_search = new QLineEdit(bar);
    m_search->setPlaceholderText(tr("Search message and category"));
    m_search->setClearButtonEnabled(true);
    m_search->setMinimumWidth(200);
    connect(m_search, &QLineEdit::textChanged, this, &LogWindow::applyFilter);
    bar->addWidget(m_search);
    bar->addSeparator();
    m_pause = bar->addAction(tr("Pause"), this, &LogWindow::showArrived);
    m_pause->setCheckable(true);
    m_pause->setShortcut(QKeySequence(QStringLiteral("Ctrl+P")));
    m_pause->setToolTip(tr("Hold the table still; records go on arriving"));
    bar->addAction(tr("Clear"), this, [this] {
        m_arrived.clear();
        m_model.clear();
        updateStatus();
    });
    bar->addAction(tr("Save..."), this, &LogWindow::askAndSave)->setShortcut(QKeySequence::Save);
    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_search, [this] { m_search->setFocus(); });
    addAction(find);
}

void LogWindow::setupTable()
{
    m_table = new QTableView(this);
    m_table->setModel(&m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->verticalHeader()->hide();
    // Rows of one height are what makes hundreds of thousands of them cheap.
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    auto* header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->moveSection(LogModel::Process, LogModel::Category);
    const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_table->setColumnWidth(LogModel::Time, 16 * character);
    m_table->setColumnWidth(LogModel::Level, 10 * character);
    m_table->setColumnWidth(LogModel::Category, 14 * character);
    m_table->setColumnWidth(LogModel::Process, 11 * character);
    header->setSectionResizeMode(LogModel::Message, QHeaderView::Stretch);
    setCentralWidget(m_table);
}

void LogWindow::applyFilter()
{
    LogFilter filter;
    filter.types = 0;
    for (const auto* level : qAsConst(m_levels))
        filter.types |= level->isChecked() ? 1U << level->data().toUInt() : 0U;
    filter.text = m_search->text();
    m_model.setFilter(filter);
    m_table->scrollToBottom();
    updateStatus();
}

void LogWindow::onReceived(const QVector<LogRecord>& records)
{
    m_arrived += records;
    const auto tooMany = m_arrived.size() - static_cast<int>(LogModel::maxRecords);
    if (tooMany > 0)
        m_arrived.remove(0, tooMany);
    if (!m_showTimer.isActive())
        m_showTimer.start();
}

// Follows the log, unless the person has scrolled up to read.
void LogWindow::showArrived()
{
    if (!m_pause->isChecked()) {
        const auto* bar = m_table->verticalScrollBar();
        const bool follow = bar->value() == bar->maximum();
        m_model.append(std::exchange(m_arrived, {}));
        if (follow)
            m_table->scrollToBottom();
    }
    updateStatus();
}

void LogWindow::updateStatus()
{
    QStringList parts;
    if (m_receiver->launchers() == 0)
        parts << tr("Waiting for a launcher on port %1").arg(m_receiver->port());
    else
        parts << tr("Launchers connected: %1").arg(m_receiver->launchers());
    parts << tr("%1 of %2 records shown").arg(m_model.rowCount()).arg(m_model.recordCount());
    if (m_pause->isChecked())
        parts << tr("Paused, %1 more have arrived").arg(m_arrived.size());
    m_status->setText(parts.join(QStringLiteral("   ")));
}

void LogWindow::askAndSave()
{
    const auto name = QStringLiteral("velkor-%1.log")
                          .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
    const auto path = QFileDialog::getSaveFileName(this, tr("Save what is shown"), name);
    if (!path.isEmpty())
        saveTo(path);
}

bool LogWindow::saveTo(const QString& path)
{
    QSaveFile file(path);
    const auto text = m_model.toText().toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    auto* box =
        new QMessageBox(QMessageBox::Critical, tr("Save"),
                        tr("Could not write %1: %2").arg(path, file.errorString()), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return false;
}
