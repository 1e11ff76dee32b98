#pragma once
// Runs sonorit-cli as a separate program. It inherits HOME and XDG_* of the
// private home that a TempEnv of the test has set for this process.
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace sonorit::test {

struct CliRun {
    int exitCode = -1;              // -1: crashed or hung
    QStringList out;                // lines of standard output
    QString err;                    // standard error, and its JSON lines
    std::vector<QJsonObject> json;
};

// `workingFolder` empty: the test's own.
inline CliRun runCli(const QStringList& args, const QString& workingFolder = {})
{
    QProcess p;
    if (!workingFolder.isEmpty())
        p.setWorkingDirectory(workingFolder);
    p.start(SONORIT_CLI_PATH, args);
    CliRun r;
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit)
        return r;
    r.exitCode = p.exitCode();
    r.out = QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    r.err = QString::fromUtf8(p.readAllStandardError());
    for (const QString& line : r.err.split('\n', Qt::SkipEmptyParts))
        if (const QJsonDocument d = QJsonDocument::fromJson(line.toUtf8()); d.isObject())
            r.json.push_back(d.object());
    return r;
}

// Folder and file of each printed row, joined.
inline QStringList rowPaths(const CliRun& r)
{
    QStringList paths;
    for (const QString& line : r.out)
        paths << line.section('\t', 8, 8) + '/' + line.section('\t', 9, 9);
    return paths;
}

// The ID column of each printed row.
inline QStringList rowIds(const CliRun& r)
{
    QStringList ids;
    for (const QString& line : r.out)
        ids << line.section('\t', 10, 10);
    return ids;
}

// The title of each message the run printed, or "error: " and its text.
inline QStringList titlesOf(const CliRun& r)
{
    QStringList titles;
    for (const QJsonObject& o : r.json)
        titles << (o.contains("error") ? "error: " + o["error"].toString() : o["title"].toString());
    return titles;
}

// A key's value in a library file as the program wrote it.
inline QString iniValue(const QString& file, const QByteArray& key)
{
    QFile f(file);
    for (const QByteArray& line : f.open(QIODevice::ReadOnly) ? f.readAll().split('\n') : QList<QByteArray>())
        if (line.startsWith(key + '='))
            return QString::fromUtf8(line.mid(key.size() + 1).trimmed());
    return {};
}

// Starts sonorit-cli with `args` and kills it with SIGKILL `delayUs` after
// `reached` first holds. False when the run ended before that.
inline bool killWhen(const QStringList& args, const std::function<bool()>& reached, int delayUs = 0)
{
    QProcess p;
    p.setStandardOutputFile(QProcess::nullDevice());
    p.setStandardErrorFile(QProcess::nullDevice());
    p.start(SONORIT_CLI_PATH, args);
    if (!p.waitForStarted())
        return false;
    while (!reached()) {
        if (p.waitForFinished(0))
            return false;
        QThread::usleep(200);
    }
    QThread::usleep(static_cast<unsigned long>(delayUs));
    p.kill();
    p.waitForFinished();
    return p.exitStatus() == QProcess::CrashExit;
}

// Each call ends in a usage error (status 2) whose text names `reason`.
inline void expectUsageErrors(const std::vector<std::pair<QStringList, const char*>>& calls)
{
    for (const auto& [args, reason] : calls) {
        const CliRun bad = runCli(args);
        EXPECT_EQ(bad.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(bad.err.contains(reason)) << bad.err.toStdString();
        EXPECT_TRUE(bad.out.isEmpty()) << args.join(' ').toStdString();
    }
}

}  // namespace sonorit::test
