#include "shell/interruptedupdate.h"

#include "cache/installfolder.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

void finishInterruptedUpdate()
{
    const auto folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    const bool isStuck = qEnvironmentVariableIsSet(InstallFolder::stuckVariable);
    qunsetenv(InstallFolder::stuckVariable); // it says nothing to those that this process starts
    if (isStuck || !QFileInfo::exists(InstallFolder::journal(folder)))
        return;
    const auto program = QFile::encodeName(InstallFolder::updater(folder));
    ::execl(program.constData(), program.constData(), "--finish", QFile::encodeName(folder).constData(),
            nullptr);
    std::fprintf(stderr, "velkorlauncher: %s cannot be run: %s\n", program.constData(), std::strerror(errno));
}
