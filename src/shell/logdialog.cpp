#include "shell/logdialog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace
{
constexpr int followMs = 300;

// Types of records, a bit each: 0 debug, 1 warning, 2 error, 3 fatal, 4 info
constexpr unsigned errors = 1U << 2U | 1U << 3U;
constexpr unsigned warnings = errors | 1U << 1U;
constexpr unsigned notes = warnings | 1U << 4U;
constexpr unsigned everything = notes | 1U;
} // namespace

LogDialog::LogDialog(const QString& path, QWidget* parent) : QDialog(parent), m_tail(path)
{
    setWindowTitle(tr("Log - Velkor Launcher"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(createFilters());
    createTable();
    layout->addWidget(m_table, 1);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("note"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* copyButton = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    copyButton->setToolTip(tr("The selected lines, or all that are shown"));
    connect(copyButton, &QPushButton::clicked, this, &LogDialog::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_count, 1);
    bottom->addWidget(buttons);
    layout->addLayout(bottom);
    resize(960, 560);

    connect(&m_timer, &QTimer::timeout, this, &LogDialog::follow);
    m_timer.start(followMs);
    follow();
    m_table->scrollToBottom();
}

QWidget* LogDialog::createFilters()
{
    auto* filters = new QWidget(this);
    auto* row = new QHBoxLayout(filters);
    row->setContentsMargins(0, 0, 0, 0);
    m_level = new QComboBox(filters);
    m_level->addItem(tr("Everything"), everything);
    m_level->addItem(tr("Notes and worse"), notes);
    m_level->addItem(tr("Warnings and worse"), warnings);
    m_level->addItem(tr("Errors"), errors);
    m_level->setAccessibleName(tr("Level"));
    auto* levelLabel = new QLabel(tr("&Show:"), filters);
    levelLabel->setBuddy(m_level);
    m_search = new QLineEdit(filters);
    m_search->setPlaceholderText(tr("Search"));
    m_search->setAccessibleName(tr("Search"));
    m_search->setClearButtonEnabled(true);
    connect(m_level, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &LogDialog::applyFilter);
    connect(m_search, &QLineEdit::textChanged, this, &LogDialog::applyFilter);
    row->addWidget(levelLabel);
    row->addWidget(m_level);
    row->addWidget(m_search, 1);
    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_search, [this] { m_search->setFocus(); });
    addAction(find);
    return filters;
}

void LogDialog::createTable()
{
    m_table = new QTableView(this);
    m_table->setModel(&m_model);
    m_table->setAccessibleName(tr("Log"));
    m_table->setTabKeyNavigation(false); // Tab leads on
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed); // cheap with many rows
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    m_table->hideColumn(LogModel::Process);
    auto* header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_table->setColumnWidth(LogModel::Time, 16 * character);
    m_table->setColumnWidth(LogModel::Level, 12 * character);
    m_table->setColumnWidth(LogModel::Category, 14 * character);
    header->setSectionResizeMode(LogModel::Message, QHeaderView::Stretch);
    auto* copyAction = new QAction(m_table);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &LogDialog::copy);
    m_table->addAction(copyAction);
}

void LogDialog::applyFilter()
{
    m_model.setFilter({m_level->currentData().toUInt(), m_search->text()});
    m_table->scrollToBottom();
    follow();
}

// Follows the log, unless the player has scrolled up to read.
void LogDialog::follow()
{
    const auto* bar = m_table->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    m_model.append(m_tail.read());
    if (atEnd)
        m_table->scrollToBottom();
    m_count->setText(m_tail.problem().isEmpty()
                         ? tr("%1 of %2 lines").arg(m_model.rowCount()).arg(m_model.recordCount())
                         : tr("The log file cannot be read: %1").arg(m_tail.problem()));
}

void LogDialog::copy() const
{
    QStringList lines;
    const auto rows = m_table->selectionModel()->selectedRows();
    for (const auto& row : rows)
        lines << m_model.lineText(row.row());
    QApplication::clipboard()->setText(lines.isEmpty() ? m_model.toText() : lines.join(QLatin1Char('\n')));
}
