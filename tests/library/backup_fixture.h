#pragma once
// A library over real LAME files with a backup folder beside it.
#include <QDir>
#include <QFileInfo>

#include "library/backup.h"
#include "library/track_import.h"
#include "work_fixture.h"

namespace sonorit::test {

struct BackupFixture : WorkFixture {
    QString bak = env.path("Bak/");

    // A track written below the Main Folder and added to the library.
    QString track(const QString& rel, const QString& title, double seconds = 0.3)
    {
        const QString path = main + rel;
        writeTaggedMp3(path, tags("Abba", "Gold", "1", title), {seconds});
        EXPECT_TRUE(Add_MP3(ctx, path));
        return path;
    }
    // The Part's first run: no folder set, "Info", then the folder dialog.
    bool firstBackup()
    {
        QDir().mkpath(bak);
        ui.answers = {Answer::Yes, Answer::Ok};
        ui.dialogResults = {bak};
        return mnu_Library_Backup(ctx);
    }
    bool nextBackup(std::deque<Answer> more = {})
    {
        ui.messages.clear();
        ui.events.clear();
        ui.answers = {Answer::Yes, Answer::Yes};
        ui.answers.insert(ui.answers.end(), more.begin(), more.end());
        return mnu_Library_Backup(ctx);
    }
    bool restore(std::deque<Answer> answers)
    {
        ui.messages.clear();
        ui.events.clear();
        ui.answers = std::move(answers);
        return mnu_Library_Restore(ctx);
    }
    QString report() const
    {
        for (const auto& m : ui.messages)
            if (m.title == "Backup report")
                return m.text;
        return "<none>";
    }
    // Each library track has its copy, byte for byte and of the same time.
    void expectMirrored(const QStringList& except = {}) const
    {
        for (int i = 0; i < lib.MP3_List.count(); ++i) {
            const QString rel = pathOf(i).mid(main.size());
            if (except.contains(rel))
                continue;
            EXPECT_EQ(stateOf(bak + rel), stateOf(pathOf(i))) << rel.toStdString();
        }
    }
};

}  // namespace sonorit::test
