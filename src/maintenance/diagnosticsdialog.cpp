#include "maintenance/diagnosticsdialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QVBoxLayout>

DiagnosticsDialog::DiagnosticsDialog(const Diagnostics::Plan& plan, QWidget* parent)
    : QDialog(parent), m_plan(plan), m_diagnostics(new Diagnostics(this))
{
    setWindowTitle(tr("Network diagnostics"));
    m_status = new QLabel(this);
    m_status->setWordWrap(true);
    m_progress = new QProgressBar(this);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Progress"));
    m_text = new QPlainTextEdit(this);
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setAccessibleName(tr("Results"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_again = buttons->addButton(tr("&Run again"), QDialogButtonBox::ResetRole);
    auto* copyButton = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    auto* saveButton = buttons->addButton(tr("&Save..."), QDialogButtonBox::ActionRole);
    connect(m_again, &QPushButton::clicked, this, &DiagnosticsDialog::run);
    connect(copyButton, &QPushButton::clicked, this, &DiagnosticsDialog::copy);
    connect(saveButton, &QPushButton::clicked, this, &DiagnosticsDialog::save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    resize(760, 520);

    connect(m_diagnostics, &Diagnostics::changed, this,
            [this] { m_text->setPlainText(m_diagnostics->text()); });
    connect(m_diagnostics, &Diagnostics::finished, this, &DiagnosticsDialog::onFinished);
    run();
}

void DiagnosticsDialog::run()
{
    m_again->setEnabled(false);
    m_status->setText(tr("Looking at the network and the disk. This takes some seconds."));
    m_progress->setRange(0, 0);
    m_diagnostics->start(m_plan);
}

void DiagnosticsDialog::onFinished()
{
    m_again->setEnabled(true);
    m_progress->setRange(0, 1);
    m_progress->setValue(1);
    int bad = 0;
    const auto findings = m_diagnostics->findings();
    for (const auto& finding : findings)
        bad += finding.verdict == HostFinding::Verdict::Good ? 0 : 1;
    m_status->setText(bad == 0 ? tr("All hosts can be reached.")
                               : tr("%1 of %2 hosts make trouble.").arg(bad).arg(findings.size()));
}

void DiagnosticsDialog::copy() const { QApplication::clipboard()->setText(m_text->toPlainText()); }

void DiagnosticsDialog::save()
{
    const auto path = QFileDialog::getSaveFileName(
        this, tr("Save the results"), QStringLiteral("velkor-diagnostics.txt"), tr("Text files (*.txt)"));
    if (path.isEmpty())
        return;
    const auto error = saveTo(path);
    m_status->setText(error.isEmpty() ? tr("Saved.") : error);
}

QString DiagnosticsDialog::saveTo(const QString& path) const
{
    QSaveFile file(path);
    const auto bytes = m_text->toPlainText().toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return tr("%1 could not be written: %2").arg(path, file.errorString());
}
