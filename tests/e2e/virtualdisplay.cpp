#include "tests/e2e/virtualdisplay.h"

#include <QRect>
#include <QRegularExpression>
#include <QtTest>

static void end(QProcess* process)
{
    process->terminate();
    if (!process->waitForFinished(5000)) {
        process->kill();
        process->waitForFinished();
    }
}

VirtualDisplay::VirtualDisplay()
{
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("1400x800x24"), QStringLiteral("-noreset"),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(20000)) {
    }
    const auto number = QString::fromLatin1(m_server.readLine()).trimmed();
    if (!number.isEmpty())
        m_name = QLatin1Char(':') + number;
}

VirtualDisplay::~VirtualDisplay()
{
    for (const auto& program : m_programs)
        end(program.get());
    end(&m_server);
}

static QProcessEnvironment environmentOf(const QString& display)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), display);
    return environment;
}

void VirtualDisplay::run(const QStringList& command)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environmentOf(m_name));
    process->start(command.first(), command.mid(1));
    QVERIFY2(process->waitForStarted(), qPrintable(command.first()));
    m_programs.push_back(std::move(process));
}

QString VirtualDisplay::xdotool(const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environmentOf(m_name));
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished();
    return QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
}

static QString pattern(const QString& title) { return QLatin1Char('^') + QRegularExpression::escape(title); }

bool VirtualDisplay::isVisible(const QString& title) const
{
    return !xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                     pattern(title)})
                .isEmpty();
}

qint64 VirtualDisplay::waitForWindow(const QString& title) const
{
    if (!QTest::qWaitFor([&] { return isVisible(title); }, 60000))
        return 0;
    const auto windows = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), pattern(title)});
    return windows.section(QLatin1Char('\n'), -1).toLongLong();
}

QRect VirtualDisplay::geometryOf(qint64 window) const
{
    const auto lines =
        xdotool({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), QString::number(window)});
    const auto value = [&](const QString& name) {
        return QRegularExpression(QStringLiteral("\\b%1=(-?\\d+)").arg(name))
            .match(lines)
            .captured(1)
            .toInt();
    };
    return {value(QStringLiteral("X")), value(QStringLiteral("Y")), value(QStringLiteral("WIDTH")),
            value(QStringLiteral("HEIGHT"))};
}

void VirtualDisplay::click(const QPoint& position) const
{
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}
