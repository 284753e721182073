#include "tests/support/platform_noise.h"

#include <QString>
#include <QtGlobal>

namespace corvrec
{

namespace
{

QtMessageHandler passOn = nullptr;

void Handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (!message.startsWith("This plugin does not support"))
        passOn(type, context, message);
}

} // namespace

void SilencePlatform()
{
    passOn = qInstallMessageHandler(Handle);
}

} // namespace corvrec
