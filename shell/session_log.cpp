#include "session_log.h"

namespace sonorit {

void SessionLog::open(const QString& path)
{
    QFile::remove(path);
    file_.setFileName(path);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate))
        return;  // start-up goes on without a log
}

void SessionLog::line(const QString& text)
{
    if (!file_.isOpen())
        return;
    file_.write(text.toUtf8());
    file_.write("\n");
    file_.flush();
}

void SessionLog::close()
{
    file_.close();
}

}  // namespace sonorit
