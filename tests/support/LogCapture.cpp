#include "tests/support/LogCapture.h"

static LogCapture* active = nullptr;

LogCapture::LogCapture() : m_previous(qInstallMessageHandler(&LogCapture::handle))
{
    Q_ASSERT(active == nullptr);
    active = this;
}

LogCapture::~LogCapture()
{
    active = nullptr;
    qInstallMessageHandler(m_previous);
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtDebugMsg)
        active->m_lines.append(message);
    else if (active->m_previous)
        active->m_previous(type, context, message);
}
