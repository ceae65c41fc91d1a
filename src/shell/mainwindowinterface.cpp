// The part of MainWindow that chooses between the web interface and the server list, and tells the player
// things on either of them.

#include "servers/downloadcontrol.h"
#include "servers/servermanager.h"
#include "settings/settings.h"
#include "shell/mainwindow.h"
#include "shell/simplegui.h"
#include "telemetry/exceptionlogger.h"
#include "web/webgui.h"

#include <QDebug>
#include <QGuiApplication>
#include <QMessageBox>

#include <stdexcept>

namespace
{
/** The window comes up after this time even if no page does. */
constexpr int longestWaitForPageMs = 10000;

WebGui* createWebGui(QWidget* parent)
{
    // The engine ends the process where it finds no display.
    if (QGuiApplication::platformName() != QLatin1String("xcb") &&
        !QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        throw std::runtime_error("There is no display for the web engine");
    return new WebGui(parent);
}
} // namespace

void MainWindow::createInterface()
{
    if (Settings::instance()->getDisableWebGui()) {
        qDebug() << "Disabling web gui by request";
        selectServerList();
        return;
    }
    try {
        selectWebGui();
    } catch (const std::exception& exception) {
        qWarning() << exception.what();
        reportException("RuntimeError", QStringLiteral("Failed to create web gui"), "mainwindow",
                        "MainWindow", __LINE__);
        qDebug() << "An exception occurred while creating web GUI - falling back to server list view";
        selectServerList();
    }
}

void MainWindow::selectWebGui()
{
    m_webGui = createWebGui(this);
    connect(m_webGui, &WebGui::loadFinished, this, &MainWindow::onLoadFinished);
    connect(m_webGui, &WebGui::cacheDialogRequested, this, &MainWindow::showVerifyDialog);
    connect(m_webGui, &WebGui::profilesDialogRequested, this, &MainWindow::showMigrateSettingsDialog);
    connect(m_webGui, &WebGui::pauseRequested, m_downloads, [this] { m_downloads->setPaused(true); });
    connect(m_webGui, &WebGui::resumeRequested, m_downloads, [this] { m_downloads->setPaused(false); });
    setCentralWidget(m_webGui);
    m_webGui->setFocus();
    QTimer::singleShot(longestWaitForPageMs, this, &MainWindow::onLoadFinished);
}

void MainWindow::selectServerList()
{
    m_serverList = new SimpleGui(this);
    m_serverList->setMenu(m_menu);
    m_serverList->setTools(m_tools);
    setCentralWidget(m_serverList);
    QTimer::singleShot(0, this, &MainWindow::onLoadFinished);
}

void MainWindow::showServerList(QMenu* menu, const QString& title)
{
    if (m_hiddenToTray)
        restoreWindow();
    if (!m_serverList) {
        m_serverList = new SimpleGui;
        m_serverList->setAttribute(Qt::WA_DeleteOnClose);
        m_serverList->setWindowTitle(title);
        m_serverList->setWindowIcon(windowIcon());
        m_serverList->setMenu(menu);
        m_serverList->setTools(m_tools);
    }
    auto* window = m_serverList->window();
    window->show();
    window->raise();
    window->activateWindow();
}

void MainWindow::restoreWebGui()
{
    createInterface();
    if (!m_webGui)
        return;
    for (auto* process : m_processes.processes()) {
        if (auto* server = Settings::instance()->getServer(process->server()))
            m_webGui->processStarted(server, process);
    }
}

void MainWindow::releaseInterface()
{
    m_webGui = nullptr;
    if (m_serverList && m_serverList->isWindow())
        m_serverList->close();
    if (auto* central = takeCentralWidget()) {
        central->close();
        central->deleteLater();
    }
    m_serverList = nullptr;
}

bool MainWindow::hasPage() const { return m_webGui && m_webGui->isPageReady(); }

void MainWindow::setMessage(const QString& text)
{
    if (m_serverList)
        m_serverList->setMessage(text);
}

void MainWindow::setStatus(const QString& text)
{
    setMessage(text);
    if (m_webGui)
        m_webGui->setStatusMessage(text);
}

void MainWindow::setMessageAtOnce(const QString& text)
{
    setMessage(text);
    if (m_serverList)
        m_serverList->repaint();
}

void MainWindow::showErrorMessage(const QString& title, const QString& text, int code)
{
    if (hasPage()) {
        m_webGui->showErrorMessage(title, text, code);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Critical, title, text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindow::showFailure(const QString& text, int code)
{
    setMessage(text);
    if (hasPage())
        m_webGui->showErrorMessage(tr("Error"), text, code);
}

// A page hears of it from the server itself.
void MainWindow::onServerError(const QString& title, const QString& text)
{
    if (!hasPage())
        showErrorMessage(title, text, UnknownError);
}
