#include "shell/downloadplandialog.h"

#include "logging/formatmemory.h"
#include "shell/fitheight.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

DownloadPlanDialog::DownloadPlanDialog(const QString& server, const DownloadPlan& plan, const QString& folder,
                                       std::chrono::milliseconds patience, QWidget* parent)
    : QDialog(parent), m_isShortOfRoom(plan.isShortOfRoom())
{
    setWindowTitle(tr("Download for %1").arg(server));
    auto* heading =
        new QLabel(m_isShortOfRoom ? tr("There does not seem to be enough room for %1.").arg(server)
                                   : tr("%1 is about to be downloaded.").arg(server),
                   this);
    heading->setObjectName(QStringLiteral("heading"));
    heading->setWordWrap(true);

    auto* figures = new QFormLayout;
    figures->setHorizontalSpacing(24);
    figures->setVerticalSpacing(8);
    const auto addFigure = [&](const QString& what, const QString& much) {
        auto* value = new QLabel(much, this);
        value->setTextFormat(Qt::PlainText);
        value->setWordWrap(true);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        figures->addRow(what, value);
    };
    addFigure(tr("To be downloaded:"), formatMemory(plan.bytesToFetch));
    addFigure(tr("Files:"), QLocale().toString(plan.missing.size()));
    addFigure(tr("There already:"), formatMemory(plan.bytesPresent()));
    addFigure(tr("Room needed:"), formatMemory(plan.roomNeeded));
    addFigure(tr("Room left:"), plan.roomLeft ? formatMemory(*plan.roomLeft) : tr("not known"));
    addFigure(tr("Folder:"), QDir::toNativeSeparators(folder));

    auto* hint = new QLabel(m_isShortOfRoom
                                ? tr("The figure may be wrong, for example where the file system compresses "
                                     "files or where it makes room by itself. A download that finds no room "
                                     "stops; nothing is lost.")
                                : tr("\"Not now\" pauses downloads until you resume them."),
                            this);
    hint->setWordWrap(true);
    m_timeLeft = new QLabel(this);
    m_timeLeft->setObjectName(QStringLiteral("note"));
    m_timeLeft->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(this);
    auto* start = buttons->addButton(m_isShortOfRoom ? tr("C&ontinue anyway") : tr("&Download"),
                                     QDialogButtonBox::AcceptRole);
    auto* stop =
        buttons->addButton(m_isShortOfRoom ? tr("&Cancel") : tr("&Not now"), QDialogButtonBox::RejectRole);
    auto* usual = m_isShortOfRoom ? stop : start; // what happens without an answer
    usual->setDefault(true);
    usual->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &DownloadPlanDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(heading);
    layout->addLayout(figures);
    layout->addWidget(hint);
    layout->addWidget(m_timeLeft);
    layout->addStretch();
    layout->addWidget(buttons);
    resize(480, 0);
    new FitHeight(this);

    connect(&m_timer, &QTimer::timeout, this, &DownloadPlanDialog::onTick);
    m_timer.start(qMax(std::chrono::milliseconds(1), patience / m_ticksLeft));
    showTimeLeft();
}

void DownloadPlanDialog::reject()
{
    if (!m_isShortOfRoom && !m_isClosing)
        emit postponed();
    QDialog::reject();
}

void DownloadPlanDialog::closeEvent(QCloseEvent* event)
{
    m_isClosing = true;
    QDialog::closeEvent(event);
}

void DownloadPlanDialog::onTick()
{
    --m_ticksLeft;
    showTimeLeft();
    if (m_ticksLeft > 0)
        return;
    m_timer.stop();
    if (m_isShortOfRoom)
        reject();
    else
        accept();
}

void DownloadPlanDialog::showTimeLeft()
{
    const auto text = m_isShortOfRoom ? tr("Without an answer the update is put off in %1 s.")
                                      : tr("It begins by itself in %1 s.");
    m_timeLeft->setText(text.arg(m_ticksLeft));
}
