#pragma once
// The session log of a start-up: the lines of the data folder's Sonorit.log
// after its first, "Program Start at ...", and the lines expected there.
#include <QRegularExpression>
#include <QStringList>
#include <gtest/gtest.h>

#include "temp_env.h"

namespace sonorit::test {

inline QStringList sessionLog(const QString& dataFolder)
{
    const QStringList lines = QString::fromUtf8(readFile(dataFolder + "Sonorit.log")).split('\n', Qt::SkipEmptyParts);
    const QRegularExpression start("^Program Start at \\d\\d:\\d\\d:\\d\\d on \\d{4}-\\d\\d-\\d\\d$");
    EXPECT_TRUE(start.match(lines.value(0)).hasMatch()) << lines.value(0).toStdString();
    return lines.mid(1);
}

inline QStringList startupLogLines(const QString& musicFolder, const QString& openedLibrary, bool wma)
{
    QStringList lines = {"Initiating VKT filetype", "Associating extension 'vkt' with ZEV's MP3 Sonorit",
                         "Initiating start-up variables", "Initiating combo's and array's",
                         "Initiating Audio CD drivelist", "Getting Library data folder",
                         "Library data folder is set to " + musicFolder, "Getting Playlist data folder",
                         "Playlist data folder is set to " + musicFolder, "Setting default Library folder",
                         "Clearing backup folder", "Setting default rename and relocate options to 'Options' window",
                         "Getting startup library options", "Inspecting CommandLine", "Get Rip settings",
                         "Set Rip settings to 'Options' window", "Save Rip settings",
                         wma ? "WMA available" : "WMA not available", "Transferring Main Info to 'Options' window",
                         "Transferring Tag settings to 'Options' window", "Setting up available 'Menu' functions",
                         "Enabling timer events"};
    if (!openedLibrary.isEmpty())
        lines.insert(lines.indexOf("Get Rip settings"), "Opening " + openedLibrary + " at startup");
    return lines;
}

}  // namespace sonorit::test
