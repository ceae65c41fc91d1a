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
    if (!QFileInfo::exists(InstallFolder::journal(folder)) ||
        qEnvironmentVariableIsSet(InstallFolder::stuckVariable))
        return;
    const auto program = QFile::encodeName(InstallFolder::updater(folder));
    ::execl(program.constData(), program.constData(), "--finish", QFile::encodeName(folder).constData(),
            nullptr);
    std::fprintf(stderr, "velkorlauncher: %s cannot be run: %s\n", program.constData(), std::strerror(errno));
}
