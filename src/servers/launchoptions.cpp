#include "servers/launchoptions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace
{
QString findProgram(QString name)
{
    if (name.startsWith(QLatin1String("~/")))
        name.replace(0, 1, QDir::homePath());
    if (!name.contains(QLatin1Char('/')))
        return QStandardPaths::findExecutable(name);
    const QFileInfo info(name);
    return info.isAbsolute() && info.isFile() && info.isExecutable() ? name : QString();
}
} // namespace

QString readWrapper(const QString& command, LaunchOptions* options)
{
    options->wrapper.clear();
    if (command.trimmed().isEmpty())
        return {};
    if (command.count(QLatin1Char('"')) % 2 != 0)
        return QCoreApplication::translate(
                   "LaunchOptions", "The launch command has a quotation mark without its counterpart: %1")
            .arg(command);
    auto words = QProcess::splitCommand(command);
    const auto program = words.isEmpty() ? QString() : findProgram(words.constFirst());
    if (program.isEmpty())
        return QCoreApplication::translate("LaunchOptions",
                                           "The program of the launch command cannot be found: %1")
            .arg(words.value(0, command));
    words.first() = program;
    options->wrapper = words;
    return {};
}

QString readVariables(const QStringList& lines, LaunchOptions* options)
{
    static const QRegularExpression validName(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    options->variables.clear();
    for (const auto& line : lines) {
        if (line.trimmed().isEmpty())
            continue;
        const auto name = line.section(QLatin1Char('='), 0, 0).trimmed();
        if (!line.contains(QLatin1Char('=')) || !validName.match(name).hasMatch())
            return QCoreApplication::translate("LaunchOptions",
                                               "An environment variable has to be written as NAME=value: %1")
                .arg(line);
        if (name == QLatin1String("WINEPREFIX"))
            return QCoreApplication::translate("LaunchOptions",
                                               "The launcher needs the environment variable %1 itself")
                .arg(name);
        options->variables.append({name, line.section(QLatin1Char('='), 1)});
    }
    return {};
}
