// What a page sends: reading it must not let a secret through to the log. And whatever texts go into a call
// of the page: they must not end the literal that they stand in.

#include "logging/redactor.h"
#include "web/bridgecommand.h"
#include "web/pagecalls.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto command = BridgeCommand::parse(text);
    const auto token = command.text("token");
    Redactor redactor;
    for (const auto& secret : command.secrets)
        redactor.addSecret(secret);
    if (!token.isEmpty() && !QStringLiteral("[redacted]").contains(token) &&
        redactor.redact(command.loggable).contains(token))
        std::abort();

    const auto script = formatPageCall(PageCall::ShowError, {text, text, text});
    const auto rest = script.mid(script.lastIndexOf(QLatin1String("', ")) + 3);
    if (script.count(QLatin1Char('\'')) != 4 || script.contains(QLatin1Char('\\')) ||
        script.contains(QLatin1Char('\n')) || rest.contains(QLatin1Char('(')))
        std::abort();
    return 0;
}
